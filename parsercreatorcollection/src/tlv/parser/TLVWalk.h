#ifndef PIMTLV_TLV_TLVWALK_H
#define PIMTLV_TLV_TLVWALK_H

// The walk of CTLVParser, written once for any target: CTLVParser's own Parse
// runs it over ITLV, and a parser that is its own target runs it over its own
// class, so that the calls for each element bind statically.

#include "parsercreatorcollection/src/tlv/parser/TLVParser.h"
#include "platform/Utf8.h"

namespace ParserCreatorCollection {

template <typename Target>
bool CTLVParser::ParseInto(Target& target, const void* data, const unsigned int& length,
                           const char*& errorText, unsigned int& consumed) {
    start(data, length, errorText, consumed);
    if (data == nullptr) return false;
    const bool ok = walk(target, length);
    finish(consumed);
    return ok;
}

// The node walk. Each open node is a frame with its end offset; the innermost
// end is the limit of every read, so a child can never run past its parent and
// no read can leave the stream. The position and that limit live in locals
// for the whole walk (a target's calls cannot move them; m_position is set
// before each call, so a derived parser may still ask where the walk is), and
// the header and value reads are written out here rather than through the
// reading helpers, leaving the same position behind on every path: at the
// element's first byte when its header cannot be read, after the header when
// its value cannot, after the value otherwise.
template <typename Target>
bool CTLVParser::walk(Target& target, unsigned int limit) {
    const unsigned char* const data = m_data;
    const std::size_t base = m_stack.size();
    unsigned int pos = m_position;
    const unsigned int outerEnd = pos + (limit < remaining(m_length) ? limit : remaining(m_length));
    unsigned int end = outerEnd;
    bool ok = true;
    for (;;) {
        if (pos == end) {
            if (m_stack.size() == base) break;
            const unsigned int closed = m_stack.back().typeId;
            m_stack.pop_back();
            end = m_stack.size() > base ? m_stack.back().end : outerEnd;
            m_position = pos;
            target.NodeEnd(closed);
            continue;
        }
        // Header: the word and the length field's lead byte, then the rest of
        // a long length field.
        const unsigned int left = end - pos;
        if (left < 3) {
            ok = false;
            break;
        }
        const unsigned int word = (static_cast<unsigned int>(data[pos]) << 8) | data[pos + 1];
        const unsigned int lead = data[pos + 2];
        unsigned int length = lead;
        unsigned int headerSize = 3;
        if (lead >= 0x80) {
            const unsigned int n = lead & 0x7Fu;
            if (n == 0 || left - 3 < n) {
                ok = false;
                break;
            }
            length = 0;
            for (unsigned int i = 0; i < n; ++i) {
                // Lengths are 32-bit: shift counts wrap at 32, so a long field
                // cannot widen the value (tolerated, as older writers' fields are).
                length |= static_cast<unsigned int>(data[pos + 3 + i]) << ((8 * (n - 1 - i)) % 32);
            }
            headerSize += n;
        }
        pos += headerSize;
        const auto elementClass = static_cast<eClass>(word >> 12);
        const unsigned int typeId = word & 0xFFFu;
        const unsigned int room = end - pos;
        const unsigned char* const value = data + pos;
        bool answer = false;
        switch (elementClass) {
            case Node:
                if (room < length || !push(typeId, pos + length)) {
                    ok = false;  // too long, or out of memory for the walk itself
                    break;
                }
                end = pos + length;
                m_position = pos;
                target.NodeBegin(typeId);
                continue;
            case Int8:
            case UInt8:
            case Bitfield8:
                if (length != 1 || room < 1) {
                    ok = false;
                    break;
                }
                m_position = pos += 1;
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
                m_position = pos += 2;
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
                m_position = pos += 4;
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
                m_position = pos += length;
                if (elementClass == String) {
                    const char* text = reinterpret_cast<const char*>(value);
                    if (!PAL::IsValidUtf8(text, length)) text = repairText(value, length);
                    answer = text != nullptr && target.LeafString(typeId, text);
                } else if (elementClass == ByteStream) {
                    answer = target.LeafByteStream(typeId, value, length);
                } else {
                    answer = target.Unknown(elementClass, typeId, value, length);
                }
                break;
        }
        if (!ok || !answer) {
            ok = false;
            break;
        }
    }
    m_position = pos;
    while (m_stack.size() > base) {
        const unsigned int closed = m_stack.back().typeId;
        m_stack.pop_back();
        target.NodeEnd(closed);
    }
    return ok;
}

}  // namespace ParserCreatorCollection

#endif
