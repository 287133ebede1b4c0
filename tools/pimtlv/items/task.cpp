// The task (VTODO) in the tool.
#include "items/CalendarFamily.h"
#include "pimshared/task/TaskDescription.h"

namespace PimTool {

const ItemAdapter kTaskItem = {
    PimShared::TaskItem::kKind,
    CalendarFamilyNames(),
    OperationsOf<PimShared::TaskOperations>(),
    &DecodeItem<PimShared::TaskItem>,
    kCalendarAsymmetries,
};

}  // namespace PimTool
