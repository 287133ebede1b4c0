#include "pimshared/im/TLVIMCreator.h"

#include "parsercreatorcollection/src/tlv/creator/private/TLVCreatorImpl.h"
#include "pimshared/im/IMTypeIds.h"

namespace PimShared {

using namespace IMTypeIds;

namespace {

// A participant's optional parts are left out when not given.
bool OptionalText(TlvWriter& tlv, unsigned int id, const char* text) {
    return text == nullptr || tlv.LeafString(id, text);
}
bool OptionalByte(TlvWriter& tlv, unsigned int id, unsigned int value, unsigned int notGiven) {
    return value == notGiven || tlv.LeafUInt8(id, static_cast<unsigned char>(value & 0xFFu));
}

}  // namespace

CTLVIMCreator::CTLVIMCreator() noexcept : TMimeMessageCreator<IIMCreator>(kIMIds) {}

CTLVIMCreator::~CTLVIMCreator() = default;

bool CTLVIMCreator::Mailbox(const eMailboxFieldType& fieldType, eUCIClient client,
                            const char* displayName, const char* address) {
    return WriteMailbox(fieldType, displayName, address, TypeIdValTypeImMailboxClient, client);
}

bool CTLVIMCreator::Direction(const eDirection& direction) {
    return WriteByteLeaf(TypeIdPropTypeImDirection, direction);
}
bool CTLVIMCreator::EntityType(const eEntityType& entityType) {
    return WriteByteLeaf(TypeIdPropTypeImEntityType, entityType);
}
bool CTLVIMCreator::OwnerAvailability(ePresenceAvailability availability) {
    return WriteByteLeaf(TypeIdPropTypeImOwnerAvailability, availability);
}
bool CTLVIMCreator::OwnerChatState(eChatState chatState) {
    return WriteByteLeaf(TypeIdPropTypeImOwnerChatState, chatState);
}
bool CTLVIMCreator::ConversationID(const char* text) {
    return WriteTextLeaf(TypeIdPropTypeImConversationId, text);
}
bool CTLVIMCreator::ConversationName(const char* text) {
    return WriteTextLeaf(TypeIdPropTypeImConversationName, text);
}
bool CTLVIMCreator::ConversationLastActivity(const char* text) {
    return WriteTextLeaf(TypeIdPropTypeImConversationLastActivity, text);
}
bool CTLVIMCreator::ConversationVersionCounter(const char* text) {
    return WriteTextLeaf(TypeIdPropTypeImConversationVersionCounter, text);
}
bool CTLVIMCreator::ConversationSummary(const char* text) {
    return WriteTextLeaf(TypeIdPropTypeImConversationSummary, text);
}
bool CTLVIMCreator::OwnerText(const char* text) {
    return WriteTextLeaf(TypeIdPropTypeImOwnerText, text);
}
bool CTLVIMCreator::OwnerLastActivity(const char* text) {
    return WriteTextLeaf(TypeIdPropTypeImOwnerLastActivity, text);
}

bool CTLVIMCreator::ExtendedData(const PAL::TVector<tExtendedData>& data) {
    TlvWriter* tlv = Writer();
    if (tlv == nullptr || !tlv->NodeBegin(TypeIdPropTypeImExtendedData)) return false;
    for (const tExtendedData& entry : data) {
        if (!tlv->LeafUInt8(TypeIdValTypeImExtendedDataKey,
                            static_cast<unsigned char>(entry.key & 0xFFu)) ||
            !tlv->LeafInt32(TypeIdValTypeImExtendedDataValue, entry.value)) {
            return false;
        }
    }
    return tlv->NodeEnd(TypeIdPropTypeImExtendedData);
}

// The client argument is deliberately not written: a participant's client
// does not travel, and readers report it as not given.
bool CTLVIMCreator::ConversationParticipant(eUCIClient, const char* text1, const char* text2,
                                            eChatState chatState, const char* text3,
                                            const char* text4, const char* text5,
                                            ePresenceAvailability availability, const char* text6,
                                            const unsigned char& flags) {
    TlvWriter* tlv = Writer();
    return tlv != nullptr && tlv->NodeBegin(TypeIdPropTypeImParticipant) &&
           OptionalText(*tlv, TypeIdValTypeImParticipantText1, text1) &&
           OptionalText(*tlv, TypeIdValTypeImParticipantText2, text2) &&
           OptionalByte(*tlv, TypeIdValTypeImParticipantChatState, chatState, eChatStateNotGiven) &&
           OptionalText(*tlv, TypeIdValTypeImParticipantText3, text3) &&
           OptionalText(*tlv, TypeIdValTypeImParticipantText4, text4) &&
           OptionalText(*tlv, TypeIdValTypeImParticipantText5, text5) &&
           OptionalByte(*tlv, TypeIdValTypeImParticipantAvailability, availability,
                        ePresenceAvailabilityNotGiven) &&
           OptionalText(*tlv, TypeIdValTypeImParticipantText6, text6) &&
           OptionalByte(*tlv, TypeIdValTypeImParticipantFlags, flags, 0xFFu) &&
           tlv->NodeEnd(TypeIdPropTypeImParticipant);
}

}  // namespace PimShared
