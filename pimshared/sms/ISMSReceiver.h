#ifndef PIMTLV_PIMSHARED_SMS_ISMSRECEIVER_H
#define PIMTLV_PIMSHARED_SMS_ISMSRECEIVER_H

#include "pimshared/common/ItemDescription.h"
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

/// An ISMSReceiver that answers true to every call and keeps nothing: derive
/// from it and override only the calls you need. Its calls are made from the
/// item's list of operations, so it has every call the receiver has.
class CSMSReceiverBase : public ISMSReceiver {
    PIMTLV_DESCRIBE_DO_NOTHING(ISMSAttributes, PIMTLV_SMS_OPERATIONS)
};

}  // namespace PimShared

#endif
