#include "parsercreatorcollection/src/tlv/creator/TLVCreator.h"

#include <cstring>
#include <new>
#include <vector>

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
// once closed, its content length), and GetData stitches the body and the node
// headers together in one pass. Building costs no allocation per element and
// writing no pass over a tree: the records are in stream order already.
//
// This is the element tree of the format in flat form: every leaf's value is
// copied when it is added, nothing is written to the output before GetData,
// and GetData consumes what it writes.
class CTLVCreator::CTLVCreatorImpl {
  public:
    CTLVCreatorImpl() : m_output(0, 1024) {}
    ~CTLVCreatorImpl() { m_output.release(); }
    CTLVCreatorImpl(const CTLVCreatorImpl&) = delete;
    CTLVCreatorImpl& operator=(const CTLVCreatorImpl&) = delete;

    bool NodeBegin(unsigned int typeId) {
        try {
            m_nodes.push_back(NodeRecord{m_bodySize, StreamPosition(), 0, typeId, m_innermost,
                                         HeaderWord(Node, typeId)});
        } catch (...) {
            Trace(3, LineNodeBegin);
            return false;
        }
        m_innermost = m_nodes.size() - 1;
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
        m_headerBytes += 2 + CTLVObject::WriteLengthField(Clamped(content), nullptr);
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
        m_bodySize += 3 + Width;
        return true;
    }

    bool LeafString(unsigned int typeId, const char* text) {
        const unsigned int length = Velmor_PAL_strlen(text);
        if (length >= CTLVObject::MaxValueLength) {
            Trace(3, LineString);
            return false;
        }
        if (length == 0 || Velmor_UTF8_rfc3629_check_string(text, length, 0) != 0) {
            if (!Value(String, typeId, text, length, true)) {
                Trace(3, LineString);
                return false;
            }
            return true;
        }
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
        unsigned char* out = m_largestNode > CTLVObject::MaxValueLength || total > 0xFFFFFFFFull
                                 ? nullptr
                                 : m_output.prepare(static_cast<unsigned int>(total));
        if (out == nullptr && total != 0) {
            Trace(3, LineGetDataTooLarge);
            return false;
        }
        const unsigned char* body = m_body.get();
        std::size_t done = 0;
        for (const NodeRecord& node : m_nodes) {
            out = Copy(out, body + done, node.bodyOffset - done);
            done = node.bodyOffset;
            PutWord(out, node.word);
            out +=
                2 + CTLVObject::WriteLengthField(static_cast<unsigned int>(node.content), out + 2);
        }
        Copy(out, body + done, m_bodySize - done);
        Discard();
        data = m_output.getData();
        length = m_output.getSize();
        return true;
    }

    bool Reset() {
        Discard();
        // The output is emptied but its memory kept, like the body's: a creator
        // is usually reset to write the next item of similar size. The
        // destructor frees both.
        m_output.shrink(0);
        return true;
    }

  private:
    struct NodeRecord {
        std::size_t bodyOffset;      // the node's header goes before this body byte
        unsigned long long start;    // stream position of the node's first content byte
        unsigned long long content;  // content length, set by NodeEnd
        unsigned int typeId;
        std::size_t parent;   // the node that was innermost when this one opened
        unsigned short word;  // header word
    };

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
    // far plus the headers of the nodes closed so far (an open node's header
    // is not counted until its length is known).
    unsigned long long StreamPosition() const noexcept { return m_bodySize + m_headerBytes; }

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
        m_bodySize += 2 + fieldSize + valueLength;
        return true;
    }

    // Room for count more body bytes: where they start, or null (body
    // unchanged) when memory runs out.
    unsigned char* Room(std::size_t count) noexcept {
        if (m_bodyCapacity - m_bodySize >= count) return m_body.get() + m_bodySize;
        return Grow(count);
    }

#if defined(__GNUC__)
    __attribute__((noinline))
#endif
    unsigned char*
    Grow(std::size_t count) noexcept {
        // The body never needs more than the stream's own 32-bit size; past
        // that GetData would refuse anyway.
        if (count > kMaxBody - m_bodySize) return nullptr;
        std::size_t capacity = m_bodyCapacity < 256 ? 256 : m_bodyCapacity;
        while (capacity - m_bodySize < count)
            capacity = capacity > kMaxBody / 2 ? kMaxBody : capacity * 2;
        std::unique_ptr<unsigned char[]> grown(new (std::nothrow) unsigned char[capacity]);
        if (!grown) return nullptr;
        if (m_bodySize != 0) std::memcpy(grown.get(), m_body.get(), m_bodySize);
        m_body = std::move(grown);
        m_bodyCapacity = capacity;
        return m_body.get() + m_bodySize;
    }

    // Forgets the elements, keeping the memory for the next stream.
    void Discard() noexcept {
        m_nodes.clear();
        m_innermost = 0;
        m_openCount = 0;
        m_bodySize = 0;
        m_headerBytes = 0;
        m_largestNode = 0;
    }

    static constexpr std::size_t kMaxBody = 0xFFFFFFFFu;

    std::unique_ptr<unsigned char[]> m_body;  // leaves, encoded, in stream order
    std::size_t m_bodySize = 0;
    std::size_t m_bodyCapacity = 0;
    std::vector<NodeRecord> m_nodes;  // every node, in stream order
    // The open nodes are a chain through NodeRecord::parent from the innermost.
    std::size_t m_innermost = 0;
    std::size_t m_openCount = 0;
    unsigned long long m_headerBytes = 0;  // header sizes of the closed nodes
    unsigned long long m_largestNode = 0;  // largest content of a closed node
    PAL::CBuffer m_output;
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
