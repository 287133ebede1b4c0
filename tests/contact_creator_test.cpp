#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "ContactTestSupport.h"

using namespace contacttest;

namespace {

const unsigned char kBytes[] = {0xCA, 0xFE, 0x01};
const XParams kX = {{"X-A", "1"}, {"X-B", "2"}};
const XParams kNoX;
const Texts kNone;

struct LayoutCase {
    const char* name;
    std::function<bool(PimShared::CTLVContactCreator&)> write;
    const char* property;  // the dump between the instance leaf and the end of node 0
};

// Every operation's leaves, their order, classes and conditions.
const LayoutCase kLayouts[] = {
    {"FormattedName", [](auto& c) { return c.FormattedName("Ann Lee", "en", kX); },
     "{400 s500=Ann Lee s1002=en s1013=X-A s1014=1 s1013=X-B s1014=2 }"},
    {"FormattedName null text is written empty",
     [](auto& c) { return c.FormattedName(nullptr, nullptr, kNoX); }, "{400 s500= }"},
    {"Name", [](auto& c) { return c.Name("Lee", "Ann", nullptr, "Dr", "Jr", "de", kX); },
     "{401 s508=Lee s509=Ann s511=Dr s512=Jr s1002=de s1013=X-A s1014=1 s1013=X-B s1014=2 }"},
    {"Name without components is empty",
     [](auto& c) { return c.Name(nullptr, nullptr, nullptr, nullptr, nullptr, "de", kX); },
     "{401 }"},
    {"Name third component only",
     [](auto& c) { return c.Name(nullptr, nullptr, "M", nullptr, nullptr, nullptr, kNoX); },
     "{401 s510=M }"},
    {"Nickname",
     [](auto& c) {
         return c.Nickname(Texts{"Al", "Bo"}, "en", kNoX);
     },
     "{402 s501=Al s501=Bo s1002=en }"},
    {"Nickname empty list keeps parameter and x-params",
     [](auto& c) { return c.Nickname(kNone, "en", kX); },
     "{402 s1002=en s1013=X-A s1014=1 s1013=X-B s1014=2 }"},
    {"Photo", [](auto& c) { return c.Photo("url", "image/png", kBytes, 3, "t3"); },
     "{403 s1000=url s514=image/png b1001#3 s516=t3 }"},
    {"Photo nothing set", [](auto& c) { return c.Photo(nullptr, nullptr, nullptr, 3, nullptr); },
     "{403 }"},
    {"Birthday first", [](auto& c) { return c.Birthday("19800101", "alt"); },
     "{404 s1007=19800101 }"},
    {"Birthday second", [](auto& c) { return c.Birthday(nullptr, "alt"); }, "{404 s1008=alt }"},
    {"Birthday none", [](auto& c) { return c.Birthday(nullptr, nullptr); }, "{404 }"},
    {"Address",
     [](auto& c) { return c.Address("a1", nullptr, "a3", "a4", "a5", "a6", "a7", 5, "fr", kX); },
     "{405 f8:519=5 s520=a1 s522=a3 s523=a4 s524=a5 s525=a6 s526=a7 s1002=fr s1013=X-A s1014=1 "
     "s1013=X-B s1014=2 }"},
    {"Address without components keeps only the type",
     [](auto& c) {
         return c.Address(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 0, "fr",
                          kX);
     },
     "{405 f8:519=0 }"},
    {"Label", [](auto& c) { return c.Label("Main St", 2, "en", kNoX); },
     "{406 f8:519=2 s527=Main St s1002=en }"},
    {"Label zero type, no text", [](auto& c) { return c.Label(nullptr, 0, nullptr, kNoX); },
     "{406 }"},
    {"Telephone", [](auto& c) { return c.Telephone("+49 1", 9, 3, 0x102, "work", kX); },
     "{407 f16:528=9 s529=+49 1 u8:530=3 f16:531=258 s532=work s1013=X-A s1014=1 s1013=X-B s1014=2 "
     "}"},
    {"Telephone zeros left out",
     [](auto& c) { return c.Telephone(nullptr, 0, 0, 0, nullptr, kNoX); }, "{407 s529= }"},
    {"Email", [](auto& c) { return c.Email("a@b.c", 4); }, "{408 f8:533=4 s534=a@b.c }"},
    {"Email type 0", [](auto& c) { return c.Email("a@b.c", 0); }, "{408 s534=a@b.c }"},
    {"Mailer", [](auto& c) { return c.Mailer("mutt", "en", kNoX); }, "{409 s543=mutt s1002=en }"},
    {"Timezone first wins", [](auto& c) { return c.Timezone("+01", "CET"); }, "{410 s535=+01 }"},
    {"Timezone second", [](auto& c) { return c.Timezone(nullptr, "CET"); }, "{410 s536=CET }"},
    {"GeographicPosition", [](auto& c) { return c.GeographicPosition("52.5", "13.4"); },
     "{901 s1005=52.5 s1006=13.4 }"},
    {"GeographicPosition second only",
     [](auto& c) { return c.GeographicPosition(nullptr, "13.4"); }, "{901 s1006=13.4 }"},
    {"Title", [](auto& c) { return c.Title("CEO", nullptr, kX); },
     "{412 s503=CEO s1013=X-A s1014=1 s1013=X-B s1014=2 }"},
    {"Role", [](auto& c) { return c.Role("dev", "en", kNoX); }, "{413 s504=dev s1002=en }"},
    {"Logo", [](auto& c) { return c.Logo(nullptr, "image/gif", kBytes, 2, nullptr); },
     "{414 s514=image/gif b1001#2 }"},
    {"Agent first only", [](auto& c) { return c.Agent("a", nullptr); }, "{415 s1000=a }"},
    {"Agent second only", [](auto& c) { return c.Agent(nullptr, "b"); }, "{415 s539=b }"},
    {"Agent both is empty", [](auto& c) { return c.Agent("a", "b"); }, "{415 }"},
    {"Organization",
     [](auto& c) {
         return c.Organization(nullptr, Texts{"R&D", "QA"});
     },
     "{416 s540= s541=R&D s541=QA }"},
    {"Categories",
     [](auto& c) {
         return c.Categories(Texts{"a", "b"}, "en", kX);
     },
     "{900 s1004=a s1004=b s1002=en s1013=X-A s1014=1 s1013=X-B s1014=2 }"},
    {"Categories empty list is empty", [](auto& c) { return c.Categories(kNone, "en", kX); },
     "{900 }"},
    {"Note", [](auto& c) { return c.Note("hi", "en", kNoX); }, "{418 s506=hi s1002=en }"},
    {"Revision", [](auto& c) { return c.Revision(nullptr, "r2"); }, "{420 s1008=r2 }"},
    {"SortString", [](auto& c) { return c.SortString("Lee", nullptr, kNoX); }, "{421 s507=Lee }"},
    {"Sound data first",
     [](auto& c) {
         return c.Sound("m1", "audio/x", kBytes, 3, "m3", "fn", "n1", nullptr, "n3", nullptr, "n5");
     },
     "{422 b1001#3 s1000=m1 s514=audio/x s516=m3 s500=fn s508=n1 s510=n3 s512=n5 }"},
    {"UID", [](auto& c) { return c.UID("u-1"); }, "{423 s1010=u-1 }"},
    {"SpeedDial", [](auto& c) { return c.SpeedDial("7"); }, "{429 s547=7 }"},
    {"XUID", [](auto& c) { return c.XUID("x"); }, "{430 s548=x }"},
    {"XUCI numbers", [](auto& c) { return c.XUCI("t", 0x12345, 9); },
     "{431 u16:528=9 s549=t u16:550=9029 }"},
    {"XUCI negative, no unsigned", [](auto& c) { return c.XUCI("t", -1, 0); },
     "{431 s549=t u16:550=65535 }"},
    {"Handle", [](auto& c) { return c.Handle("@ann"); }, "{432 s1017=@ann }"},
    {"URL", [](auto& c) { return c.URL("http://x"); }, "{424 s544=http://x }"},
    {"Version", [](auto& c) { return c.Version("3.0"); }, "{425 s1015=3.0 }"},
    {"Classification", [](auto& c) { return c.Classification("PUBLIC"); }, "{426 s1003=PUBLIC }"},
    {"ProdID", [](auto& c) { return c.ProdID("p"); }, "{419 s545=p }"},
    {"Key", [](auto& c) { return c.Key("PGP", "app/pgp", kBytes, 1); },
     "{427 s542=PGP s514=app/pgp b1001#1 }"},
    {"PhotoAvailability true", [](auto& c) { return c.PhotoAvailability(true); },
     "{428 u8:546=1 }"},
    {"PhotoAvailability false", [](auto& c) { return c.PhotoAvailability(false); },
     "{428 u8:546=0 }"},
    {"NonStandardProperty",
     [](auto& c) { return c.NonStandardProperty("X-N", "v", kBytes, 3, kX); },
     "{902 s1011=X-N s1012=v b1001#3 s1013=X-A s1014=1 s1013=X-B s1014=2 }"},
};

TEST(ContactCreator, EveryOperationWritesItsLayout) {
    for (const LayoutCase& lc : kLayouts) {
        SCOPED_TRACE(lc.name);
        OpenCreator c;
        ASSERT_TRUE(c.Begin(3));
        EXPECT_TRUE(lc.write(c));
        ASSERT_TRUE(c.End());
        EXPECT_EQ(c.Bytes(), std::string("{0 u32:10=3 ") + lc.property + " }");
    }
}

TEST(ContactCreator, EmptyContactIsExactBytes) {
    PimShared::CTLVContactCreator c;
    const unsigned int instance = 7;
    ASSERT_TRUE(c.Begin(instance));
    ASSERT_TRUE(c.End());
    const void* data = nullptr;
    unsigned int length = 0;
    ASSERT_TRUE(c.GetData(data, length));
    const std::string expected("\x80\x00\x07\x90\x0A\x04\x00\x00\x00\x07", 10);
    EXPECT_EQ(std::string(static_cast<const char*>(data), length), expected);

    // Reset makes the creator ready for the next contact.
    ASSERT_TRUE(c.Reset());
    ASSERT_TRUE(c.Begin(1));
    ASSERT_TRUE(c.UID("u"));
    ASSERT_TRUE(c.End());
    ASSERT_TRUE(c.GetData(data, length));
    EXPECT_EQ(Dump(data, length), "{0 u32:10=1 {423 s1010=u } }");
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
const FailureCase kFailures[] = {
    {"Title value refused", [](auto& c) { return c.Title(HugeText(), "en", kX); }, true, 0,
     "{412 }"},
    {"Title parameter refused", [](auto& c) { return c.Title("t", HugeText(), kX); }, true, 0,
     "{412 s503=t }"},
    {"Title x-param name refused", [](auto& c) { return c.Title("t", nullptr, kHugeName); }, true,
     0, "{412 s503=t s1013=X-A s1014=1 }"},
    {"Title x-param value refused", [](auto& c) { return c.Title("t", nullptr, kHugeValue); }, true,
     0, "{412 s503=t s1013=X-A }"},
    {"Name component refused",
     [](auto& c) { return c.Name("a", HugeText(), "c", nullptr, nullptr, "en", kX); }, true, 0,
     "{401 s508=a }"},
    {"Nickname element refused",
     [](auto& c) {
         return c.Nickname(Texts{"a", HugeText(), "c"}, "en", kNoX);
     },
     true, 0, "{402 s501=a }"},
    {"Photo data refused", [](auto& c) { return c.Photo("m", "t", kBytes, HugeLength, "m3"); },
     true, 0, "{403 s1000=m s514=t }"},
    {"Sound data refused skips its texts",
     [](auto& c) {
         return c.Sound("m", "t", kBytes, HugeLength, "m3", "f", "1", "2", "3", "4", "5");
     },
     true, 0, "{422 }"},
    {"Address part refused",
     [](auto& c) {
         return c.Address("a", HugeText(), nullptr, nullptr, nullptr, nullptr, nullptr, 1, "en",
                          kNoX);
     },
     true, 0, "{405 f8:519=1 s520=a }"},
    {"Telephone number refused", [](auto& c) { return c.Telephone(HugeText(), 1, 2, 3, "t", kX); },
     true, 0, "{407 f16:528=1 }"},
    {"Email address refused", [](auto& c) { return c.Email(HugeText(), 3); }, true, 0,
     "{408 f8:533=3 }"},
    {"Organization unit refused",
     [](auto& c) {
         return c.Organization("o", Texts{HugeText(), "u"});
     },
     true, 0, "{416 s540=o }"},
    {"Categories element refused",
     [](auto& c) { return c.Categories(Texts{HugeText()}, "en", kX); }, true, 0, "{900 }"},
    {"UID refused", [](auto& c) { return c.UID(HugeText()); }, true, 0, "{423 }"},
    {"Key data refused", [](auto& c) { return c.Key("k", nullptr, kBytes, HugeLength); }, true, 0,
     "{427 s542=k }"},
    {"NonStandard data refused skips x-params",
     [](auto& c) { return c.NonStandardProperty("n", nullptr, kBytes, HugeLength, kX); }, true, 0,
     "{902 s1011=n }"},
    {"XUCI text refused is false but closed", [](auto& c) { return c.XUCI(HugeText(), 5, 9); },
     false, 0, "{431 u16:528=9 }"},
    {"FormattedName value refused stays open",
     [](auto& c) { return c.FormattedName(HugeText(), "en", kX); }, false, 400, "{400 }"},
    {"FormattedName parameter refused stays open",
     [](auto& c) { return c.FormattedName("a", HugeText(), kX); }, false, 400, "{400 s500=a }"},
    {"FormattedName x-param refused stays open",
     [](auto& c) { return c.FormattedName("a", nullptr, kHugeValue); }, false, 400,
     "{400 s500=a s1013=X-A }"},
    {"SpeedDial refused stays open", [](auto& c) { return c.SpeedDial(HugeText()); }, false, 429,
     "{429 }"},
    {"Handle refused stays open", [](auto& c) { return c.Handle(HugeText()); }, false, 432,
     "{432 }"},
};

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
    EXPECT_TRUE(c.Title("a", nullptr, kNoX));
    EXPECT_TRUE(c.Nickname(kNone, nullptr, kNoX));
    EXPECT_EQ(c.calls, 2);
}

TEST(ContactCreator, HandleDefaultBodyAcceptsAndWritesNothing) {
    RecordingReceiver r;
    EXPECT_TRUE(r.IContactAttributes::Handle("x"));
    EXPECT_TRUE(r.calls.empty());
}

}  // namespace
