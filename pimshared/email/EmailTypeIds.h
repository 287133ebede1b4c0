#ifndef PIMTLV_PIMSHARED_EMAIL_EMAILTYPEIDS_H
#define PIMTLV_PIMSHARED_EMAIL_EMAILTYPEIDS_H

#include "pimshared/common/MimeMessageIds.h"

// Type IDs of the e-mail item. The object node (2) and the instance leaf (10)
// are shared with the other message items (TypeIds.h); the folder, instance
// name and priority leaves (903 to 905) are shared with the instant message.

namespace PimShared {
namespace EmailTypeIds {

constexpr unsigned int TypeIdCompTypeEmail = 600;
constexpr unsigned int TypeIdPropTypeEmailReadStatus = 610;
constexpr unsigned int TypeIdPropTypeEmailMimeVersion = 612;
constexpr unsigned int TypeIdPropTypeEmailMessageId = 613;
constexpr unsigned int TypeIdPropTypeEmailReferences = 614;
constexpr unsigned int TypeIdPropTypeEmailInReplyTo = 615;
constexpr unsigned int TypeIdPropTypeEmailSubject = 616;
constexpr unsigned int TypeIdPropTypeEmailComments = 617;
constexpr unsigned int TypeIdPropTypeEmailKeywords = 618;
constexpr unsigned int TypeIdPropTypeEmailOrigDate = 619;
constexpr unsigned int TypeIdPropTypeEmailContentTransferEncoding = 620;
constexpr unsigned int TypeIdPropTypeEmailContentId = 621;
constexpr unsigned int TypeIdPropTypeEmailContentDescription = 622;
constexpr unsigned int TypeIdPropTypeEmailPriorityLevel = 623;
constexpr unsigned int TypeIdPropTypeEmailOrigDateLocal = 627;
constexpr unsigned int TypeIdPropTypeEmailDownloadState = 628;
constexpr unsigned int TypeIdPropTypeEmailBody = 630;
constexpr unsigned int TypeIdValTypeEmailBodyEncoding = 631;
constexpr unsigned int TypeIdValTypeEmailBodyCharset = 632;
constexpr unsigned int TypeIdValTypeEmailBodyContent = 633;
constexpr unsigned int TypeIdValTypeEmailBodyContentLink = 634;
constexpr unsigned int TypeIdPropTypeEmailAttachmentAvailable = 635;
constexpr unsigned int TypeIdPropTypeEmailContentType = 640;
constexpr unsigned int TypeIdValTypeEmailContentType = 641;
constexpr unsigned int TypeIdValTypeEmailContentTypeToken = 642;
constexpr unsigned int TypeIdPropTypeEmailContentSubtype = 645;
constexpr unsigned int TypeIdValTypeEmailContentSubtype = 646;
constexpr unsigned int TypeIdValTypeEmailContentSubtypeToken = 647;
constexpr unsigned int TypeIdPropTypeEmailContentDisposition = 650;
constexpr unsigned int TypeIdValTypeEmailContentDispositionType = 651;
constexpr unsigned int TypeIdValTypeEmailContentDispositionToken = 652;
constexpr unsigned int TypeIdPropTypeEmailContentTypeParam = 660;
constexpr unsigned int TypeIdValTypeEmailContentParamName = 661;
constexpr unsigned int TypeIdValTypeEmailContentParamValue = 662;
constexpr unsigned int TypeIdValTypeEmailContentParamNameToken = 663;
constexpr unsigned int TypeIdValTypeEmailContentParamValueToken = 664;
constexpr unsigned int TypeIdPropTypeEmailContentDispositionParam = 670;
constexpr unsigned int TypeIdValTypeEmailDispositionParamName = 671;
constexpr unsigned int TypeIdValTypeEmailDispositionParamValue = 672;
constexpr unsigned int TypeIdValTypeEmailDispositionParamNameToken = 673;
constexpr unsigned int TypeIdPropTypeEmailMailbox = 680;
constexpr unsigned int TypeIdValTypeEmailMailboxFieldType = 681;
constexpr unsigned int TypeIdValTypeEmailMailboxDisplayName = 682;
constexpr unsigned int TypeIdValTypeEmailMailboxAddress = 683;
constexpr unsigned int TypeIdPropTypeEmailGroup = 690;
constexpr unsigned int TypeIdValTypeEmailGroupName = 691;
constexpr unsigned int TypeIdPropTypeEmailCutoffState = 692;
constexpr unsigned int TypeIdPropTypeEmailSendingState = 693;

/// Shared with the instant message.
constexpr unsigned int TypeIdValTypeFolder = 903;
constexpr unsigned int TypeIdValTypeInstanceName = 904;
constexpr unsigned int TypeIdValTypeMessagePriority = 905;

/// The e-mail item as the MIME message writer and reader see it.
constexpr MimeMessageIds kEmailIds = {
    TypeIdCompTypeEmail,
    // Text leaves, in MimeText order.
    {TypeIdPropTypeEmailComments, TypeIdPropTypeEmailContentDescription,
     TypeIdPropTypeEmailContentId, TypeIdValTypeFolder, TypeIdPropTypeEmailInReplyTo,
     TypeIdValTypeInstanceName, TypeIdPropTypeEmailKeywords, TypeIdPropTypeEmailMessageId,
     TypeIdPropTypeEmailMimeVersion, TypeIdPropTypeEmailOrigDate, TypeIdPropTypeEmailSendingState,
     TypeIdPropTypeEmailOrigDateLocal, TypeIdPropTypeEmailReferences, TypeIdPropTypeEmailSubject},
    // Byte leaves, in MimeByte order.
    {TypeIdPropTypeEmailAttachmentAvailable, TypeIdPropTypeEmailContentTransferEncoding,
     TypeIdPropTypeEmailReadStatus, TypeIdPropTypeEmailDownloadState, TypeIdValTypeMessagePriority},
    TypeIdPropTypeEmailPriorityLevel,
    TypeIdPropTypeEmailCutoffState,
    {TypeIdPropTypeEmailBody, TypeIdValTypeEmailBodyEncoding, TypeIdValTypeEmailBodyCharset,
     TypeIdValTypeEmailBodyContent, TypeIdValTypeEmailBodyContentLink},
    // Typed nodes, in MimeTyped order.
    {{TypeIdPropTypeEmailContentType, TypeIdValTypeEmailContentType,
      TypeIdValTypeEmailContentTypeToken},
     {TypeIdPropTypeEmailContentSubtype, TypeIdValTypeEmailContentSubtype,
      TypeIdValTypeEmailContentSubtypeToken},
     {TypeIdPropTypeEmailContentDisposition, TypeIdValTypeEmailContentDispositionType,
      TypeIdValTypeEmailContentDispositionToken}},
    {TypeIdPropTypeEmailContentTypeParam, TypeIdValTypeEmailContentParamName,
     TypeIdValTypeEmailContentParamValue, TypeIdValTypeEmailContentParamNameToken,
     TypeIdValTypeEmailContentParamValueToken},
    {TypeIdPropTypeEmailContentDispositionParam, TypeIdValTypeEmailDispositionParamName,
     TypeIdValTypeEmailDispositionParamValue, TypeIdValTypeEmailDispositionParamNameToken},
    {TypeIdPropTypeEmailMailbox, TypeIdValTypeEmailMailboxFieldType,
     TypeIdValTypeEmailMailboxDisplayName, TypeIdValTypeEmailMailboxAddress},
    {TypeIdPropTypeEmailGroup, TypeIdValTypeEmailGroupName},
};
static_assert(MimeIdsWellFormed(kEmailIds), "every e-mail ID is filled in and names one element");

}  // namespace EmailTypeIds
}  // namespace PimShared

#endif
