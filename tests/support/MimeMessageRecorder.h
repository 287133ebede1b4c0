#ifndef PIMTLV_TESTS_SUPPORT_MIMEMESSAGERECORDER_H
#define PIMTLV_TESTS_SUPPORT_MIMEMESSAGERECORDER_H

// Shared by the e-mail and instant-message tests: an independent builder of
// expected TLV bytes, and a receiver that records every call as one line.

#include <gtest/gtest.h>

#include <cctype>
#include <initializer_list>
#include <string>
#include <vector>

#include "pimshared/common/IMimeMessageAttributes.h"

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

// Records the shared operations of a receiver interface (or writes them to
// another implementation of the same interface). A call answers false when
// its line starts with stopOn.
template <class Base>
class TRecorder : public Base {
  public:
    using A = PimShared::IMimeMessageAttributes;
    std::vector<std::string> calls;
    std::string stopOn = "\x01";

    bool Log(const std::string& line) {
        calls.push_back(line);
        return line.rfind(stopOn, 0) != 0;
    }

    bool End() override { return Log("End"); }
    bool BeginEntity() override { return Log("BeginEntity"); }
    bool EndEntity() override { return Log("EndEntity"); }
    bool Priority(const unsigned char& v) override { return Log("PriorityLevel(" + N(v) + ")"); }
    bool Body(const A::eBodyEncoding& e, const A::eBodyCharset& c, const void* content,
              const unsigned& n) override {
        const char* p = static_cast<const char*>(content);
        return Log("BodyContent(" + N(e) + "," + N(c) + "," +
                   (p == nullptr ? "null" : "'" + std::string(p, n) + "'") + "," + N(n) + ")");
    }
    bool Body(const A::eBodyEncoding& e, const A::eBodyCharset& c, const char* link) override {
        return Log("BodyLink(" + N(e) + "," + N(c) + "," + T(link) + ")");
    }
    bool Body(const char* type, const char* subtype, const char* link) override {
        return Log("BodyTokens(" + T(type) + "," + T(subtype) + "," + T(link) + ")");
    }
    bool ContentDispositionType(const A::eContentDispositionType& v, const char* t) override {
        return Log("Disposition(" + N(v) + "," + T(t) + ")");
    }
    bool ContentDispositionTypeParam(const A::eContentDispositionParamName& n, const char* v,
                                     const char* t) override {
        return Log("DispositionParam(" + N(n) + "," + T(v) + "," + T(t) + ")");
    }
    bool ContentSubtype(const A::eContentSubtype& v, const char* t) override {
        return Log("ContentSubtype(" + N(v) + "," + T(t) + ")");
    }
    bool ContentType(const A::eContentType& v, const char* t) override {
        return Log("ContentType(" + N(v) + "," + T(t) + ")");
    }
    bool ContentTypeParam(const A::eContentParamName& n, const A::eContentParamValue& v,
                          const char* nt, const char* vt) override {
        return Log("ContentTypeParam(" + N(n) + "," + N(v) + "," + T(nt) + "," + T(vt) + ")");
    }
    bool Priority(const A::ePriority& v) { return Log("Priority(" + N(v) + ")"); }
    bool TraceMessage(const int& code, const char* text) {
        return Log("Trace(" + std::to_string(code) + "," + T(text) + ")");
    }

    // One line per operation of a text or a number (IMRecorder uses them too).
    // clang-format off
#define MIMETEST_TEXT(Op) bool Op(const char* s) override { return Log(#Op "(" + T(s) + ")"); }
#define MIMETEST_NUMBER(Op, Type) \
    bool Op(const Type& v) override { return Log(#Op "(" + N(v) + ")"); }
    MIMETEST_TEXT(Comments) MIMETEST_TEXT(ContentDescription) MIMETEST_TEXT(ContentId)
    MIMETEST_TEXT(Folder) MIMETEST_TEXT(InReplyTo) MIMETEST_TEXT(Instance) MIMETEST_TEXT(Keywords)
    MIMETEST_TEXT(MessageId) MIMETEST_TEXT(MimeVersion) MIMETEST_TEXT(OrigDate)
    MIMETEST_TEXT(SendingState) MIMETEST_TEXT(OrigDateLocal) MIMETEST_TEXT(References)
    MIMETEST_TEXT(Subject)
    MIMETEST_NUMBER(Begin, unsigned) MIMETEST_NUMBER(CutoffState, unsigned short)
    MIMETEST_NUMBER(AttachmentAvailable, A::eAttachmentAvailable)
    MIMETEST_NUMBER(ContentTransferEncodingEnum, A::eContentTransferEncoding)
    MIMETEST_NUMBER(ReadStatus, A::eReadStatus) MIMETEST_NUMBER(DownloadState, A::eDownloadState)
    // clang-format on
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
