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

// The node walk. Each open node is a frame with its end offset; the innermost
// end is the limit of every read, so a child can never run past its parent and
// no read can leave the stream. The position and that limit live in locals
// for the whole walk (a target's calls cannot move them; m_position and the
// element's offset are set before each call for a target that may ask where
// the walk is), and the value reads are written out here rather than through
// the reading helpers, leaving the same position behind on every path: at the
// element's first byte when its header cannot be read, after the header when
// its value cannot, after the value otherwise. Every way out before the end
// is explained once, after the loop, from the element where it stopped: the
// loop itself only notes what the bytes cannot tell (the target's refusal,
// memory), so that a walk that goes well pays only a store of each element's
// offset and a wider node frame for the account.
template <typename Target>
bool CTLVParser::walk(Target& target, unsigned int limit) {
    using Reason = TLVError::Reason;
    const unsigned char* const data = m_data;
    const std::size_t base = m_stack.size();
    unsigned int pos = m_position;
    const unsigned int outerEnd = pos + (limit < remaining(m_length) ? limit : remaining(m_length));
    unsigned int end = outerEnd;
    bool ok = true;
    constexpr bool report = WalkReportsPosition<Target>::value;
    for (;;) {
        if (pos == end) {
            if (m_stack.size() == base) break;
            const unsigned int closed = m_stack.back().typeId;
            if constexpr (report) {
                m_position = pos;
                m_element = m_stack.back().start;
            }
            m_stack.pop_back();
            end = m_stack.size() > base ? m_stack.back().end : outerEnd;
            target.NodeEnd(closed);
            continue;
        }
        // The element's offset goes to memory rather than a register that
        // would have to outlive the target's calls: only a stop reads it.
        const unsigned int at = pos;
        m_element = at;
        ElementHeader h;
        if (ReadElementHeader(data + at, end - at, h) != HeaderFault::None) {
            ok = false;
            break;
        }
        const unsigned int length = h.length;
        pos += h.headerSize;
        const auto elementClass = static_cast<eClass>(h.elementClass);
        const unsigned int typeId = h.typeId;
        const unsigned int room = end - pos;
        const unsigned char* const value = data + pos;
        bool answer = false;
        switch (elementClass) {
            case Node:
                if (room < length) {
                    ok = false;
                    break;
                }
                if (!push(Frame{typeId, at, pos + length})) {
                    m_error.reason = Reason::OutOfMemory;
                    ok = false;
                    break;
                }
                end = pos + length;
                if constexpr (report) m_position = pos;
                target.NodeBegin(typeId);
                continue;
            case Int8:
            case UInt8:
            case Bitfield8:
                if (length != 1 || room < 1) {
                    ok = false;
                    break;
                }
                pos += 1;
                if constexpr (report) m_position = pos;
                answer = elementClass == UInt8 ? target.LeafUInt8(typeId, value[0])
                         : elementClass == Int8
                             ? target.LeafInt8(typeId, static_cast<signed char>(value[0]))
                             : target.LeafBitfield8(typeId, value[0]);
                break;
            case Int16:
            case UInt16:
            case Bitfield16: {
                if (length != 2 || room < 2) {
                    ok = false;
                    break;
                }
                pos += 2;
                if constexpr (report) m_position = pos;
                const auto v = static_cast<unsigned short>((value[0] << 8) | value[1]);
                answer = elementClass == UInt16  ? target.LeafUInt16(typeId, v)
                         : elementClass == Int16 ? target.LeafInt16(typeId, static_cast<short>(v))
                                                 : target.LeafBitfield16(typeId, v);
                break;
            }
            case UInt32:
            case Int32: {
                if (length != 4 || room < 4) {
                    ok = false;
                    break;
                }
                pos += 4;
                if constexpr (report) m_position = pos;
                const unsigned int v = (static_cast<unsigned int>(value[0]) << 24) |
                                       (static_cast<unsigned int>(value[1]) << 16) |
                                       (static_cast<unsigned int>(value[2]) << 8) | value[3];
                answer = elementClass == UInt32 ? target.LeafUInt32(typeId, v)
                                                : target.LeafInt32(typeId, static_cast<int>(v));
                break;
            }
            default:
                // Variable-size values: the whole value must lie within the
                // limit, and a text must carry its own terminator, without which
                // a receiver would read past the value.
                if (room < length ||
                    (elementClass == String && (length == 0 || value[length - 1] != 0))) {
                    ok = false;
                    break;
                }
                pos += length;
                if constexpr (report) m_position = pos;
                if (elementClass == String) {
                    const char* text = reinterpret_cast<const char*>(value);
                    if (!PAL::IsValidUtf8(text, length)) {
                        text = repairText(value, length);
                        if (text == nullptr) {
                            m_error.reason = Reason::OutOfMemory;
                            ok = false;
                            break;
                        }
                    }
                    answer = target.LeafString(typeId, text);
                } else if (elementClass == ByteStream) {
                    answer = target.LeafByteStream(typeId, value, length);
                } else {
                    answer = target.Unknown(elementClass, typeId, value, length);
                }
                break;
        }
        if (!ok || !answer) {
            if (ok) m_error.reason = Reason::TargetStopped;
            ok = false;
            break;
        }
    }
    m_position = pos;
    if (!ok) explain(m_error.reason, m_element, end);  // while the enclosing nodes are still open
    while (m_stack.size() > base) {
        const Frame closed = m_stack.back();
        m_stack.pop_back();
        if constexpr (report) m_element = closed.start;
        target.NodeEnd(closed.typeId);
    }
    return ok;
}

}  // namespace ParserCreatorCollection

#endif
