#include "parsercreatorcollection/src/tlv/creator/TLVCreator.h"

#include <cstring>
#include <limits>
#include <new>

#include "parsercreatorcollection/src/tlv/creator/private/TLVCreatorImpl.h"
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

using Impl = CTLVCreator::CTLVCreatorImpl;

namespace {

// The trace line of a fixed-size leaf's refusal, by its class.
int FixedLine(eClass elementClass) {
    switch (elementClass) {
        case Int8:
            return LineInt8;
        case Int16:
            return LineInt16;
        case UInt8:
            return LineUInt8;
        case UInt16:
            return LineUInt16;
        case Bitfield8:
            return LineBitfield8;
        case Bitfield16:
            return LineBitfield16;
        case UInt32:
            return LineUInt32;
        default:
            return LineInt32;
    }
}

// A stream is at most 4 GiB; the room for node headers adds at most 7 bytes a
// node, and a node costs at least one of the caller's calls.
constexpr std::size_t kMaxBody = std::numeric_limits<std::size_t>::max() / 2 < 0x1FFFFFFFEull
                                     ? std::numeric_limits<std::size_t>::max() / 2
                                     : static_cast<std::size_t>(0x1FFFFFFFEull);

unsigned char* Copy(unsigned char* out, const unsigned char* from, std::size_t count) {
    if (count != 0) std::memcpy(out, from, count);
    return out + count;
}

}  // namespace

bool Impl::NodeBeginGrowing(unsigned int typeId, unsigned char room) {
    if (Room(room) == nullptr) {
        Trace(3, LineNodeBegin);
        return false;
    }
    if (m_nodes.count == m_nodes.capacity) {
        const std::size_t capacity = m_nodes.capacity < 16 ? 16 : m_nodes.capacity * 2;
        std::unique_ptr<NodeRecord[]> grown(new (std::nothrow) NodeRecord[capacity]);
        if (!grown) {
            Trace(3, LineNodeBegin);
            return false;
        }
        if (m_nodes.count != 0) {
            std::memcpy(grown.get(), m_nodes.data.get(), m_nodes.count * sizeof(NodeRecord));
        }
        m_nodes.data = std::move(grown);
        m_nodes.capacity = capacity;
    }
    Open(typeId, room);
    return true;
}

bool Impl::NodeEndRefused() {
    Trace(3, LineNodeEnd);
    return false;
}

bool Impl::FixedGrowing(eClass elementClass, unsigned int typeId, unsigned int bits,
                        unsigned int width) {
    unsigned char* out = Room(3 + width);
    if (out == nullptr) {
        Trace(3, FixedLine(elementClass));
        return false;
    }
    PutFixed(out, elementClass, typeId, bits, width);
    m_body.size += 3 + width;
    return true;
}

bool Impl::LeafStringChecked(unsigned int typeId, const char* text, std::size_t size) {
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

// A text that is not valid UTF-8 is written as a repaired copy.
bool Impl::LeafStringRepaired(unsigned int typeId, const char* text, unsigned int length) {
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

bool Impl::LeafByteStream(unsigned int typeId, const void* data, unsigned int length) {
    if (length > CTLVObject::MaxValueLength || (data == nullptr && length != 0) ||
        !Value(ByteStream, typeId, data, length, false)) {
        Trace(3, LineByteStream);
        return false;
    }
    return true;
}

bool Impl::GetData(const void*& data, unsigned int& length) {
    if (m_innermost != kNone) {
        Trace(3, LineGetDataOpen);
        return false;
    }
    const unsigned long long total = StreamPosition();
    const bool copying = m_guessMissed;
    if (m_largestNode > CTLVObject::MaxValueLength || total > 0xFFFFFFFFull) {
        Trace(3, LineGetDataTooLarge);
        return false;
    }
    if (copying && m_output.capacity < total) {
        // Its contents are not kept: the whole stream is written below.
        std::unique_ptr<unsigned char[]> grown(new (std::nothrow) unsigned char[total]);
        if (!grown) {
            Trace(3, LineGetDataTooLarge);
            return false;
        }
        m_output.data = std::move(grown);
        m_output.capacity = static_cast<std::size_t>(total);
        m_output.size = 0;
    }
    // REQUIRES: the node is closed. Writes its header at out, which has
    // headerSize bytes of room, and returns the position after it.
    auto putHeader = [](unsigned char* out, const NodeRecord& node) {
        PutWord(out, node.word);
        return out + 2 +
               CTLVObject::WriteLengthField(static_cast<unsigned int>(node.mark), out + 2);
    };
    const NodeRecord* nodes = m_nodes.data.get();
    const NodeRecord* const nodesEnd = nodes + m_nodes.count;
    if (copying) {
        // Body and headers, in stream order, into the output.
        unsigned char* out = m_output.data.get();
        const unsigned char* body = m_body.data.get();
        std::size_t done = 0;
        for (const NodeRecord* node = nodes; node != nodesEnd; ++node) {
            out = Copy(out, body + done, node->bodyOffset - done);
            out = putHeader(out, *node);
            done = node->bodyOffset + node->room;
        }
        Copy(out, body + done, m_body.size - done);
    } else {
        // Every header fits its room exactly: the body is the stream. It
        // becomes the output, and the last output's memory the next body.
        for (const NodeRecord* node = nodes; node != nodesEnd; ++node)
            putHeader(m_body.data.get() + node->bodyOffset, *node);
        std::swap(m_body, m_output);
    }
    m_output.size = static_cast<std::size_t>(total);
    // This stream's header sizes are the guesses for the next one.
    std::swap(m_previous, m_nodes);
    Discard();
    data = m_output.data.get();
    length = static_cast<unsigned int>(m_output.size);
    return true;
}

bool Impl::Reset() {
    Discard();
    // The output is emptied but its memory kept, like the body's: a creator
    // is usually reset to write the next item of similar size. The destructor
    // frees both.
    m_output.size = 0;
    return true;
}

// REQUIRES: length <= MaxValueLength. A value leaf: header word, length field,
// the bytes and, for a text, its terminating zero byte. False, with nothing
// written, when the body cannot grow.
bool Impl::Value(eClass elementClass, unsigned int typeId, const void* bytes, unsigned int length,
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

// Room for count more body bytes: where they start, or null (body unchanged)
// when memory runs out.
unsigned char* Impl::Room(std::size_t count) noexcept {
    if (m_body.capacity - m_body.size >= count) return m_body.data.get() + m_body.size;
    return Grow(count);
}

unsigned char* Impl::Grow(std::size_t count) noexcept {
    // The body never needs more than the stream's own 32-bit size and the room
    // of its node headers; past that GetData would refuse anyway.
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
void Impl::Discard() noexcept {
    m_nodes.count = 0;
    m_innermost = kNone;
    m_body.size = 0;
    m_hidden = 0;
    m_largestNode = 0;
    m_guessMissed = false;
}

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
    return m_impl && m_impl->LeafInt8(typeId, value);
}

bool CTLVCreator::LeafInt16(const unsigned int& typeId, const short& value) {
    return m_impl && m_impl->LeafInt16(typeId, value);
}

bool CTLVCreator::LeafUInt8(const unsigned int& typeId, const unsigned char& value) {
    return m_impl && m_impl->LeafUInt8(typeId, value);
}

bool CTLVCreator::LeafUInt16(const unsigned int& typeId, const unsigned short& value) {
    return m_impl && m_impl->LeafUInt16(typeId, value);
}

bool CTLVCreator::LeafBitfield8(const unsigned int& typeId, const unsigned char& value) {
    return m_impl && m_impl->LeafBitfield8(typeId, value);
}

bool CTLVCreator::LeafBitfield16(const unsigned int& typeId, const unsigned short& value) {
    return m_impl && m_impl->LeafBitfield16(typeId, value);
}

bool CTLVCreator::LeafString(const unsigned int& typeId, const char* text) {
    return m_impl && m_impl->LeafString(typeId, text);
}

bool CTLVCreator::LeafByteStream(const unsigned int& typeId, const void* data,
                                 const unsigned int& length) {
    return m_impl && m_impl->LeafByteStream(typeId, data, length);
}

bool CTLVCreator::LeafUInt32(const unsigned int& typeId, const unsigned int& value) {
    return m_impl && m_impl->LeafUInt32(typeId, value);
}

bool CTLVCreator::LeafInt32(const unsigned int& typeId, const int& value) {
    return m_impl && m_impl->LeafInt32(typeId, value);
}

bool CTLVCreator::Reset() {
    return m_impl && m_impl->Reset();
}

bool CTLVCreator::GetData(const void*& data, unsigned int& length) {
    return m_impl && m_impl->GetData(data, length);
}

}  // namespace ParserCreatorCollection
