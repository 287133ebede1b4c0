// iCalendar in the tool: .ics files (and .ical, .ifb) through the iCalendar
// bridge.
#include "Bridges.h"
#include "bridges/ical/ICalendarBridge.h"

namespace PimTool {

const FormatAdapter kIcsFormat = {
    "ics",
    "iCalendar",
    {".ics", ".ical", ".ifb"},
    &PimBridge::LooksLikeICalendar,
    &PimBridge::ImportICalendar,
    &PimBridge::ExportICalendar,
    &PimBridge::MergeICalendar,
};

}  // namespace PimTool
