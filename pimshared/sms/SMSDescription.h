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

PIMTLV_DESCRIBE_OPERATIONS(SmsOperations, ISMSAttributes, PIMTLV_SMS_OPERATIONS)
PIMTLV_DESCRIBE_RECEIVER(TSmsReceiverFor, TSmsSlots, ISMSReceiver, SmsOperations,
                         PIMTLV_SMS_OPERATIONS)

// The item as code that iterates items sees it.
struct SmsItem {
    static constexpr const char* kKind = "sms";
    using Operations = SmsOperations;
    using Attributes = ISMSAttributes;
    using Receiver = ISMSReceiver;
    using Parser = CTLVSMSParser;
    using Creator = CTLVSMSCreator;
    template <typename Sink>
    using ReceiverFor = TSmsReceiverFor<Sink>;
    template <typename Base, typename Sink>
    using SlotsFor = TSmsSlots<Base, Sink>;
};

}  // namespace PimShared

#endif
