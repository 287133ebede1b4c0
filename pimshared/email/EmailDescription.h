#ifndef PIMTLV_PIMSHARED_EMAIL_EMAILDESCRIPTION_H
#define PIMTLV_PIMSHARED_EMAIL_EMAILDESCRIPTION_H

// The e-mail as code that iterates items sees it (see
// pimshared/common/ItemDescription.h). Its operations are listed under
// IEmailAttributes, where a new property is declared and listed.

#include "pimshared/common/MimeMessageDescription.h"
#include "pimshared/email/IEmailReceiver.h"
#include "pimshared/email/TLVEmailCreator.h"
#include "pimshared/email/TLVEmailParser.h"

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
