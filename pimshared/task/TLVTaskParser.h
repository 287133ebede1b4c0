#ifndef PIMTLV_PIMSHARED_TASK_TLVTASKPARSER_H
#define PIMTLV_PIMSHARED_TASK_TLVTASKPARSER_H

#include <memory>

#include "parsercreatorcollection/src/tlv/parser/TLVError.h"

#include "pimshared/task/ITaskReceiver.h"
#include "platform/PalExport.h"

namespace PimShared {

/// Reads a task stream and replays it to an ITaskReceiver: Begin
/// at the instance leaf, one call per property when its node closes, End at
/// the end of the root, and TraceMessage for a code-0 trace line before every
/// element and for every irregularity. The parser never owns the stream.
class PIMTLV_API CTLVTaskParser {
  public:
    /// Makes a parser that reports to receiver, which must outlive it; parsers are not copied.
    /// @{
    explicit CTLVTaskParser(ITaskReceiver& receiver);
    virtual ~CTLVTaskParser();
    CTLVTaskParser(const CTLVTaskParser&) = delete;
    CTLVTaskParser& operator=(const CTLVTaskParser&) = delete;
    /// @}

    /// False for a null data pointer (errorText "invalid TLV stream", no
    /// receiver call) and for a stream that does not walk (reported with code
    /// 6). errorText stays valid until the next Parse. The current property,
    /// the skip flag and an x-parameter name still waiting for its value (in
    /// the parser's own copy) carry over from one Parse to the next.
    bool Parse(const void* data, const unsigned int& length, const char*& errorText,
               unsigned int& consumed);

    /// Why the last Parse stopped early, as every parser of the library keeps it.
    const ParserCreatorCollection::TLVError& LastError() const noexcept;

    class CTLVTaskParserImpl;

  private:
    std::unique_ptr<CTLVTaskParserImpl> m_impl;
};

}  // namespace PimShared

#endif
