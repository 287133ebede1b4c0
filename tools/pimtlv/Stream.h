#ifndef PIMTLV_TOOL_STREAM_H
#define PIMTLV_TOOL_STREAM_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Tool.h"
#include "parsercreatorcollection/src/tlv/parser/TLVError.h"
#include "parsercreatorcollection/src/tlv/wire/TLVWire.h"

namespace PimTool {

constexpr unsigned int kNoParent = 0xFFFFFFFFu;

// One element header as the stream holds it.
using Header = ParserCreatorCollection::ElementHeader;

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

// Where a walk stopped on a malformed stream, with offsets in the whole input.
struct Fault {
    bool present = false;
    std::size_t offset = 0;
    std::string reason;
};

// The library's account of a stopped walk of bytes that start at base in the
// input, as the tool shows it.
Fault FaultOf(const ParserCreatorCollection::TLVError& error, std::size_t base);

// Walks the bytes from offset from to offset to (the end: all of them) with
// the library's parser, handing every element to sink; offsets are those in
// data. Returns the fault, if there is one; everything before it has been
// handed out.
Fault WalkStream(ByteView data, ElementSink& sink, std::size_t from = 0,
                 std::size_t to = static_cast<std::size_t>(-1));

}  // namespace PimTool

#endif
