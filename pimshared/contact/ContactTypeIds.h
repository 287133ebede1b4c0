#ifndef PIMTLV_PIMSHARED_CONTACT_CONTACTTYPEIDS_H
#define PIMTLV_PIMSHARED_CONTACT_CONTACTTYPEIDS_H

#include "pimshared/common/TypeIds.h"

// Type IDs of the contact. The object node (TypeIdObjTypeContact), the
// instance leaf and the 1000-range values shared with the calendar family
// come from the common header; the names below are the contact's own and live
// in their own namespace, because several of them (categories, classification,
// version ...) name elements of other items too.

namespace PimShared {
namespace ContactTypeIds {

/// Property nodes. Properties sit directly in the object node: a contact has
/// no component node. 411 and 417 are not used.
constexpr unsigned int TypeIdPropTypeFormattedName = 400;
constexpr unsigned int TypeIdPropTypeName = 401;
constexpr unsigned int TypeIdPropTypeNickname = 402;
constexpr unsigned int TypeIdPropTypePhoto = 403;
constexpr unsigned int TypeIdPropTypeBirthday = 404;
constexpr unsigned int TypeIdPropTypeAddress = 405;
constexpr unsigned int TypeIdPropTypeLabel = 406;
constexpr unsigned int TypeIdPropTypeTelephone = 407;
constexpr unsigned int TypeIdPropTypeEmail = 408;
constexpr unsigned int TypeIdPropTypeMailer = 409;
constexpr unsigned int TypeIdPropTypeTimezone = 410;
constexpr unsigned int TypeIdPropTypeTitle = 412;
constexpr unsigned int TypeIdPropTypeRole = 413;
constexpr unsigned int TypeIdPropTypeLogo = 414;
constexpr unsigned int TypeIdPropTypeAgent = 415;
constexpr unsigned int TypeIdPropTypeOrganization = 416;
constexpr unsigned int TypeIdPropTypeNote = 418;
constexpr unsigned int TypeIdPropTypeProdID = 419;
constexpr unsigned int TypeIdPropTypeRevision = 420;
constexpr unsigned int TypeIdPropTypeSortString = 421;
constexpr unsigned int TypeIdPropTypeSound = 422;
constexpr unsigned int TypeIdPropTypeUID = 423;
constexpr unsigned int TypeIdPropTypeURL = 424;
constexpr unsigned int TypeIdPropTypeContactVersion = 425;
constexpr unsigned int TypeIdPropTypeContactClassification = 426;
constexpr unsigned int TypeIdPropTypeKey = 427;
constexpr unsigned int TypeIdPropTypePhotoAvailability = 428;
constexpr unsigned int TypeIdPropTypeSpeedDial = 429;
constexpr unsigned int TypeIdPropTypeXUID = 430;
constexpr unsigned int TypeIdPropTypeXUCI = 431;
constexpr unsigned int TypeIdPropTypeHandle = 432;
constexpr unsigned int TypeIdPropTypeCategories = 900;
constexpr unsigned int TypeIdPropTypeGeographicPosition = 901;
constexpr unsigned int TypeIdPropTypeNonStandard = 902;

/// Value leaves of the contact's own range.
constexpr unsigned int TypeIdValTypeFormattedName = 500;
constexpr unsigned int TypeIdValTypeNickname = 501;
constexpr unsigned int TypeIdValTypeTitle = 503;
constexpr unsigned int TypeIdValTypeContactRole = 504;
constexpr unsigned int TypeIdValTypeNote = 506;
constexpr unsigned int TypeIdValTypeSortString = 507;
constexpr unsigned int TypeIdValTypeNamePart1 = 508;
constexpr unsigned int TypeIdValTypeNamePart2 = 509;
constexpr unsigned int TypeIdValTypeNamePart3 = 510;
constexpr unsigned int TypeIdValTypeNamePart4 = 511;
constexpr unsigned int TypeIdValTypeNamePart5 = 512;
constexpr unsigned int TypeIdValTypeMediaType = 514;
constexpr unsigned int TypeIdValTypeMediaText3 = 516;
constexpr unsigned int TypeIdValTypeAddressType = 519;  ///< Bitfield8
constexpr unsigned int TypeIdValTypeAddressPart1 = 520;
constexpr unsigned int TypeIdValTypeAddressPart2 = 521;
constexpr unsigned int TypeIdValTypeAddressPart3 = 522;
constexpr unsigned int TypeIdValTypeAddressPart4 = 523;
constexpr unsigned int TypeIdValTypeAddressPart5 = 524;
constexpr unsigned int TypeIdValTypeAddressPart6 = 525;
constexpr unsigned int TypeIdValTypeAddressPart7 = 526;
constexpr unsigned int TypeIdValTypeLabel = 527;
/// Bitfield16 in a telephone node, but UInt16 in an XUCI node: existing
/// streams carry both classes under this one ID.
constexpr unsigned int TypeIdValTypeTelType = 528;
constexpr unsigned int TypeIdValTypeTelNumber = 529;
constexpr unsigned int TypeIdValTypeTelByte = 530;   ///< UInt8
constexpr unsigned int TypeIdValTypeTelFlags = 531;  ///< Bitfield16
constexpr unsigned int TypeIdValTypeTelText = 532;
constexpr unsigned int TypeIdValTypeEmailType = 533;  ///< Bitfield8
constexpr unsigned int TypeIdValTypeEmailAddress = 534;
constexpr unsigned int TypeIdValTypeTimezoneText1 = 535;
constexpr unsigned int TypeIdValTypeTimezoneText2 = 536;
constexpr unsigned int TypeIdValTypeAgentText = 539;
constexpr unsigned int TypeIdValTypeOrgName = 540;
constexpr unsigned int TypeIdValTypeOrgUnit = 541;
constexpr unsigned int TypeIdValTypeKeyType = 542;
constexpr unsigned int TypeIdValTypeMailer = 543;
constexpr unsigned int TypeIdValTypeURL = 544;
constexpr unsigned int TypeIdValTypeProdID = 545;
constexpr unsigned int TypeIdValTypePhotoAvailability = 546;  ///< UInt8, 0 or 1
constexpr unsigned int TypeIdValTypeSpeedDial = 547;
constexpr unsigned int TypeIdValTypeXUID = 548;
constexpr unsigned int TypeIdValTypeXUCIText = 549;
constexpr unsigned int TypeIdValTypeXUCINumber = 550;  ///< UInt16

/// Values of the shared 1000 range that the common header does not name.
constexpr unsigned int TypeIdValTypeMediaText1 = 1000;
constexpr unsigned int TypeIdValTypeBinaryData = 1001;  ///< ByteStream
constexpr unsigned int TypeIdValTypeClassification = 1003;
constexpr unsigned int TypeIdValTypeGeoText1 = 1005;
constexpr unsigned int TypeIdValTypeGeoText2 = 1006;
constexpr unsigned int TypeIdValTypeNonStandardName = 1011;
constexpr unsigned int TypeIdValTypeNonStandardValue = 1012;
constexpr unsigned int TypeIdValTypeHandle = 1017;

}  // namespace ContactTypeIds
}  // namespace PimShared

#endif
