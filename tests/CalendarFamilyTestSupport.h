#ifndef PIMTLV_TESTS_CALENDARFAMILYTESTSUPPORT_H
#define PIMTLV_TESTS_CALENDARFAMILYTESTSUPPORT_H

// Shared by the event, task and note tests: an independent writer of
// expected element trees, a receiver that records every call as a line, and
// the rows of the properties the three items share.

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "pimshared/common/CalendarFamily.h"
#include "pimshared/common/XParam.h"
#include "platform/CDateAndTime.h"
#include "platform/TVector.h"

namespace cftest {

using Bytes = std::vector<std::uint8_t>;

inline Bytes Element(unsigned cls, unsigned id, const Bytes& value) {
    Bytes out{static_cast<std::uint8_t>(cls << 4 | id >> 8), static_cast<std::uint8_t>(id & 0xFF)};
    const std::size_t n = value.size();
    if (n < 128) {
        out.push_back(static_cast<std::uint8_t>(n));
    } else {
        out.push_back(n < 256 ? 0x81 : 0x82);
        if (n >= 256) out.push_back(static_cast<std::uint8_t>(n >> 8));
        out.push_back(static_cast<std::uint8_t>(n & 0xFF));
    }
    out.insert(out.end(), value.begin(), value.end());
    return out;
}
inline Bytes N(unsigned id, std::initializer_list<Bytes> children = {}) {
    Bytes value;
    for (const Bytes& c : children) value.insert(value.end(), c.begin(), c.end());
    return Element(8, id, value);
}
inline Bytes S(unsigned id, const std::string& text) {
    Bytes value(text.begin(), text.end());
    value.push_back(0);
    return Element(6, id, value);
}
inline Bytes U8(unsigned id, unsigned v) {
    return Element(2, id, {static_cast<std::uint8_t>(v)});
}
inline Bytes U16(unsigned id, unsigned v) {
    return Element(3, id, {static_cast<std::uint8_t>(v >> 8), static_cast<std::uint8_t>(v)});
}
inline Bytes U32(unsigned id, unsigned v) {
    return Element(9, id,
                   {static_cast<std::uint8_t>(v >> 24), static_cast<std::uint8_t>(v >> 16),
                    static_cast<std::uint8_t>(v >> 8), static_cast<std::uint8_t>(v)});
}
inline Bytes Hex(const std::string& hex) {
    Bytes out;
    for (std::size_t i = 0; i + 1 < hex.size();) {
        if (hex[i] == ' ') {
            ++i;
            continue;
        }
        out.push_back(static_cast<std::uint8_t>(std::stoul(hex.substr(i, 2), nullptr, 16)));
        i += 2;
    }
    return out;
}
// The frame every item writes around its properties.
inline Bytes Frame(unsigned root, unsigned component, unsigned instance,
                   std::initializer_list<Bytes> properties) {
    Bytes inner = U32(10, instance);
    for (const Bytes& p : properties) inner.insert(inner.end(), p.begin(), p.end());
    return Element(8, root, Element(8, component, inner));
}

using XParams = PAL::TVector<PimShared::tXParam>;
using Texts = PAL::TVector<const char*>;

inline std::string Text(const char* t) {
    return t == nullptr ? "null" : std::string("'") + t + "'";
}
inline std::string List(const Texts& list) {
    std::string s = "[";
    for (const char* t : list) s += (s.size() > 1 ? "," : "") + Text(t);
    return s + "]";
}
inline std::string X(const XParams& x) {
    std::string s = "{";
    for (const auto& p : x) s += (s.size() > 1 ? "," : "") + Text(p.name) + "=" + Text(p.value);
    return s + "}";
}
inline std::string Date(const PAL::CDateAndTime& d) {
    return PAL::DateAndTimeUtilities::ToString(d,
                                               PAL::DateAndTimeUtilities::eDateTimeFormatICalendar,
                                               0, PAL::DateAndTimeUtilities::STimeZoneOffset())
        .c_str();
}

// Records every receiver call as one line. It declares the operations of all
// three receivers; those the base lacks are simply never called. failOn
// names an operation (or "Trace<code>") that answers false.
template <typename TReceiver>
class Recorder : public TReceiver {
  public:
    using tXParam = PimShared::tXParam;
    using eRsvpType = PimShared::eRsvpType;

    std::vector<std::string> calls;   // property calls, in order
    std::vector<std::string> traces;  // "code:text" for codes other than 0
    std::vector<std::string> all;     // both, and the code-0 lines, in order
    std::string failOn;

    bool Rec(const std::string& name, const std::string& args) {
        calls.push_back(name + "(" + args + ")");
        all.push_back(calls.back());
        return name != failOn;
    }
    bool TraceMessage(const int& code, const char* text) {
        const std::string line = std::to_string(code) + ":" + text;
        if (code != 0) traces.push_back(line);
        all.push_back(line);
        return failOn != "Trace" + std::to_string(code);
    }

    bool Begin(const unsigned int& i) { return Rec("Begin", std::to_string(i)); }
    bool End() { return Rec("End", ""); }
    bool ProductIdentifier(const char* t, const XParams& x) {
        return Rec("ProductIdentifier", Text(t) + X(x));
    }
    bool Version(const char* t, const XParams& x) { return Rec("Version", Text(t) + X(x)); }
    bool Categories(const Texts& l, const char* lang, const XParams& x) {
        return Rec("Categories", List(l) + Text(lang) + X(x));
    }
    bool Classification(const char* t, const XParams& x) {
        return Rec("Classification", Text(t) + X(x));
    }
    bool Description(const char* t, const char* a, const char* l, const XParams& x) {
        return Rec("Description", Text(t) + Text(a) + Text(l) + X(x));
    }
    bool Location(const char* t, const char* a, const char* l, const XParams& x) {
        return Rec("Location", Text(t) + Text(a) + Text(l) + X(x));
    }
    bool Priority(const unsigned char& p, const XParams& x) {
        return Rec("Priority", std::to_string(p) + X(x));
    }
    bool Status(const char* t, const XParams& x) { return Rec("Status", Text(t) + X(x)); }
    bool Summary(const char* t, const char* a, const char* l, const XParams& x) {
        return Rec("Summary", Text(t) + Text(a) + Text(l) + X(x));
    }
    bool DateTimeStart(const PAL::CDateAndTime& d, const char* z, const XParams& x) {
        return Rec("DateTimeStart", Date(d) + Text(z) + X(x));
    }
    bool DateTimeEnd(const PAL::CDateAndTime& d, const char* z, const XParams& x) {
        return Rec("DateTimeEnd", Date(d) + Text(z) + X(x));
    }
    bool DateTimeStartLocal(const PAL::CDateAndTime& d, const XParams& x) {
        return Rec("DateTimeStartLocal", Date(d) + X(x));
    }
    bool DateTimeEndLocal(const PAL::CDateAndTime& d, const XParams& x) {
        return Rec("DateTimeEndLocal", Date(d) + X(x));
    }
    bool DateTimeDueLocal(const PAL::CDateAndTime& d, const XParams& x) {
        return Rec("DateTimeDueLocal", Date(d) + X(x));
    }
    bool UniqueIdentifier(const char* t, const XParams& x) {
        return Rec("UniqueIdentifier", Text(t) + X(x));
    }
    bool DateTimeCreated(const PAL::CDateAndTime& d, const XParams& x) {
        return Rec("DateTimeCreated", Date(d) + X(x));
    }
    bool LastModified(const PAL::CDateAndTime& d, const XParams& x) {
        return Rec("LastModified", Date(d) + X(x));
    }
    bool SequenceNumber(const unsigned short& n, const XParams& x) {
        return Rec("SequenceNumber", std::to_string(n) + X(x));
    }
    bool Attendee(const char* a1, const char* a2, const Texts& a3, const char* a4, const char* a5,
                  const eRsvpType& a6, const Texts& a7, const Texts& a8, const char* a9,
                  const char* a10, const char* a11, const char* a12, const XParams& x) {
        return Rec("Attendee", Text(a1) + Text(a2) + List(a3) + Text(a4) + Text(a5) +
                                   std::to_string(static_cast<int>(a6)) + List(a7) + List(a8) +
                                   Text(a9) + Text(a10) + Text(a11) + Text(a12) + X(x));
    }
    bool Organizer(const char* a1, const char* a2, const char* a3, const char* a4, const char* a5,
                   const XParams& x) {
        return Rec("Organizer", Text(a1) + Text(a2) + Text(a3) + Text(a4) + Text(a5) + X(x));
    }
    bool SendStatus(unsigned char s) { return Rec("SendStatus", std::to_string(s)); }
    bool InstanceName(const char* t) { return Rec("InstanceName", Text(t)); }
};

// One operation of a creator: what it writes inside the component and the
// call a parser makes for it.
template <typename TCreator>
struct Row {
    const char* name;
    std::function<bool(TCreator&)> write;
    Bytes property;
    std::string call;
};

inline const XParams& NoX() {
    static const XParams none;
    return none;
}
inline const XParams& TwoX() {
    static const XParams two{{"X-A", "1"}, {"X-B", ""}};
    return two;
}

// The properties that events, tasks and notes write alike, each with and
// without its optional arguments.
template <typename TCreator>
std::vector<Row<TCreator>> SharedRows() {
    const PAL::CDateAndTime t(2026, 11, 22, 9, 30, 0);
    const Bytes xLeaves[] = {S(1013, "X-A"), S(1014, "1"), S(1013, "X-B"), S(1014, "")};
    const std::string xCall = "{'X-A'='1','X-B'=''}";
    using A = typename TCreator::eRsvpType;
    return {
        {"ProductIdentifier", [](TCreator& c) { return c.ProductIdentifier("AB", NoX()); },
         N(202, {S(302, "AB")}), "ProductIdentifier('AB'{})"},
        {"ProductIdentifierX", [](TCreator& c) { return c.ProductIdentifier("AB", TwoX()); },
         N(202, {S(302, "AB"), xLeaves[0], xLeaves[1], xLeaves[2], xLeaves[3]}),
         "ProductIdentifier('AB'" + xCall + ")"},
        {"VersionNull", [](TCreator& c) { return c.Version(nullptr, NoX()); },
         N(203, {S(1015, "")}), "Version(''{})"},
        {"Categories",
         [](TCreator& c) {
             return c.Categories(Texts{"Work", "Home"}, "en", NoX());
         },
         N(900, {S(1004, "Work"), S(1004, "Home"), S(1002, "en")}),
         "Categories(['Work','Home']'en'{})"},
        {"CategoriesEmpty", [](TCreator& c) { return c.Categories(Texts{}, nullptr, NoX()); },
         Hex("83 84 00"), "Categories([]null{})"},
        {"Classification", [](TCreator& c) { return c.Classification("PUBLIC", TwoX()); },
         N(206, {S(1003, "PUBLIC"), xLeaves[0], xLeaves[1], xLeaves[2], xLeaves[3]}),
         "Classification('PUBLIC'" + xCall + ")"},
        {"DescriptionPlain",
         [](TCreator& c) { return c.Description("text", nullptr, nullptr, NoX()); },
         N(208, {S(312, "text")}), "Description('text'nullnull{})"},
        {"DescriptionFull", [](TCreator& c) { return c.Description("text", "cid:1", "de", NoX()); },
         N(208, {S(310, "cid:1"), S(1002, "de"), S(312, "text")}),
         "Description('text''cid:1''de'{})"},
        {"DescriptionNull",
         [](TCreator& c) { return c.Description(nullptr, nullptr, nullptr, NoX()); },
         N(208, {S(312, "")}), "Description(''nullnull{})"},
        // The status travels as the caller's text and comes back unchanged.
        {"Status", [](TCreator& c) { return c.Status("CONFIRMED", NoX()); },
         N(214, {S(319, "CONFIRMED")}), "Status('CONFIRMED'{})"},
        {"Summary", [](TCreator& c) { return c.Summary("Lunch", nullptr, "en", NoX()); },
         N(215, {S(1002, "en"), S(320, "Lunch")}), "Summary('Lunch'null'en'{})"},
        {"UniqueIdentifier", [](TCreator& c) { return c.UniqueIdentifier("uid-1", NoX()); },
         N(234, {S(1010, "uid-1")}), "UniqueIdentifier('uid-1'{})"},
        {"DateTimeCreated", [t](TCreator& c) { return c.DateTimeCreated(t, NoX()); },
         N(242, {S(1007, "20261122T093000Z")}), "DateTimeCreated(20261122T093000Z{})"},
        {"LastModified", [t](TCreator& c) { return c.LastModified(t, TwoX()); },
         N(244, {S(1007, "20261122T093000Z"), xLeaves[0], xLeaves[1], xLeaves[2], xLeaves[3]}),
         "LastModified(20261122T093000Z" + xCall + ")"},
        {"SequenceNumber", [](TCreator& c) { return c.SequenceNumber(513, NoX()); },
         N(245, {U16(367, 513)}), "SequenceNumber(513{})"},
        {"AttendeeMinimal",
         [](TCreator& c) {
             return c.Attendee("mailto:a@x", nullptr, Texts{}, nullptr, nullptr, A(0xFFFFFFFFu),
                               Texts{}, Texts{}, nullptr, nullptr, nullptr, nullptr, NoX());
         },
         N(228, {S(340, "mailto:a@x")}),
         "Attendee('mailto:a@x'null[]nullnull-1[][]nullnullnullnull{})"},
        {"AttendeeFull",
         [](TCreator& c) {
             return c.Attendee("mailto:a@x", "INDIVIDUAL", Texts{"m1", "m2"}, "CHAIR", "ACCEPTED",
                               A(2), Texts{"d1"}, Texts{"f1", "f2"}, "s", "Ann", "ldap:x", "en",
                               TwoX());
         },
         N(228, {S(330, "INDIVIDUAL"), S(331, "m1"), S(331, "m2"), S(332, "CHAIR"),
                 S(333, "ACCEPTED"), Hex("21 4E 01 02"), S(335, "d1"), S(336, "f1"), S(336, "f2"),
                 S(337, "s"), S(338, "Ann"), S(339, "ldap:x"), S(1002, "en"), S(340, "mailto:a@x"),
                 xLeaves[0], xLeaves[1], xLeaves[2], xLeaves[3]}),
         "Attendee('mailto:a@x''INDIVIDUAL'['m1','m2']'CHAIR''ACCEPTED'2['d1']['f1','f2']'s''Ann''"
         "ldap:x''en'" +
             xCall + ")"},
        // Only the low byte of the setting travels.
        {"AttendeeRsvpLowByte",
         [](TCreator& c) {
             return c.Attendee("a", nullptr, Texts{}, nullptr, nullptr, A(0x101), Texts{}, Texts{},
                               nullptr, nullptr, nullptr, nullptr, NoX());
         },
         N(228, {U8(334, 1), S(340, "a")}), "Attendee('a'null[]nullnull1[][]nullnullnullnull{})"},
        {"OrganizerMinimal",
         [](TCreator& c) {
             return c.Organizer("mailto:o@x", nullptr, nullptr, nullptr, nullptr, NoX());
         },
         N(230, {S(340, "mailto:o@x")}), "Organizer('mailto:o@x'nullnullnullnull{})"},
        {"OrganizerFull",
         [](TCreator& c) { return c.Organizer("mailto:o@x", "s", "Otto", "ldap:o", "fr", NoX()); },
         N(230,
           {S(337, "s"), S(338, "Otto"), S(339, "ldap:o"), S(1002, "fr"), S(340, "mailto:o@x")}),
         "Organizer('mailto:o@x''s''Otto''ldap:o''fr'{})"},
        {"SendStatus", [](TCreator& c) { return c.SendStatus(3); }, Hex("80 FC 04 21 79 01 03"),
         "SendStatus(3)"},
    };
}

}  // namespace cftest

#endif
