// The instant message in the tool.
#include "items/MimeMessage.h"
#include "pimshared/im/IMDescription.h"
#include "pimshared/im/IMTypeIds.h"

namespace PimTool {

namespace {

std::vector<TypeName> ImNames() {
    using namespace PimShared::IMTypeIds;
    return {
        PIMTLV_MESSAGE_NAME(TypeIdCompTypeIm),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImSendingState),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImOrigDate),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImOrigDateLocal),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImSubject),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImReadStatus),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImMimeVersion),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImMessageId),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImReferences),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImInReplyTo),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImCutoffState),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImComments),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImKeywords),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImContentTransferEncoding),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImContentId),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImContentDescription),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImPriorityLevel),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImDownloadState),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImAttachmentAvailable),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImMailbox),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImMailboxFieldType),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImMailboxDisplayName),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImMailboxAddress),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImMailboxClient),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImContentType),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImContentType),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImContentTypeToken),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImBody),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImBodyEncoding),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImBodyCharset),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImBodyContent),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImBodyContentLink),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImContentSubtype),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImContentSubtype),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImContentSubtypeToken),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImContentDisposition),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImContentDispositionType),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImContentDispositionToken),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImContentTypeParam),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImContentParamName),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImContentParamValue),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImContentParamNameToken),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImContentParamValueToken),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImContentDispositionParam),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImDispositionParamName),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImDispositionParamValue),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImDispositionParamNameToken),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImGroup),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImGroupName),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImDirection),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImConversationId),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImConversationName),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImConversationLastActivity),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImConversationVersionCounter),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImConversationSummary),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImParticipant),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImParticipantText1),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImParticipantText2),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImParticipantChatState),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImParticipantText3),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImParticipantText4),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImParticipantText5),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImParticipantAvailability),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImParticipantText6),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImParticipantFlags),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImExtendedData),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImExtendedDataKey),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeImExtendedDataValue),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImEntityType),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImOwnerAvailability),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImOwnerText),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImOwnerLastActivity),
        PIMTLV_MESSAGE_NAME(TypeIdPropTypeImOwnerChatState),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeFolder),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeInstanceName),
        PIMTLV_MESSAGE_NAME(TypeIdValTypeMessagePriority),
    };
}

}  // namespace

const ItemAdapter kImItem = {
    PimShared::ImItem::kKind,
    ImNames(),
    OperationsOf<PimShared::ImOperations>(),
    &DecodeItem<PimShared::ImItem>,
    "PriorityLevel is written but read back as an unexpected element; BodyTypedLink comes back "
    "as BodyLink with the default encoding and charset; a participant's client "
    "and a group member's client are not written, so they come back as not given; "
    "not-given enumerations and a 0xFF flag byte are not written.",
};

}  // namespace PimTool
