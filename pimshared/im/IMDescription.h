#ifndef PIMTLV_PIMSHARED_IM_IMDESCRIPTION_H
#define PIMTLV_PIMSHARED_IM_IMDESCRIPTION_H

// The instant message as code that iterates items sees it (see
// pimshared/common/ItemDescription.h). Its operations are listed under
// IIMAttributes, where a new property is declared and listed.

#include "pimshared/common/MimeMessageDescription.h"
#include "pimshared/im/IIMReceiver.h"
#include "pimshared/im/TLVIMCreator.h"
#include "pimshared/im/TLVIMParser.h"

namespace PimShared {
namespace Description {

template <>
struct Record<IIMAttributes::tMailbox> {
    using T = IIMAttributes::tMailbox;
    static constexpr auto kFields =
        std::make_tuple(&T::fieldType, &T::client, &T::displayName, &T::address);
    static constexpr auto kNames = Names("fieldType", "client", "displayName", "address");
};

template <>
struct Record<IIMAttributes::tExtendedData> {
    using T = IIMAttributes::tExtendedData;
    static constexpr auto kFields = std::make_tuple(&T::key, &T::value);
    static constexpr auto kNames = Names("key", "value");
};

}  // namespace Description

PIMTLV_DESCRIBE_ITEM(ImItem, "im", IIMAttributes, IIMReceiver, CTLVIMParser, CTLVIMCreator,
                     ImOperations, TImReceiverFor, TImSlots, PIMTLV_IM_OPERATIONS)

}  // namespace PimShared

#endif
