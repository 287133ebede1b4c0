#ifndef PIMTLV_PIMSHARED_IM_TLVIMCREATOR_H
#define PIMTLV_PIMSHARED_IM_TLVIMCREATOR_H

#include "pimshared/common/MimeMessageCreator.h"
#include "pimshared/im/IIMCreator.h"
#include "platform/PalExport.h"

namespace PimShared {

/// Writes one instant message as a TLV stream: node 2 { UInt32 10, node 900 {
/// the message's properties, one node 900 per nested entity } }. Call Begin,
/// the properties and entities, End, then GetData; Reset before the next one.
class PIMTLV_API CTLVIMCreator : public TMimeMessageCreator<IIMCreator> {
  public:
    /// Makes an empty creator; creators are not copied.
    /// @{
    CTLVIMCreator() noexcept;
    /// @}
    ~CTLVIMCreator() override;

    /// The client is written, before the texts, unless it is NotGiven; the
    /// texts only when given.
    bool Mailbox(const eMailboxFieldType& fieldType, eUCIClient client, const char* displayName,
                 const char* address) override;
    /// Writes the property as IIMAttributes describes it; false when it was not written.
    /// @{
    bool Direction(const eDirection& direction) override;
    bool EntityType(const eEntityType& entityType) override;
    bool ExtendedData(const PAL::TVector<tExtendedData>& data) override;
    bool ConversationID(const char* text) override;
    bool ConversationName(const char* text) override;
    bool ConversationLastActivity(const char* text) override;
    bool ConversationVersionCounter(const char* text) override;
    bool ConversationSummary(const char* text) override;
    bool OwnerAvailability(ePresenceAvailability availability) override;
    bool OwnerText(const char* text) override;
    bool OwnerLastActivity(const char* text) override;
    bool OwnerChatState(eChatState chatState) override;
    bool ConversationParticipant(eUCIClient client, const char* text1, const char* text2,
                                 eChatState chatState, const char* text3, const char* text4,
                                 const char* text5, ePresenceAvailability availability,
                                 const char* text6, const unsigned char& flags) override;
    /// @}
};

}  // namespace PimShared

#endif
