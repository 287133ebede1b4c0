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
#include "pimshared/contact/ContactReceiver.h"
#include "pimshared/contact/TLVContactCreator.h"
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
class RecordingReceiver : public PimShared::IContactReceiver {
  public:
    std::vector<std::string> calls;
    bool traceAnswer = true;

    std::string Joined() const {
        std::string all;
        for (const std::string& c : calls) all += (all.empty() ? "" : " ") + c;
        return all;
    }

    bool TraceMessage(const int& code, const char* text) override {
        std::string line = "Trace(" + std::to_string(code);
        if (text == nullptr) {
            line += ":<null>";
        } else if (*text != 0) {
            line += std::string(":") + text;
        }
        calls.push_back(line + ")");
        return traceAnswer;
    }
    // clang-format off
    bool Begin(const unsigned int& i) override { return Log("Begin", i); }
    bool End() override { return Log("End"); }
    bool FormattedName(const char* a, const char* p, const XParams& x) override { return Log("FormattedName", a, p, x); }
    bool Name(const char* a, const char* b, const char* c, const char* d, const char* e, const char* p,
              const XParams& x) override { return Log("Name", a, b, c, d, e, p, x); }
    bool Nickname(const Texts& l, const char* p, const XParams& x) override { return Log("Nickname", l, p, x); }
    bool Photo(const char* a, const char* b, const void* d, const unsigned int& n, const char* c) override {
        return Log("Photo", a, b, Data{d, n}, c); }
    bool Birthday(const char* a, const char* b) override { return Log("Birthday", a, b); }
    bool Address(const char* a, const char* b, const char* c, const char* d, const char* e, const char* f,
                 const char* g, const unsigned char& t, const char* p, const XParams& x) override {
        return Log("Address", a, b, c, d, e, f, g, t, p, x); }
    bool Label(const char* a, const unsigned char& t, const char* p, const XParams& x) override { return Log("Label", a, t, p, x); }
    bool Telephone(const char* a, const unsigned short& t, const unsigned char& b, const unsigned short& f,
                   const char* c, const XParams& x) override { return Log("Telephone", a, t, b, f, c, x); }
    bool Email(const char* a, const unsigned char& t) override { return Log("Email", a, t); }
    bool Mailer(const char* a, const char* p, const XParams& x) override { return Log("Mailer", a, p, x); }
    bool Timezone(const char* a, const char* b) override { return Log("Timezone", a, b); }
    bool GeographicPosition(const char* a, const char* b) override { return Log("GeographicPosition", a, b); }
    bool Title(const char* a, const char* p, const XParams& x) override { return Log("Title", a, p, x); }
    bool Role(const char* a, const char* p, const XParams& x) override { return Log("Role", a, p, x); }
    bool Logo(const char* a, const char* b, const void* d, const unsigned int& n, const char* c) override {
        return Log("Logo", a, b, Data{d, n}, c); }
    bool Agent(const char* a, const char* b) override { return Log("Agent", a, b); }
    bool Organization(const char* a, const Texts& l) override { return Log("Organization", a, l); }
    bool Categories(const Texts& l, const char* p, const XParams& x) override { return Log("Categories", l, p, x); }
    bool Note(const char* a, const char* p, const XParams& x) override { return Log("Note", a, p, x); }
    bool Revision(const char* a, const char* b) override { return Log("Revision", a, b); }
    bool SortString(const char* a, const char* p, const XParams& x) override { return Log("SortString", a, p, x); }
    bool Sound(const char* a, const char* b, const void* d, const unsigned int& n, const char* c, const char* f,
               const char* n1, const char* n2, const char* n3, const char* n4, const char* n5) override {
        return Log("Sound", a, b, Data{d, n}, c, f, n1, n2, n3, n4, n5); }
    bool UID(const char* a) override { return Log("UID", a); }
    bool SpeedDial(const char* a) override { return Log("SpeedDial", a); }
    bool XUID(const char* a) override { return Log("XUID", a); }
    bool XUCI(const char* a, int n, unsigned short u) override { return Log("XUCI", a, n, u); }
    bool Handle(const char* a) override { return Log("Handle", a); }
    bool URL(const char* a) override { return Log("URL", a); }
    bool Version(const char* a) override { return Log("Version", a); }
    bool Classification(const char* a) override { return Log("Classification", a); }
    bool ProdID(const char* a) override { return Log("ProdID", a); }
    bool Key(const char* a, const char* b, const void* d, const unsigned int& n) override { return Log("Key", a, b, Data{d, n}); }
    bool PhotoAvailability(const bool& b) override { return Log("PhotoAvailability", b ? 1 : 0); }
    bool NonStandardProperty(const char* a, const char* b, const void* d, const unsigned int& n,
                             const XParams& x) override { return Log("NonStandardProperty", a, b, Data{d, n}, x); }
    // clang-format on

  protected:
    struct Data {
        const void* data;
        unsigned int length;
    };
    static std::string Arg(const char* t) { return t == nullptr ? "-" : t; }
    static std::string Arg(long long n) { return std::to_string(n); }
    static std::string Arg(const Data& d) {
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
    static std::string Arg(const Texts& l) {
        std::string s = "[";
        for (const char* t : l) s += (s.size() > 1 ? "," : "") + Arg(t);
        return s + "]";
    }
    static std::string Arg(const XParams& l) {
        std::string s = "[";
        for (const tXParam& x : l)
            s += (s.size() > 1 ? "," : "") + Arg(x.name) + "=" + Arg(x.value);
        return s + "]";
    }
    template <typename... Args>
    bool Log(const char* op, const Args&... args) {
        std::string line = op;
        line += "(";
        std::string sep;
        ((line += sep + Arg(args), sep = "|"), ...);
        calls.push_back(line + ")");
        return true;
    }
};

}  // namespace TestSupport

#endif
