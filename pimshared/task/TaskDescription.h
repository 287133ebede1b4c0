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

PIMTLV_DESCRIBE_OPERATIONS(TaskOperations, ITaskAttributes, PIMTLV_TASK_OPERATIONS)
PIMTLV_DESCRIBE_RECEIVER(TTaskReceiverFor, TTaskSlots, ITaskReceiver, TaskOperations,
                         PIMTLV_TASK_OPERATIONS)

// The item as code that iterates items sees it.
struct TaskItem {
    static constexpr const char* kKind = "task";
    using Operations = TaskOperations;
    using Attributes = ITaskAttributes;
    using Receiver = ITaskReceiver;
    using Parser = CTLVTaskParser;
    using Creator = CTLVTaskCreator;
    template <typename Sink>
    using ReceiverFor = TTaskReceiverFor<Sink>;
    template <typename Base, typename Sink>
    using SlotsFor = TTaskSlots<Base, Sink>;
};

}  // namespace PimShared

#endif
