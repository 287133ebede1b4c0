#ifndef PIMTLV_PIMSHARED_SMS_TLVSMSCREATOR_H
#define PIMTLV_PIMSHARED_SMS_TLVSMSCREATOR_H

#include "pimshared/common/CreatorFrame.h"
#include "pimshared/sms/ISMSCreator.h"
#include "platform/PalExport.h"

namespace PimShared {

/// Writes one short message as node 2 { UInt32 10, node 700 { ... } }. Unlike
/// the calendar items, every attribute is a single leaf directly in node 700,
/// with no property node and no extension parameters: a message is small and
/// flat, and the phone side reads it leaf by leaf. Only the concatenation
/// header, three numbers that belong together, is a node (730).
///
/// Every operation answers false when it wrote nothing or a write was refused.
/// Two operations are stricter than the rest (OriginatorFName and
/// DestinationFName refuse empty texts) and one is more lenient
/// (OriginatorName); see their comments.
class PIMTLV_API CTLVSMSCreator : public ISMSCreator, private CTLVCreatorFrame {
  public:
    /// Makes an empty creator; creators are not copied.
    /// @{
    CTLVSMSCreator() = default;
    /// @}
    ~CTLVSMSCreator() override;
    /// Makes an empty creator; creators are not copied.
    /// @{
    CTLVSMSCreator(const CTLVSMSCreator&) = delete;
    CTLVSMSCreator& operator=(const CTLVSMSCreator&) = delete;
    /// @}

    /// NodeBegin(2), LeafUInt32(10, instance), NodeBegin(700).
    bool Begin(const unsigned int& instance) override;
    /// NodeEnd(700), NodeEnd(2).
    bool End() override;
    /// A null text is written as the empty text, like every text leaf here.
    bool Body(const char* text) override;
    /// node 730 { UInt8 731, UInt8 732, UInt8 733 }; a refused element leaves
    /// the node open, so the stream cannot be taken with a half header in it.
    bool Concat(const unsigned char& first, const unsigned char& second,
                const unsigned char& third) override;
    bool Destination(const char* text) override;
    bool ReadStatus(const eReadStatus& status) override;
    bool DownloadState(const eDownloadState& state) override;
    bool Folder(const char* text) override;
    bool Instance(const char* text) override;
    bool Originator(const char* text) override;
    /// Writes parts two to six as the name parts 508 to 512, by position, each
    /// only when it is a non-empty text; part one has no place in the stream.
    /// Answers the result of the last part written, true when none was, and
    /// true even without an owned creator: an absent name is not an error for
    /// the devices that send these messages.
    bool OriginatorName(const char* part1, const char* part2, const char* part3, const char* part4,
                        const char* part5, const char* part6) override;
    /// An empty or null friendly name writes nothing and answers false.
    bool OriginatorFName(const char* text) override;
    bool DestinationFName(const char* text) override;
    bool ServiceCenter(const char* text) override;
    bool SMSState(const eSMSState& state) override;
    bool SMSType(const eSMSType& type) override;
    bool StorageType(const eStorageType& type) override;
    bool StorageIndex(const unsigned short& index) override;
    bool SendingState(const char* text) override;
    bool Subject(const char* text) override;
    bool Timestamp(const char* text) override;
    bool TimestampLocal(const char* text) override;
    bool Priority(const ePriority& priority) override;

    bool Reset() override;
    bool GetData(const void*& data, unsigned int& length) override;
};

}  // namespace PimShared

#endif
