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

bool CTLVParser::deliverString(unsigned int typeId, const unsigned char* value,
                               unsigned int length) {
    const char* text = reinterpret_cast<const char*>(value);
    if (Velmor_UTF8_rfc3629_check_string(text, length, 0) != 0) {
        return m_target.LeafString(typeId, text);
    }
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

bool CTLVParser::walkLeaf(eClass elementClass, unsigned int typeId, unsigned int length) {
    switch (elementClass) {
        case Int8:
        case UInt8:
        case Bitfield8: {
            unsigned char v = 0;
            if (!readU8(length, v)) return false;
            if (elementClass == Int8) return m_target.LeafInt8(typeId, static_cast<signed char>(v));
            if (elementClass == UInt8) return m_target.LeafUInt8(typeId, v);
            return m_target.LeafBitfield8(typeId, v);
        }
        case Int16:
        case UInt16:
        case Bitfield16: {
            unsigned short v = 0;
            if (!readU16(length, v)) return false;
            if (elementClass == Int16) return m_target.LeafInt16(typeId, static_cast<short>(v));
            if (elementClass == UInt16) return m_target.LeafUInt16(typeId, v);
            return m_target.LeafBitfield16(typeId, v);
        }
        case UInt32:
        case Int32: {
            unsigned int v = 0;
            if (!readU32(length, v)) return false;
            if (elementClass == UInt32) return m_target.LeafUInt32(typeId, v);
            return m_target.LeafInt32(typeId, static_cast<int>(v));
        }
        default:
            break;
    }
    // Variable-size values: the whole value must lie within the limit.
    if (remaining(m_end) < length) return false;
    const unsigned char* value = m_data + m_position;
    if (elementClass == String) {
        // A text value carries its own terminator; without it a receiver would
        // read past the value.
        if (length == 0 || value[length - 1] != 0) return false;
        m_position += length;
        return deliverString(typeId, value, length);
    }
    m_position += length;
    if (elementClass == ByteStream) return m_target.LeafByteStream(typeId, value, length);
    return m_target.Unknown(elementClass, typeId, value, length);
}

// The helpers stay exported for derived parsers; inside the walk they are
// inlined, since they run once or more per element.
#if defined(__GNUC__)
__attribute__((flatten))
#endif
bool CTLVParser::parseBuffer(const unsigned int& limit) {
    // Iterative node walk. Each open node is a frame with its end offset; the
    // innermost end is the limit of every read, so a child can never run past
    // its parent and no read can leave the stream.
    const std::size_t base = m_stack.size();
    const unsigned int outerEnd =
        m_position + (limit < remaining(m_length) ? limit : remaining(m_length));
    const unsigned int savedEnd = m_end;
    bool ok = true;
    for (;;) {
        while (m_stack.size() > base && m_position == m_stack.back().end) {
            const unsigned int typeId = m_stack.back().typeId;
            m_stack.pop_back();
            m_target.NodeEnd(typeId);
        }
        m_end = m_stack.size() > base ? m_stack.back().end : outerEnd;
        if (m_position >= m_end) break;
        eClass elementClass = Int8;
        unsigned int typeId = 0;
        unsigned int headerSize = 0;
        unsigned int length = 0;
        if (!parseTL(elementClass, typeId, headerSize, length)) {
            ok = false;
            break;
        }
        if (elementClass == Node) {
            if (remaining(m_end) < length) {
                ok = false;
                break;
            }
            try {
                m_stack.push_back(Frame{typeId, m_position + length});
            } catch (...) {
                ok = false;  // out of memory for the walk itself
                break;
            }
            m_target.NodeBegin(typeId);
            continue;
        }
        if (!walkLeaf(elementClass, typeId, length)) {
            ok = false;
            break;
        }
    }
    while (m_stack.size() > base) {
        const unsigned int typeId = m_stack.back().typeId;
        m_stack.pop_back();
        m_target.NodeEnd(typeId);
    }
    m_end = savedEnd;
    return ok;
}

}  // namespace ParserCreatorCollection
