#ifndef PIMTLV_PIMSHARED_EMAIL_EMAILDESCRIPTION_H
#define PIMTLV_PIMSHARED_EMAIL_EMAILDESCRIPTION_H

// The e-mail's operations, described once (see pimshared/common/ItemDescription.h):
// a new property is added to IEmailAttributes and to this list.

#include "pimshared/common/MimeMessageDescription.h"
#include "pimshared/email/IEmailReceiver.h"
#include "pimshared/email/TLVEmailCreator.h"
#include "pimshared/email/TLVEmailParser.h"

#define PIMTLV_EMAIL_OPERATIONS(OP, OP0, OVERLOAD)     \
    PIMTLV_MIME_MESSAGE_OPERATIONS(OP, OP0, OVERLOAD)  \
    OP(Group, "name", "mailboxes")                     \
    OP(Mailbox, "fieldType", "displayName", "address") \
    OVERLOAD(Priority, Priority, (const IEmailAttributes::ePriority&), "priority")

namespace PimShared {
namespace Description {

template <>
struct Record<IEmailAttributes::tMailbox> {
    using T = IEmailAttributes::tMailbox;
    static constexpr auto kFields = std::make_tuple(&T::fieldType, &T::displayName, &T::address);
    static constexpr auto kNames = Names("fieldType", "displayName", "address");
};

}  // namespace Description

PIMTLV_DESCRIBE_ITEM(EmailItem, "email", IEmailAttributes, IEmailReceiver, CTLVEmailParser,
                     CTLVEmailCreator, EmailOperations, TEmailReceiverFor, TEmailSlots,
                     PIMTLV_EMAIL_OPERATIONS)

}  // namespace PimShared

#endif
