#include "Stream.h"

#include <algorithm>

#include "parsercreatorcollection/src/tlv/parser/TLVParser.h"

namespace PimTool {

using namespace ParserCreatorCollection;

namespace {

std::string ByteCount(std::size_t n) {
    return std::to_string(n) + (n == 1 ? " byte" : " bytes");
}

}  // namespace

bool ReadHeader(const std::uint8_t* data, std::size_t limit, std::size_t pos, Header& header,
                std::string* reason) {
    if (PimBridge::ReadElementHeader(data, limit, pos, header, nullptr)) return true;
    if (reason == nullptr) return false;
    // Say how far the header got, in the terms of its parts.
    const std::size_t left = limit > pos ? limit - pos : 0;
    if (left < 2) {
        *reason = "the element header needs 2 bytes, only " + ByteCount(left) + " left";
    } else if (left < 3) {
        *reason = "the length field is missing after the header word";
    } else if (data[pos + 2] == 0x80) {
        *reason = "length field 0x80 gives no byte count";
    } else {
        *reason = "length field announces " + ByteCount(data[pos + 2] & 0x7Fu) +
                  " of length, only " + ByteCount(left - 3) + " left";
    }
    return false;
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

std::string DescribeFault(ByteView data, std::size_t offset) {
    // Follow the nodes that contain offset, to learn the limit the element
    // had to respect and what imposed it.
    std::size_t pos = 0;
    std::size_t limit = data.size;
    std::string context = "the stream";
    Header h;
    while (pos < offset && ReadHeader(data.data, limit, pos, h, nullptr)) {
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
    if (!ReadHeader(data.data, limit, pos, h, &reason)) return reason + " (in " + context + ")";
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
        if (data.data[pos + h.headerSize + h.length - 1] != 0) {
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
    Walker(ByteView data, ElementSink* sink, std::size_t from)
        : CTLVParser(static_cast<ITLV&>(*this)), m_data(data), m_sink(sink), m_from(from) {}

    Fault Run(std::size_t to) {
        const char* errorText = nullptr;
        unsigned int consumed = 0;
        const auto length = static_cast<unsigned int>(to - m_from);
        static const std::uint8_t empty = 0;
        const void* start = length == 0 ? &empty : m_data.data + m_from;
        Fault fault;
        m_next = m_from;
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
        ReadHeader(m_data.data, m_data.size, m_next, e.header, nullptr);
        e.value = m_data.data + m_next + e.header.headerSize;
        e.number = number;
        if (m_sink != nullptr) m_sink->OnElement(e);
        m_next = m_from + m_position;
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
    ElementSink* m_sink;
    std::size_t m_from;      // where the walk starts in m_data
    std::size_t m_next = 0;  // offset of the next element
    std::vector<unsigned int> m_parents;
};

}  // namespace

Fault WalkStream(ByteView data, ElementSink* sink, std::size_t from, std::size_t to) {
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

StreamFrame ReadFrame(ByteView data) {
    StreamFrame frame;
    Header root;
    if (!ReadHeader(data.data, data.size, 0, root, nullptr) || root.elementClass != Node) {
        return frame;
    }
    frame.hasRoot = true;
    frame.root = root.typeId;
    const std::size_t end =
        std::min<std::size_t>(data.size, root.headerSize + std::size_t{root.length});
    std::size_t pos = root.headerSize;
    Header child;
    while (pos < end && ReadHeader(data.data, end, pos, child, nullptr)) {
        if (child.elementClass == Node) {
            frame.hasComponent = true;
            frame.component = child.typeId;
            break;
        }
        pos += child.headerSize + std::size_t{child.length};
    }
    return frame;
}

}  // namespace PimTool
