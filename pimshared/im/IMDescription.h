#ifndef PIMTLV_PIMSHARED_IM_IMDESCRIPTION_H
#define PIMTLV_PIMSHARED_IM_IMDESCRIPTION_H

// The instant message's operations, described once (see
// pimshared/common/ItemDescription.h): a new property is added to IIMAttributes
// and to this list.

#include "pimshared/common/MimeMessageDescription.h"
#include "pimshared/im/IIMReceiver.h"
#include "pimshared/im/TLVIMCreator.h"
#include "pimshared/im/TLVIMParser.h"

#define PIMTLV_IM_OPERATIONS(OP, OP0, OVERLOAD)                                            \
    PIMTLV_MIME_MESSAGE_OPERATIONS(OP, OP0, OVERLOAD)                                      \
    OP(Group, "name", "mailboxes")                                                         \
    OP(Mailbox, "fieldType", "client", "displayName", "address")                           \
    OVERLOAD(Priority, Priority, (const IIMAttributes::ePriority&), "priority")            \
    OP(Direction, "direction")                                                             \
    OP(EntityType, "entityType")                                                           \
    OP(ExtendedData, "data")                                                               \
    OP(ConversationID, "text")                                                             \
    OP(ConversationName, "text")                                                           \
    OP(ConversationLastActivity, "text")                                                   \
    OP(ConversationVersionCounter, "text")                                                 \
    OP(ConversationSummary, "text")                                                        \
    OP(OwnerAvailability, "availability")                                                  \
    OP(OwnerText, "text")                                                                  \
    OP(OwnerLastActivity, "text")                                                          \
    OP(OwnerChatState, "chatState")                                                        \
    OP(ConversationParticipant, "client", "text1", "text2", "chatState", "text3", "text4", \
       "text5", "availability", "text6", "flags")

namespace PimShared {
namespace Description {

template <>
struct Record<IIMAttributes::tMailbox> {
    using T = IIMAttributes::tMailbox;
    static constexpr auto kFields =
        std::make_tuple(&T::fieldType, &T::client, &T::displayName, &T::address);
    static constexpr auto kNames = Names("fieldType", "client", "displayName", "address");
};

template <>
struct Record<IIMAttributes::tExtendedData> {
    using T = IIMAttributes::tExtendedData;
    static constexpr auto kFields = std::make_tuple(&T::key, &T::value);
    static constexpr auto kNames = Names("key", "value");
};

}  // namespace Description

PIMTLV_DESCRIBE_ITEM(ImItem, "im", IIMAttributes, IIMReceiver, CTLVIMParser, CTLVIMCreator,
                     ImOperations, TImReceiverFor, TImSlots, PIMTLV_IM_OPERATIONS)

}  // namespace PimShared

#endif
