#ifndef PIMTLV_PIMSHARED_COMMON_MIMEMESSAGEDESCRIPTION_H
#define PIMTLV_PIMSHARED_COMMON_MIMEMESSAGEDESCRIPTION_H

// The operations that e-mails and instant messages share (those of
// IMimeMessageAttributes), described once for both items (see
// ItemDescription.h for the form). Body and Priority are overloaded; each
// overload has its own name in documents.

#include "pimshared/common/IMimeMessageAttributes.h"
#include "pimshared/common/ItemDescription.h"

#define PIMTLV_MIME_MESSAGE_OPERATIONS(OP, OP0, OVERLOAD)                                      \
    OP(Begin, "instance")                                                                      \
    OP0(End)                                                                                   \
    OP0(BeginEntity)                                                                           \
    OP0(EndEntity)                                                                             \
    OP(AttachmentAvailable, "value")                                                           \
    OP(CutoffState, "value")                                                                   \
    OP(Comments, "text")                                                                       \
    OP(ContentDescription, "text")                                                             \
    OP(ContentId, "text")                                                                      \
    OP(ContentTransferEncodingEnum, "value")                                                   \
    OP(ReadStatus, "value")                                                                    \
    OP(DownloadState, "value")                                                                 \
    OP(Folder, "text")                                                                         \
    OP(InReplyTo, "text")                                                                      \
    OP(Instance, "text")                                                                       \
    OP(Keywords, "text")                                                                       \
    OP(MessageId, "text")                                                                      \
    OP(MimeVersion, "text")                                                                    \
    OP(OrigDate, "text")                                                                       \
    OP(SendingState, "text")                                                                   \
    OP(OrigDateLocal, "text")                                                                  \
    OVERLOAD(Priority, PriorityLevel, (const unsigned char&), "level")                         \
    OP(References, "text")                                                                     \
    OP(Subject, "text")                                                                        \
    OVERLOAD(Body, Body,                                                                       \
             (const IMimeMessageAttributes::eBodyEncoding&,                                    \
              const IMimeMessageAttributes::eBodyCharset&, const void*, const unsigned int&),  \
             "encoding", "charset", "content", nullptr)                                        \
    OVERLOAD(Body, BodyLink,                                                                   \
             (const IMimeMessageAttributes::eBodyEncoding&,                                    \
              const IMimeMessageAttributes::eBodyCharset&, const char*),                       \
             "encoding", "charset", "contentLink")                                             \
    OVERLOAD(Body, BodyTypedLink, (const char*, const char*, const char*), "contentTypeToken", \
             "contentSubtypeToken", "contentLink")                                             \
    OP(ContentDispositionType, "type", "token")                                                \
    OP(ContentDispositionTypeParam, "name", "value", "nameToken")                              \
    OP(ContentSubtype, "subtype", "token")                                                     \
    OP(ContentType, "type", "token")                                                           \
    OP(ContentTypeParam, "name", "value", "nameToken", "valueToken")

#endif
