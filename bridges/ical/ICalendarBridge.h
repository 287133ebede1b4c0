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
#include "bridges/common/Merge.h"

namespace PimBridge {

/// One stream per VEVENT, VTODO and VJOURNAL, in the order of the text, each
/// given its VCALENDAR's PRODID and VERSION; the instance number is the item's
/// position among them, counted from 0. What an item cannot carry is listed in
/// its losses; what belongs to no item (the calendar's own properties and
/// components, such as VTIMEZONE) in the result's. A line that is not UTF-8 is
/// read as Windows-1252 and reported as converted. Never throws: text that is
/// no iCalendar at all gives !ok with the line concerned.
PIMTLV_BRIDGE_API ImportResult ImportICalendar(const char* text, std::size_t size);

/// One VCALENDAR with one component per item stream (events, tasks, notes; any
/// other item, or none at all, makes the export fail), and a VTIMEZONE from
/// the system's time-zone database for every TZID the items use. What the
/// item parsers report is passed on per item. Never throws.
PIMTLV_BRIDGE_API ExportResult ExportICalendar(const std::uint8_t* data, std::size_t size);

/// The item streams that came back from a device, merged onto the original
/// text they were imported from; items find their components by the rule in
/// Merge.h (UID, and among a recurring event and its overrides, which share
/// it, the instance number the import gave). What an item carries comes from
/// the item: a changed property is written anew, one the item no longer has is
/// removed, a new one is added after the component's last property. Everything
/// else stays as the original has it, line for line: properties and
/// parameters the item has no place for, VALARMs and other sub-components,
/// RECURRENCE-ID, the calendar's own properties and its VTIMEZONEs, and every
/// component no item matches. A changed component gets DTSTAMP and
/// LAST-MODIFIED of now (PimBridge::Now()), and one more SEQUENCE when its
/// times or status changed and the item did not set one. An item without a
/// counterpart is added at the end of the last calendar, as export writes
/// it. When every item is unchanged, text is the original byte for byte.
/// Never throws: an original (or base) that is no iCalendar, or streams that
/// are not all events, tasks and notes, give !ok.
PIMTLV_BRIDGE_API MergeResult MergeICalendar(const char* original, std::size_t originalSize,
                                             const std::uint8_t* data, std::size_t size,
                                             const MergeOptions& options = {});

/// Whether text starts like iCalendar: "BEGIN:VCALENDAR" after an optional
/// byte order mark and blank lines.
PIMTLV_BRIDGE_API bool LooksLikeICalendar(const char* text, std::size_t size);

}  // namespace PimBridge

#endif
