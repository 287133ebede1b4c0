#ifndef PIMTLV_PIMSHARED_SMS_ISMSCREATOR_H
#define PIMTLV_PIMSHARED_SMS_ISMSCREATOR_H

#include "pimshared/sms/ISMSAttributes.h"
#include "platform/PalExport.h"

namespace PimShared {

/// The writing side: the attributes plus taking the finished stream.
class PIMTLV_API ISMSCreator : public ISMSAttributes {
  public:
    /// Discards everything written so far, to start the next message.
    virtual bool Reset() = 0;
    /// The finished stream; the bytes stay owned by the creator until the next
    /// GetData, Reset or its destruction.
    virtual bool GetData(const void*& data, unsigned int& length) = 0;
    /// Special members; an interface is made and copied only as part of the class
    /// that implements it.
    /// @{
    virtual ~ISMSCreator() = default;
    /// @}
};

}  // namespace PimShared

#endif
