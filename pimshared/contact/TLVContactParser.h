#ifndef PIMTLV_PIMSHARED_CONTACT_TLVCONTACTPARSER_H
#define PIMTLV_PIMSHARED_CONTACT_TLVCONTACTPARSER_H

#include <memory>

#include "parsercreatorcollection/src/tlv/parser/TLVError.h"
#include "pimshared/contact/ContactReceiver.h"
#include "platform/PalExport.h"

namespace PimShared {

/// Reads contact streams (node 0 { UInt32 10, property nodes ... }, possibly
/// several contacts one after another) and replays each to the receiver: Begin
/// at the instance leaf, one property call per property node when it closes,
/// End when the contact node closes. Problems go to TraceMessage as codes:
///   1  a first node other than the contact node
///   2  an element not expected where it stands (refused property node, node
///      inside a property, stray leaf, value ID foreign to the property)
///   3  a second instance leaf in one contact
///   4  a known property that is not implemented (its contents are skipped)
///   6  a broken stream (with the stream reader's text), a NodeEnd that does
///      not match, an x-parameter value without a name, a value for a property
///      that stores none
/// One parser object can read any number of streams, one after another.
class PIMTLV_API CTLVContactParser {
  public:
    /// Makes a parser that reports to receiver, which must outlive it; parsers are not copied.
    /// @{
    explicit CTLVContactParser(IContactReceiver& receiver);
    ~CTLVContactParser();
    CTLVContactParser(const CTLVContactParser&) = delete;
    CTLVContactParser& operator=(const CTLVContactParser&) = delete;
    /// @}

    /// False for a null data pointer (errorText is then the empty text and the
    /// receiver hears nothing) and for a stream that cannot be read to its end.
    /// consumed is how far reading got.
    bool Parse(const void* data, const unsigned int& length, const char*& errorText,
               unsigned int& consumed);

    /// Why the last Parse stopped early, as every parser of the library keeps it.
    const ParserCreatorCollection::TLVError& LastError() const noexcept;

    class CTLVContactParserImpl;

  private:
    std::unique_ptr<CTLVContactParserImpl> m_impl;
};

}  // namespace PimShared

#endif
