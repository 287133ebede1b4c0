#ifndef PIMTLV_PIMSHARED_EMAIL_TLVEMAILPARSER_H
#define PIMTLV_PIMSHARED_EMAIL_TLVEMAILPARSER_H

#include <memory>

#include "parsercreatorcollection/src/tlv/parser/TLVError.h"

#include "pimshared/email/IEmailReceiver.h"
#include "platform/PalExport.h"

namespace PimShared {

/// Reads an e-mail stream and calls the receiver once per property: bare leaves
/// at once, structured nodes when they close, Begin at the message's component
/// node, BeginEntity/EndEntity around each nested entity, End at the object
/// node's end. Texts and bytes point into the caller's buffer and are valid
/// only during Parse.
class PIMTLV_API CTLVEmailParser {
  public:
    /// Makes a parser that reports to receiver, which must outlive it; parsers are not copied.
    /// @{
    explicit CTLVEmailParser(IEmailReceiver& receiver);
    virtual ~CTLVEmailParser();
    CTLVEmailParser(const CTLVEmailParser&) = delete;
    CTLVEmailParser& operator=(const CTLVEmailParser&) = delete;
    /// @}

    /// False without any receiver call for null data (errorText empty); false
    /// after TraceMessage(3, errorText) for a broken stream.
    bool Parse(const void* data, const unsigned int& length, const char*& errorText,
               unsigned int& consumed);

    /// Why the last Parse stopped early, as every parser of the library keeps it.
    const ParserCreatorCollection::TLVError& LastError() const noexcept;

    class CTLVEmailParserImpl;

  private:
    std::unique_ptr<CTLVEmailParserImpl> m_impl;
};

}  // namespace PimShared

#endif
