#ifndef PIMTLV_PIMSHARED_SMS_ISMSATTRIBUTES_H
#define PIMTLV_PIMSHARED_SMS_ISMSATTRIBUTES_H

#include "platform/PalExport.h"

namespace PimShared {

/// The properties of one short message, in the order a writer describes them:
/// Begin, any attributes in any order, End. Every operation answers false when
/// it did not take effect.
///
/// The six enumerations travel as one unsigned byte (the low byte of the
/// value); the codec gives them no meaning and checks no range, so a device
/// may pass values beyond the members below. Their underlying type is fixed at
/// 32 bits so that any such value is representable.
class PIMTLV_API ISMSAttributes {
  public:
    /// Whether the user has seen the message.
    enum eReadStatus : unsigned int {
        ReadStatusUnread = 0,
        ReadStatusRead = 1,
    };

    /// How much of the message is on the device (MMS-style notifications
    /// announce a message before its content arrives).
    enum eDownloadState : unsigned int {
        DownloadStateNone = 0,      ///< nothing fetched yet
        DownloadStatePending = 1,   ///< fetch requested
        DownloadStatePartial = 2,   ///< header or first part only
        DownloadStateComplete = 3,  ///< the whole message is here
        DownloadStateFailed = 4,
    };

    /// Where the message stands in its life on the device.
    enum eSMSState : unsigned int {
        SMSStateReceived = 0,
        SMSStateDraft = 1,
        SMSStateQueued = 2,  ///< waiting to be sent
        SMSStateSending = 3,
        SMSStateSent = 4,
        SMSStateDelivered = 5,  ///< delivery report received
        SMSStateFailed = 6,
    };

    /// The transfer-layer kind of the message.
    enum eSMSType : unsigned int {
        SMSTypeDeliver = 0,       ///< network to device
        SMSTypeSubmit = 1,        ///< device to network
        SMSTypeStatusReport = 2,  ///< delivery report
        SMSTypeCommand = 3,
    };

    /// Which store holds the message.
    enum eStorageType : unsigned int {
        StorageTypePhone = 0,
        StorageTypeSim = 1,
        StorageTypeMemoryCard = 2,
    };

    /// How urgent the sender marked the message.
    enum ePriority : unsigned int {
        PriorityLow = 0,
        PriorityNormal = 1,
        PriorityHigh = 2,
        PriorityUrgent = 3,
    };

    /// Opens the item; instance is its number among the items of a sync.
    virtual bool Begin(const unsigned int& instance) = 0;
    /// Closes the item.
    virtual bool End() = 0;
    /// One property of the item with its values. A creator writes it; a parser calls it on its
    /// receiver with the values read (texts may be null when not given). True to go on.
    /// @{
    virtual bool Body(const char* text) = 0;
    /// @}
    /// The three numbers of a concatenated message's part header (reference,
    /// count, sequence, as the transport hands them over).
    virtual bool Concat(const unsigned char& first, const unsigned char& second,
                        const unsigned char& third) = 0;
    /// One property of the item with its values. A creator writes it; a parser calls it on its
    /// receiver with the values read (texts may be null when not given). True to go on.
    /// @{
    virtual bool Destination(const char* text) = 0;
    virtual bool ReadStatus(const eReadStatus& status) = 0;
    virtual bool DownloadState(const eDownloadState& state) = 0;
    virtual bool Folder(const char* text) = 0;
    virtual bool Instance(const char* text) = 0;
    virtual bool Originator(const char* text) = 0;
    /// @}
    /// The originator's name in six parts; the first part is not carried, the
    /// second to sixth travel as the five name parts of a contact.
    virtual bool OriginatorName(const char* part1, const char* part2, const char* part3,
                                const char* part4, const char* part5, const char* part6) = 0;
    /// One property of the item with its values. A creator writes it; a parser calls it on its
    /// receiver with the values read (texts may be null when not given). True to go on.
    /// @{
    virtual bool OriginatorFName(const char* text) = 0;
    virtual bool DestinationFName(const char* text) = 0;
    virtual bool ServiceCenter(const char* text) = 0;
    virtual bool SMSState(const eSMSState& state) = 0;
    virtual bool SMSType(const eSMSType& type) = 0;
    virtual bool StorageType(const eStorageType& type) = 0;
    virtual bool StorageIndex(const unsigned short& index) = 0;
    virtual bool SendingState(const char* text) = 0;
    virtual bool Subject(const char* text) = 0;
    virtual bool Timestamp(const char* text) = 0;
    virtual bool TimestampLocal(const char* text) = 0;
    virtual bool Priority(const ePriority& priority) = 0;
    /// @}

  protected:
    /// Special members; an interface is made and copied only as part of the class
    /// that implements it.
    /// @{
    ISMSAttributes() = default;
    ISMSAttributes(const ISMSAttributes&) = default;
    ISMSAttributes& operator=(const ISMSAttributes&) = default;
    /// @}
    /// Not virtual: the creator and the receiver that derive from this put
    /// their own calls right after the attributes, and own the destructor.
    ~ISMSAttributes() = default;
};

}  // namespace PimShared

// The operations above, described once for the code that iterates them (the
// do-nothing receiver, the tool's documents, the recording receivers of tests,
// fuzzers and benchmarks): an operation is declared above and listed here, and
// a list that does not match the declarations does not compile.
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

#endif
