#ifndef PIMTLV_TESTS_SUPPORT_CALENDARFAMILY_H
#define PIMTLV_TESTS_SUPPORT_CALENDARFAMILY_H

// Shared by the event, task and note tests: an independent writer of
// expected element trees, a receiver that records every call as a line, the
// rows of the properties the three items share and the two table runners.

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "pimshared/common/CalendarFamily.h"
#include "pimshared/common/XParam.h"
#include "platform/CDateAndTime.h"
#include "platform/TVector.h"
#include "support/TlvRecorder.h"

namespace CalendarFamilyTest {

using TestSupport::Bytes;
using TestSupport::FromHex;

inline Bytes Element(unsigned cls, unsigned id, const Bytes& value) {
    Bytes out{static_cast<unsigned char>(cls << 4 | id >> 8), static_cast<unsigned char>(id)};
    const std::size_t n = value.size();
    if (n >= 256) out.insert(out.end(), {0x82, static_cast<unsigned char>(n >> 8)});
    if (n >= 128 && n < 256) out.push_back(0x81);
    out.push_back(static_cast<unsigned char>(n));
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
    return Element(2, id, {static_cast<unsigned char>(v)});
}
inline Bytes U16(unsigned id, unsigned v) {
    return Element(3, id, {static_cast<unsigned char>(v >> 8), static_cast<unsigned char>(v)});
}
// The frame every item writes around its properties: root { component {
// UInt32 10 = instance, properties } }.
inline Bytes Frame(unsigned root, unsigned component, unsigned instance,
                   const std::vector<Bytes>& properties) {
    Bytes inner = Element(
        9, 10,
        {static_cast<unsigned char>(instance >> 24), static_cast<unsigned char>(instance >> 16),
         static_cast<unsigned char>(instance >> 8), static_cast<unsigned char>(instance)});
    for (const Bytes& p : properties) inner.insert(inner.end(), p.begin(), p.end());
    return Element(8, root, Element(8, component, inner));
}

using XParams = PAL::TVector<PimShared::tXParam>;
using Texts = PAL::TVector<const char*>;

// Argument texts of a recorded call.
inline std::string Str(const char* t) {
    return t == nullptr ? "null" : std::string("'") + t + "'";
}
inline std::string Str(unsigned v) {
    return std::to_string(static_cast<int>(v));
}
inline std::string Str(const Texts& list) {
    std::string s = "[";
    for (const char* t : list) s += (s.size() > 1 ? "," : "") + Str(t);
    return s + "]";
}
inline std::string Str(const XParams& x) {
    std::string s = "{";
    for (const auto& p : x) s += (s.size() > 1 ? "," : "") + Str(p.name) + "=" + Str(p.value);
    return s + "}";
}
inline std::string Str(const PAL::CDateAndTime& d) {
    return PAL::DateAndTimeUtilities::ToString(d,
                                               PAL::DateAndTimeUtilities::eDateTimeFormatICalendar,
                                               0, PAL::DateAndTimeUtilities::STimeZoneOffset())
        .c_str();
}

// Records every receiver call as one line. It declares the operations of all
// three receivers; those the base lacks are never called. failOn names an
// operation (or "Trace<code>") that answers false.
template <typename TReceiver>
class Recorder : public TReceiver {
  public:
    using X = const XParams&;
    using D = const PAL::CDateAndTime&;
    using T = const char*;
    using L = const Texts&;

    std::vector<std::string> calls;   // property calls, in order
    std::vector<std::string> traces;  // "code:text" for codes other than 0
    std::vector<std::string> all;     // both, and the code-0 lines, in order
    std::string failOn;

    template <typename... A>
    bool Rec(const std::string& name, const A&... args) {
        std::string line = name + "(";
        ((line += Str(args)), ...);
        calls.push_back(line + ")");
        all.push_back(calls.back());
        return name != failOn;
    }
    bool TraceMessage(const int& code, const char* text) {
        const std::string line = std::to_string(code) + ":" + text;
        if (code != 0) traces.push_back(line);
        all.push_back(line);
        return failOn != "Trace" + std::to_string(code);
    }

    bool Begin(const unsigned int& i) { return Rec("Begin", i); }
    bool End() { return Rec("End"); }
    bool ProductIdentifier(T t, X x) { return Rec("ProductIdentifier", t, x); }
    bool Version(T t, X x) { return Rec("Version", t, x); }
    bool Categories(L l, T lang, X x) { return Rec("Categories", l, lang, x); }
    bool Classification(T t, X x) { return Rec("Classification", t, x); }
    bool Description(T t, T a, T l, X x) { return Rec("Description", t, a, l, x); }
    bool Location(T t, T a, T l, X x) { return Rec("Location", t, a, l, x); }
    bool Priority(const unsigned char& p, X x) { return Rec("Priority", unsigned{p}, x); }
    bool Status(T t, X x) { return Rec("Status", t, x); }
    bool Summary(T t, T a, T l, X x) { return Rec("Summary", t, a, l, x); }
    bool DateTimeStart(D d, T z, X x) { return Rec("DateTimeStart", d, z, x); }
    bool DateTimeEnd(D d, T z, X x) { return Rec("DateTimeEnd", d, z, x); }
    bool DateTimeStartLocal(D d, X x) { return Rec("DateTimeStartLocal", d, x); }
    bool DateTimeEndLocal(D d, X x) { return Rec("DateTimeEndLocal", d, x); }
    bool DateTimeDueLocal(D d, X x) { return Rec("DateTimeDueLocal", d, x); }
    bool UniqueIdentifier(T t, X x) { return Rec("UniqueIdentifier", t, x); }
    bool DateTimeCreated(D d, X x) { return Rec("DateTimeCreated", d, x); }
    bool LastModified(D d, X x) { return Rec("LastModified", d, x); }
    bool SequenceNumber(const unsigned short& n, X x) {
        return Rec("SequenceNumber", unsigned{n}, x);
    }
    bool Attendee(T a1, T a2, L a3, T a4, T a5, const PimShared::eRsvpType& a6, L a7, L a8, T a9,
                  T a10, T a11, T a12, X x) {
        return Rec("Attendee", a1, a2, a3, a4, a5, unsigned{a6}, a7, a8, a9, a10, a11, a12, x);
    }
    bool Organizer(T a1, T a2, T a3, T a4, T a5, X x) {
        return Rec("Organizer", a1, a2, a3, a4, a5, x);
    }
    bool SendStatus(unsigned char s) { return Rec("SendStatus", unsigned{s}); }
    bool InstanceName(T t) { return Rec("InstanceName", t); }
};

template <typename TCreator>
Bytes Take(TCreator& c) {
    const void* data = nullptr;
    unsigned int length = 0;
    if (!c.GetData(data, length)) return {};
    const auto* p = static_cast<const unsigned char*>(data);
    return Bytes(p, p + length);
}

template <typename TParser>
bool ParseWith(TParser& parser, const Bytes& bytes) {
    const char* error = nullptr;
    unsigned int consumed = 0;
    return parser.Parse(bytes.data(), static_cast<unsigned int>(bytes.size()), error, consumed);
}

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
    using A = PimShared::eRsvpType;
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
         FromHex("83 84 00"), "Categories([]null{})"},
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
                 S(333, "ACCEPTED"), FromHex("21 4E 01 02"), S(335, "d1"), S(336, "f1"),
                 S(336, "f2"), S(337, "s"), S(338, "Ann"), S(339, "ldap:x"), S(1002, "en"),
                 S(340, "mailto:a@x"), xLeaves[0], xLeaves[1], xLeaves[2], xLeaves[3]}),
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
        {"SendStatus", [](TCreator& c) { return c.SendStatus(3); }, FromHex("80 FC 04 21 79 01 03"),
         "SendStatus(3)"},
    };
}

// Each row written alone between Begin(7) and End must give exactly its
// layout inside the item's frame, and parse back to Begin, its call, End.
template <typename TCreator, typename TParser, typename TRecorder>
void CheckRoundTrips(const std::vector<Row<TCreator>>& rows, unsigned root, unsigned component) {
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        TCreator creator;
        ASSERT_TRUE(creator.Begin(7) && row.write(creator) && creator.End());
        const Bytes bytes = Take(creator);
        EXPECT_EQ(bytes, Frame(root, component, 7, {row.property}));
        TRecorder r;
        TParser parser(r);
        EXPECT_TRUE(ParseWith(parser, bytes));
        EXPECT_EQ(r.calls, (std::vector<std::string>{"Begin(7)", row.call, "End()"}));
        EXPECT_EQ(r.traces, std::vector<std::string>{});
    }
}

struct DiagnosticCase {
    const char* name;
    Bytes stream;
    std::vector<std::string> traces;  // codes other than 0
    std::vector<std::string> calls;
};

template <typename TParser, typename TRecorder>
void CheckDiagnostics(const std::vector<DiagnosticCase>& cases) {
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        TRecorder r;
        TParser parser(r);
        ParseWith(parser, c.stream);
        EXPECT_EQ(r.traces, c.traces);
        EXPECT_EQ(r.calls, c.calls);
    }
}

// One parser, two streams. The first leaves property 202 current (its node
// closes only after the object's end, when there is nothing left to end) and
// then ends inside the component with a 1013 leaf and no 1014; its buffer is
// freed before the second, which gives a 1014 before any property starts,
// then the text, then an empty node 202 that delivers the property. Returns
// the second stream's diagnostics (codes other than 0) and calls.
template <typename TParser, typename TRecorder>
std::vector<std::string> NameAcrossStreams(unsigned root, unsigned component,
                                           const std::string& name) {
    TRecorder r;
    TParser parser(r);
    const Bytes instance = Element(9, 10, {0, 0, 0, 7});
    auto first = std::make_unique<Bytes>(N(root, {N(202, {N(root)})}));
    const Bytes tail = N(root, {N(component, {instance, S(1013, name)})});
    first->insert(first->end(), tail.begin(), tail.end());
    ParseWith(parser, *first);
    first.reset();
    r.calls.clear();
    r.traces.clear();
    ParseWith(parser, N(root, {N(component, {instance, S(1014, "val"), S(302, "pi"), N(202)})}));
    r.traces.insert(r.traces.end(), r.calls.begin(), r.calls.end());
    return r.traces;
}

}  // namespace CalendarFamilyTest

#endif
