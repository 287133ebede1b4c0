#ifndef PIMTLV_TLV_WIRE_TLVWIRE_H
#define PIMTLV_TLV_WIRE_TLVWIRE_H

// The wire, read in one place: an element's header word and length field,
// the value sizes the classes fix, and the cut of a file of item streams into
// its items. The parser's walk, the tool and the bridges all read headers
// through these functions, so that they cannot disagree on what a byte means.
// Nothing here allocates, and no function reads at or past the limit it is
// given.

#include <cstddef>
#include <cstdint>
#include <string>

#include "parsercreatorcollection/src/tlv/parser/ITLV.h"

namespace ParserCreatorCollection {

/// Size of the header word (class and type ID) that starts every element.
constexpr unsigned int kHeaderWordSize = 2;
/// Largest value length the writer emits (three length bytes).
constexpr unsigned int kMaxValueLength = 0xFFFFFFu;

/// The value size a class fixes: 1, 2 or 4 for the numeric classes, 0 for the
/// variable-size ones (String, Byte Stream, Node and the undefined classes).
constexpr unsigned int FixedValueSize(unsigned int elementClass) noexcept {
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

/// A class as a person reads it: its display name, "Node" for 8, and
/// "Class 12" for the undefined classes.
PIMTLV_API std::string ElementClassName(unsigned int elementClass);

/// Why a header could not be read.
enum class HeaderFault : unsigned char {
    None,
    WordCut,        ///< fewer than 2 bytes for the header word
    LengthMissing,  ///< the header word, then nothing
    LengthNoCount,  ///< the length field's first byte is 0x80: no byte count
    LengthCut,      ///< a long length field with fewer bytes left than it announces
};

/// One element header as the stream holds it.
struct ElementHeader {
    unsigned int elementClass = 0;  ///< top 4 bits of the header word
    unsigned int typeId = 0;        ///< low 12 bits
    unsigned int headerSize = 0;    ///< header word and length field
    std::uint32_t length = 0;       ///< declared value length
};

/// The value of a long length field's n bytes at p. Lengths are 32-bit:
/// shift counts wrap at 32, so a field of more than four bytes cannot widen
/// the value (tolerated, as older writers' fields are read).
inline std::uint32_t LongLength(const unsigned char* p, unsigned int n) noexcept {
    std::uint32_t value = 0;
    for (unsigned int i = 0; i < n; ++i) {
        value |= static_cast<std::uint32_t>(p[i]) << ((8 * (n - 1 - i)) % 32);
    }
    return value;
}

/// Reads a length field from the left bytes at at. The long form takes any
/// count of bytes from 1 to 127; 0x80 alone holds no length.
inline HeaderFault ReadLengthField(const unsigned char* at, std::size_t left, std::uint32_t& length,
                                   unsigned int& fieldSize) noexcept {
    if (left < 1) return HeaderFault::LengthMissing;
    const unsigned int lead = at[0];
    if (lead < 0x80) {
        length = lead;
        fieldSize = 1;
        return HeaderFault::None;
    }
    const unsigned int n = lead & 0x7Fu;
    if (n == 0) return HeaderFault::LengthNoCount;
    if (left - 1 < n) return HeaderFault::LengthCut;
    length = LongLength(at + 1, n);
    fieldSize = n + 1;
    return HeaderFault::None;
}

/// Reads the header of the element at at, with left bytes readable there.
/// Every element of a walk comes through here, so the short length form (one
/// byte, almost every element) is read first and at once.
inline HeaderFault ReadElementHeader(const unsigned char* at, std::size_t left,
                                     ElementHeader& header) noexcept {
    if (left < kHeaderWordSize + 1) {
        return left < kHeaderWordSize ? HeaderFault::WordCut : HeaderFault::LengthMissing;
    }
    const unsigned int word = (static_cast<unsigned int>(at[0]) << 8) | at[1];
    const unsigned int lead = at[2];
    header.elementClass = word >> 12;
    header.typeId = word & 0xFFFu;
    // Told to the compiler, which would otherwise lay the short form out of
    // the way and jump there and back for nearly every element.
#if defined(__GNUC__)
    if (__builtin_expect(lead < 0x80, 1)) {
#else
    if (lead < 0x80) {
#endif
        header.length = lead;
        header.headerSize = kHeaderWordSize + 1;
        return HeaderFault::None;
    }
    const unsigned int n = lead & 0x7Fu;
    if (n == 0) return HeaderFault::LengthNoCount;
    if (left - (kHeaderWordSize + 1) < n) return HeaderFault::LengthCut;
    header.length = LongLength(at + kHeaderWordSize + 1, n);
    header.headerSize = kHeaderWordSize + 1 + n;
    return HeaderFault::None;
}

/// The root node of an item and the first node inside it, which together tell
/// which item it is. Leaves before that node (an instance number written ahead
/// of the component, say) are passed over, as the item parsers pass them.
struct ItemFrame {
    bool hasRoot = false;        ///< the first element is a node
    unsigned int root = 0;       ///< its type ID
    bool hasComponent = false;   ///< a node lies inside it
    unsigned int component = 0;  ///< that node's type ID
};

/// Reads the frame of the item at the start of size bytes. The root may
/// declare more than there is: its inner nodes are looked for in what there is.
PIMTLV_API ItemFrame ReadItemFrame(const std::uint8_t* data, std::size_t size) noexcept;

/// One item of a file of item streams: a root node and everything inside it.
struct ItemSpan {
    std::size_t offset = 0;  ///< of the root node's header in the file
    std::size_t size = 0;    ///< the root node's whole size
    ItemFrame frame;         ///< what tells its kind
};

/// Why an item could not be cut from a file.
enum class CutFault : unsigned char {
    None,
    Header,      ///< the root's header cannot be read
    NotANode,    ///< the first element is a leaf
    PastTheEnd,  ///< the root declares more bytes than the file holds
};

/// Reads the item at pos of a file of size bytes.
PIMTLV_API CutFault ReadItemSpan(const std::uint8_t* data, std::size_t size, std::size_t pos,
                                 ItemSpan& item) noexcept;

/// Why the item at pos cannot be cut, in words ("header cut short", "an item
/// starts with a node, not an element of class 2"); empty when it can.
PIMTLV_API std::string DescribeCutFault(const std::uint8_t* data, std::size_t size,
                                        std::size_t pos);

/// Calls onItem(const ItemSpan&) for every item of a file in order, as it goes
/// (nothing is kept); onItem answers false to stop early. Returns the fault of
/// the first item that cannot be cut, with its offset in at; the items before
/// it have been handed out. A file of items is what an import writes, what a
/// bulk export or a sync log holds: complete root nodes one after another.
template <typename OnItem>
CutFault ForEachItem(const std::uint8_t* data, std::size_t size, OnItem&& onItem, std::size_t& at) {
    std::size_t pos = 0;
    while (pos < size) {
        ItemSpan item;
        const CutFault fault = ReadItemSpan(data, size, pos, item);
        if (fault != CutFault::None) {
            at = pos;
            return fault;
        }
        if (!onItem(static_cast<const ItemSpan&>(item))) break;
        pos += item.size;
    }
    at = pos;
    return CutFault::None;
}

}  // namespace ParserCreatorCollection

#endif
