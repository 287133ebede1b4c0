#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "ContactTestSupport.h"
#include "pimshared/contact/TLVContactParser.h"

using namespace contacttest;
using ParserCreatorCollection::CTLVCreator;

namespace {

const XParams kNoX;

std::string ParseLog(const void* data, unsigned int length, bool* result = nullptr) {
    RecordingReceiver r;
    PimShared::CTLVContactParser parser(r);
    const char* error = nullptr;
    unsigned int consumed = 0;
    const bool ok = parser.Parse(data, length, error, consumed);
    if (result != nullptr) *result = ok;
    return r.Joined();
}

struct StreamCase {
    const char* name;
    std::function<void(CTLVCreator&)> build;
    const char* calls;
};

// Streams no contact creator writes, built element by element.
// clang-format off
const StreamCase kStreams[] = {
    {"instance only", [](CTLVCreator& t) { t.NodeBegin(0), t.LeafUInt32(10, 5), t.NodeEnd(0); }, "Begin(5) End()"},
    {"no instance leaf", [](CTLVCreator& t) { t.NodeBegin(0), t.NodeEnd(0); }, "End()"},
    {"second instance leaf", [](CTLVCreator& t) { t.NodeBegin(0), t.LeafUInt32(10, 5), t.LeafUInt32(10, 6), t.NodeEnd(0); },
     "Begin(5) Trace(3) End()"},
    {"two contacts, each with its own instance", [](CTLVCreator& t) {
         t.NodeBegin(0), t.LeafUInt32(10, 1), t.NodeEnd(0), t.NodeBegin(0), t.LeafUInt32(10, 2), t.LeafUInt32(10, 3), t.NodeEnd(0); },
     "Begin(1) End() Begin(2) Trace(3) End()"},
    {"wrong root", [](CTLVCreator& t) { t.NodeBegin(2), t.LeafUInt32(10, 1), t.NodeEnd(2); }, "Trace(1) Trace(2) Trace(6)"},
    {"leaf before the contact node", [](CTLVCreator& t) { t.LeafString(500, "a"), t.NodeBegin(0), t.NodeEnd(0); }, "Trace(2) End()"},
    {"value leaf directly in the contact node", [](CTLVCreator& t) { t.NodeBegin(0), t.LeafString(503, "a"), t.NodeEnd(0); },
     "Trace(2) End()"},
    // A refused node 0 inside the contact still ends the contact when it closes.
    {"411, 417 and 0 are no properties", [](CTLVCreator& t) {
         t.NodeBegin(0);
         for (unsigned int id : {411u, 417u, 0u}) t.NodeBegin(id), t.NodeEnd(id);
         t.NodeEnd(0); },
     "Trace(2) Trace(6) Trace(2) Trace(6) Trace(2) End() Trace(6)"},
    {"node inside a property", [](CTLVCreator& t) {
         t.NodeBegin(0), t.NodeBegin(412), t.NodeBegin(500), t.LeafString(503, "t"), t.NodeEnd(500), t.NodeEnd(412), t.NodeEnd(0); },
     "Trace(2) Trace(6) Title(t|~|[]) End()"},
    {"value ID foreign to the property", [](CTLVCreator& t) {
         t.NodeBegin(0), t.NodeBegin(416), t.LeafString(540, "o"), t.LeafString(1002, "en"), t.NodeEnd(416), t.NodeEnd(0); },
     "Trace(2) Organization(o|[]) End()"},
    {"x-parameters where the property has none", [](CTLVCreator& t) {
         t.NodeBegin(0), t.NodeBegin(408), t.LeafString(1013, "n"), t.LeafString(1014, "v"), t.NodeEnd(408), t.NodeEnd(0); },
     "Trace(2) Trace(2) Email(~|0) End()"},
    {"x-parameter value without a name", [](CTLVCreator& t) {
         t.NodeBegin(0), t.NodeBegin(412), t.LeafString(1014, "v"), t.NodeEnd(412), t.NodeEnd(0); },
     "Trace(6) Title(~|~|[]) End()"},
    {"second x-parameter name replaces the first", [](CTLVCreator& t) {
         t.NodeBegin(0), t.NodeBegin(412), t.LeafString(1013, "a"), t.LeafString(1013, "b");
         t.LeafString(1014, "v"), t.LeafString(1014, "w"), t.NodeEnd(412), t.NodeEnd(0); },
     "Trace(6) Title(~|~|[b=v]) End()"},
    {"a later value replaces an earlier one", [](CTLVCreator& t) {
         t.NodeBegin(0), t.NodeBegin(412), t.LeafString(503, "a"), t.LeafString(503, "b"), t.NodeEnd(412), t.NodeEnd(0); },
     "Title(b|~|[]) End()"},
    {"two telephone nodes are independent", [](CTLVCreator& t) {
         t.NodeBegin(0), t.NodeBegin(407), t.LeafBitfield16(528, 9), t.LeafString(529, "1"), t.LeafUInt8(530, 3);
         t.LeafBitfield16(531, 4), t.LeafString(532, "t"), t.LeafString(1013, "a"), t.LeafString(1014, "v"), t.NodeEnd(407);
         t.NodeBegin(407), t.LeafString(529, "2"), t.NodeEnd(407), t.NodeEnd(0); },
     "Telephone(1|9|3|4|t|[a=v]) Telephone(2|0|0|0|~|[]) End()"},
    {"XUCI numbers outlive their callback, other leaves are dropped quietly", [](CTLVCreator& t) {
         t.NodeBegin(0), t.NodeBegin(431), t.LeafString(1013, "n"), t.LeafString(549, "a"), t.LeafUInt16(550, 0xFFFF);
         t.LeafUInt16(528, 9), t.NodeEnd(431), t.NodeBegin(431), t.LeafString(549, "b"), t.NodeEnd(431), t.NodeEnd(0); },
     "XUCI(a|65535|0) XUCI(b|65535|0) End()"},
    {"classes are not checked, numbers are read by ID", [](CTLVCreator& t) {
         t.NodeBegin(0), t.NodeBegin(408), t.LeafUInt16(533, 0x1205), t.LeafInt8(534, -1), t.NodeEnd(408);
         t.NodeBegin(428), t.LeafBitfield8(546, 2), t.NodeEnd(428), t.NodeEnd(0); },
     "Email(~|5) PhotoAvailability(1) End()"},
    {"a leaf without a store", [](CTLVCreator& t) {
         t.NodeBegin(0), t.NodeBegin(430), t.LeafString(548, "x"), t.LeafString(1013, "n"), t.NodeEnd(430), t.NodeEnd(0); },
     "Trace(6) Trace(6) XUID(~) End()"},
};
// clang-format on

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
