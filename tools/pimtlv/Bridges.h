#ifndef PIMTLV_TOOL_BRIDGES_H
#define PIMTLV_TOOL_BRIDGES_H

// The import and export commands: text formats (iCalendar, vCard, MIME) to
// item streams and back, through the bridge libraries this build has. Each
// format is one adapter file in formats/, listed in the registry of
// Bridges.cpp; the commands themselves know no format.

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

#include "Tool.h"
#include "bridges/common/Bridge.h"
#include "bridges/common/Merge.h"

namespace PimTool {

struct FormatAdapter {
    const char* name;                     // as --from and --to take it: "ics"
    const char* title;                    // "iCalendar"
    std::vector<const char*> extensions;  // lower case, with the dot: ".ics"
    // Whether text (the start of the input) looks like this format, for input
    // whose name does not tell (standard input, an unknown extension).
    bool (*looksLike)(const char* text, std::size_t size);
    // Null where the format is written only (or read only).
    PimBridge::ImportResult (*importText)(const char* text, std::size_t size);
    PimBridge::ExportResult (*exportItems)(const std::uint8_t* data, std::size_t size);
    // Null where the format has no merge onto an original text (export --onto).
    PimBridge::MergeResult (*mergeItems)(const char* original, std::size_t originalSize,
                                         const std::uint8_t* data, std::size_t size,
                                         const PimBridge::MergeOptions& options);
};

// Each adapter file defines its adapters; the registry lists those this
// build has a bridge for.
extern const FormatAdapter kIcsFormat, kVcfFormat, kEmlFormat, kMboxFormat;
const std::vector<const FormatAdapter*>& Formats();
const FormatAdapter* FindFormat(const std::string& name);
// "ics, vcf, eml, mbox" as far as this build has them, for messages.
std::string FormatNames();

struct BridgeOptions {
    std::string input;    // file name, "-" or empty for standard input
    std::string output;   // file name, "-" or empty for standard output
    std::string format;   // import: --from (empty: tell it); export: --to
    bool strict = false;  // import: anything not carried is an error
    std::string onto;     // export: merge onto this original text (empty: plain export)
    std::string base;     // export --onto: the text sent to the device (empty: two-way)
    std::string prefer;   // export --onto: "device" lets the device win conflicts
};

// pimtlv import: the item streams of every item of the text, one after
// another. Losses are warnings on err (errors with --strict: exit 1, nothing
// written). Throws UsageError for input the tool cannot use.
int Import(const BridgeOptions& options, std::ostream& err);

// pimtlv export: the text of every item of a file of item streams. What the
// item parsers report and what the format has no place for are warnings on
// err; exit 1 when a parser reported anything. With --onto, the items are
// merged onto the original text instead and err gets one report line per
// item ("event 1 (UID x): changed: SUMMARY changed"); exit 0, or 1 when an
// item could not be placed. Throws UsageError for input the tool cannot use,
// a format without a merge, or an original the merge cannot read.
int Export(const BridgeOptions& options, std::ostream& err);

}  // namespace PimTool

#endif
