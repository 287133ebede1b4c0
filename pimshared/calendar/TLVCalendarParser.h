#ifndef PIMTLV_PIMSHARED_CALENDAR_TLVCALENDARPARSER_H
#define PIMTLV_PIMSHARED_CALENDAR_TLVCALENDARPARSER_H

#include <memory>

#include "parsercreatorcollection/src/tlv/parser/TLVError.h"

#include "pimshared/calendar/ICalendarReceiver.h"
#include "platform/PalExport.h"

namespace PimShared {

/// Reads a calendar event stream and replays it to an ICalendarReceiver: Begin
/// at the instance leaf, one call per property when its node closes, End at
/// the end of the root, and TraceMessage for a code-0 trace line before every
/// element and for every irregularity. The parser never owns the stream.
class PIMTLV_API CTLVCalendarParser {
  public:
    /// Makes a parser that reports to receiver, which must outlive it; parsers are not copied.
    /// @{
    explicit CTLVCalendarParser(ICalendarReceiver& receiver);
    virtual ~CTLVCalendarParser();
    CTLVCalendarParser(const CTLVCalendarParser&) = delete;
    CTLVCalendarParser& operator=(const CTLVCalendarParser&) = delete;
    /// @}

    /// False for a null data pointer (errorText "invalid TLV stream", no
    /// receiver call) and for a stream that does not walk (reported with code
    /// 6). errorText stays valid until the next Parse.
    bool Parse(const void* data, const unsigned int& length, const char*& errorText,
               unsigned int& consumed);

    /// Why the last Parse stopped early, as every parser of the library keeps it.
    const ParserCreatorCollection::TLVError& LastError() const noexcept;

    class CTLVCalendarParserImpl;

  private:
    std::unique_ptr<CTLVCalendarParserImpl> m_impl;
};

}  // namespace PimShared

#endif
