#ifndef PIMTLV_BENCH_TLVYARDSTICKS_H
#define PIMTLV_BENCH_TLVYARDSTICKS_H

// Deliberately minimal TLV engines that the benchmarks measure the codec
// against, and a target that does nothing. The engines do the same job as
// CTLVParser and CTLVCreator on well-formed input (bounds checks, terminator
// and UTF-8 checks, shortest length fields) and nothing else: no element tree,
// no traces, no repair. They are yardsticks, not code to use; the writer also
// serves the round-trip fuzz target as an independent reference.

#include <cstdint>
#include <cstring>
#include <type_traits>
#include <vector>

#include "parsercreatorcollection/src/tlv/parser/ITLV.h"
#include "platform/Utf8.h"
#include "platform/Velmor.h"

namespace PimTlvBench {

using ParserCreatorCollection::eClass;
using ParserCreatorCollection::ITLV;

// Accepts every event and does nothing, so that a walk is measured alone.
using NullTarget = ParserCreatorCollection::CTLVBase;

// The UTF-8 checks a walker can make of every String value (terminator
// included): none, to show what checking costs; the codec's own; and one as
// fast as a good validator makes it, against which the codec's walk is held.
struct NoTextCheck {
    static bool Valid(const unsigned char*, unsigned int) { return true; }
};
struct CodecTextCheck {
    static bool Valid(const unsigned char* text, unsigned int length) {
        return Velmor_UTF8_rfc3629_check_string(reinterpret_cast<const char*>(text), length, 0) !=
               0;
    }
};

namespace Utf8Dfa {

// States: after a whole character, error, 1/2/3 continuation bytes owed,
// and the four lead bytes whose next byte has a narrower range.
enum : unsigned int { Accept, Error, Tail1, Tail2, Tail3, AfterE0, AfterED, AfterF0, AfterF4 };
constexpr unsigned int Next(unsigned int state, unsigned int b) {
    const bool cont = b >= 0x80 && b <= 0xBF;
    switch (state) {
        case Accept:
            if (b < 0x80) return Accept;
            if (b >= 0xC2 && b <= 0xDF) return Tail1;
            if (b == 0xE0) return AfterE0;
            if (b == 0xED) return AfterED;
            if (b >= 0xE1 && b <= 0xEF) return Tail2;
            if (b == 0xF0) return AfterF0;
            if (b == 0xF4) return AfterF4;
            if (b >= 0xF1 && b <= 0xF3) return Tail3;
            return Error;
        case Tail1:
            return cont ? Accept : Error;
        case Tail2:
            return cont ? Tail1 : Error;
        case Tail3:
            return cont ? Tail2 : Error;
        case AfterE0:
            return b >= 0xA0 && b <= 0xBF ? Tail1 : Error;
        case AfterED:
            return b >= 0x80 && b <= 0x9F ? Tail1 : Error;
        case AfterF0:
            return b >= 0x90 && b <= 0xBF ? Tail2 : Error;
        case AfterF4:
            return b >= 0x80 && b <= 0x8F ? Tail2 : Error;
        default:
            return Error;
    }
}
struct Rows {
    std::uint64_t row[256];
};
constexpr Rows MakeRows() {
    Rows rows{};
    for (unsigned int b = 0; b < 256; ++b) {
        for (unsigned int s = 0; s <= AfterF4; ++s) {
            rows.row[b] |= std::uint64_t{Next(s, b) * 6} << (s * 6);
        }
    }
    return rows;
}
constexpr Rows kRows = MakeRows();

}  // namespace Utf8Dfa

// Strict UTF-8 (no overlong forms, no surrogates, nothing past U+10FFFF), the
// way fast validators do it. Texts in PIM items are short and nearly always
// ASCII, so first the whole text is ORed together in overlapping machine
// words and one test of the top bits decides (PAL::IsAsciiText, the test the
// codec makes too). Only a text with a byte of 0x80 or more runs the decoder:
// a shift-based DFA whose nine states are 6-bit shift amounts packed into one
// 64-bit row per byte value, so each byte costs a load and a shift, with no
// branch on the input.
struct FastTextCheck {
    static bool Valid(const unsigned char* p, unsigned int n) {
        if (PAL::IsAsciiText(p, n)) return true;
        std::uint64_t state = 0;
        for (unsigned int i = 0; i < n; ++i) state = Utf8Dfa::kRows.row[p[i]] >> (state & 63);
        return (state & 63) == 0;
    }
};

// Bounds-checked iterative walk: every element must fit in its enclosing node,
// fixed-size leaves must have their size, texts their terminator, and every
// text passes TextCheck.
template <typename TextCheck = CodecTextCheck>
class MinimalWalker {
  public:
    // Not inlined into the caller, as the codec's walk is not, and its calls
    // made, as the codec's are: GCC would otherwise guess the do-nothing
    // target the benchmarks pass and skip them, which no real receiver allows.
#if defined(__GNUC__) && !defined(__clang__)
    __attribute__((optimize("no-devirtualize-speculatively")))
#endif
    __attribute__((noinline)) bool
    Walk(const unsigned char* p, unsigned int size, ITLV& t) {
        m_open.clear();
        unsigned int pos = 0, end = size;
        for (;;) {
            if (pos == end) {
                if (m_open.empty()) return true;
                const Open closed = m_open.back();
                m_open.pop_back();
                end = closed.outerEnd;
                t.NodeEnd(closed.id);
                continue;
            }
            if (end - pos < 3) return Close(t);
            const unsigned int word = (static_cast<unsigned int>(p[pos]) << 8) | p[pos + 1];
            unsigned int len = p[pos + 2];
            pos += 3;
            if (len >= 0x80) {
                const unsigned int n = len & 0x7Fu;
                if (n == 0 || n > 4 || end - pos < n) return Close(t);
                len = 0;
                for (unsigned int i = 0; i < n; ++i) len = (len << 8) | p[pos++];
            }
            if (end - pos < len) return Close(t);
            const unsigned char* v = p + pos;
            pos += len;
            const unsigned int id = word & 0xFFFu;
            bool ok;
            switch (word >> 12) {
                case 8:
                    m_open.push_back({id, end});
                    end = pos;
                    pos -= len;
                    t.NodeBegin(id);
                    continue;
                case 0:
                    ok = len == 1 && t.LeafInt8(id, static_cast<signed char>(v[0]));
                    break;
                case 1:
                    ok = len == 2 && t.LeafInt16(id, static_cast<short>(U16(v)));
                    break;
                case 2:
                    ok = len == 1 && t.LeafUInt8(id, v[0]);
                    break;
                case 3:
                    ok = len == 2 && t.LeafUInt16(id, U16(v));
                    break;
                case 4:
                    ok = len == 1 && t.LeafBitfield8(id, v[0]);
                    break;
                case 5:
                    ok = len == 2 && t.LeafBitfield16(id, U16(v));
                    break;
                case 6:
                    ok = len != 0 && v[len - 1] == 0 && TextCheck::Valid(v, len) &&
                         t.LeafString(id, reinterpret_cast<const char*>(v));
                    break;
                case 7:
                    ok = t.LeafByteStream(id, v, len);
                    break;
                case 9:
                    ok = len == 4 && t.LeafUInt32(id, U32(v));
                    break;
                case 10:
                    ok = len == 4 && t.LeafInt32(id, static_cast<int>(U32(v)));
                    break;
                default:
                    ok = t.Unknown(static_cast<eClass>(word >> 12), id, v, len);
                    break;
            }
            if (!ok) return Close(t);
        }
    }

  private:
    static unsigned short U16(const unsigned char* v) {
        return static_cast<unsigned short>((v[0] << 8) | v[1]);
    }
    static unsigned int U32(const unsigned char* v) {
        return (static_cast<unsigned int>(v[0]) << 24) | (static_cast<unsigned int>(v[1]) << 16) |
               (static_cast<unsigned int>(v[2]) << 8) | v[3];
    }
    bool Close(ITLV& t) {
        for (; !m_open.empty(); m_open.pop_back()) t.NodeEnd(m_open.back().id);
        return false;
    }
    struct Open {
        unsigned int id, outerEnd;  // the enclosing limit, restored when the node closes
    };
    std::vector<Open> m_open;
};

// Single-pass writer: bytes go straight to the output. A node's length field
// gets one byte when it opens; when it closes with 128 bytes or more of
// content, the content moves up to make room for the long form.
class MinimalWriter {
  public:
    void Reset() {
        m_out.clear();
        m_open.clear();
    }
    bool NodeBegin(unsigned int id) {
        m_open.push_back({id, Header(8, id)});
        m_out.push_back(0);
        return true;
    }
    bool NodeEnd(unsigned int id) {
        if (m_open.empty() || m_open.back().id != id) return false;
        const std::size_t at = m_open.back().end;
        m_open.pop_back();
        const std::size_t len = m_out.size() - at - 1;
        if (len < 0x80) {
            m_out[at] = static_cast<unsigned char>(len);
            return true;
        }
        unsigned int n = 1;
        while (n < 4 && (len >> (8 * n)) != 0) ++n;
        m_out.insert(m_out.begin() + static_cast<std::ptrdiff_t>(at) + 1, n, 0);
        m_out[at] = static_cast<unsigned char>(0x80u | n);
        for (unsigned int i = 1; i <= n; ++i) {
            m_out[at + i] = static_cast<unsigned char>(len >> (8 * (n - i)));
        }
        return true;
    }
    bool LeafInt8(unsigned int id, signed char v) { return Fixed(0, id, v, 1); }
    bool LeafInt16(unsigned int id, short v) { return Fixed(1, id, v, 2); }
    bool LeafUInt8(unsigned int id, unsigned char v) { return Fixed(2, id, v, 1); }
    bool LeafUInt16(unsigned int id, unsigned short v) { return Fixed(3, id, v, 2); }
    bool LeafBitfield8(unsigned int id, unsigned char v) { return Fixed(4, id, v, 1); }
    bool LeafBitfield16(unsigned int id, unsigned short v) { return Fixed(5, id, v, 2); }
    bool LeafUInt32(unsigned int id, unsigned int v) { return Fixed(9, id, v, 4); }
    bool LeafInt32(unsigned int id, int v) {
        return Fixed(10, id, static_cast<unsigned int>(v), 4);
    }
    bool LeafByteStream(unsigned int id, const void* data, unsigned int n) {
        return Bytes(7, id, static_cast<const char*>(data), n, false);
    }
    bool LeafString(unsigned int id, const char* text) {
        const unsigned int n = text == nullptr ? 0 : static_cast<unsigned int>(std::strlen(text));
        if (n != 0 && Velmor_UTF8_rfc3629_check_string(text, n, 0) == 0) return false;
        return Bytes(6, id, text, n, true);
    }
    bool GetData(const void*& data, unsigned int& length) {
        if (!m_open.empty()) return false;
        data = m_out.data();
        length = static_cast<unsigned int>(m_out.size());
        return true;
    }

  private:
    std::size_t Header(unsigned int cls, unsigned int id) {
        m_out.push_back(static_cast<unsigned char>((cls << 4) | ((id >> 8) & 0xFu)));
        m_out.push_back(static_cast<unsigned char>(id));
        return m_out.size();
    }
    template <typename Value>
    bool Fixed(unsigned int cls, unsigned int id, Value value, unsigned int width) {
        const auto v = static_cast<unsigned int>(static_cast<std::make_unsigned_t<Value>>(value));
        Header(cls, id);
        m_out.push_back(static_cast<unsigned char>(width));
        for (unsigned int i = width; i > 0; --i)
            m_out.push_back(static_cast<unsigned char>(v >> (8 * (i - 1))));
        return true;
    }
    bool Bytes(unsigned int cls, unsigned int id, const char* p, unsigned int n, bool zero) {
        Header(cls, id);
        const unsigned int len = n + (zero ? 1 : 0);
        if (len < 0x80) {
            m_out.push_back(static_cast<unsigned char>(len));
        } else {
            unsigned int k = 1;
            while (k < 4 && (len >> (8 * k)) != 0) ++k;
            m_out.push_back(static_cast<unsigned char>(0x80u | k));
            for (unsigned int i = k; i > 0; --i)
                m_out.push_back(static_cast<unsigned char>(len >> (8 * (i - 1))));
        }
        m_out.insert(m_out.end(), p, p + n);
        if (zero) m_out.push_back(0);
        return true;
    }
    struct Open {
        unsigned int id;
        std::size_t end;  // offset of the node's length byte
    };
    std::vector<unsigned char> m_out;
    std::vector<Open> m_open;
};

}  // namespace PimTlvBench

#endif
