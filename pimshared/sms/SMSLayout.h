#ifndef PIMTLV_PIMSHARED_SMS_SMSLAYOUT_H
#define PIMTLV_PIMSHARED_SMS_SMSLAYOUT_H

// The short message's attributes as data, read by both directions: the
// creator writes each operation by its row, and the parser finds the row of
// each leaf by its type ID and calls the receiver operation the row names.
// Every way in which one attribute differs from another (a friendly name that
// is never written empty, an originator name whose first part has no leaf, the
// concatenation header in a node of its own) is a column here.
// Internal: not part of the library's interface.

#include "pimshared/sms/ISMSAttributes.h"
#include "pimshared/sms/SMSTypeIds.h"

namespace PimShared {
namespace SMSLayout {

// Rows are in slot order of the attribute operations; slot 0 and 1 are Begin
// and End, which write the frame nodes and have no row.
enum eOperation : unsigned char {
    Body,
    Concat,
    Destination,
    ReadStatus,
    DownloadState,
    Folder,
    Instance,
    Originator,
    OriginatorName,
    OriginatorFName,
    DestinationFName,
    ServiceCenter,
    SMSState,
    SMSType,
    StorageType,
    StorageIndex,
    SendingState,
    Subject,
    Timestamp,
    TimestampLocal,
    Priority,
    OperationCount
};
constexpr unsigned int FirstAttributeSlot = 2;

// How an operation is written, and so which leaf class the parser takes.
enum class eForm : unsigned char {
    Text,          // a String leaf, always written; a null text as the empty text
    NonEmptyText,  // a String leaf, written only for a non-empty text; otherwise the
                   // operation answers false. Read like Text.
    TextParts,     // one String leaf per argument from `argument` on, each only for a
                   // non-empty text; the operation answers the last leaf written, and
                   // true when none was or when there is no writer. Each leaf read is
                   // its own call, the other arguments null.
    Byte,          // a UInt8 leaf: the low byte of the value
    Word,          // a UInt16 leaf
    ByteGroup,     // a node of its own with one UInt8 leaf per argument; the first
                   // refusal ends the operation and leaves the node open. The bytes
                   // read wait for the node's end, where the operation is called.
};

// The receiver call of a row, made with the value of one leaf.
using TextCall = bool (*)(ISMSAttributes&, const char*);
using NumberCall = bool (*)(ISMSAttributes&, unsigned int);

struct tOperation {
    unsigned short id;       // the leaf, or the first of a run of leaves with consecutive IDs
    unsigned char count;     // leaves in the run, one per argument
    unsigned char argument;  // the argument the first leaf fills
    unsigned short node;     // the node the leaves sit in
    eForm form;
    TextCall text;      // Text and NonEmptyText rows
    NumberCall number;  // Byte and Word rows: the wire value widened to the argument
};

namespace Detail {

template <typename Operation>
struct ArgumentOf;
template <typename Value>
struct ArgumentOf<bool (ISMSAttributes::*)(const Value&)> {
    using Type = Value;
};

template <bool (ISMSAttributes::*Operation)(const char*)>
bool CallText(ISMSAttributes& receiver, const char* text) {
    return (receiver.*Operation)(text);
}

template <auto Operation>
bool CallNumber(ISMSAttributes& receiver, unsigned int number) {
    const auto value = static_cast<typename ArgumentOf<decltype(Operation)>::Type>(number);
    return (receiver.*Operation)(value);
}

using namespace SMSTypeIds;
using A = ISMSAttributes;
constexpr unsigned short kMessage = TypeIdCompTypeSMS;

template <bool (ISMSAttributes::*Operation)(const char*)>
constexpr tOperation Text(unsigned int id, eForm form = eForm::Text) {
    return {static_cast<unsigned short>(id), 1, 0, kMessage, form, &CallText<Operation>, nullptr};
}
template <auto Operation>
constexpr tOperation Number(unsigned int id, eForm form) {
    return {static_cast<unsigned short>(id), 1, 0, kMessage, form, nullptr, &CallNumber<Operation>};
}
// A run of leaves with consecutive IDs; the parser calls its operation by name.
constexpr tOperation Run(unsigned int id, unsigned int count, unsigned int argument,
                         unsigned int node, eForm form) {
    return {static_cast<unsigned short>(id),
            static_cast<unsigned char>(count),
            static_cast<unsigned char>(argument),
            static_cast<unsigned short>(node),
            form,
            nullptr,
            nullptr};
}
constexpr eForm Byte = eForm::Byte;

inline constexpr tOperation kOperations[] = {
    Text<&A::Body>(TypeIdValTypeBody),
    Run(TypeIdValTypeConcat1, 3, 0, TypeIdPropTypeConcat, eForm::ByteGroup),
    Text<&A::Destination>(TypeIdValTypeDestination),
    Number<&A::ReadStatus>(TypeIdValTypeReadStatus, Byte),
    Number<&A::DownloadState>(TypeIdValTypeDownloadState, Byte),
    Text<&A::Folder>(TypeIdValTypeFolder),
    Text<&A::Instance>(TypeIdValTypeInstanceName),
    Text<&A::Originator>(TypeIdValTypeOriginator),
    // The first part of the name has no leaf: parts two to six travel as the
    // contact's five name parts.
    Run(TypeIdValTypeNamePart1, 5, 1, kMessage, eForm::TextParts),
    Text<&A::OriginatorFName>(TypeIdValTypeOriginatorFName, eForm::NonEmptyText),
    Text<&A::DestinationFName>(TypeIdValTypeDestinationFName, eForm::NonEmptyText),
    Text<&A::ServiceCenter>(TypeIdValTypeServiceCenter),
    Number<&A::SMSState>(TypeIdValTypeSMSState, Byte),
    Number<&A::SMSType>(TypeIdValTypeSMSType, Byte),
    Number<&A::StorageType>(TypeIdValTypeStorageType, Byte),
    Number<&A::StorageIndex>(TypeIdValTypeStorageIndex, eForm::Word),
    Text<&A::SendingState>(TypeIdValTypeSendingState),
    Text<&A::Subject>(TypeIdValTypeSubject),
    Text<&A::Timestamp>(TypeIdValTypeTimestamp),
    Text<&A::TimestampLocal>(TypeIdValTypeTimestampLocal),
    Number<&A::Priority>(TypeIdValTypeMessagePriority, Byte),
};

// Every leaf ID below the message node, as the item's IDs name them.
inline constexpr unsigned int kLeafIds[] = {
    TypeIdValTypeSMSState,        TypeIdValTypeSMSType,         TypeIdValTypeTimestamp,
    TypeIdValTypeTimestampLocal,  TypeIdValTypeStorageType,     TypeIdValTypeStorageIndex,
    TypeIdValTypeSubject,         TypeIdValTypeServiceCenter,   TypeIdValTypeOriginator,
    TypeIdValTypeDestination,     TypeIdValTypeOriginatorFName, TypeIdValTypeDestinationFName,
    TypeIdValTypeReadStatus,      TypeIdValTypeDownloadState,   TypeIdValTypeConcat1,
    TypeIdValTypeConcat2,         TypeIdValTypeConcat3,         TypeIdValTypeBody,
    TypeIdValTypeSendingState,    TypeIdValTypeFolder,          TypeIdValTypeInstanceName,
    TypeIdValTypeMessagePriority, TypeIdValTypeNamePart1,       TypeIdValTypeNamePart2,
    TypeIdValTypeNamePart3,       TypeIdValTypeNamePart4,       TypeIdValTypeNamePart5,
};

constexpr unsigned int LowestId() {
    unsigned int lowest = ~0u;
    for (const tOperation& row : kOperations) lowest = row.id < lowest ? row.id : lowest;
    return lowest;
}
constexpr unsigned int HighestId() {
    unsigned int highest = 0;
    for (const tOperation& row : kOperations) {
        const unsigned int last = row.id + row.count - 1u;
        highest = last > highest ? last : highest;
    }
    return highest;
}

}  // namespace Detail

static_assert(sizeof(Detail::kOperations) / sizeof(Detail::kOperations[0]) == OperationCount,
              "one row per attribute operation, in slot order");

constexpr const tOperation& Row(eOperation operation) {
    return Detail::kOperations[operation];
}

// The parser's index: the row of every leaf ID from the lowest to the highest
// a row claims, so that a leaf finds its row with one load.
constexpr unsigned int kLowestId = Detail::LowestId();
constexpr unsigned int kIndexSize = Detail::HighestId() - kLowestId + 1u;
constexpr unsigned char kNoRow = 0xFF;
static_assert(OperationCount < kNoRow, "a row number fits the index");

struct tIndex {
    unsigned char row[kIndexSize];
    bool clash;  // some ID claimed by two rows
};

constexpr tIndex BuildIndex() {
    tIndex index{};
    for (unsigned char& row : index.row) row = kNoRow;
    for (unsigned int r = 0; r < OperationCount; ++r) {
        const tOperation& row = Detail::kOperations[r];
        for (unsigned int i = 0; i < row.count; ++i) {
            unsigned char& slot = index.row[row.id + i - kLowestId];
            index.clash = index.clash || slot != kNoRow;
            slot = static_cast<unsigned char>(r);
        }
    }
    return index;
}
inline constexpr tIndex kIndex = BuildIndex();

// The row number of a leaf ID, or kNoRow when no row has it.
constexpr unsigned int RowOf(unsigned int id) {
    const unsigned int at = id - kLowestId;  // below the lowest wraps far past the end
    return at < kIndexSize ? kIndex.row[at] : kNoRow;
}

// The row of a leaf ID, or null when no row has it.
constexpr const tOperation* Find(unsigned int id) {
    const unsigned int row = RowOf(id);
    return row != kNoRow ? &Detail::kOperations[row] : nullptr;
}

constexpr bool CoversEveryLeafOnce() {
    unsigned int claimed = 0;
    for (const tOperation& row : Detail::kOperations) claimed += row.count;
    if (kIndex.clash || claimed != sizeof Detail::kLeafIds / sizeof Detail::kLeafIds[0]) {
        return false;
    }
    for (unsigned int id : Detail::kLeafIds) {
        if (RowOf(id) == kNoRow) return false;
    }
    return true;
}
static_assert(CoversEveryLeafOnce(),
              "every leaf ID of the message has exactly one row, and every row's leaves are "
              "leaves of the message");

// The calls match the form by construction (the rows are made by Detail's
// helpers); what is checked here is the rest of a row's shape.
constexpr bool RowsAreSound() {
    for (unsigned int r = 0; r < OperationCount; ++r) {
        const tOperation& row = Detail::kOperations[r];
        const bool run = row.form == eForm::TextParts || row.form == eForm::ByteGroup;
        if (!run && (row.count != 1 || row.argument != 0)) return false;
        if ((row.node != SMSTypeIds::TypeIdCompTypeSMS) != (row.form == eForm::ByteGroup)) {
            return false;
        }
        // The parser calls the two operations with runs by name.
        if ((row.form == eForm::TextParts) != (r == OriginatorName) ||
            (row.form == eForm::ByteGroup) != (r == Concat)) {
            return false;
        }
    }
    return true;
}
static_assert(RowsAreSound(),
              "single leaves fill the one argument, only the byte group has a node of its own, "
              "and the runs are the operations the parser names");
static_assert(Row(Concat).node == SMSTypeIds::TypeIdPropTypeConcat && Row(Concat).count == 3 &&
                  Row(OriginatorName).argument + Row(OriginatorName).count == 6 &&
                  RowOf(SMSTypeIds::TypeIdValTypeNamePart3) == OriginatorName &&
                  RowOf(SMSTypeIds::TypeIdValTypeConcat3) == Concat &&
                  RowOf(SMSTypeIds::TypeIdValTypeBody) == Body &&
                  RowOf(SMSTypeIds::TypeIdCompTypeSMS) == kNoRow && RowOf(0) == kNoRow,
              "the runs hold every argument of their operation, and the index finds them");

}  // namespace SMSLayout
}  // namespace PimShared

#endif
