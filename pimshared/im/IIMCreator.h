#ifndef PIMTLV_PIMSHARED_IM_IIMCREATOR_H
#define PIMTLV_PIMSHARED_IM_IIMCREATOR_H

#include "pimshared/im/IIMAttributes.h"
#include "platform/PalExport.h"

namespace PimShared {

/// The writing side: the properties, then Reset for the next item and GetData
/// for the finished stream (owned by the creator until its next Reset or
/// GetData).
class PIMTLV_API IIMCreator : public IIMAttributes {
  public:
    /// Discards everything written so far, to start the next item.
    virtual bool Reset() = 0;
    /// The finished stream; the bytes stay owned by the creator until its next GetData, Reset or
    /// destruction.
    virtual bool GetData(const void*& data, unsigned int& length) = 0;

  protected:
    /// Special members; an interface is made and copied only as part of the class
    /// that implements it.
    /// @{
    IIMCreator() = default;
    IIMCreator(const IIMCreator&) = default;
    IIMCreator& operator=(const IIMCreator&) = default;
    ~IIMCreator() = default;
    /// @}
};

}  // namespace PimShared

#endif
