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

#include <array>
#include <cstddef>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include "pimshared/calendar/CalendarDescription.h"
#include "pimshared/common/CalendarFamily.h"
#include "pimshared/common/XParam.h"
#include "pimshared/note/NoteDescription.h"
#include "pimshared/task/TaskDescription.h"
#include "platform/CDateAndTime.h"
#include "platform/TVector.h"

namespace PimBridge {
namespace Ical {

// The three items.
enum eItem : unsigned int { kEvent = 1, kTask = 2, kNote = 4 };

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

// Operations are named as the items' descriptions name them; an item
// carries a row when its description has the row's operation (or, for a
// date-time, its operation for floating values).
struct PropertyRow {
    icalproperty_kind kind;
    eShape shape;
    // The operation; for a date-time the one for UTC and zoned values (null:
    // the item has none, and localOp takes them with a marker).
    const char* op;
    // Date-times: the operation for floating values (null: the item has
    // none, and op takes them with the floating marker).
    const char* localOp;
    // Date-times: whether op takes the zone as an argument (DTSTART, DTEND);
    // otherwise a zone travels as a TZID extension parameter.
    bool zoneArgument;
};

// PRODID and VERSION belong to the VCALENDAR; every item gets its calendar's.
// Notes have no location, priority or times of day beyond creation and
// modification; only events have an end, only tasks a due time, and the due
// time has no operation for UTC or zoned values: all of which the items'
// descriptions say, not the rows.
inline constexpr PropertyRow kRows[] = {
    {ICAL_PRODID_PROPERTY, eShape::Text, "ProductIdentifier", nullptr, false},
    {ICAL_VERSION_PROPERTY, eShape::Text, "Version", nullptr, false},
    {ICAL_CATEGORIES_PROPERTY, eShape::Categories, "Categories", nullptr, false},
    {ICAL_CLASS_PROPERTY, eShape::Text, "Classification", nullptr, false},
    {ICAL_DESCRIPTION_PROPERTY, eShape::RichText, "Description", nullptr, false},
    {ICAL_LOCATION_PROPERTY, eShape::RichText, "Location", nullptr, false},
    {ICAL_PRIORITY_PROPERTY, eShape::Byte, "Priority", nullptr, false},
    {ICAL_STATUS_PROPERTY, eShape::Text, "Status", nullptr, false},
    {ICAL_SUMMARY_PROPERTY, eShape::RichText, "Summary", nullptr, false},
    {ICAL_DTSTART_PROPERTY, eShape::DateTime, "DateTimeStart", "DateTimeStartLocal", true},
    {ICAL_DTEND_PROPERTY, eShape::DateTime, "DateTimeEnd", "DateTimeEndLocal", true},
    {ICAL_DUE_PROPERTY, eShape::DateTime, nullptr, "DateTimeDueLocal", false},
    {ICAL_UID_PROPERTY, eShape::Text, "UniqueIdentifier", nullptr, false},
    {ICAL_CREATED_PROPERTY, eShape::DateTime, "DateTimeCreated", nullptr, false},
    {ICAL_LASTMODIFIED_PROPERTY, eShape::DateTime, "LastModified", nullptr, false},
    {ICAL_SEQUENCE_PROPERTY, eShape::Word, "SequenceNumber", nullptr, false},
    {ICAL_ATTENDEE_PROPERTY, eShape::Attendee, "Attendee", nullptr, false},
    {ICAL_ORGANIZER_PROPERTY, eShape::Organizer, "Organizer", nullptr, false},
};
inline constexpr std::size_t kRowCount = sizeof(kRows) / sizeof(kRows[0]);

constexpr bool SameName(const char* a, const char* b) {
    if (a == nullptr || b == nullptr) return false;
    while (*a != '\0' && *a == *b) ++a, ++b;
    return *a == *b;
}

// The row whose op or localOp is called name, or kRowCount.
constexpr std::size_t RowOfOp(const char* name) {
    for (std::size_t r = 0; r < kRowCount; ++r) {
        if (SameName(kRows[r].op, name) || SameName(kRows[r].localOp, name)) return r;
    }
    return kRowCount;
}

// The operations of a description's list, for lookups by name at compile time.
template <typename List>
struct OperationsOf;
template <typename... Ops>
struct OperationsOf<PimShared::Description::OperationList<Ops...>> {
    using Tuple = std::tuple<Ops...>;
    // The position of the operation called name, or the count.
    static constexpr std::size_t Find(const char* name) {
        constexpr const char* names[] = {Ops::kName...};
        for (std::size_t i = 0; i < sizeof...(Ops); ++i) {
            if (SameName(names[i], name)) return i;
        }
        return sizeof...(Ops);
    }
    static constexpr bool Has(const char* name) { return Find(name) < sizeof...(Ops); }
};
template <typename Item>
using ItemOperations = OperationsOf<typename Item::Operations::List>;

// Every name a row gives is an operation of one of the items at least.
constexpr bool RowsNameOperations() {
    for (const PropertyRow& row : kRows) {
        for (const char* name : {row.op, row.localOp}) {
            if (name == nullptr) continue;
            if (!ItemOperations<PimShared::EventItem>::Has(name) &&
                !ItemOperations<PimShared::TaskItem>::Has(name) &&
                !ItemOperations<PimShared::NoteItem>::Has(name))
                return false;
        }
        if (row.op == nullptr && row.localOp == nullptr) return false;
    }
    return true;
}
static_assert(RowsNameOperations(), "a row names an operation no calendar item has");

// The row of a property kind, or null when no item carries it.
const PropertyRow* RowOfKind(icalproperty_kind kind);

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

// How an operation's arguments sit in PropertyValues, read off their types:
// texts take the text slots in argument order (from slot 1 when the first
// argument is no text, slot 0 being the main value), lists the list slots,
// a text right after a date-time is its zone. So one rule packs a parser's
// call and unpacks a creator's, for every operation a row names.
namespace Args {

enum class eKind : unsigned char { Text, Zone, List, Rsvp, Number, DateTime, XParams, Other };

template <typename T>
using Bare = std::remove_cv_t<std::remove_reference_t<T>>;

template <typename Op, std::size_t I>
constexpr eKind KindOf() {
    using T = Bare<typename Op::template Param<I>>;
    if constexpr (std::is_same_v<T, const char*>) {
        if constexpr (I > 0) {
            if (std::is_same_v<Bare<typename Op::template Param<I - 1>>, PAL::CDateAndTime>)
                return eKind::Zone;
        }
        return eKind::Text;
    } else if constexpr (std::is_same_v<T, PAL::TVector<const char*>>) {
        return eKind::List;
    } else if constexpr (std::is_same_v<T, PimShared::eRsvpType>) {
        return eKind::Rsvp;
    } else if constexpr (std::is_same_v<T, unsigned char> || std::is_same_v<T, unsigned short>) {
        return eKind::Number;
    } else if constexpr (std::is_same_v<T, PAL::CDateAndTime>) {
        return eKind::DateTime;
    } else if constexpr (std::is_same_v<T, PAL::TVector<PimShared::tXParam>>) {
        return eKind::XParams;
    } else {
        return eKind::Other;
    }
}

template <typename Op, std::size_t... I>
constexpr std::array<eKind, sizeof...(I)> KindsOf(std::index_sequence<I...>) {
    return {{KindOf<Op, I>()...}};
}
// The kind of every argument of Op.
template <typename Op>
constexpr std::array<eKind, Op::Traits::kArity> Kinds() {
    return KindsOf<Op>(std::make_index_sequence<Op::Traits::kArity>{});
}
// The slot of argument at of Op among the arguments of its kind.
template <typename Op>
constexpr int SlotAt(std::size_t at) {
    constexpr auto kinds = Kinds<Op>();
    int slot = kinds[at] == eKind::Text && kinds[0] != eKind::Text ? 1 : 0;
    for (std::size_t i = 0; i < at; ++i) slot += kinds[i] == kinds[at] ? 1 : 0;
    return slot;
}

template <typename Op, std::size_t I, typename T>
void Store(PropertyValues& v, const T& arg) {
    constexpr eKind kind = Kinds<Op>()[I];
    constexpr int slot = SlotAt<Op>(I);
    static_assert(kind != eKind::Other, "an argument PropertyValues has no place for");
    if constexpr (kind == eKind::Text) {
        static_assert(slot < PropertyValues::kTexts, "more texts than PropertyValues holds");
        v.text[slot] = arg;
    } else if constexpr (kind == eKind::Zone) {
        v.zone = arg;
    } else if constexpr (kind == eKind::List) {
        static_assert(slot < PropertyValues::kLists, "more lists than PropertyValues holds");
        v.list[slot] = &arg;
    } else if constexpr (kind == eKind::Rsvp) {
        v.rsvp = arg;
    } else if constexpr (kind == eKind::Number) {
        v.number = arg;
    } else if constexpr (kind == eKind::DateTime) {
        v.dateTime = &arg;
    } else if constexpr (kind == eKind::XParams) {
        v.xParams = &arg;
    }
}

template <typename Op, std::size_t... I, typename... A>
void Pack(PropertyValues& v, std::index_sequence<I...>, const A&... args) {
    (Store<Op, I>(v, args), ...);
}

template <typename Op, std::size_t I>
decltype(auto) Arg(const PropertyValues& v) {
    constexpr eKind kind = Kinds<Op>()[I];
    constexpr int slot = SlotAt<Op>(I);
    static_assert(kind != eKind::Other, "an argument PropertyValues has no place for");
    using T = Bare<typename Op::template Param<I>>;
    if constexpr (kind == eKind::Text) {
        return static_cast<const char*>(v.text[slot]);
    } else if constexpr (kind == eKind::Zone) {
        return static_cast<const char*>(v.zone);
    } else if constexpr (kind == eKind::List) {
        static const T kNone{};
        return static_cast<const T&>(v.list[slot] != nullptr ? *v.list[slot] : kNone);
    } else if constexpr (kind == eKind::Rsvp) {
        return static_cast<T>(v.rsvp);
    } else if constexpr (kind == eKind::Number) {
        return static_cast<T>(v.number);
    } else if constexpr (kind == eKind::DateTime) {
        static const T kNone{};
        return static_cast<const T&>(v.dateTime != nullptr ? *v.dateTime : kNone);
    } else {
        static const T kNone{};
        return static_cast<const T&>(v.xParams != nullptr ? *v.xParams : kNone);
    }
}

template <typename Op, typename Target, std::size_t... I>
bool Invoke(Target& target, const PropertyValues& v, std::index_sequence<I...>) {
    return (target.*Op::kFn)(Arg<Op, I>(v)...);
}

}  // namespace Args

// A call of op's parser slot as PropertyValues.
template <typename Op, typename... A>
PropertyValues Pack(const A&... args) {
    PropertyValues v;
    Args::Pack<Op>(v, std::index_sequence_for<A...>{}, args...);
    return v;
}

// Calls op on target (a creator) with the values.
template <typename Op, typename Target>
bool Invoke(Target& target, const PropertyValues& v) {
    return Args::Invoke<Op>(target, v, std::make_index_sequence<Op::Traits::kArity>{});
}

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
