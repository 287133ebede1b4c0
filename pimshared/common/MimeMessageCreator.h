#ifndef PIMTLV_PIMSHARED_COMMON_MIMEMESSAGECREATOR_H
#define PIMTLV_PIMSHARED_COMMON_MIMEMESSAGECREATOR_H

#include "pimshared/common/CreatorFrame.h"
#include "pimshared/common/IMimeMessageAttributes.h"
#include "pimshared/common/MimeMessageIds.h"
#include "pimshared/common/TypeIds.h"
#include "platform/PalExport.h"
#include "platform/TVector.h"

namespace PimShared {

/// The writer of a MIME message item. Unlike the calendar items, the instance
/// leaf stands between the object node and the component node, simple
/// properties are bare leaves in the component node, enumerations travel as one
/// byte, and entities nest as further component nodes. Every write stops at the
/// first refused step and leaves the node it opened open, so GetData then fails
/// instead of handing out a stream that silently lacks a value. Group is the one
/// lenient exception (see WriteGroup).
class PIMTLV_API CTLVMimeMessageFrame : public CTLVCreatorFrame {
  public:
    /// Construction, copying and destruction.
    /// @{
    explicit CTLVMimeMessageFrame(const MimeMessageIds& ids) noexcept : m_ids(ids) {}
    /// @}

    bool WriteBegin(unsigned int instance);
    bool WriteEnd();
    bool WriteEntityBegin();
    bool WriteEntityEnd();
    bool WriteText(MimeText property, const char* text);
    bool WriteByte(MimeByte property, unsigned int value);
    bool WritePriorityLevel(unsigned char level);
    /// Single leaves outside the shared table, for an item's additions.
    bool WriteTextLeaf(unsigned int typeId, const char* text);
    bool WriteByteLeaf(unsigned int typeId, unsigned int value);
    bool WriteCutoffState(unsigned short value);
    bool WriteBodyContent(unsigned int encoding, unsigned int charset, const void* content,
                          unsigned int length);
    bool WriteBodyLink(unsigned int encoding, unsigned int charset, const char* link);
    /// The type and subtype tokens stand directly in the body node, under the
    /// IDs they have inside their own nodes.
    bool WriteBodyTokens(const char* typeToken, const char* subtypeToken, const char* link);
    /// The token is written only for the extension member.
    bool WriteTyped(MimeTyped property, unsigned int value, const char* token);
    bool WriteTypeParam(unsigned int name, unsigned int value, const char* nameToken,
                        const char* valueToken);
    bool WriteDispositionParam(unsigned int name, const char* value, const char* nameToken);
    /// Texts are written only when given. A client other than TypeIdNone is
    /// written as a byte under clientId, before the texts.
    bool WriteMailbox(unsigned int fieldType, const char* displayName, const char* address,
                      unsigned int clientId = 0, unsigned int client = TypeIdNone);

    /// A group and its members. A member whose writing fails is skipped (its
    /// node stays unclosed) and the loop goes on, so one bad mailbox does not
    /// cost the others; only a failure in the last member fails the group,
    /// leaving the group node open. Both texts of a member are written even
    /// when null (as empty texts); a member's other fields never travel here.
    template <typename Mailbox>
    bool WriteGroup(const char* name, const PAL::TVector<Mailbox>& mailboxes) {
        if (!GroupBegin(name)) return false;
        bool last = true;
        for (unsigned int i = 0; i < mailboxes.size(); ++i) {
            const Mailbox* member = mailboxes.at(i);
            last = member != nullptr &&
                   GroupMember(member->fieldType, member->displayName, member->address);
        }
        return last && GroupEnd();
    }

  private:
    bool GroupBegin(const char* name);
    bool GroupMember(unsigned int fieldType, const char* displayName, const char* address);
    bool GroupEnd();
    /// NodeBegin(node), then the leaves written by leaves(), then NodeEnd(node),
    /// stopping at the first failure.
    template <typename Leaves>
    bool InNode(unsigned int node, Leaves leaves);

    const MimeMessageIds& m_ids;
};

/// The operations that e-mails and instant messages share, written once for
/// both creator interfaces. ICreator is the item's creator interface; the item
/// class adds the operations that differ (the mailbox) and its additions.
template <typename ICreator>
class TMimeMessageCreator : public ICreator, protected CTLVMimeMessageFrame {
  public:
    using A = IMimeMessageAttributes;

    /// Makes an empty creator; creators are not copied.
    /// @{
    virtual ~TMimeMessageCreator() = default;
    /// @}

    bool Begin(const unsigned int& instance) override { return WriteBegin(instance); }
    bool End() override { return WriteEnd(); }
    bool BeginEntity() override { return WriteEntityBegin(); }
    bool EndEntity() override { return WriteEntityEnd(); }
    bool AttachmentAvailable(const A::eAttachmentAvailable& value) override {
        return WriteByte(MimeByte::AttachmentAvailable, value);
    }
    bool CutoffState(const unsigned short& value) override { return WriteCutoffState(value); }
    bool Comments(const char* text) override { return WriteText(MimeText::Comments, text); }
    bool ContentDescription(const char* text) override {
        return WriteText(MimeText::ContentDescription, text);
    }
    bool ContentId(const char* text) override { return WriteText(MimeText::ContentId, text); }
    bool ContentTransferEncodingEnum(const A::eContentTransferEncoding& value) override {
        return WriteByte(MimeByte::ContentTransferEncoding, value);
    }
    bool ReadStatus(const A::eReadStatus& value) override {
        return WriteByte(MimeByte::ReadStatus, value);
    }
    bool DownloadState(const A::eDownloadState& value) override {
        return WriteByte(MimeByte::DownloadState, value);
    }
    bool Folder(const char* text) override { return WriteText(MimeText::Folder, text); }
    bool InReplyTo(const char* text) override { return WriteText(MimeText::InReplyTo, text); }
    bool Instance(const char* text) override { return WriteText(MimeText::Instance, text); }
    bool Keywords(const char* text) override { return WriteText(MimeText::Keywords, text); }
    bool MessageId(const char* text) override { return WriteText(MimeText::MessageId, text); }
    bool MimeVersion(const char* text) override { return WriteText(MimeText::MimeVersion, text); }
    bool OrigDate(const char* text) override { return WriteText(MimeText::OrigDate, text); }
    bool SendingState(const char* text) override { return WriteText(MimeText::SendingState, text); }
    bool OrigDateLocal(const char* text) override {
        return WriteText(MimeText::OrigDateLocal, text);
    }
    bool Priority(const unsigned char& level) override { return WritePriorityLevel(level); }
    bool References(const char* text) override { return WriteText(MimeText::References, text); }
    bool Subject(const char* text) override { return WriteText(MimeText::Subject, text); }
    bool Body(const A::eBodyEncoding& encoding, const A::eBodyCharset& charset, const void* content,
              const unsigned int& contentLength) override {
        return WriteBodyContent(encoding, charset, content, contentLength);
    }
    bool Body(const A::eBodyEncoding& encoding, const A::eBodyCharset& charset,
              const char* contentLink) override {
        return WriteBodyLink(encoding, charset, contentLink);
    }
    bool Body(const char* contentTypeToken, const char* contentSubtypeToken,
              const char* contentLink) override {
        return WriteBodyTokens(contentTypeToken, contentSubtypeToken, contentLink);
    }
    bool ContentDispositionType(const A::eContentDispositionType& type,
                                const char* token) override {
        return WriteTyped(MimeTyped::ContentDisposition, type, token);
    }
    bool ContentDispositionTypeParam(const A::eContentDispositionParamName& name, const char* value,
                                     const char* nameToken) override {
        return WriteDispositionParam(name, value, nameToken);
    }
    bool ContentSubtype(const A::eContentSubtype& subtype, const char* token) override {
        return WriteTyped(MimeTyped::ContentSubtype, subtype, token);
    }
    bool ContentType(const A::eContentType& type, const char* token) override {
        return WriteTyped(MimeTyped::ContentType, type, token);
    }
    bool ContentTypeParam(const A::eContentParamName& name, const A::eContentParamValue& value,
                          const char* nameToken, const char* valueToken) override {
        return WriteTypeParam(name, value, nameToken, valueToken);
    }
    bool Group(const char* name,
               const PAL::TVector<typename ICreator::tMailbox>& mailboxes) override {
        return WriteGroup(name, mailboxes);
    }
    bool Priority(const A::ePriority& priority) override {
        return WriteByte(MimeByte::Priority, priority);
    }
    bool Reset() override { return FrameReset(); }
    bool GetData(const void*& data, unsigned int& length) override {
        return FrameGetData(data, length);
    }

  protected:
    /// Makes an empty creator; creators are not copied.
    /// @{
    explicit TMimeMessageCreator(const MimeMessageIds& ids) noexcept : CTLVMimeMessageFrame(ids) {}
    /// @}
};

}  // namespace PimShared

#endif
