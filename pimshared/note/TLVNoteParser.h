#ifndef PIMTLV_PIMSHARED_NOTE_TLVNOTEPARSER_H
#define PIMTLV_PIMSHARED_NOTE_TLVNOTEPARSER_H

#include <memory>

#include "parsercreatorcollection/src/tlv/parser/TLVError.h"

#include "pimshared/note/INoteReceiver.h"
#include "platform/PalExport.h"

namespace PimShared {

/// Reads a note stream and replays it to an INoteReceiver: Begin
/// at the instance leaf, one call per property when its node closes, End at
/// the end of the root, and TraceMessage for a code-0 trace line before every
/// element and for every irregularity. The parser never owns the stream.
class PIMTLV_API CTLVNoteParser {
  public:
    /// Makes a parser that reports to receiver, which must outlive it; parsers are not copied.
    /// @{
    explicit CTLVNoteParser(INoteReceiver& receiver);
    virtual ~CTLVNoteParser();
    CTLVNoteParser(const CTLVNoteParser&) = delete;
    CTLVNoteParser& operator=(const CTLVNoteParser&) = delete;
    /// @}

    /// False for a null data pointer (errorText "invalid TLV stream", no
    /// receiver call) and for a stream that does not walk (reported with code
    /// 6). errorText stays valid until the next Parse.
    bool Parse(const void* data, const unsigned int& length, const char*& errorText,
               unsigned int& consumed);

    /// Why the last Parse stopped early, as every parser of the library keeps it.
    const ParserCreatorCollection::TLVError& LastError() const noexcept;

    class CTLVNoteParserImpl;

  private:
    std::unique_ptr<CTLVNoteParserImpl> m_impl;
};

}  // namespace PimShared

#endif
