#ifndef PIMTLV_PIMSHARED_CONTACT_CONTACTLAYOUT_H
#define PIMTLV_PIMSHARED_CONTACT_CONTACTLAYOUT_H

// The contact's properties as data, shared by the creator and the parser:
// each property's node, how its writer ends when a step is refused, whether
// the parser takes the node, and which value leaves the parser stores, in the
// order of the receiver operation's arguments. Everything in which the
// contact differs from the other node-per-property items is a column here.
// Internal: not part of the library's interface.

#include <cstddef>

#include "pimshared/contact/ContactTypeIds.h"

namespace PimShared {
namespace ContactLayout {

// Rows are in slot order of the property operations; slot 0 and 1 are Begin
// and End, so row i is the operation of slot i + FirstPropertySlot.
enum eProperty : unsigned int {
    FormattedName,
    Name,
    Nickname,
    Photo,
    Birthday,
    Address,
    Label,
    Telephone,
    Email,
    Mailer,
    Timezone,
    GeographicPosition,
    Title,
    Role,
    Logo,
    Agent,
    Organization,
    Categories,
    Note,
    Revision,
    SortString,
    Sound,
    UID,
    SpeedDial,
    XUID,
    XUCI,
    Handle,
    URL,
    Version,
    Classification,
    ProdID,
    Key,
    PhotoAvailability,
    NonStandardProperty,
    PropertyCount
};
constexpr unsigned int FirstPropertySlot = 2;

// What a writer does once a step is refused. Streams in the field depend on
// each operation keeping its own behaviour, so it is recorded per property.
enum class eFailureRule : unsigned char {
    CloseNode,           // an opened node is always closed; the result is NodeEnd's
    CloseNodeAllLeaves,  // likewise, but true only if every leaf was written too
    LeaveOpen,           // the first refusal ends the operation; the node stays open
};

// Whether the parser takes a property node. Skipped nodes would be known but
// not implemented (reported, contents dropped); the contact has none today.
enum class eAcceptance : unsigned char { Accepted, Refused, Skipped };

// What the parser does with a value leaf that has no column in the row.
enum class eStorePolicy : unsigned char {
    Report,                  // reported as an unexpected value ID
    DropQuietlyKeepNumbers,  // dropped silently; numbers outlive the callback
    NoStore,                 // the property has no store: every leaf is reported
};

enum class eValueKind : unsigned char { Text, TextList, Data, UInt8, UInt16, Flag };

struct tValue {
    unsigned short id;
    eValueKind kind;
};

// A receiver argument that no leaf fills.
constexpr unsigned short NoLeaf = 0xFFFF;
constexpr std::size_t MaxValues = 10;

struct tProperty {
    unsigned short node;
    eFailureRule rule;
    eAcceptance acceptance;
    eStorePolicy store;
    bool xParams;
    tValue values[MaxValues];  // receiver argument order; unused columns have ID 0
};

// The number of columns a row uses (no value leaf has ID 0).
constexpr unsigned int ColumnCount(const tProperty& row) {
    unsigned int n = 0;
    while (n < MaxValues && row.values[n].id != 0) ++n;
    return n;
}

namespace Detail {
using namespace ContactTypeIds;
constexpr eValueKind T = eValueKind::Text;
constexpr eValueKind L = eValueKind::TextList;
constexpr eValueKind D = eValueKind::Data;
constexpr eValueKind U8 = eValueKind::UInt8;
constexpr eValueKind U16 = eValueKind::UInt16;
constexpr eFailureRule E = eFailureRule::CloseNode;
constexpr eFailureRule EAll = eFailureRule::CloseNodeAllLeaves;
constexpr eFailureRule Open = eFailureRule::LeaveOpen;
constexpr eAcceptance Yes = eAcceptance::Accepted;
constexpr eStorePolicy Rep = eStorePolicy::Report;
constexpr unsigned short Lang = TypeIdValTypeLanguage;
constexpr unsigned short Bin = TypeIdValTypeBinaryData;
constexpr unsigned short Media1 = TypeIdValTypeMediaText1;
constexpr unsigned short MediaType = TypeIdValTypeMediaType;
constexpr unsigned short Media3 = TypeIdValTypeMediaText3;

// clang-format off
constexpr tProperty kProperties[] = {
    {TypeIdPropTypeFormattedName, Open, Yes, Rep, true, {{TypeIdValTypeFormattedName, T}, {Lang, T}}},
    {TypeIdPropTypeName, E, Yes, Rep, true,
     {{TypeIdValTypeNamePart1, T}, {TypeIdValTypeNamePart2, T}, {TypeIdValTypeNamePart3, T},
      {TypeIdValTypeNamePart4, T}, {TypeIdValTypeNamePart5, T}, {Lang, T}}},
    {TypeIdPropTypeNickname, E, Yes, Rep, true, {{TypeIdValTypeNickname, L}, {Lang, T}}},
    {TypeIdPropTypePhoto, E, Yes, Rep, false, {{Media1, T}, {MediaType, T}, {Bin, D}, {Media3, T}}},
    {TypeIdPropTypeBirthday, E, Yes, Rep, false, {{TypeIdValTypeDateTime, T}, {TypeIdValTypeDateTimeAlt, T}}},
    {TypeIdPropTypeAddress, E, Yes, Rep, true,
     {{TypeIdValTypeAddressPart1, T}, {TypeIdValTypeAddressPart2, T}, {TypeIdValTypeAddressPart3, T},
      {TypeIdValTypeAddressPart4, T}, {TypeIdValTypeAddressPart5, T}, {TypeIdValTypeAddressPart6, T},
      {TypeIdValTypeAddressPart7, T}, {TypeIdValTypeAddressType, U8}, {Lang, T}}},
    {TypeIdPropTypeLabel, E, Yes, Rep, true, {{TypeIdValTypeLabel, T}, {TypeIdValTypeAddressType, U8}, {Lang, T}}},
    {TypeIdPropTypeTelephone, E, Yes, Rep, true,
     {{TypeIdValTypeTelNumber, T}, {TypeIdValTypeTelType, U16}, {TypeIdValTypeTelByte, U8},
      {TypeIdValTypeTelFlags, U16}, {TypeIdValTypeTelText, T}}},
    {TypeIdPropTypeEmail, E, Yes, Rep, false, {{TypeIdValTypeEmailAddress, T}, {TypeIdValTypeEmailType, U8}}},
    {TypeIdPropTypeMailer, E, Yes, Rep, true, {{TypeIdValTypeMailer, T}, {Lang, T}}},
    {TypeIdPropTypeTimezone, E, Yes, Rep, false, {{TypeIdValTypeTimezoneText1, T}, {TypeIdValTypeTimezoneText2, T}}},
    {TypeIdPropTypeGeographicPosition, E, Yes, Rep, false, {{TypeIdValTypeGeoText1, T}, {TypeIdValTypeGeoText2, T}}},
    {TypeIdPropTypeTitle, E, Yes, Rep, true, {{TypeIdValTypeTitle, T}, {Lang, T}}},
    {TypeIdPropTypeRole, E, Yes, Rep, true, {{TypeIdValTypeContactRole, T}, {Lang, T}}},
    {TypeIdPropTypeLogo, E, Yes, Rep, false, {{Media1, T}, {MediaType, T}, {Bin, D}, {Media3, T}}},
    {TypeIdPropTypeAgent, E, Yes, Rep, false, {{Media1, T}, {TypeIdValTypeAgentText, T}}},
    {TypeIdPropTypeOrganization, E, Yes, Rep, false, {{TypeIdValTypeOrgName, T}, {TypeIdValTypeOrgUnit, L}}},
    {TypeIdPropTypeCategories, E, Yes, Rep, true, {{TypeIdValTypeCategory, L}, {Lang, T}}},
    {TypeIdPropTypeNote, E, Yes, Rep, true, {{TypeIdValTypeNote, T}, {Lang, T}}},
    {TypeIdPropTypeRevision, E, Yes, Rep, false, {{TypeIdValTypeDateTime, T}, {TypeIdValTypeDateTimeAlt, T}}},
    {TypeIdPropTypeSortString, E, Yes, Rep, true, {{TypeIdValTypeSortString, T}, {Lang, T}}},
    {TypeIdPropTypeSound, E, Yes, Rep, false,
     {{Media1, T}, {MediaType, T}, {Bin, D}, {Media3, T}, {TypeIdValTypeFormattedName, T},
      {TypeIdValTypeNamePart1, T}, {TypeIdValTypeNamePart2, T}, {TypeIdValTypeNamePart3, T},
      {TypeIdValTypeNamePart4, T}, {TypeIdValTypeNamePart5, T}}},
    {TypeIdPropTypeUID, E, Yes, Rep, false, {{TypeIdValTypeUniqueIdentifier, T}}},
    {TypeIdPropTypeSpeedDial, Open, Yes, Rep, false, {{TypeIdValTypeSpeedDial, T}}},
    // No leaf fills the XUID store: its callback always gets a null text.
    {TypeIdPropTypeXUID, E, Yes, eStorePolicy::NoStore, false, {{NoLeaf, T}}},
    // The signed argument travels in 550; the unsigned one (written as 528)
    // is dropped on reading, so its argument has no leaf.
    {TypeIdPropTypeXUCI, EAll, Yes, eStorePolicy::DropQuietlyKeepNumbers, false,
     {{TypeIdValTypeXUCIText, T}, {TypeIdValTypeXUCINumber, U16}, {NoLeaf, U16}}},
    // Written, but refused by the parser: older readers never took it.
    {TypeIdPropTypeHandle, Open, eAcceptance::Refused, Rep, false, {{TypeIdValTypeHandle, T}}},
    {TypeIdPropTypeURL, E, Yes, Rep, false, {{TypeIdValTypeURL, T}}},
    {TypeIdPropTypeContactVersion, E, Yes, Rep, false, {{TypeIdValTypeVersion, T}}},
    {TypeIdPropTypeContactClassification, E, Yes, Rep, false, {{TypeIdValTypeClassification, T}}},
    {TypeIdPropTypeProdID, E, Yes, Rep, false, {{TypeIdValTypeProdID, T}}},
    {TypeIdPropTypeKey, E, Yes, Rep, false, {{TypeIdValTypeKeyType, T}, {MediaType, T}, {Bin, D}}},
    {TypeIdPropTypePhotoAvailability, E, Yes, Rep, false, {{TypeIdValTypePhotoAvailability, eValueKind::Flag}}},
    {TypeIdPropTypeNonStandard, E, Yes, Rep, true,
     {{TypeIdValTypeNonStandardName, T}, {TypeIdValTypeNonStandardValue, T}, {Bin, D}}},
};
// clang-format on
}  // namespace Detail

static_assert(sizeof(Detail::kProperties) / sizeof(Detail::kProperties[0]) == PropertyCount,
              "one row per property operation, in slot order");

constexpr const tProperty& Row(eProperty property) {
    return Detail::kProperties[property];
}

// The row index of a property node, or PropertyCount when the ID is none.
constexpr unsigned int IndexOfNode(unsigned int node) {
    for (unsigned int i = 0; i < PropertyCount; ++i) {
        if (Detail::kProperties[i].node == node) return i;
    }
    return PropertyCount;
}

static_assert(IndexOfNode(ContactTypeIds::TypeIdPropTypeNonStandard) == NonStandardProperty &&
                  IndexOfNode(ContactTypeIds::TypeIdPropTypeHandle) == Handle &&
                  IndexOfNode(411) == PropertyCount,
              "rows and the operation order agree");
static_assert(ColumnCount(Row(Sound)) == 10 && ColumnCount(Row(Address)) == 9 &&
                  ColumnCount(Row(XUCI)) == 3 && ColumnCount(Row(Telephone)) == 5,
              "the widest rows hold every argument of their operation");

}  // namespace ContactLayout
}  // namespace PimShared

#endif
