#ifndef PIMTLV_PIMSHARED_CALENDAR_CALENDARDESCRIPTION_H
#define PIMTLV_PIMSHARED_CALENDAR_CALENDARDESCRIPTION_H

// The calendar event's operations, described once (see
// pimshared/common/ItemDescription.h): a new property is added to
// ICalendarAttributes and to this list.

#include "pimshared/calendar/ICalendarReceiver.h"
#include "pimshared/calendar/TLVCalendarCreator.h"
#include "pimshared/calendar/TLVCalendarParser.h"
#include "pimshared/common/CalendarFamilyDescription.h"

#define PIMTLV_EVENT_OPERATIONS(OP, OP0, OVERLOAD)           \
    PIMTLV_CALENDAR_COMMON_OPERATIONS(OP, OP0, OVERLOAD)     \
    PIMTLV_CALENDAR_EVENT_TASK_OPERATIONS(OP, OP0, OVERLOAD) \
    OP(DateTimeEnd, "dateTime", "timeZone", "xParams")       \
    OP(DateTimeEndLocal, "dateTime", "xParams")

namespace PimShared {

PIMTLV_DESCRIBE_ITEM(EventItem, "event", ICalendarAttributes, ICalendarReceiver, CTLVCalendarParser,
                     CTLVCalendarCreator, EventOperations, TEventReceiverFor, TEventSlots,
                     PIMTLV_EVENT_OPERATIONS)

}  // namespace PimShared

#endif
