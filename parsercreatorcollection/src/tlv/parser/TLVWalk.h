#ifndef PIMTLV_TLV_TLVWALK_H
#define PIMTLV_TLV_TLVWALK_H

// The walk of CTLVParser, written once for any target: CTLVParser's own Parse
// runs it over ITLV, and a parser that is its own target runs it over its own
// class, so that the calls for each element bind statically.

#include <type_traits>

#include "parsercreatorcollection/src/tlv/parser/TLVParser.h"
#include "platform/Utf8.h"

namespace ParserCreatorCollection {

// Whether a target may ask, from inside its calls, where the walk is (a
// parser derived from CTLVParser reading through its helpers, or any ITLV):
// true unless the target says otherwise with a constant kReadsPosition, and
// then the walk spares itself a store per element.
template <typename Target, typename = void>
struct WalkReportsPosition : std::true_type {};
template <typename Target>
struct WalkReportsPosition<Target, std::void_t<decltype(Target::kReadsPosition)>>
    : std::bool_constant<Target::kReadsPosition> {};

template <typename Target>
bool CTLVParser::ParseInto(Target& target, const void* data, const unsigned int& length,
                           const char*& errorText, unsigned int& consumed) {
    start(data, length, errorText, consumed);
    if (data == nullptr) {
        explain(TLVError::Reason::NoData, 0, 0);
        return false;
    }
    const bool ok = walk(target, length);
    finish(consumed);
    return ok;
}

// The node walk. Each open node is a frame; the innermost node's end is the
// limit of every read, so a child can never run past its parent and no read
// can leave the stream. The position, that limit and the count of nodes this
// walk opened live in locals for the whole walk (a target's calls cannot move
// them), and a frame keeps what its node's end has to give back: the limit
// outside it, its type ID and where its header starts. The value reads are
// written out here rather than through the reading helpers, leaving the same
// position behind on every path: at the element's first byte when its header
// cannot be read, after the header when its value cannot, after the value
// otherwise.
//
// What a walk that goes well pays for the account of one that does not is one
// store per element, its offset (which ElementOffset reports and a stop
// explains); every way out before the end is explained once, after the loop,
// from the bytes of the element where it stopped. Texts come first in the
// dispatch because most elements of an item are texts.
template <typename Target>
bool CTLVParser::walk(Target& target, unsigned int limit) {
    using Reason = TLVError::Reason;
    const unsigned char* const data = m_data;
    unsigned int pos = m_position;
    unsigned int end = pos + (limit < remaining(m_length) ? limit : remaining(m_length));
    std::size_t depth = 0;
    Reason why = Reason::None;  // what the bytes cannot tell: the target's refusal, memory
    bool ok = false;            // set at the one way out that is not a stop
    constexpr bool report = WalkReportsPosition<Target>::value;
    for (;;) {
        if (pos == end) {
            if (depth == 0) {
                ok = true;
                break;
            }
            --depth;
            const Frame closed = m_stack.back();
            m_stack.pop_back();
            end = closed.outerEnd;
            if constexpr (report) {
                m_position = pos;
                m_element = closed.start;
            }
            target.NodeEnd(closed.typeId);
            continue;
        }
        m_element = pos;
        ElementHeader h;
        if (ReadElementHeader(data + pos, end - pos, h) != HeaderFault::None) break;
        const unsigned int length = h.length;
        const unsigned int typeId = h.typeId;
        const auto elementClass = static_cast<eClass>(h.elementClass);
        const unsigned int at = pos;
        pos += h.headerSize;
        const unsigned int room = end - pos;
        const unsigned char* const value = data + pos;
        bool answer;
        if (elementClass == String) {
            // The whole value within the limit, and its own terminator, without
            // which a receiver would read past the value.
            if (room < length || length == 0 || value[length - 1] != 0) break;
            pos += length;
            if constexpr (report) m_position = pos;
            const char* text = reinterpret_cast<const char*>(value);
            if (!PAL::IsValidUtf8(text, length)) {
                text = repairText(value, length);
                if (text == nullptr) {
                    why = Reason::OutOfMemory;
                    break;
                }
            }
            answer = target.LeafString(typeId, text);
        } else if (elementClass == Node) {
            if (room < length) break;
            if (!push(Frame{typeId, at, end})) {
                why = Reason::OutOfMemory;
                break;
            }
            ++depth;
            end = pos + length;
            if constexpr (report) m_position = pos;
            target.NodeBegin(typeId);
            continue;
        } else {
            const unsigned int fixed = FixedValueSize(elementClass);
            if (fixed != 0 ? length != fixed || room < fixed : room < length) break;
            pos += length;
            if constexpr (report) m_position = pos;
            answer = leaf(target, elementClass, typeId, value, length);
        }
        if (!answer) {
            why = Reason::TargetStopped;
            break;
        }
    }
    m_position = pos;
    if (!ok) explain(why, m_element, end);  // while the enclosing nodes are still open
    for (; depth > 0; --depth) {
        const Frame closed = m_stack.back();
        m_stack.pop_back();
        if constexpr (report) m_element = closed.start;
        target.NodeEnd(closed.typeId);
    }
    return ok;
}

// One leaf of a class other than String and Node, its size already checked,
// reported to target.
template <typename Target>
bool CTLVParser::leaf(Target& target, eClass elementClass, unsigned int typeId,
                      const unsigned char* value, unsigned int length) {
    const auto u16 = [value] { return static_cast<unsigned short>((value[0] << 8) | value[1]); };
    switch (elementClass) {
        case Int8:
            return target.LeafInt8(typeId, static_cast<signed char>(value[0]));
        case UInt8:
            return target.LeafUInt8(typeId, value[0]);
        case Bitfield8:
            return target.LeafBitfield8(typeId, value[0]);
        case Int16:
            return target.LeafInt16(typeId, static_cast<short>(u16()));
        case UInt16:
            return target.LeafUInt16(typeId, u16());
        case Bitfield16:
            return target.LeafBitfield16(typeId, u16());
        case UInt32:
        case Int32: {
            const unsigned int v = (static_cast<unsigned int>(u16()) << 16) |
                                   (static_cast<unsigned int>(value[2]) << 8) | value[3];
            return elementClass == UInt32 ? target.LeafUInt32(typeId, v)
                                          : target.LeafInt32(typeId, static_cast<int>(v));
        }
        case ByteStream:
            return target.LeafByteStream(typeId, value, length);
        default:
            return target.Unknown(elementClass, typeId, value, length);
    }
}

}  // namespace ParserCreatorCollection

#endif
