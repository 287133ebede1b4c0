#ifndef PIMTLV_PIMSHARED_IM_IIMRECEIVER_H
#define PIMTLV_PIMSHARED_IM_IIMRECEIVER_H

#include "pimshared/common/ItemDescription.h"
#include "pimshared/im/IIMAttributes.h"
#include "platform/PalExport.h"

namespace PimShared {

/// What CTLVIMParser calls: the instant message's properties as they are read,
/// then every diagnostic (codes as for the e-mail: 1 an element of an undefined
/// class, 2 an element refused in its place, 3 a body with both content and
/// link, or a broken stream). Texts and bytes are valid only during the call.
class PIMTLV_API IIMReceiver : public IIMAttributes {
  public:
    /// Every diagnostic of the parser: a code (listed with the receiver) and a text, which may be
    /// empty. True to go on.
    virtual bool TraceMessage(const int& code, const char* text) = 0;
    /// Declared last, so the operations keep their slots; receivers are
    /// written by users, whose classes should be safe to delete through this.
    virtual ~IIMReceiver() = default;

  protected:
    /// Special members; an interface is made and copied only as part of the class
    /// that implements it.
    /// @{
    IIMReceiver() = default;
    IIMReceiver(const IIMReceiver&) = default;
    IIMReceiver& operator=(const IIMReceiver&) = default;
    /// @}
};

/// An IIMReceiver that answers true to every call and keeps nothing: derive
/// from it and override only the calls you need. Its calls are made from the
/// item's list of operations, so it has every call the receiver has.
class CIMReceiverBase : public IIMReceiver {
    PIMTLV_DESCRIBE_DO_NOTHING(IIMAttributes, PIMTLV_IM_OPERATIONS)
};

}  // namespace PimShared

#endif
