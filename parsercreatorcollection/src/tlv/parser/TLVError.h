#ifndef PIMTLV_TLV_TLVERROR_H
#define PIMTLV_TLV_TLVERROR_H

#include <cstddef>
#include <string>

#include "parsercreatorcollection/src/tlv/parser/ITLV.h"
#include "platform/PalExport.h"

namespace ParserCreatorCollection {

/// Why a walk of a TLV stream stopped: where, at which element, inside which
/// node, and a sentence for a person. A parser keeps the account of its last
/// Parse (CTLVParser::LastError); ExplainTLV walks a buffer for it. Offsets
/// count from the first byte given to Parse.
///
///     if (!parser.Parse(data, length, errorText, consumed)) {
///         const TLVError& e = parser.LastError();
///         log("offset %u: %s", e.offset, e.Sentence().c_str());
///     }
///
/// prints, for a text leaf that claims more than its node holds, "offset 6:
/// String 302 declares 1 byte, more than the 0 bytes left in node 202 at
/// offset 3".
struct PIMTLV_API TLVError {
    /// Why the walk stopped.
    enum class Reason : unsigned char {
        None,              ///< the walk did not stop early
        NoData,            ///< Parse was given a null pointer
        WordCut,           ///< fewer than 2 bytes left for a header word
        LengthMissing,     ///< a header word and no length field
        LengthNoCount,     ///< the length field's first byte is 0x80
        LengthCut,         ///< a long length field with fewer bytes left than it announces
        WrongFixedSize,    ///< a numeric leaf whose length is not its class's size
        ValueTooLong,      ///< a value longer than what is left of its node or the stream
        TextEmpty,         ///< a String with no value at all, not even its zero byte
        TextUnterminated,  ///< a String whose last byte is not zero
        OutOfMemory,       ///< no memory for the walk or for repairing a text
        TargetStopped,     ///< the target answered false: the stream itself may be fine
    };

    Reason reason = Reason::None;  ///< why the walk stopped
    unsigned int offset = 0;       ///< first byte of the element the walk stopped at
    /// The element, when its header could be read (all but the header faults).
    bool hasElement = false;
    eClass elementClass = Int8;  ///< its class
    unsigned int typeId = 0;     ///< its type ID
    /// Its declared value length; for LengthCut, the byte count the length
    /// field announces.
    unsigned int length = 0;
    /// Bytes left where the element stood: from offset for a header fault,
    /// after the header for a value fault.
    unsigned int left = 0;
    /// The innermost node the element lies in, if any.
    bool inNode = false;
    unsigned int nodeTypeId = 0;  ///< that node's type ID
    unsigned int nodeOffset = 0;  ///< that node's first byte

    /// Whether the walk stopped at all.
    explicit operator bool() const noexcept { return reason != Reason::None; }
    /// Whether the bytes themselves are at fault (not the target, not memory).
    bool IsMalformed() const noexcept;
    /// The account in one sentence, with offsets counted from base (the
    /// place of the parsed buffer in a larger file, say): "UInt16 5 declares a
    /// value of 1 byte; the class takes exactly 2".
    std::string Sentence(std::size_t base = 0) const;
};

/// Walks length bytes at data as CTLVParser does, reporting to nothing, and
/// returns why the walk would stop (Reason::None when it would not).
PIMTLV_API TLVError ExplainTLV(const void* data, unsigned int length);

}  // namespace ParserCreatorCollection

#endif
