#include "Stream.h"

#include <algorithm>

#include "parsercreatorcollection/src/tlv/parser/TLVParser.h"

namespace pimtlv_tool {

using namespace ParserCreatorCollection;

namespace {

std::string ByteCount(std::size_t n) {
    return std::to_string(n) + (n == 1 ? " byte" : " bytes");
}

}  // namespace

bool ReadHeader(const std::uint8_t* data, std::size_t limit, std::size_t pos, Header& header,
                std::string* reason) {
    const std::size_t left = limit > pos ? limit - pos : 0;
    auto fail = [reason](std::string text) {
        if (reason != nullptr) *reason = std::move(text);
        return false;
    };
    if (left < 2)
        return fail("the element header needs 2 bytes, only " + ByteCount(left) + " left");
    if (left < 3) return fail("the length field is missing after the header word");
    const unsigned int lead = data[pos + 2];
    std::uint32_t length = 0;
    unsigned int fieldSize = 1;
    if (lead < 0x80) {
        length = lead;
    } else {
        const unsigned int n = lead & 0x7Fu;
        if (n == 0) return fail("length field 0x80 gives no byte count");
        if (left - 3 < n) {
            return fail("length field announces " + ByteCount(n) + " of length, only " +
                        ByteCount(left - 3) + " left");
        }
        for (unsigned int i = 0; i < n; ++i) {
            // Bytes beyond the fourth wrap around, as the library's reader does.
            length |= static_cast<std::uint32_t>(data[pos + 3 + i]) << ((8 * (n - 1 - i)) % 32);
        }
        fieldSize = n + 1;
    }
    const unsigned int word = (static_cast<unsigned int>(data[pos]) << 8) | data[pos + 1];
    header.elementClass = word >> 12;
    header.typeId = word & 0xFFFu;
    header.headerSize = 2 + fieldSize;
    header.length = length;
    return true;
}

unsigned int FixedSize(unsigned int elementClass) {
    switch (elementClass) {
        case Int8:
        case UInt8:
        case Bitfield8:
            return 1;
        case Int16:
        case UInt16:
        case Bitfield16:
            return 2;
        case UInt32:
        case Int32:
            return 4;
        default:
            return 0;
    }
}

std::string ClassName(unsigned int elementClass) {
    if (elementClass == Node) return "Node";
    const char* name = ClassDisplayName(elementClass);
    return name != nullptr ? name : "Class " + std::to_string(elementClass);
}

std::string DescribeFault(const Bytes& data, std::size_t offset) {
    // Follow the nodes that contain offset, to learn the limit the element
    // had to respect and what imposed it.
    std::size_t pos = 0;
    std::size_t limit = data.size();
    std::string context = "the stream";
    Header h;
    while (pos < offset && ReadHeader(data.data(), limit, pos, h, nullptr)) {
        const std::size_t valueStart = pos + h.headerSize;
        const std::size_t end = valueStart + h.length;
        if (h.elementClass == Node && offset >= valueStart && offset < end && end <= limit) {
            context = "node " + std::to_string(h.typeId) + " at offset " + std::to_string(pos);
            limit = end;
            pos = valueStart;
        } else {
            pos = end;
        }
    }
    if (pos != offset) return "the walk stopped here";
    std::string reason;
    if (!ReadHeader(data.data(), limit, pos, h, &reason)) return reason + " (in " + context + ")";
    const std::string what = ClassName(h.elementClass) + " " + std::to_string(h.typeId);
    const std::size_t left = limit - pos - h.headerSize;
    const unsigned int fixed = FixedSize(h.elementClass);
    if (fixed != 0 && h.length != fixed) {
        return what + " declares a value of " + ByteCount(h.length) + "; the class takes exactly " +
               std::to_string(fixed);
    }
    if (h.length > left) {
        return what + " declares " + ByteCount(h.length) + ", more than the " + ByteCount(left) +
               " left in " + context;
    }
    if (h.elementClass == String) {
        if (h.length == 0) return what + " has an empty value; a text needs its zero byte";
        if (data[pos + h.headerSize + h.length - 1] != 0) {
            return what + " does not end with a zero byte";
        }
    }
    return "the walk stopped at " + what;
}

namespace {

// The library's parser with itself as the event target, so that each event
// can be tied to the offset of its element in the stream.
class Walker : private ITLV, private CTLVParser {
  public:
    // The ITLV base is complete before CTLVParser is made, so the parser
    // may keep a reference to it.
    Walker(const Bytes& data, ElementSink* sink)
        : CTLVParser(static_cast<ITLV&>(*this)), m_data(data), m_sink(sink) {}

    Fault Run() {
        const char* errorText = nullptr;
        unsigned int consumed = 0;
        const auto length = static_cast<unsigned int>(m_data.size());
        static const std::uint8_t empty = 0;
        const void* start = m_data.empty() ? &empty : m_data.data();
        Fault fault;
        if (!Parse(start, length, errorText, consumed)) {
            fault.present = true;
            fault.offset = m_next;
            fault.reason = DescribeFault(m_data, m_next);
        }
        return fault;
    }

  private:
    // Reports the element that starts where the previous one left off, then
    // moves the mark past what the parser has read of it.
    bool Report(long long number) {
        Element e;
        e.offset = m_next;
        e.depth = static_cast<unsigned int>(m_parents.size());
        e.parentId = m_parents.empty() ? kNoParent : m_parents.back();
        ReadHeader(m_data.data(), m_data.size(), m_next, e.header, nullptr);
        e.value = m_data.data() + m_next + e.header.headerSize;
        e.number = number;
        if (m_sink != nullptr) m_sink->OnElement(e);
        m_next = m_position;
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

    const Bytes& m_data;
    ElementSink* m_sink;
    std::size_t m_next = 0;  // offset of the next element
    std::vector<unsigned int> m_parents;
};

}  // namespace

Fault WalkStream(const Bytes& data, ElementSink* sink) {
    if (data.size() > 0xFFFFFFFFu) {
        Fault f;
        f.present = true;
        f.reason = "the stream is larger than 4 GiB";
        return f;
    }
    Walker walker(data, sink);
    return walker.Run();
}

StreamFrame ReadFrame(const Bytes& data) {
    StreamFrame frame;
    Header root;
    if (!ReadHeader(data.data(), data.size(), 0, root, nullptr) || root.elementClass != Node) {
        return frame;
    }
    frame.hasRoot = true;
    frame.root = root.typeId;
    const std::size_t end =
        std::min<std::size_t>(data.size(), root.headerSize + std::size_t{root.length});
    std::size_t pos = root.headerSize;
    Header child;
    while (pos < end && ReadHeader(data.data(), end, pos, child, nullptr)) {
        if (child.elementClass == Node) {
            frame.hasComponent = true;
            frame.component = child.typeId;
            break;
        }
        pos += child.headerSize + std::size_t{child.length};
    }
    return frame;
}

}  // namespace pimtlv_tool
