#ifndef PIMTLV_PIMSHARED_TASK_TASKDESCRIPTION_H
#define PIMTLV_PIMSHARED_TASK_TASKDESCRIPTION_H

// The task as code that iterates items sees it (see
// pimshared/common/ItemDescription.h). Its operations are listed under
// ITaskAttributes, where a new property is declared and listed.

#include "pimshared/common/CalendarFamilyDescription.h"
#include "pimshared/task/ITaskReceiver.h"
#include "pimshared/task/TLVTaskCreator.h"
#include "pimshared/task/TLVTaskParser.h"

namespace PimShared {

PIMTLV_DESCRIBE_ITEM(TaskItem, "task", ITaskAttributes, ITaskReceiver, CTLVTaskParser,
                     CTLVTaskCreator, TaskOperations, TTaskReceiverFor, TTaskSlots,
                     PIMTLV_TASK_OPERATIONS)

}  // namespace PimShared

#endif
