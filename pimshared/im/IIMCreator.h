#ifndef PIMTLV_PIMSHARED_IM_IIMCREATOR_H
#define PIMTLV_PIMSHARED_IM_IIMCREATOR_H

#include "pimshared/im/IIMAttributes.h"
#include "platform/PalExport.h"

namespace PimShared {

// The writing side: the properties, then Reset for the next item and GetData
// for the finished stream (owned by the creator until its next Reset or
// GetData).
class PIMTLV_API IIMCreator : public IIMAttributes {
  public:
    virtual bool Reset() = 0;
    virtual bool GetData(const void*& data, unsigned int& length) = 0;

  protected:
    IIMCreator() = default;
    IIMCreator(const IIMCreator&) = default;
    IIMCreator& operator=(const IIMCreator&) = default;
    ~IIMCreator() = default;
};

}  // namespace PimShared

#endif
