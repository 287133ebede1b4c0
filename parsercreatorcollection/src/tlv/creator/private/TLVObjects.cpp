#include "parsercreatorcollection/src/tlv/creator/TLVObjects.h"

#include <cstring>
#include <new>
#include <vector>

#include "platform/Velmor.h"

namespace ParserCreatorCollection {

namespace {

// Big-endian placement of a value of Width bytes.
template <unsigned int Width, typename Value>
unsigned char* PutBigEndian(unsigned char* out, Value value) {
    auto bits = static_cast<unsigned int>(value);
    for (unsigned int i = Width; i > 0; --i) {
        out[i - 1] = static_cast<unsigned char>(bits & 0xFFu);
        bits >>= 8;
    }
    return out + Width;
}

}  // namespace

const char* ClassDisplayName(unsigned int elementClass) noexcept {
    static constexpr const char* kNames[] = {"Int8",       "Int16",      "UInt8",  "UInt16",
                                             "Bitfield8",  "Bitfield16", "String", "Byte Stream",
                                             "Node Begin", "UInt32",     "Int32"};
    static_assert(sizeof kNames / sizeof kNames[0] == Int32 + 1, "one name per defined class");
    return elementClass <= Int32 ? kNames[elementClass] : nullptr;
}

// ---- CTLVObject -------------------------------------------------------------

CTLVObject::~CTLVObject() = default;

unsigned int CTLVObject::WriteLongLengthField(unsigned int length, unsigned char* out) noexcept {
    unsigned int n = 1;
    while (n < 4 && (length >> (8 * n)) != 0) ++n;
    if (out != nullptr) {
        out[0] = static_cast<unsigned char>(0x80u | n);
        for (unsigned int i = 1; i <= n; ++i) {
            out[i] = static_cast<unsigned char>((length >> (8 * (n - i))) & 0xFFu);
        }
    }
    return n + 1;
}

unsigned short CTLVObject::HostToTLV16(const unsigned short& value) noexcept {
    if (Velmor_PAL_GetEndianess() != 0) return value;
    return static_cast<unsigned short>(((value & 0xFFu) << 8) | (value >> 8));
}

unsigned int CTLVObject::HostToTLV32(const unsigned int& value) noexcept {
    if (Velmor_PAL_GetEndianess() != 0) return value;
    return ((value & 0xFFu) << 24) | ((value & 0xFF00u) << 8) | ((value >> 8) & 0xFF00u) |
           (value >> 24);
}

unsigned int CTLVObject::GetLength() const {
    const unsigned int value = GetValueLength();
    return 2 + WriteLengthField(value, nullptr) + value;
}

unsigned char* CTLVObject::EncodeHeader(unsigned char* out,
                                        unsigned int valueLength) const noexcept {
    const unsigned int word = (static_cast<unsigned int>(m_class) << 12) | (m_typeId & 0xFFFu);
    out[0] = static_cast<unsigned char>(word >> 8);
    out[1] = static_cast<unsigned char>(word & 0xFFu);
    return out + 2 + WriteLengthField(valueLength, out + 2);
}

bool CTLVObject::WriteHeader(PAL::CBuffer& buffer, unsigned int& offset,
                             const eClass& elementClass) const {
    const unsigned short word = static_cast<unsigned short>(
        (static_cast<unsigned int>(elementClass) << 12) | (m_typeId & 0xFFFu));
    const unsigned short wire = HostToTLV16(word);
    unsigned char field[5];
    const unsigned int fieldSize = WriteLengthField(GetValueLength(), field);
    if (!buffer.copyTo(&wire, 2, offset)) return false;
    if (!buffer.copyTo(field, fieldSize, offset + 2)) return false;
    offset += 2 + fieldSize;
    return true;
}

unsigned char* CTLVObject::Encode(unsigned char* out) {
    if (m_isNode) return static_cast<CTLVObjNode*>(this)->EncodeValue(out);
    out = EncodeHeader(out, GetValueLength());
    return EncodeValue(out);
}

bool CTLVObject::WriteToBuffer(PAL::CBuffer& buffer, unsigned int& offset) {
    const unsigned long long total =
        GetClass() == Node ? 2 + WriteLengthField(GetValueLength(), nullptr) +
                                 static_cast<const CTLVObjNode*>(this)->GetContentLength()
                           : GetLength();
    const unsigned long long end = offset + total;
    if ((GetClass() == Node &&
         static_cast<const CTLVObjNode*>(this)->GetContentLength() > MaxValueLength) ||
        end > 0xFFFFFFFFull) {
        return false;
    }
    if (end > buffer.getSize() && !buffer.resize(static_cast<unsigned int>(end))) return false;
    Encode(buffer.getData() + offset);
    offset = static_cast<unsigned int>(end);
    return true;
}

void CTLVObject::Dispose(CTLVObject* object) noexcept {
    if (object == nullptr) return;
    if (object->m_isNode) static_cast<CTLVObjNode*>(object)->DisposeChildren();
    delete object;
}

// ---- CTLVObjNode --------------------------------------------------------------

CTLVObjNode::~CTLVObjNode() {
    DisposeChildren();
}

void CTLVObjNode::DisposeChildren() noexcept {
    // One work list through the sibling links: a node's children are spliced in
    // front of the list before the node goes, so no destructor ever recurses.
    CTLVObject* work = m_firstChild;
    m_firstChild = m_lastChild = nullptr;
    m_childCount = 0;
    m_contentLength = 0;
    while (work != nullptr) {
        CTLVObject* object = work;
        work = object->m_next;
        if (object->m_isNode) {
            auto* node = static_cast<CTLVObjNode*>(object);
            if (node->m_firstChild != nullptr) {
                node->m_lastChild->m_next = work;
                work = node->m_firstChild;
                node->m_firstChild = node->m_lastChild = nullptr;
            }
        }
        Dispose(object);
    }
}

unsigned int CTLVObjNode::GetValueLength() const {
    return m_contentLength > 0xFFFFFFFFull ? 0xFFFFFFFFu
                                           : static_cast<unsigned int>(m_contentLength);
}

bool CTLVObjNode::WriteToBuffer(PAL::CBuffer& buffer, unsigned int& offset) {
    return CTLVObject::WriteToBuffer(buffer, offset);
}

void CTLVObjNode::Append(CTLVObject* child) noexcept {
    Append(child,
           child->m_isNode
               ? 2 + WriteLengthField(static_cast<CTLVObjNode*>(child)->GetValueLength(), nullptr) +
                     static_cast<CTLVObjNode*>(child)->m_contentLength
               : child->GetLength());
}

void CTLVObjNode::Append(CTLVObject* child, unsigned long long size) noexcept {
    child->m_next = nullptr;
    if (m_lastChild == nullptr) {
        m_firstChild = child;
    } else {
        m_lastChild->m_next = child;
    }
    m_lastChild = child;
    ++m_childCount;
    m_contentLength += size;
}

bool CTLVObjNode::Add(CTLVObject* child) {
    if (child == nullptr) return false;
    Append(child);
    return true;
}

unsigned char* CTLVObjNode::EncodeValue(unsigned char* out) {
    // Writes this node's header and its whole subtree, children first-to-last,
    // deleting each child once written. Neither the call stack nor the heap
    // holds the path back up: a node being written has been taken off its
    // parent's child list, so its sibling link is free to point at the parent.
    // REQUIRES: out has room for the subtree (content fits in 32 bits).
    out = EncodeHeader(out, GetValueLength());
    CTLVObjNode* node = this;
    for (;;) {
        CTLVObject* child = node->m_firstChild;
        if (child == nullptr) {
            node->m_lastChild = nullptr;
            node->m_childCount = 0;
            node->m_contentLength = 0;
            if (node == this) break;
            CTLVObjNode* done = node;
            node = static_cast<CTLVObjNode*>(done->m_next);
            done->m_next = nullptr;
            Dispose(done);
            continue;
        }
        node->m_firstChild = child->m_next;
        if (child->m_isNode) {
            auto* inner = static_cast<CTLVObjNode*>(child);
            out = inner->EncodeHeader(out, inner->GetValueLength());
            inner->m_next = node;  // the way back up
            node = inner;
        } else {
            out = child->EncodeHeader(out, child->GetValueLength());
            out = child->EncodeValue(out);
            Dispose(child);
        }
    }
    return out;
}

// ---- numbers ------------------------------------------------------------------

template <eClass Class, typename Value, unsigned int Width>
unsigned char* CTLVObjNumber<Class, Value, Width>::EncodeValue(unsigned char* out) {
    using Unsigned = std::make_unsigned_t<Value>;
    return PutBigEndian<Width>(out, static_cast<Unsigned>(m_value));
}

template class CTLVObjNumber<Int8, signed char, 1>;
template class CTLVObjNumber<Int16, short, 2>;
template class CTLVObjNumber<UInt8, unsigned char, 1>;
template class CTLVObjNumber<UInt16, unsigned short, 2>;
template class CTLVObjNumber<Bitfield8, unsigned char, 1>;
template class CTLVObjNumber<Bitfield16, unsigned short, 2>;
template class CTLVObjNumber<UInt32, unsigned int, 4>;
template class CTLVObjNumber<Int32, int, 4>;

// ---- String -------------------------------------------------------------------

CTLVObjString::CTLVObjString(const unsigned int& typeId, const char* text)
    : CTLVObject(typeId),
      m_owned(text),
      m_text(m_owned.c_str()),
      m_textLength(static_cast<unsigned int>(m_owned.length())) {
    SetClass(String);
}

unsigned char* CTLVObjString::EncodeValue(unsigned char* out) {
    if (m_textLength != 0) std::memcpy(out, m_text, m_textLength);
    out[m_textLength] = 0;
    out += m_textLength + 1;
    // Written once: the text is released before the node deletes the leaf.
    if (!m_owned.isEmpty()) m_owned.clear();
    m_text = m_owned.c_str();
    m_textLength = 0;
    return out;
}

// ---- ByteStream -----------------------------------------------------------------

CTLVObjByteStream::CTLVObjByteStream(const unsigned int& typeId, const void* data,
                                     const unsigned int& length)
    : CTLVObject(typeId), m_owned(0, length == 0 ? 1 : length), m_bytes(nullptr), m_count(0) {
    SetClass(ByteStream);
    if (data != nullptr && length != 0 && m_owned.copyTo(data, length, 0)) {
        m_bytes = m_owned.getData();
        m_count = length;
    }
}

unsigned char* CTLVObjByteStream::EncodeValue(unsigned char* out) {
    if (m_count != 0) std::memcpy(out, m_bytes, m_count);
    return out + m_count;
}

}  // namespace ParserCreatorCollection
