#ifndef PIMTLV_PIMSHARED_CALLSTACK_TLVCALLSTACKPARSER_H
#define PIMTLV_PIMSHARED_CALLSTACK_TLVCALLSTACKPARSER_H

#include "parsercreatorcollection/src/tlv/parser/ITLV.h"
#include "parsercreatorcollection/src/tlv/parser/TLVParser.h"
#include "pimshared/callstack/ICallstackReceiver.h"
#include "platform/CString.h"
#include "platform/PalExport.h"

namespace PimShared {

/// Reads a call-list stream, node 5 { UInt32 10, entry node 2000 or 2001
/// { property leaves } }, and replays its one entry to the receiver: Begin
/// when the entry node opens, each property the moment its leaf arrives, End
/// when the entry closes. Problems go to TraceMessage as codes (Report) with
/// an empty text and change no state; the receiver's answer to a report is the
/// event's answer, so a receiver can stop the walk at the first problem.
class PIMTLV_API CTLVCallstackParser : public ParserCreatorCollection::ITLV,
                                       public ParserCreatorCollection::CTLVParser {
  public:
    /// Codes given to TraceMessage.
    enum Report : int {
        ReportWrongRoot = 1,       ///< a node other than 5 at the start
        ReportUnexpected = 2,      ///< nested node in an entry, misplaced leaf, unknown ID
        ReportWrongEntry = 3,      ///< a node other than 2000 or 2001 in node 5
        ReportSecondInstance = 4,  ///< a second instance leaf in one Parse
        ReportSecondEntry = 5,     ///< a second entry in one node 5
        ReportNotImplemented = 6,  ///< a known property this reader does not deliver
        ReportUnknownClass = 8,    ///< an element of an undefined class
        ReportBadStructure = 9,    ///< unmatched node end, or a malformed stream
    };

    /// Where the walk is.
    enum State : unsigned int {
        StateOutside = 0,
        StateCallList = 1,  ///< in node 5
        StateEntry = 2,     ///< in an entry node
    };

    /// Makes a parser that reports to receiver, which must outlive it; parsers are not copied.
    /// @{
    explicit CTLVCallstackParser(ICallstackReceiver& receiver);
    /// @}
    ~CTLVCallstackParser() override;
    /// Makes a parser that reports to receiver, which must outlive it; parsers are not copied.
    /// @{
    CTLVCallstackParser(const CTLVCallstackParser&) = delete;
    CTLVCallstackParser& operator=(const CTLVCallstackParser&) = delete;
    /// @}

    /// Walks length bytes at data. A null data pointer answers false with an
    /// empty errorText and calls nothing; a malformed stream answers false
    /// after TraceMessage(9, the walk's text).
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
    /// One leaf's value in the shapes the properties read it: the class of a
    /// property leaf is not checked, so each leaf offers all three. number is
    /// the numeric value (0 for texts and byte streams), firstByte the value's
    /// first byte (a number's low byte, a text's first character), text the
    /// text (null unless the leaf is a String).
    struct LeafValue {
        unsigned int number;
        unsigned char firstByte;
        const char* text;
    };

    static LeafValue Number(unsigned int number);
    bool Leaf(unsigned int typeId, const LeafValue& value);
    bool Deliver(unsigned int typeId, const LeafValue& value);
    bool Send(Report code);

    static constexpr unsigned int kTextCount = 5;

    ICallstackReceiver& m_receiver;
    unsigned int m_state = StateOutside;
    unsigned int m_instance = 0;
    bool m_instanceSeen = false;
    unsigned int m_entryKind = 0;  ///< 0 none, 1 for node 2000, 2 for node 2001
    bool m_entrySeen = false;      ///< an entry was read in the current node 5
    char m_emptyText[1] = {0};     ///< the text of every report

    /// The value store: each property is kept only while it is delivered.
    unsigned char m_byte = 0;
    PAL::CString m_texts[kTextCount];
    bool m_flag = false;
};

}  // namespace PimShared

#endif
