#ifndef PIMTLV_PIMSHARED_IM_TLVIMPARSER_H
#define PIMTLV_PIMSHARED_IM_TLVIMPARSER_H

#include <memory>

#include "parsercreatorcollection/src/tlv/parser/TLVError.h"

#include "pimshared/im/IIMReceiver.h"
#include "platform/PalExport.h"

namespace PimShared {

/// Reads an instant-message stream and calls the receiver once per property,
/// exactly as CTLVEmailParser does for an e-mail, plus the conversation,
/// owner, participant and extended-data properties. Texts and bytes point into
/// the caller's buffer and are valid only during Parse.
class PIMTLV_API CTLVIMParser {
  public:
    /// Makes a parser that reports to receiver, which must outlive it; parsers are not copied.
    /// @{
    explicit CTLVIMParser(IIMReceiver& receiver);
    virtual ~CTLVIMParser();
    CTLVIMParser(const CTLVIMParser&) = delete;
    CTLVIMParser& operator=(const CTLVIMParser&) = delete;
    /// @}

    /// False without any receiver call for null data (errorText empty); false
    /// after TraceMessage(3, errorText) for a broken stream.
    bool Parse(const void* data, const unsigned int& length, const char*& errorText,
               unsigned int& consumed);

    /// Why the last Parse stopped early, as every parser of the library keeps it.
    const ParserCreatorCollection::TLVError& LastError() const noexcept;

    class CTLVIMParserImpl;

  private:
    std::unique_ptr<CTLVIMParserImpl> m_impl;
};

}  // namespace PimShared

#endif
