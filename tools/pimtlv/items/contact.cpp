// The contact in the tool.
#include "Items.h"
#include "pimshared/contact/ContactDescription.h"
#include "pimshared/contact/ContactTypeIds.h"

namespace PimTool {

namespace {

std::vector<TypeName> ContactNames() {
    using namespace PimShared;
    using namespace PimShared::ContactTypeIds;
#define NODE(c)                \
    TypeName {                 \
        c, true, kNoParent, #c \
    }
#define LEAF(c)                 \
    TypeName {                  \
        c, false, kNoParent, #c \
    }
    return {
        NODE(TypeIdPropTypeFormattedName),
        NODE(TypeIdPropTypeName),
        NODE(TypeIdPropTypeNickname),
        NODE(TypeIdPropTypePhoto),
        NODE(TypeIdPropTypeBirthday),
        NODE(TypeIdPropTypeAddress),
        NODE(TypeIdPropTypeLabel),
        NODE(TypeIdPropTypeTelephone),
        NODE(TypeIdPropTypeEmail),
        NODE(TypeIdPropTypeMailer),
        NODE(TypeIdPropTypeTimezone),
        NODE(TypeIdPropTypeTitle),
        NODE(TypeIdPropTypeRole),
        NODE(TypeIdPropTypeLogo),
        NODE(TypeIdPropTypeAgent),
        NODE(TypeIdPropTypeOrganization),
        NODE(TypeIdPropTypeNote),
        NODE(TypeIdPropTypeProdID),
        NODE(TypeIdPropTypeRevision),
        NODE(TypeIdPropTypeSortString),
        NODE(TypeIdPropTypeSound),
        NODE(TypeIdPropTypeUID),
        NODE(TypeIdPropTypeURL),
        NODE(TypeIdPropTypeContactVersion),
        NODE(TypeIdPropTypeContactClassification),
        NODE(TypeIdPropTypeKey),
        NODE(TypeIdPropTypePhotoAvailability),
        NODE(TypeIdPropTypeSpeedDial),
        NODE(TypeIdPropTypeXUID),
        NODE(TypeIdPropTypeXUCI),
        NODE(TypeIdPropTypeHandle),
        NODE(TypeIdPropTypeCategories),
        NODE(TypeIdPropTypeGeographicPosition),
        NODE(TypeIdPropTypeNonStandard),
        LEAF(TypeIdValTypeFormattedName),
        LEAF(TypeIdValTypeNickname),
        LEAF(TypeIdValTypeTitle),
        LEAF(TypeIdValTypeContactRole),
        LEAF(TypeIdValTypeNote),
        LEAF(TypeIdValTypeSortString),
        LEAF(TypeIdValTypeNamePart1),
        LEAF(TypeIdValTypeNamePart2),
        LEAF(TypeIdValTypeNamePart3),
        LEAF(TypeIdValTypeNamePart4),
        LEAF(TypeIdValTypeNamePart5),
        LEAF(TypeIdValTypeMediaType),
        LEAF(TypeIdValTypeMediaText3),
        LEAF(TypeIdValTypeAddressType),
        LEAF(TypeIdValTypeAddressPart1),
        LEAF(TypeIdValTypeAddressPart2),
        LEAF(TypeIdValTypeAddressPart3),
        LEAF(TypeIdValTypeAddressPart4),
        LEAF(TypeIdValTypeAddressPart5),
        LEAF(TypeIdValTypeAddressPart6),
        LEAF(TypeIdValTypeAddressPart7),
        LEAF(TypeIdValTypeLabel),
        LEAF(TypeIdValTypeTelType),
        LEAF(TypeIdValTypeTelNumber),
        LEAF(TypeIdValTypeTelByte),
        LEAF(TypeIdValTypeTelFlags),
        LEAF(TypeIdValTypeTelText),
        LEAF(TypeIdValTypeEmailType),
        LEAF(TypeIdValTypeEmailAddress),
        LEAF(TypeIdValTypeTimezoneText1),
        LEAF(TypeIdValTypeTimezoneText2),
        LEAF(TypeIdValTypeAgentText),
        LEAF(TypeIdValTypeOrgName),
        LEAF(TypeIdValTypeOrgUnit),
        LEAF(TypeIdValTypeKeyType),
        LEAF(TypeIdValTypeMailer),
        LEAF(TypeIdValTypeURL),
        LEAF(TypeIdValTypeProdID),
        LEAF(TypeIdValTypePhotoAvailability),
        LEAF(TypeIdValTypeSpeedDial),
        LEAF(TypeIdValTypeXUID),
        LEAF(TypeIdValTypeXUCIText),
        LEAF(TypeIdValTypeXUCINumber),
        LEAF(TypeIdValTypeMediaText1),
        LEAF(TypeIdValTypeBinaryData),
        LEAF(TypeIdValTypeClassification),
        LEAF(TypeIdValTypeGeoText1),
        LEAF(TypeIdValTypeGeoText2),
        LEAF(TypeIdValTypeNonStandardName),
        LEAF(TypeIdValTypeNonStandardValue),
        LEAF(TypeIdValTypeHandle),
        LEAF(TypeIdValTypeLanguage),
        LEAF(TypeIdValTypeCategory),
        LEAF(TypeIdValTypeDateTime),
        LEAF(TypeIdValTypeDateTimeAlt),
        LEAF(TypeIdValTypeUniqueIdentifier),
        LEAF(TypeIdValTypeXparamName),
        LEAF(TypeIdValTypeXparamValue),
        LEAF(TypeIdValTypeVersion),
    };
#undef NODE
#undef LEAF
}

}  // namespace

const ItemAdapter kContactItem = {
    PimShared::ContactItem::kKind,
    ContactNames(),
    OperationsOf<PimShared::ContactOperations>(),
    &DecodeItem<PimShared::ContactItem>,
    "XUCI comes back with only the low 16 bits of its signed number and without its unsigned "
    "number (the parser drops the 528 leaf); XUID comes back with a null text and Handle not "
    "at all (the parser stores no XUID leaf and refuses the Handle node); a Name or Address "
    "without "
    "components, and Categories without entries, drop their text parameter and x-parameters; "
    "Agent with both or neither text and Birthday, Revision and Timezone with both texts keep "
    "only what the layout has room for.",
};

}  // namespace PimTool
