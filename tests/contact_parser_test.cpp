#include <gtest/gtest.h>

#include <string>

#include "pimshared/contact/TLVContactCreator.h"
#include "pimshared/contact/TLVContactParser.h"
#include "support/ContactRecorder.h"
#include "support/TlvStreamText.h"

using namespace TestSupport;

namespace {

// The receiver calls for bytes, and the parse result.
std::string ParseLog(const Bytes& bytes, bool* result = nullptr, bool traceAnswer = true) {
    RecordingReceiver r;
    r.traceAnswer = traceAnswer;
    PimShared::CTLVContactParser parser(r);
    const char* error = nullptr;
    unsigned int consumed = 0;
    const bool ok = parser.Parse(bytes.data(), bytes.size(), error, consumed);
    if (result != nullptr) *result = ok;
    return r.Joined();
}

struct StreamCase {
    const char* name;
    const char* stream;
    const char* calls;
};

// Streams no contact creator writes.
// clang-format off
const StreamCase kStreams[] = {
    {"instance only", "{0 u32:10=5 }", "Begin(5) End()"},
    {"no instance leaf", "{0 }", "End()"},
    {"second instance leaf", "{0 u32:10=5 u32:10=6 }", "Begin(5) Trace(3) End()"},
    {"two contacts, each with its own instance", "{0 u32:10=1 } {0 u32:10=2 u32:10=3 }",
     "Begin(1) End() Begin(2) Trace(3) End()"},
    {"wrong root", "{2 u32:10=1 }", "Trace(1) Trace(2) Trace(6)"},
    {"leaf before the contact node", "s:500=a {0 }", "Trace(2) End()"},
    {"value leaf directly in the contact node", "{0 s:503=a }", "Trace(2) End()"},
    // A refused node 0 inside the contact still ends the contact when it closes.
    {"411, 417 and 0 are no properties", "{0 {411 } {417 } {0 } }",
     "Trace(2) Trace(6) Trace(2) Trace(6) Trace(2) End() Trace(6)"},
    {"node inside a property", "{0 {412 {500 s:503=t } } }", "Trace(2) Trace(6) Title(t|-|[]) End()"},
    {"value ID foreign to the property", "{0 {416 s:540=o s:1002=en } }", "Trace(2) Organization(o|[]) End()"},
    {"x-parameters where the property has none", "{0 {408 s:1013=n s:1014=v } }", "Trace(2) Trace(2) Email(-|0) End()"},
    {"x-parameter value without a name", "{0 {412 s:1014=v } }", "Trace(6) Title(-|-|[]) End()"},
    {"second x-parameter name replaces the first", "{0 {412 s:1013=a s:1013=b s:1014=v s:1014=w } }",
     "Trace(6) Title(-|-|[b=v]) End()"},
    {"a later value replaces an earlier one", "{0 {412 s:503=a s:503=b } }", "Title(b|-|[]) End()"},
    {"two telephone nodes are independent",
     "{0 {407 b16:528=9 s:529=1 u8:530=3 b16:531=4 s:532=t s:1013=a s:1014=v } {407 s:529=2 } }",
     "Telephone(1|9|3|4|t|[a=v]) Telephone(2|0|0|0|-|[]) End()"},
    {"XUCI numbers outlive their callback, other leaves are dropped quietly",
     "{0 {431 s:1013=n s:549=a u16:550=65535 u16:528=9 } {431 s:549=b } }",
     "XUCI(a|65535|0) XUCI(b|65535|0) End()"},
    {"classes are not checked, numbers are read by ID", "{0 {408 u16:533=4613 i8:534=-1 } {428 b8:546=2 } }",
     "Email(-|5) PhotoAvailability(1) End()"},
    {"16- and 32-bit signed classes are read by ID too", "{0 {407 i16:528=9 } {431 s:549=x i32:550=70000 } }",
     "Telephone(-|9|0|0|-|[]) XUCI(x|4464|0) End()"},
    {"a list entry that is not a text is dropped", "{0 {900 u8:1004=1 s:1004=a } }", "Categories([a]|-|[]) End()"},
    {"a number sent as bytes reads as 0", "{0 {408 bs:533=ab } }", "Email(-|0) End()"},
    {"a leaf without a store", "{0 {430 s:548=x s:1013=n } }", "Trace(6) Trace(6) XUID(-) End()"},
    {"an element of an undefined class is no problem", "{0 x:77 }", "End()"},
};
// clang-format on

TEST(ContactParser, ReportsAndStoresElementByElement) {
    for (const StreamCase& sc : kStreams) {
        SCOPED_TRACE(sc.name);
        bool ok = false;
        EXPECT_EQ(ParseLog(Stream(sc.stream), &ok), sc.calls);
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
    bool ok = true;
    EXPECT_EQ(ParseLog(Stream("{0 u32:10=5 {412 s:503=abc bad:99 } }"), &ok),
              "Begin(5) Title(abc|-|[]) End() Trace(6)");
    EXPECT_FALSE(ok);
}

TEST(ContactParser, FalseAnswerToAReportStopsTheWalk) {
    bool ok = true;
    EXPECT_EQ(ParseLog(Stream("s:503=stray {0 u32:10=1 }"), &ok, false), "Trace(2) Trace(6)");
    EXPECT_FALSE(ok);
}

TEST(ContactParser, EachParseStartsFromAnEmptyStore) {
    RecordingReceiver r;
    PimShared::CTLVContactParser parser(r);
    const char* error = nullptr;
    unsigned int consumed = 0;
    // The XUCI numbers survive their callback within one parse ...
    const Bytes first = Stream("{0 {431 u16:550=7 } }");
    ASSERT_TRUE(parser.Parse(first.data(), first.size(), error, consumed));
    EXPECT_EQ(r.Joined(), "XUCI(-|7|0) End()");
    // ... but not into the next one.
    const Bytes second = Stream("{0 {431 s:549=b } }");
    r.calls.clear();
    EXPECT_TRUE(parser.Parse(second.data(), second.size(), error, consumed));
    EXPECT_EQ(consumed, second.size());
    EXPECT_EQ(r.Joined(), "XUCI(b|0|0) End()");
}

// Every truncation and every single-byte corruption of a full contact is
// read without a crash or a read outside the buffer (run under the sanitizers
// to see the latter).
TEST(ContactParser, DamagedStreamsAreReadSafely) {
    PimShared::CTLVContactCreator c;
    const unsigned char photo[] = {1, 2, 3, 4};
    const XParams x = {{"X-A", "1"}};
    ASSERT_TRUE(c.Begin(1) && c.FormattedName("Ann", "en", x) &&
                c.Telephone("+1", 1, 2, 3, "t", x) && c.Photo("m", "t", photo, 4, "m3") &&
                c.Categories(Texts{"a", "b"}, nullptr, x) && c.XUCI("u", 5, 6) && c.End());
    const void* data = nullptr;
    unsigned int length = 0;
    ASSERT_TRUE(c.GetData(data, length));
    const Bytes good(static_cast<const unsigned char*>(data),
                     static_cast<const unsigned char*>(data) + length);
    for (unsigned int cut = 0; cut < length; ++cut) {
        ParseLog(Bytes(good.begin(), good.begin() + cut));
    }
    for (unsigned int at = 0; at < length; ++at) {
        for (unsigned char flip : {0x01, 0x80, 0xFF}) {
            Bytes bad = good;
            bad[at] ^= flip;
            ParseLog(bad);
        }
    }
}

}  // namespace
