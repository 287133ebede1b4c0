#ifndef PIMTLV_PIMSHARED_SMS_TLVSMSPARSER_H
#define PIMTLV_PIMSHARED_SMS_TLVSMSPARSER_H

#include "parsercreatorcollection/src/tlv/parser/ITLV.h"
#include "parsercreatorcollection/src/tlv/parser/TLVParser.h"
#include "pimshared/sms/ISMSReceiver.h"
#include "platform/CString.h"
#include "platform/PalExport.h"

namespace PimShared {

/// Reads a short message written by CTLVSMSCreator and reports every attribute
/// to the receiver the moment its leaf arrives. A message is flat, so the
/// parser keeps no value store: three flags say where the walk is (in node 2,
/// in node 700, in the concatenation node 730), and only the three
/// concatenation bytes wait for their node's end.
///
/// Every element out of its place is reported (TraceMessage code 2, "Unexpected
/// <kind> with type ID = <id>") and changes nothing; the receiver's answer to
/// the report decides whether the walk goes on.
///
/// The instance number is not reset between parses: a stream without its
/// instance leaf begins with the number of the previous stream read by this
/// object (0 for a fresh one).
class PIMTLV_API CTLVSMSParser : public ParserCreatorCollection::ITLV,
                                 public ParserCreatorCollection::CTLVParser {
  public:
    /// Makes a parser that reports to receiver, which must outlive it; parsers are not copied.
    /// @{
    explicit CTLVSMSParser(ISMSReceiver& receiver);
    /// @}
    ~CTLVSMSParser() override;
    /// Makes a parser that reports to receiver, which must outlive it; parsers are not copied.
    /// @{
    CTLVSMSParser(const CTLVSMSParser&) = delete;
    CTLVSMSParser& operator=(const CTLVSMSParser&) = delete;
    /// @}

    /// Walks length bytes at data. consumed is how far reading got. A null data
    /// pointer answers false with errorText pointing at this parser's (empty)
    /// text and calls nothing; a malformed stream answers false after
    /// TraceMessage(3, the walk's text), errorText pointing at that text.
    bool Parse(const void* data, const unsigned int& length, const char*& errorText,
               unsigned int& consumed) override;

    /// The walk's events.
    bool Unknown(const ParserCreatorCollection::eClass& elementClass, const unsigned int& typeId,
                 const void* value, const unsigned int& length) override;
    bool NodeBegin(const unsigned int& typeId) override;
    bool NodeEnd(const unsigned int& typeId) override;
    bool LeafInt8(const unsigned int& typeId, const signed char& value) override;
    bool LeafInt16(const unsigned int& typeId, const short& value) override;
    bool LeafUInt8(const unsigned int& typeId, const unsigned char& value) override;
    bool LeafUInt16(const unsigned int& typeId, const unsigned short& value) override;
    bool LeafBitfield8(const unsigned int& typeId, const unsigned char& value) override;
    bool LeafBitfield16(const unsigned int& typeId, const unsigned short& value) override;
    bool LeafString(const unsigned int& typeId, const char* text) override;
    bool LeafByteStream(const unsigned int& typeId, const void* data,
                        const unsigned int& length) override;
    bool LeafUInt32(const unsigned int& typeId, const unsigned int& value) override;
    bool LeafInt32(const unsigned int& typeId, const int& value) override;

  private:
    /// Reports an element refused in its place (code 2); answers the receiver.
    bool Refuse(ParserCreatorCollection::eClass elementClass, unsigned int typeId);
    bool RefuseNodeEnd(unsigned int typeId);

    ISMSReceiver& m_receiver;
    PAL::CString m_lastError;  ///< handed out for a null stream; never holds a diagnostic
    PAL::CString m_message;    ///< every diagnostic is formatted here, memory reused
    bool m_inObject = false;   ///< inside node 2
    bool m_inMessage = false;  ///< inside node 700
    bool m_inConcat = false;   ///< inside node 730
    unsigned int m_instance = 0;
    unsigned char m_concat[3] = {0, 0, 0};
};

}  // namespace PimShared

#endif
