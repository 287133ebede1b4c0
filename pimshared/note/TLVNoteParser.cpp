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
    CalendarLayout::kNote,
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
};

}  // namespace

class CTLVNoteParser::CTLVNoteParserImpl final : public TReceivingEngine<INoteReceiver> {
  public:
    // The note's names of the engine's states.
    static constexpr unsigned int ParsingStateNoteContext = ParsingStateObjectContext;
    static constexpr unsigned int ParsingStateVJournalContext = ParsingStateComponentContext;

    explicit CTLVNoteParserImpl(INoteReceiver& receiver) : TReceivingEngine(kNote, receiver) {}
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
