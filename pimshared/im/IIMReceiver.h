#ifndef PIMTLV_PIMSHARED_IM_IIMRECEIVER_H
#define PIMTLV_PIMSHARED_IM_IIMRECEIVER_H

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
class CIMReceiverBase : public IIMReceiver {
  public:
    bool Begin(const unsigned int& /*instance*/) override { return true; }
    bool End() override { return true; }
    bool BeginEntity() override { return true; }
    bool EndEntity() override { return true; }
    bool AttachmentAvailable(const eAttachmentAvailable& /*value*/) override { return true; }
    bool CutoffState(const unsigned short& /*value*/) override { return true; }
    bool Comments(const char* /*text*/) override { return true; }
    bool ContentDescription(const char* /*text*/) override { return true; }
    bool ContentId(const char* /*text*/) override { return true; }
    bool ContentTransferEncodingEnum(const eContentTransferEncoding& /*value*/) override {
        return true;
    }
    bool ReadStatus(const eReadStatus& /*value*/) override { return true; }
    bool DownloadState(const eDownloadState& /*value*/) override { return true; }
    bool Folder(const char* /*text*/) override { return true; }
    bool InReplyTo(const char* /*text*/) override { return true; }
    bool Instance(const char* /*text*/) override { return true; }
    bool Keywords(const char* /*text*/) override { return true; }
    bool MessageId(const char* /*text*/) override { return true; }
    bool MimeVersion(const char* /*text*/) override { return true; }
    bool OrigDate(const char* /*text*/) override { return true; }
    bool SendingState(const char* /*text*/) override { return true; }
    bool OrigDateLocal(const char* /*text*/) override { return true; }
    bool Priority(const unsigned char& /*level*/) override { return true; }
    bool References(const char* /*text*/) override { return true; }
    bool Subject(const char* /*text*/) override { return true; }
    bool Body(const eBodyEncoding& /*encoding*/, const eBodyCharset& /*charset*/,
              const void* /*content*/, const unsigned int& /*contentLength*/) override {
        return true;
    }
    bool Body(const eBodyEncoding& /*encoding*/, const eBodyCharset& /*charset*/,
              const char* /*contentLink*/) override {
        return true;
    }
    bool Body(const char* /*contentTypeToken*/, const char* /*contentSubtypeToken*/,
              const char* /*contentLink*/) override {
        return true;
    }
    bool ContentDispositionType(const eContentDispositionType& /*type*/,
                                const char* /*token*/) override {
        return true;
    }
    bool ContentDispositionTypeParam(const eContentDispositionParamName& /*name*/,
                                     const char* /*value*/, const char* /*nameToken*/) override {
        return true;
    }
    bool ContentSubtype(const eContentSubtype& /*subtype*/, const char* /*token*/) override {
        return true;
    }
    bool ContentType(const eContentType& /*type*/, const char* /*token*/) override { return true; }
    bool ContentTypeParam(const eContentParamName& /*name*/, const eContentParamValue& /*value*/,
                          const char* /*nameToken*/, const char* /*valueToken*/) override {
        return true;
    }
    bool Group(const char* /*name*/, const PAL::TVector<tMailbox>& /*mailboxes*/) override {
        return true;
    }
    bool Mailbox(const eMailboxFieldType& /*fieldType*/, eUCIClient /*client*/,
                 const char* /*displayName*/, const char* /*address*/) override {
        return true;
    }
    bool Priority(const ePriority& /*priority*/) override { return true; }
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
    bool TraceMessage(const int& /*code*/, const char* /*text*/) override { return true; }
};

}  // namespace PimShared

#endif
