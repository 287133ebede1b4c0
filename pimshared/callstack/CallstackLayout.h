#ifndef PIMTLV_PIMSHARED_CALLSTACK_CALLSTACKLAYOUT_H
#define PIMTLV_PIMSHARED_CALLSTACK_CALLSTACKLAYOUT_H

// The call-list entry's properties as data, in the row form of the other
// items' layouts: per receiver operation its leaf, how the leaf is read and
// which call delivers it. The library only reads this item, so the parser is
// the table's one reader.
// Internal: not part of the library's interface.

#include "pimshared/callstack/CallstackTypeIds.h"
#include "pimshared/callstack/ICallstackReceiver.h"

namespace PimShared {
namespace CallstackLayout {

// Rows are in slot order of the property operations; slot 0 and 1 are Begin
// and End, which the entry node makes and have no row.
enum eOperation : unsigned char {
    CallByte,
    CallText1,
    CallText2,
    CallText3,
    CallText4,
    CallText5,
    CallFlag,
    OperationCount
};
constexpr unsigned int FirstPropertySlot = 2;

// How a property leaf is read. Its class is not checked: every form takes a
// leaf of any class.
enum class eForm : unsigned char {
    Byte,            // the value's first byte
    Text,            // the value as text, kept in the parser's store for the call
    Flag,            // the value's first byte, non-zero is true
    NotImplemented,  // known, but reported instead of delivered
};

using TextCall = bool (*)(ICallstackReceiver&, const char*);

struct tOperation {
    unsigned short id;
    eForm form;
    unsigned char store;  // Text rows: the parser's text slot
    TextCall text;        // Text rows: the receiver call
};

namespace Detail {

template <bool (ICallstackReceiver::*Operation)(const char*)>
bool CallText(ICallstackReceiver& receiver, const char* text) {
    return (receiver.*Operation)(text);
}

using namespace CallstackTypeIds;
using R = ICallstackReceiver;

template <bool (ICallstackReceiver::*Operation)(const char*)>
constexpr tOperation Text(unsigned int id, unsigned int store) {
    return {static_cast<unsigned short>(id), eForm::Text, static_cast<unsigned char>(store),
            &CallText<Operation>};
}

inline constexpr tOperation kOperations[] = {
    {TypeIdPropTypeCallByte, eForm::Byte, 0, nullptr},
    Text<&R::CallText1>(TypeIdPropTypeCallText1, 0),
    Text<&R::CallText2>(TypeIdPropTypeCallText2, 1),
    Text<&R::CallText3>(TypeIdPropTypeCallText3, 2),
    Text<&R::CallText4>(TypeIdPropTypeCallText4, 3),
    Text<&R::CallText5>(TypeIdPropTypeCallText5, 4),
    {TypeIdPropTypeCallFlag, eForm::Flag, 0, nullptr},
};

}  // namespace Detail

static_assert(sizeof(Detail::kOperations) / sizeof(Detail::kOperations[0]) == OperationCount,
              "one row per property operation, in slot order");

constexpr const tOperation& Row(eOperation operation) {
    return Detail::kOperations[operation];
}

// The property IDs are consecutive and the rows in ID order, so a leaf's row
// is its distance from the first.
constexpr unsigned int kFirstId = CallstackTypeIds::TypeIdPropTypeCallByte;

// The row number of a property leaf, or OperationCount when the ID is none.
constexpr unsigned int RowOf(unsigned int id) {
    const unsigned int at = id - kFirstId;  // below the first wraps far past the end
    return at < OperationCount ? at : static_cast<unsigned int>(OperationCount);
}

// The row of a property leaf, or null when the ID is none.
constexpr const tOperation* Find(unsigned int id) {
    const unsigned int row = RowOf(id);
    return row != OperationCount ? &Detail::kOperations[row] : nullptr;
}

// The calls match the form by construction (text rows are made by Detail's
// helper); what is checked here is the rows' order and slots.
constexpr bool RowsAreSound() {
    unsigned int texts = 0;
    for (unsigned int r = 0; r < OperationCount; ++r) {
        const tOperation& row = Detail::kOperations[r];
        if (row.id != kFirstId + r) return false;
        if (row.form == eForm::Text && row.store != texts++) return false;
    }
    return true;
}
static_assert(RowsAreSound(), "rows in ID order with no gap, and each text row has its own slot");
static_assert(RowOf(CallstackTypeIds::TypeIdPropTypeCallByte) == CallByte &&
                  RowOf(CallstackTypeIds::TypeIdPropTypeCallText3) == CallText3 &&
                  RowOf(CallstackTypeIds::TypeIdPropTypeCallFlag) == CallFlag &&
                  RowOf(CallstackTypeIds::TypeIdPropTypeCallFlag + 1) == OperationCount &&
                  RowOf(CallstackTypeIds::TypeIdCompTypeCallEntry2) == OperationCount,
              "the index finds every property leaf and nothing else");

// The number of text slots the parser keeps.
constexpr unsigned int TextCount() {
    unsigned int n = 0;
    for (const tOperation& row : Detail::kOperations) n += row.form == eForm::Text ? 1 : 0;
    return n;
}

}  // namespace CallstackLayout
}  // namespace PimShared

#endif
