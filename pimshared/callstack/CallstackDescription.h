#ifndef PIMTLV_PIMSHARED_CALLSTACK_CALLSTACKDESCRIPTION_H
#define PIMTLV_PIMSHARED_CALLSTACK_CALLSTACKDESCRIPTION_H

// The call list as code that iterates items sees it (see
// pimshared/common/ItemDescription.h). Its operations are listed under
// ICallstackReceiver, where a new property is declared and listed. The library only reads call
// lists, so they are the receiver's.

#include "pimshared/callstack/ICallstackReceiver.h"
#include "pimshared/callstack/TLVCallstackParser.h"
#include "pimshared/common/ItemDescription.h"

namespace PimShared {

PIMTLV_DESCRIBE_ITEM(CallListItem, "calllist", ICallstackReceiver, ICallstackReceiver,
                     CTLVCallstackParser, void, CallListOperations, TCallListReceiverFor,
                     TCallListSlots, PIMTLV_CALLLIST_OPERATIONS)

}  // namespace PimShared

#endif
