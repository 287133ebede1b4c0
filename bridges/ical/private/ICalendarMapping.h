#ifndef PIMTLV_BRIDGES_ICAL_PRIVATE_ICALENDARMAPPING_H
#define PIMTLV_BRIDGES_ICAL_PRIVATE_ICALENDARMAPPING_H

// The one mapping between iCalendar properties and the operations of events,
// tasks and notes, used in both directions. Each row names a property, the
// shape of its values (which fixes the operation's arguments and which
// parameters have an argument of their own), the items that carry it and the
// operation(s) it becomes. Every parameter without an argument of its own
// travels as an extension parameter (name, value), so that export writes it
// back as it came.

#include <libical/ical.h>

#include <cstddef>
#include <string>

#include "pimshared/common/CalendarFamily.h"
#include "pimshared/common/XParam.h"
#include "platform/CDateAndTime.h"
#include "platform/TVector.h"

namespace PimBridge {
namespace Ical {

// The three items, as bits of a row's item set.
enum eItem : unsigned int { kEvent = 1, kTask = 2, kNote = 4 };

// The property operations of the calendar family (one enumerator per name;
// an item has a subset of them).
enum class eOp : unsigned char {
    None,
    ProductIdentifier,
    Version,
    Categories,
    Classification,
    Description,
    Location,
    Priority,
    Status,
    Summary,
    DateTimeStart,
    DateTimeEnd,
    DateTimeStartLocal,
    DateTimeEndLocal,
    DateTimeDueLocal,
    UniqueIdentifier,
    DateTimeCreated,
    LastModified,
    SequenceNumber,
    Attendee,
    Organizer,
};

// What arguments an operation takes, and so which parameters are its own.
enum class eShape : unsigned char {
    Text,        // text
    RichText,    // text, ALTREP, LANGUAGE
    Byte,        // 0..255
    Word,        // 0..65535
    DateTime,    // a date-time (see the date-time rules in PropertyRow)
    Categories,  // list, LANGUAGE
    Attendee,    // address and eleven parameters
    Organizer,   // address, SENT-BY, CN, DIR, LANGUAGE
};

struct PropertyRow {
    icalproperty_kind kind;
    eShape shape;
    unsigned int items;  // eItem bits
    // The operation; for a date-time the one for UTC and zoned values.
    eOp op;
    // Date-times: the operation for floating values (None: the item has
    // none, and op takes them with the floating marker).
    eOp localOp;
    // Date-times: whether op takes the zone as an argument (DTSTART, DTEND);
    // otherwise a zone travels as a TZID extension parameter.
    bool zoneArgument;
};

// The row of a property kind, or null when no item carries it.
const PropertyRow* RowOfKind(icalproperty_kind kind);
// The row whose op or localOp is op (never null for an op other than None).
const PropertyRow* RowOfOp(eOp op);

// Where a parameter with an argument of its own goes in PropertyValues: a
// text slot, a list slot, or the RSVP.
struct ParamSlot {
    icalparameter_kind kind;
    signed char text;  // index into PropertyValues::text, or -1
    signed char list;  // index into PropertyValues::list, or -1
};
constexpr signed char kRsvpSlot = 9;  // text == kRsvpSlot: the RSVP
const ParamSlot* ParamSlots(eShape shape, std::size_t& count);

// The values of one property as the operations take them. Text slot 0 is the
// main value (the text, the address); the others follow the argument order of
// the operation (see ParamSlots). Pointers are borrowed.
struct PropertyValues {
    static constexpr int kTexts = 8;
    static constexpr int kLists = 3;
    const char* text[kTexts] = {};
    const PAL::TVector<const char*>* list[kLists] = {};
    PimShared::eRsvpType rsvp = PimShared::eRsvpNotGiven;
    unsigned int number = 0;
    const PAL::CDateAndTime* dateTime = nullptr;
    const char* zone = nullptr;
    const PAL::TVector<PimShared::tXParam>* xParams = nullptr;
};

// Date-times whose operation does not say what they are carry these
// extension parameters: the time is UTC although the operation is for
// floating times (a UTC DUE), or floating although the operation is for UTC
// times (a floating CREATED); and a DATE value, which the date-time text
// cannot tell from midnight.
constexpr const char* kTimeMarker = "X-PIMTLV-TIME";
constexpr const char* kTimeUtc = "UTC";
constexpr const char* kTimeFloating = "FLOATING";
constexpr const char* kValueParam = "VALUE";
constexpr const char* kValueDate = "DATE";
constexpr const char* kTzidParam = "TZID";

// The forms of an iCalendar date-time.
enum class eForm : unsigned char { Utc, Zoned, Floating };

// The time-zone database's zone named by tzid ("Europe/Berlin", or libical's
// own "/freeassociation.sourceforge.net/Europe/Berlin"), or null. Only names
// that look like the database's are asked for: libical may look a name up as
// a file.
icaltimezone* KnownZone(const char* tzid);

// A property's name as the text spells it (X- names as written), or
// "unknown property".
std::string PropertyNameOf(icalproperty* property);
// A parameter's name as the text spells it (X- and IANA names as written).
const char* ParamNameOf(icalparameter* param);

// Property and parameter names are letters, digits and hyphens.
inline bool IsNameChar(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-';
}

}  // namespace Ical
}  // namespace PimBridge

#endif
