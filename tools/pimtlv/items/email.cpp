// The e-mail in the tool.
#include "items/MimeMessage.h"
#include "pimshared/email/EmailDescription.h"
#include "pimshared/email/EmailTypeIds.h"

namespace PimTool {

namespace {

std::vector<TypeName> EmailNames() {
    using namespace PimShared::EmailTypeIds;
    return {
        PIMTLV_MESSAGE_NAME(TypeIdCompTypeEmail),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeEmailReadStatus),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeEmailMimeVersion),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeEmailMessageId),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeEmailReferences),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeEmailInReplyTo),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeEmailSubject),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeEmailComments),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeEmailKeywords),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeEmailOrigDate),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeEmailContentTransferEncoding),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeEmailContentId),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeEmailContentDescription),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeEmailPriorityLevel),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeEmailOrigDateLocal),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeEmailDownloadState),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeEmailBody),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeEmailBodyEncoding),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeEmailBodyCharset),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeEmailBodyContent),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeEmailBodyContentLink),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeEmailAttachmentAvailable),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeEmailContentType),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeEmailContentType),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeEmailContentTypeToken),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeEmailContentSubtype),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeEmailContentSubtype),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeEmailContentSubtypeToken),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeEmailContentDisposition),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeEmailContentDispositionType),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeEmailContentDispositionToken),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeEmailContentTypeParam),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeEmailContentParamName),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeEmailContentParamValue),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeEmailContentParamNameToken),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeEmailContentParamValueToken),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeEmailContentDispositionParam),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeEmailDispositionParamName),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeEmailDispositionParamValue),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeEmailDispositionParamNameToken),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeEmailMailbox),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeEmailMailboxFieldType),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeEmailMailboxDisplayName),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeEmailMailboxAddress),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeEmailGroup),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeEmailGroupName),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeEmailCutoffState),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeEmailSendingState),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeFolder),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeInstanceName),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeMessagePriority),
    };
}

}  // namespace

const ItemAdapter kEmailItem = {
    PimShared::EmailItem::kKind,
    EmailNames(),
    OperationsOf<PimShared::EmailOperations>(),
    &DecodeItem<PimShared::EmailItem>,
    "PriorityLevel is written but read back as an unexpected element; BodyTypedLink comes back "
    "as BodyLink with the default encoding and charset; tokens beside a value other than 1 "
    "are not written; a body with both content and link is reported, not delivered.",
};

}  // namespace PimTool
