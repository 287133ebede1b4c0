// Any bytes as iCalendar text through the import. An import that succeeds
// must hand out streams that its own export writes back as one calendar, and
// that calendar must import again to as many items: what the bridge writes,
// it reads.

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "bridges/ical/ICalendarBridge.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const PimBridge::ImportResult imported =
        PimBridge::ImportICalendar(reinterpret_cast<const char*>(data), size);
    if (!imported.ok) {
        if (imported.error.empty()) std::abort();
        return 0;
    }
    std::size_t end = 0;
    for (const PimBridge::ImportedItem& item : imported.items) {
        if (item.offset != end || item.size == 0) std::abort();
        end += item.size;
    }
    if (end != imported.streams.size()) std::abort();
    const PimBridge::ExportResult exported =
        PimBridge::ExportICalendar(imported.streams.data(), imported.streams.size());
    if (!exported.ok || exported.items.size() != imported.items.size()) std::abort();
    const PimBridge::ImportResult again =
        PimBridge::ImportICalendar(exported.text.data(), exported.text.size());
    if (!again.ok || again.items.size() != imported.items.size()) std::abort();
    return 0;
}
