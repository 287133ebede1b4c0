// The calendar event (VEVENT) in the tool.
#include "items/CalendarFamily.h"
#include "pimshared/calendar/CalendarDescription.h"

namespace PimTool {

const ItemAdapter kEventItem = {
    PimShared::EventItem::kKind,
    CalendarFamilyNames(),
    OperationsOf<PimShared::EventOperations>(),
    &DecodeItem<PimShared::EventItem>,
    kCalendarAsymmetries,
};

}  // namespace PimTool
