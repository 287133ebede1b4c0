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
