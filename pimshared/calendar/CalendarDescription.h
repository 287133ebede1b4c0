#ifndef PIMTLV_PIMSHARED_CALENDAR_CALENDARDESCRIPTION_H
#define PIMTLV_PIMSHARED_CALENDAR_CALENDARDESCRIPTION_H

// The calendar event as code that iterates items sees it (see
// pimshared/common/ItemDescription.h). Its operations are listed under
// ICalendarAttributes, where a new property is declared and listed.

#include "pimshared/calendar/ICalendarReceiver.h"
#include "pimshared/calendar/TLVCalendarCreator.h"
#include "pimshared/calendar/TLVCalendarParser.h"
#include "pimshared/common/CalendarFamilyDescription.h"

namespace PimShared {

PIMTLV_DESCRIBE_ITEM(EventItem, "event", ICalendarAttributes, ICalendarReceiver, CTLVCalendarParser,
                     CTLVCalendarCreator, EventOperations, TEventReceiverFor, TEventSlots,
                     PIMTLV_EVENT_OPERATIONS)

}  // namespace PimShared

#endif
