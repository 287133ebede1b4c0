#ifndef PIMTLV_PIMSHARED_COMMON_CALENDARTYPEIDS_H
#define PIMTLV_PIMSHARED_COMMON_CALENDARTYPEIDS_H

// Type IDs of the calendar family (events, tasks, notes). The family has one
// numbering: an ID that two of its items share means the same thing in both.
// The frame IDs (object and component nodes, the instance leaf) and the value
// IDs of the 1000 range live in TypeIds.h, the zone text 323 in
// CreatorFrame.h. The nested namespace keeps these names apart from the
// contact's, which reuses some of the words with other numbers.

namespace PimShared {
namespace CalendarTypeIds {

/// Property nodes.
constexpr unsigned int TypeIdPropTypeProductIdentifier = 202;
constexpr unsigned int TypeIdPropTypeVersion = 203;
constexpr unsigned int TypeIdPropTypeClassification = 206;
constexpr unsigned int TypeIdPropTypeDescription = 208;
constexpr unsigned int TypeIdPropTypeLocation = 210;
constexpr unsigned int TypeIdPropTypePriority = 212;
constexpr unsigned int TypeIdPropTypeStatus = 214;
constexpr unsigned int TypeIdPropTypeSummary = 215;
constexpr unsigned int TypeIdPropTypeDateTimeEnd = 217;
constexpr unsigned int TypeIdPropTypeDateTimeStart = 219;
constexpr unsigned int TypeIdPropTypeAttendee = 228;
constexpr unsigned int TypeIdPropTypeOrganizer = 230;
constexpr unsigned int TypeIdPropTypeUniqueIdentifier = 234;
constexpr unsigned int TypeIdPropTypeDateTimeCreated = 242;
constexpr unsigned int TypeIdPropTypeLastModified = 244;
constexpr unsigned int TypeIdPropTypeSequenceNumber = 245;
constexpr unsigned int TypeIdPropTypeDateTimeStartLocal = 249;
constexpr unsigned int TypeIdPropTypeDateTimeEndLocal = 250;
constexpr unsigned int TypeIdPropTypeDateTimeDueLocal = 251;
constexpr unsigned int TypeIdPropTypeSendStatus = 252;
constexpr unsigned int TypeIdPropTypeCategories = 900;

/// Value leaves (String unless noted).
constexpr unsigned int TypeIdValTypeProductIdentifier = 302;
constexpr unsigned int TypeIdValTypeAltRep = 310;
constexpr unsigned int TypeIdValTypeDescription = 312;
constexpr unsigned int TypeIdValTypeLocation = 315;
constexpr unsigned int TypeIdValTypePriority = 317;  ///< UInt8
constexpr unsigned int TypeIdValTypeStatus = 319;    ///< String written; UInt8 code read too
constexpr unsigned int TypeIdValTypeSummary = 320;
constexpr unsigned int TypeIdValTypeCuType = 330;
constexpr unsigned int TypeIdValTypeMember = 331;
constexpr unsigned int TypeIdValTypeRole = 332;
constexpr unsigned int TypeIdValTypePartStat = 333;
constexpr unsigned int TypeIdValTypeRsvp = 334;  ///< UInt8
constexpr unsigned int TypeIdValTypeDelegatedTo = 335;
constexpr unsigned int TypeIdValTypeDelegatedFrom = 336;
constexpr unsigned int TypeIdValTypeSentBy = 337;
constexpr unsigned int TypeIdValTypeCommonName = 338;
constexpr unsigned int TypeIdValTypeDirectory = 339;
constexpr unsigned int TypeIdValTypeCalAddress = 340;
constexpr unsigned int TypeIdValTypeSequenceNumber = 367;  ///< UInt16
constexpr unsigned int TypeIdValTypeSendStatus = 377;      ///< UInt8
constexpr unsigned int TypeIdValTypeClassification = 1003;

/// Read but never written: object-level elements that older writers put
/// beside the component, and the instance name leaf.
constexpr unsigned int TypeIdObjLevelMarker = 100;  ///< node, accepted and ignored
constexpr unsigned int TypeIdPropTypeObjLevel = 201;
constexpr unsigned int TypeIdValTypeObjLevel = 301;
constexpr unsigned int TypeIdValTypeInstanceName = 904;

}  // namespace CalendarTypeIds
}  // namespace PimShared

#endif
