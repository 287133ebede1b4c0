#ifndef PIMTLV_PIMSHARED_IM_IIMRECEIVER_H
#define PIMTLV_PIMSHARED_IM_IIMRECEIVER_H

#include "pimshared/im/IIMAttributes.h"
#include "platform/PalExport.h"

namespace PimShared {

// What CTLVIMParser calls: the instant message's properties as they are read,
// then every diagnostic (codes as for the e-mail: 1 an element of an undefined
// class, 2 an element refused in its place, 3 a body with both content and
// link, or a broken stream). Texts and bytes are valid only during the call.
class PIMTLV_API IIMReceiver : public IIMAttributes {
  public:
    virtual bool TraceMessage(const int& code, const char* text) = 0;
    // Declared last, so the operations keep their slots; receivers are
    // written by users, whose classes should be safe to delete through this.
    virtual ~IIMReceiver() = default;

  protected:
    IIMReceiver() = default;
    IIMReceiver(const IIMReceiver&) = default;
    IIMReceiver& operator=(const IIMReceiver&) = default;
};

}  // namespace PimShared

#endif
