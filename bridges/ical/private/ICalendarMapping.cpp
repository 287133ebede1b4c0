#include "ICalendarMapping.h"

#include <cstdlib>

namespace PimBridge {
namespace Ical {

namespace {

constexpr ParamSlot kRichText[] = {
    {ICAL_ALTREP_PARAMETER, 1, -1},
    {ICAL_LANGUAGE_PARAMETER, 2, -1},
};
constexpr ParamSlot kCategories[] = {
    {ICAL_LANGUAGE_PARAMETER, 1, -1},
};
constexpr ParamSlot kOrganizer[] = {
    {ICAL_SENTBY_PARAMETER, 1, -1},
    {ICAL_CN_PARAMETER, 2, -1},
    {ICAL_DIR_PARAMETER, 3, -1},
    {ICAL_LANGUAGE_PARAMETER, 4, -1},
};
// In the order of the operation's arguments.
constexpr ParamSlot kAttendee[] = {
    {ICAL_CUTYPE_PARAMETER, 1, -1},
    {ICAL_MEMBER_PARAMETER, -1, 0},
    {ICAL_ROLE_PARAMETER, 2, -1},
    {ICAL_PARTSTAT_PARAMETER, 3, -1},
    {ICAL_RSVP_PARAMETER, kRsvpSlot, -1},
    {ICAL_DELEGATEDTO_PARAMETER, -1, 1},
    {ICAL_DELEGATEDFROM_PARAMETER, -1, 2},
    {ICAL_SENTBY_PARAMETER, 4, -1},
    {ICAL_CN_PARAMETER, 5, -1},
    {ICAL_DIR_PARAMETER, 6, -1},
    {ICAL_LANGUAGE_PARAMETER, 7, -1},
};

// The argument of its operation that a parameter with a slot of its own is,
// by the argument's name in the descriptions.
constexpr const char* ArgumentOf(icalparameter_kind kind) {
    switch (kind) {
        case ICAL_ALTREP_PARAMETER:
            return "altRep";
        case ICAL_LANGUAGE_PARAMETER:
            return "language";
        case ICAL_SENTBY_PARAMETER:
            return "sentBy";
        case ICAL_CN_PARAMETER:
            return "commonName";
        case ICAL_DIR_PARAMETER:
            return "directory";
        case ICAL_CUTYPE_PARAMETER:
            return "cuType";
        case ICAL_MEMBER_PARAMETER:
            return "members";
        case ICAL_ROLE_PARAMETER:
            return "role";
        case ICAL_PARTSTAT_PARAMETER:
            return "partStat";
        case ICAL_RSVP_PARAMETER:
            return "rsvp";
        case ICAL_DELEGATEDTO_PARAMETER:
            return "delegatedTo";
        case ICAL_DELEGATEDFROM_PARAMETER:
            return "delegatedFrom";
        default:
            return nullptr;
    }
}

// Whether each parameter's slot is where the argument rule puts the
// argument of that name: the tables cannot drift from the operations.
template <typename Op, std::size_t N>
constexpr bool SlotsMatch(const ParamSlot (&slots)[N]) {
    constexpr auto kinds = Args::Kinds<Op>();
    for (const ParamSlot& slot : slots) {
        std::size_t at = 0;
        while (at < Op::kArgs.size() && !SameName(Op::kArgs[at], ArgumentOf(slot.kind))) ++at;
        if (at == Op::kArgs.size()) return false;
        const int index = Args::SlotAt<Op>(at);
        const bool placed = slot.text == kRsvpSlot ? kinds[at] == Args::eKind::Rsvp
                            : slot.list >= 0 ? kinds[at] == Args::eKind::List && index == slot.list
                                             : kinds[at] == Args::eKind::Text && index == slot.text;
        if (!placed) return false;
    }
    return true;
}
using Event = PimShared::EventOperations;
static_assert(SlotsMatch<Event::Summary>(kRichText) && SlotsMatch<Event::Description>(kRichText) &&
                  SlotsMatch<Event::Location>(kRichText) &&
                  SlotsMatch<Event::Categories>(kCategories) &&
                  SlotsMatch<Event::Organizer>(kOrganizer) &&
                  SlotsMatch<Event::Attendee>(kAttendee),
              "a parameter's slot is not where its operation's argument goes");

}  // namespace

const PropertyRow* RowOfKind(icalproperty_kind kind) {
    for (const PropertyRow& row : kRows) {
        if (row.kind == kind) return &row;
    }
    return nullptr;
}

template <std::size_t N>
const ParamSlot* Slots(const ParamSlot (&slots)[N], std::size_t& count) {
    count = N;
    return slots;
}

const ParamSlot* ParamSlots(eShape shape, std::size_t& count) {
    count = 0;
    switch (shape) {
        case eShape::RichText:
            return Slots(kRichText, count);
        case eShape::Categories:
            return Slots(kCategories, count);
        case eShape::Organizer:
            return Slots(kOrganizer, count);
        case eShape::Attendee:
            return Slots(kAttendee, count);
        default:
            return nullptr;
    }
}

icaltimezone* KnownZone(const char* tzid) {
    if (tzid == nullptr || tzid[0] == '\0') return nullptr;
    std::size_t length = 0;
    for (const char* p = tzid; *p != '\0'; ++p, ++length) {
        const char c = *p;
        const bool allowed = IsNameChar(c) || c == '/' || c == '_' || c == '+' || c == '.';
        if (!allowed || length > 64 || (c == '.' && p[1] == '.')) return nullptr;
    }
    if (tzid[0] == '/') return icaltimezone_get_builtin_timezone_from_tzid(tzid);
    return icaltimezone_get_builtin_timezone(tzid);
}

std::string PropertyNameOf(icalproperty* property) {
    char* name = icalproperty_get_property_name_r(property);
    std::string out = name != nullptr ? name : "unknown property";
    std::free(name);
    return out;
}

const char* ParamNameOf(icalparameter* param) {
    const icalparameter_kind kind = icalparameter_isa(param);
    if (kind == ICAL_X_PARAMETER) return icalparameter_get_xname(param);
    if (kind == ICAL_IANA_PARAMETER) return icalparameter_get_iana_name(param);
    return icalparameter_kind_to_string(kind);
}

}  // namespace Ical
}  // namespace PimBridge
