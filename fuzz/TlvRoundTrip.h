#ifndef PIMTLV_FUZZ_TLVROUNDTRIP_H
#define PIMTLV_FUZZ_TLVROUNDTRIP_H

// Drives CTLVCreator with a sequence of calls read from bytes (nodes
// opened and closed with right and wrong type IDs, every kind of leaf, texts
// with invalid UTF-8, GetData and Reset at any point) and checks, after every
// GetData, that the bytes are exactly those of an independent single-pass
// writer given the same calls, and that they walk cleanly. Each call's result
// must also match what the nesting allows. Shared by the round-trip fuzz target
// and the test that replays its corpus and regressions.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "bench/TlvYardsticks.h"
#include "fuzz/TlvWalkCheck.h"

namespace PimTlvFuzz {

namespace Detail {
using ParserCreatorCollection::CTLVCreator;

class Input {
  public:
    Input(const std::uint8_t* data, std::size_t size) : m_data(data), m_size(size) {}
    bool More() const { return m_at < m_size; }
    std::uint8_t Byte() { return m_at < m_size ? m_data[m_at++] : 0; }
    unsigned int Word() { return (static_cast<unsigned int>(Byte()) << 8) | Byte(); }
    unsigned int Quad() { return (Word() << 16) | Word(); }
    // Mostly small IDs, sometimes beyond twelve bits (the writer masks them).
    unsigned int Id() {
        const unsigned int id = Word();
        return (id & 0x8000u) != 0 ? id * 3u : id & 0x3Fu;
    }
    std::string Bytes() {
        std::string bytes;
        for (unsigned int n = Byte(); n > 0 && More(); --n)
            bytes.push_back(static_cast<char>(Byte()));
        return bytes;
    }

  private:
    const std::uint8_t* m_data;
    std::size_t m_size;
    std::size_t m_at = 0;
};

// The text the creator must write for a given one: cut at its first zero
// byte, invalid UTF-8 replaced by "?".
inline std::string Repaired(const char* text) {
    std::string t = text == nullptr ? std::string() : std::string(text);
    const auto n = static_cast<unsigned int>(t.size());
    if (n != 0 && Velmor_UTF8_rfc3629_check_string(t.data(), n, 0) == 0) {
        Velmor_UTF8_rfc3629_purge_string(&t[0], n, '?');
    }
    return t;
}

// The first fault of a GetData, or null.
inline const char* CheckOutput(CTLVCreator& creator, PimTlvBench::MinimalWriter& model) {
    const void* data = nullptr;
    unsigned int length = 0;
    const void* expected = nullptr;
    unsigned int expectedLength = 0;
    const bool ok = creator.GetData(data, length);
    if (ok != model.GetData(expected, expectedLength)) return "GetData answered wrongly";
    if (!ok) return nullptr;
    if (length != expectedLength || (length != 0 && std::memcmp(data, expected, length) != 0)) {
        return "GetData wrote other bytes";
    }
    const PimTlvFuzz::WalkResult walk =
        PimTlvFuzz::CheckWalk(static_cast<const unsigned char*>(data), length, length);
    if (walk.fault != nullptr) return walk.fault;
    if (length != 0 && !walk.ok) return "written bytes do not walk";
    model.Reset();  // the creator's tree is consumed: the next output starts afresh
    return nullptr;
}

}  // namespace Detail

// Replays the calls that data encodes; returns the first fault, or null.
inline const char* CheckRoundTrip(const std::uint8_t* data, std::size_t size) {
    using namespace Detail;
    Input in(data, size);
    CTLVCreator creator;
    PimTlvBench::MinimalWriter model;
    std::vector<unsigned int> open;  // type IDs of the open nodes, innermost last
    while (in.More()) {
        const std::uint8_t op = in.Byte();
        const unsigned int id = in.Id();
        bool got = true, want = true;
        switch (op % 16) {
            case 0:
            case 1:
                got = creator.NodeBegin(id);
                model.NodeBegin(id);
                open.push_back(id);
                break;
            case 2:
            case 3: {
                // Mostly the innermost node's type ID; sometimes another one.
                const unsigned int end = !open.empty() && (op & 0x10u) == 0 ? open.back() : id;
                got = creator.NodeEnd(end);
                want = model.NodeEnd(end);
                if (want) open.pop_back();
                break;
            }
            case 4: {
                const auto v = static_cast<signed char>(in.Byte());
                got = creator.LeafInt8(id, v);
                model.LeafInt8(id, v);
                break;
            }
            case 5: {
                const auto v = static_cast<short>(in.Word());
                got = creator.LeafInt16(id, v);
                model.LeafInt16(id, v);
                break;
            }
            case 6: {
                const unsigned char v = in.Byte();
                got = (op & 0x10u) != 0 ? creator.LeafUInt8(id, v) : creator.LeafBitfield8(id, v);
                (op & 0x10u) != 0 ? model.LeafUInt8(id, v) : model.LeafBitfield8(id, v);
                break;
            }
            case 7: {
                const auto v = static_cast<unsigned short>(in.Word());
                got = (op & 0x10u) != 0 ? creator.LeafUInt16(id, v) : creator.LeafBitfield16(id, v);
                (op & 0x10u) != 0 ? model.LeafUInt16(id, v) : model.LeafBitfield16(id, v);
                break;
            }
            case 8: {
                const unsigned int v = in.Quad();
                got = (op & 0x10u) != 0 ? creator.LeafUInt32(id, v)
                                        : creator.LeafInt32(id, static_cast<int>(v));
                (op & 0x10u) != 0 ? model.LeafUInt32(id, v)
                                  : model.LeafInt32(id, static_cast<int>(v));
                break;
            }
            case 9:
            case 10: {
                const std::string bytes = in.Bytes();
                const char* text = (op & 0x10u) != 0 ? nullptr : bytes.c_str();
                got = creator.LeafString(id, text);
                model.LeafString(id, Repaired(text).c_str());
                break;
            }
            case 11: {
                const std::string bytes = in.Bytes();
                const auto n = static_cast<unsigned int>(bytes.size());
                got = creator.LeafByteStream(id, n == 0 ? nullptr : bytes.data(), n);
                model.LeafByteStream(id, bytes.data(), n);
                break;
            }
            case 12: {
                // Undefined classes cannot be written.
                const std::string bytes = in.Bytes();
                const auto cls = static_cast<ParserCreatorCollection::eClass>(11 + op % 5);
                got = creator.AsTarget().Unknown(cls, id, bytes.data(),
                                                 static_cast<unsigned int>(bytes.size()));
                want = false;
                break;
            }
            case 13:
                if (const char* fault = CheckOutput(creator, model)) return fault;
                break;
            case 14:
                if ((op & 0x30u) == 0x30u) {
                    got = creator.Reset();
                    model.Reset();
                    open.clear();
                }
                break;
            default:
                break;
        }
        if (got != want) return "a call answered wrongly";
    }
    for (; !open.empty(); open.pop_back()) {
        if (!creator.NodeEnd(open.back()) || !model.NodeEnd(open.back())) {
            return "closing the open nodes failed";
        }
    }
    return CheckOutput(creator, model);
}

}  // namespace PimTlvFuzz

#endif
