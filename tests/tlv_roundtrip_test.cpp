// Property: any tree built through CTLVCreator, written with GetData and
// walked by CTLVParser, gives back exactly the calls that built it.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "parsercreatorcollection/src/tlv/creator/TLVCreator.h"
#include "parsercreatorcollection/src/tlv/parser/TLVParser.h"
#include "support/TlvRecorder.h"

using namespace ParserCreatorCollection;
using TestSupport::TlvRecorder;

namespace {

// Feeds the same random calls to the creator and to a recorder, so the
// recorder holds the events the stream must give back.
class RandomTree {
  public:
    explicit RandomTree(unsigned int seed) : m_rng(seed) {}

    void Build(CTLVCreator& creator, TlvRecorder& expected) {
        std::vector<unsigned int> open;
        const int steps = Pick(0, 120);
        for (int i = 0; i < steps; ++i) {
            const int what = Pick(0, 13);
            const auto id = static_cast<unsigned int>(Pick(0, 4095));
            if (what == 0 && open.size() < 40) {
                ASSERT_TRUE(creator.NodeBegin(id));
                expected.NodeBegin(id);
                open.push_back(id);
            } else if (what == 1 && !open.empty()) {
                ASSERT_TRUE(creator.NodeEnd(open.back()));
                expected.NodeEnd(open.back());
                open.pop_back();
            } else {
                Leaf(creator, expected, what, id);
            }
        }
        while (!open.empty()) {
            ASSERT_TRUE(creator.NodeEnd(open.back()));
            expected.NodeEnd(open.back());
            open.pop_back();
        }
    }

  private:
    int Pick(int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(m_rng); }

    std::string Text() {
        std::string s(static_cast<std::size_t>(Pick(0, Pick(0, 1) ? 10 : 300)), 'a');
        for (char& c : s) c = static_cast<char>(Pick(' ', '~'));
        return s;
    }

    void Leaf(CTLVCreator& c, TlvRecorder& e, int what, unsigned int id) {
        const auto v = static_cast<unsigned int>(m_rng());
        switch (what % 11) {
            case 0: {
                const auto x = static_cast<signed char>(v);
                ASSERT_TRUE(c.LeafInt8(id, x) && e.LeafInt8(id, x));
                break;
            }
            case 1: {
                const auto x = static_cast<short>(v);
                ASSERT_TRUE(c.LeafInt16(id, x) && e.LeafInt16(id, x));
                break;
            }
            case 2: {
                const auto x = static_cast<unsigned char>(v);
                ASSERT_TRUE(c.LeafUInt8(id, x) && e.LeafUInt8(id, x));
                break;
            }
            case 3: {
                const auto x = static_cast<unsigned short>(v);
                ASSERT_TRUE(c.LeafUInt16(id, x) && e.LeafUInt16(id, x));
                break;
            }
            case 4: {
                const auto x = static_cast<unsigned char>(v);
                ASSERT_TRUE(c.LeafBitfield8(id, x) && e.LeafBitfield8(id, x));
                break;
            }
            case 5: {
                const auto x = static_cast<unsigned short>(v);
                ASSERT_TRUE(c.LeafBitfield16(id, x) && e.LeafBitfield16(id, x));
                break;
            }
            case 6: {
                const std::string t = Text();
                ASSERT_TRUE(c.LeafString(id, t.c_str()) && e.LeafString(id, t.c_str()));
                break;
            }
            case 7: {
                const std::string t = Text();
                const auto n = static_cast<unsigned int>(t.size());
                ASSERT_TRUE(c.LeafByteStream(id, t.data(), n) && e.LeafByteStream(id, t.data(), n));
                break;
            }
            case 8:
                ASSERT_TRUE(c.LeafUInt32(id, v) && e.LeafUInt32(id, v));
                break;
            default: {
                const auto x = static_cast<int>(v);
                ASSERT_TRUE(c.LeafInt32(id, x) && e.LeafInt32(id, x));
                break;
            }
        }
    }

    std::mt19937 m_rng;
};

}  // namespace

TEST(RoundTrip, RandomTreesComeBackAsTheCallsThatBuiltThem) {
    CTLVCreator creator;  // reused: each GetData leaves it ready for the next tree
    for (unsigned int seed = 1; seed <= 500; ++seed) {
        TlvRecorder expected;
        RandomTree(seed).Build(creator, expected);
        const void* data = nullptr;
        unsigned int length = 0;
        ASSERT_TRUE(creator.GetData(data, length)) << seed;

        TlvRecorder actual;
        CTLVParser parser(actual);
        const char* errorText = nullptr;
        unsigned int consumed = 0;
        ASSERT_TRUE(parser.Parse(data, length, errorText, consumed)) << seed;
        EXPECT_EQ(consumed, length) << seed;
        ASSERT_EQ(actual.events, expected.events) << seed;

        // Replaying the walk into a creator rebuilds the same bytes.
        const std::string original(static_cast<const char*>(data), length);
        CTLVCreator copy;
        CTLVParser replay(copy.AsTarget());
        ASSERT_TRUE(replay.Parse(original.data(), length, errorText, consumed)) << seed;
        const void* again = nullptr;
        unsigned int againLength = 0;
        ASSERT_TRUE(copy.GetData(again, againLength));
        EXPECT_EQ(std::string(static_cast<const char*>(again), againLength), original) << seed;
    }
}
