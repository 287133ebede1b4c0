#ifndef PIMTLV_PIMSHARED_SMS_ISMSRECEIVER_H
#define PIMTLV_PIMSHARED_SMS_ISMSRECEIVER_H

#include "pimshared/sms/ISMSAttributes.h"
#include "platform/PalExport.h"

namespace PimShared {

// What a reader of SMS streams implements. The operations mirror
// ISMSAttributes one for one, so a message read back arrives as the same calls
// that wrote it; TraceMessage receives every diagnostic. Each answer of true
// lets the parse go on; false to a leaf's call ends it. Texts are valid only
// during the call.
class PIMTLV_API ISMSReceiver {
  public:
    using eReadStatus = ISMSAttributes::eReadStatus;
    using eDownloadState = ISMSAttributes::eDownloadState;
    using eSMSState = ISMSAttributes::eSMSState;
    using eSMSType = ISMSAttributes::eSMSType;
    using eStorageType = ISMSAttributes::eStorageType;
    using ePriority = ISMSAttributes::ePriority;

    virtual bool Begin(const unsigned int& instance) = 0;
    virtual bool End() = 0;
    virtual bool Body(const char* text) = 0;
    virtual bool Concat(const unsigned char& first, const unsigned char& second,
                        const unsigned char& third) = 0;
    virtual bool Destination(const char* text) = 0;
    virtual bool ReadStatus(const eReadStatus& status) = 0;
    virtual bool DownloadState(const eDownloadState& state) = 0;
    virtual bool Folder(const char* text) = 0;
    virtual bool Instance(const char* text) = 0;
    virtual bool Originator(const char* text) = 0;
    // Called once per name part that arrives, with that part at its position
    // and every other position null (the first is always null).
    virtual bool OriginatorName(const char* part1, const char* part2, const char* part3,
                                const char* part4, const char* part5, const char* part6) = 0;
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
    // code 1: element of an undefined class; 2: element refused in its place;
    // 3: the stream is malformed (text from the TLV walk).
    virtual bool TraceMessage(const int& code, const char* text) = 0;

    virtual ~ISMSReceiver() = default;

  protected:
    ISMSReceiver() = default;
    ISMSReceiver(const ISMSReceiver&) = default;
    ISMSReceiver& operator=(const ISMSReceiver&) = default;
};

}  // namespace PimShared

#endif
