// The wire module and the parser's account of why a walk stopped.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "parsercreatorcollection/src/tlv/parser/TLVParser.h"
#include "parsercreatorcollection/src/tlv/parser/TLVWalk.h"
#include "parsercreatorcollection/src/tlv/wire/TLVWire.h"
#include "pimshared/common/ItemKind.h"

namespace {

using namespace ParserCreatorCollection;
using Bytes = std::vector<std::uint8_t>;
using Reason = TLVError::Reason;
using PimShared::ItemKind;

Bytes Hex(const std::string& hex) {
    Bytes out;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 3) {
        out.push_back(static_cast<std::uint8_t>(std::stoi(hex.substr(i, 2), nullptr, 16)));
    }
    return out;
}

TEST(Wire, HeaderFaultsAreToldApart) {
    struct Case {
        const char* hex;
        HeaderFault fault;
        unsigned int headerSize, length;
    };
    const Case cases[] = {
        {"", HeaderFault::WordCut, 0, 0},
        {"80", HeaderFault::WordCut, 0, 0},
        {"80 01", HeaderFault::LengthMissing, 0, 0},
        {"80 01 80", HeaderFault::LengthNoCount, 0, 0},
        {"80 01 83 01 00", HeaderFault::LengthCut, 0, 0},
        {"80 01 7F", HeaderFault::None, 3, 127},
        {"80 01 82 00 05", HeaderFault::None, 5, 5},  // not minimal, still read
        // Shift counts wrap at 32: the first of five bytes lands in the lowest.
        {"80 01 85 01 02 03 04 05", HeaderFault::None, 8, 0x02030405u},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.hex);
        const Bytes b = Hex(c.hex);
        ElementHeader h;
        ASSERT_EQ(ReadElementHeader(b.data(), b.size(), h), c.fault);
        if (c.fault != HeaderFault::None) continue;
        EXPECT_EQ(h.elementClass, 8u);
        EXPECT_EQ(h.typeId, 1u);
        EXPECT_EQ(h.headerSize, c.headerSize);
        EXPECT_EQ(h.length, c.length);
    }
}

// Odd but valid item frames: the kind is what the item parsers accept.
TEST(Wire, ItemKindIsTheRootAndTheFirstNodeInsideIt) {
    struct Case {
        const char* what;
        const char* hex;
        ItemKind kind;
        bool hasInstance;
        unsigned int instance;
    };
    const Case cases[] = {
        {"event as written", "80 01 0A 80 67 07 90 0A 04 00 00 00 03", ItemKind::Event, true, 3},
        {"instance ahead of the component", "80 01 0A 90 0A 04 00 00 00 04 80 67 00",
         ItemKind::Event, true, 4},
        {"task", "80 01 03 80 68 00", ItemKind::Task, false, 0},
        {"note", "80 03 03 80 69 00", ItemKind::Note, false, 0},
        {"contact, root alone", "80 00 00", ItemKind::Contact, false, 0},
        {"e-mail", "80 02 0A 90 0A 04 00 00 00 01 82 58 00", ItemKind::Email, true, 1},
        {"sms", "80 02 03 82 BC 00", ItemKind::Sms, false, 0},
        {"im", "80 02 03 83 84 00", ItemKind::InstantMessage, false, 0},
        {"call list, second entry form", "80 05 03 87 D1 00", ItemKind::CallList, false, 0},
        {"undefined class before the component", "80 01 07 C0 01 01 AA 80 67 00", ItemKind::Event,
         false, 0},
        {"root declares more than there is", "80 01 20 80 67 00", ItemKind::Event, false, 0},
        {"calendar root, no component", "80 01 07 90 0A 04 00 00 00 01", ItemKind::Unknown, true,
         1},
        {"message root, unknown component", "80 02 03 80 07 00", ItemKind::Unknown, false, 0},
        {"leaf at the top", "20 01 01 07", ItemKind::Unknown, false, 0},
        {"instance below the component's nodes is not the item's",
         "80 01 0D 80 67 0A 80 CA 07 90 0A 04 00 00 00 09", ItemKind::Event, false, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const Bytes b = Hex(c.hex);
        EXPECT_EQ(PimShared::DetectItemKind(b.data(), b.size()), c.kind);
        unsigned int instance = 0;
        EXPECT_EQ(PimShared::ReadItemInstance(b.data(), b.size(), instance), c.hasInstance);
        EXPECT_EQ(instance, c.instance);
    }
    EXPECT_STREQ(PimShared::ItemKindName(ItemKind::InstantMessage), "im");
    EXPECT_STREQ(PimShared::ItemKindName(ItemKind::Unknown), "");
}

TEST(Wire, CutFaultsAreWorded) {
    struct Case {
        const char* hex;
        CutFault fault;
        const char* text;
    };
    const Case cases[] = {
        {"80 01 00", CutFault::None, ""},
        {"20 05 01 07", CutFault::NotANode,
         "an item starts with a node, not an element of class 2"},
        {"80 01", CutFault::Header, "header cut short"},
        {"80 01 80", CutFault::Header, "length field 0x80 holds no length"},
        {"80 01 83 00", CutFault::Header, "length field cut short"},
        {"80 01 05 00", CutFault::PastTheEnd, "the item declares more bytes than the file holds"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.hex);
        const Bytes b = Hex(c.hex);
        ItemSpan span;
        EXPECT_EQ(ReadItemSpan(b.data(), b.size(), 0, span), c.fault);
        EXPECT_EQ(DescribeCutFault(b.data(), b.size(), 0), c.text);
    }
}

// The account of a stopped walk: where, what, inside which node, in words.
TEST(TLVErrorTest, SaysWhereAndWhyTheWalkStopped) {
    struct Case {
        const char* what;
        const char* hex;
        Reason reason;
        unsigned int offset;
        bool inNode;
        unsigned int nodeTypeId, nodeOffset;
        const char* sentence;
    };
    const Case cases[] = {
        {"well formed", "80 01 04 20 01 01 05", Reason::None, 0, false, 0, 0, ""},
        {"truncated text in a node", "80 01 06 80 CA 03 61 2E 01 41", Reason::ValueTooLong, 6, true,
         202, 3, "String 302 declares 1 byte, more than the 0 bytes left in node 202 at offset 3"},
        {"node longer than the stream", "80 01 05 80 67 10", Reason::ValueTooLong, 0, false, 0, 0,
         "Node 1 declares 5 bytes, more than the 3 bytes left in the stream"},
        {"fixed size", "80 01 04 30 05 01 07", Reason::WrongFixedSize, 3, true, 1, 0,
         "UInt16 5 declares a value of 1 byte; the class takes exactly 2"},
        {"unterminated text", "61 2E 02 41 42", Reason::TextUnterminated, 0, false, 0, 0,
         "String 302 does not end with a zero byte"},
        {"empty text", "61 2E 00", Reason::TextEmpty, 0, false, 0, 0,
         "String 302 has an empty value; a text needs its zero byte"},
        {"length without count", "80 01 80", Reason::LengthNoCount, 0, false, 0, 0,
         "length field 0x80 gives no byte count (in the stream)"},
        {"header cut in a node", "80 01 01 61", Reason::WordCut, 3, true, 1, 0,
         "the element header needs 2 bytes, only 1 byte left (in node 1 at offset 0)"},
        {"long length cut", "70 01 83 01", Reason::LengthCut, 0, false, 0, 0,
         "length field announces 3 bytes of length, only 1 byte left (in the stream)"},
        {"word and nothing else", "20 01 01 05 20 01", Reason::LengthMissing, 4, false, 0, 0,
         "the length field is missing after the header word (in the stream)"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const Bytes b = Hex(c.hex);
        const TLVError e = ExplainTLV(b.data(), static_cast<unsigned int>(b.size()));
        EXPECT_EQ(e.reason, c.reason);
        EXPECT_EQ(static_cast<bool>(e), c.reason != Reason::None);
        EXPECT_EQ(e.IsMalformed(), c.reason != Reason::None);
        EXPECT_EQ(e.offset, c.offset);
        EXPECT_EQ(e.inNode, c.inNode);
        EXPECT_EQ(e.nodeTypeId, c.nodeTypeId);
        EXPECT_EQ(e.nodeOffset, c.nodeOffset);
        EXPECT_EQ(e.Sentence(), c.sentence);
    }
    // Offsets in the sentence move with the place of the buffer in a file.
    const Bytes cut = Hex(cases[1].hex);
    EXPECT_EQ(ExplainTLV(cut.data(), static_cast<unsigned int>(cut.size())).Sentence(100),
              "String 302 declares 1 byte, more than the 0 bytes left in node 202 at offset 103");
    EXPECT_EQ(ExplainTLV(nullptr, 0).reason, Reason::NoData);
}

// A parser that records each element's offset as the walk reports it, and
// may refuse one element.
class Offsets final : public ITLV, public CTLVParser {
  public:
    Offsets() : CTLVParser(static_cast<ITLV&>(*this)) {}
    std::vector<std::string> seen;
    unsigned int refuse = ~0u;

    bool Unknown(const eClass&, const unsigned int& id, const void*, const unsigned int&) override {
        return Note("?", id);
    }
    bool NodeBegin(const unsigned int& id) override { return Note("(", id); }
    bool NodeEnd(const unsigned int& id) override { return Note(")", id); }
    bool LeafInt8(const unsigned int& id, const signed char&) override { return Note("", id); }
    bool LeafInt16(const unsigned int& id, const short&) override { return Note("", id); }
    bool LeafUInt8(const unsigned int& id, const unsigned char&) override { return Note("", id); }
    bool LeafUInt16(const unsigned int& id, const unsigned short&) override { return Note("", id); }
    bool LeafBitfield8(const unsigned int& id, const unsigned char&) override {
        return Note("", id);
    }
    bool LeafBitfield16(const unsigned int& id, const unsigned short&) override {
        return Note("", id);
    }
    bool LeafString(const unsigned int& id, const char*) override { return Note("", id); }
    bool LeafByteStream(const unsigned int& id, const void*, const unsigned int&) override {
        return Note("", id);
    }
    bool LeafUInt32(const unsigned int& id, const unsigned int&) override { return Note("", id); }
    bool LeafInt32(const unsigned int& id, const int&) override { return Note("", id); }

  private:
    bool Note(const char* mark, unsigned int id) {
        seen.push_back(mark + std::to_string(id) + "@" + std::to_string(ElementOffset()));
        return id != refuse;
    }
};

TEST(TLVErrorTest, EventsTellTheirOffsetAndARefusalIsNoFault) {
    // The calendar item of the wire format's worked example.
    const Bytes b = Hex("80 01 13 80 67 10 90 0A 04 00 00 00 05 80 CA 06 61 2E 03 41 42 00");
    Offsets p;
    const char* errorText = nullptr;
    unsigned int consumed = 0;
    ASSERT_TRUE(p.Parse(b.data(), static_cast<unsigned int>(b.size()), errorText, consumed));
    EXPECT_EQ(p.seen, (std::vector<std::string>{"(1@0", "(103@3", "10@6", "(202@13", "302@16",
                                                ")202@13", ")103@3", ")1@0"}));
    EXPECT_FALSE(p.LastError());

    p.seen.clear();
    p.refuse = 10;
    EXPECT_FALSE(p.Parse(b.data(), static_cast<unsigned int>(b.size()), errorText, consumed));
    EXPECT_STREQ(errorText, "");  // the words are in the account, never here
    EXPECT_EQ(consumed, 13u);
    const TLVError& e = p.LastError();
    EXPECT_EQ(e.reason, Reason::TargetStopped);
    EXPECT_FALSE(e.IsMalformed());
    EXPECT_EQ(e.offset, 6u);
    EXPECT_EQ(e.nodeTypeId, 103u);
    EXPECT_EQ(e.Sentence(), "the receiver stopped the walk at UInt32 10");
}

// One parser, case after case: a refusal is a stop even on the last byte of
// the stream, enclosing nodes close at their own headers, and empty nodes and
// long length fields keep the offsets right.
TEST(TLVErrorTest, StopsAndOffsetsHoldFromParseToParse) {
    struct Case {
        const char* hex;
        unsigned int refuse;
        bool ok;
        unsigned int consumed;
        unsigned int offset;  // of the stop
        std::vector<std::string> seen;
    };
    const Case cases[] = {
        {"00 01 01 01 00 02 01 02", 2, false, 8, 4, {"1@0", "2@4"}},
        {"80 01 0B 80 02 08 00 05 01 07 00 06 01 08",
         6,
         false,
         14,
         10,
         {"(1@0", "(2@3", "5@6", "6@10", ")2@3", ")1@0"}},
        {"80 01 00 80 02 81 07 00 03 01 09 80 04 00",
         ~0u,
         true,
         14,
         0,
         {"(1@0", ")1@0", "(2@3", "3@7", "(4@11", ")4@11", ")2@3"}},
        {"80 05 03 80 06 00", 6, true, 6, 0, {"(5@0", "(6@3", ")6@3", ")5@0"}},
    };
    Offsets p;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.hex);
        const Bytes b = Hex(c.hex);
        const char* errorText = nullptr;
        unsigned int consumed = 0;
        p.seen.clear();
        p.refuse = c.refuse;
        EXPECT_EQ(p.Parse(b.data(), static_cast<unsigned int>(b.size()), errorText, consumed),
                  c.ok);
        EXPECT_EQ(consumed, c.consumed);
        EXPECT_EQ(p.seen, c.seen);
        EXPECT_EQ(p.LastError().reason, c.ok ? Reason::None : Reason::TargetStopped);
        EXPECT_EQ(p.LastError().offset, c.offset);
    }
}

}  // namespace
