#ifndef PIMTLV_PIMSHARED_IM_IIMATTRIBUTES_H
#define PIMTLV_PIMSHARED_IM_IIMATTRIBUTES_H

#include "pimshared/common/IMimeMessageAttributes.h"
#include "pimshared/common/MimeMessageDescription.h"
#include "platform/PalExport.h"
#include "platform/TVector.h"

namespace PimShared {

/// An instant message, property by property: the MIME message operations it
/// shares with the e-mail, a mailbox that also names the sender's client, then
/// the conversation, its owner's presence, a participant and extended data.
class PIMTLV_API IIMAttributes : public IMimeMessageAttributes {
  public:
    /// The messaging client of an address. Not given: never written.
    enum eUCIClient : unsigned int {
        eUCIClientUnknown = 0,
        eUCIClientNative = 1,
        eUCIClientXmpp = 2,
        eUCIClientSip = 3,
        eUCIClientOther = 4,
        eUCIClientNotGiven = 0xFFFFFFFFu,
    };
    /// Chat states as clients announce them while a conversation is open.
    enum eChatState : unsigned int {
        eChatStateActive = 0,
        eChatStateComposing = 1,
        eChatStatePaused = 2,
        eChatStateInactive = 3,
        eChatStateGone = 4,
        eChatStateNotGiven = 0xFFFFFFFFu,
    };
    /// Presence of a conversation's owner or participant.
    enum ePresenceAvailability : unsigned int {
        ePresenceAvailabilityAvailable = 0,
        ePresenceAvailabilityAway = 1,
        ePresenceAvailabilityExtendedAway = 2,
        ePresenceAvailabilityDoNotDisturb = 3,
        ePresenceAvailabilityOffline = 4,
        ePresenceAvailabilityInvisible = 5,
        ePresenceAvailabilityNotGiven = 0xFFFFFFFFu,
    };
    /// Whether the message came in or went out.
    enum eDirection : unsigned int {
        eDirectionIncoming = 0,
        eDirectionOutgoing = 1,
    };
    /// What the entry is: a message, a file transfer or a notice of the service.
    enum eEntityType : unsigned int {
        eEntityTypeMessage = 0,
        eEntityTypeFileTransfer = 1,
        eEntityTypeSystemNotice = 2,
    };
    /// Keys of extended data; their values are plain numbers.
    enum eExtendedDataKey : unsigned int {
        eExtendedDataKeyNone = 0,
        eExtendedDataKeyUnreadCount = 1,
        eExtendedDataKeyDeliveryReport = 2,
        eExtendedDataKeyDisplayReport = 3,
    };

    /// One address of a header field and its client. Borrows its texts.
    struct tMailbox {
        /// The header field, the client, the display name (may be null) and the address.
        /// @{
        eMailboxFieldType fieldType;
        eUCIClient client;
        const char* displayName;
        const char* address;
        /// @}
    };
    /// One key and value of extended data; the key travels as one byte.
    struct tExtendedData {
        eExtendedDataKey key;  ///< what the number counts
        int value;             ///< the number
    };

    using IMimeMessageAttributes::Priority;

    /// The members' clients do not travel inside a group.
    virtual bool Group(const char* name, const PAL::TVector<tMailbox>& mailboxes) = 0;
    /// One property of the item with its values. A creator writes it; a parser calls it on its
    /// receiver with the values read (texts may be null when not given). True to go on.
    /// @{
    virtual bool Mailbox(const eMailboxFieldType& fieldType, eUCIClient client,
                         const char* displayName, const char* address) = 0;
    virtual bool Priority(const ePriority& priority) = 0;
    virtual bool Direction(const eDirection& direction) = 0;
    virtual bool EntityType(const eEntityType& entityType) = 0;
    virtual bool ExtendedData(const PAL::TVector<tExtendedData>& data) = 0;
    virtual bool ConversationID(const char* text) = 0;
    virtual bool ConversationName(const char* text) = 0;
    virtual bool ConversationLastActivity(const char* text) = 0;
    virtual bool ConversationVersionCounter(const char* text) = 0;
    virtual bool ConversationSummary(const char* text) = 0;
    virtual bool OwnerAvailability(ePresenceAvailability availability) = 0;
    virtual bool OwnerText(const char* text) = 0;
    virtual bool OwnerLastActivity(const char* text) = 0;
    virtual bool OwnerChatState(eChatState chatState) = 0;
    /// @}
    /// A conversation participant. The codec treats the six texts by position
    /// only. The client is not written, so a reader always reports it as not
    /// given; the enumerations as NotGiven and flags as 0xFF are not written.
    virtual bool ConversationParticipant(eUCIClient client, const char* text1, const char* text2,
                                         eChatState chatState, const char* text3, const char* text4,
                                         const char* text5, ePresenceAvailability availability,
                                         const char* text6, const unsigned char& flags) = 0;

  protected:
    /// Special members; an interface is made and copied only as part of the class
    /// that implements it.
    /// @{
    IIMAttributes() = default;
    IIMAttributes(const IIMAttributes&) = default;
    IIMAttributes& operator=(const IIMAttributes&) = default;
    ~IIMAttributes() = default;
    /// @}
};

}  // namespace PimShared

// The operations above, described once for the code that iterates them (the
// do-nothing receiver, the tool's documents, the recording receivers of tests,
// fuzzers and benchmarks): an operation is declared above and listed here, and
// a list that does not match the declarations does not compile.
#define PIMTLV_IM_OPERATIONS(OP, OP0, OVERLOAD)                                            \
    PIMTLV_MIME_MESSAGE_OPERATIONS(OP, OP0, OVERLOAD)                                      \
    OP(Group, "name", "mailboxes")                                                         \
    OP(Mailbox, "fieldType", "client", "displayName", "address")                           \
    OVERLOAD(Priority, Priority, (const IIMAttributes::ePriority&), "priority")            \
    OP(Direction, "direction")                                                             \
    OP(EntityType, "entityType")                                                           \
    OP(ExtendedData, "data")                                                               \
    OP(ConversationID, "text")                                                             \
    OP(ConversationName, "text")                                                           \
    OP(ConversationLastActivity, "text")                                                   \
    OP(ConversationVersionCounter, "text")                                                 \
    OP(ConversationSummary, "text")                                                        \
    OP(OwnerAvailability, "availability")                                                  \
    OP(OwnerText, "text")                                                                  \
    OP(OwnerLastActivity, "text")                                                          \
    OP(OwnerChatState, "chatState")                                                        \
    OP(ConversationParticipant, "client", "text1", "text2", "chatState", "text3", "text4", \
       "text5", "availability", "text6", "flags")

#endif
