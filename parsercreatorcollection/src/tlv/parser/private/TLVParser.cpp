#include "parsercreatorcollection/src/tlv/parser/TLVParser.h"

#include <new>

#include "parsercreatorcollection/src/tlv/parser/TLVWalk.h"
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

void CTLVParser::start(const void* data, unsigned int length, const char*& errorText,
                       unsigned int& consumed) noexcept {
    consumed = 0;
    m_errorText[0] = 0;
    errorText = m_errorText;
    m_data = static_cast<const unsigned char*>(data);
    m_length = length;
    m_position = 0;
    m_end = length;
    m_element = 0;
    m_error = TLVError();
}

void CTLVParser::finish(unsigned int& consumed) noexcept {
    consumed = m_position;
    m_repaired.clear();
}

bool CTLVParser::pushGrowing(Frame frame) noexcept {
    try {
        m_stack.push_back(frame);
    } catch (...) {
        return false;
    }
    return true;
}

bool CTLVParser::Parse(const void* data, const unsigned int& length, const char*& errorText,
                       unsigned int& consumed) {
    return ParseInto(m_target, data, length, errorText, consumed);
}

bool CTLVParser::parseBuffer(const unsigned int& limit) {
    return walk(m_target, limit);
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
    std::uint32_t value = 0;
    unsigned int size = 0;
    if (ReadLengthField(m_data + m_position, remaining(m_end), value, size) != HeaderFault::None) {
        return false;
    }
    length = value;
    fieldSize = size;
    m_position += size;
    return true;
}

bool CTLVParser::parseTL(eClass& elementClass, unsigned int& typeId, unsigned int& headerSize,
                         unsigned int& length) {
    ElementHeader h;
    if (ReadElementHeader(m_data + m_position, remaining(m_end), h) != HeaderFault::None) {
        return false;
    }
    elementClass = static_cast<eClass>(h.elementClass);
    typeId = h.typeId;
    headerSize = h.headerSize;
    length = h.length;
    m_position += h.headerSize;
    return true;
}

void CTLVParser::explain(TLVError::Reason why, unsigned int offset, unsigned int end) noexcept {
    using Reason = TLVError::Reason;
    TLVError& e = m_error;
    e = TLVError();
    e.offset = offset;
    // A node that fails is never opened, so the innermost open one encloses it.
    if (!m_stack.empty()) {
        e.inNode = true;
        e.nodeTypeId = m_stack.back().typeId;
        e.nodeOffset = m_stack.back().start;
    }
    if (why == Reason::NoData) {
        e.reason = why;
        return;
    }
    const unsigned int left = end > offset ? end - offset : 0;
    ElementHeader h;
    const HeaderFault fault = ReadElementHeader(m_data + offset, left, h);
    if (fault != HeaderFault::None) {
        e.reason = fault == HeaderFault::WordCut         ? Reason::WordCut
                   : fault == HeaderFault::LengthMissing ? Reason::LengthMissing
                   : fault == HeaderFault::LengthNoCount ? Reason::LengthNoCount
                                                         : Reason::LengthCut;
        e.left = left;
        // For a cut long field, the byte count it announces.
        if (fault == HeaderFault::LengthCut) e.length = m_data[offset + kHeaderWordSize] & 0x7Fu;
        return;
    }
    e.hasElement = true;
    e.elementClass = static_cast<eClass>(h.elementClass);
    e.typeId = h.typeId;
    e.length = h.length;
    e.left = left - h.headerSize;
    const unsigned int fixed = FixedValueSize(h.elementClass);
    if (why != Reason::None) {
        e.reason = why;
    } else if (fixed != 0 && h.length != fixed) {
        e.reason = Reason::WrongFixedSize;
    } else if (h.length > e.left) {
        e.reason = Reason::ValueTooLong;
    } else if (h.elementClass == String) {
        e.reason = h.length == 0 ? Reason::TextEmpty : Reason::TextUnterminated;
    } else {
        e.reason = Reason::OutOfMemory;  // the bytes are sound: the walk itself ran short
    }
}

const char* CTLVParser::repairText(const unsigned char* value, unsigned int length) {
    const char* text = reinterpret_cast<const char*>(value);
    Trace(2, LineStringRepaired);
    std::unique_ptr<char[]> copy(new (std::nothrow) char[length + 1]);
    if (!copy) {
        Trace(3, LineStringCopy);
        return nullptr;
    }
    Velmor_PAL_memcpy(copy.get(), text, length);
    copy[length] = 0;
    if (Velmor_UTF8_rfc3629_purge_string(copy.get(), length, 63) == 0) {
        Trace(3, LineStringPurge);
        return nullptr;
    }
    // The repaired text lives until Parse returns, so a target may keep the
    // pointer for as long as it keeps pointers into the stream itself.
    const char* repaired = copy.get();
    try {
        m_repaired.push_back(std::move(copy));
    } catch (...) {
        Trace(3, LineStringCopy);
        return nullptr;
    }
    return repaired;
}

}  // namespace ParserCreatorCollection
