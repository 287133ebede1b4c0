#include "parsercreatorcollection/src/tlv/parser/TLVParser.h"

#include <new>

#include "platform/Velmor.h"

namespace ParserCreatorCollection {

namespace {

constexpr const char* kModuleName = "TLVParser";
constexpr const char* kSourcePath = "parsercreatorcollection/src/tlv/parser/private/TLVParser";
constexpr const char* kModuleId = "B24F6E0A93C7415D8E2A6F1C0D9B3E57";

enum TraceLine : int {
    LineStringRepaired = 218,
    LineStringCopy = 224,
    LineStringPurge = 234,
};

void Trace(int level, int line) {
    Velmor_TraceOut_trace(level, kModuleName, 0, kSourcePath, kModuleId, line, nullptr);
}

}  // namespace

CTLVParser::CTLVParser(ITLV& target) : m_target(target) {}

CTLVParser::~CTLVParser() = default;

bool CTLVParser::Parse(const void* data, const unsigned int& length, const char*& errorText,
                       unsigned int& consumed) {
    consumed = 0;
    m_errorText[0] = 0;
    errorText = m_errorText;
    m_data = static_cast<const unsigned char*>(data);
    m_length = length;
    m_position = 0;
    m_end = length;
    if (data == nullptr) return false;
    const bool ok = parseBuffer(length);
    consumed = m_position;
    m_repaired.clear();
    return ok;
}

bool CTLVParser::readU8(const unsigned int& size, unsigned char& value) {
    if (size != 1 || remaining(m_end) < 1) return false;
    value = m_data[m_position];
    m_position += 1;
    return true;
}

bool CTLVParser::readU16(const unsigned int& size, unsigned short& value) {
    if (size != 2 || remaining(m_end) < 2) return false;
    const unsigned char* p = m_data + m_position;
    value = static_cast<unsigned short>((p[0] << 8) | p[1]);
    m_position += 2;
    return true;
}

bool CTLVParser::readU32(const unsigned int& size, unsigned int& value) {
    if (size != 4 || remaining(m_end) < 4) return false;
    const unsigned char* p = m_data + m_position;
    value = (static_cast<unsigned int>(p[0]) << 24) | (static_cast<unsigned int>(p[1]) << 16) |
            (static_cast<unsigned int>(p[2]) << 8) | p[3];
    m_position += 4;
    return true;
}

bool CTLVParser::readL(unsigned int& length, unsigned int& fieldSize) {
    if (remaining(m_end) < 1) return false;
    const unsigned int lead = m_data[m_position];
    if (lead < 0x80) {
        length = lead;
        fieldSize = 1;
        m_position += 1;
        return true;
    }
    const unsigned int n = lead & 0x7Fu;
    if (n == 0 || remaining(m_end) - 1 < n) return false;
    unsigned int value = 0;
    const unsigned char* p = m_data + m_position + 1;
    for (unsigned int i = 0; i < n; ++i) {
        // Lengths are 32-bit: shift counts wrap at 32, so a long field cannot
        // widen the value (tolerated, as older writers' fields are).
        value |= static_cast<unsigned int>(p[i]) << ((8 * (n - 1 - i)) % 32);
    }
    length = value;
    fieldSize = n + 1;
    m_position += n + 1;
    return true;
}

bool CTLVParser::parseTL(eClass& elementClass, unsigned int& typeId, unsigned int& headerSize,
                         unsigned int& length) {
    const unsigned int start = m_position;
    if (remaining(m_end) < 2) return false;
    const unsigned int word = (static_cast<unsigned int>(m_data[start]) << 8) | m_data[start + 1];
    m_position += 2;
    unsigned int fieldSize = 0;
    if (!readL(length, fieldSize)) {
        m_position = start;
        return false;
    }
    elementClass = static_cast<eClass>(word >> 12);
    typeId = word & 0xFFFu;
    headerSize = 2 + fieldSize;
    return true;
}

bool CTLVParser::deliverRepaired(unsigned int typeId, const unsigned char* value,
                                 unsigned int length) {
    const char* text = reinterpret_cast<const char*>(value);
    Trace(2, LineStringRepaired);
    std::unique_ptr<char[]> copy(new (std::nothrow) char[length + 1]);
    if (!copy) {
        Trace(3, LineStringCopy);
        return false;
    }
    Velmor_PAL_memcpy(copy.get(), text, length);
    copy[length] = 0;
    if (Velmor_UTF8_rfc3629_purge_string(copy.get(), length, 63) == 0) {
        Trace(3, LineStringPurge);
        return false;
    }
    // The repaired text lives until Parse returns, so a target may keep the
    // pointer for as long as it keeps pointers into the stream itself.
    const char* repaired = copy.get();
    try {
        m_repaired.push_back(std::move(copy));
    } catch (...) {
        Trace(3, LineStringCopy);
        return false;
    }
    return m_target.LeafString(typeId, repaired);
}

// The node walk. Each open node is a frame with its end offset; the innermost
// end is the limit of every read, so a child can never run past its parent and
// no read can leave the stream. The position and that limit live in locals
// for the whole walk (a target's calls cannot move them; m_position is set
// before each call, so a derived parser may still ask where the walk is), and
// the header and value reads are written out here rather than through the
// helpers above, leaving the same position behind on every path: at the
// element's first byte when its header cannot be read, after the header when
// its value cannot, after the value otherwise.
bool CTLVParser::parseBuffer(const unsigned int& limit) {
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
            m_target.NodeEnd(closed);
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
                if (room < length) {
                    ok = false;
                    break;
                }
                try {
                    m_stack.push_back(Frame{typeId, pos + length});
                } catch (...) {
                    ok = false;  // out of memory for the walk itself
                    break;
                }
                end = pos + length;
                m_position = pos;
                m_target.NodeBegin(typeId);
                continue;
            case Int8:
            case UInt8:
            case Bitfield8:
                if (length != 1 || room < 1) {
                    ok = false;
                    break;
                }
                m_position = pos += 1;
                answer = elementClass == UInt8 ? m_target.LeafUInt8(typeId, value[0])
                         : elementClass == Int8
                             ? m_target.LeafInt8(typeId, static_cast<signed char>(value[0]))
                             : m_target.LeafBitfield8(typeId, value[0]);
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
                answer = elementClass == UInt16  ? m_target.LeafUInt16(typeId, v)
                         : elementClass == Int16 ? m_target.LeafInt16(typeId, static_cast<short>(v))
                                                 : m_target.LeafBitfield16(typeId, v);
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
                answer = elementClass == UInt32 ? m_target.LeafUInt32(typeId, v)
                                                : m_target.LeafInt32(typeId, static_cast<int>(v));
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
                    answer = Velmor_UTF8_rfc3629_check_string(text, length, 0) != 0
                                 ? m_target.LeafString(typeId, text)
                                 : deliverRepaired(typeId, value, length);
                } else if (elementClass == ByteStream) {
                    answer = m_target.LeafByteStream(typeId, value, length);
                } else {
                    answer = m_target.Unknown(elementClass, typeId, value, length);
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
        m_target.NodeEnd(closed);
    }
    return ok;
}

}  // namespace ParserCreatorCollection
