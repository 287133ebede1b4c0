#ifndef PIMTLV_TLV_ITLV_H
#define PIMTLV_TLV_ITLV_H

#include "platform/PalExport.h"

namespace ParserCreatorCollection {

/// Element class: the top four bits of an element's header word. The numbers
/// are the wire values; Node is 8 and the 32-bit classes come after it, so the
/// order is not that of the names.
enum eClass : unsigned int {
    Int8 = 0,
    Int16 = 1,
    UInt8 = 2,
    UInt16 = 3,
    Bitfield8 = 4,
    Bitfield16 = 5,
    String = 6,
    ByteStream = 7,
    Node = 8,
    UInt32 = 9,
    Int32 = 10,
    // 11 to 15 are not defined; a reader hands them to ITLV::Unknown.
};

/// The event interface of a TLV stream: one call per node opening and closing,
/// one per leaf with its decoded value, one per element of an undefined class.
/// A parser reports to it; the creator implements it, so a walk can rebuild a
/// stream. Every operation answers true to go on.
class PIMTLV_API ITLV {
  public:
    /// An element of an undefined class (11 to 15) with its raw value bytes.
    virtual bool Unknown(const eClass& elementClass, const unsigned int& typeId, const void* value,
                         const unsigned int& length) = 0;
    /// A node opens; its children follow until the NodeEnd with the same type ID.
    virtual bool NodeBegin(const unsigned int& typeId) = 0;
    /// The innermost open node closes.
    virtual bool NodeEnd(const unsigned int& typeId) = 0;
    /// A signed 8-bit leaf.
    virtual bool LeafInt8(const unsigned int& typeId, const signed char& value) = 0;
    /// A signed 16-bit leaf.
    virtual bool LeafInt16(const unsigned int& typeId, const short& value) = 0;
    /// An unsigned 8-bit leaf.
    virtual bool LeafUInt8(const unsigned int& typeId, const unsigned char& value) = 0;
    /// An unsigned 16-bit leaf.
    virtual bool LeafUInt16(const unsigned int& typeId, const unsigned short& value) = 0;
    /// An 8-bit set of flags.
    virtual bool LeafBitfield8(const unsigned int& typeId, const unsigned char& value) = 0;
    /// A 16-bit set of flags.
    virtual bool LeafBitfield16(const unsigned int& typeId, const unsigned short& value) = 0;
    /// A text leaf: UTF-8 without its closing zero byte, which the text pointer has.
    virtual bool LeafString(const unsigned int& typeId, const char* text) = 0;
    /// A leaf of bytes, handed over as they are.
    virtual bool LeafByteStream(const unsigned int& typeId, const void* data,
                                const unsigned int& length) = 0;
    /// An unsigned 32-bit leaf.
    virtual bool LeafUInt32(const unsigned int& typeId, const unsigned int& value) = 0;
    /// A signed 32-bit leaf.
    virtual bool LeafInt32(const unsigned int& typeId, const int& value) = 0;
    /// Special members; an interface is made and copied only as part of the class
    /// that implements it.
    /// @{
    virtual ~ITLV() = default;
    /// @}

  protected:
    /// Special members; an interface is made and copied only as part of the class
    /// that implements it.
    /// @{
    ITLV() = default;
    ITLV(const ITLV&) = default;
    ITLV& operator=(const ITLV&) = default;
    /// @}
};

/// The display name of a class as diagnostics print it ("Byte Stream" for 7;
/// "Node Begin" for 8), or null for 11 to 15.
PIMTLV_API const char* ClassDisplayName(unsigned int elementClass) noexcept;

/// An ITLV that answers true to every event and keeps nothing: derive from it
/// and override only the events you need.
class CTLVBase : public ITLV {
  public:
    bool Unknown(const eClass& /*elementClass*/, const unsigned int& /*typeId*/,
                 const void* /*value*/, const unsigned int& /*length*/) override {
        return true;
    }
    bool NodeBegin(const unsigned int& /*typeId*/) override { return true; }
    bool NodeEnd(const unsigned int& /*typeId*/) override { return true; }
    bool LeafInt8(const unsigned int& /*typeId*/, const signed char& /*value*/) override {
        return true;
    }
    bool LeafInt16(const unsigned int& /*typeId*/, const short& /*value*/) override { return true; }
    bool LeafUInt8(const unsigned int& /*typeId*/, const unsigned char& /*value*/) override {
        return true;
    }
    bool LeafUInt16(const unsigned int& /*typeId*/, const unsigned short& /*value*/) override {
        return true;
    }
    bool LeafBitfield8(const unsigned int& /*typeId*/, const unsigned char& /*value*/) override {
        return true;
    }
    bool LeafBitfield16(const unsigned int& /*typeId*/, const unsigned short& /*value*/) override {
        return true;
    }
    bool LeafString(const unsigned int& /*typeId*/, const char* /*text*/) override { return true; }
    bool LeafByteStream(const unsigned int& /*typeId*/, const void* /*data*/,
                        const unsigned int& /*length*/) override {
        return true;
    }
    bool LeafUInt32(const unsigned int& /*typeId*/, const unsigned int& /*value*/) override {
        return true;
    }
    bool LeafInt32(const unsigned int& /*typeId*/, const int& /*value*/) override { return true; }
};

}  // namespace ParserCreatorCollection

#endif
