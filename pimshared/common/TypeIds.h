#ifndef PIMTLV_PIMSHARED_COMMON_TYPEIDS_H
#define PIMTLV_PIMSHARED_COMMON_TYPEIDS_H

// Type IDs that several items share. An ID means something only in its
// context: the same number can name different elements in different items,
// so item-specific IDs live with their item. Within the calendar family the
// numbering is one, and the value IDs of the 1000 range are shared by the
// calendar family and the contact.

namespace PimShared {

/// Object (root) nodes.
constexpr unsigned int TypeIdObjTypeContact = 0;       ///< contacts
constexpr unsigned int TypeIdObjTypeCalendarTask = 1;  ///< events and tasks
constexpr unsigned int TypeIdObjTypeMessage = 2;       ///< e-mail, instant message, SMS
constexpr unsigned int TypeIdObjTypeNote = 3;          ///< notes
constexpr unsigned int TypeIdObjTypeCallstack = 5;     ///< call lists

/// Component nodes of the calendar family.
constexpr unsigned int TypeIdCompTypeVevent = 103;    ///< an event
constexpr unsigned int TypeIdCompTypeVtodo = 104;     ///< a task
constexpr unsigned int TypeIdCompTypeVJournal = 105;  ///< a note

/// Value leaves shared across items.
constexpr unsigned int TypeIdValTypeInstance = 10;       ///< UInt32, the item's instance number
constexpr unsigned int TypeIdValTypeLanguage = 1002;     ///< String, a language tag
constexpr unsigned int TypeIdValTypeCategory = 1004;     ///< String, one category
constexpr unsigned int TypeIdValTypeDateTime = 1007;     ///< String, a date-time as iCalendar text
constexpr unsigned int TypeIdValTypeDateTimeAlt = 1008;  ///< String, a date-time in the older form
constexpr unsigned int TypeIdValTypeUniqueIdentifier = 1010;  ///< String, a unique identifier
constexpr unsigned int TypeIdValTypeXparamName = 1013;        ///< String, extension parameter name
constexpr unsigned int TypeIdValTypeXparamValue = 1014;       ///< String, extension parameter value
constexpr unsigned int TypeIdValTypeVersion = 1015;           ///< String, a version text

/// "No property" in the parsers' current-property slot, and "not given" for
/// the 32-bit enumerations of the Attributes interfaces.
constexpr unsigned int TypeIdNone = 0xFFFFFFFFu;

}  // namespace PimShared

#endif
