#ifndef PIMTLV_PIMSHARED_IM_IMTYPEIDS_H
#define PIMTLV_PIMSHARED_IM_IMTYPEIDS_H

#include "pimshared/common/MimeMessageIds.h"
#include "pimshared/email/EmailTypeIds.h"

// Type IDs of the instant-message item: the e-mail's layout in the 9xx range,
// plus conversation, owner, participant and extended-data elements. The
// folder, instance name and priority leaves are the e-mail's own IDs.

namespace PimShared {
namespace IMTypeIds {

using EmailTypeIds::TypeIdValTypeFolder;
using EmailTypeIds::TypeIdValTypeInstanceName;
using EmailTypeIds::TypeIdValTypeMessagePriority;

constexpr unsigned int TypeIdCompTypeIm = 900;
constexpr unsigned int TypeIdPropTypeImSendingState = 910;
constexpr unsigned int TypeIdPropTypeImOrigDate = 911;
constexpr unsigned int TypeIdPropTypeImOrigDateLocal = 912;
constexpr unsigned int TypeIdPropTypeImSubject = 913;
constexpr unsigned int TypeIdPropTypeImReadStatus = 914;
constexpr unsigned int TypeIdPropTypeImMimeVersion = 915;
constexpr unsigned int TypeIdPropTypeImMessageId = 916;
constexpr unsigned int TypeIdPropTypeImReferences = 917;
constexpr unsigned int TypeIdPropTypeImInReplyTo = 918;
constexpr unsigned int TypeIdPropTypeImCutoffState = 919;
constexpr unsigned int TypeIdPropTypeImComments = 920;
constexpr unsigned int TypeIdPropTypeImKeywords = 921;
constexpr unsigned int TypeIdPropTypeImContentTransferEncoding = 922;
constexpr unsigned int TypeIdPropTypeImContentId = 923;
constexpr unsigned int TypeIdPropTypeImContentDescription = 924;
constexpr unsigned int TypeIdPropTypeImPriorityLevel = 925;
constexpr unsigned int TypeIdPropTypeImDownloadState = 926;
constexpr unsigned int TypeIdPropTypeImAttachmentAvailable = 927;
constexpr unsigned int TypeIdPropTypeImMailbox = 930;
constexpr unsigned int TypeIdValTypeImMailboxFieldType = 931;
constexpr unsigned int TypeIdValTypeImMailboxDisplayName = 932;
constexpr unsigned int TypeIdValTypeImMailboxAddress = 933;
constexpr unsigned int TypeIdValTypeImMailboxClient = 934;
constexpr unsigned int TypeIdPropTypeImContentType = 935;
constexpr unsigned int TypeIdValTypeImContentType = 936;
constexpr unsigned int TypeIdValTypeImContentTypeToken = 937;
constexpr unsigned int TypeIdPropTypeImBody = 940;
constexpr unsigned int TypeIdValTypeImBodyEncoding = 941;
constexpr unsigned int TypeIdValTypeImBodyCharset = 942;
constexpr unsigned int TypeIdValTypeImBodyContent = 943;
constexpr unsigned int TypeIdValTypeImBodyContentLink = 944;
constexpr unsigned int TypeIdPropTypeImContentSubtype = 945;
constexpr unsigned int TypeIdValTypeImContentSubtype = 946;
constexpr unsigned int TypeIdValTypeImContentSubtypeToken = 947;
constexpr unsigned int TypeIdPropTypeImContentDisposition = 950;
constexpr unsigned int TypeIdValTypeImContentDispositionType = 951;
constexpr unsigned int TypeIdValTypeImContentDispositionToken = 952;
constexpr unsigned int TypeIdPropTypeImContentTypeParam = 955;
constexpr unsigned int TypeIdValTypeImContentParamName = 956;
constexpr unsigned int TypeIdValTypeImContentParamValue = 957;
constexpr unsigned int TypeIdValTypeImContentParamNameToken = 958;
constexpr unsigned int TypeIdValTypeImContentParamValueToken = 959;
constexpr unsigned int TypeIdPropTypeImContentDispositionParam = 960;
constexpr unsigned int TypeIdValTypeImDispositionParamName = 961;
constexpr unsigned int TypeIdValTypeImDispositionParamValue = 962;
constexpr unsigned int TypeIdValTypeImDispositionParamNameToken = 963;
constexpr unsigned int TypeIdPropTypeImGroup = 965;
constexpr unsigned int TypeIdValTypeImGroupName = 966;
constexpr unsigned int TypeIdPropTypeImDirection = 967;
constexpr unsigned int TypeIdPropTypeImConversationId = 970;
constexpr unsigned int TypeIdPropTypeImConversationName = 971;
constexpr unsigned int TypeIdPropTypeImConversationLastActivity = 972;
constexpr unsigned int TypeIdPropTypeImConversationVersionCounter = 973;
constexpr unsigned int TypeIdPropTypeImConversationSummary = 974;
constexpr unsigned int TypeIdPropTypeImParticipant = 980;
constexpr unsigned int TypeIdValTypeImParticipantText1 = 981;
constexpr unsigned int TypeIdValTypeImParticipantText2 = 982;
constexpr unsigned int TypeIdValTypeImParticipantChatState = 983;
constexpr unsigned int TypeIdValTypeImParticipantText3 = 984;
constexpr unsigned int TypeIdValTypeImParticipantText4 = 985;
constexpr unsigned int TypeIdValTypeImParticipantText5 = 986;
constexpr unsigned int TypeIdValTypeImParticipantAvailability = 987;
constexpr unsigned int TypeIdValTypeImParticipantText6 = 988;
constexpr unsigned int TypeIdValTypeImParticipantFlags = 989;
constexpr unsigned int TypeIdPropTypeImExtendedData = 990;
constexpr unsigned int TypeIdValTypeImExtendedDataKey = 991;
constexpr unsigned int TypeIdValTypeImExtendedDataValue = 992;
constexpr unsigned int TypeIdPropTypeImEntityType = 995;
constexpr unsigned int TypeIdPropTypeImOwnerAvailability = 996;
constexpr unsigned int TypeIdPropTypeImOwnerText = 997;
constexpr unsigned int TypeIdPropTypeImOwnerLastActivity = 998;
constexpr unsigned int TypeIdPropTypeImOwnerChatState = 999;

/// The participant's six texts, by position.
constexpr unsigned int kParticipantTextIds[] = {
    TypeIdValTypeImParticipantText1, TypeIdValTypeImParticipantText2,
    TypeIdValTypeImParticipantText3, TypeIdValTypeImParticipantText4,
    TypeIdValTypeImParticipantText5, TypeIdValTypeImParticipantText6};
static_assert(sizeof kParticipantTextIds / sizeof kParticipantTextIds[0] == 6,
              "a participant has six texts");

/// The instant message as the MIME message writer and reader see it.
constexpr MimeMessageIds kIMIds = {
    TypeIdCompTypeIm,
    // Text leaves, in MimeText order.
    {TypeIdPropTypeImComments, TypeIdPropTypeImContentDescription, TypeIdPropTypeImContentId,
     TypeIdValTypeFolder, TypeIdPropTypeImInReplyTo, TypeIdValTypeInstanceName,
     TypeIdPropTypeImKeywords, TypeIdPropTypeImMessageId, TypeIdPropTypeImMimeVersion,
     TypeIdPropTypeImOrigDate, TypeIdPropTypeImSendingState, TypeIdPropTypeImOrigDateLocal,
     TypeIdPropTypeImReferences, TypeIdPropTypeImSubject},
    // Byte leaves, in MimeByte order.
    {TypeIdPropTypeImAttachmentAvailable, TypeIdPropTypeImContentTransferEncoding,
     TypeIdPropTypeImReadStatus, TypeIdPropTypeImDownloadState, TypeIdValTypeMessagePriority},
    TypeIdPropTypeImPriorityLevel,
    TypeIdPropTypeImCutoffState,
    {TypeIdPropTypeImBody, TypeIdValTypeImBodyEncoding, TypeIdValTypeImBodyCharset,
     TypeIdValTypeImBodyContent, TypeIdValTypeImBodyContentLink},
    // Typed nodes, in MimeTyped order.
    {{TypeIdPropTypeImContentType, TypeIdValTypeImContentType, TypeIdValTypeImContentTypeToken},
     {TypeIdPropTypeImContentSubtype, TypeIdValTypeImContentSubtype,
      TypeIdValTypeImContentSubtypeToken},
     {TypeIdPropTypeImContentDisposition, TypeIdValTypeImContentDispositionType,
      TypeIdValTypeImContentDispositionToken}},
    {TypeIdPropTypeImContentTypeParam, TypeIdValTypeImContentParamName,
     TypeIdValTypeImContentParamValue, TypeIdValTypeImContentParamNameToken,
     TypeIdValTypeImContentParamValueToken},
    {TypeIdPropTypeImContentDispositionParam, TypeIdValTypeImDispositionParamName,
     TypeIdValTypeImDispositionParamValue, TypeIdValTypeImDispositionParamNameToken},
    {TypeIdPropTypeImMailbox, TypeIdValTypeImMailboxFieldType, TypeIdValTypeImMailboxDisplayName,
     TypeIdValTypeImMailboxAddress},
    {TypeIdPropTypeImGroup, TypeIdValTypeImGroupName},
};
static_assert(MimeIdsWellFormed(kIMIds),
              "every instant-message ID is filled in and names one element");

}  // namespace IMTypeIds
}  // namespace PimShared

#endif
