#ifndef PIMTLV_BRIDGES_ICAL_ICALENDARBRIDGE_H
#define PIMTLV_BRIDGES_ICAL_ICALENDARBRIDGE_H

// iCalendar (RFC 5545) text to and from item streams: every VEVENT, VTODO and
// VJOURNAL becomes one event, task or note stream, and any mix of such
// streams becomes one VCALENDAR. libical reads and writes the text; the
// bridge maps properties and parameters to the items' operations and names
// whatever an item cannot carry.

#include <cstddef>
#include <cstdint>

#include "bridges/common/Bridge.h"

namespace PimBridge {

/// One stream per VEVENT, VTODO and VJOURNAL, in the order of the text, each
/// given its VCALENDAR's PRODID and VERSION; the instance number is the item's
/// position among them, counted from 0. What an item cannot carry is listed in
/// its losses; what belongs to no item (the calendar's own properties and
/// components, such as VTIMEZONE) in the result's. Never throws: text that is
/// no iCalendar at all gives !ok with the line concerned.
PIMTLV_BRIDGE_API ImportResult ImportICalendar(const char* text, std::size_t size);

/// One VCALENDAR with one component per item stream (events, tasks, notes; any
/// other item makes the export fail). What the item parsers report is passed
/// on per item. Never throws.
PIMTLV_BRIDGE_API ExportResult ExportICalendar(const std::uint8_t* data, std::size_t size);

/// Whether text starts like iCalendar: "BEGIN:VCALENDAR" after an optional
/// byte order mark and blank lines.
PIMTLV_BRIDGE_API bool LooksLikeICalendar(const char* text, std::size_t size);

}  // namespace PimBridge

#endif
