#include "CalendarFamily.h"

namespace PimTool {

std::vector<TypeName> CalendarFamilyNames() {
    using namespace PimShared;
    using namespace PimShared::CalendarTypeIds;
#define NODE(c)                \
    TypeName {                 \
        c, true, kNoParent, #c \
    }
#define LEAF(c)                 \
    TypeName {                  \
        c, false, kNoParent, #c \
    }
    return {
        NODE(TypeIdPropTypeProductIdentifier),
        NODE(TypeIdPropTypeVersion),
        NODE(TypeIdPropTypeClassification),
        NODE(TypeIdPropTypeDescription),
        NODE(TypeIdPropTypeLocation),
        NODE(TypeIdPropTypePriority),
        NODE(TypeIdPropTypeStatus),
        NODE(TypeIdPropTypeSummary),
        NODE(TypeIdPropTypeDateTimeEnd),
        NODE(TypeIdPropTypeDateTimeStart),
        NODE(TypeIdPropTypeAttendee),
        NODE(TypeIdPropTypeOrganizer),
        NODE(TypeIdPropTypeUniqueIdentifier),
        NODE(TypeIdPropTypeDateTimeCreated),
        NODE(TypeIdPropTypeLastModified),
        NODE(TypeIdPropTypeSequenceNumber),
        NODE(TypeIdPropTypeDateTimeStartLocal),
        NODE(TypeIdPropTypeDateTimeEndLocal),
        NODE(TypeIdPropTypeDateTimeDueLocal),
        NODE(TypeIdPropTypeSendStatus),
        NODE(TypeIdPropTypeCategories),
        NODE(TypeIdObjLevelMarker),
        NODE(TypeIdPropTypeObjLevel),
        LEAF(TypeIdValTypeProductIdentifier),
        LEAF(TypeIdValTypeAltRep),
        LEAF(TypeIdValTypeDescription),
        LEAF(TypeIdValTypeLocation),
        LEAF(TypeIdValTypePriority),
        LEAF(TypeIdValTypeStatus),
        LEAF(TypeIdValTypeSummary),
        LEAF(TypeIdValTypeCuType),
        LEAF(TypeIdValTypeMember),
        LEAF(TypeIdValTypeRole),
        LEAF(TypeIdValTypePartStat),
        LEAF(TypeIdValTypeRsvp),
        LEAF(TypeIdValTypeDelegatedTo),
        LEAF(TypeIdValTypeDelegatedFrom),
        LEAF(TypeIdValTypeSentBy),
        LEAF(TypeIdValTypeCommonName),
        LEAF(TypeIdValTypeDirectory),
        LEAF(TypeIdValTypeCalAddress),
        LEAF(TypeIdValTypeSequenceNumber),
        LEAF(TypeIdValTypeSendStatus),
        LEAF(TypeIdValTypeClassification),
        LEAF(TypeIdValTypeObjLevel),
        LEAF(TypeIdValTypeInstanceName),
        LEAF(TypeIdValTypeLanguage),
        LEAF(TypeIdValTypeCategory),
        LEAF(TypeIdValTypeDateTime),
        LEAF(TypeIdValTypeDateTimeAlt),
        LEAF(TypeIdValTypeUniqueIdentifier),
        LEAF(TypeIdValTypeXparamName),
        LEAF(TypeIdValTypeXparamValue),
        LEAF(TypeIdValTypeVersion),
        LEAF(TypeIdValTypeDateTimeZone),
    };
#undef NODE
#undef LEAF
}

}  // namespace PimTool
