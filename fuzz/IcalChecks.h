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

#include <cstddef>
#include <cstdint>

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

}  // namespace PimTlvFuzz

#endif
