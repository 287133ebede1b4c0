// The instant message in the tool.
#include "items/MimeMessage.h"
#include "pimshared/im/IMTypeIds.h"
#include "pimshared/im/TLVIMCreator.h"
#include "pimshared/im/TLVIMParser.h"

namespace PimTool {

using ImMailbox = PimShared::IIMAttributes::tMailbox;
using ImExtendedData = PimShared::IIMAttributes::tExtendedData;

template <>
struct Codec<ImMailbox>
    : RecordCodec<Codec<ImMailbox>, ImMailbox, &ImMailbox::fieldType, &ImMailbox::client,
                  &ImMailbox::displayName, &ImMailbox::address> {
    static constexpr const char* kFields[] = {"fieldType", "client", "displayName", "address"};
};

template <>
struct Codec<ImExtendedData> : RecordCodec<Codec<ImExtendedData>, ImExtendedData,
                                           &ImExtendedData::key, &ImExtendedData::value> {
    static constexpr const char* kFields[] = {"key", "value"};
};

namespace {

using I = PimShared::IIMAttributes;
constexpr bool (I::*kPriority)(const I::ePriority&) = &I::Priority;

std::vector<OpEntry> ImOps() {
    std::vector<OpEntry> ops = MimeCommonOps<I>();
    const std::vector<OpEntry> own = {
        Op<&I::Group>("Group", "name", "mailboxes"),
        Op<&I::Mailbox>("Mailbox", "fieldType", "client", "displayName", "address"),
        Op<kPriority>("Priority", "priority"),
        Op<&I::Direction>("Direction", "direction"),
        Op<&I::EntityType>("EntityType", "entityType"),
        Op<&I::ExtendedData>("ExtendedData", "data"),
        Op<&I::ConversationID>("ConversationID", "text"),
        Op<&I::ConversationName>("ConversationName", "text"),
        Op<&I::ConversationLastActivity>("ConversationLastActivity", "text"),
        Op<&I::ConversationVersionCounter>("ConversationVersionCounter", "text"),
        Op<&I::ConversationSummary>("ConversationSummary", "text"),
        Op<&I::OwnerAvailability>("OwnerAvailability", "availability"),
        Op<&I::OwnerText>("OwnerText", "text"),
        Op<&I::OwnerLastActivity>("OwnerLastActivity", "text"),
        Op<&I::OwnerChatState>("OwnerChatState", "chatState"),
        Op<&I::ConversationParticipant>("ConversationParticipant", "client", "text1", "text2",
                                        "chatState", "text3", "text4", "text5", "availability",
                                        "text6", "flags"),
    };
    ops.insert(ops.end(), own.begin(), own.end());
    return ops;
}

class ImRecorder : public MimeCommonRecorder<PimShared::IIMReceiver> {
  public:
    using MimeCommonRecorder::MimeCommonRecorder;
    using MimeCommonRecorder::Priority;

    bool Group(CText name, const PAL::TVector<ImMailbox>& mailboxes) override {
        return m_rec.Put<&I::Group>(name, mailboxes);
    }
    bool Mailbox(const eMailboxFieldType& type, eUCIClient client, CText name,
                 CText address) override {
        return m_rec.Put<&I::Mailbox>(type, client, name, address);
    }
    bool Priority(const ePriority& priority) override { return m_rec.Put<kPriority>(priority); }
    bool Direction(const eDirection& d) override { return m_rec.Put<&I::Direction>(d); }
    bool EntityType(const eEntityType& t) override { return m_rec.Put<&I::EntityType>(t); }
    bool ExtendedData(const PAL::TVector<ImExtendedData>& data) override {
        return m_rec.Put<&I::ExtendedData>(data);
    }
    bool ConversationID(CText t) override { return m_rec.Put<&I::ConversationID>(t); }
    bool ConversationName(CText t) override { return m_rec.Put<&I::ConversationName>(t); }
    bool ConversationLastActivity(CText t) override {
        return m_rec.Put<&I::ConversationLastActivity>(t);
    }
    bool ConversationVersionCounter(CText t) override {
        return m_rec.Put<&I::ConversationVersionCounter>(t);
    }
    bool ConversationSummary(CText t) override { return m_rec.Put<&I::ConversationSummary>(t); }
    bool OwnerAvailability(ePresenceAvailability a) override {
        return m_rec.Put<&I::OwnerAvailability>(a);
    }
    bool OwnerText(CText t) override { return m_rec.Put<&I::OwnerText>(t); }
    bool OwnerLastActivity(CText t) override { return m_rec.Put<&I::OwnerLastActivity>(t); }
    bool OwnerChatState(eChatState s) override { return m_rec.Put<&I::OwnerChatState>(s); }
    bool ConversationParticipant(eUCIClient client, CText t1, CText t2, eChatState state, CText t3,
                                 CText t4, CText t5, ePresenceAvailability availability, CText t6,
                                 const unsigned char& flags) override {
        return m_rec.Put<&I::ConversationParticipant>(client, t1, t2, state, t3, t4, t5,
                                                      availability, t6, flags);
    }
};

std::vector<TypeName> ImNames() {
    using namespace PimShared::IMTypeIds;
    return {
        PIMTLV_MESSAGE_NAME(TypeIdCompTypeIm),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImSendingState),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImOrigDate),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImOrigDateLocal),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImSubject),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImReadStatus),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImMimeVersion),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImMessageId),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImReferences),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImInReplyTo),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImCutoffState),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImComments),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImKeywords),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImContentTransferEncoding),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImContentId),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImContentDescription),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImPriorityLevel),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImDownloadState),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImAttachmentAvailable),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImMailbox),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImMailboxFieldType),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImMailboxDisplayName),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImMailboxAddress),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImMailboxClient),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImContentType),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImContentType),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImContentTypeToken),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImBody),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImBodyEncoding),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImBodyCharset),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImBodyContent),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImBodyContentLink),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImContentSubtype),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImContentSubtype),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImContentSubtypeToken),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImContentDisposition),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImContentDispositionType),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImContentDispositionToken),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImContentTypeParam),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImContentParamName),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImContentParamValue),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImContentParamNameToken),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImContentParamValueToken),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImContentDispositionParam),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImDispositionParamName),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImDispositionParamValue),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImDispositionParamNameToken),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImGroup),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImGroupName),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImDirection),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImConversationId),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImConversationName),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImConversationLastActivity),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImConversationVersionCounter),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImConversationSummary),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImParticipant),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImParticipantText1),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImParticipantText2),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImParticipantChatState),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImParticipantText3),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImParticipantText4),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImParticipantText5),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImParticipantAvailability),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImParticipantText6),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImParticipantFlags),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImExtendedData),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImExtendedDataKey),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImExtendedDataValue),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImEntityType),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImOwnerAvailability),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImOwnerText),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImOwnerLastActivity),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImOwnerChatState),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeFolder),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeInstanceName),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeMessagePriority),
    };
}

}  // namespace

const ItemAdapter kImItem = {
    "im",
    ImNames(),
    ImOps(),
    &DecodeWith<PimShared::CTLVIMParser, ImRecorder>,
    &EncodeWith<I, PimShared::CTLVIMCreator>,
    "PriorityLevel is written but read back as an unexpected element; BodyTypedLink comes back "
    "as BodyLink with the default encoding and charset; a participant's client "
    "and a group member's client are not written, so they come back as not given; "
    "not-given enumerations and a 0xFF flag byte are not written.",
};

}  // namespace PimTool
