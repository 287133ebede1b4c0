#ifndef PIMTLV_TESTS_SUPPORT_CONTACTRECORDER_H
#define PIMTLV_TESTS_SUPPORT_CONTACTRECORDER_H

// Shared by the contact tests: a dump of a TLV stream in the notation that
// TestSupport::Stream reads, a receiver that logs every call as one line,
// and refusal triggers for the creator.

#include <cstdio>
#include <string>
#include <vector>

#include "parsercreatorcollection/src/tlv/creator/TLVCreator.h"
#include "parsercreatorcollection/src/tlv/parser/TLVParser.h"
#include "pimshared/contact/ContactDescription.h"
#include "support/CallText.h"
#include "support/TlvRecorder.h"

namespace TestSupport {

using PimShared::tXParam;
using Texts = PAL::TVector<const char*>;
using XParams = PAL::TVector<tXParam>;

// Every element as one token, as Stream reads them: "{id" opens a node, "}"
// closes it, leaves are kind:id=value (s, u8, u16, u32, i8, i16, i32, b8,
// b16); a byte stream shows only its length, bs:id#length.
class Dumper : public ParserCreatorCollection::ITLV {
  public:
    std::string out;
    // clang-format off
    bool Unknown(const ParserCreatorCollection::eClass& c, const unsigned int& id, const void*, const unsigned int&) override {
        return Add("?" + std::to_string(c) + ":" + std::to_string(id)); }
    bool NodeBegin(const unsigned int& id) override { return Add("{" + std::to_string(id)); }
    bool NodeEnd(const unsigned int&) override { return Add("}"); }
    bool LeafInt8(const unsigned int& id, const signed char& v) override { return Num("i8", id, v); }
    bool LeafInt16(const unsigned int& id, const short& v) override { return Num("i16", id, v); }
    bool LeafUInt8(const unsigned int& id, const unsigned char& v) override { return Num("u8", id, v); }
    bool LeafUInt16(const unsigned int& id, const unsigned short& v) override { return Num("u16", id, v); }
    bool LeafBitfield8(const unsigned int& id, const unsigned char& v) override { return Num("b8", id, v); }
    bool LeafBitfield16(const unsigned int& id, const unsigned short& v) override { return Num("b16", id, v); }
    bool LeafString(const unsigned int& id, const char* t) override { return Add("s:" + std::to_string(id) + "=" + t); }
    bool LeafByteStream(const unsigned int& id, const void*, const unsigned int& n) override {
        return Add("bs:" + std::to_string(id) + "#" + std::to_string(n)); }
    bool LeafUInt32(const unsigned int& id, const unsigned int& v) override { return Num("u32", id, v); }
    bool LeafInt32(const unsigned int& id, const int& v) override { return Num("i32", id, v); }
    // clang-format on

  private:
    bool Add(const std::string& token) {
        out += out.empty() ? token : " " + token;
        return true;
    }
    template <typename T>
    bool Num(const char* cls, unsigned int id, T v) {
        return Add(cls + (":" + std::to_string(id)) + "=" +
                   std::to_string(static_cast<long long>(v)));
    }
};

inline std::string Dump(const void* data, unsigned int length) {
    Dumper d;
    ParserCreatorCollection::CTLVParser parser(d);
    const char* error = nullptr;
    unsigned int consumed = 0;
    if (!parser.Parse(data, length, error, consumed)) d.out += " <broken>";
    return d.out;
}

// A creator whose left-open nodes a test can close, to see what was written.
class OpenCreator : public PimShared::CTLVContactCreator {
  public:
    bool CloseNode(unsigned int id) { return Tlv()->NodeEnd(id); }
    std::string Bytes() {
        const void* data = nullptr;
        unsigned int length = 0;
        if (!GetData(data, length)) return "<no data>";
        return Dump(data, length);
    }
};

// A text the creator refuses (16,777,215 bytes and more), and a byte length
// it refuses (more than 16,777,215) without reading the data.
inline const char* HugeText() {
    static const std::string text(16777215u, 'x');
    return text.c_str();
}
constexpr unsigned int HugeLength = 16777216u;

// Logs each receiver call as Name(arg|arg|...): "-" for a null text or data,
// [a,b] for lists, [n=v] for x-parameters, #length:hex for data.
struct ContactLog {
    std::vector<std::string> calls;
    bool traceAnswer = true;

    std::string Joined() const {
        std::string all;
        for (const std::string& c : calls) all += (all.empty() ? "" : " ") + c;
        return all;
    }

    template <typename Op, typename... A>
    bool Call(const A&... args) {
        calls.push_back(std::string(Op::kName) + "(" + ArgTexts<Op>(Arg{}, "|", args...) + ")");
        return true;
    }
    bool Trace(const int& code, const char* text) {
        std::string line = "Trace(" + std::to_string(code);
        if (text == nullptr) {
            line += ":<null>";
        } else if (*text != 0) {
            line += std::string(":") + text;
        }
        calls.push_back(line + ")");
        return traceAnswer;
    }

  private:
    struct Arg {
        std::string operator()(const char* t) const { return t == nullptr ? "-" : t; }
        std::string operator()(long long n) const { return std::to_string(n); }
        std::string operator()(const Data& d) const {
            if (d.data == nullptr) return "-#" + std::to_string(d.length);
            std::string s = "#" + std::to_string(d.length) + ":";
            const unsigned char* p = static_cast<const unsigned char*>(d.data);
            ReadEvery(p, d.length);  // only eight are shown, but all must be there
            for (unsigned int i = 0; i < d.length && i < 8; ++i) {
                char hex[3];
                std::snprintf(hex, sizeof hex, "%02x", p[i]);
                s += hex;
            }
            return s;
        }
        std::string operator()(const Texts& l) const {
            std::string s = "[";
            for (const char* t : l) s += (s.size() > 1 ? "," : "") + (*this)(t);
            return s + "]";
        }
        std::string operator()(const XParams& l) const {
            std::string s = "[";
            for (const tXParam& x : l)
                s += (s.size() > 1 ? "," : "") + (*this)(x.name) + "=" + (*this)(x.value);
            return s + "]";
        }
    };
};

// The sink comes first, so that it exists when the receiver is handed it.
class RecordingReceiver : public ContactLog, public PimShared::TContactReceiverFor<ContactLog> {
  public:
    RecordingReceiver()
        : PimShared::TContactReceiverFor<ContactLog>(static_cast<ContactLog&>(*this)) {}
};

}  // namespace TestSupport

#endif
