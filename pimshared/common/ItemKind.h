#ifndef PIMTLV_PIMSHARED_COMMON_ITEMKIND_H
#define PIMTLV_PIMSHARED_COMMON_ITEMKIND_H

// Which item a stream holds, told by one rule for every reader: its root node
// and the first node inside the root, leaves before that node passed over, as
// the item parsers pass them (an instance number written ahead of the
// component still makes an event). A contact has no component node; its root
// alone tells it. Whether the item then parses is for its parser to say.

#include <cstddef>
#include <cstdint>

#include "parsercreatorcollection/src/tlv/wire/TLVWire.h"
#include "platform/PalExport.h"

namespace PimShared {

enum class ItemKind : unsigned char {
    Unknown,
    Event,
    Task,
    Note,
    Contact,
    Email,
    InstantMessage,
    Sms,
    CallList,
};

// The kind a frame tells; Unknown when none matches.
PIMTLV_API ItemKind KindOfFrame(const ParserCreatorCollection::ItemFrame& frame) noexcept;

// The kind of the item at the start of size bytes (which may be cut short:
// the frame is read from what there is).
PIMTLV_API ItemKind DetectItemKind(const std::uint8_t* data, std::size_t size) noexcept;

// The instance number an item's stream carries (its UInt32 leaf 10, in the
// root ahead of the component or first in the component, as the items write
// it); false when there is none.
PIMTLV_API bool ReadItemInstance(const std::uint8_t* data, std::size_t size,
                                 unsigned int& instance) noexcept;

// The kind's short name, as the tool's --item and the bridges' reports say
// it: "event", "task", "note", "contact", "email", "im", "sms", "calllist";
// "" for Unknown.
PIMTLV_API const char* ItemKindName(ItemKind kind) noexcept;

}  // namespace PimShared

#endif
