#ifndef PIMTLV_PIMSHARED_EMAIL_IEMAILRECEIVER_H
#define PIMTLV_PIMSHARED_EMAIL_IEMAILRECEIVER_H

#include "pimshared/common/ItemDescription.h"
#include "pimshared/email/IEmailAttributes.h"
#include "platform/PalExport.h"

namespace PimShared {

/// What CTLVEmailParser calls: the e-mail's properties as they are read, then
/// every diagnostic. Texts and bytes handed over are valid only during the
/// call. A false answer to a property delivered at once (a bare leaf) or to a
/// diagnostic raised by a leaf stops the parse.
///
/// Diagnostic codes: 1 an element of an undefined class, 2 an element refused
/// in its place, 3 a body with both content and link, or a broken stream.
class PIMTLV_API IEmailReceiver : public IEmailAttributes {
  public:
    /// Every diagnostic of the parser: a code (listed with the receiver) and a text, which may be
    /// empty. True to go on.
    virtual bool TraceMessage(const int& code, const char* text) = 0;
    /// Declared last, so the operations keep their slots; receivers are
    /// written by users, whose classes should be safe to delete through this.
    virtual ~IEmailReceiver() = default;

  protected:
    /// Special members; an interface is made and copied only as part of the class
    /// that implements it.
    /// @{
    IEmailReceiver() = default;
    IEmailReceiver(const IEmailReceiver&) = default;
    IEmailReceiver& operator=(const IEmailReceiver&) = default;
    /// @}
};

/// An IEmailReceiver that answers true to every call and keeps nothing: derive
/// from it and override only the calls you need. Its calls are made from the
/// item's list of operations, so it has every call the receiver has.
class CEmailReceiverBase : public IEmailReceiver {
    PIMTLV_DESCRIBE_DO_NOTHING(IEmailAttributes, PIMTLV_EMAIL_OPERATIONS)
};

}  // namespace PimShared

#endif
