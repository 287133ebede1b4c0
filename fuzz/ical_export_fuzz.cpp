// Any bytes as a file of item streams through the export. Whatever it
// writes must be iCalendar that the import reads back to one item per
// exported item.

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "bridges/ical/ICalendarBridge.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const PimBridge::ExportResult exported = PimBridge::ExportICalendar(data, size);
    if (!exported.ok) {
        if (exported.error.empty() || !exported.text.empty()) std::abort();
        return 0;
    }
    const PimBridge::ImportResult again =
        PimBridge::ImportICalendar(exported.text.data(), exported.text.size());
    if (!again.ok || again.items.size() != exported.items.size()) std::abort();
    return 0;
}
