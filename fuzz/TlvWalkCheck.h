#ifndef PIMTLV_FUZZ_TLVWALKCHECK_H
#define PIMTLV_FUZZ_TLVWALKCHECK_H

// The oracle of the TLV walk, shared by the fuzz target and the test that
// replays its corpus and regressions. A walk of any bytes must:
//   - report balanced nodes (every NodeEnd names the innermost open node, and
//     every node opened is closed by the time Parse returns);
//   - hand out only texts that end inside the stream (or in a repaired copy),
//     are valid UTF-8 and stay readable and unchanged at least until the next
//     node event (receivers keep them until their property node ends);
//   - hand out byte streams and unknown values that lie inside the stream;
//   - stop at a refused leaf: afterwards only the NodeEnds of open nodes come;
//   - ignore the answers to NodeBegin and NodeEnd;
//   - succeed only by reading the whole stream, and never claim to have read
//     more than it was given.
// A stream that walks cleanly is also rebuilt through CTLVCreator, and the
// rebuilt stream must walk to the very same events.

#include <cstdint>
#include <cstring>
#include <vector>

#include "parsercreatorcollection/src/tlv/creator/TLVCreator.h"
#include "parsercreatorcollection/src/tlv/parser/TLVParser.h"
#include "platform/Velmor.h"

namespace PimTlvFuzz {

using namespace ParserCreatorCollection;

// 64-bit FNV-1a over bytes, so a log entry can stand for a value's content.
constexpr std::uint64_t kMixStart = 14695981039346656037ull;
inline std::uint64_t Mix(std::uint64_t h, const void* bytes, std::size_t count) {
    const auto* p = static_cast<const unsigned char*>(bytes);
    for (std::size_t i = 0; i < count; ++i) h = (h ^ p[i]) * 1099511628211ull;
    return h;
}

class CheckingTarget : public ITLV {
  public:
    static constexpr std::size_t kNever = ~static_cast<std::size_t>(0);

    // Refuses the leaf (or unknown element) numbered refuseLeaf, counting from
    // 0; with refuseNodes it also answers false to every node event.
    void Start(const unsigned char* stream, std::size_t size, std::size_t refuseLeaf,
               bool refuseNodes) {
        m_stream = stream;
        m_size = size;
        m_refuseLeaf = refuseLeaf;
        m_refuseNodes = refuseNodes;
        m_leaves = 0;
        m_refused = false;
        m_sawUnknown = false;
        m_fault = nullptr;
        m_open.clear();
        m_texts.clear();
        m_log.clear();
    }

    // After Parse: the first fault seen, or null.
    // Texts not yet rechecked are dropped unread: repaired copies are gone
    // once Parse has returned.
    const char* Finish() {
        m_texts.clear();
        if (!m_open.empty()) Fault("a node was never closed");
        return m_fault;
    }

    const std::vector<std::uint64_t>& Log() const { return m_log; }
    std::size_t Leaves() const { return m_leaves; }
    bool Refused() const { return m_refused; }
    bool SawUnknown() const { return m_sawUnknown; }

    bool Unknown(const eClass& elementClass, const unsigned int& typeId, const void* value,
                 const unsigned int& length) override {
        m_sawUnknown = true;
        if (elementClass <= Int32) Fault("a defined class reached Unknown");
        const bool inside = Inside(value, length, "an unknown value lies outside the stream");
        return Leaf(0, typeId, inside ? Mix(elementClass, value, length) : 0);
    }
    bool NodeBegin(const unsigned int& typeId) override {
        Event(1, typeId, 0);
        Recheck();
        m_open.push_back(typeId);
        return !m_refuseNodes;
    }
    bool NodeEnd(const unsigned int& typeId) override {
        m_log.push_back(Entry(2, typeId, 0));
        Recheck();
        if (m_open.empty()) {
            Fault("NodeEnd without an open node");
        } else {
            if (m_open.back() != typeId) Fault("NodeEnd names another node");
            m_open.pop_back();
        }
        return !m_refuseNodes;
    }
    bool LeafInt8(const unsigned int& id, const signed char& v) override {
        return Leaf(3, id, static_cast<unsigned char>(v));
    }
    bool LeafInt16(const unsigned int& id, const short& v) override {
        return Leaf(4, id, static_cast<unsigned short>(v));
    }
    bool LeafUInt8(const unsigned int& id, const unsigned char& v) override {
        return Leaf(5, id, v);
    }
    bool LeafUInt16(const unsigned int& id, const unsigned short& v) override {
        return Leaf(6, id, v);
    }
    bool LeafBitfield8(const unsigned int& id, const unsigned char& v) override {
        return Leaf(7, id, v);
    }
    bool LeafBitfield16(const unsigned int& id, const unsigned short& v) override {
        return Leaf(8, id, v);
    }
    bool LeafString(const unsigned int& id, const char* text) override {
        if (text == nullptr) {
            Fault("a null text");
            return Leaf(9, id, 0);
        }
        // strlen reads every byte up to the terminator: a missing one shows
        // as a read past the buffer under the address sanitizer, and as a
        // terminator outside the stream here.
        const std::size_t length = std::strlen(text);
        const auto* p = reinterpret_cast<const unsigned char*>(text);
        if (p >= m_stream && p < m_stream + m_size && p + length >= m_stream + m_size) {
            Fault("a text runs past the stream");
        }
        if (length != 0 &&
            Velmor_UTF8_rfc3629_check_string(text, static_cast<unsigned int>(length), 0) == 0) {
            Fault("a text is not valid UTF-8");
        }
        const std::uint64_t content = Mix(kMixStart, text, length);
        m_texts.push_back(Text{text, content});
        return Leaf(9, id, content);
    }
    bool LeafByteStream(const unsigned int& id, const void* data,
                        const unsigned int& length) override {
        const bool inside = Inside(data, length, "a byte stream lies outside the stream");
        return Leaf(10, id, inside ? Mix(kMixStart, data, length) : 0);
    }
    bool LeafUInt32(const unsigned int& id, const unsigned int& v) override {
        return Leaf(11, id, v);
    }
    bool LeafInt32(const unsigned int& id, const int& v) override {
        return Leaf(12, id, static_cast<unsigned int>(v));
    }

    void Fault(const char* what) {
        if (m_fault == nullptr) m_fault = what;
    }

  private:
    struct Text {
        const char* text;
        std::uint64_t content;
    };

    static std::uint64_t Entry(unsigned int kind, unsigned int id, std::uint64_t value) {
        // kind in the top bits, then the 12-bit type ID, then 40 bits of value
        return (static_cast<std::uint64_t>(kind) << 59) | (static_cast<std::uint64_t>(id) << 40) |
               (value & 0xFFFFFFFFFFull);
    }
    void Event(unsigned int kind, unsigned int id, std::uint64_t value) {
        if (m_refused) Fault("an event after a refused leaf");
        m_log.push_back(Entry(kind, id, value));
    }
    bool Leaf(unsigned int kind, unsigned int id, std::uint64_t value) {
        Event(kind, id, value);
        if (m_leaves++ != m_refuseLeaf) return true;
        m_refused = true;
        return false;
    }
    // Whether length bytes at value lie in the stream (and so may be read).
    bool Inside(const void* value, std::size_t length, const char* what) {
        const auto* p = static_cast<const unsigned char*>(value);
        if (length == 0) return true;
        if (p != nullptr && p >= m_stream && p + length <= m_stream + m_size) return true;
        Fault(what);
        return false;
    }
    // Texts handed out must still read the same at the next node event:
    // receivers keep them until the enclosing node ends.
    void Recheck() {
        for (const Text& t : m_texts) {
            if (Mix(kMixStart, t.text, std::strlen(t.text)) != t.content) {
                Fault("a text changed before the walk ended");
            }
        }
        m_texts.clear();
    }

    const unsigned char* m_stream = nullptr;
    std::size_t m_size = 0;
    std::size_t m_refuseLeaf = kNever;
    bool m_refuseNodes = false;
    std::size_t m_leaves = 0;
    bool m_refused = false;
    bool m_sawUnknown = false;
    const char* m_fault = nullptr;
    std::vector<unsigned int> m_open;
    std::vector<Text> m_texts;
    std::vector<std::uint64_t> m_log;
};

struct WalkResult {
    const char* fault = nullptr;  // the first broken promise, or null
    bool ok = false;              // Parse's result on the unrefused walk
    std::size_t leaves = 0;       // leaves and unknown elements reported by that walk
};

namespace Detail {

// REQUIRES: parser reports to target.
inline bool Walk(CTLVParser& parser, CheckingTarget& target, const unsigned char* data,
                 std::size_t size, std::size_t refuseLeaf, bool refuseNodes, bool& ok) {
    target.Start(data, size, refuseLeaf, refuseNodes);
    const char* errorText = nullptr;
    unsigned int consumed = 0;
    ok = parser.Parse(data, static_cast<unsigned int>(size), errorText, consumed);
    if (errorText == nullptr || errorText[0] != 0) target.Fault("the error text is not empty");
    if (consumed > size) target.Fault("consumed more than the stream");
    if (ok && consumed != size) target.Fault("success without reading the whole stream");
    if (target.Refused() && ok) target.Fault("a refused leaf did not end the walk");
    return target.Finish() == nullptr;
}

}  // namespace Detail

// Walks size bytes (which must stay at most 4 GiB - 1) twice: once answering
// true to everything, once refusing the leaf numbered refuseAt modulo the
// leaf count, and every node event. The second walk must repeat the first up
// to the refusal, then close the open nodes and nothing else. Both walks use
// one parser object, as a service parsing stream after stream does.
inline WalkResult CheckWalk(const unsigned char* data, std::size_t size, std::size_t refuseAt) {
    WalkResult result;
    CheckingTarget target;
    CTLVParser parser(target);
    if (!Detail::Walk(parser, target, data, size, CheckingTarget::kNever, false, result.ok)) {
        result.fault = target.Finish();
        return result;
    }
    result.leaves = target.Leaves();
    if (result.leaves == 0) return result;
    const std::vector<std::uint64_t> a = target.Log();

    const std::size_t k = refuseAt % result.leaves;
    bool ok = false;
    if (!Detail::Walk(parser, target, data, size, k, true, ok)) {
        result.fault = target.Finish();
        return result;
    }
    // Up to the refused leaf the walks agree entry for entry; what follows
    // the refusal is NodeEnds only, which the target has already checked.
    const std::vector<std::uint64_t>& b = target.Log();
    std::size_t leavesSeen = 0, i = 0;
    for (; i < b.size() && i < a.size() && leavesSeen <= k; ++i) {
        if (a[i] != b[i]) {
            result.fault = "a refusing walk reported other events";
            return result;
        }
        const unsigned int kind = static_cast<unsigned int>(a[i] >> 59);
        if (kind != 1 && kind != 2) ++leavesSeen;
        if (leavesSeen == k + 1) break;
    }
    if (leavesSeen != k + 1) result.fault = "a refusing walk lost the refused leaf";
    return result;
}

// Rebuilds a cleanly walked stream through CTLVCreator and checks that the new
// stream walks to the same events. Streams with unknown elements cannot be
// rebuilt (the creator refuses them) and are skipped.
inline const char* CheckRebuild(const unsigned char* data, std::size_t size) {
    CheckingTarget original;
    CTLVParser parser(original);
    bool ok = false;
    if (!Detail::Walk(parser, original, data, size, CheckingTarget::kNever, false, ok) || !ok ||
        original.SawUnknown()) {
        return nullptr;
    }
    CTLVCreator creator;
    CTLVParser rebuild(creator.AsTarget());
    const char* errorText = nullptr;
    unsigned int consumed = 0;
    if (!rebuild.Parse(data, static_cast<unsigned int>(size), errorText, consumed)) {
        return "the creator refused a clean walk";
    }
    const void* out = nullptr;
    unsigned int length = 0;
    if (!creator.GetData(out, length)) return "the creator could not write a clean walk";
    if (length > size) return "the rebuilt stream is longer than the original";
    // Nothing written may come back as no buffer at all, which Parse refuses.
    if (length == 0) return original.Log().empty() ? nullptr : "the rebuilt stream is empty";
    CheckingTarget again;
    CTLVParser reparser(again);
    if (!Detail::Walk(reparser, again, static_cast<const unsigned char*>(out), length,
                      CheckingTarget::kNever, false, ok)) {
        return again.Finish();
    }
    if (!ok) return "the rebuilt stream does not walk";
    if (again.Log() != original.Log()) return "the rebuilt stream walks to other events";
    return nullptr;
}

}  // namespace PimTlvFuzz

#endif
