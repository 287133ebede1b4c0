#ifndef PIMTLV_BRIDGES_COMMON_ITEMSTREAMS_H
#define PIMTLV_BRIDGES_COMMON_ITEMSTREAMS_H

// A file of item streams is the streams one after another, each one complete
// root node: what an import writes, what a bulk export or a sync log holds.
// The item parsers read one item each, so readers of such files cut them at
// the root nodes first. Only headers are read here; the item parser checks
// everything inside.

#include <cstddef>
#include <cstdint>
#include <string>

namespace PimBridge {

// One element header as the stream holds it.
struct ElementHeader {
    unsigned int elementClass = 0;  // top 4 bits of the header word
    unsigned int typeId = 0;        // low 12 bits
    unsigned int headerSize = 0;    // header word and length field
    std::uint32_t length = 0;       // declared value length
};

// Reads the header at pos, touching nothing at or past limit. The long
// length form takes any count of bytes from 1 to 127 and keeps the low 32
// bits, as every reader of the format does; 0x80 alone is no length. On
// failure, why says so in words (when not null).
inline bool ReadElementHeader(const std::uint8_t* data, std::size_t limit, std::size_t pos,
                              ElementHeader& header, std::string* why) {
    const auto fail = [why](const char* text) {
        if (why != nullptr) *why = text;
        return false;
    };
    if (pos > limit || limit - pos < 3) return fail("header cut short");
    const unsigned int word = (unsigned(data[pos]) << 8) | data[pos + 1];
    header.elementClass = word >> 12;
    header.typeId = word & 0xFFFu;
    const unsigned int first = data[pos + 2];
    if (first < 0x80) {
        header.length = first;
        header.headerSize = 3;
        return true;
    }
    const unsigned int n = first & 0x7Fu;
    if (n == 0) return fail("length field 0x80 holds no length");
    if (limit - pos - 3 < n) return fail("length field cut short");
    std::uint32_t length = 0;
    for (unsigned int i = 0; i < n; ++i) {
        length |= std::uint32_t(data[pos + 3 + i]) << ((8u * (n - 1 - i)) % 32u);
    }
    header.length = length;
    header.headerSize = 3 + n;
    return true;
}

// One item of a file of streams.
struct ItemSpan {
    std::size_t offset = 0;
    std::size_t size = 0;        // the root node's whole size
    unsigned int root = 0;       // the root node's type ID
    bool hasComponent = false;   // its first child is a node
    unsigned int component = 0;  // that node's type ID
};

// Reads the item at pos of a file of size bytes. false (why set) when the
// root is no node or its declared size runs past the end of the file.
inline bool ReadItemSpan(const std::uint8_t* data, std::size_t size, std::size_t pos,
                         ItemSpan& item, std::string* why) {
    ElementHeader root;
    if (!ReadElementHeader(data, size, pos, root, why)) return false;
    if (root.elementClass != 8) {
        if (why != nullptr)
            *why = "an item starts with a node, not an element of class " +
                   std::to_string(root.elementClass);
        return false;
    }
    if (size - pos - root.headerSize < root.length) {
        if (why != nullptr) *why = "the item declares more bytes than the file holds";
        return false;
    }
    item.offset = pos;
    item.size = root.headerSize + std::size_t(root.length);
    item.root = root.typeId;
    ElementHeader first;
    const std::size_t body = pos + root.headerSize;
    item.hasComponent = root.length > 0 &&
                        ReadElementHeader(data, item.offset + item.size, body, first, nullptr) &&
                        first.elementClass == 8;
    item.component = item.hasComponent ? first.typeId : 0;
    return true;
}

// Calls onItem(const ItemSpan&) for every item of the file in order, as it
// goes (nothing is kept). Returns false at the first item that cannot be
// cut, with why naming its offset; the items before it have been handed out.
// onItem may answer false to stop early (then the result is true).
template <typename OnItem>
bool ForEachItem(const std::uint8_t* data, std::size_t size, OnItem&& onItem, std::string& why) {
    std::size_t pos = 0;
    while (pos < size) {
        ItemSpan item;
        std::string reason;
        if (!ReadItemSpan(data, size, pos, item, &reason)) {
            why = "item at offset " + std::to_string(pos) + ": " + reason;
            return false;
        }
        if (!onItem(static_cast<const ItemSpan&>(item))) return true;
        pos += item.size;
    }
    return true;
}

}  // namespace PimBridge

#endif
