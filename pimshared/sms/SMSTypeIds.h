#ifndef PIMTLV_PIMSHARED_SMS_SMSTYPEIDS_H
#define PIMTLV_PIMSHARED_SMS_SMSTYPEIDS_H

#include "pimshared/common/TypeIds.h"

/// Type IDs of the SMS item. A short message shares its root node (2) and the
/// folder, instance-name and priority leaves with the other messages, and
/// borrows the contact's name-part IDs for the originator's name; the names are
/// kept in their own namespace so that they never collide with the e-mail's,
/// the instant message's or the contact's spelling of the same numbers.
namespace PimShared {
namespace SMSTypeIds {

using PimShared::TypeIdObjTypeMessage;
using PimShared::TypeIdValTypeInstance;

constexpr unsigned int TypeIdCompTypeSMS = 700;  ///< node: the message inside node 2

constexpr unsigned int TypeIdValTypeSMSState = 710;        ///< UInt8
constexpr unsigned int TypeIdValTypeSMSType = 711;         ///< UInt8
constexpr unsigned int TypeIdValTypeTimestamp = 712;       ///< String
constexpr unsigned int TypeIdValTypeTimestampLocal = 713;  ///< String
constexpr unsigned int TypeIdValTypeStorageType = 714;     ///< UInt8
constexpr unsigned int TypeIdValTypeStorageIndex = 715;    ///< UInt16
constexpr unsigned int TypeIdValTypeSubject = 716;         ///< String

constexpr unsigned int TypeIdValTypeServiceCenter = 720;     ///< String
constexpr unsigned int TypeIdValTypeOriginator = 721;        ///< String
constexpr unsigned int TypeIdValTypeDestination = 722;       ///< String
constexpr unsigned int TypeIdValTypeOriginatorFName = 723;   ///< String
constexpr unsigned int TypeIdValTypeDestinationFName = 724;  ///< String
constexpr unsigned int TypeIdValTypeReadStatus = 725;        ///< UInt8
constexpr unsigned int TypeIdValTypeDownloadState = 727;     ///< UInt8

/// The concatenation information is the item's only node below 700.
constexpr unsigned int TypeIdPropTypeConcat = 730;  ///< node
constexpr unsigned int TypeIdValTypeConcat1 = 731;  ///< UInt8
constexpr unsigned int TypeIdValTypeConcat2 = 732;  ///< UInt8
constexpr unsigned int TypeIdValTypeConcat3 = 733;  ///< UInt8

constexpr unsigned int TypeIdValTypeBody = 740;          ///< String
constexpr unsigned int TypeIdValTypeSendingState = 741;  ///< String

/// Shared with the e-mail and the instant message.
constexpr unsigned int TypeIdValTypeFolder = 903;           ///< String
constexpr unsigned int TypeIdValTypeInstanceName = 904;     ///< String
constexpr unsigned int TypeIdValTypeMessagePriority = 905;  ///< UInt8

/// The contact's name parts, carrying the originator's name.
constexpr unsigned int TypeIdValTypeNamePart1 = 508;  ///< String
constexpr unsigned int TypeIdValTypeNamePart2 = 509;
constexpr unsigned int TypeIdValTypeNamePart3 = 510;
constexpr unsigned int TypeIdValTypeNamePart4 = 511;
constexpr unsigned int TypeIdValTypeNamePart5 = 512;

}  // namespace SMSTypeIds
}  // namespace PimShared

#endif
