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

PIMTLV_DESCRIBE_OPERATIONS(EventOperations, ICalendarAttributes, PIMTLV_EVENT_OPERATIONS)
PIMTLV_DESCRIBE_RECEIVER(TEventReceiverFor, TEventSlots, ICalendarReceiver, EventOperations,
                         PIMTLV_EVENT_OPERATIONS)

// The calendar event as code that iterates items sees it.
struct EventItem {
    static constexpr const char* kKind = "event";
    using Operations = EventOperations;
    using Attributes = ICalendarAttributes;
    using Receiver = ICalendarReceiver;
    using Parser = CTLVCalendarParser;
    using Creator = CTLVCalendarCreator;
    template <typename Sink>
    using ReceiverFor = TEventReceiverFor<Sink>;
    template <typename Base, typename Sink>
    using SlotsFor = TEventSlots<Base, Sink>;
};

}  // namespace PimShared

#endif
