#include "pimshared/task/TLVTaskCreator.h"

#include "pimshared/common/CalendarTypeIds.h"

#include "pimshared/common/CalendarLayout.h"

namespace PimShared {

static_assert(CTLVTaskCreator::kRoot == CalendarLayout::kTask.root &&
                  CTLVTaskCreator::kComponent == CalendarLayout::kTask.component,
              "the creator writes the frame its item's layout names");

CTLVTaskCreator::~CTLVTaskCreator() = default;

bool CTLVTaskCreator::DateTimeDueLocal(const PAL::CDateAndTime& dateTime,
                                       const PAL::TVector<tXParam>& xParams) {
    return WriteDateTime(CalendarTypeIds::TypeIdPropTypeDateTimeDueLocal, dateTime, nullptr,
                         xParams);
}

}  // namespace PimShared
