#ifndef PIMTLV_PIMSHARED_CONTACT_CONTACTDESCRIPTION_H
#define PIMTLV_PIMSHARED_CONTACT_CONTACTDESCRIPTION_H

// The contact as code that iterates items sees it (see
// pimshared/common/ItemDescription.h). Its operations are listed under
// IContactAttributes, where a new property is declared and listed.

#include "pimshared/common/CalendarFamilyDescription.h"
#include "pimshared/contact/ContactReceiver.h"
#include "pimshared/contact/TLVContactCreator.h"
#include "pimshared/contact/TLVContactParser.h"

namespace PimShared {

PIMTLV_DESCRIBE_ITEM(ContactItem, "contact", IContactAttributes, IContactReceiver,
                     CTLVContactParser, CTLVContactCreator, ContactOperations, TContactReceiverFor,
                     TContactSlots, PIMTLV_CONTACT_OPERATIONS)

}  // namespace PimShared

#endif
