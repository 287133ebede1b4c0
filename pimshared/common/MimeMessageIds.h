#ifndef PIMTLV_PIMSHARED_COMMON_MIMEMESSAGEIDS_H
#define PIMTLV_PIMSHARED_COMMON_MIMEMESSAGEIDS_H

// The shape of a MIME message item (e-mail, instant message) as a table of
// type IDs. The writer and the reader of both items are one piece of code each;
// what makes an e-mail an e-mail is the table it is given.

namespace PimShared {

/// Simple properties that travel as one String leaf in the component node.
enum class MimeText : unsigned char {
    Comments,
    ContentDescription,
    ContentId,
    Folder,
    InReplyTo,
    Instance,
    Keywords,
    MessageId,
    MimeVersion,
    OrigDate,
    SendingState,
    OrigDateLocal,
    References,
    Subject,
    Count
};

/// Simple properties that travel as one UInt8 leaf (an enumeration's low byte).
enum class MimeByte : unsigned char {
    AttachmentAvailable,
    ContentTransferEncoding,
    ReadStatus,
    DownloadState,
    Priority,
    Count
};

/// Structured properties made of an enumerated value and, for the extension
/// member 1, a token: content type, content subtype, content disposition.
enum class MimeTyped : unsigned char { ContentType, ContentSubtype, ContentDisposition, Count };

/// How many operations each of the three kinds has.
/// @{
constexpr unsigned int kMimeTextCount = static_cast<unsigned int>(MimeText::Count);
constexpr unsigned int kMimeByteCount = static_cast<unsigned int>(MimeByte::Count);
constexpr unsigned int kMimeTypedCount = static_cast<unsigned int>(MimeTyped::Count);
/// @}

/// The value that marks an enumeration's extension member, whose token travels
/// as text beside it.
constexpr unsigned int kMimeExtensionMember = 1;

/// The type IDs one message item (e-mail or instant message) uses for each operation, so that one
/// writer and one reader serve both.
struct MimeMessageIds {
    unsigned int component;             ///< the message node, and each nested entity
    unsigned int text[kMimeTextCount];  ///< per MimeText, its String leaf
    unsigned int byte[kMimeByteCount];  ///< per MimeByte, its UInt8 leaf
    unsigned int priorityLevel;         ///< the plain-byte priority; written, refused on reading
    unsigned int cutoffState;           ///< Bitfield16
    struct {
        unsigned int node, encoding, charset, content, contentLink;
    } body;  ///< the body node and its leaves
    struct {
        unsigned int node, value, token;
    } typed[kMimeTypedCount];  ///< Per MimeTyped, its node, enumeration leaf and token leaf.
    struct {
        unsigned int node, name, value, nameToken, valueToken;
    } typeParam;  ///< A content-type parameter node and its leaves.
    struct {
        unsigned int node, name, value, nameToken;
    } dispositionParam;  ///< A content-disposition parameter node and its leaves.
    struct {
        unsigned int node, fieldType, displayName, address;
    } mailbox;  ///< A mailbox node and its leaves.
    struct {
        unsigned int node, name;
    } group;  ///< A group node and its name leaf.
};

/// Every ID of a table, in one flat list, for checks over the whole table.
constexpr unsigned int kMimeIdCount =
    1 + kMimeTextCount + kMimeByteCount + 2 + 5 + 3 * kMimeTypedCount + 5 + 4 + 4 + 2;

/// The index-th ID of the table, in the order of kMimeIdCount's sum; 0 past the end.
constexpr unsigned int MimeIdAt(const MimeMessageIds& ids, unsigned int index) {
    unsigned int i = index;
    if (i == 0) return ids.component;
    i -= 1;
    if (i < kMimeTextCount) return ids.text[i];
    i -= kMimeTextCount;
    if (i < kMimeByteCount) return ids.byte[i];
    i -= kMimeByteCount;
    const unsigned int rest[] = {ids.priorityLevel,
                                 ids.cutoffState,
                                 ids.body.node,
                                 ids.body.encoding,
                                 ids.body.charset,
                                 ids.body.content,
                                 ids.body.contentLink,
                                 ids.typed[0].node,
                                 ids.typed[0].value,
                                 ids.typed[0].token,
                                 ids.typed[1].node,
                                 ids.typed[1].value,
                                 ids.typed[1].token,
                                 ids.typed[2].node,
                                 ids.typed[2].value,
                                 ids.typed[2].token,
                                 ids.typeParam.node,
                                 ids.typeParam.name,
                                 ids.typeParam.value,
                                 ids.typeParam.nameToken,
                                 ids.typeParam.valueToken,
                                 ids.dispositionParam.node,
                                 ids.dispositionParam.name,
                                 ids.dispositionParam.value,
                                 ids.dispositionParam.nameToken,
                                 ids.mailbox.node,
                                 ids.mailbox.fieldType,
                                 ids.mailbox.displayName,
                                 ids.mailbox.address,
                                 ids.group.node,
                                 ids.group.name};
    return i < sizeof rest / sizeof rest[0] ? rest[i] : 0;
}

/// A table is well formed when every ID is filled in, fits in the 12 bits of a
/// header and names one element only (the reader maps each ID to one role).
/// The object node and the instance leaf are not part of a table.
constexpr bool MimeIdsWellFormed(const MimeMessageIds& ids) {
    for (unsigned int a = 0; a < kMimeIdCount; ++a) {
        const unsigned int id = MimeIdAt(ids, a);
        if (id <= 10 || id > 0xFFF) return false;
        for (unsigned int b = a + 1; b < kMimeIdCount; ++b) {
            if (MimeIdAt(ids, b) == id) return false;
        }
    }
    return true;
}

}  // namespace PimShared

#endif
