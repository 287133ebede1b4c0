#ifndef PIMTLV_TLV_TLVPARSER_H
#define PIMTLV_TLV_TLVPARSER_H

#include <memory>
#include <vector>

#include "parsercreatorcollection/src/tlv/parser/ITLV.h"
#include "parsercreatorcollection/src/tlv/parser/TLVError.h"
#include "parsercreatorcollection/src/tlv/wire/TLVWire.h"
#include "platform/PalExport.h"

namespace ParserCreatorCollection {

/// Walks a TLV stream and reports every element, in stream order, to an ITLV.
///
/// The walk trusts nothing in the stream. Every element must fit in what is
/// left of its enclosing node (and of the stream); an element whose header,
/// length field or value would run past that limit ends the walk with false at
/// that element, without any call for it, exactly like a fixed-size leaf whose
/// length is not its size. Open nodes still get their NodeEnd, innermost first,
/// so a target always sees balanced events. String values must end with their
/// zero byte, so no target can read past a value.
///
/// The walk is iterative: nesting depth costs heap memory linear in the depth
/// (one small frame per open node, kept between parses), never call stack.
class PIMTLV_API CTLVParser {
  public:
    /// Makes a walker that reports to target, which must outlive it; walkers are not copied.
    /// @{
    explicit CTLVParser(ITLV& target);
    virtual ~CTLVParser();
    CTLVParser(const CTLVParser&) = delete;
    CTLVParser& operator=(const CTLVParser&) = delete;
    /// @}

    /// Walks length bytes at data. consumed is set to how far reading got (on
    /// success, the size of all top-level elements); errorText points at this
    /// parser's text, always empty after a plain walk, valid until the next
    /// Parse. A null data pointer returns false and calls nothing. Texts that had
    /// to be repaired stay valid until Parse returns.
    virtual bool Parse(const void* data, const unsigned int& length, const char*& errorText,
                       unsigned int& consumed);

    /// Size of the error text buffer, terminating zero included.
    static constexpr unsigned int ErrorTextSize = 512;

    /// Why the last Parse stopped early (Reason::None after one that did not,
    /// or before any); valid until the next Parse. errorText stays empty
    /// whatever happened: this is where the words are.
    const TLVError& LastError() const noexcept { return m_error; }

    /// While the walk is inside a call to its target: the offset of the
    /// element the call reports (for NodeEnd, of the node's header), counted
    /// from the first byte given to Parse. A target that declares
    /// kReadsPosition false does not get it kept.
    unsigned int ElementOffset() const noexcept { return m_element; }

  protected:
    /// Each reader takes bytes at the position and advances it only on success.
    /// REQUIRES: size is the declared value length; fails unless it is exactly
    /// 1, 2 or 4 respectively, and unless that many bytes are left.
    /// @{
    bool readU8(const unsigned int& size, unsigned char& value);
    bool readU16(const unsigned int& size, unsigned short& value);
    bool readU32(const unsigned int& size, unsigned int& value);
    /// @}
    /// Reads a length field. Fails on the first byte 0x80 or a truncated field.
    bool readL(unsigned int& length, unsigned int& fieldSize);
    /// Reads a header word and its length field; on failure the position is
    /// back at the element's first byte.
    bool parseTL(eClass& elementClass, unsigned int& typeId, unsigned int& headerSize,
                 unsigned int& length);
    /// Walks limit bytes from the position (clipped to the stream's end).
    bool parseBuffer(const unsigned int& limit);

    /// Parse, with every element reported to target by a direct call. A
    /// parser that is its own target, with final element operations, passes
    /// itself, and the walk's calls bind statically instead of through ITLV;
    /// Parse is this with the ITLV given at construction. Defined, with the
    /// walk, in TLVWalk.h.
    template <typename Target>
    bool ParseInto(Target& target, const void* data, const unsigned int& length,
                   const char*& errorText, unsigned int& consumed);
    /// parseBuffer, reporting to target.
    template <typename Target>
    bool walk(Target& target, unsigned int limit);
    /// Reports a leaf of a class other than String and Node whose size the
    /// walk has checked. Part of the walk's loop, so always inlined there.
    template <typename Target>
#if defined(__GNUC__)
    __attribute__((always_inline))
#endif
    static inline bool
    leaf(Target& target, eClass elementClass, unsigned int typeId, const unsigned char* value,
         unsigned int length);

    /// Bytes left between the position and limitEnd.
    unsigned int remaining(unsigned int limitEnd) const noexcept {
        return limitEnd > m_position ? limitEnd - m_position : 0;
    }

    /// The stream, its length, the read position, the event target and the last error text.
    /// @{
    const unsigned char* m_data = nullptr;
    unsigned int m_length = 0;
    unsigned int m_position = 0;
    ITLV& m_target;
    char m_errorText[ErrorTextSize] = {};
    /// @}

  private:
    // An open node: what its end gives back to the walk.
    struct Frame {
        unsigned int typeId;
        unsigned int start;     ///< offset of the node's header
        unsigned int outerEnd;  ///< the limit of reads outside the node
    };
    // A String value that is not valid UTF-8: repaired in a copy that lives
    // until Parse returns; null (traced) when that fails. The rare path, kept
    // out of the walk.
#if defined(__GNUC__)
    __attribute__((noinline, cold))
#endif
    const char*
    repairText(const unsigned char* value, unsigned int length);
    /// Begins a walk of length bytes at data.
    void start(const void* data, unsigned int length, const char*& errorText,
               unsigned int& consumed) noexcept;
    /// Ends a walk: how far it read, and the repaired texts freed.
    void finish(unsigned int& consumed) noexcept;
    /// Opens a node frame; false when memory for the walk itself runs out.
    /// Frames are kept between parses, so growing is the rare case. The frame
    /// goes by value, in registers, so that the common case stores its words
    /// straight into the stack's storage rather than copying them from memory.
    bool push(Frame frame) noexcept {
        if (m_stack.size() == m_stack.capacity()) return pushGrowing(frame);
        m_stack.push_back(frame);
        return true;
    }
    bool pushGrowing(Frame frame) noexcept;
    // Fills the error account for a walk that stopped at the element at
    // offset, with end the limit it had to keep: why, when the walk knows it
    // (the target's refusal, memory), else read from the bytes there.
#if defined(__GNUC__)
    __attribute__((noinline, cold))
#endif
    void
    explain(TLVError::Reason why, unsigned int offset, unsigned int end) noexcept;

    unsigned int m_end = 0;      ///< no read goes at or past this offset (innermost node's end)
    unsigned int m_element = 0;  ///< offset of the element being reported
    TLVError m_error;            ///< why the last walk stopped

    std::vector<Frame> m_stack;                       ///< open nodes of the current walk
    std::vector<std::unique_ptr<char[]>> m_repaired;  ///< repaired texts, freed when Parse returns
};

}  // namespace ParserCreatorCollection

#endif
