#ifndef PIMTLV_PIMSHARED_CALLSTACK_CALLSTACKDESCRIPTION_H
#define PIMTLV_PIMSHARED_CALLSTACK_CALLSTACKDESCRIPTION_H

// The call list's operations, described once (see pimshared/common/ItemDescription.h):
// the library only reads call lists, so they are the receiver's.

#include "pimshared/callstack/ICallstackReceiver.h"
#include "pimshared/callstack/TLVCallstackParser.h"
#include "pimshared/common/ItemDescription.h"

#define PIMTLV_CALLLIST_OPERATIONS(OP, OP0, OVERLOAD) \
    OP(Begin, "kind", "instance")                     \
    OP0(End)                                          \
    OP(CallByte, "value")                             \
    OP(CallText1, "text")                             \
    OP(CallText2, "text")                             \
    OP(CallText3, "text")                             \
    OP(CallText4, "text")                             \
    OP(CallText5, "text")                             \
    OP(CallFlag, "value")

namespace PimShared {

PIMTLV_DESCRIBE_OPERATIONS(CallListOperations, ICallstackReceiver, PIMTLV_CALLLIST_OPERATIONS)
PIMTLV_DESCRIBE_RECEIVER(TCallListReceiverFor, TCallListSlots, ICallstackReceiver,
                         CallListOperations, PIMTLV_CALLLIST_OPERATIONS)

// The item as code that iterates items sees it.
struct CallListItem {
    static constexpr const char* kKind = "calllist";
    using Operations = CallListOperations;
    using Attributes = ICallstackReceiver;
    using Receiver = ICallstackReceiver;
    using Parser = CTLVCallstackParser;
    using Creator = void;
    template <typename Sink>
    using ReceiverFor = TCallListReceiverFor<Sink>;
    template <typename Base, typename Sink>
    using SlotsFor = TCallListSlots<Base, Sink>;
};

}  // namespace PimShared

#endif
