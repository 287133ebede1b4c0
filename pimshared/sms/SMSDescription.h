#ifndef PIMTLV_PIMSHARED_SMS_SMSDESCRIPTION_H
#define PIMTLV_PIMSHARED_SMS_SMSDESCRIPTION_H

// The SMS's operations, described once (see pimshared/common/ItemDescription.h):
// a new property is added to ISMSAttributes, ISMSReceiver and this list.

#include "pimshared/common/ItemDescription.h"
#include "pimshared/sms/ISMSReceiver.h"
#include "pimshared/sms/TLVSMSCreator.h"
#include "pimshared/sms/TLVSMSParser.h"

#define PIMTLV_SMS_OPERATIONS(OP, OP0, OVERLOAD)                             \
    OP(Begin, "instance")                                                    \
    OP0(End)                                                                 \
    OP(Body, "text")                                                         \
    OP(Concat, "first", "second", "third")                                   \
    OP(Destination, "text")                                                  \
    OP(ReadStatus, "status")                                                 \
    OP(DownloadState, "state")                                               \
    OP(Folder, "text")                                                       \
    OP(Instance, "text")                                                     \
    OP(Originator, "text")                                                   \
    OP(OriginatorName, "part1", "part2", "part3", "part4", "part5", "part6") \
    OP(OriginatorFName, "text")                                              \
    OP(DestinationFName, "text")                                             \
    OP(ServiceCenter, "text")                                                \
    OP(SMSState, "state")                                                    \
    OP(SMSType, "type")                                                      \
    OP(StorageType, "type")                                                  \
    OP(StorageIndex, "index")                                                \
    OP(SendingState, "text")                                                 \
    OP(Subject, "text")                                                      \
    OP(Timestamp, "text")                                                    \
    OP(TimestampLocal, "text")                                               \
    OP(Priority, "priority")

namespace PimShared {

PIMTLV_DESCRIBE_ITEM(SmsItem, "sms", ISMSAttributes, ISMSReceiver, CTLVSMSParser, CTLVSMSCreator,
                     SmsOperations, TSmsReceiverFor, TSmsSlots, PIMTLV_SMS_OPERATIONS)

}  // namespace PimShared

#endif
