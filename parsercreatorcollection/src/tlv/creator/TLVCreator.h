#ifndef PIMTLV_TLV_TLVCREATOR_H
#define PIMTLV_TLV_TLVCREATOR_H

#include <memory>

#include "parsercreatorcollection/src/tlv/creator/TLVObjects.h"
#include "parsercreatorcollection/src/tlv/parser/ITLV.h"
#include "platform/PalExport.h"

namespace ParserCreatorCollection {

/// Builds one TLV stream from nested NodeBegin / leaf / NodeEnd calls. Nothing
/// is output until GetData: the calls build the stream's elements (each leaf's
/// value copied as it is added), with nesting checked as they come (a NodeEnd
/// must name the innermost open node).
///
/// Every call answers false when it had no effect; the elements are then as
/// they were. GetData writes them all, forgets them and hands out the bytes,
/// which stay owned by the creator until the next GetData, Reset or its
/// destruction.
///
/// Limits: a single value of MaxValueLength + 1 bytes or more is refused by its
/// leaf call (level-3 trace), and GetData refuses (level-3 trace, tree kept) a
/// top-level node whose content would reach that size: the length field cannot
/// say it, and an older writer looped forever on such lengths.
///
/// Memory: two buffers of about the largest stream written so far (the one
/// being built and the last one handed out) and a small record per node are
/// kept across GetData and Reset for the next stream, and freed with the
/// creator.
class PIMTLV_API CTLVCreator final : private ITLV {
  public:
    /// Makes an empty creator; creators are not copied.
    /// @{
    CTLVCreator();
    /// @}
    ~CTLVCreator() override;
    /// Makes an empty creator; creators are not copied.
    /// @{
    CTLVCreator(const CTLVCreator&) = delete;
    CTLVCreator& operator=(const CTLVCreator&) = delete;
    /// @}

    /// Always false: an element of an undefined class cannot be written.
    bool Unknown(const eClass& elementClass, const unsigned int& typeId, const void* value,
                 const unsigned int& length) override;
    bool NodeBegin(const unsigned int& typeId) override;
    bool NodeEnd(const unsigned int& typeId) override;
    bool LeafInt8(const unsigned int& typeId, const signed char& value) override;
    bool LeafInt16(const unsigned int& typeId, const short& value) override;
    bool LeafUInt8(const unsigned int& typeId, const unsigned char& value) override;
    bool LeafUInt16(const unsigned int& typeId, const unsigned short& value) override;
    bool LeafBitfield8(const unsigned int& typeId, const unsigned char& value) override;
    bool LeafBitfield16(const unsigned int& typeId, const unsigned short& value) override;
    /// A null text is written as the empty text; invalid UTF-8 is repaired to
    /// "?" (level-2 trace) and the call succeeds.
    bool LeafString(const unsigned int& typeId, const char* text) override;
    bool LeafByteStream(const unsigned int& typeId, const void* data,
                        const unsigned int& length) override;
    bool LeafUInt32(const unsigned int& typeId, const unsigned int& value) override;
    bool LeafInt32(const unsigned int& typeId, const int& value) override;

    /// Discards the tree, the open nodes and the last output.
    bool Reset();
    /// False (level-3 trace, tree kept) while a node is open.
    bool GetData(const void*& data, unsigned int& length);

    /// This creator as an event target, so that a CTLVParser walk can rebuild a
    /// stream through it.
    ITLV& AsTarget() noexcept { return *this; }

    /// The writing engine behind this creator.
    class CTLVCreatorImpl;
    /// The engine, through which the library's item creators write without a
    /// call per element. Its definition is internal to the library: outside
    /// it, this is an opaque handle.
    CTLVCreatorImpl* Engine() noexcept { return m_impl.get(); }

  private:
    std::unique_ptr<CTLVCreatorImpl> m_impl;
};

}  // namespace ParserCreatorCollection

#endif
