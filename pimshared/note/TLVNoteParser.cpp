#include "pimshared/note/TLVNoteParser.h"

#include <new>

#include "pimshared/common/CalendarFamilyParser.h"
#include "pimshared/common/ParserFrame.h"
#include "pimshared/common/TypeIds.h"

namespace PimShared {

using namespace CalendarFamily;
using namespace CalendarTypeIds;

namespace {

// The object-state node text names the component state, and the component's
// end text spells it "Vjournal": existing readers match these texts as they
// stand.
const tParserItem kNote = {
    TypeIdObjTypeNote,
    TypeIdCompTypeVJournal,
    "NodeBegin(): [state ParsingStateBegin] Unexpected typeId: %d  Expected: %d "
    "(TypeIdObjTypeNote)",
    "NodeBegin(): [state ParsingStateVJournalContext] Unexpected typeId: %d  Expected: %d "
    "(TypeIdCompTypeVJournal)",
    "LeafNode(): [state ParsingStateNoteContext] Unexpected typeId: %d",
    "NodeEnd(): [state ParsingStateNoteContext] Unexpected typeId: %d  Expected: %d "
    "(TypeIdObjTypeNote)",
    "NodeBegin(): [state ParsingStateVJournalContext] Unimplemented typeId. TypeId: %d.",
    "NodeEnd(): [state ParsingStateVJournalContext] Unexpected typeId: %d  Expected: %d "
    "(TypeIdCompTypeVjournal)",
    kUnimplementedInEventsAndNotes,
    sizeof kUnimplementedInEventsAndNotes / sizeof kUnimplementedInEventsAndNotes[0],
    // The event's set: location, priority and the event's times are gathered
    // although a note has no operation for them (reported at their end).
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
};

}  // namespace

class CTLVNoteParser::CTLVNoteParserImpl final : public TReceivingEngine<INoteReceiver> {
  public:
    // The note's names of the engine's states.
    static constexpr unsigned int ParsingStateNoteContext = ParsingStateObjectContext;
    static constexpr unsigned int ParsingStateVJournalContext = ParsingStateComponentContext;

    explicit CTLVNoteParserImpl(INoteReceiver& receiver) : TReceivingEngine(kNote, receiver) {}

  private:
    bool Deliver(unsigned int property, const tPropertyValues& v, bool& answer) override {
        return DeliverShared(m_receiver, property, v, answer);
    }
};

CTLVNoteParser::CTLVNoteParser(INoteReceiver& receiver)
    : m_impl(new (std::nothrow) CTLVNoteParserImpl(receiver)) {}

CTLVNoteParser::~CTLVNoteParser() = default;

bool CTLVNoteParser::Parse(const void* data, const unsigned int& length, const char*& errorText,
                           unsigned int& consumed) {
    return ForwardParse(m_impl.get(), data, length, errorText, consumed);
}

const ParserCreatorCollection::TLVError& CTLVNoteParser::LastError() const noexcept {
    return ForwardLastError(m_impl.get());
}

}  // namespace PimShared
