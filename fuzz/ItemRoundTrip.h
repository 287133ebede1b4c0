#ifndef PIMTLV_FUZZ_ITEMROUNDTRIP_H
#define PIMTLV_FUZZ_ITEMROUNDTRIP_H

// The round trip of an item: bytes choose a sequence of creator operations
// and their arguments (texts with invalid UTF-8 among them); the creator's
// stream is parsed, and the receiver must hear exactly the operations that
// took effect, in order, with their arguments.
//
// Each item gives a table of operations. An operation is one function run
// twice with the same arguments: on the creator, and, when the creator took
// it, on a recorder of the expected calls. The second time the arguments pass
// through the item's asymmetries: the ways its parser reports a value other
// than it was written, by design, each named once in the item's table. An
// operation whose parse differs in shape (one call written, several read)
// brings its own expectation, and one whose elements the parser reports
// instead of taking them lists those reports, exactly as they must come.

#include <cstddef>
#include <cstdint>
#include <deque>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "fuzz/ItemReceivers.h"
#include "platform/CDateAndTime.h"
#include "platform/TVector.h"
#include "platform/Velmor.h"

namespace PimTlvFuzz {

// The ways a value may come back other than it went in.
enum class Asym : unsigned int {
    None = 0,
    NullTextEmpty,  // an absent text is written as the empty text
    EmptyTextNull,  // an empty text is not written, so it comes back absent
    LowByte,        // a number travels as its low byte
    // An item without any property is read with no End: the parser leaves its
    // property state only at a property's end, and reports the closing nodes.
    EmptyItemUnclosed,
    // An operation is read back as diagnostics, code and text exact, in place
    // of its call or before a call with what is left of it. The recorder
    // answers every call true, so a report never ends the walk here: the
    // operations after it must arrive as well.
    ReadAsDiagnostic,
    Count
};

struct Asymmetry {
    Asym rule;
    const char* why;
};

class OpArgs {
  public:
    OpArgs(const std::uint8_t* data, std::size_t size, const Asymmetry* table, std::size_t count)
        : m_data(data), m_size(size) {
        for (std::size_t i = 0; i < count; ++i)
            m_allowed |= 1u << static_cast<unsigned>(table[i].rule);
    }

    bool More() const { return m_at < m_size; }
    std::uint8_t Byte() { return m_at < m_size ? m_data[m_at++] : 0; }

    // Before an operation's run on the creator: values are read from the input.
    void Write() {
        m_expect = false;
        m_values.clear();
        m_next = 0;
        m_texts.clear();
        m_lists.clear();
        m_xParams.clear();
        m_kept.clear();
    }
    // Before its run on the expectation: the same values, through the rules.
    void Expect() {
        m_expect = true;
        m_next = 0;
    }
    const char* Fault() const { return m_fault; }
    bool Declares(Asym rule) const {
        return (m_allowed & (1u << static_cast<unsigned>(rule))) != 0;
    }

    const char* Text(Asym rule = Asym::None) {
        Value& v = Next([this](Value& n) {
            const std::uint8_t head = Byte();
            n.isNull = head >= 0xF0;
            for (unsigned int k = head & 0x1Fu; k > 0 && More(); --k) {
                const char c = static_cast<char>(Byte());
                n.text.push_back(c == 0 ? 'z' : c);  // a zero byte would cut the text short
            }
        });
        if (!m_expect) return v.isNull ? nullptr : v.text.c_str();
        // The creator writes every text repaired: invalid UTF-8 becomes '?'.
        const char* out = v.isNull ? nullptr : Keep(Repaired(v.text));
        if (out == nullptr && Applies(rule, Asym::NullTextEmpty)) out = Keep("");
        if (out != nullptr && out[0] == 0 && Applies(rule, Asym::EmptyTextNull)) out = nullptr;
        Applies(rule, Asym::None);  // an undeclared rule is a fault even where it changed nothing
        return out;
    }
    std::uint32_t Number(Asym rule = Asym::None) {
        Value& v = Next([this](Value& n) {
            const std::uint8_t head = Byte();
            // Mostly small values, sometimes all 32 bits.
            n.number = head < 0xC0 ? head
                                   : (static_cast<std::uint32_t>(Byte()) << 24 |
                                      static_cast<std::uint32_t>(Byte()) << 16 |
                                      static_cast<std::uint32_t>(Byte()) << 8 | Byte());
        });
        if (m_expect && Applies(rule, Asym::LowByte)) return v.number & 0xFFu;
        if (m_expect) Applies(rule, Asym::None);
        return v.number;
    }
    // Absent (null, 0) or bytes of any value, zeros included.
    Bytes Data() {
        Value& v = Next([this](Value& n) {
            const std::uint8_t head = Byte();
            n.isNull = head >= 0xF0;
            for (unsigned int k = head & 0x1Fu; k > 0 && More(); --k) {
                n.text.push_back(static_cast<char>(Byte()));
            }
        });
        if (v.isNull) return Bytes{nullptr, 0};
        return Bytes{v.text.data(), static_cast<unsigned int>(v.text.size())};
    }
    // A number read earlier through a rule, for operations whose expectation
    // needs both the written and the read value.
    std::uint32_t Through(Asym rule, std::uint32_t value) {
        if (m_expect && Applies(rule, Asym::LowByte)) return value & 0xFFu;
        return value;
    }
    bool Expecting() const { return m_expect; }
    // An empty list of any record type that lives until the next operation.
    template <typename T>
    PAL::TVector<T>& NewList() {
        auto list = std::make_shared<PAL::TVector<T>>();
        m_kept.push_back(list);
        return *list;
    }
    template <typename E>
    E Enum(Asym rule = Asym::None) {
        return static_cast<E>(Number(rule));
    }
    PAL::CDateAndTime DateTime() {
        const std::uint32_t n = Number();
        return PAL::CDateAndTime(1970 + n % 200, 1 + n % 12, 1 + n % 28, n % 24, n % 60,
                                 (n >> 8) % 60);
    }
    const PAL::TVector<const char*>& Texts(Asym rule = Asym::None) {
        const std::uint32_t count = Number() % 4;
        m_lists.emplace_back();
        PAL::TVector<const char*>& list = m_lists.back();
        for (std::uint32_t i = 0; i < count; ++i) list.pushBack(Text(rule));
        return list;
    }
    const PAL::TVector<PimShared::tXParam>& XParams(Asym rule = Asym::None) {
        const std::uint32_t count = Number() % 3;
        m_xParams.emplace_back();
        PAL::TVector<PimShared::tXParam>& list = m_xParams.back();
        for (std::uint32_t i = 0; i < count; ++i) {
            const char* name = Text(rule);
            list.pushBack({name, Text(rule)});
        }
        return list;
    }

  private:
    struct Value {
        bool isNull = false;
        std::string text;
        std::uint32_t number = 0;
    };

    template <typename Read>
    Value& Next(Read read) {
        if (!m_expect) {
            m_values.emplace_back();
            read(m_values.back());
        } else if (m_next >= m_values.size()) {
            m_fault = "an operation read other arguments the second time";
            m_values.emplace_back();
        }
        return m_values[m_next++];
    }
    bool Applies(Asym rule, Asym which) {
        if (!Declares(rule)) {
            m_fault = "an operation uses an asymmetry its item does not declare";
            return false;
        }
        return rule == which && rule != Asym::None;
    }
    const char* Keep(std::string text) {
        m_texts.push_back(std::move(text));
        return m_texts.back().c_str();
    }
    static std::string Repaired(std::string t) {
        const auto n = static_cast<unsigned int>(t.size());
        if (n != 0 && Velmor_UTF8_rfc3629_check_string(t.data(), n, 0) == 0) {
            Velmor_UTF8_rfc3629_purge_string(&t[0], n, '?');
        }
        return t;
    }

    const std::uint8_t* m_data;
    std::size_t m_size;
    std::size_t m_at = 0;
    unsigned int m_allowed = 1u;  // Asym::None always
    bool m_expect = false;
    const char* m_fault = nullptr;
    std::deque<Value> m_values;
    std::size_t m_next = 0;
    std::deque<std::string> m_texts;
    std::deque<PAL::TVector<const char*>> m_lists;
    std::deque<PAL::TVector<PimShared::tXParam>> m_xParams;
    std::vector<std::shared_ptr<void>> m_kept;
};

// A report a parser makes, by design, about an element a creator wrote.
struct Diagnostic {
    int code;
    const char* text;
};
struct Diagnostics {
    const Diagnostic* list = nullptr;
    std::size_t count = 0;
};
template <std::size_t N>
constexpr Diagnostics Reported(const Diagnostic (&list)[N]) {
    return {list, N};
}

// The expectation of an operation whose parse makes no call at all.
template <typename Attributes>
bool NotCalled(Attributes&, OpArgs&) {
    return true;
}

// One creator operation. depth is +1 for an operation that opens a nested
// part (an entity), -1 for the one that closes it, 0 for all others.
template <typename Attributes>
struct Op {
    const char* name;
    bool (*write)(Attributes& target, OpArgs& args);
    // Null when the parse reports the operation as written.
    bool (*expect)(Attributes& target, OpArgs& args) = nullptr;
    int depth = 0;
    // Heard before the expected call (Asym::ReadAsDiagnostic).
    Diagnostics readAs = {};
};

// Item describes one item: Attributes, Creator, Parser, Log (a recorder
// template), kAsymmetries and kOps. Returns the first fault, or null; the
// text of a mismatch names the first differing call and stays valid until the
// next check.
template <typename Item>
const char* CheckItemRoundTrip(const std::uint8_t* data, std::size_t size) {
    using Attributes = typename Item::Attributes;
    static std::string fault;
    OpArgs args(data, size, Item::kAsymmetries, std::size(Item::kAsymmetries));
    typename Item::Creator creator;
    typename Item::template Log<Attributes> expected;
    expected.Start(CallLog::kNever, false);

    const unsigned int instance = static_cast<unsigned int>(args.Byte()) << 8 | args.Byte();
    if (!creator.Begin(instance)) return "Begin was refused";
    expected.Begin(instance);
    int depth = 0;
    std::size_t taken = 0;
    const Op<Attributes>* closer = nullptr;
    for (const Op<Attributes>& op : Item::kOps) {
        if (op.depth < 0) closer = &op;
    }
    while (args.More()) {
        const Op<Attributes>& op = Item::kOps[args.Byte() % std::size(Item::kOps)];
        if (op.depth < 0 && depth == 0) continue;
        args.Write();
        if (!op.write(creator, args)) continue;
        args.Expect();
        if (op.readAs.count != 0 && !args.Declares(Asym::ReadAsDiagnostic)) {
            return "an operation uses an asymmetry its item does not declare";
        }
        for (std::size_t i = 0; i < op.readAs.count; ++i) {
            expected.Trace(op.readAs.list[i].code, op.readAs.list[i].text);
        }
        (op.expect != nullptr ? op.expect : op.write)(expected, args);
        if (args.Fault() != nullptr) return args.Fault();
        depth += op.depth;
        ++taken;
    }
    for (; depth > 0 && closer != nullptr; --depth) {
        args.Write();
        if (!closer->write(creator, args)) return "closing an open part was refused";
        closer->write(expected, args);
    }
    if (!creator.End()) return "End was refused";
    expected.End();

    const void* out = nullptr;
    unsigned int length = 0;
    if (!creator.GetData(out, length)) return "GetData failed after End";
    typename Item::template Log<typename Item::Receiver> heard;
    heard.Start(CallLog::kNever, false);
    typename Item::Parser parser(heard);
    bool ok = false;
    if (!ParseInto(parser, heard, static_cast<const std::uint8_t*>(out), length, ok)) {
        return heard.Fault() != nullptr ? heard.Fault() : "the parser's answer is broken";
    }
    if (taken == 0 && args.Declares(Asym::EmptyItemUnclosed)) return nullptr;
    const std::vector<std::string>& want = expected.Lines();
    const std::vector<std::string>& got = heard.Lines();
    for (std::size_t i = 0; i < want.size() || i < got.size(); ++i) {
        const std::string w = i < want.size() ? want[i] : "(nothing)";
        const std::string g = i < got.size() ? got[i] : "(nothing)";
        if (w != g) {
            fault = "call " + std::to_string(i) + " written as " + w + " read as " + g;
            return fault.c_str();
        }
    }
    if (!ok) return "a written stream does not parse";
    return nullptr;
}

}  // namespace PimTlvFuzz

#endif
