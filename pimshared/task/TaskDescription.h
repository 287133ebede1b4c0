#ifndef PIMTLV_PIMSHARED_TASK_TASKDESCRIPTION_H
#define PIMTLV_PIMSHARED_TASK_TASKDESCRIPTION_H

// The task's operations, described once (see pimshared/common/ItemDescription.h):
// a new property is added to ITaskAttributes and to this list.

#include "pimshared/common/CalendarFamilyDescription.h"
#include "pimshared/task/ITaskReceiver.h"
#include "pimshared/task/TLVTaskCreator.h"
#include "pimshared/task/TLVTaskParser.h"

#define PIMTLV_TASK_OPERATIONS(OP, OP0, OVERLOAD)            \
    PIMTLV_CALENDAR_COMMON_OPERATIONS(OP, OP0, OVERLOAD)     \
    PIMTLV_CALENDAR_EVENT_TASK_OPERATIONS(OP, OP0, OVERLOAD) \
    OP(DateTimeDueLocal, "dateTime", "xParams")

namespace PimShared {

PIMTLV_DESCRIBE_ITEM(TaskItem, "task", ITaskAttributes, ITaskReceiver, CTLVTaskParser,
                     CTLVTaskCreator, TaskOperations, TTaskReceiverFor, TTaskSlots,
                     PIMTLV_TASK_OPERATIONS)

}  // namespace PimShared

#endif
