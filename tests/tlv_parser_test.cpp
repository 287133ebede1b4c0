// Reading side of the codec: CTLVParser against exact streams, including
// malformed ones (table of input, result, consumed bytes, events).
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "parsercreatorcollection/src/tlv/parser/TLVParser.h"
#include "support/TlvRecorder.h"

using namespace ParserCreatorCollection;
using TestSupport::Bytes;
using TestSupport::FromHex;
using TestSupport::TlvRecorder;
using TestSupport::TraceCapture;

namespace {

const char* const kCalendar22 = "80 01 13 80 67 10 90 0A 04 00 00 00 05 80 CA 06 61 2E 03 41 42 00";

struct Walk {
    bool ok;
    unsigned int consumed;
    std::string errorText;
    std::vector<std::string> events;
};

Walk WalkBytes(const Bytes& bytes, int refuseAt = 0) {
    TlvRecorder recorder;
    recorder.refuseAt = refuseAt;
    CTLVParser parser(recorder);
    const char* errorText = nullptr;
    unsigned int consumed = 99;
    const bool ok =
        parser.Parse(bytes.data(), static_cast<unsigned int>(bytes.size()), errorText, consumed);
    return Walk{ok, consumed, errorText, recorder.events};
}

using Events = std::vector<std::string>;

}  // namespace

TEST(Parser, NullDataCallsNothing) {
    TlvRecorder recorder;
    CTLVParser parser(recorder);
    const char* errorText = nullptr;
    unsigned int consumed = 7;
    EXPECT_FALSE(parser.Parse(nullptr, 10, errorText, consumed));
    EXPECT_EQ(consumed, 0u);
    ASSERT_NE(errorText, nullptr);
    EXPECT_STREQ(errorText, "");
    EXPECT_TRUE(recorder.events.empty());
}

TEST(Parser, EmptyStreamIsValid) {
    const unsigned char byte = 0;
    TlvRecorder recorder;
    CTLVParser parser(recorder);
    const char* errorText = nullptr;
    unsigned int consumed = 7;
    EXPECT_TRUE(parser.Parse(&byte, 0, errorText, consumed));
    EXPECT_EQ(consumed, 0u);
    EXPECT_TRUE(recorder.events.empty());
}

TEST(Parser, CalendarStreamEvents) {
    const Walk w = WalkBytes(FromHex(kCalendar22));
    EXPECT_TRUE(w.ok);
    EXPECT_EQ(w.consumed, 22u);
    EXPECT_EQ(w.errorText, "");
    EXPECT_EQ(w.events,
              (Events{"NodeBegin(1)", "NodeBegin(103)", "LeafUInt32(10,5)", "NodeBegin(202)",
                      "LeafString(302,AB)", "NodeEnd(202)", "NodeEnd(103)", "NodeEnd(1)"}));
}

TEST(Parser, TargetRefusalStopsTheWalkButClosesNodes) {
    const Walk w = WalkBytes(FromHex(kCalendar22), 3);
    EXPECT_FALSE(w.ok);
    EXPECT_EQ(w.consumed, 13u);
    EXPECT_EQ(w.events, (Events{"NodeBegin(1)", "NodeBegin(103)", "LeafUInt32(10,5)",
                                "NodeEnd(103)", "NodeEnd(1)"}));
}

// For every k, a target refusing its k-th event stops right there; the walk
// is always balanced and never reports anything after the refusal.
TEST(Parser, RefusalAtEveryEvent) {
    const Bytes bytes = FromHex(kCalendar22);
    const Walk full = WalkBytes(bytes);
    for (int k = 1; k <= static_cast<int>(full.events.size()); ++k) {
        const Walk w = WalkBytes(bytes, k);
        const bool leaf = full.events[k - 1].rfind("Node", 0) != 0;
        EXPECT_EQ(w.ok, !leaf) << k;
        int depth = 0;
        for (const std::string& e : w.events)
            depth += e.rfind("NodeBegin", 0) == 0 ? 1 : e.rfind("NodeEnd", 0) == 0 ? -1 : 0;
        EXPECT_EQ(depth, 0) << k;
    }
}

TEST(Parser, MalformedAndEdgeStreams) {
    struct Case {
        const char* name;
        const char* hex;
        bool ok;
        unsigned int consumed;
        Events events;
    } const cases[] = {
        {"UInt16 with length 1 inside a node",
         "80 01 04 30 02 01 05",
         false,
         6,
         {"NodeBegin(1)", "NodeEnd(1)"}},
        {"Int16 with length 3", "10 02 03 00 00 00", false, 3, {}},
        {"length byte 80 is refused", "20 01 80 05", false, 0, {}},
        {"non-minimal long length is read",
         "70 07 82 00 02 AA BB",
         true,
         7,
         {"LeafByteStream(7,AA BB)"}},
        {"unknown class 12 is reported and skipped",
         "C0 05 03 01 02 03 20 01 01 09",
         true,
         10,
         {"Unknown(12,5,01 02 03)", "LeafUInt8(1,9)"}},
        {"several top-level elements",
         "20 01 01 01 80 02 00",
         true,
         7,
         {"LeafUInt8(1,1)", "NodeBegin(2)", "NodeEnd(2)"}},
        {"every signed and bitfield class",
         "00 01 01 FF 10 02 02 80 00 40 03 01 81 50 04 02 00 01 A0 05 04 FF FF FF FE",
         true,
         25,
         {"LeafInt8(1,-1)", "LeafInt16(2,-32768)", "LeafBitfield8(3,129)", "LeafBitfield16(4,1)",
          "LeafInt32(5,-2)"}},
        {"long field over four bytes wraps instead of widening",
         "70 01 85 01 00 00 00 02 AA BB CC",
         true,
         11,
         {"LeafByteStream(1,AA BB CC)"}},
    };
    for (const Case& c : cases) {
        const Walk w = WalkBytes(FromHex(c.hex));
        EXPECT_EQ(w.ok, c.ok) << c.name;
        EXPECT_EQ(w.consumed, c.consumed) << c.name;
        EXPECT_EQ(w.events, c.events) << c.name;
    }
}

TEST(Parser, InvalidUtf8IsRepairedWithWarning) {
    TraceCapture trace;
    const Walk w = WalkBytes(FromHex("60 01 04 61 FF 62 00"));
    EXPECT_TRUE(w.ok);
    EXPECT_EQ(w.events, (Events{"LeafString(1,a?b)"}));
    ASSERT_EQ(trace.entries.size(), 1u);
    EXPECT_EQ(trace.entries[0].level, 2);
    EXPECT_EQ(trace.entries[0].line, 218);
    EXPECT_EQ(trace.entries[0].module, "TLVParser");
    EXPECT_EQ(trace.entries[0].path, "parsercreatorcollection/src/tlv/parser/private/TLVParser");
}

TEST(Parser, ParsesAgainFromTheStart) {
    TlvRecorder recorder;
    CTLVParser parser(recorder);
    const Bytes bytes = FromHex(kCalendar22);
    const char* errorText = nullptr;
    unsigned int consumed = 0;
    EXPECT_TRUE(parser.Parse(bytes.data(), 22, errorText, consumed));
    EXPECT_TRUE(parser.Parse(bytes.data(), 22, errorText, consumed));
    EXPECT_EQ(recorder.events.size(), 16u);
}

// The reading helpers a derived parser may use for reads of its own; the walk
// does not go through them, so they are checked here, each from a fresh
// position 0 over the given bytes: what it read and where it left the position.
class HelperParser : public CTLVParser {
  public:
    explicit HelperParser(ITLV& target) : CTLVParser(target) {}
    // Points the helpers at a copy of bytes, as Parse does, with the
    // position at 0.
    void Over(const Bytes& bytes) {
        m_bytes = bytes;
        m_bytes.push_back(0);  // never an empty vector; not counted
        const char* error = nullptr;
        unsigned int consumed = 0;
        Parse(m_bytes.data(), static_cast<unsigned int>(bytes.size()), error, consumed);
        m_position = 0;
    }
    using CTLVParser::m_position;
    using CTLVParser::parseTL;
    using CTLVParser::readL;
    using CTLVParser::readU16;
    using CTLVParser::readU32;
    using CTLVParser::readU8;

  private:
    Bytes m_bytes;
};

TEST(ParserHelpers, LengthFieldsAndHeaders) {
    struct Case {
        const char* hex;
        bool ok;
        unsigned int length;
        unsigned int fieldSize;
    } const lengths[] = {
        {"05", true, 5, 1},
        {"7F", true, 127, 1},
        {"81 80", true, 128, 2},
        {"82 01 00", true, 256, 3},
        {"84 00 FF FF FF", true, 0xFFFFFF, 5},
        {"85 01 02 03 04 05", true, 0x02030405, 6},  // the fifth byte's shift wraps
        {"80", false, 0, 0},
        {"82 01", false, 0, 0},
        {"", false, 0, 0},
    };
    TlvRecorder recorder;
    HelperParser p(recorder);
    for (const Case& c : lengths) {
        p.Over(FromHex(c.hex));
        unsigned int length = 0;
        unsigned int fieldSize = 0;
        EXPECT_EQ(p.readL(length, fieldSize), c.ok) << c.hex;
        EXPECT_EQ(p.m_position, c.fieldSize) << c.hex;
        if (c.ok) {
            EXPECT_EQ(length, c.length) << c.hex;
            EXPECT_EQ(fieldSize, c.fieldSize) << c.hex;
        }
    }
    eClass elementClass = Int8;
    unsigned int typeId = 0;
    unsigned int headerSize = 0;
    unsigned int length = 0;
    p.Over(FromHex("80 01 81 CD"));
    EXPECT_TRUE(p.parseTL(elementClass, typeId, headerSize, length));
    EXPECT_EQ(elementClass, Node);
    EXPECT_EQ(typeId, 1u);
    EXPECT_EQ(headerSize, 4u);
    EXPECT_EQ(length, 205u);
    for (const char* broken : {"20", "20 07", "20 07 80", "20 07 82 00"}) {
        p.Over(FromHex(broken));
        EXPECT_FALSE(p.parseTL(elementClass, typeId, headerSize, length)) << broken;
        EXPECT_EQ(p.m_position, 0u) << broken;  // back at the element's first byte
    }
}

TEST(ParserHelpers, FixedSizeReadsNeedTheirExactSize) {
    TlvRecorder recorder;
    HelperParser p(recorder);
    const Bytes bytes = FromHex("12 34 56 78");
    unsigned char u8 = 0;
    unsigned short u16 = 0;
    unsigned int u32 = 0;
    p.Over(bytes);
    EXPECT_FALSE(p.readU8(2, u8));
    EXPECT_FALSE(p.readU16(1, u16));
    EXPECT_FALSE(p.readU32(2, u32));
    EXPECT_EQ(p.m_position, 0u);
    EXPECT_TRUE(p.readU32(4, u32));
    EXPECT_EQ(u32, 0x12345678u);
    EXPECT_FALSE(p.readU8(1, u8));  // nothing left
    p.Over(bytes);
    EXPECT_TRUE(p.readU8(1, u8) && p.readU16(2, u16));
    EXPECT_EQ(u8, 0x12);
    EXPECT_EQ(u16, 0x3456);
    EXPECT_FALSE(p.readU16(2, u16));  // one byte left
    EXPECT_EQ(p.m_position, 3u);
}
