// iCalendar in the tool: .ics files (and .ical, .ifb) through the iCalendar
// bridge.
#include "Bridges.h"
#include "bridges/ical/ICalendarBridge.h"

namespace pimtlv_tool {

const FormatAdapter kIcsFormat = {
    "ics",
    "iCalendar",
    {".ics", ".ical", ".ifb"},
    &PimBridge::LooksLikeICalendar,
    &PimBridge::ImportICalendar,
    &PimBridge::ExportICalendar,
    &PimBridge::MergeICalendar,
};

}  // namespace pimtlv_tool
