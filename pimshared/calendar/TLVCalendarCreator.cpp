#include "pimshared/calendar/TLVCalendarCreator.h"

#include "pimshared/common/CalendarTypeIds.h"

#include "pimshared/common/CalendarLayout.h"

namespace PimShared {

static_assert(CTLVCalendarCreator::kRoot == CalendarLayout::kEvent.root &&
                  CTLVCalendarCreator::kComponent == CalendarLayout::kEvent.component,
              "the creator writes the frame its item's layout names");

CTLVCalendarCreator::~CTLVCalendarCreator() = default;

bool CTLVCalendarCreator::DateTimeEnd(const PAL::CDateAndTime& dateTime, const char* timeZone,
                                      const PAL::TVector<tXParam>& xParams) {
    return WriteDateTime(CalendarTypeIds::TypeIdPropTypeDateTimeEnd, dateTime, timeZone, xParams);
}

bool CTLVCalendarCreator::DateTimeEndLocal(const PAL::CDateAndTime& dateTime,
                                           const PAL::TVector<tXParam>& xParams) {
    return WriteDateTime(CalendarTypeIds::TypeIdPropTypeDateTimeEndLocal, dateTime, nullptr,
                         xParams);
}

}  // namespace PimShared
