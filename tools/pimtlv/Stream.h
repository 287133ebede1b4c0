#ifndef PIMTLV_TOOL_STREAM_H
#define PIMTLV_TOOL_STREAM_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Tool.h"
#include "bridges/common/ItemStreams.h"

namespace PimTool {

constexpr unsigned int kNoParent = 0xFFFFFFFFu;

// One element header as the stream holds it.
using Header = PimBridge::ElementHeader;

// Reads the header at pos, reading nothing at or past limit. On failure
// returns false and reason says why, in words, for a person reading a dump.
bool ReadHeader(const std::uint8_t* data, std::size_t limit, std::size_t pos, Header& header,
                std::string* reason);

// Fixed value size of a class, or 0 for the variable-size ones.
unsigned int FixedSize(unsigned int elementClass);

// Class name as a person reads it in a dump: "Node", "Byte Stream",
// "Class 12" for the undefined classes.
std::string ClassName(unsigned int elementClass);

// Why the walk cannot go on at the element starting at offset: its header,
// its declared length against what is left of its enclosing node or of the
// stream, its class's size, a text's terminator.
std::string DescribeFault(ByteView data, std::size_t offset);

// One element as the walk meets it.
struct Element {
    std::size_t offset = 0;
    unsigned int depth = 0;
    unsigned int parentId = kNoParent;  // innermost enclosing node, if any
    Header header;
    const std::uint8_t* value = nullptr;  // the value bytes in the stream
    long long number = 0;                 // decoded value of the numeric classes
};

class ElementSink {
  public:
    virtual ~ElementSink() = default;
    virtual void OnElement(const Element& element) = 0;
};

// Where a walk stopped on a malformed stream.
struct Fault {
    bool present = false;
    std::size_t offset = 0;
    std::string reason;
};

// Walks the bytes from offset from to offset to (the end: all of them) with
// the library's parser, handing every element to sink (which may be null);
// offsets are those in data. Returns the fault, if there is one; everything
// before it has been handed out.
Fault WalkStream(ByteView data, ElementSink* sink, std::size_t from = 0,
                 std::size_t to = static_cast<std::size_t>(-1));

// The root node and the first node inside it, which together tell the item.
struct StreamFrame {
    bool hasRoot = false;
    unsigned int root = 0;
    bool hasComponent = false;
    unsigned int component = 0;
};
StreamFrame ReadFrame(ByteView data);

}  // namespace PimTool

#endif
