#ifndef PIMTLV_PIMSHARED_TASK_TLVTASKCREATOR_H
#define PIMTLV_PIMSHARED_TASK_TLVTASKCREATOR_H

#include "pimshared/common/CalendarFamilyCreator.h"
#include "pimshared/common/TypeIds.h"
#include "pimshared/task/ITaskAttributes.h"
#include "platform/PalExport.h"

namespace PimShared {

/// Writes one task: node 1 { node 104 { UInt32 10 = instance, property nodes
/// in call order } }. The root is the event's; only the component tells the
/// two apart. Every shared property is written exactly as an event writes it.
class PIMTLV_API CTLVTaskCreator
    : public TEventTaskCreator<ITaskCreator, TypeIdObjTypeCalendarTask, TypeIdCompTypeVtodo> {
  public:
    /// Makes an empty creator; creators are not copied.
    /// @{
    CTLVTaskCreator() = default;
    /// @}
    ~CTLVTaskCreator() override;

    /// Writes the task's due date-time as ITaskAttributes describes it.
    bool DateTimeDueLocal(const PAL::CDateAndTime& dateTime,
                          const PAL::TVector<tXParam>& xParams) override;
};

}  // namespace PimShared

#endif
