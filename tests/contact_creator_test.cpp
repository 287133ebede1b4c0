#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "pimshared/contact/TLVContactParser.h"
#include "support/ContactRecorder.h"

using namespace TestSupport;

namespace {

const unsigned char kBytes[] = {0xCA, 0xFE, 0x01};
const XParams kX = {{"X-A", "1"}, {"X-B", "2"}};
const XParams kNoX;
const Texts kNone;

// In the expectations, "XP" stands for the leaves of kX and "[XP]" for kX
// as the receiver gets it.
std::string Expand(std::string s) {
    for (auto [from, to] : {std::pair<const char*, const char*>{"[XP]", "[X-A=1,X-B=2]"},
                            {"XP", "s:1013=X-A s:1014=1 s:1013=X-B s:1014=2"}}) {
        for (std::size_t at; (at = s.find(from)) != std::string::npos;) {
            s.replace(at, std::char_traits<char>::length(from), to);
        }
    }
    return s;
}

struct Case {
    const char* name;
    std::function<bool(PimShared::CTLVContactCreator&)> write;
    const char* layout;  // the property's elements, as Dump shows them
    const char* calls;   // what a parser hands back for them
};

// clang-format off
const Case kCases[] = {
    {"FormattedName", [](auto& c) { return c.FormattedName("Ann Lee", "en", kX); },
     "{400 s:500=Ann Lee s:1002=en XP }", "FormattedName(Ann Lee|en|[XP])"},
    {"FormattedName null text", [](auto& c) { return c.FormattedName(nullptr, nullptr, kNoX); },
     "{400 s:500= }", "FormattedName(|-|[])"},
    {"Name", [](auto& c) { return c.Name("Lee", "Ann", nullptr, "Dr", "Jr", "de", kX); },
     "{401 s:508=Lee s:509=Ann s:511=Dr s:512=Jr s:1002=de XP }", "Name(Lee|Ann|-|Dr|Jr|de|[XP])"},
    {"Name without components", [](auto& c) { return c.Name(nullptr, nullptr, nullptr, nullptr, nullptr, "de", kX); },
     "{401 }", "Name(-|-|-|-|-|-|[])"},
    {"Nickname", [](auto& c) { return c.Nickname(Texts{"Al", "Bo"}, "en", kNoX); },
     "{402 s:501=Al s:501=Bo s:1002=en }", "Nickname([Al,Bo]|en|[])"},
    {"Nickname empty list", [](auto& c) { return c.Nickname(kNone, "en", kX); },
     "{402 s:1002=en XP }", "Nickname([]|en|[XP])"},
    {"Photo", [](auto& c) { return c.Photo("url", "image/png", kBytes, 3, "t3"); },
     "{403 s:1000=url s:514=image/png bs:1001#3 s:516=t3 }", "Photo(url|image/png|#3:cafe01|t3)"},
    {"Photo nothing set", [](auto& c) { return c.Photo(nullptr, nullptr, nullptr, 3, nullptr); },
     "{403 }", "Photo(-|-|-#0|-)"},
    {"Birthday first wins", [](auto& c) { return c.Birthday("19800101", "alt"); },
     "{404 s:1007=19800101 }", "Birthday(19800101|-)"},
    {"Birthday second", [](auto& c) { return c.Birthday(nullptr, "alt"); }, "{404 s:1008=alt }", "Birthday(-|alt)"},
    {"Address", [](auto& c) { return c.Address("a1", nullptr, "a3", "a4", "a5", "a6", "a7", 5, "fr", kX); },
     "{405 b8:519=5 s:520=a1 s:522=a3 s:523=a4 s:524=a5 s:525=a6 s:526=a7 s:1002=fr XP }",
     "Address(a1|-|a3|a4|a5|a6|a7|5|fr|[XP])"},
    {"Address without components", [](auto& c) { return c.Address(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 0, "fr", kX); },
     "{405 b8:519=0 }", "Address(-|-|-|-|-|-|-|0|-|[])"},
    {"Label", [](auto& c) { return c.Label("Main St", 2, "en", kNoX); },
     "{406 b8:519=2 s:527=Main St s:1002=en }", "Label(Main St|2|en|[])"},
    {"Label zero type, no text", [](auto& c) { return c.Label(nullptr, 0, nullptr, kNoX); }, "{406 }", "Label(-|0|-|[])"},
    {"Telephone", [](auto& c) { return c.Telephone("+49 1", 9, 3, 0x102, "work", kX); },
     "{407 b16:528=9 s:529=+49 1 u8:530=3 b16:531=258 s:532=work XP }", "Telephone(+49 1|9|3|258|work|[XP])"},
    {"Telephone zeros left out", [](auto& c) { return c.Telephone(nullptr, 0, 0, 0, nullptr, kNoX); },
     "{407 s:529= }", "Telephone(|0|0|0|-|[])"},
    {"Email", [](auto& c) { return c.Email("a@b.c", 4); }, "{408 b8:533=4 s:534=a@b.c }", "Email(a@b.c|4)"},
    {"Email type 0", [](auto& c) { return c.Email("a@b.c", 0); }, "{408 s:534=a@b.c }", "Email(a@b.c|0)"},
    {"Mailer", [](auto& c) { return c.Mailer("mutt", "en", kX); }, "{409 s:543=mutt s:1002=en XP }", "Mailer(mutt|en|[XP])"},
    {"Timezone first wins", [](auto& c) { return c.Timezone("+01", "CET"); }, "{410 s:535=+01 }", "Timezone(+01|-)"},
    {"Timezone second", [](auto& c) { return c.Timezone(nullptr, "CET"); }, "{410 s:536=CET }", "Timezone(-|CET)"},
    {"GeographicPosition", [](auto& c) { return c.GeographicPosition(nullptr, "13.4"); },
     "{901 s:1006=13.4 }", "GeographicPosition(-|13.4)"},
    {"Title", [](auto& c) { return c.Title("CEO", nullptr, kX); }, "{412 s:503=CEO XP }", "Title(CEO|-|[XP])"},
    {"Role", [](auto& c) { return c.Role("dev", "en", kNoX); }, "{413 s:504=dev s:1002=en }", "Role(dev|en|[])"},
    {"Logo", [](auto& c) { return c.Logo(nullptr, "image/gif", kBytes, 2, nullptr); },
     "{414 s:514=image/gif bs:1001#2 }", "Logo(-|image/gif|#2:cafe|-)"},
    {"Agent first only", [](auto& c) { return c.Agent("a", nullptr); }, "{415 s:1000=a }", "Agent(a|-)"},
    {"Agent second only", [](auto& c) { return c.Agent(nullptr, "b"); }, "{415 s:539=b }", "Agent(-|b)"},
    {"Agent both", [](auto& c) { return c.Agent("a", "b"); }, "{415 }", "Agent(-|-)"},
    {"Organization", [](auto& c) { return c.Organization(nullptr, Texts{"R&D", "QA"}); },
     "{416 s:540= s:541=R&D s:541=QA }", "Organization(|[R&D,QA])"},
    {"Categories", [](auto& c) { return c.Categories(Texts{"a", "b", "c"}, "en", kX); },
     "{900 s:1004=a s:1004=b s:1004=c s:1002=en XP }", "Categories([a,b,c]|en|[XP])"},
    {"Categories empty list", [](auto& c) { return c.Categories(kNone, "en", kX); }, "{900 }", "Categories([]|-|[])"},
    {"Note", [](auto& c) { return c.Note("hi", "en", kX); }, "{418 s:506=hi s:1002=en XP }", "Note(hi|en|[XP])"},
    {"Revision", [](auto& c) { return c.Revision(nullptr, "r2"); }, "{420 s:1008=r2 }", "Revision(-|r2)"},
    {"SortString", [](auto& c) { return c.SortString("Lee", nullptr, kX); }, "{421 s:507=Lee XP }", "SortString(Lee|-|[XP])"},
    {"Sound data first", [](auto& c) { return c.Sound("m1", "audio/x", kBytes, 3, "m3", "fn", "n1", nullptr, "n3", nullptr, "n5"); },
     "{422 bs:1001#3 s:1000=m1 s:514=audio/x s:516=m3 s:500=fn s:508=n1 s:510=n3 s:512=n5 }",
     "Sound(m1|audio/x|#3:cafe01|m3|fn|n1|-|n3|-|n5)"},
    {"UID", [](auto& c) { return c.UID("u-1"); }, "{423 s:1010=u-1 }", "UID(u-1)"},
    {"SpeedDial", [](auto& c) { return c.SpeedDial("7"); }, "{429 s:547=7 }", "SpeedDial(7)"},
    {"XUID has no store on reading", [](auto& c) { return c.XUID("x"); }, "{430 s:548=x }", "Trace(6) XUID(-)"},
    {"XUCI", [](auto& c) { return c.XUCI("t", 0x12345, 9); },
     "{431 u16:528=9 s:549=t u16:550=9029 }", "XUCI(t|9029|0)"},
    {"XUCI negative, no unsigned", [](auto& c) { return c.XUCI("t", -1, 0); },
     "{431 s:549=t u16:550=65535 }", "XUCI(t|65535|0)"},
    {"Handle is refused three ways on reading", [](auto& c) { return c.Handle("@ann"); },
     "{432 s:1017=@ann }", "Trace(2) Trace(2) Trace(6)"},
    {"URL", [](auto& c) { return c.URL("http://x"); }, "{424 s:544=http://x }", "URL(http://x)"},
    {"Version", [](auto& c) { return c.Version("3.0"); }, "{425 s:1015=3.0 }", "Version(3.0)"},
    {"Classification", [](auto& c) { return c.Classification("PUBLIC"); }, "{426 s:1003=PUBLIC }", "Classification(PUBLIC)"},
    {"ProdID", [](auto& c) { return c.ProdID("p"); }, "{419 s:545=p }", "ProdID(p)"},
    {"Key", [](auto& c) { return c.Key("PGP", "app/pgp", kBytes, 1); },
     "{427 s:542=PGP s:514=app/pgp bs:1001#1 }", "Key(PGP|app/pgp|#1:ca)"},
    {"PhotoAvailability true", [](auto& c) { return c.PhotoAvailability(true); }, "{428 u8:546=1 }", "PhotoAvailability(1)"},
    {"PhotoAvailability false", [](auto& c) { return c.PhotoAvailability(false); }, "{428 u8:546=0 }", "PhotoAvailability(0)"},
    {"NonStandardProperty", [](auto& c) { return c.NonStandardProperty("X-N", "v", kBytes, 3, kX); },
     "{902 s:1011=X-N s:1012=v bs:1001#3 XP }", "NonStandardProperty(X-N|v|#3:cafe01|[XP])"},
};
// clang-format on

TEST(ContactCreator, EveryOperationWritesItsLayoutAndParsesBack) {
    for (const Case& tc : kCases) {
        SCOPED_TRACE(tc.name);
        PimShared::CTLVContactCreator c;
        ASSERT_TRUE(c.Begin(3));
        EXPECT_TRUE(tc.write(c));
        ASSERT_TRUE(c.End());
        const void* data = nullptr;
        unsigned int length = 0;
        ASSERT_TRUE(c.GetData(data, length));
        EXPECT_EQ(Dump(data, length), Expand(std::string("{0 u32:10=3 ") + tc.layout + " }"));

        RecordingReceiver r;
        PimShared::CTLVContactParser parser(r);
        const char* error = nullptr;
        unsigned int consumed = 0;
        EXPECT_TRUE(parser.Parse(data, length, error, consumed));
        EXPECT_EQ(r.Joined(), Expand(std::string("Begin(3) ") + tc.calls + " End()"));
    }
}

TEST(ContactCreator, EmptyContactIsExactBytes) {
    PimShared::CTLVContactCreator c;
    const unsigned int instance = 7;
    ASSERT_TRUE(c.Begin(instance) && c.End());
    const void* data = nullptr;
    unsigned int length = 0;
    ASSERT_TRUE(c.GetData(data, length));
    EXPECT_EQ(std::string(static_cast<const char*>(data), length),
              std::string("\x80\x00\x07\x90\x0A\x04\x00\x00\x00\x07", 10));

    // Reset makes the creator ready for the next contact.
    ASSERT_TRUE(c.Reset() && c.Begin(1) && c.UID("u") && c.End());
    ASSERT_TRUE(c.GetData(data, length));
    EXPECT_EQ(Dump(data, length), "{0 u32:10=1 {423 s:1010=u } }");
}

struct FailureCase {
    const char* name;
    std::function<bool(PimShared::CTLVContactCreator&)> write;
    bool result;
    unsigned int leftOpen;  // node a test must close to see the rest, 0 when none
    const char* written;
};

const XParams kHugeName = {{"X-A", "1"}, {HugeText(), "2"}, {"X-C", "3"}};
const XParams kHugeValue = {{"X-A", HugeText()}};

// Refused leaves: a closing operation stops writing leaves but still closes
// its node and answers with that close; a leave-open one answers false at
// once and leaves its node open.
// clang-format off
const FailureCase kFailures[] = {
    {"Title value", [](auto& c) { return c.Title(HugeText(), "en", kX); }, true, 0, "{412 }"},
    {"Title parameter", [](auto& c) { return c.Title("t", HugeText(), kX); }, true, 0, "{412 s:503=t }"},
    {"Title x-param name", [](auto& c) { return c.Title("t", nullptr, kHugeName); }, true, 0,
     "{412 s:503=t s:1013=X-A s:1014=1 }"},
    {"Title x-param value", [](auto& c) { return c.Title("t", nullptr, kHugeValue); }, true, 0, "{412 s:503=t s:1013=X-A }"},
    {"Name component", [](auto& c) { return c.Name("a", HugeText(), "c", nullptr, nullptr, "en", kX); }, true, 0, "{401 s:508=a }"},
    {"Nickname element", [](auto& c) { return c.Nickname(Texts{"a", HugeText(), "c"}, "en", kNoX); }, true, 0, "{402 s:501=a }"},
    {"Photo data", [](auto& c) { return c.Photo("m", "t", kBytes, HugeLength, "m3"); }, true, 0, "{403 s:1000=m s:514=t }"},
    {"Sound data skips its texts", [](auto& c) { return c.Sound("m", "t", kBytes, HugeLength, "m3", "f", "1", "2", "3", "4", "5"); },
     true, 0, "{422 }"},
    {"Address part", [](auto& c) { return c.Address("a", HugeText(), nullptr, nullptr, nullptr, nullptr, nullptr, 1, "en", kNoX); },
     true, 0, "{405 b8:519=1 s:520=a }"},
    {"Telephone number", [](auto& c) { return c.Telephone(HugeText(), 1, 2, 3, "t", kX); }, true, 0, "{407 b16:528=1 }"},
    {"Email address", [](auto& c) { return c.Email(HugeText(), 3); }, true, 0, "{408 b8:533=3 }"},
    {"Organization unit", [](auto& c) { return c.Organization("o", Texts{HugeText(), "u"}); }, true, 0, "{416 s:540=o }"},
    {"Categories element", [](auto& c) { return c.Categories(Texts{HugeText()}, "en", kX); }, true, 0, "{900 }"},
    {"UID", [](auto& c) { return c.UID(HugeText()); }, true, 0, "{423 }"},
    {"Key data", [](auto& c) { return c.Key("k", nullptr, kBytes, HugeLength); }, true, 0, "{427 s:542=k }"},
    {"NonStandard data skips x-params", [](auto& c) { return c.NonStandardProperty("n", nullptr, kBytes, HugeLength, kX); },
     true, 0, "{902 s:1011=n }"},
    {"XUCI text: false but closed", [](auto& c) { return c.XUCI(HugeText(), 5, 9); }, false, 0, "{431 u16:528=9 }"},
    {"FormattedName value stays open", [](auto& c) { return c.FormattedName(HugeText(), "en", kX); }, false, 400, "{400 }"},
    {"FormattedName parameter stays open", [](auto& c) { return c.FormattedName("a", HugeText(), kX); }, false, 400,
     "{400 s:500=a }"},
    {"FormattedName x-param stays open", [](auto& c) { return c.FormattedName("a", nullptr, kHugeValue); }, false, 400,
     "{400 s:500=a s:1013=X-A }"},
    {"SpeedDial stays open", [](auto& c) { return c.SpeedDial(HugeText()); }, false, 429, "{429 }"},
    {"Handle stays open", [](auto& c) { return c.Handle(HugeText()); }, false, 432, "{432 }"},
};
// clang-format on

TEST(ContactCreator, RefusedLeavesFollowEachOperationsRule) {
    for (const FailureCase& fc : kFailures) {
        SCOPED_TRACE(fc.name);
        OpenCreator c;
        ASSERT_TRUE(c.Begin(3));
        EXPECT_EQ(fc.write(c), fc.result);
        if (fc.leftOpen != 0) {
            // The contact cannot be finished while the property is open.
            EXPECT_FALSE(c.End());
            ASSERT_TRUE(c.CloseNode(fc.leftOpen));
        }
        ASSERT_TRUE(c.End());
        EXPECT_EQ(c.Bytes(), std::string("{0 u32:10=3 ") + fc.written + " }");
    }
}

// An overridden x-parameter writer sees every call: FormattedName alone skips
// it for an empty list.
TEST(ContactCreator, OnlyFormattedNameSkipsTheXParamWriterForAnEmptyList) {
    struct Counting : PimShared::CTLVContactCreator {
        int calls = 0;
        bool AddXParams(const XParams& x) override {
            ++calls;
            return PimShared::CTLVContactCreator::AddXParams(x);
        }
    } c;
    ASSERT_TRUE(c.Begin(1));
    EXPECT_TRUE(c.FormattedName("a", nullptr, kNoX));
    EXPECT_EQ(c.calls, 0);
    EXPECT_TRUE(c.Title("a", nullptr, kNoX) && c.Nickname(kNone, nullptr, kNoX));
    EXPECT_EQ(c.calls, 2);
}

TEST(ContactCreator, HandleDefaultBodyAcceptsAndWritesNothing) {
    RecordingReceiver r;
    EXPECT_TRUE(r.IContactAttributes::Handle("x"));
    EXPECT_TRUE(r.calls.empty());
}

}  // namespace
