#include "parsercreatorcollection/src/tlv/creator/TLVCreator.h"

#include <cstring>
#include <limits>
#include <new>
#include <vector>

#include "platform/Utf8.h"
#include "platform/Velmor.h"

namespace ParserCreatorCollection {

namespace {

constexpr const char* kModuleName = "TLVCreator";
constexpr const char* kSourcePath = "parsercreatorcollection/src/tlv/creator/private/TLVCreator";
constexpr const char* kModuleId = "7C1E4A9D2F5B48E6A3D0C8B1F4E2967A";

// Trace lines: each identifies one place of failure in the trace output.
enum TraceLine : int {
    LineNodeBegin = 1202,
    LineNodeEnd = 1237,
    LineInt8 = 1258,
    LineInt16 = 1287,
    LineUInt8 = 1316,
    LineUInt16 = 1345,
    LineBitfield8 = 1374,
    LineBitfield16 = 1403,
    LineStringRepaired = 1436,
    LineStringCopy = 1442,
    LineStringPurge = 1452,
    LineString = 1478,
    LineByteStream = 1507,
    LineUInt32 = 1536,
    LineInt32 = 1565,
    LineGetDataOpen = 1592,
    // A top-level node whose content the length field cannot carry.
    LineGetDataTooLarge = 1601,
};

void Trace(int level, int line) {
    Velmor_TraceOut_trace(level, kModuleName, 0, kSourcePath, kModuleId, line, nullptr);
}

}  // namespace

// The creator writes each leaf at once, in its final encoding, into a staging
// body. A node's header cannot be written that way: its length is known only
// at NodeEnd, and the length field's own size depends on that length. So each
// node is a record (where in the body its header belongs, its header word and,
// once closed, its content length), and the body keeps room for its header:
// as many bytes as the node of the same rank had in the previous stream (3,
// the short form, in the first). A creator mostly writes items of one shape
// one after the other, so the guesses usually hold; GetData then writes the
// headers into their room and hands out the body itself, with no copy of the
// values. Where a guess was wrong, GetData copies the body into the output,
// headers in place, in one pass. Building costs no allocation per element and
// writing no pass over a tree: the records are in stream order already.
//
// This is the element tree of the format in flat form: every leaf's value is
// copied when it is added, nothing is written to the output before GetData,
// and GetData consumes what it writes.
class CTLVCreator::CTLVCreatorImpl {
  public:
    CTLVCreatorImpl() = default;
    ~CTLVCreatorImpl() = default;
    CTLVCreatorImpl(const CTLVCreatorImpl&) = delete;
    CTLVCreatorImpl& operator=(const CTLVCreatorImpl&) = delete;

    bool NodeBegin(unsigned int typeId) {
        const std::size_t rank = m_nodes.size();
        const unsigned char room = rank < m_previous.size() ? m_previous[rank].headerSize : 3;
        if (Room(room) == nullptr) {
            Trace(3, LineNodeBegin);
            return false;
        }
        try {
            m_nodes.push_back(NodeRecord{m_body.size, StreamPosition(), 0, typeId, m_innermost,
                                         HeaderWord(Node, typeId), room, 0});
        } catch (...) {
            Trace(3, LineNodeBegin);
            return false;
        }
        m_body.size += room;
        m_reservedBytes += room;
        m_innermost = rank;
        ++m_openCount;
        return true;
    }

    bool NodeEnd(unsigned int typeId) {
        if (m_openCount == 0 || m_nodes[m_innermost].typeId != typeId) {
            Trace(3, LineNodeEnd);
            return false;
        }
        NodeRecord& node = m_nodes[m_innermost];
        const unsigned long long content = StreamPosition() - node.start;
        node.content = content;
        // Every enclosed node is shorter than its top-level ancestor, so the
        // largest node decides whether GetData can write the stream at all.
        if (content > m_largestNode) m_largestNode = content;
        node.headerSize =
            static_cast<unsigned char>(2 + CTLVObject::WriteLengthField(Clamped(content), nullptr));
        m_headerBytes += node.headerSize;
        if (node.headerSize != node.room) m_guessMissed = true;
        m_innermost = node.parent;
        --m_openCount;
        return true;
    }

    // Fixed-size leaves: header word, a one-byte length field, Width bytes.
    template <unsigned int Width>
    bool Fixed(eClass elementClass, unsigned int typeId, unsigned int bits, int line) {
        unsigned char* out = Room(3 + Width);
        if (out == nullptr) {
            Trace(3, line);
            return false;
        }
        PutWord(out, HeaderWord(elementClass, typeId));
        out[2] = static_cast<unsigned char>(Width);
        for (unsigned int i = Width; i > 0; --i) {
            out[2 + i] = static_cast<unsigned char>(bits & 0xFFu);
            bits >>= 8;
        }
        m_body.size += 3 + Width;
        return true;
    }

    bool LeafString(unsigned int typeId, const char* text) {
        // The platform's strlen, inline: null is the empty text.
        const std::size_t size = text == nullptr ? 0 : std::strlen(text);
        if (size >= CTLVObject::MaxValueLength) {
            Trace(3, LineString);
            return false;
        }
        const auto length = static_cast<unsigned int>(size);
        if (length != 0 && !PAL::IsValidUtf8(text, length)) {
            return LeafStringRepaired(typeId, text, length);
        }
        if (!Value(String, typeId, text, length, true)) {
            Trace(3, LineString);
            return false;
        }
        return true;
    }

    // The rare path, kept out of the common one: a text that is not valid
    // UTF-8 is written as a repaired copy.
#if defined(__GNUC__)
    __attribute__((noinline, cold))
#endif
    bool
    LeafStringRepaired(unsigned int typeId, const char* text, unsigned int length) {
        Trace(2, LineStringRepaired);
        std::unique_ptr<char[]> copy(new (std::nothrow) char[length + 1]);
        if (!copy) {
            Trace(3, LineStringCopy);
            Trace(3, LineString);
            return false;
        }
        Velmor_PAL_memcpy(copy.get(), text, length);
        copy[length] = 0;
        if (Velmor_UTF8_rfc3629_purge_string(copy.get(), length, 63) == 0) {
            Trace(3, LineStringPurge);
            Trace(3, LineString);
            return false;
        }
        if (!Value(String, typeId, copy.get(), length, true)) {
            Trace(3, LineString);
            return false;
        }
        return true;
    }

    bool LeafByteStream(unsigned int typeId, const void* data, unsigned int length) {
        if (length > CTLVObject::MaxValueLength || (data == nullptr && length != 0) ||
            !Value(ByteStream, typeId, data, length, false)) {
            Trace(3, LineByteStream);
            return false;
        }
        return true;
    }

    bool GetData(const void*& data, unsigned int& length) {
        if (m_openCount != 0) {
            Trace(3, LineGetDataOpen);
            return false;
        }
        const unsigned long long total = StreamPosition();
        if (m_largestNode > CTLVObject::MaxValueLength || total > 0xFFFFFFFFull ||
            (m_guessMissed && !Reserve(m_output, static_cast<std::size_t>(total)))) {
            Trace(3, LineGetDataTooLarge);
            return false;
        }
        if (m_guessMissed) {
            // Body and headers, in stream order, into the output.
            unsigned char* out = m_output.data.get();
            const unsigned char* body = m_body.data.get();
            std::size_t done = 0;
            for (const NodeRecord& node : m_nodes) {
                out = Copy(out, body + done, node.bodyOffset - done);
                out = PutHeader(out, node);
                done = node.bodyOffset + node.room;
            }
            Copy(out, body + done, m_body.size - done);
        } else {
            // Every header fits its room exactly: the body is the stream. It
            // becomes the output, and the last output's memory the next body.
            for (const NodeRecord& node : m_nodes)
                PutHeader(m_body.data.get() + node.bodyOffset, node);
            std::swap(m_body, m_output);
        }
        m_output.size = static_cast<std::size_t>(total);
        // This stream's header sizes are the guesses for the next one.
        m_previous.swap(m_nodes);
        Discard();
        data = m_output.data.get();
        length = static_cast<unsigned int>(m_output.size);
        return true;
    }

    bool Reset() {
        Discard();
        // The output is emptied but its memory kept, like the body's: a creator
        // is usually reset to write the next item of similar size. The
        // destructor frees both.
        m_output.size = 0;
        return true;
    }

  private:
    struct NodeRecord {
        std::size_t bodyOffset;      // where the room for the node's header starts in the body
        unsigned long long start;    // stream position of the node's first content byte
        unsigned long long content;  // content length, set by NodeEnd
        unsigned int typeId;
        std::size_t parent;        // the node that was innermost when this one opened
        unsigned short word;       // header word
        unsigned char room;        // body bytes kept for the header
        unsigned char headerSize;  // the header's size, set by NodeEnd
    };

    // A growable byte array; size is the count of bytes in use.
    struct Bytes {
        std::unique_ptr<unsigned char[]> data;
        std::size_t size = 0;
        std::size_t capacity = 0;
    };

    // REQUIRES: the node is closed. Writes its header at out, which has
    // headerSize bytes of room, and returns the position after it.
    static unsigned char* PutHeader(unsigned char* out, const NodeRecord& node) noexcept {
        PutWord(out, node.word);
        return out + 2 +
               CTLVObject::WriteLengthField(static_cast<unsigned int>(node.content), out + 2);
    }

    // Makes room for capacity bytes in bytes; their contents are not kept.
    static bool Reserve(Bytes& bytes, std::size_t capacity) noexcept {
        if (bytes.capacity >= capacity) return true;
        std::unique_ptr<unsigned char[]> grown(new (std::nothrow) unsigned char[capacity]);
        if (!grown) return false;
        bytes.data = std::move(grown);
        bytes.capacity = capacity;
        bytes.size = 0;
        return true;
    }

    static unsigned short HeaderWord(eClass elementClass, unsigned int typeId) noexcept {
        return static_cast<unsigned short>((static_cast<unsigned int>(elementClass) << 12) |
                                           (typeId & 0xFFFu));
    }
    static void PutWord(unsigned char* out, unsigned short word) noexcept {
        out[0] = static_cast<unsigned char>(word >> 8);
        out[1] = static_cast<unsigned char>(word & 0xFFu);
    }
    static unsigned int Clamped(unsigned long long content) noexcept {
        return content > 0xFFFFFFFFull ? 0xFFFFFFFFu : static_cast<unsigned int>(content);
    }
    static unsigned char* Copy(unsigned char* out, const unsigned char* from, std::size_t count) {
        if (count != 0) std::memcpy(out, from, count);
        return out + count;
    }

    // Where the next element would start in the written stream: the body so
    // far, less the room kept for node headers, plus the headers of the nodes
    // closed so far (an open node's header is not counted until its length is
    // known).
    unsigned long long StreamPosition() const noexcept {
        return m_body.size - m_reservedBytes + m_headerBytes;
    }

    // REQUIRES: length <= MaxValueLength. A value leaf: header word, length
    // field, the bytes and, for a text, its terminating zero byte. False, with
    // nothing written, when the body cannot grow.
    bool Value(eClass elementClass, unsigned int typeId, const void* bytes, unsigned int length,
               bool terminate) {
        const unsigned int valueLength = length + (terminate ? 1u : 0u);
        const unsigned int fieldSize = CTLVObject::WriteLengthField(valueLength, nullptr);
        unsigned char* out = Room(2 + fieldSize + std::size_t{valueLength});
        if (out == nullptr) return false;
        PutWord(out, HeaderWord(elementClass, typeId));
        CTLVObject::WriteLengthField(valueLength, out + 2);
        out = Copy(out + 2 + fieldSize, static_cast<const unsigned char*>(bytes), length);
        if (terminate) *out = 0;
        m_body.size += 2 + fieldSize + valueLength;
        return true;
    }

    // Room for count more body bytes: where they start, or null (body
    // unchanged) when memory runs out.
    unsigned char* Room(std::size_t count) noexcept {
        if (m_body.capacity - m_body.size >= count) return m_body.data.get() + m_body.size;
        return Grow(count);
    }

#if defined(__GNUC__)
    __attribute__((noinline))
#endif
    unsigned char*
    Grow(std::size_t count) noexcept {
        // The body never needs more than the stream's own 32-bit size and the
        // room of its node headers; past that GetData would refuse anyway.
        if (count > kMaxBody - m_body.size) return nullptr;
        std::size_t capacity = m_body.capacity < 256 ? 256 : m_body.capacity;
        while (capacity - m_body.size < count) {
            capacity = capacity > kMaxBody / 2 ? kMaxBody : capacity * 2;
        }
        std::unique_ptr<unsigned char[]> grown(new (std::nothrow) unsigned char[capacity]);
        if (!grown) return nullptr;
        if (m_body.size != 0) std::memcpy(grown.get(), m_body.data.get(), m_body.size);
        m_body.data = std::move(grown);
        m_body.capacity = capacity;
        return m_body.data.get() + m_body.size;
    }

    // Forgets the elements, keeping the memory for the next stream.
    void Discard() noexcept {
        m_nodes.clear();
        m_innermost = 0;
        m_openCount = 0;
        m_body.size = 0;
        m_reservedBytes = 0;
        m_headerBytes = 0;
        m_largestNode = 0;
        m_guessMissed = false;
    }

    // A stream is at most 4 GiB; the room for node headers adds at most
    // 7 bytes a node, and a node costs at least one of the caller's calls.
    static constexpr std::size_t kMaxBody =
        std::numeric_limits<std::size_t>::max() / 2 < 0x1FFFFFFFEull
            ? std::numeric_limits<std::size_t>::max() / 2
            : static_cast<std::size_t>(0x1FFFFFFFEull);

    Bytes m_body;                     // leaves, encoded, and room for node headers, in stream order
    Bytes m_output;                   // the last stream handed out
    std::vector<NodeRecord> m_nodes;  // every node, in stream order
    std::vector<NodeRecord> m_previous;  // the nodes of the last stream written
    // The open nodes are a chain through NodeRecord::parent from the innermost.
    std::size_t m_innermost = 0;
    std::size_t m_openCount = 0;
    unsigned long long m_reservedBytes = 0;  // body bytes kept for node headers
    unsigned long long m_headerBytes = 0;    // header sizes of the closed nodes
    unsigned long long m_largestNode = 0;    // largest content of a closed node
    bool m_guessMissed = false;              // some closed node's header differs from its room
};

CTLVCreator::CTLVCreator() : m_impl(new (std::nothrow) CTLVCreatorImpl()) {}

CTLVCreator::~CTLVCreator() = default;

bool CTLVCreator::Unknown(const eClass&, const unsigned int&, const void*, const unsigned int&) {
    return false;
}

bool CTLVCreator::NodeBegin(const unsigned int& typeId) {
    return m_impl && m_impl->NodeBegin(typeId);
}

bool CTLVCreator::NodeEnd(const unsigned int& typeId) {
    return m_impl && m_impl->NodeEnd(typeId);
}

bool CTLVCreator::LeafInt8(const unsigned int& typeId, const signed char& value) {
    return m_impl && m_impl->Fixed<1>(Int8, typeId, static_cast<unsigned char>(value), LineInt8);
}

bool CTLVCreator::LeafInt16(const unsigned int& typeId, const short& value) {
    return m_impl && m_impl->Fixed<2>(Int16, typeId, static_cast<unsigned short>(value), LineInt16);
}

bool CTLVCreator::LeafUInt8(const unsigned int& typeId, const unsigned char& value) {
    return m_impl && m_impl->Fixed<1>(UInt8, typeId, value, LineUInt8);
}

bool CTLVCreator::LeafUInt16(const unsigned int& typeId, const unsigned short& value) {
    return m_impl && m_impl->Fixed<2>(UInt16, typeId, value, LineUInt16);
}

bool CTLVCreator::LeafBitfield8(const unsigned int& typeId, const unsigned char& value) {
    return m_impl && m_impl->Fixed<1>(Bitfield8, typeId, value, LineBitfield8);
}

bool CTLVCreator::LeafBitfield16(const unsigned int& typeId, const unsigned short& value) {
    return m_impl && m_impl->Fixed<2>(Bitfield16, typeId, value, LineBitfield16);
}

bool CTLVCreator::LeafString(const unsigned int& typeId, const char* text) {
    return m_impl && m_impl->LeafString(typeId, text);
}

bool CTLVCreator::LeafByteStream(const unsigned int& typeId, const void* data,
                                 const unsigned int& length) {
    return m_impl && m_impl->LeafByteStream(typeId, data, length);
}

bool CTLVCreator::LeafUInt32(const unsigned int& typeId, const unsigned int& value) {
    return m_impl && m_impl->Fixed<4>(UInt32, typeId, value, LineUInt32);
}

bool CTLVCreator::LeafInt32(const unsigned int& typeId, const int& value) {
    return m_impl && m_impl->Fixed<4>(Int32, typeId, static_cast<unsigned int>(value), LineInt32);
}

bool CTLVCreator::Reset() {
    return m_impl && m_impl->Reset();
}

bool CTLVCreator::GetData(const void*& data, unsigned int& length) {
    return m_impl && m_impl->GetData(data, length);
}

}  // namespace ParserCreatorCollection
