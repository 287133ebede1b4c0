// The parser trusts nothing in a stream and the creator refuses what the
// format cannot carry. Each case here is an attack on a naive codec.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "parsercreatorcollection/src/tlv/creator/TLVCreator.h"
#include "parsercreatorcollection/src/tlv/parser/TLVParser.h"
#include "support/TlvRecorder.h"

using namespace ParserCreatorCollection;
using TestSupport::Bytes;
using TestSupport::FromHex;
using TestSupport::TlvRecorder;
using TestSupport::TraceCapture;

namespace {

struct Walk {
    bool ok;
    unsigned int consumed;
    std::vector<std::string> events;
};

// Parses a heap copy of exactly the given bytes, so that any read past the end
// is caught by the address sanitizer.
Walk WalkBytes(const Bytes& bytes) {
    std::unique_ptr<unsigned char[]> exact(new unsigned char[bytes.size() + 1]);
    if (!bytes.empty()) std::memcpy(exact.get(), bytes.data(), bytes.size());
    TlvRecorder recorder;
    CTLVParser parser(recorder);
    const char* errorText = nullptr;
    unsigned int consumed = 0;
    const bool ok =
        parser.Parse(exact.get(), static_cast<unsigned int>(bytes.size()), errorText, consumed);
    return Walk{ok, consumed, recorder.events};
}

using Events = std::vector<std::string>;

}  // namespace

TEST(Hardening, ElementsThatDoNotFitEndTheWalk) {
    struct Case {
        const char* name;
        const char* hex;
        unsigned int consumed;
        Events events;
    } const cases[] = {
        {"value past the stream", "70 01 05 AA BB", 3, {}},
        {"length field past the stream", "70 01 82 01", 0, {}},
        {"header past the stream", "80", 0, {}},
        {"node past the stream", "80 01 10 20 01 01 01", 3, {}},
        {"child past its node", "80 01 03 80 02 04 20 03 01 05", 6, {"NodeBegin(1)", "NodeEnd(1)"}},
        {"leaf straddling its node's end",
         "80 01 02 20 03 01 05",
         3,
         {"NodeBegin(1)", "NodeEnd(1)"}},
        {"fixed-size leaf cut by the stream end", "90 01 04 00 00", 3, {}},
        {"string without terminator", "80 01 05 60 02 02 41 42", 6, {"NodeBegin(1)", "NodeEnd(1)"}},
        {"empty string value", "60 02 00", 3, {}},
        {"huge declared length", "70 01 84 FF FF FF FF 00", 7, {}},
    };
    for (const Case& c : cases) {
        const Walk w = WalkBytes(FromHex(c.hex));
        EXPECT_FALSE(w.ok) << c.name;
        EXPECT_EQ(w.consumed, c.consumed) << c.name;
        EXPECT_EQ(w.events, c.events) << c.name;
    }
}

// A correct stream cut at every length never reads outside the cut and
// always gives balanced node events; only the full length succeeds.
TEST(Hardening, EveryTruncationOfAValidStream) {
    CTLVCreator creator;
    ASSERT_TRUE(creator.NodeBegin(1) && creator.NodeBegin(103) && creator.LeafUInt32(10, 5) &&
                creator.NodeBegin(202) && creator.LeafString(302, "AB") &&
                creator.LeafByteStream(7, "\x01\x02\x03", 3) && creator.LeafUInt16(5, 0x1234) &&
                creator.NodeEnd(202) && creator.NodeBegin(215) && creator.LeafString(1013, "hi!") &&
                creator.NodeEnd(215) && creator.NodeEnd(103) && creator.LeafUInt8(1, 7) &&
                creator.NodeEnd(1));
    const void* data = nullptr;
    unsigned int length = 0;
    ASSERT_TRUE(creator.GetData(data, length));
    const auto* begin = static_cast<const unsigned char*>(data);
    const Bytes full(begin, begin + length);
    ASSERT_TRUE(WalkBytes(full).ok);
    for (std::size_t cut = 1; cut < full.size(); ++cut) {
        const Walk w = WalkBytes(Bytes(full.begin(), full.begin() + static_cast<long>(cut)));
        EXPECT_FALSE(w.ok) << cut;
        EXPECT_LE(w.consumed, cut);
        int depth = 0;
        for (const std::string& e : w.events) {
            if (e.rfind("NodeBegin", 0) == 0) ++depth;
            if (e.rfind("NodeEnd", 0) == 0) --depth;
            EXPECT_GE(depth, 0) << cut;
        }
        EXPECT_EQ(depth, 0) << cut;
    }
}

TEST(Hardening, RepairedTextsLiveUntilParseReturns) {
    // Keeps every text pointer and reads them all after the walk's last event.
    class Keeper : public TlvRecorder {
      public:
        std::vector<const char*> kept;
        std::vector<std::string> atEnd;
        bool LeafString(const unsigned int& id, const char* t) override {
            kept.push_back(t);
            return TlvRecorder::LeafString(id, t);
        }
        bool NodeEnd(const unsigned int& id) override {
            if (id == 1)
                for (const char* t : kept) atEnd.emplace_back(t);
            return TlvRecorder::NodeEnd(id);
        }
    } keeper;
    const Bytes bytes = FromHex("80 01 0C 60 02 03 41 FF 00 60 03 03 FE 42 00");
    CTLVParser parser(keeper);
    const char* errorText = nullptr;
    unsigned int consumed = 0;
    ASSERT_TRUE(parser.Parse(bytes.data(), 15, errorText, consumed));
    EXPECT_EQ(keeper.atEnd, (std::vector<std::string>{"A?", "?B"}));
}

TEST(Hardening, MillionNestedNodesWithoutRecursion) {
    constexpr unsigned int kDepth = 1000000;
    CTLVCreator creator;
    for (unsigned int i = 0; i < kDepth; ++i) ASSERT_TRUE(creator.NodeBegin(i & 0xFFF));
    ASSERT_TRUE(creator.LeafUInt8(1, 1));
    for (unsigned int i = kDepth; i > 0; --i) ASSERT_TRUE(creator.NodeEnd((i - 1) & 0xFFF));
    const void* data = nullptr;
    unsigned int length = 0;
    ASSERT_TRUE(creator.GetData(data, length));

    class Counter : public TlvRecorder {
      public:
        unsigned long begins = 0, ends = 0, leaves = 0;
        bool NodeBegin(const unsigned int&) override { return ++begins, true; }
        bool NodeEnd(const unsigned int&) override { return ++ends, true; }
        bool LeafUInt8(const unsigned int&, const unsigned char&) override {
            return ++leaves, true;
        }
    } counter;
    CTLVParser parser(counter);
    const char* errorText = nullptr;
    unsigned int consumed = 0;
    EXPECT_TRUE(parser.Parse(data, length, errorText, consumed));
    EXPECT_EQ(consumed, length);
    EXPECT_EQ(counter.begins, kDepth);
    EXPECT_EQ(counter.ends, kDepth);
    EXPECT_EQ(counter.leaves, 1u);

    // An unwritten deep tree (and one with its nodes still open) is destroyed
    // without recursion too.
    for (unsigned int i = 0; i < kDepth; ++i) ASSERT_TRUE(creator.NodeBegin(7));
    for (unsigned int i = 0; i < kDepth / 2; ++i) ASSERT_TRUE(creator.NodeEnd(7));
    EXPECT_TRUE(creator.Reset());
    auto deep = std::make_unique<CTLVObjNode>(1);
    CTLVObjNode* tip = deep.get();
    for (unsigned int i = 0; i < kDepth; ++i) {
        auto* child = new CTLVObjNode(2);
        tip->Add(child);
        tip = child;
    }
    deep.reset();
}

TEST(Hardening, OversizeValuesAreRefusedNotLooped) {
    TraceCapture trace;
    CTLVCreator creator;
    const std::string big(CTLVObject::MaxValueLength, 'x');  // + terminator: one too many
    EXPECT_FALSE(creator.LeafString(1, big.c_str()));
    EXPECT_FALSE(creator.LeafByteStream(2, big.data(), CTLVObject::MaxValueLength + 1));
    EXPECT_EQ(trace.Lines(), (std::vector<int>{1478, 1507}));

    // A refused call leaves nothing behind, in a node or outside.
    const void* data = nullptr;
    unsigned int length = 0;
    ASSERT_TRUE(creator.NodeBegin(7) && creator.LeafUInt8(8, 1));
    EXPECT_FALSE(creator.LeafByteStream(2, big.data(), CTLVObject::MaxValueLength + 1));
    ASSERT_TRUE(creator.NodeEnd(7) && creator.GetData(data, length));
    const auto* bytes = static_cast<const unsigned char*>(data);
    EXPECT_EQ(Bytes(bytes, bytes + length), FromHex("80 07 04 20 08 01 01"));

    // Two leaves that fit alone make a node that does not: GetData refuses
    // and keeps the tree, so asking again refuses again.
    ASSERT_TRUE(creator.NodeBegin(1));
    ASSERT_TRUE(creator.LeafByteStream(2, big.data(), CTLVObject::MaxValueLength - 10));
    ASSERT_TRUE(creator.LeafByteStream(3, big.data(), 100));
    ASSERT_TRUE(creator.NodeEnd(1));
    EXPECT_FALSE(creator.GetData(data, length));
    EXPECT_FALSE(creator.GetData(data, length));
    EXPECT_EQ(trace.entries.back().level, 3);
    EXPECT_TRUE(creator.Reset());
    ASSERT_TRUE(creator.LeafByteStream(2, big.data(), CTLVObject::MaxValueLength));
    EXPECT_TRUE(creator.GetData(data, length));
    EXPECT_EQ(length, 2u + 4u + CTLVObject::MaxValueLength);
}
