#ifndef PIMTLV_TESTS_SUPPORT_TLVRECORDER_H
#define PIMTLV_TESTS_SUPPORT_TLVRECORDER_H

// Test doubles shared by the codec tests: an ITLV that records every event as
// a line of text (and can refuse the k-th one), a trace sink that records
// trace records, and hex helpers.

#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

#include "parsercreatorcollection/src/tlv/parser/ITLV.h"
#include "platform/Velmor.h"

namespace TestSupport {

using Bytes = std::vector<unsigned char>;

inline Bytes FromHex(const std::string& hex) {
    Bytes out;
    int high = -1;
    for (char c : hex) {
        int v;
        if (c >= '0' && c <= '9')
            v = c - '0';
        else if (c >= 'A' && c <= 'F')
            v = c - 'A' + 10;
        else if (c >= 'a' && c <= 'f')
            v = c - 'a' + 10;
        else
            continue;
        if (high < 0) {
            high = v;
        } else {
            out.push_back(static_cast<unsigned char>(high * 16 + v));
            high = -1;
        }
    }
    return out;
}

inline std::string ToHex(const void* data, unsigned int length) {
    std::string out;
    const auto* p = static_cast<const unsigned char*>(data);
    char b[4];
    for (unsigned int i = 0; i < length; ++i) {
        std::snprintf(b, sizeof b, i ? " %02X" : "%02X", p[i]);
        out += b;
    }
    return out;
}

// Reads every byte, so that the sanitizer builds notice a pointer that runs
// short of its length or dangles.
inline void ReadEvery(const void* data, std::size_t length) {
    static volatile unsigned char sink;
    const auto* p = static_cast<const unsigned char*>(data);
    for (std::size_t i = 0; i < length; ++i) sink = static_cast<unsigned char>(sink + p[i]);
}

// Records events as "NodeBegin(1)", "LeafString(302,AB)", ... Leaf and
// Unknown events answer false from the refuseAt-th event on (1-based), once.
class TlvRecorder : public ParserCreatorCollection::ITLV {
  public:
    std::vector<std::string> events;
    int refuseAt = 0;

    bool Unknown(const ParserCreatorCollection::eClass& c, const unsigned int& id, const void* v,
                 const unsigned int& n) override {
        return Leaf("Unknown(" + std::to_string(c) + "," + std::to_string(id) + "," + ToHex(v, n) +
                    ")");
    }
    bool NodeBegin(const unsigned int& id) override {
        Record("NodeBegin(" + std::to_string(id) + ")");
        return true;
    }
    bool NodeEnd(const unsigned int& id) override {
        Record("NodeEnd(" + std::to_string(id) + ")");
        return true;
    }
    bool LeafInt8(const unsigned int& id, const signed char& v) override {
        return Num("Int8", id, v);
    }
    bool LeafInt16(const unsigned int& id, const short& v) override { return Num("Int16", id, v); }
    bool LeafUInt8(const unsigned int& id, const unsigned char& v) override {
        return Num("UInt8", id, v);
    }
    bool LeafUInt16(const unsigned int& id, const unsigned short& v) override {
        return Num("UInt16", id, v);
    }
    bool LeafBitfield8(const unsigned int& id, const unsigned char& v) override {
        return Num("Bitfield8", id, v);
    }
    bool LeafBitfield16(const unsigned int& id, const unsigned short& v) override {
        return Num("Bitfield16", id, v);
    }
    bool LeafString(const unsigned int& id, const char* t) override {
        return Leaf("LeafString(" + std::to_string(id) + "," + t + ")");
    }
    bool LeafByteStream(const unsigned int& id, const void* d, const unsigned int& n) override {
        return Leaf("LeafByteStream(" + std::to_string(id) + "," + ToHex(d, n) + ")");
    }
    bool LeafUInt32(const unsigned int& id, const unsigned int& v) override {
        return Num("UInt32", id, v);
    }
    bool LeafInt32(const unsigned int& id, const int& v) override { return Num("Int32", id, v); }

  private:
    void Record(std::string e) { events.push_back(std::move(e)); }
    bool Leaf(std::string e) {
        Record(std::move(e));
        return refuseAt == 0 || static_cast<int>(events.size()) != refuseAt;
    }
    bool Num(const char* cls, unsigned int id, long long v) {
        return Leaf(std::string("Leaf") + cls + "(" + std::to_string(id) + "," + std::to_string(v) +
                    ")");
    }
};

struct TraceEntry {
    int level;
    std::string module;
    std::string path;
    std::string moduleId;
    int line;
};

// Installs itself as the platform trace sink for its lifetime.
class TraceCapture {
  public:
    std::vector<TraceEntry> entries;
    TraceCapture() { Velmor_TraceOut_setSink(&Sink, this); }
    ~TraceCapture() { Velmor_TraceOut_setSink(nullptr, nullptr); }
    TraceCapture(const TraceCapture&) = delete;
    TraceCapture& operator=(const TraceCapture&) = delete;
    std::vector<int> Lines() const {
        std::vector<int> lines;
        for (const auto& e : entries) lines.push_back(e.line);
        return lines;
    }

  private:
    static void Sink(const VelmorTraceRecord* r, void* context) {
        static_cast<TraceCapture*>(context)->entries.push_back(
            TraceEntry{r->level, r->moduleName, r->sourcePath, r->moduleId, r->line});
    }
};

}  // namespace TestSupport

#endif
