#ifndef PIMTLV_PIMSHARED_CONTACT_CONTACTDESCRIPTION_H
#define PIMTLV_PIMSHARED_CONTACT_CONTACTDESCRIPTION_H

// The contact's operations, described once (see pimshared/common/ItemDescription.h):
// a new property is added to IContactAttributes and to this list.

#include "pimshared/common/CalendarFamilyDescription.h"
#include "pimshared/contact/ContactReceiver.h"
#include "pimshared/contact/TLVContactCreator.h"
#include "pimshared/contact/TLVContactParser.h"

#define PIMTLV_CONTACT_OPERATIONS(OP, OP0, OVERLOAD)                                               \
    OP(Begin, "instance")                                                                          \
    OP0(End)                                                                                       \
    OP(FormattedName, "text", "textParameter", "xParams")                                          \
    OP(Name, "part1", "part2", "part3", "part4", "part5", "textParameter", "xParams")              \
    OP(Nickname, "nicknames", "textParameter", "xParams")                                          \
    OP(Photo, "mediaText1", "mediaType", "data", nullptr, "mediaText3")                            \
    OP(Birthday, "dateTime", "dateTimeAlt")                                                        \
    OP(Address, "part1", "part2", "part3", "part4", "part5", "part6", "part7", "addressType",      \
       "textParameter", "xParams")                                                                 \
    OP(Label, "text", "addressType", "textParameter", "xParams")                                   \
    OP(Telephone, "number", "telephoneType", "telephoneByte", "telephoneFlags", "text", "xParams") \
    OP(Email, "address", "emailType")                                                              \
    OP(Mailer, "text", "textParameter", "xParams")                                                 \
    OP(Timezone, "text1", "text2")                                                                 \
    OP(GeographicPosition, "coordinate1", "coordinate2")                                           \
    OP(Title, "text", "textParameter", "xParams")                                                  \
    OP(Role, "text", "textParameter", "xParams")                                                   \
    OP(Logo, "mediaText1", "mediaType", "data", nullptr, "mediaText3")                             \
    OP(Agent, "text1", "text2")                                                                    \
    OP(Organization, "name", "units")                                                              \
    OP(Categories, "categories", "textParameter", "xParams")                                       \
    OP(Note, "text", "textParameter", "xParams")                                                   \
    OP(Revision, "dateTime", "dateTimeAlt")                                                        \
    OP(SortString, "text", "textParameter", "xParams")                                             \
    OP(Sound, "mediaText1", "mediaType", "data", nullptr, "mediaText3", "formattedName",           \
       "namePart1", "namePart2", "namePart3", "namePart4", "namePart5")                            \
    OP(UID, "text")                                                                                \
    OP(SpeedDial, "text")                                                                          \
    OP(XUID, "text")                                                                               \
    OP(XUCI, "text", "number", "unsignedNumber")                                                   \
    OP(Handle, "text")                                                                             \
    OP(URL, "text")                                                                                \
    OP(Version, "text")                                                                            \
    OP(Classification, "text")                                                                     \
    OP(ProdID, "text")                                                                             \
    OP(Key, "keyType", "mediaType", "data", nullptr)                                               \
    OP(PhotoAvailability, "available")                                                             \
    OP(NonStandardProperty, "name", "value", "data", nullptr, "xParams")

namespace PimShared {

PIMTLV_DESCRIBE_ITEM(ContactItem, "contact", IContactAttributes, IContactReceiver,
                     CTLVContactParser, CTLVContactCreator, ContactOperations, TContactReceiverFor,
                     TContactSlots, PIMTLV_CONTACT_OPERATIONS)

}  // namespace PimShared

#endif
