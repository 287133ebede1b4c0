#ifndef PIMTLV_PIMSHARED_COMMON_IMIMEMESSAGEATTRIBUTES_H
#define PIMTLV_PIMSHARED_COMMON_IMIMEMESSAGEATTRIBUTES_H

#include "platform/PalExport.h"

namespace PimShared {

/// The properties that e-mails and instant messages share: both are MIME
/// messages with the same headers, body forms and nested entities, differing
/// only in their type IDs, in what a mailbox carries and in the additions of the
/// instant message. The shared operations come first, so an e-mail and an
/// instant message agree slot for slot up to the group; each item's interface
/// derives from this one and appends its own operations.
///
/// Every enumeration is 32 bits in memory and travels as its low byte, so every
/// member lies within 0..255 (the "not given" marks of the instant message,
/// which are never written, are the exception). Value 1 of the content type,
/// subtype, disposition and parameter enumerations is the extension member: its
/// token travels as text beside it. Members beyond those are ours; the codec
/// passes every byte through unchanged, so a peer may send members we do not
/// name.
class PIMTLV_API IMimeMessageAttributes {
  public:
    /// Whether the message has attachments on the device.
    enum eAttachmentAvailable : unsigned int {
        eAttachmentAvailableNo = 0,
        eAttachmentAvailableYes = 1,
        eAttachmentAvailableUnknown = 2,
    };
    /// The transfer encoding of an entity's content.
    enum eContentTransferEncoding : unsigned int {
        eContentTransferEncodingNone = 0,
        eContentTransferEncoding7Bit = 1,
        eContentTransferEncoding8Bit = 2,
        eContentTransferEncodingBinary = 3,
        eContentTransferEncodingQuotedPrintable = 4,
        eContentTransferEncodingBase64 = 5,
    };
    /// What the user has done with the message.
    enum eReadStatus : unsigned int {
        eReadStatusUnread = 0,
        eReadStatusRead = 1,
        eReadStatusReplied = 2,
        eReadStatusForwarded = 3,
    };
    /// How much of the message is on the device.
    enum eDownloadState : unsigned int {
        eDownloadStateNone = 0,
        eDownloadStateHeadersOnly = 1,
        eDownloadStatePartial = 2,
        eDownloadStateComplete = 3,
        eDownloadStateFailed = 4,
    };
    /// 1 is what a body without an encoding leaf is read as: 7bit, the MIME
    /// default for a part that names no transfer encoding.
    enum eBodyEncoding : unsigned int {
        eBodyEncodingUnknown = 0,
        eBodyEncoding7Bit = 1,
        eBodyEncoding8Bit = 2,
        eBodyEncodingBinary = 3,
        eBodyEncodingQuotedPrintable = 4,
        eBodyEncodingBase64 = 5,
    };
    /// 1 is what a body without a charset leaf is read as: us-ascii, the MIME
    /// default for text that names no charset.
    enum eBodyCharset : unsigned int {
        eBodyCharsetUnknown = 0,
        eBodyCharsetUsAscii = 1,
        eBodyCharsetUtf8 = 2,
        eBodyCharsetIso8859_1 = 3,
        eBodyCharsetUtf16 = 4,
        eBodyCharsetWindows1252 = 5,
    };
    /// Whether an entity is shown inline or as an attachment.
    enum eContentDispositionType : unsigned int {
        eContentDispositionTypeUnknown = 0,
        eContentDispositionTypeExtension = 1,
        eContentDispositionTypeInline = 2,
        eContentDispositionTypeAttachment = 3,
    };
    /// The named parameters of a content disposition.
    enum eContentDispositionParamName : unsigned int {
        eContentDispositionParamNameUnknown = 0,
        eContentDispositionParamNameExtension = 1,
        eContentDispositionParamNameFilename = 2,
        eContentDispositionParamNameCreationDate = 3,
        eContentDispositionParamNameModificationDate = 4,
        eContentDispositionParamNameReadDate = 5,
        eContentDispositionParamNameSize = 6,
    };
    /// The subtype of an entity's content type.
    enum eContentSubtype : unsigned int {
        eContentSubtypeUnknown = 0,
        eContentSubtypeExtension = 1,
        eContentSubtypePlain = 2,
        eContentSubtypeHtml = 3,
        eContentSubtypeMixed = 4,
        eContentSubtypeAlternative = 5,
        eContentSubtypeRelated = 6,
        eContentSubtypeJpeg = 7,
        eContentSubtypePng = 8,
        eContentSubtypeGif = 9,
        eContentSubtypeOctetStream = 10,
        eContentSubtypePdf = 11,
        eContentSubtypeRfc822 = 12,
    };
    /// The top-level type of an entity's content.
    enum eContentType : unsigned int {
        eContentTypeUnknown = 0,
        eContentTypeExtension = 1,
        eContentTypeText = 2,
        eContentTypeImage = 3,
        eContentTypeAudio = 4,
        eContentTypeVideo = 5,
        eContentTypeApplication = 6,
        eContentTypeMultipart = 7,
        eContentTypeMessage = 8,
    };
    /// The named parameters of a content type.
    enum eContentParamName : unsigned int {
        eContentParamNameUnknown = 0,
        eContentParamNameExtension = 1,
        eContentParamNameCharset = 2,
        eContentParamNameBoundary = 3,
        eContentParamNameName = 4,
        eContentParamNameFormat = 5,
    };
    /// The named values of a content-type parameter.
    enum eContentParamValue : unsigned int {
        eContentParamValueUnknown = 0,
        eContentParamValueExtension = 1,
        eContentParamValueUsAscii = 2,
        eContentParamValueUtf8 = 3,
        eContentParamValueIso8859_1 = 4,
        eContentParamValueFlowed = 5,
        eContentParamValueFixed = 6,
    };
    /// 0 is what a mailbox without a field-type leaf is read as.
    enum eMailboxFieldType : unsigned int {
        eMailboxFieldTypeFrom = 0,
        eMailboxFieldTypeSender = 1,
        eMailboxFieldTypeReplyTo = 2,
        eMailboxFieldTypeTo = 3,
        eMailboxFieldTypeCc = 4,
        eMailboxFieldTypeBcc = 5,
    };
    /// The priority a sender gave the message.
    enum ePriority : unsigned int {
        ePriorityNormal = 0,
        ePriorityLow = 1,
        ePriorityHigh = 2,
    };

    /// Opens the item; instance is its number among the items of a sync.
    virtual bool Begin(const unsigned int& instance) = 0;
    /// Closes the item.
    virtual bool End() = 0;
    /// Opens a nested MIME entity (an attachment or a part).
    virtual bool BeginEntity() = 0;
    /// Closes the innermost open entity.
    virtual bool EndEntity() = 0;
    /// One property of the item with its values. A creator writes it; a parser calls it on its
    /// receiver with the values read (texts may be null when not given). True to go on.
    /// @{
    virtual bool AttachmentAvailable(const eAttachmentAvailable& value) = 0;
    virtual bool CutoffState(const unsigned short& value) = 0;
    virtual bool Comments(const char* text) = 0;
    virtual bool ContentDescription(const char* text) = 0;
    virtual bool ContentId(const char* text) = 0;
    virtual bool ContentTransferEncodingEnum(const eContentTransferEncoding& value) = 0;
    virtual bool ReadStatus(const eReadStatus& value) = 0;
    virtual bool DownloadState(const eDownloadState& value) = 0;
    virtual bool Folder(const char* text) = 0;
    virtual bool InReplyTo(const char* text) = 0;
    virtual bool Instance(const char* text) = 0;
    virtual bool Keywords(const char* text) = 0;
    virtual bool MessageId(const char* text) = 0;
    virtual bool MimeVersion(const char* text) = 0;
    virtual bool OrigDate(const char* text) = 0;
    virtual bool SendingState(const char* text) = 0;
    virtual bool OrigDateLocal(const char* text) = 0;
    /// @}
    /// A priority level as a plain byte. Readers do not take it back (they
    /// report it as unexpected); the enumerated priority is the one that travels.
    virtual bool Priority(const unsigned char& level) = 0;
    /// One property of the item with its values. A creator writes it; a parser calls it on its
    /// receiver with the values read (texts may be null when not given). True to go on.
    /// @{
    virtual bool References(const char* text) = 0;
    virtual bool Subject(const char* text) = 0;
    /// @}
    /// The body in one of its three forms: inline bytes, a link to the content,
    /// or a link described by content type and subtype tokens.
    virtual bool Body(const eBodyEncoding& encoding, const eBodyCharset& charset,
                      const void* content, const unsigned int& contentLength) = 0;
    /// One property of the item with its values. A creator writes it; a parser calls it on its
    /// receiver with the values read (texts may be null when not given). True to go on.
    /// @{
    virtual bool Body(const eBodyEncoding& encoding, const eBodyCharset& charset,
                      const char* contentLink) = 0;
    virtual bool Body(const char* contentTypeToken, const char* contentSubtypeToken,
                      const char* contentLink) = 0;
    virtual bool ContentDispositionType(const eContentDispositionType& type, const char* token) = 0;
    virtual bool ContentDispositionTypeParam(const eContentDispositionParamName& name,
                                             const char* value, const char* nameToken) = 0;
    virtual bool ContentSubtype(const eContentSubtype& subtype, const char* token) = 0;
    virtual bool ContentType(const eContentType& type, const char* token) = 0;
    virtual bool ContentTypeParam(const eContentParamName& name, const eContentParamValue& value,
                                  const char* nameToken, const char* valueToken) = 0;
    /// @}

  protected:
    /// Not deleted through this interface: it has no destructor slot.
    IMimeMessageAttributes() = default;
    /// Special members; an interface is made and copied only as part of the class
    /// that implements it.
    /// @{
    IMimeMessageAttributes(const IMimeMessageAttributes&) = default;
    IMimeMessageAttributes& operator=(const IMimeMessageAttributes&) = default;
    ~IMimeMessageAttributes() = default;
    /// @}
};

}  // namespace PimShared

#endif
