#ifndef PIMTLV_FUZZ_ICALCHECKS_H
#define PIMTLV_FUZZ_ICALCHECKS_H

// The checks of the iCalendar bridge's fuzz targets, for the targets and for
// the replay of their files. Each returns null when all held, else what broke.
//
// Import: any bytes as text. A failed import must say why; a good one must
// lay its streams end to end, its own export must write them back as one
// calendar (unless there is no item, which no calendar holds), and that
// calendar must import again to as many items: what the bridge writes, it
// reads.
// Export: any bytes as a file of item streams. A refused file writes no
// text; whatever is written must import back to one item per exported item.
// Merge: the input is cut at kIcalMergeSeparator into the original text, the base
// (when there are three parts) and the streams. Text alone (one part) is
// merged with its own import's streams: every item must come back unchanged
// and the text byte for byte. A refused merge must say why and write nothing;
// a merge must report each item once.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "bridges/ical/ICalendarBridge.h"

namespace PimTlvFuzz {

inline const char* CheckIcalReimport(const PimBridge::ExportResult& exported) {
    const PimBridge::ImportResult again =
        PimBridge::ImportICalendar(exported.text.data(), exported.text.size());
    if (!again.ok) return "the export does not import";
    if (again.items.size() != exported.items.size()) return "the export imports to another count";
    return nullptr;
}

inline const char* CheckIcalImport(const std::uint8_t* data, std::size_t size) {
    const PimBridge::ImportResult imported =
        PimBridge::ImportICalendar(reinterpret_cast<const char*>(data), size);
    if (!imported.ok) return imported.error.empty() ? "a failed import without a reason" : nullptr;
    std::size_t end = 0;
    for (const PimBridge::ImportedItem& item : imported.items) {
        if (item.offset != end || item.size == 0) return "items not laid end to end";
        end += item.size;
    }
    if (end != imported.streams.size()) return "bytes beyond the last item";
    const PimBridge::ExportResult exported =
        PimBridge::ExportICalendar(imported.streams.data(), imported.streams.size());
    // A calendar needs a component: no items, no export.
    if (imported.items.empty()) return exported.ok ? "an export without a component" : nullptr;
    if (!exported.ok) return "the import's streams do not export";
    if (exported.items.size() != imported.items.size()) return "the export has another count";
    return CheckIcalReimport(exported);
}

inline const char* CheckIcalExport(const std::uint8_t* data, std::size_t size) {
    const PimBridge::ExportResult exported = PimBridge::ExportICalendar(data, size);
    if (!exported.ok) {
        if (exported.error.empty()) return "a refused export without a reason";
        return exported.text.empty() ? nullptr : "a refused export wrote text";
    }
    return CheckIcalReimport(exported);
}

// NUL bytes, which iCalendar text never holds.
constexpr char kIcalMergeSeparator[] = "\0\xFFmerge\xFF\0";
constexpr std::size_t kIcalMergeSeparatorSize = sizeof kIcalMergeSeparator - 1;

inline const char* CheckIcalMerge(const std::uint8_t* data, std::size_t size) {
    const char* text = reinterpret_cast<const char*>(data);
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (std::size_t i = 0; i + kIcalMergeSeparatorSize <= size && parts.size() < 2; ++i) {
        if (std::memcmp(text + i, kIcalMergeSeparator, kIcalMergeSeparatorSize) == 0) {
            parts.emplace_back(text + start, i - start);
            start = i + kIcalMergeSeparatorSize;
            i = start - 1;
        }
    }
    parts.emplace_back(text + start, size - start);
    const std::string& original = parts.front();
    PimBridge::MergeOptions options;
    std::vector<std::uint8_t> streams(parts.back().begin(), parts.back().end());
    if (parts.size() == 1) {
        const PimBridge::ImportResult imported =
            PimBridge::ImportICalendar(original.data(), original.size());
        streams = imported.streams;
    } else if (parts.size() == 3) {
        options.base = parts[1].data();
        options.baseSize = parts[1].size();
        options.preferDevice = (size & 1) != 0;
    }
    const PimBridge::MergeResult merged = PimBridge::MergeICalendar(
        original.data(), original.size(), streams.data(), streams.size(), options);
    if (!merged.ok) {
        if (merged.error.empty()) return "a refused merge without a reason";
        return merged.text.empty() ? nullptr : "a refused merge wrote text";
    }
    if (parts.size() == 1) {
        if (!merged.Unchanged()) return "a text merged with its own streams changed";
        if (merged.text != original) return "a text merged with its own streams is not itself";
    }
    return nullptr;
}

}  // namespace PimTlvFuzz

#endif
