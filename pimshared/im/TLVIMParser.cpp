#include "pimshared/im/TLVIMParser.h"
#include "pimshared/common/ParserFrame.h"

#include <new>

#include "pimshared/common/MimeMessageParser.h"
#include "pimshared/common/TypeIds.h"
#include "pimshared/im/IMTypeIds.h"

namespace PimShared {

using namespace IMTypeIds;

// The MIME message engine with the instant message's IDs, a client in each
// mailbox, and the additions: conversation and owner leaves delivered at once,
// a participant node and an extended-data node delivered at their end.
class CTLVIMParser::CTLVIMParserImpl final : public CMimeMessageParserEngine {
  public:
    explicit CTLVIMParserImpl(IIMReceiver& receiver)
        : CMimeMessageParserEngine(receiver, kIMIds), m_receiver(receiver) {
        ResetParticipant();
    }

  private:
    using A = IIMAttributes;

    bool Trace(int code, const char* text) override { return m_receiver.TraceMessage(code, text); }
    bool DeliverPriority(unsigned int priority) override {
        return m_receiver.Priority(static_cast<A::ePriority>(priority));
    }
    bool DeliverMailbox(const MailboxFields& m) override {
        return m_receiver.Mailbox(static_cast<A::eMailboxFieldType>(m.fieldType),
                                  static_cast<A::eUCIClient>(m.client), m.displayName, m.address);
    }
    bool DeliverGroup(const char* name) override { return m_receiver.Group(name, m_group); }
    void AppendToGroup(const MailboxFields& m) override {
        m_group.pushBack(A::tMailbox{static_cast<A::eMailboxFieldType>(m.fieldType),
                                     static_cast<A::eUCIClient>(m.client), m.displayName,
                                     m.address});
    }
    void ClearGroup() override { m_group.clear(); }

    void ResetAdditions() override {
        ResetParticipant();
        m_extendedOpen = false;
        m_key = 0;
        m_value = 0;
        m_extended.clear();
    }
    // An open extended-data node does not keep an entity out; a participant does.
    bool AdditionBlocksEntity() const override { return m_participantOpen; }

    Answer AdditionNodeBegin(unsigned int typeId) override {
        if (typeId == TypeIdPropTypeImParticipant && !m_participantOpen) {
            ResetParticipant();
            m_participantOpen = true;
            return Answer::Go;
        }
        if (typeId == TypeIdPropTypeImExtendedData && !m_extendedOpen) {
            m_extendedOpen = true;
            m_key = 0;
            m_value = 0;
            m_extended.clear();
            return Answer::Go;
        }
        return Answer::Refuse;
    }

    Answer AdditionNodeEnd(unsigned int typeId) override {
        if (typeId == TypeIdPropTypeImParticipant && m_participantOpen) {
            const bool ok = m_receiver.ConversationParticipant(
                A::eUCIClientNotGiven, m_texts[0], m_texts[1],
                static_cast<A::eChatState>(m_chatState), m_texts[2], m_texts[3], m_texts[4],
                static_cast<A::ePresenceAvailability>(m_availability), m_texts[5], m_flags);
            ResetParticipant();
            return AnswerOf(ok);
        }
        if (typeId == TypeIdPropTypeImExtendedData && m_extendedOpen) {
            const bool ok = m_receiver.ExtendedData(m_extended);
            m_extendedOpen = false;
            m_extended.clear();
            return AnswerOf(ok);
        }
        return Answer::Refuse;
    }

    Answer AdditionUInt8(unsigned int typeId, unsigned char value) override {
        switch (typeId) {
            case TypeIdPropTypeImDirection:
                return AnswerOf(m_receiver.Direction(static_cast<A::eDirection>(value)));
            case TypeIdPropTypeImEntityType:
                return AnswerOf(m_receiver.EntityType(static_cast<A::eEntityType>(value)));
            case TypeIdPropTypeImOwnerAvailability:
                return AnswerOf(
                    m_receiver.OwnerAvailability(static_cast<A::ePresenceAvailability>(value)));
            case TypeIdPropTypeImOwnerChatState:
                return AnswerOf(m_receiver.OwnerChatState(static_cast<A::eChatState>(value)));
            case TypeIdValTypeImExtendedDataKey:
                m_key = value;  // wherever it stands inside the message
                return Answer::Go;
            case TypeIdValTypeImMailboxClient:
                if (!MailboxOpen()) return Answer::Refuse;
                CurrentMailbox().client = value;
                return Answer::Go;
            case TypeIdValTypeImParticipantChatState:
                return StoreInParticipant(m_chatState, value);
            case TypeIdValTypeImParticipantAvailability:
                return StoreInParticipant(m_availability, value);
            case TypeIdValTypeImParticipantFlags:
                if (!m_participantOpen) return Answer::Refuse;
                m_flags = value;
                return Answer::Go;
            default:
                return Answer::Refuse;
        }
    }

    Answer AdditionString(unsigned int typeId, const char* text) override {
        switch (typeId) {
            case TypeIdPropTypeImConversationId:
                return AnswerOf(m_receiver.ConversationID(text));
            case TypeIdPropTypeImConversationName:
                return AnswerOf(m_receiver.ConversationName(text));
            case TypeIdPropTypeImConversationLastActivity:
                return AnswerOf(m_receiver.ConversationLastActivity(text));
            case TypeIdPropTypeImConversationVersionCounter:
                return AnswerOf(m_receiver.ConversationVersionCounter(text));
            case TypeIdPropTypeImConversationSummary:
                return AnswerOf(m_receiver.ConversationSummary(text));
            // The owner's text and last activity never stop a walk.
            case TypeIdPropTypeImOwnerText:
                m_receiver.OwnerText(text);
                return Answer::Go;
            case TypeIdPropTypeImOwnerLastActivity:
                m_receiver.OwnerLastActivity(text);
                return Answer::Go;
            default:
                break;
        }
        for (unsigned int i = 0; i < kParticipantTexts; ++i) {
            if (typeId == kParticipantTextIds[i]) {
                if (!m_participantOpen) return Answer::Refuse;
                m_texts[i] = text;
                return Answer::Go;
            }
        }
        return Answer::Refuse;
    }

    // A value joins the list under the last key seen, wherever it stands in
    // the object; the key is kept for the values that follow.
    Answer AdditionInt32(unsigned int typeId, int value) override {
        if (typeId != TypeIdValTypeImExtendedDataValue || !InObject()) return Answer::Refuse;
        m_value = value;
        m_extended.pushBack(A::tExtendedData{static_cast<A::eExtendedDataKey>(m_key), m_value});
        return Answer::Go;
    }

    Answer StoreInParticipant(unsigned int& slot, unsigned char value) {
        if (!m_participantOpen) return Answer::Refuse;
        slot = value;
        return Answer::Go;
    }

    void ResetParticipant() {
        m_participantOpen = false;
        for (const char*& text : m_texts) text = nullptr;
        m_chatState = A::eChatStateNotGiven;
        m_availability = A::ePresenceAvailabilityNotGiven;
        m_flags = 0xFF;
    }

    static constexpr unsigned int kParticipantTexts =
        sizeof kParticipantTextIds / sizeof kParticipantTextIds[0];

    IIMReceiver& m_receiver;
    PAL::TVector<A::tMailbox> m_group;

    bool m_participantOpen = false;
    const char* m_texts[kParticipantTexts] = {};
    unsigned int m_chatState = A::eChatStateNotGiven;
    unsigned int m_availability = A::ePresenceAvailabilityNotGiven;
    unsigned char m_flags = 0xFF;

    bool m_extendedOpen = false;
    unsigned int m_key = 0;
    int m_value = 0;
    PAL::TVector<A::tExtendedData> m_extended;
};

CTLVIMParser::CTLVIMParser(IIMReceiver& receiver)
    : m_impl(new (std::nothrow) CTLVIMParserImpl(receiver)) {}

CTLVIMParser::~CTLVIMParser() = default;

bool CTLVIMParser::Parse(const void* data, const unsigned int& length, const char*& errorText,
                         unsigned int& consumed) {
    return ForwardParse(m_impl.get(), data, length, errorText, consumed);
}

const ParserCreatorCollection::TLVError& CTLVIMParser::LastError() const noexcept {
    return ForwardLastError(m_impl.get());
}

}  // namespace PimShared
