#ifndef PIMTLV_PIMSHARED_IM_IIMRECEIVER_H
#define PIMTLV_PIMSHARED_IM_IIMRECEIVER_H

#include "pimshared/common/ReceiverBases.h"
#include "pimshared/im/IIMAttributes.h"
#include "platform/PalExport.h"

namespace PimShared {

/// What CTLVIMParser calls: the instant message's properties as they are read,
/// then every diagnostic (codes as for the e-mail: 1 an element of an undefined
/// class, 2 an element refused in its place, 3 a body with both content and
/// link, or a broken stream). Texts and bytes are valid only during the call.
class PIMTLV_API IIMReceiver : public IIMAttributes {
  public:
    /// Every diagnostic of the parser: a code (listed with the receiver) and a text, which may be
    /// empty. True to go on.
    virtual bool TraceMessage(const int& code, const char* text) = 0;
    /// Declared last, so the operations keep their slots; receivers are
    /// written by users, whose classes should be safe to delete through this.
    virtual ~IIMReceiver() = default;

  protected:
    /// Special members; an interface is made and copied only as part of the class
    /// that implements it.
    /// @{
    IIMReceiver() = default;
    IIMReceiver(const IIMReceiver&) = default;
    IIMReceiver& operator=(const IIMReceiver&) = default;
    /// @}
};

/// A IIMReceiver that answers true to every call and keeps nothing: derive
/// from it and override only the calls you need.
class CIMReceiverBase : public TMimeMessageReceiverBase<IIMReceiver> {
  public:
    bool Group(const char* /*name*/, const PAL::TVector<tMailbox>& /*mailboxes*/) override {
        return true;
    }
    bool Mailbox(const eMailboxFieldType& /*fieldType*/, eUCIClient /*client*/,
                 const char* /*displayName*/, const char* /*address*/) override {
        return true;
    }
    bool Direction(const eDirection& /*direction*/) override { return true; }
    bool EntityType(const eEntityType& /*entityType*/) override { return true; }
    bool ExtendedData(const PAL::TVector<tExtendedData>& /*data*/) override { return true; }
    bool ConversationID(const char* /*text*/) override { return true; }
    bool ConversationName(const char* /*text*/) override { return true; }
    bool ConversationLastActivity(const char* /*text*/) override { return true; }
    bool ConversationVersionCounter(const char* /*text*/) override { return true; }
    bool ConversationSummary(const char* /*text*/) override { return true; }
    bool OwnerAvailability(ePresenceAvailability /*availability*/) override { return true; }
    bool OwnerText(const char* /*text*/) override { return true; }
    bool OwnerLastActivity(const char* /*text*/) override { return true; }
    bool OwnerChatState(eChatState /*chatState*/) override { return true; }
    bool ConversationParticipant(eUCIClient /*client*/, const char* /*text1*/,
                                 const char* /*text2*/, eChatState /*chatState*/,
                                 const char* /*text3*/, const char* /*text4*/,
                                 const char* /*text5*/, ePresenceAvailability /*availability*/,
                                 const char* /*text6*/, const unsigned char& /*flags*/) override {
        return true;
    }
};

}  // namespace PimShared

#endif
