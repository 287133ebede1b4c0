#include "pimshared/sms/TLVSMSCreator.h"

#include "parsercreatorcollection/src/tlv/creator/private/TLVCreatorImpl.h"
#include "pimshared/sms/SMSLayout.h"

namespace PimShared {

using namespace SMSTypeIds;
using SMSLayout::eForm;
using SMSLayout::Row;
using SMSLayout::tOperation;

namespace {

// Each operation writes by its row; the rows are constants, so every call
// below folds to the one write its form makes.
inline bool WriteText(TlvWriter* tlv, const tOperation& row, const char* text) {
    if (row.form == eForm::NonEmptyText && (text == nullptr || text[0] == 0)) return false;
    return tlv != nullptr && tlv->LeafString(row.id, text);
}

inline bool WriteNumber(TlvWriter* tlv, const tOperation& row, unsigned int value) {
    if (tlv == nullptr) return false;
    if (row.form == eForm::Word) return tlv->LeafUInt16(row.id, static_cast<unsigned short>(value));
    return tlv->LeafUInt8(row.id, static_cast<unsigned char>(value & 0xFFu));
}

}  // namespace

// Out of line, as for every creator: the frame it derives from is the
// library's own, and is torn down where it was built.
CTLVSMSCreator::~CTLVSMSCreator() = default;

bool CTLVSMSCreator::Begin(const unsigned int& instance) {
    auto* tlv = Writer();
    return tlv != nullptr && tlv->NodeBegin(TypeIdObjTypeMessage) &&
           tlv->LeafUInt32(TypeIdValTypeInstance, instance) && tlv->NodeBegin(TypeIdCompTypeSMS);
}

bool CTLVSMSCreator::End() {
    auto* tlv = Writer();
    return tlv != nullptr && tlv->NodeEnd(TypeIdCompTypeSMS) && tlv->NodeEnd(TypeIdObjTypeMessage);
}

bool CTLVSMSCreator::Body(const char* text) {
    return WriteText(Writer(), Row(SMSLayout::Body), text);
}

bool CTLVSMSCreator::Concat(const unsigned char& first, const unsigned char& second,
                            const unsigned char& third) {
    constexpr const tOperation& row = Row(SMSLayout::Concat);
    static_assert(row.form == eForm::ByteGroup && row.count == 3, "one leaf per number");
    auto* tlv = Writer();
    if (tlv == nullptr || !tlv->NodeBegin(row.node)) return false;
    const unsigned char bytes[] = {first, second, third};
    for (unsigned int i = 0; i < row.count; ++i) {
        if (!tlv->LeafUInt8(row.id + i, bytes[row.argument + i])) return false;
    }
    return tlv->NodeEnd(row.node);
}

bool CTLVSMSCreator::Destination(const char* text) {
    return WriteText(Writer(), Row(SMSLayout::Destination), text);
}

bool CTLVSMSCreator::ReadStatus(const eReadStatus& status) {
    return WriteNumber(Writer(), Row(SMSLayout::ReadStatus), status);
}

bool CTLVSMSCreator::DownloadState(const eDownloadState& state) {
    return WriteNumber(Writer(), Row(SMSLayout::DownloadState), state);
}

bool CTLVSMSCreator::Folder(const char* text) {
    return WriteText(Writer(), Row(SMSLayout::Folder), text);
}

bool CTLVSMSCreator::Instance(const char* text) {
    return WriteText(Writer(), Row(SMSLayout::Instance), text);
}

bool CTLVSMSCreator::Originator(const char* text) {
    return WriteText(Writer(), Row(SMSLayout::Originator), text);
}

bool CTLVSMSCreator::OriginatorName(const char* part1, const char* part2, const char* part3,
                                    const char* part4, const char* part5, const char* part6) {
    constexpr const tOperation& row = Row(SMSLayout::OriginatorName);
    static_assert(row.form == eForm::TextParts, "each part written only when given");
    auto* tlv = Writer();
    // An absent name is not an error for the devices that send these messages.
    if (tlv == nullptr) return true;
    const char* const parts[] = {part1, part2, part3, part4, part5, part6};
    static_assert(row.argument + row.count == sizeof parts / sizeof parts[0],
                  "the run ends at the last argument");
    bool ok = true;
    for (unsigned int i = 0; i < row.count; ++i) {
        const char* part = parts[row.argument + i];
        if (part == nullptr || part[0] == 0) continue;
        // Each part stands on its own: a refused one does not hold back the rest.
        ok = tlv->LeafString(row.id + i, part);
    }
    return ok;
}

bool CTLVSMSCreator::OriginatorFName(const char* text) {
    return WriteText(Writer(), Row(SMSLayout::OriginatorFName), text);
}

bool CTLVSMSCreator::DestinationFName(const char* text) {
    return WriteText(Writer(), Row(SMSLayout::DestinationFName), text);
}

bool CTLVSMSCreator::ServiceCenter(const char* text) {
    return WriteText(Writer(), Row(SMSLayout::ServiceCenter), text);
}

bool CTLVSMSCreator::SMSState(const eSMSState& state) {
    return WriteNumber(Writer(), Row(SMSLayout::SMSState), state);
}

bool CTLVSMSCreator::SMSType(const eSMSType& type) {
    return WriteNumber(Writer(), Row(SMSLayout::SMSType), type);
}

bool CTLVSMSCreator::StorageType(const eStorageType& type) {
    return WriteNumber(Writer(), Row(SMSLayout::StorageType), type);
}

bool CTLVSMSCreator::StorageIndex(const unsigned short& index) {
    return WriteNumber(Writer(), Row(SMSLayout::StorageIndex), index);
}

bool CTLVSMSCreator::SendingState(const char* text) {
    return WriteText(Writer(), Row(SMSLayout::SendingState), text);
}

bool CTLVSMSCreator::Subject(const char* text) {
    return WriteText(Writer(), Row(SMSLayout::Subject), text);
}

bool CTLVSMSCreator::Timestamp(const char* text) {
    return WriteText(Writer(), Row(SMSLayout::Timestamp), text);
}

bool CTLVSMSCreator::TimestampLocal(const char* text) {
    return WriteText(Writer(), Row(SMSLayout::TimestampLocal), text);
}

bool CTLVSMSCreator::Priority(const ePriority& priority) {
    return WriteNumber(Writer(), Row(SMSLayout::Priority), priority);
}

bool CTLVSMSCreator::Reset() {
    return FrameReset();
}

bool CTLVSMSCreator::GetData(const void*& data, unsigned int& length) {
    return FrameGetData(data, length);
}

}  // namespace PimShared
