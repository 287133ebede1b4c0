#ifndef PIMTLV_PIMSHARED_SMS_ISMSRECEIVER_H
#define PIMTLV_PIMSHARED_SMS_ISMSRECEIVER_H

#include "pimshared/sms/ISMSAttributes.h"
#include "platform/PalExport.h"

namespace PimShared {

/// What a reader of SMS streams implements: the operations of ISMSAttributes,
/// slot for slot, so a message read back arrives as the same calls that wrote
/// it, then TraceMessage for every diagnostic. Each answer of true lets the
/// parse go on; false to a leaf's call ends it. Texts are valid only during
/// the call. OriginatorName is called once per name part that arrives, with
/// that part at its position and every other position null (the first is
/// always null).
class PIMTLV_API ISMSReceiver : public ISMSAttributes {
  public:
    /// code 1: element of an undefined class; 2: element refused in its place;
    /// 3: the stream is malformed (text from the TLV walk).
    virtual bool TraceMessage(const int& code, const char* text) = 0;

    /// Special members; an interface is made and copied only as part of the class
    /// that implements it.
    /// @{
    virtual ~ISMSReceiver() = default;
    /// @}

  protected:
    /// Special members; an interface is made and copied only as part of the class
    /// that implements it.
    /// @{
    ISMSReceiver() = default;
    ISMSReceiver(const ISMSReceiver&) = default;
    ISMSReceiver& operator=(const ISMSReceiver&) = default;
    /// @}
};

/// A ISMSReceiver that answers true to every call and keeps nothing: derive
/// from it and override only the calls you need.
class CSMSReceiverBase : public ISMSReceiver {
  public:
    bool Begin(const unsigned int& /*instance*/) override { return true; }
    bool End() override { return true; }
    bool Body(const char* /*text*/) override { return true; }
    bool Concat(const unsigned char& /*first*/, const unsigned char& /*second*/,
                const unsigned char& /*third*/) override {
        return true;
    }
    bool Destination(const char* /*text*/) override { return true; }
    bool ReadStatus(const eReadStatus& /*status*/) override { return true; }
    bool DownloadState(const eDownloadState& /*state*/) override { return true; }
    bool Folder(const char* /*text*/) override { return true; }
    bool Instance(const char* /*text*/) override { return true; }
    bool Originator(const char* /*text*/) override { return true; }
    bool OriginatorName(const char* /*part1*/, const char* /*part2*/, const char* /*part3*/,
                        const char* /*part4*/, const char* /*part5*/,
                        const char* /*part6*/) override {
        return true;
    }
    bool OriginatorFName(const char* /*text*/) override { return true; }
    bool DestinationFName(const char* /*text*/) override { return true; }
    bool ServiceCenter(const char* /*text*/) override { return true; }
    bool SMSState(const eSMSState& /*state*/) override { return true; }
    bool SMSType(const eSMSType& /*type*/) override { return true; }
    bool StorageType(const eStorageType& /*type*/) override { return true; }
    bool StorageIndex(const unsigned short& /*index*/) override { return true; }
    bool SendingState(const char* /*text*/) override { return true; }
    bool Subject(const char* /*text*/) override { return true; }
    bool Timestamp(const char* /*text*/) override { return true; }
    bool TimestampLocal(const char* /*text*/) override { return true; }
    bool Priority(const ePriority& /*priority*/) override { return true; }
    bool TraceMessage(const int& /*code*/, const char* /*text*/) override { return true; }
};

}  // namespace PimShared

#endif
