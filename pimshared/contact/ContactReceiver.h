#ifndef PIMTLV_PIMSHARED_CONTACT_CONTACTRECEIVER_H
#define PIMTLV_PIMSHARED_CONTACT_CONTACTRECEIVER_H

#include "pimshared/contact/ContactAttributes.h"
#include "platform/PalExport.h"

namespace PimShared {

// What a contact parser calls: the property operations with the values of
// each property node once it closes (texts and data point into the parsed
// bytes and are valid only during the call), and TraceMessage for every
// irregularity, with a numeric code and, except for a broken stream, the
// empty text. Answer true to let parsing go on.
class PIMTLV_API IContactReceiver : public IContactAttributes {
  public:
    virtual bool TraceMessage(const int& code, const char* text) = 0;
    virtual ~IContactReceiver() = default;
};

}  // namespace PimShared

#endif
