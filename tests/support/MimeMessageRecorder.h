#ifndef PIMTLV_TESTS_SUPPORT_MIMEMESSAGERECORDER_H
#define PIMTLV_TESTS_SUPPORT_MIMEMESSAGERECORDER_H

// Shared by the e-mail and instant-message tests: an independent builder of
// expected TLV bytes, and a receiver that records every call as one line.

#include <gtest/gtest.h>

#include <cctype>
#include <initializer_list>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "pimshared/common/IMimeMessageAttributes.h"
#include "support/CallText.h"

namespace MimeTest {

using Bytes = std::vector<unsigned char>;

// One element: header word (class, 12-bit ID), shortest length field, value.
inline Bytes El(unsigned cls, unsigned id, const Bytes& value) {
    Bytes out{static_cast<unsigned char>(cls << 4 | (id >> 8 & 0xF)),
              static_cast<unsigned char>(id & 0xFF)};
    const size_t n = value.size();
    if (n < 128) {
        out.push_back(static_cast<unsigned char>(n));
    } else {
        Bytes len;
        for (size_t v = n; v != 0; v >>= 8) len.insert(len.begin(), static_cast<unsigned char>(v));
        out.push_back(static_cast<unsigned char>(0x80 | len.size()));
        out.insert(out.end(), len.begin(), len.end());
    }
    out.insert(out.end(), value.begin(), value.end());
    return out;
}
inline Bytes Cat(std::initializer_list<Bytes> parts) {
    Bytes out;
    for (const Bytes& p : parts) out.insert(out.end(), p.begin(), p.end());
    return out;
}
inline Bytes Node(unsigned id, std::initializer_list<Bytes> kids = {}) {
    return El(8, id, Cat(kids));
}
inline Bytes Str(unsigned id, const std::string& s) {
    Bytes v(s.begin(), s.end());
    v.push_back(0);
    return El(6, id, v);
}
inline Bytes U8(unsigned id, unsigned v) {
    return El(2, id, {static_cast<unsigned char>(v)});
}
inline Bytes B16(unsigned id, unsigned v) {
    return El(5, id, {static_cast<unsigned char>(v >> 8), static_cast<unsigned char>(v)});
}
inline Bytes Be32(unsigned cls, unsigned id, unsigned v) {
    return El(cls, id,
              {static_cast<unsigned char>(v >> 24), static_cast<unsigned char>(v >> 16),
               static_cast<unsigned char>(v >> 8), static_cast<unsigned char>(v)});
}
inline Bytes U32(unsigned id, unsigned v) {
    return Be32(9, id, v);
}
inline Bytes I32(unsigned id, int v) {
    return Be32(10, id, static_cast<unsigned>(v));
}
inline Bytes Blob(unsigned id, const std::string& s) {
    return El(7, id, Bytes(s.begin(), s.end()));
}

// A message: node 2 { UInt32 10 = instance, node component { children } }.
inline Bytes Message(unsigned component, std::initializer_list<Bytes> kids, unsigned instance = 7) {
    return Node(2, {U32(10, instance), El(8, component, Cat(kids))});
}

// A test-case name made of the row's description.
inline std::string CaseName(std::string n) {
    for (char& ch : n) {
        if (!isalnum(static_cast<unsigned char>(ch))) ch = '_';
    }
    return n;
}

inline std::string T(const char* s) {
    return s == nullptr ? "null" : "'" + std::string(s) + "'";
}
inline std::string N(unsigned v) {
    return std::to_string(v);
}

// Records every call of an e-mail or instant-message receiver as one line:
// Name, or Name(arguments) when it has any, texts quoted or null, numbers
// and enumerations unsigned, data as its quoted bytes and their count, lists
// as their entries ([fields] for records). A call answers false when its line
// starts with stopOn.
struct MimeLog {
    std::vector<std::string> calls;
    std::string stopOn = "\x01";

    bool Log(const std::string& line) {
        calls.push_back(line);
        return line.rfind(stopOn, 0) != 0;
    }
    template <typename Op, typename... A>
    bool Call(const A&... args) {
        if (sizeof...(A) == 0) return Log(Op::kName);
        return Log(std::string(Op::kName) + "(" +
                   TestSupport::NonEmptyArgTexts<Op>(Arg{}, ",", args...) + ")");
    }
    bool Trace(const int& code, const char* text) {
        return Log("Trace(" + std::to_string(code) + "," + T(text) + ")");
    }

  private:
    struct Arg {
        std::string operator()(const char* t) const { return T(t); }
        std::string operator()(const TestSupport::Data& d) const {
            const char* p = static_cast<const char*>(d.data);
            return (p == nullptr ? "null" : "'" + std::string(p, d.length) + "'") + "," +
                   N(d.length);
        }
        template <typename V>
        std::string operator()(const V& v) const {
            if constexpr (std::is_integral_v<V> && std::is_signed_v<V>) {
                return std::to_string(v);
            } else if constexpr (std::is_arithmetic_v<V> || std::is_enum_v<V>) {
                return N(static_cast<unsigned>(v));
            } else if constexpr (std::is_class_v<std::decay_t<decltype(*v.begin())>>) {
                std::string s;
                for (const auto& record : v) s += (s.empty() ? "" : ",") + Record(record);
                return s;
            }
        }
        template <typename R>
        std::string Record(const R& record) const {
            std::string s;
            std::apply(
                [&](auto... field) {
                    ((s += (s.empty() ? "[" : " ") + (*this)(record.*field)), ...);
                },
                PimShared::Description::Record<R>::kFields);
            return s + "]";
        }
    };
};

// The recorder of an item's receiver. The sink comes first, so that it exists
// when the receiver is handed it.
template <class Item>
class TRecorder : public MimeLog, public Item::template ReceiverFor<MimeLog> {
  public:
    TRecorder() : Item::template ReceiverFor<MimeLog>(static_cast<MimeLog&>(*this)) {}
};

// The bytes a creator hands out, or DE AD when it refuses.
template <class Creator>
Bytes Written(Creator& c) {
    const void* data = nullptr;
    unsigned length = 0;
    if (!c.GetData(data, length)) return {0xDE, 0xAD};
    const auto* p = static_cast<const unsigned char*>(data);
    return Bytes(p, p + length);
}

struct Outcome {
    bool ok;
    std::vector<std::string> calls;
};

// Parses stream with a fresh Parser over recorder r; the error text of these
// parsers is always empty.
template <class Parser, class Recorder>
Outcome ParseWith(Recorder& r, const Bytes& stream) {
    Parser parser(r);
    const char* error = nullptr;
    unsigned consumed = 0;
    const bool ok = parser.Parse(stream.data(), stream.size(), error, consumed);
    EXPECT_STREQ(error, "");
    return {ok, r.calls};
}

// Cut short anywhere, a stream fails; damaged anywhere, it is still read
// without harm (the sanitizer builds check the "without harm").
template <class Parser, class Recorder>
void CheckDamagedStreams(const Bytes& good) {
    Recorder r;
    Parser parser(r);
    const char* error = nullptr;
    unsigned consumed = 0;
    for (unsigned cut = 0; cut < good.size(); ++cut) {
        const Bytes head(good.begin(), good.begin() + cut);
        EXPECT_FALSE(parser.Parse(head.data(), cut, error, consumed)) << cut;
    }
    for (size_t i = 0; i < good.size(); ++i) {
        for (unsigned char flip : {0x01, 0x80, 0xFF}) {
            Bytes bad = good;
            bad[i] ^= flip;
            r.calls.clear();
            parser.Parse(bad.data(), bad.size(), error, consumed);
        }
    }
}

// A stream and the calls it must produce.
struct Case {
    const char* name;
    Bytes stream;
    std::vector<std::string> calls;
};

// The trace line of an element refused in its place.
inline std::string Refused(const char* word, unsigned id) {
    return "Trace(2,'Unexpected " + std::string(word) + " with type ID = " + N(id) + "')";
}

}  // namespace MimeTest

#endif
