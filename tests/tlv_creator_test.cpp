// Writing side of the codec: length fields, element objects and CTLVCreator,
// checked against exact bytes.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "parsercreatorcollection/src/tlv/creator/TLVCreator.h"
#include "support/TlvRecorder.h"

using namespace ParserCreatorCollection;
using TestSupport::FromHex;
using TestSupport::ToHex;
using TestSupport::TraceCapture;

namespace {

std::string Output(CTLVCreator& c) {
    const void* data = nullptr;
    unsigned int length = 0;
    if (!c.GetData(data, length)) return "GetData failed";
    return ToHex(data, length);
}

std::string Written(CTLVObject& object) {
    PAL::CBuffer buffer;
    unsigned int offset = 0;
    if (!object.WriteToBuffer(buffer, offset)) return "WriteToBuffer failed";
    EXPECT_EQ(offset, buffer.getSize());
    return ToHex(buffer.getData(), buffer.getSize());
}

}  // namespace

TEST(WireLength, ShortestFormForEachSize) {
    struct Case {
        unsigned int length;
        const char* field;
    } const cases[] = {{0, "00"},
                       {5, "05"},
                       {127, "7F"},
                       {128, "81 80"},
                       {201, "81 C9"},
                       {255, "81 FF"},
                       {256, "82 01 00"},
                       {300, "82 01 2C"},
                       {65535, "82 FF FF"},
                       {65536, "83 01 00 00"},
                       {70000, "83 01 11 70"},
                       {0xFFFFFF, "83 FF FF FF"}};
    for (const Case& c : cases) {
        unsigned char out[5] = {};
        const unsigned int size = CTLVObject::WriteLengthField(c.length, out);
        EXPECT_EQ(ToHex(out, size), c.field) << c.length;
        EXPECT_EQ(CTLVObject::WriteLengthField(c.length, nullptr), size) << c.length;
    }
}

TEST(WireByteOrder, HostToTlvGivesBigEndianBytes) {
    const unsigned short s = CTLVObject::HostToTLV16(0x1234);
    const unsigned int w = CTLVObject::HostToTLV32(0x12345678);
    EXPECT_EQ(ToHex(&s, 2), "12 34");
    EXPECT_EQ(ToHex(&w, 4), "12 34 56 78");
}

TEST(ElementObjects, EachLeafClassWritesHeaderAndValue) {
    CTLVObjInt8 i8(1, -2);
    CTLVObjInt16 i16(2, -2);
    CTLVObjUInt8 u8(3, 200);
    CTLVObjUInt16 u16(4, 0xABCD);
    CTLVObjBitfield8 b8(5, 0x81);
    CTLVObjBitfield16 b16(6, 0x8001);
    CTLVObjString s(302, "AB");
    CTLVObjString empty(302, nullptr);
    CTLVObjByteStream bytes(7, "\x01\x02\x03", 3);
    CTLVObjUInt32 u32(10, 5);
    CTLVObjInt32 i32(4095, -1);
    struct Case {
        CTLVObject* object;
        eClass cls;
        const char* bytes;
    } const cases[] = {
        {&i8, Int8, "00 01 01 FE"},
        {&i16, Int16, "10 02 02 FF FE"},
        {&u8, UInt8, "20 03 01 C8"},
        {&u16, UInt16, "30 04 02 AB CD"},
        {&b8, Bitfield8, "40 05 01 81"},
        {&b16, Bitfield16, "50 06 02 80 01"},
        {&s, String, "61 2E 03 41 42 00"},
        {&empty, String, "61 2E 01 00"},
        {&bytes, ByteStream, "70 07 03 01 02 03"},
        {&u32, UInt32, "90 0A 04 00 00 00 05"},
        {&i32, Int32, "AF FF 04 FF FF FF FF"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(c.object->GetClass(), c.cls);
        const unsigned int length = c.object->GetLength();
        EXPECT_EQ(Written(*c.object), c.bytes);
        EXPECT_EQ(length * 3 - 1, std::string(c.bytes).size());
    }
}

TEST(ElementObjects, NodeLengthsAndConsumption) {
    CTLVObjNode empty(1);
    EXPECT_EQ(empty.GetValueLength(), 0u);
    EXPECT_EQ(empty.GetLength(), 3u);
    EXPECT_EQ(Written(empty), "80 01 00");

    CTLVObjNode node(202);
    EXPECT_FALSE(node.Add(nullptr));
    EXPECT_TRUE(node.Add(new CTLVObjString(302, "AB")));
    EXPECT_EQ(node.GetChildCount(), 1u);
    EXPECT_EQ(node.GetLength(), 9u);
    EXPECT_EQ(Written(node), "80 CA 06 61 2E 03 41 42 00");
    // Writing consumed the children: a second write is an empty node.
    EXPECT_EQ(node.GetChildCount(), 0u);
    EXPECT_EQ(Written(node), "80 CA 00");

    // Children totalling 128 bytes need the two-byte length field.
    CTLVObjNode big(1);
    big.Add(new CTLVObjString(2, std::string(124, 'x').c_str()));  // 2 + 1 + 125
    EXPECT_EQ(big.GetValueLength(), 128u);
    EXPECT_EQ(big.GetLength(), 132u);
    EXPECT_EQ(Written(big).substr(0, 11), "80 01 81 80");
}

TEST(Creator, TwentyTwoByteCalendarStream) {
    CTLVCreator c;
    ASSERT_TRUE(c.NodeBegin(1) && c.NodeBegin(103) && c.LeafUInt32(10, 5) && c.NodeBegin(202) &&
                c.LeafString(302, "AB") && c.NodeEnd(202) && c.NodeEnd(103) && c.NodeEnd(1));
    EXPECT_EQ(Output(c), "80 01 13 80 67 10 90 0A 04 00 00 00 05 80 CA 06 61 2E 03 41 42 00");
}

TEST(Creator, EveryLeafOperation) {
    CTLVCreator c;
    ASSERT_TRUE(c.NodeBegin(4095));
    EXPECT_TRUE(c.LeafInt8(1, -1));
    EXPECT_TRUE(c.LeafInt16(2, 0x0102));
    EXPECT_TRUE(c.LeafUInt8(3, 7));
    EXPECT_TRUE(c.LeafUInt16(4, 0xFFFE));
    EXPECT_TRUE(c.LeafBitfield8(5, 0x0F));
    EXPECT_TRUE(c.LeafBitfield16(6, 0xF00F));
    EXPECT_TRUE(c.LeafString(302, nullptr));
    EXPECT_TRUE(c.LeafByteStream(7, nullptr, 0));
    EXPECT_TRUE(c.LeafUInt32(9, 0x01020304));
    EXPECT_TRUE(c.LeafInt32(4096 + 10, -2));  // type IDs wrap to 12 bits
    EXPECT_FALSE(c.Unknown(static_cast<eClass>(12), 1, "x", 1));
    EXPECT_TRUE(c.NodeEnd(4095));
    EXPECT_EQ(Output(c),
              "8F FF 30 00 01 01 FF 10 02 02 01 02 20 03 01 07 30 04 02 FF FE 40 05 01 0F "
              "50 06 02 F0 0F 61 2E 01 00 70 07 00 90 09 04 01 02 03 04 A0 0A 04 FF FF FF FE");
}

TEST(Creator, NestingIsCheckedAndTraced) {
    TraceCapture trace;
    CTLVCreator c;
    EXPECT_FALSE(c.NodeEnd(5));  // nothing open
    EXPECT_TRUE(c.NodeBegin(1));
    EXPECT_FALSE(c.NodeEnd(2));  // not the innermost node
    const void* data = nullptr;
    unsigned int length = 0;
    EXPECT_FALSE(c.GetData(data, length));  // node 1 still open, tree kept
    EXPECT_TRUE(c.NodeEnd(1));
    EXPECT_EQ(Output(c), "80 01 00");
    EXPECT_EQ(trace.Lines(), (std::vector<int>{1237, 1237, 1592}));
    for (const auto& e : trace.entries) {
        EXPECT_EQ(e.level, 3);
        EXPECT_EQ(e.module, "TLVCreator");
        EXPECT_EQ(e.path, "parsercreatorcollection/src/tlv/creator/private/TLVCreator");
        EXPECT_EQ(e.moduleId.size(), 32u);
    }
}

TEST(Creator, TopLevelLeavesAndRepeatedGetData) {
    CTLVCreator c;
    EXPECT_TRUE(c.LeafUInt8(7, 3));
    EXPECT_EQ(Output(c), "20 07 01 03");
    EXPECT_EQ(Output(c), "");  // the tree was consumed
    EXPECT_TRUE(c.NodeBegin(1) && c.NodeEnd(1) && c.LeafUInt8(2, 1));
    EXPECT_EQ(Output(c), "80 01 00 20 02 01 01");
    EXPECT_TRUE(c.NodeBegin(1) && c.LeafUInt8(2, 1));
    EXPECT_TRUE(c.Reset());
    EXPECT_EQ(Output(c), "");  // Reset discarded the open node and its leaf
}

TEST(Creator, InvalidUtf8IsRepairedWithWarning) {
    TraceCapture trace;
    CTLVCreator c;
    EXPECT_TRUE(c.LeafString(1,
                             "a\xFF"
                             "b\xC0\x80"));
    EXPECT_EQ(Output(c), "60 01 06 61 3F 62 3F 3F 00");
    ASSERT_EQ(trace.entries.size(), 1u);
    EXPECT_EQ(trace.entries[0].level, 2);
    EXPECT_EQ(trace.entries[0].line, 1436);
}

TEST(Creator, LongValuesUseLongLengthFields) {
    CTLVCreator c;
    const std::string text(200, 'z');
    ASSERT_TRUE(c.NodeBegin(1) && c.LeafString(2, text.c_str()) && c.NodeEnd(1));
    const void* data = nullptr;
    unsigned int length = 0;
    ASSERT_TRUE(c.GetData(data, length));
    // The leaf is 2 + 2 + 201 = 205 bytes; its length field is 81 C9.
    EXPECT_EQ(ToHex(data, 8), "80 01 81 CD 60 02 81 C9");
    EXPECT_EQ(length, 4u + 205u);
}

// A creator keeps room for each node header as large as the same node's was
// in its previous stream. Streams of one shape whose nodes grow and shrink
// across the length-field sizes must come out exactly as from a new creator,
// and each output must stay intact while the next stream is being built.
TEST(Creator, ReusedCreatorMatchesFreshOneWhateverTheNodeSizes) {
    auto write = [](CTLVCreator& c, unsigned int n) {
        const std::string bytes(n, 'v');
        return c.NodeBegin(1) && c.NodeBegin(2) &&
               c.LeafByteStream(3, bytes.data(), static_cast<unsigned int>(bytes.size())) &&
               c.NodeEnd(2) && c.LeafUInt8(4, 9) && c.NodeEnd(1) && c.NodeBegin(5) && c.NodeEnd(5);
    };
    CTLVCreator reused;
    std::string previous;  // the bytes of the last output
    const void* previousData = nullptr;
    for (unsigned int n : {10u, 10u, 200u, 200u, 10u, 70000u, 70000u, 300u, 10u, 0u}) {
        CTLVCreator fresh;
        ASSERT_TRUE(write(fresh, n) && write(reused, n)) << n;
        if (previousData != nullptr) {
            EXPECT_EQ(std::memcmp(previousData, previous.data(), previous.size()), 0)
                << "output changed before the next GetData, n = " << n;
        }
        const void* data = nullptr;
        unsigned int length = 0;
        ASSERT_TRUE(reused.GetData(data, length));
        EXPECT_EQ(ToHex(data, length), Output(fresh)) << n;
        previous.assign(static_cast<const char*>(data), length);
        previousData = data;
    }
}
