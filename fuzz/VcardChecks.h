#ifndef PIMTLV_FUZZ_VCARDCHECKS_H
#define PIMTLV_FUZZ_VCARDCHECKS_H

// The checks of the vCard bridge's fuzz targets, in the shape of the item
// checks (null, or what went wrong), so that a replay can call them too.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "bridges/vcard/Vcard.h"
#include "fuzz/ItemParserChecks.h"

namespace PimTlvFuzz {

// Any bytes as vCard text. What import writes must read cleanly, export, and
// import again to the very same streams unless the export named a loss.
inline const char* CheckVcardImport(const std::uint8_t* data, std::size_t size) {
    const PimBridge::ImportResult imported =
        PimBridge::ImportVcard(reinterpret_cast<const char*>(data), size);
    std::size_t end = 0;
    for (const PimBridge::ImportedItem& item : imported.items) {
        if (item.offset != end || item.size == 0) return "items do not tile the streams";
        end += item.size;
    }
    if (end != imported.streams.size()) return "streams longer than their items";
    if (imported.items.empty()) return nullptr;

    const PimBridge::ExportResult exported =
        PimBridge::ExportVcard(imported.streams.data(), imported.streams.size());
    if (!exported.ok) return "the streams of an import do not export";
    if (exported.items.size() != imported.items.size()) return "export lost or added items";
    bool clean = true;
    for (const PimBridge::ExportedItem& item : exported.items) {
        if (item.malformed || !item.diagnostics.empty()) return "an imported stream reads unclean";
        clean = clean && item.losses.empty();
    }
    const PimBridge::ImportResult again =
        PimBridge::ImportVcard(exported.text.data(), exported.text.size());
    if (!again.ok) return "the export does not import";
    if (clean && again.streams != imported.streams) return "the export imports to other streams";
    return nullptr;
}

// Any bytes as a file of contact streams. What export writes must be CRLF
// text that import reads to one card per item, and, unless either side named
// a loss, the export of that import must be the same text.
inline const char* CheckVcardExport(const std::uint8_t* data, std::size_t size) {
    const PimBridge::ExportResult exported = PimBridge::ExportVcard(data, size);
    if (!exported.ok) {
        return exported.text.empty() && !exported.error.empty() ? nullptr
                                                                : "a failed export says nothing";
    }
    if (exported.items.empty()) return nullptr;
    for (std::size_t i = 0; i < exported.text.size(); ++i) {
        if (exported.text[i] == '\n' && (i == 0 || exported.text[i - 1] != '\r'))
            return "a bare LF";
    }
    const PimBridge::ImportResult imported =
        PimBridge::ImportVcard(exported.text.data(), exported.text.size());
    if (!imported.ok) return "the export does not import";
    if (imported.items.size() != exported.items.size()) return "cards and items differ in number";
    for (const PimBridge::ImportedItem& item : imported.items) {
        if (!item.losses.empty()) return nullptr;
    }
    const PimBridge::ExportResult second =
        PimBridge::ExportVcard(imported.streams.data(), imported.streams.size());
    if (!second.ok) return "the streams of an import do not export";
    for (const PimBridge::ExportedItem& item : second.items) {
        if (!item.losses.empty()) return nullptr;
    }
    return second.text == exported.text ? nullptr : "the second export differs from the first";
}

// The merge's input: the original text, then (after kMergeSeparator) the
// device's cards as text (their streams are what the import writes; bytes
// that do not import are taken as streams themselves), then optionally the
// base of a three-way merge. Without a separator the device sends back the
// original's own streams.
inline constexpr char kMergeSeparator[] = "\n--8<--\n";

// Merging an original's own streams gives it back unchanged, byte for byte;
// any merge that succeeds writes text that imports, with one card per card
// of the original and per added item; one that fails says why and writes
// nothing.
inline const char* CheckVcardMerge(const std::uint8_t* data, std::size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::size_t cut = input.find(kMergeSeparator);
    const std::string original = input.substr(0, cut);
    const PimBridge::ImportResult own = PimBridge::ImportVcard(original.data(), original.size());
    if (own.ok) {
        const PimBridge::MergeResult self = PimBridge::MergeVcard(
            original.data(), original.size(), own.streams.data(), own.streams.size());
        if (!self.ok) return "the original's own streams do not merge";
        if (!self.Unchanged()) return "the original's own streams merge as a change";
        if (self.text != original) return "an unchanged merge is not the original";
    }
    if (cut == std::string::npos) return nullptr;

    const std::size_t rest = cut + sizeof kMergeSeparator - 1;
    const std::size_t baseCut = input.find(kMergeSeparator, rest);
    const std::string device =
        input.substr(rest, baseCut == std::string::npos ? baseCut : baseCut - rest);
    PimBridge::MergeOptions options;
    std::string base;
    if (baseCut != std::string::npos) {
        base = input.substr(baseCut + sizeof kMergeSeparator - 1);
        options.base = base.data();
        options.baseSize = base.size();
        options.preferDevice = (size & 1) != 0;
    }
    const PimBridge::ImportResult sent = PimBridge::ImportVcard(device.data(), device.size());
    std::vector<std::uint8_t> streams(device.begin(), device.end());
    if (sent.ok) streams = sent.streams;
    const PimBridge::MergeResult merged = PimBridge::MergeVcard(
        original.data(), original.size(), streams.data(), streams.size(), options);
    if (!merged.ok) {
        return merged.text.empty() && !merged.error.empty() ? nullptr
                                                            : "a failed merge says nothing";
    }
    if (!own.ok) return "a merge onto an original that does not import";
    std::size_t added = 0;
    for (const PimBridge::MergedItem& item : merged.items) {
        if (item.outcome == PimBridge::MergedItem::Outcome::Added) ++added;
    }
    const PimBridge::ImportResult again =
        PimBridge::ImportVcard(merged.text.data(), merged.text.size());
    if (!again.ok) return "the merged text does not import";
    if (again.items.size() != own.items.size() + added) return "the merge lost or added cards";
    if (merged.Unchanged() && merged.text != original)
        return "an unchanged merge is not the original";
    return nullptr;
}

}  // namespace PimTlvFuzz

#endif
