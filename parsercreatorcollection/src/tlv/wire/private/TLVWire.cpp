#include "parsercreatorcollection/src/tlv/wire/TLVWire.h"

namespace ParserCreatorCollection {

std::string ElementClassName(unsigned int elementClass) {
    if (elementClass == Node) return "Node";
    const char* name = ClassDisplayName(elementClass);
    return name != nullptr ? name : "Class " + std::to_string(elementClass);
}

ItemFrame ReadItemFrame(const std::uint8_t* data, std::size_t size) noexcept {
    ItemFrame frame;
    ElementHeader root;
    if (data == nullptr || ReadElementHeader(data, size, root) != HeaderFault::None ||
        root.elementClass != Node) {
        return frame;
    }
    frame.hasRoot = true;
    frame.root = root.typeId;
    const std::size_t rootEnd = std::size_t{root.headerSize} + root.length;
    const std::size_t end = rootEnd < size ? rootEnd : size;
    std::size_t pos = root.headerSize;
    ElementHeader child;
    while (pos < end && ReadElementHeader(data + pos, end - pos, child) == HeaderFault::None) {
        if (child.elementClass == Node) {
            frame.hasComponent = true;
            frame.component = child.typeId;
            break;
        }
        pos += child.headerSize + std::size_t{child.length};
    }
    return frame;
}

CutFault ReadItemSpan(const std::uint8_t* data, std::size_t size, std::size_t pos,
                      ItemSpan& item) noexcept {
    ElementHeader root;
    if (data == nullptr || pos >= size ||
        ReadElementHeader(data + pos, size - pos, root) != HeaderFault::None) {
        return CutFault::Header;
    }
    if (root.elementClass != Node) return CutFault::NotANode;
    if (size - pos - root.headerSize < root.length) return CutFault::PastTheEnd;
    item.offset = pos;
    item.size = root.headerSize + std::size_t{root.length};
    item.frame = ReadItemFrame(data + pos, item.size);
    return CutFault::None;
}

std::string DescribeCutFault(const std::uint8_t* data, std::size_t size, std::size_t pos) {
    ItemSpan item;
    switch (ReadItemSpan(data, size, pos, item)) {
        case CutFault::None:
            return std::string();
        case CutFault::NotANode:
            return "an item starts with a node, not an element of class " +
                   std::to_string(data[pos] >> 4);
        case CutFault::PastTheEnd:
            return "the item declares more bytes than the file holds";
        case CutFault::Header:
            break;
    }
    ElementHeader root;
    const std::size_t left = data != nullptr && pos < size ? size - pos : 0;
    switch (left == 0 ? HeaderFault::WordCut : ReadElementHeader(data + pos, left, root)) {
        case HeaderFault::LengthNoCount:
            return "length field 0x80 holds no length";
        case HeaderFault::LengthCut:
            return "length field cut short";
        default:
            return "header cut short";
    }
}

}  // namespace ParserCreatorCollection
