#include "pimshared/sms/TLVSMSCreator.h"

#include "parsercreatorcollection/src/tlv/creator/private/TLVCreatorImpl.h"
#include "pimshared/sms/SMSTypeIds.h"

namespace PimShared {

using namespace SMSTypeIds;

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

bool CTLVSMSCreator::Text(unsigned int typeId, const char* text) {
    auto* tlv = Writer();
    return tlv != nullptr && tlv->LeafString(typeId, text);
}

bool CTLVSMSCreator::NonEmptyText(unsigned int typeId, const char* text) {
    return text != nullptr && text[0] != 0 && Text(typeId, text);
}

bool CTLVSMSCreator::Byte(unsigned int typeId, unsigned int value) {
    auto* tlv = Writer();
    const auto low = static_cast<unsigned char>(value & 0xFFu);
    return tlv != nullptr && tlv->LeafUInt8(typeId, low);
}

bool CTLVSMSCreator::Body(const char* text) {
    return Text(TypeIdValTypeBody, text);
}

bool CTLVSMSCreator::Concat(const unsigned char& first, const unsigned char& second,
                            const unsigned char& third) {
    auto* tlv = Writer();
    return tlv != nullptr && tlv->NodeBegin(TypeIdPropTypeConcat) &&
           tlv->LeafUInt8(TypeIdValTypeConcat1, first) &&
           tlv->LeafUInt8(TypeIdValTypeConcat2, second) &&
           tlv->LeafUInt8(TypeIdValTypeConcat3, third) && tlv->NodeEnd(TypeIdPropTypeConcat);
}

bool CTLVSMSCreator::Destination(const char* text) {
    return Text(TypeIdValTypeDestination, text);
}

bool CTLVSMSCreator::ReadStatus(const eReadStatus& status) {
    return Byte(TypeIdValTypeReadStatus, status);
}

bool CTLVSMSCreator::DownloadState(const eDownloadState& state) {
    return Byte(TypeIdValTypeDownloadState, state);
}

bool CTLVSMSCreator::Folder(const char* text) {
    return Text(TypeIdValTypeFolder, text);
}

bool CTLVSMSCreator::Instance(const char* text) {
    return Text(TypeIdValTypeInstanceName, text);
}

bool CTLVSMSCreator::Originator(const char* text) {
    return Text(TypeIdValTypeOriginator, text);
}

bool CTLVSMSCreator::OriginatorName(const char* /*part1*/, const char* part2, const char* part3,
                                    const char* part4, const char* part5, const char* part6) {
    auto* tlv = Writer();
    if (tlv == nullptr) return true;
    const char* const parts[] = {part2, part3, part4, part5, part6};
    static_assert(
        sizeof parts / sizeof parts[0] == TypeIdValTypeNamePart5 - TypeIdValTypeNamePart1 + 1,
        "one name part ID per written part");
    bool ok = true;
    for (unsigned int i = 0; i < sizeof parts / sizeof parts[0]; ++i) {
        if (parts[i] == nullptr || parts[i][0] == 0) continue;
        // Each part stands on its own: a refused one does not hold back the rest.
        ok = tlv->LeafString(TypeIdValTypeNamePart1 + i, parts[i]);
    }
    return ok;
}

bool CTLVSMSCreator::OriginatorFName(const char* text) {
    return NonEmptyText(TypeIdValTypeOriginatorFName, text);
}

bool CTLVSMSCreator::DestinationFName(const char* text) {
    return NonEmptyText(TypeIdValTypeDestinationFName, text);
}

bool CTLVSMSCreator::ServiceCenter(const char* text) {
    return Text(TypeIdValTypeServiceCenter, text);
}

bool CTLVSMSCreator::SMSState(const eSMSState& state) {
    return Byte(TypeIdValTypeSMSState, state);
}

bool CTLVSMSCreator::SMSType(const eSMSType& type) {
    return Byte(TypeIdValTypeSMSType, type);
}

bool CTLVSMSCreator::StorageType(const eStorageType& type) {
    return Byte(TypeIdValTypeStorageType, type);
}

bool CTLVSMSCreator::StorageIndex(const unsigned short& index) {
    auto* tlv = Writer();
    return tlv != nullptr && tlv->LeafUInt16(TypeIdValTypeStorageIndex, index);
}

bool CTLVSMSCreator::SendingState(const char* text) {
    return Text(TypeIdValTypeSendingState, text);
}

bool CTLVSMSCreator::Subject(const char* text) {
    return Text(TypeIdValTypeSubject, text);
}

bool CTLVSMSCreator::Timestamp(const char* text) {
    return Text(TypeIdValTypeTimestamp, text);
}

bool CTLVSMSCreator::TimestampLocal(const char* text) {
    return Text(TypeIdValTypeTimestampLocal, text);
}

bool CTLVSMSCreator::Priority(const ePriority& priority) {
    return Byte(TypeIdValTypeMessagePriority, priority);
}

bool CTLVSMSCreator::Reset() {
    return FrameReset();
}

bool CTLVSMSCreator::GetData(const void*& data, unsigned int& length) {
    return FrameGetData(data, length);
}

}  // namespace PimShared
