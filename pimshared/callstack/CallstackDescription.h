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

PIMTLV_DESCRIBE_ITEM(CallListItem, "calllist", ICallstackReceiver, ICallstackReceiver,
                     CTLVCallstackParser, void, CallListOperations, TCallListReceiverFor,
                     TCallListSlots, PIMTLV_CALLLIST_OPERATIONS)

}  // namespace PimShared

#endif
