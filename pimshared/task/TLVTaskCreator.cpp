#include "pimshared/task/TLVTaskCreator.h"

#include "pimshared/common/CalendarTypeIds.h"

namespace PimShared {

CTLVTaskCreator::~CTLVTaskCreator() = default;

bool CTLVTaskCreator::DateTimeDueLocal(const PAL::CDateAndTime& dateTime,
                                       const PAL::TVector<tXParam>& xParams) {
    return WriteDateTime(CalendarTypeIds::TypeIdPropTypeDateTimeDueLocal, dateTime, nullptr,
                         xParams);
}

}  // namespace PimShared
