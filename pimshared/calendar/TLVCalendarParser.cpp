#include "pimshared/calendar/TLVCalendarParser.h"

#include <new>

#include "pimshared/common/CalendarFamilyParser.h"
#include "pimshared/common/TypeIds.h"

namespace PimShared {

using namespace CalendarFamily;

namespace {

// Properties an event knows but does not implement: their values are
// skipped with a code-4 report.
constexpr tIdRange kUnimplemented[] = {
    {200, 201}, {204, 204}, {207, 207}, {209, 209}, {211, 211}, {213, 213}, {216, 216}, {218, 218},
    {220, 227}, {229, 229}, {231, 233}, {235, 241}, {243, 243}, {247, 248}, {251, 251}, {901, 902},
};
static_assert(sizeof kUnimplemented / sizeof kUnimplemented[0] == 16, "deny-list ranges");

const tParserItem kEvent = {
    TypeIdObjTypeCalendarTask,
    TypeIdCompTypeVevent,
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
    kUnimplemented,
    sizeof kUnimplemented / sizeof kUnimplemented[0],
    SlotBit(TypeIdPropTypeProductIdentifier) | SlotBit(TypeIdPropTypeVersion) |
        SlotBit(TypeIdPropTypeCategories) | SlotBit(TypeIdPropTypeClassification) |
        SlotBit(TypeIdPropTypeDescription) | SlotBit(TypeIdPropTypeLocation) |
        SlotBit(TypeIdPropTypePriority) | SlotBit(TypeIdPropTypeStatus) |
        SlotBit(TypeIdPropTypeSummary) | SlotBit(TypeIdPropTypeDateTimeStart) |
        SlotBit(TypeIdPropTypeDateTimeEnd) | SlotBit(TypeIdPropTypeDateTimeStartLocal) |
        SlotBit(TypeIdPropTypeDateTimeEndLocal) | SlotBit(TypeIdPropTypeUniqueIdentifier) |
        SlotBit(TypeIdPropTypeDateTimeCreated) | SlotBit(TypeIdPropTypeLastModified) |
        SlotBit(TypeIdPropTypeSequenceNumber) | SlotBit(TypeIdPropTypeAttendee) |
        SlotBit(TypeIdPropTypeOrganizer) | SlotBit(TypeIdPropTypeSendStatus),
    true,  // a new stream never pairs with a name left over from the last one
    true,
};

}  // namespace

class CTLVCalendarParser::CTLVCalendarParserImpl final : public CParserEngine {
  public:
    // The event's names of the engine's states.
    static constexpr unsigned int ParsingStateCalendarContext = ParsingStateObjectContext;
    static constexpr unsigned int ParsingStateVeventContext = ParsingStateComponentContext;

    explicit CTLVCalendarParserImpl(ICalendarReceiver& receiver)
        : CParserEngine(kEvent), m_receiver(receiver) {}

  private:
    bool ReceiverTrace(const int& code, const char* text) override {
        return m_receiver.TraceMessage(code, text);
    }
    void ReceiverBegin(const unsigned int& instance) override { m_receiver.Begin(instance); }
    void ReceiverEnd() override { m_receiver.End(); }
    void ReceiverInstanceName(const char* name) override { m_receiver.InstanceName(name); }
    bool Deliver(unsigned int property, const tPropertyValues& v, bool& answer) override {
        switch (property) {
            case TypeIdPropTypeDateTimeEnd:
                answer = m_receiver.DateTimeEnd(v.dateTime, v.text[kZone], v.xParams);
                return true;
            case TypeIdPropTypeDateTimeEndLocal:
                answer = m_receiver.DateTimeEndLocal(v.dateTime, v.xParams);
                return true;
            default:
                return DeliverEventAndTask(m_receiver, property, v, answer);
        }
    }

    ICalendarReceiver& m_receiver;
};

CTLVCalendarParser::CTLVCalendarParser(ICalendarReceiver& receiver)
    : m_impl(new (std::nothrow) CTLVCalendarParserImpl(receiver)) {}

CTLVCalendarParser::~CTLVCalendarParser() = default;

bool CTLVCalendarParser::Parse(const void* data, const unsigned int& length, const char*& errorText,
                               unsigned int& consumed) {
    return m_impl != nullptr && m_impl->Parse(data, length, errorText, consumed);
}

}  // namespace PimShared
