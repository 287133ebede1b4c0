#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "ContactTestSupport.h"
#include "pimshared/contact/TLVContactParser.h"

using namespace contacttest;
using ParserCreatorCollection::CTLVCreator;

namespace {

const unsigned char kBytes[] = {0xCA, 0xFE, 0x01};
const XParams kX = {{"X-A", "1"}, {"X-B", "2"}};
const XParams kNoX;
const Texts kNone;

std::string ParseLog(const void* data, unsigned int length, bool* result = nullptr) {
    RecordingReceiver r;
    PimShared::CTLVContactParser parser(r);
    const char* error = nullptr;
    unsigned int consumed = 0;
    const bool ok = parser.Parse(data, length, error, consumed);
    if (result != nullptr) *result = ok;
    return r.Joined();
}

struct RoundTrip {
    const char* name;
    std::function<bool(PimShared::CTLVContactCreator&)> write;
    const char* calls;  // between Begin(3) and End()
};

// What the creator writes comes back to the receiver operation of the same
// slot, with the same values; where the two sides differ by design, the
// row shows the difference.
const RoundTrip kRoundTrips[] = {
    {"FormattedName", [](auto& c) { return c.FormattedName("Ann", "en", kX); },
     "FormattedName(Ann|en|[X-A=1,X-B=2])"},
    {"Name", [](auto& c) { return c.Name("Lee", "Ann", nullptr, "Dr", "Jr", "de", kX); },
     "Name(Lee|Ann|~|Dr|Jr|de|[X-A=1,X-B=2])"},
    {"Name empty",
     [](auto& c) { return c.Name(nullptr, nullptr, nullptr, nullptr, nullptr, "de", kX); },
     "Name(~|~|~|~|~|~|[])"},
    {"Nickname",
     [](auto& c) {
         return c.Nickname(Texts{"Al", "Bo"}, "en", kNoX);
     },
     "Nickname([Al,Bo]|en|[])"},
    {"Photo", [](auto& c) { return c.Photo("url", "image/png", kBytes, 3, "t3"); },
     "Photo(url|image/png|#3:cafe01|t3)"},
    {"Photo without data", [](auto& c) { return c.Photo(nullptr, nullptr, nullptr, 3, nullptr); },
     "Photo(~|~|~#0|~)"},
    {"Birthday", [](auto& c) { return c.Birthday(nullptr, "alt"); }, "Birthday(~|alt)"},
    {"Address",
     [](auto& c) { return c.Address("a1", nullptr, "a3", "a4", "a5", "a6", "a7", 5, "fr", kX); },
     "Address(a1|~|a3|a4|a5|a6|a7|5|fr|[X-A=1,X-B=2])"},
    {"Label", [](auto& c) { return c.Label("Main", 2, "en", kNoX); }, "Label(Main|2|en|[])"},
    {"Telephone", [](auto& c) { return c.Telephone("+49", 9, 3, 258, "work", kX); },
     "Telephone(+49|9|3|258|work|[X-A=1,X-B=2])"},
    {"Email", [](auto& c) { return c.Email("a@b", 4); }, "Email(a@b|4)"},
    {"Mailer", [](auto& c) { return c.Mailer("mutt", nullptr, kX); },
     "Mailer(mutt|~|[X-A=1,X-B=2])"},
    {"Timezone", [](auto& c) { return c.Timezone("+01", "CET"); }, "Timezone(+01|~)"},
    {"GeographicPosition", [](auto& c) { return c.GeographicPosition("1", "2"); },
     "GeographicPosition(1|2)"},
    {"Title", [](auto& c) { return c.Title("CEO", "en", kNoX); }, "Title(CEO|en|[])"},
    {"Role", [](auto& c) { return c.Role("dev", nullptr, kX); }, "Role(dev|~|[X-A=1,X-B=2])"},
    {"Logo", [](auto& c) { return c.Logo("l", nullptr, kBytes, 2, nullptr); },
     "Logo(l|~|#2:cafe|~)"},
    {"Agent", [](auto& c) { return c.Agent(nullptr, "b"); }, "Agent(~|b)"},
    {"Organization",
     [](auto& c) {
         return c.Organization("o", Texts{"u1", "u2"});
     },
     "Organization(o|[u1,u2])"},
    {"Categories",
     [](auto& c) {
         return c.Categories(Texts{"a", "b", "c"}, "en", kX);
     },
     "Categories([a,b,c]|en|[X-A=1,X-B=2])"},
    {"Note", [](auto& c) { return c.Note("hi", "en", kNoX); }, "Note(hi|en|[])"},
    {"Revision", [](auto& c) { return c.Revision("r", nullptr); }, "Revision(r|~)"},
    {"SortString", [](auto& c) { return c.SortString("s", nullptr, kNoX); }, "SortString(s|~|[])"},
    {"Sound",
     [](auto& c) {
         return c.Sound("m1", "audio/x", kBytes, 3, "m3", "fn", "n1", nullptr, "n3", nullptr, "n5");
     },
     "Sound(m1|audio/x|#3:cafe01|m3|fn|n1|~|n3|~|n5)"},
    {"UID", [](auto& c) { return c.UID("u"); }, "UID(u)"},
    {"SpeedDial", [](auto& c) { return c.SpeedDial("7"); }, "SpeedDial(7)"},
    {"XUID has no store", [](auto& c) { return c.XUID("x"); }, "Trace(6) XUID(~)"},
    {"XUCI keeps the low 16 bits, drops the unsigned number",
     [](auto& c) { return c.XUCI("t", 0x12345, 9); }, "XUCI(t|9029|0)"},
    {"Handle is refused three ways", [](auto& c) { return c.Handle("h"); },
     "Trace(2) Trace(2) Trace(6)"},
    {"URL", [](auto& c) { return c.URL("http://x"); }, "URL(http://x)"},
    {"Version", [](auto& c) { return c.Version("3.0"); }, "Version(3.0)"},
    {"Classification", [](auto& c) { return c.Classification("PUBLIC"); },
     "Classification(PUBLIC)"},
    {"ProdID", [](auto& c) { return c.ProdID("p"); }, "ProdID(p)"},
    {"Key", [](auto& c) { return c.Key("PGP", "app", kBytes, 1); }, "Key(PGP|app|#1:ca)"},
    {"PhotoAvailability", [](auto& c) { return c.PhotoAvailability(true); },
     "PhotoAvailability(1)"},
    {"NonStandardProperty",
     [](auto& c) { return c.NonStandardProperty("X-N", "v", kBytes, 3, kX); },
     "NonStandardProperty(X-N|v|#3:cafe01|[X-A=1,X-B=2])"},
};

TEST(ContactParser, CreatorOutputReturnsToTheSameOperations) {
    for (const RoundTrip& rt : kRoundTrips) {
        SCOPED_TRACE(rt.name);
        PimShared::CTLVContactCreator c;
        ASSERT_TRUE(c.Begin(3));
        ASSERT_TRUE(rt.write(c));
        ASSERT_TRUE(c.End());
        const void* data = nullptr;
        unsigned int length = 0;
        ASSERT_TRUE(c.GetData(data, length));
        bool ok = false;
        EXPECT_EQ(ParseLog(data, length, &ok), std::string("Begin(3) ") + rt.calls + " End()");
        EXPECT_TRUE(ok);
    }
}

struct StreamCase {
    const char* name;
    std::function<void(CTLVCreator&)> build;
    const char* calls;
};

// Streams no contact creator writes, built element by element.
const StreamCase kStreams[] = {
    {"instance only", [](CTLVCreator& t) { t.NodeBegin(0), t.LeafUInt32(10, 5), t.NodeEnd(0); },
     "Begin(5) End()"},
    {"no instance leaf", [](CTLVCreator& t) { t.NodeBegin(0), t.NodeEnd(0); }, "End()"},
    {"second instance leaf",
     [](CTLVCreator& t) { t.NodeBegin(0), t.LeafUInt32(10, 5), t.LeafUInt32(10, 6), t.NodeEnd(0); },
     "Begin(5) Trace(3) End()"},
    {"two contacts, each with its own instance",
     [](CTLVCreator& t) {
         t.NodeBegin(0), t.LeafUInt32(10, 1), t.NodeEnd(0);
         t.NodeBegin(0), t.LeafUInt32(10, 2), t.LeafUInt32(10, 3), t.NodeEnd(0);
     },
     "Begin(1) End() Begin(2) Trace(3) End()"},
    {"wrong root", [](CTLVCreator& t) { t.NodeBegin(2), t.LeafUInt32(10, 1), t.NodeEnd(2); },
     "Trace(1) Trace(2) Trace(6)"},
    {"leaf before the contact node",
     [](CTLVCreator& t) { t.LeafString(500, "a"), t.NodeBegin(0), t.NodeEnd(0); },
     "Trace(2) End()"},
    {"value leaf directly in the contact node",
     [](CTLVCreator& t) { t.NodeBegin(0), t.LeafString(503, "a"), t.NodeEnd(0); },
     "Trace(2) End()"},
    {"411, 417 and 0 are no properties",
     [](CTLVCreator& t) {
         t.NodeBegin(0);
         for (unsigned int id : {411u, 417u, 0u}) t.NodeBegin(id), t.NodeEnd(id);
         t.NodeEnd(0);
     },
     // A refused node 0 still ends the contact when it closes.
     "Trace(2) Trace(6) Trace(2) Trace(6) Trace(2) End() Trace(6)"},
    {"node inside a property",
     [](CTLVCreator& t) {
         t.NodeBegin(0), t.NodeBegin(412), t.NodeBegin(500), t.LeafString(503, "t"), t.NodeEnd(500);
         t.NodeEnd(412), t.NodeEnd(0);
     },
     "Trace(2) Trace(6) Title(t|~|[]) End()"},
    {"value ID foreign to the property",
     [](CTLVCreator& t) {
         t.NodeBegin(0), t.NodeBegin(416), t.LeafString(540, "o"), t.LeafString(1002, "en");
         t.NodeEnd(416), t.NodeEnd(0);
     },
     "Trace(2) Organization(o|[]) End()"},
    {"x-parameters where the property has none",
     [](CTLVCreator& t) {
         t.NodeBegin(0), t.NodeBegin(408), t.LeafString(1013, "n"), t.LeafString(1014, "v");
         t.NodeEnd(408), t.NodeEnd(0);
     },
     "Trace(2) Trace(2) Email(~|0) End()"},
    {"x-parameter value without a name",
     [](CTLVCreator& t) {
         t.NodeBegin(0), t.NodeBegin(412), t.LeafString(1014, "v"), t.NodeEnd(412), t.NodeEnd(0);
     },
     "Trace(6) Title(~|~|[]) End()"},
    {"second x-parameter name replaces the first",
     [](CTLVCreator& t) {
         t.NodeBegin(0), t.NodeBegin(412), t.LeafString(1013, "a"), t.LeafString(1013, "b");
         t.LeafString(1014, "v"), t.LeafString(1014, "w"), t.NodeEnd(412), t.NodeEnd(0);
     },
     "Trace(6) Title(~|~|[b=v]) End()"},
    {"a later value replaces an earlier one",
     [](CTLVCreator& t) {
         t.NodeBegin(0), t.NodeBegin(412), t.LeafString(503, "a"), t.LeafString(503, "b");
         t.NodeEnd(412), t.NodeEnd(0);
     },
     "Title(b|~|[]) End()"},
    {"two telephone nodes are independent",
     [](CTLVCreator& t) {
         t.NodeBegin(0), t.NodeBegin(407), t.LeafBitfield16(528, 9), t.LeafString(529, "1");
         t.LeafUInt8(530, 3), t.LeafBitfield16(531, 4), t.LeafString(532, "t");
         t.LeafString(1013, "a"), t.LeafString(1014, "v"), t.NodeEnd(407);
         t.NodeBegin(407), t.LeafString(529, "2"), t.NodeEnd(407), t.NodeEnd(0);
     },
     "Telephone(1|9|3|4|t|[a=v]) Telephone(2|0|0|0|~|[]) End()"},
    {"XUCI numbers outlive their callback, other leaves are dropped quietly",
     [](CTLVCreator& t) {
         t.NodeBegin(0), t.NodeBegin(431), t.LeafString(1013, "n"), t.LeafString(549, "a");
         t.LeafUInt16(550, 0xFFFF), t.LeafUInt16(528, 9), t.NodeEnd(431);
         t.NodeBegin(431), t.LeafString(549, "b"), t.NodeEnd(431), t.NodeEnd(0);
     },
     "XUCI(a|65535|0) XUCI(b|65535|0) End()"},
    {"classes are not checked, numbers are read by ID",
     [](CTLVCreator& t) {
         t.NodeBegin(0), t.NodeBegin(408), t.LeafUInt16(533, 0x1205), t.LeafInt8(534, -1);
         t.NodeEnd(408), t.NodeBegin(428), t.LeafBitfield8(546, 2), t.NodeEnd(428), t.NodeEnd(0);
     },
     "Email(~|5) PhotoAvailability(1) End()"},
    {"a leaf without a store",
     [](CTLVCreator& t) {
         t.NodeBegin(0), t.NodeBegin(430), t.LeafString(548, "x"), t.LeafString(1013, "n");
         t.NodeEnd(430), t.NodeEnd(0);
     },
     "Trace(6) Trace(6) XUID(~) End()"},
};

TEST(ContactParser, ReportsAndStoresElementByElement) {
    for (const StreamCase& sc : kStreams) {
        SCOPED_TRACE(sc.name);
        CTLVCreator t;
        sc.build(t);
        const void* data = nullptr;
        unsigned int length = 0;
        ASSERT_TRUE(t.GetData(data, length));
        bool ok = false;
        EXPECT_EQ(ParseLog(data, length, &ok), sc.calls);
        EXPECT_TRUE(ok);
    }
}

TEST(ContactParser, NullDataIsRefusedSilentlyWithTheEmptyText) {
    RecordingReceiver r;
    PimShared::CTLVContactParser parser(r);
    const char* error = nullptr;
    unsigned int consumed = 99;
    EXPECT_FALSE(parser.Parse(nullptr, 10, error, consumed));
    ASSERT_NE(error, nullptr);
    EXPECT_STREQ(error, "");
    EXPECT_EQ(consumed, 0u);
    EXPECT_TRUE(r.calls.empty());
}

TEST(ContactParser, BrokenStreamClosesWhatWasOpenThenReportsSix) {
    PimShared::CTLVContactCreator c;
    ASSERT_TRUE(c.Begin(5) && c.Title("abc", nullptr, kNoX) && c.End());
    const void* data = nullptr;
    unsigned int length = 0;
    ASSERT_TRUE(c.GetData(data, length));
    // The title text claims one byte more than its node holds.
    std::string bytes(static_cast<const char*>(data), length);
    ASSERT_EQ(bytes.substr(length - 5), std::string("\x04"
                                                    "abc",
                                                    4) +
                                            '\0');
    bytes[length - 5] = 5;
    bool ok = true;
    EXPECT_EQ(ParseLog(bytes.data(), length, &ok), "Begin(5) Title(~|~|[]) End() Trace(6)");
    EXPECT_FALSE(ok);

    // An element of an undefined class is no problem for a contact.
    const unsigned char unknown[] = {0x80, 0x00, 0x03, 0xB0, 0x05, 0x00};
    EXPECT_EQ(ParseLog(unknown, sizeof unknown, &ok), "End()");
    EXPECT_TRUE(ok);
}

TEST(ContactParser, FalseAnswerToAReportStopsTheWalk) {
    CTLVCreator t;
    t.LeafString(503, "stray");
    t.NodeBegin(0), t.LeafUInt32(10, 1), t.NodeEnd(0);
    const void* data = nullptr;
    unsigned int length = 0;
    ASSERT_TRUE(t.GetData(data, length));
    RecordingReceiver r;
    r.traceAnswer = false;
    PimShared::CTLVContactParser parser(r);
    const char* error = nullptr;
    unsigned int consumed = 0;
    EXPECT_FALSE(parser.Parse(data, length, error, consumed));
    EXPECT_EQ(r.Joined(), "Trace(2) Trace(6)");
}

TEST(ContactParser, EachParseStartsFromAnEmptyStore) {
    RecordingReceiver r;
    PimShared::CTLVContactParser parser(r);
    const char* error = nullptr;
    unsigned int consumed = 0;
    const void* data = nullptr;
    unsigned int length = 0;
    // The XUCI numbers survive their callback within one parse ...
    CTLVCreator first;
    first.NodeBegin(0), first.NodeBegin(431), first.LeafUInt16(550, 7), first.NodeEnd(431);
    first.NodeEnd(0);
    ASSERT_TRUE(first.GetData(data, length));
    ASSERT_TRUE(parser.Parse(data, length, error, consumed));
    EXPECT_EQ(r.Joined(), "XUCI(~|7|0) End()");

    // ... but not into the next one.
    CTLVCreator second;
    second.NodeBegin(0), second.NodeBegin(431), second.LeafString(549, "b"), second.NodeEnd(431);
    second.NodeEnd(0);
    ASSERT_TRUE(second.GetData(data, length));
    r.calls.clear();
    EXPECT_TRUE(parser.Parse(data, length, error, consumed));
    EXPECT_EQ(consumed, length);
    EXPECT_EQ(r.Joined(), "XUCI(b|0|0) End()");
}

}  // namespace
