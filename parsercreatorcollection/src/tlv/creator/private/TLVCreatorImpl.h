#ifndef PIMTLV_TLV_TLVCREATORIMPL_H
#define PIMTLV_TLV_TLVCREATORIMPL_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>

#include "parsercreatorcollection/src/tlv/creator/TLVCreator.h"

namespace ParserCreatorCollection {

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
//
// The element calls are defined here, inline, so that the library's item
// creators write through them without a call per element; CTLVCreator is the
// same engine behind its public interface. Each call's common case is a few
// stores; everything rare (growing, refusals and their traces, long length
// fields, texts that are not ASCII) is out of line.
class CTLVCreator::CTLVCreatorImpl {
  public:
    CTLVCreatorImpl() = default;
    ~CTLVCreatorImpl() = default;
    CTLVCreatorImpl(const CTLVCreatorImpl&) = delete;
    CTLVCreatorImpl& operator=(const CTLVCreatorImpl&) = delete;

    bool NodeBegin(unsigned int typeId) {
        const std::size_t rank = m_nodes.count;
        const unsigned char room = rank < m_previous.count ? m_previous.data[rank].headerSize : 3;
        if (rank == m_nodes.capacity || m_body.capacity - m_body.size < room) {
            return NodeBeginGrowing(typeId, room);
        }
        Open(typeId, room);
        return true;
    }

    bool NodeEnd(unsigned int typeId) {
        if (m_innermost == kNone || m_nodes.data[m_innermost].typeId != typeId) {
            return NodeEndRefused();
        }
        NodeRecord& node = m_nodes.data[m_innermost];
        const unsigned long long content = StreamPosition() - node.mark;
        node.mark = content;
        // Every enclosed node is shorter than its top-level ancestor, so the
        // largest node decides whether GetData can write the stream at all.
        if (content > m_largestNode) m_largestNode = content;
        // The header word and the length field: one byte below 0x80, else a
        // lead byte and as few bytes as the length needs (at most 4; lengths
        // the field cannot carry are refused by GetData).
        const unsigned char headerSize =
            content < 0x80
                ? 3
                : static_cast<unsigned char>(4 + (content > 0xFFu) + (content > 0xFFFFu) +
                                             (content > 0xFFFFFFu));
        node.headerSize = headerSize;
        m_hidden -= headerSize;
        if (headerSize != node.room) m_guessMissed = true;
        m_innermost = node.parent;
        return true;
    }

    bool LeafInt8(unsigned int typeId, signed char value) {
        return Fixed<1>(Int8, typeId, static_cast<unsigned char>(value));
    }
    bool LeafInt16(unsigned int typeId, short value) {
        return Fixed<2>(Int16, typeId, static_cast<unsigned short>(value));
    }
    bool LeafUInt8(unsigned int typeId, unsigned char value) {
        return Fixed<1>(UInt8, typeId, value);
    }
    bool LeafUInt16(unsigned int typeId, unsigned short value) {
        return Fixed<2>(UInt16, typeId, value);
    }
    bool LeafBitfield8(unsigned int typeId, unsigned char value) {
        return Fixed<1>(Bitfield8, typeId, value);
    }
    bool LeafBitfield16(unsigned int typeId, unsigned short value) {
        return Fixed<2>(Bitfield16, typeId, value);
    }
    bool LeafUInt32(unsigned int typeId, unsigned int value) {
        return Fixed<4>(UInt32, typeId, value);
    }
    bool LeafInt32(unsigned int typeId, int value) {
        return Fixed<4>(Int32, typeId, static_cast<unsigned int>(value));
    }

    // A null text is the empty text. The common case, an ASCII text whose
    // element has a one-byte length field, is measured, copied and checked
    // here; any other goes through LeafStringChecked.
    bool LeafString(unsigned int typeId, const char* text) {
        const std::size_t size = text == nullptr ? 0 : std::strlen(text);
        const std::size_t total = 4 + size;  // header word, length byte, text, zero byte
        if (size >= 0x7F || m_body.capacity - m_body.size < total) {
            return LeafStringChecked(typeId, text, size);
        }
        unsigned char* out = m_body.data.get() + m_body.size;
        // Bytes past the body's size are not part of it until it grows, so a
        // text found not to be ASCII leaves nothing behind.
        if (!CopyAscii(out + 3, reinterpret_cast<const unsigned char*>(text), size)) {
            return LeafStringChecked(typeId, text, size);
        }
        PutWord(out, HeaderWord(String, typeId));
        out[2] = static_cast<unsigned char>(size + 1);
        out[3 + size] = 0;
        m_body.size += total;
        return true;
    }

    bool LeafByteStream(unsigned int typeId, const void* data, unsigned int length);
    bool GetData(const void*& data, unsigned int& length);
    bool Reset();

  private:
    struct NodeRecord {
        std::size_t bodyOffset;  // where the room for the node's header starts in the body
        // While the node is open, the stream position of its first content
        // byte; once closed, its content length.
        unsigned long long mark;
        std::size_t parent;        // the node that was innermost when this one opened
        unsigned int typeId;       // as given, for NodeEnd to match
        unsigned short word;       // header word
        unsigned char room;        // body bytes kept for the header
        unsigned char headerSize;  // the header's size, set by NodeEnd
    };

    // A growable array of node records; count is the number in use.
    struct Records {
        std::unique_ptr<NodeRecord[]> data;
        std::size_t count = 0;
        std::size_t capacity = 0;
    };

    // A growable byte array; size is the count of bytes in use.
    struct Bytes {
        std::unique_ptr<unsigned char[]> data;
        std::size_t size = 0;
        std::size_t capacity = 0;
    };

    // No node is open.
    static constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

    static unsigned short HeaderWord(eClass elementClass, unsigned int typeId) noexcept {
        return static_cast<unsigned short>((static_cast<unsigned int>(elementClass) << 12) |
                                           (typeId & 0xFFFu));
    }
    static void PutWord(unsigned char* out, unsigned short word) noexcept {
        out[0] = static_cast<unsigned char>(word >> 8);
        out[1] = static_cast<unsigned char>(word & 0xFFu);
    }

    // Copies length bytes (fewer than 128) of text to out and tells whether
    // they are all ASCII, a machine word at a time with the ends overlapping,
    // as PAL::IsAsciiText checks them. For texts this short a call to memcpy,
    // or the string instructions a compiler expands it to, costs more than
    // the copy.
    static bool CopyAscii(unsigned char* out, const unsigned char* text,
                          std::size_t length) noexcept {
        std::uint64_t any = 0;
        if (length >= 8) {
            auto move8 = [&](std::size_t at) {
                std::uint64_t v;
                std::memcpy(&v, text + at, 8);
                std::memcpy(out + at, &v, 8);
                any |= v;
            };
            for (std::size_t i = 0; length - i > 8; i += 8) move8(i);
            move8(length - 8);
        } else if (length >= 4) {
            std::uint32_t head, tail;
            std::memcpy(&head, text, 4);
            std::memcpy(&tail, text + length - 4, 4);
            std::memcpy(out, &head, 4);
            std::memcpy(out + length - 4, &tail, 4);
            any = head | tail;
        } else {
            for (std::size_t i = 0; i < length; ++i) {
                out[i] = text[i];
                any |= text[i];
            }
        }
        return (any & 0x8080808080808080ull) == 0;
    }

    // Where the next element would start in the written stream: the body so
    // far, less the room kept for node headers, plus the headers of the nodes
    // closed so far (an open node's header is not counted until its length is
    // known). m_hidden is the room less those headers, modulo 2^64: the
    // difference is never negative.
    unsigned long long StreamPosition() const noexcept { return m_body.size - m_hidden; }

    // REQUIRES: a record and room bytes of body are free.
    void Open(unsigned int typeId, unsigned char room) noexcept {
        const std::size_t rank = m_nodes.count;
        NodeRecord& node = m_nodes.data[rank];
        node.bodyOffset = m_body.size;
        node.mark = StreamPosition();
        node.parent = m_innermost;
        node.typeId = typeId;
        node.word = HeaderWord(Node, typeId);
        node.room = room;
        node.headerSize = 0;
        m_nodes.count = rank + 1;
        m_body.size += room;
        m_hidden += room;
        m_innermost = rank;
    }

    // Fixed-size leaves: header word, a one-byte length field, Width bytes.
    template <unsigned int Width>
    bool Fixed(eClass elementClass, unsigned int typeId, unsigned int bits) {
        if (m_body.capacity - m_body.size < 3 + Width) {
            return FixedGrowing(elementClass, typeId, bits, Width);
        }
        PutFixed(m_body.data.get() + m_body.size, elementClass, typeId, bits, Width);
        m_body.size += 3 + Width;
        return true;
    }
    static void PutFixed(unsigned char* out, eClass elementClass, unsigned int typeId,
                         unsigned int bits, unsigned int width) noexcept {
        PutWord(out, HeaderWord(elementClass, typeId));
        out[2] = static_cast<unsigned char>(width);
        for (unsigned int i = width; i > 0; --i) {
            out[2 + i] = static_cast<unsigned char>(bits & 0xFFu);
            bits >>= 8;
        }
    }

    bool NodeBeginGrowing(unsigned int typeId, unsigned char room);
    bool NodeEndRefused();
    bool FixedGrowing(eClass elementClass, unsigned int typeId, unsigned int bits,
                      unsigned int width);
    bool LeafStringChecked(unsigned int typeId, const char* text, std::size_t size);
    bool LeafStringRepaired(unsigned int typeId, const char* text, unsigned int length);
    bool Value(eClass elementClass, unsigned int typeId, const void* bytes, unsigned int length,
               bool terminate);
    unsigned char* Room(std::size_t count) noexcept;
    unsigned char* Grow(std::size_t count) noexcept;
    void Discard() noexcept;

    Bytes m_body;        // leaves, encoded, and room for node headers, in stream order
    Bytes m_output;      // the last stream handed out
    Records m_nodes;     // every node, in stream order
    Records m_previous;  // the nodes of the last stream written
    // The open nodes are a chain through NodeRecord::parent from the innermost.
    std::size_t m_innermost = kNone;
    unsigned long long m_hidden = 0;       // see StreamPosition
    unsigned long long m_largestNode = 0;  // largest content of a closed node
    bool m_guessMissed = false;            // some closed node's header differs from its room
};

}  // namespace ParserCreatorCollection

#endif
