// The SMS in the tool.
#include "Items.h"
#include "pimshared/sms/SMSDescription.h"
#include "pimshared/sms/SMSTypeIds.h"

namespace PimTool {

namespace {

std::vector<TypeName> SmsNames() {
    using namespace PimShared::SMSTypeIds;
#define NODE(c)                \
    TypeName {                 \
        c, true, kNoParent, #c \
    }
#define LEAF(c)                 \
    TypeName {                  \
        c, false, kNoParent, #c \
    }
    return {
        NODE(TypeIdCompTypeSMS),
        NODE(TypeIdPropTypeConcat),
        LEAF(TypeIdValTypeSMSState),
        LEAF(TypeIdValTypeSMSType),
        LEAF(TypeIdValTypeTimestamp),
        LEAF(TypeIdValTypeTimestampLocal),
        LEAF(TypeIdValTypeStorageType),
        LEAF(TypeIdValTypeStorageIndex),
        LEAF(TypeIdValTypeSubject),
        LEAF(TypeIdValTypeServiceCenter),
        LEAF(TypeIdValTypeOriginator),
        LEAF(TypeIdValTypeDestination),
        LEAF(TypeIdValTypeOriginatorFName),
        LEAF(TypeIdValTypeDestinationFName),
        LEAF(TypeIdValTypeReadStatus),
        LEAF(TypeIdValTypeDownloadState),
        LEAF(TypeIdValTypeConcat1),
        LEAF(TypeIdValTypeConcat2),
        LEAF(TypeIdValTypeConcat3),
        LEAF(TypeIdValTypeBody),
        LEAF(TypeIdValTypeSendingState),
        LEAF(TypeIdValTypeFolder),
        LEAF(TypeIdValTypeInstanceName),
        LEAF(TypeIdValTypeMessagePriority),
        LEAF(TypeIdValTypeNamePart1),
        LEAF(TypeIdValTypeNamePart2),
        LEAF(TypeIdValTypeNamePart3),
        LEAF(TypeIdValTypeNamePart4),
        LEAF(TypeIdValTypeNamePart5),
    };
#undef NODE
#undef LEAF
}

}  // namespace

const ItemAdapter kSmsItem = {
    PimShared::SmsItem::kKind,
    SmsNames(),
    OperationsOf<PimShared::SmsOperations>(),
    &DecodeItem<PimShared::SmsItem>,
    "OriginatorName comes back as one call per name part; its first part and empty parts are "
    "not carried, and OriginatorFName and DestinationFName refuse empty texts.",
};

}  // namespace PimTool
