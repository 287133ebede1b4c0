// The call list in the tool. The library only reads call lists; the
// document library writes the layout its parser reads, so that test streams
// can be made.
#include "Items.h"
#include "pimshared/callstack/CallstackDescription.h"
#include "pimshared/callstack/CallstackTypeIds.h"

namespace PimTool {

namespace {

using namespace PimShared::CallstackTypeIds;

std::vector<TypeName> CallListNames() {
#define NODE(c)                \
    TypeName {                 \
        c, true, kNoParent, #c \
    }
#define LEAF(c)                 \
    TypeName {                  \
        c, false, kNoParent, #c \
    }
    return {
        NODE(TypeIdCompTypeCallEntry1), NODE(TypeIdCompTypeCallEntry2),
        LEAF(TypeIdPropTypeCallByte),   LEAF(TypeIdPropTypeCallText1),
        LEAF(TypeIdPropTypeCallText2),  LEAF(TypeIdPropTypeCallText3),
        LEAF(TypeIdPropTypeCallText4),  LEAF(TypeIdPropTypeCallText5),
        LEAF(TypeIdPropTypeCallFlag),
    };
#undef NODE
#undef LEAF
}

}  // namespace

const ItemAdapter kCallListItem = {
    PimShared::CallListItem::kKind,
    CallListNames(),
    OperationsOf<PimShared::CallListOperations>(),
    &DecodeItem<PimShared::CallListItem>,
    "written by the tool, not the library (which only reads call lists); an entry whose "
    "instance leaf is missing or comes after it is written back with its instance first.",
};

}  // namespace PimTool
