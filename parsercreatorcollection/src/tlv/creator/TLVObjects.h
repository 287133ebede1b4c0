#ifndef PIMTLV_TLV_TLVOBJECTS_H
#define PIMTLV_TLV_TLVOBJECTS_H

#include "parsercreatorcollection/src/tlv/parser/ITLV.h"
#include "platform/CBuffer.h"
#include "platform/CString.h"
#include "platform/PalExport.h"

namespace ParserCreatorCollection {

class CTLVObjNode;

/// One element of a stream waiting to be written: it knows its class, its type
/// ID, its value length and how to write itself. A tree of them is built once,
/// written once (writing consumes it) and then gone.
///
/// An element is owned by whoever holds it, and by the node once handed to
/// CTLVObjNode::Add.
class PIMTLV_API CTLVObject {
  public:
    /// Construction, copying and destruction.
    /// @{
    explicit CTLVObject(const unsigned int& typeId) noexcept : m_typeId(typeId) {}
    virtual ~CTLVObject();
    CTLVObject(const CTLVObject&) = delete;
    CTLVObject& operator=(const CTLVObject&) = delete;
    /// @}

    /// The element's class.
    virtual eClass GetClass() const = 0;
    /// The element's type ID.
    virtual unsigned int GetType() const { return m_typeId; }
    /// Total encoded size: header word, length field and value.
    virtual unsigned int GetLength() const;
    /// Writes the element at offset (growing the buffer) and advances offset.
    /// False, with nothing written, when the buffer cannot grow or the element
    /// is too large for the format.
    virtual bool WriteToBuffer(PAL::CBuffer& buffer, unsigned int& offset);
    /// The length of the value alone.
    virtual unsigned int GetValueLength() const = 0;

    /// Largest value length the format carries: a length field has at most three
    /// bytes after its lead byte. Longer values are refused, never wrapped.
    static constexpr unsigned int MaxValueLength = 0xFFFFFFu;

    /// Writes the shortest length field for length into out (at most 5 bytes;
    /// null out only measures) and returns its size.
    static unsigned int WriteLengthField(const unsigned int& length, unsigned char* out) noexcept {
        if (length < 0x80) {  // the short form, by far the most common
            if (out != nullptr) out[0] = static_cast<unsigned char>(length);
            return 1;
        }
        return WriteLongLengthField(length, out);
    }
    /// REQUIRES: length >= 0x80.
    static unsigned int WriteLongLengthField(unsigned int length, unsigned char* out) noexcept;
    /// Host order to wire order (big-endian), asking the platform for the host's.
    /// @{
    static unsigned short HostToTLV16(const unsigned short& value) noexcept;
    static unsigned int HostToTLV32(const unsigned int& value) noexcept;
    /// @}

  protected:
    /// Each element class names its class once, at construction.
    void SetClass(eClass elementClass) noexcept {
        m_class = static_cast<unsigned char>(elementClass);
        m_isNode = elementClass == Node;
    }

    /// Writes the header word and the length field of this element at offset.
    bool WriteHeader(PAL::CBuffer& buffer, unsigned int& offset, const eClass& elementClass) const;

    /// Writes the value bytes at out, which has GetValueLength() bytes of room,
    /// and returns the position after them. Nodes are written by the node walk
    /// instead and never reach this.
    virtual unsigned char* EncodeValue(unsigned char* out) = 0;

  private:
    friend class CTLVObjNode;
    /// Writes the whole element at out (room for GetLength() bytes), consuming
    /// nodes; returns the position after it.
    unsigned char* Encode(unsigned char* out);
    unsigned char* EncodeHeader(unsigned char* out, unsigned int valueLength) const noexcept;
    /// Deletes an element. Never recurses into nested nodes.
    static void Dispose(CTLVObject* object) noexcept;

    unsigned int m_typeId;
    CTLVObject* m_next = nullptr;  ///< next sibling in the parent's child list
    /// Set by each element class: the walks over a tree ask these for every
    /// element, so they are plain fields rather than virtual GetClass calls.
    bool m_isNode = false;
    unsigned char m_class = 0;
};

/// A node: its value is the encodings of its children, in the order added.
/// Children are kept in an intrusive list (no allocation per child) and the
/// content length is summed as children arrive, so a node's length costs O(1)
/// however deep the tree. Destroying and writing a tree never recurse.
class PIMTLV_API CTLVObjNode : public CTLVObject {
  public:
    /// A node with this type ID and no children.
    explicit CTLVObjNode(const unsigned int& typeId) noexcept : CTLVObject(typeId) {
        SetClass(Node);
    }
    ~CTLVObjNode() override;

    eClass GetClass() const override { return Node; }
    unsigned int GetValueLength() const override;
    /// Writes the node and its subtree, deleting each child once written; the
    /// node is empty afterwards.
    bool WriteToBuffer(PAL::CBuffer& buffer, unsigned int& offset) override;
    /// Appends child and takes ownership of it; false for null. The child's
    /// length is counted when it is added, so add a node once it is complete.
    virtual bool Add(CTLVObject* child);

    /// How many children were added.
    unsigned int GetChildCount() const noexcept { return m_childCount; }
    /// Content length without the 32-bit clamp of GetValueLength.
    unsigned long long GetContentLength() const noexcept { return m_contentLength; }

  protected:
    unsigned char* EncodeValue(unsigned char* out) override;

  private:
    friend class CTLVObject;
    void Append(CTLVObject* child) noexcept;
    /// REQUIRES: size is the child's total encoded size.
    void Append(CTLVObject* child, unsigned long long size) noexcept;
    void DisposeChildren() noexcept;

    CTLVObject* m_firstChild = nullptr;
    CTLVObject* m_lastChild = nullptr;
    unsigned int m_childCount = 0;
    unsigned long long m_contentLength = 0;
};

/// Fixed-size numeric leaves share one shape: a class, a value type and a
/// width on the wire.
template <eClass Class, typename Value, unsigned int Width>
class PIMTLV_API CTLVObjNumber : public CTLVObject {
  public:
    /// A leaf with this type ID and value.
    CTLVObjNumber(const unsigned int& typeId, const Value& value) noexcept
        : CTLVObject(typeId), m_value(value) {
        SetClass(Class);
    }
    eClass GetClass() const override { return Class; }
    unsigned int GetValueLength() const override { return Width; }
    /// The number.
    const Value& GetValue() const noexcept { return m_value; }

  protected:
    unsigned char* EncodeValue(unsigned char* out) override;

  private:
    Value m_value;
};

using CTLVObjInt8 = CTLVObjNumber<Int8, signed char, 1>;
using CTLVObjInt16 = CTLVObjNumber<Int16, short, 2>;
using CTLVObjUInt8 = CTLVObjNumber<UInt8, unsigned char, 1>;
using CTLVObjUInt16 = CTLVObjNumber<UInt16, unsigned short, 2>;
using CTLVObjBitfield8 = CTLVObjNumber<Bitfield8, unsigned char, 1>;
using CTLVObjBitfield16 = CTLVObjNumber<Bitfield16, unsigned short, 2>;
using CTLVObjUInt32 = CTLVObjNumber<UInt32, unsigned int, 4>;
using CTLVObjInt32 = CTLVObjNumber<Int32, int, 4>;

extern template class PIMTLV_API CTLVObjNumber<Int8, signed char, 1>;
extern template class PIMTLV_API CTLVObjNumber<Int16, short, 2>;
extern template class PIMTLV_API CTLVObjNumber<UInt8, unsigned char, 1>;
extern template class PIMTLV_API CTLVObjNumber<UInt16, unsigned short, 2>;
extern template class PIMTLV_API CTLVObjNumber<Bitfield8, unsigned char, 1>;
extern template class PIMTLV_API CTLVObjNumber<Bitfield16, unsigned short, 2>;
extern template class PIMTLV_API CTLVObjNumber<UInt32, unsigned int, 4>;
extern template class PIMTLV_API CTLVObjNumber<Int32, int, 4>;

/// A text leaf: the UTF-8 bytes and one terminating zero byte. A null text is
/// the empty text. Writing releases the text.
class PIMTLV_API CTLVObjString : public CTLVObject {
  public:
    /// Construction, copying and destruction.
    /// @{
    CTLVObjString(const unsigned int& typeId, const char* text);
    /// @}
    eClass GetClass() const override { return String; }
    unsigned int GetValueLength() const override { return m_textLength + 1; }
    /// The text, as stored (repaired when it was not UTF-8).
    const char* GetText() const noexcept { return m_text; }

  protected:
    unsigned char* EncodeValue(unsigned char* out) override;

  private:
    PAL::CString m_owned;
    const char* m_text;
    unsigned int m_textLength;
};

/// A byte-stream leaf: the bytes as given, no terminator.
class PIMTLV_API CTLVObjByteStream : public CTLVObject {
  public:
    /// Construction, copying and destruction.
    /// @{
    CTLVObjByteStream(const unsigned int& typeId, const void* data, const unsigned int& length);
    /// @}
    eClass GetClass() const override { return ByteStream; }
    unsigned int GetValueLength() const override { return m_count; }
    /// The bytes.
    const void* GetBytes() const noexcept { return m_bytes; }

  protected:
    unsigned char* EncodeValue(unsigned char* out) override;

  private:
    PAL::CBuffer m_owned;
    const unsigned char* m_bytes;
    unsigned int m_count;
};

}  // namespace ParserCreatorCollection

#endif
