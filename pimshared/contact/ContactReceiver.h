#ifndef PIMTLV_PIMSHARED_CONTACT_CONTACTRECEIVER_H
#define PIMTLV_PIMSHARED_CONTACT_CONTACTRECEIVER_H

#include "pimshared/common/ItemDescription.h"
#include "pimshared/contact/ContactAttributes.h"
#include "platform/PalExport.h"

namespace PimShared {

/// What a contact parser calls: the property operations with the values of
/// each property node once it closes (texts and data point into the parsed
/// bytes and are valid only during the call), and TraceMessage for every
/// irregularity, with a numeric code and, except for a broken stream, the
/// empty text. Answer true to let parsing go on.
class PIMTLV_API IContactReceiver : public IContactAttributes {
  public:
    /// Every diagnostic of the parser: a code (listed with the receiver) and a text, which may be
    /// empty. True to go on.
    virtual bool TraceMessage(const int& code, const char* text) = 0;
    /// Special members; an interface is made and copied only as part of the class
    /// that implements it.
    /// @{
    virtual ~IContactReceiver() = default;
    /// @}
};

/// An IContactReceiver that answers true to every call and keeps nothing: derive
/// from it and override only the calls you need. Its calls are made from the
/// item's list of operations, so it has every call the receiver has.
class CContactReceiverBase : public IContactReceiver {
    PIMTLV_DESCRIBE_DO_NOTHING(IContactAttributes, PIMTLV_CONTACT_OPERATIONS)
};

}  // namespace PimShared

#endif
