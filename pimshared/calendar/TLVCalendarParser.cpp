#include "pimshared/calendar/TLVCalendarParser.h"

#include <new>

#include "pimshared/common/CalendarFamilyParser.h"
#include "pimshared/common/ParserFrame.h"
#include "pimshared/common/TypeIds.h"

namespace PimShared {

using namespace CalendarFamily;
using namespace CalendarTypeIds;

namespace {

const tParserItem kEvent = {
    CalendarLayout::kEvent,
    "NodeBegin(): [state ParsingStateBegin] Unexpected typeId: %d  Expected: %d "
    "(TypeIdObjTypeCalendarTask)",
    "NodeBegin(): [state ParsingStateCalendarContext] Unexpected typeId: %d  Expected: %d "
    "(TypeIdCompTypeVevent)",
    "LeafNode(): [state ParsingStateCalendarContext] Unexpected typeId: %d",
    "NodeEnd(): [state ParsingStateCalendarContext] Unexpected typeId: %d  Expected: %d "
    "(TypeIdObjTypeCalendar)",
    "NodeBegin(): [state ParsingStateVeventContext] Unimplemented typeId. TypeId: %d.",
    "NodeEnd(): [state ParsingStateVeventContext] Unexpected typeId: %d  Expected: %d "
    "(TypeIdCompTypeVevent)",
    kUnimplementedInEventsAndNotes,
    sizeof kUnimplementedInEventsAndNotes / sizeof kUnimplementedInEventsAndNotes[0],
    false,  // a name still waiting when the stream ends is dropped
    true,   // so is one waiting when an unimplemented property starts
};

}  // namespace

class CTLVCalendarParser::CTLVCalendarParserImpl final
    : public TReceivingEngine<ICalendarReceiver> {
  public:
    // The event's names of the engine's states.
    static constexpr unsigned int ParsingStateCalendarContext = ParsingStateObjectContext;
    static constexpr unsigned int ParsingStateVeventContext = ParsingStateComponentContext;

    explicit CTLVCalendarParserImpl(ICalendarReceiver& receiver)
        : TReceivingEngine(kEvent, receiver) {}
};

CTLVCalendarParser::CTLVCalendarParser(ICalendarReceiver& receiver)
    : m_impl(new (std::nothrow) CTLVCalendarParserImpl(receiver)) {}

CTLVCalendarParser::~CTLVCalendarParser() = default;

bool CTLVCalendarParser::Parse(const void* data, const unsigned int& length, const char*& errorText,
                               unsigned int& consumed) {
    return ForwardParse(m_impl.get(), data, length, errorText, consumed);
}

const ParserCreatorCollection::TLVError& CTLVCalendarParser::LastError() const noexcept {
    return ForwardLastError(m_impl.get());
}

}  // namespace PimShared
