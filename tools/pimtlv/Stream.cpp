#include "Stream.h"

#include <algorithm>

#include "parsercreatorcollection/src/tlv/parser/TLVParser.h"

namespace PimTool {

using namespace ParserCreatorCollection;

Fault FaultOf(const TLVError& error, std::size_t base) {
    Fault fault;
    fault.present = static_cast<bool>(error);
    fault.offset = base + error.offset;
    fault.reason = error.Sentence(base);
    return fault;
}

namespace {

// The library's parser with itself as the event target; it says where each
// element starts, and the header there gives the rest.
class Walker : private ITLV, private CTLVParser {
  public:
    // The ITLV base is complete before CTLVParser is made, so the parser
    // may keep a reference to it.
    Walker(ByteView data, ElementSink& sink, std::size_t from)
        : CTLVParser(static_cast<ITLV&>(*this)), m_data(data), m_sink(sink), m_from(from) {}

    Fault Run(std::size_t to) {
        const char* errorText = nullptr;
        unsigned int consumed = 0;
        const auto length = static_cast<unsigned int>(to - m_from);
        static const std::uint8_t empty = 0;
        const void* start = length == 0 ? &empty : m_data.data + m_from;
        if (Parse(start, length, errorText, consumed)) return Fault();
        return FaultOf(LastError(), m_from);
    }

  private:
    bool Report(long long number) {
        Element e;
        e.offset = m_from + ElementOffset();
        e.depth = static_cast<unsigned int>(m_parents.size());
        e.parentId = m_parents.empty() ? kNoParent : m_parents.back();
        ReadElementHeader(m_data.data + e.offset, m_data.size - e.offset, e.header);
        e.value = m_data.data + e.offset + e.header.headerSize;
        e.number = number;
        m_sink.OnElement(e);
        if (e.header.elementClass == Node) m_parents.push_back(e.header.typeId);
        return true;
    }

    bool Unknown(const eClass&, const unsigned int&, const void*, const unsigned int&) override {
        return Report(0);
    }
    bool NodeBegin(const unsigned int&) override { return Report(0); }
    bool NodeEnd(const unsigned int&) override {
        if (!m_parents.empty()) m_parents.pop_back();
        return true;
    }
    bool LeafInt8(const unsigned int&, const signed char& v) override { return Report(v); }
    bool LeafInt16(const unsigned int&, const short& v) override { return Report(v); }
    bool LeafUInt8(const unsigned int&, const unsigned char& v) override { return Report(v); }
    bool LeafUInt16(const unsigned int&, const unsigned short& v) override { return Report(v); }
    bool LeafBitfield8(const unsigned int&, const unsigned char& v) override { return Report(v); }
    bool LeafBitfield16(const unsigned int&, const unsigned short& v) override { return Report(v); }
    bool LeafString(const unsigned int&, const char*) override { return Report(0); }
    bool LeafByteStream(const unsigned int&, const void*, const unsigned int&) override {
        return Report(0);
    }
    bool LeafUInt32(const unsigned int&, const unsigned int& v) override { return Report(v); }
    bool LeafInt32(const unsigned int&, const int& v) override { return Report(v); }

    ByteView m_data;
    ElementSink& m_sink;
    std::size_t m_from;  // where the walk starts in m_data
    std::vector<unsigned int> m_parents;
};

}  // namespace

Fault WalkStream(ByteView data, ElementSink& sink, std::size_t from, std::size_t to) {
    to = std::min(to, data.size);
    from = std::min(from, to);
    if (to - from > 0xFFFFFFFFu) {
        Fault f;
        f.present = true;
        f.offset = from;
        f.reason = "the stream is larger than 4 GiB";
        return f;
    }
    Walker walker(data, sink, from);
    return walker.Run(to);
}

}  // namespace PimTool
