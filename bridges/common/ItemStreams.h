#ifndef PIMTLV_BRIDGES_COMMON_ITEMSTREAMS_H
#define PIMTLV_BRIDGES_COMMON_ITEMSTREAMS_H

// An export reads a file of item streams, each one complete root node. The
// library cuts the file and tells each item's kind (the same rule as the
// tool's decode and check); this only words the cut's failure for a result.

#include <cstddef>
#include <cstdint>
#include <string>

#include "parsercreatorcollection/src/tlv/wire/TLVWire.h"
#include "pimshared/common/ItemKind.h"

namespace PimBridge {

using ParserCreatorCollection::ItemSpan;
using PimShared::ItemKind;

inline ItemKind KindOf(const ItemSpan& span) {
    return PimShared::KindOfFrame(span.frame);
}

// Calls onItem(const ItemSpan&) for every item of the file in order, as it
// goes (nothing is kept). Returns false at the first item that cannot be
// cut, with why naming its offset; the items before it have been handed out.
// onItem may answer false to stop early (then the result is true).
template <typename OnItem>
bool ForEachItem(const std::uint8_t* data, std::size_t size, OnItem&& onItem, std::string& why) {
    std::size_t at = 0;
    if (ParserCreatorCollection::ForEachItem(data, size, onItem, at) ==
        ParserCreatorCollection::CutFault::None) {
        return true;
    }
    why = "item at offset " + std::to_string(at) + ": " +
          ParserCreatorCollection::DescribeCutFault(data, size, at);
    return false;
}

}  // namespace PimBridge

#endif
