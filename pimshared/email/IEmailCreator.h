#ifndef PIMTLV_PIMSHARED_EMAIL_IEMAILCREATOR_H
#define PIMTLV_PIMSHARED_EMAIL_IEMAILCREATOR_H

#include "pimshared/email/IEmailAttributes.h"
#include "platform/PalExport.h"

namespace PimShared {

// The writing side: the properties, then Reset for the next item and GetData
// for the finished stream (owned by the creator until its next Reset or
// GetData).
class PIMTLV_API IEmailCreator : public IEmailAttributes {
  public:
    virtual bool Reset() = 0;
    virtual bool GetData(const void*& data, unsigned int& length) = 0;

  protected:
    IEmailCreator() = default;
    IEmailCreator(const IEmailCreator&) = default;
    IEmailCreator& operator=(const IEmailCreator&) = default;
    ~IEmailCreator() = default;
};

}  // namespace PimShared

#endif
