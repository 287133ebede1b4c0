#ifndef PIMTLV_PIMSHARED_COMMON_CALENDARFAMILYPARSER_H
#define PIMTLV_PIMSHARED_COMMON_CALENDARFAMILYPARSER_H

#include <string>

#include "parsercreatorcollection/src/tlv/parser/ITLV.h"
#include "parsercreatorcollection/src/tlv/parser/TLVParser.h"
#include "pimshared/calendar/ICalendarReceiver.h"
#include "pimshared/common/CalendarFamily.h"
#include "pimshared/common/CalendarLayout.h"
#include "pimshared/common/CalendarTypeIds.h"
#include "pimshared/common/DiagnosticFormat.h"
#include "pimshared/common/WalkTarget.h"
#include "pimshared/common/XParam.h"
#include "pimshared/note/INoteReceiver.h"
#include "pimshared/task/ITaskReceiver.h"
#include "platform/CDateAndTime.h"
#include "platform/CString.h"
#include "platform/TVector.h"

namespace PimShared {
namespace CalendarFamily {

using namespace CalendarTypeIds;

// The values gathered for one property until its node closes. One record
// shape serves every property of the family; which field holds which value
// ID is fixed per property by the engine's layout table, and the receiver
// mapping reads the fields through the names below.
struct tPropertyValues {
    const char* text[CalendarLayout::kTexts] = {};
    PAL::TVector<const char*> list[CalendarLayout::kLists];
    unsigned int number = 0;
    PAL::CDateAndTime dateTime;
    PAL::TVector<tXParam> xParams;
};

// Properties of the family whose values a parser gathers, one slot each: the
// rows of the layout table, in its order.
constexpr unsigned int kPropertySlots = CalendarLayout::PropertyCount;

// Field names of the record, as the layout table places the values.
using CalendarLayout::kAddress;
using CalendarLayout::kAltRep;
using CalendarLayout::kAttendeeCommonName;
using CalendarLayout::kAttendeeCuType;
using CalendarLayout::kAttendeeDelegatedFrom;
using CalendarLayout::kAttendeeDelegatedTo;
using CalendarLayout::kAttendeeDirectory;
using CalendarLayout::kAttendeeLanguage;
using CalendarLayout::kAttendeeMembers;
using CalendarLayout::kAttendeePartStat;
using CalendarLayout::kAttendeeRole;
using CalendarLayout::kAttendeeSentBy;
using CalendarLayout::kCategoryLanguage;
using CalendarLayout::kCategoryList;
using CalendarLayout::kLanguage;
using CalendarLayout::kMain;
using CalendarLayout::kOrganizerCommonName;
using CalendarLayout::kOrganizerDirectory;
using CalendarLayout::kOrganizerLanguage;
using CalendarLayout::kOrganizerSentBy;
using CalendarLayout::kZone;

// Where a value leaf goes in the open property's record.
struct tPlacement {
    CalendarLayout::eField field;  // None where the property does not take the ID
    unsigned char index;
};

// A run of property IDs, both ends included.
struct tIdRange {
    unsigned short first;
    unsigned short last;
};

// Properties that an item knows but does not implement: their values are
// skipped with a code-4 report. Events and notes share one list; the task
// lacks the event's end times there and has its due time instead.
inline constexpr tIdRange kUnimplementedInEventsAndNotes[] = {
    {200, 201}, {204, 204}, {207, 207}, {209, 209}, {211, 211}, {213, 213}, {216, 216}, {218, 218},
    {220, 227}, {229, 229}, {231, 233}, {235, 241}, {243, 243}, {247, 248}, {251, 251}, {901, 902},
};
inline constexpr tIdRange kUnimplementedInTasks[] = {
    {200, 201}, {204, 204}, {207, 207}, {209, 209}, {211, 211}, {213, 213}, {216, 218}, {220, 227},
    {229, 229}, {231, 233}, {235, 241}, {243, 243}, {247, 248}, {250, 250}, {901, 902},
};

// What one item adds to the engine: its frame IDs, the texts that name its
// states and nodes, the properties it knows but does not implement (their
// values are skipped) and the properties whose values it gathers.
struct tParserItem {
    const CalendarLayout::tItem& layout;  // frame nodes and the properties gathered
    const char* rootUnexpected;           // node in the begin state (typeId, root), code 1
    const char* objectNodeUnexpected;     // node in the object state (typeId, component), code 2
    const char* objectLeafUnexpected;     // leaf in the object state (typeId), code 2
    const char* objectEndUnexpected;      // node end in the object state (typeId, root), code 2
    const char* componentUnimplemented;   // unimplemented property at component level, code 4
    const char* componentEndUnexpected;   // node end in the component state (typeId, component)
    const tIdRange* unimplemented;
    unsigned int unimplementedCount;
    // Whether a 1013 name still waiting for its value when a stream ends may
    // pair with a 1014 of the next stream (the task's rule); the event and
    // the note drop it with the stream.
    bool keepsPendingName = false;
    // Whether the start of an unimplemented property drops a pending name
    // (the event's rule; the task and the note leave it waiting).
    bool unimplementedDropsPendingName = false;
};

// The parse-state machine of the calendar family, written once for events,
// tasks and notes and compiled once per receiver interface, so that the walk,
// the trace lines and the frame calls reach the receiver without a hop through
// the engine. It walks the stream as the CTLVParser's target, checks every
// element against its state, gathers each property's values and hands them to
// the item's receiver when the property's node closes. Every event first sends
// a trace line with code 0; irregularities go out with their code and text and
// the walk goes on. The item supplies its data (tParserItem); its receiver
// calls follow from its layout (CalendarLayout::tItem).
template <typename TReceiver>
class TReceivingEngine : public ParserCreatorCollection::ITLV,
                         public ParserCreatorCollection::CTLVParser {
  public:
    enum eParsingState : unsigned int {
        ParsingStateBegin = 0,
        ParsingStateObjectContext = 1,
        ParsingStateComponentContext = 2,
        ParsingStatePropertyContext = 4,
    };

    ~TReceivingEngine() override;

    bool Parse(const void* data, const unsigned int& length, const char*& errorText,
               unsigned int& consumed) override;

    bool Unknown(const ParserCreatorCollection::eClass& elementClass, const unsigned int& typeId,
                 const void* value, const unsigned int& length) final;
    // The walk calls these directly, once per element: they are compiled
    // into it.
    bool NodeBegin(const unsigned int& typeId) final;
    bool NodeEnd(const unsigned int& typeId) final;
    bool LeafInt8(const unsigned int& typeId, const signed char& value) final;
    bool LeafInt16(const unsigned int& typeId, const short& value) final;
    bool LeafUInt8(const unsigned int& typeId, const unsigned char& value) final;
    bool LeafUInt16(const unsigned int& typeId, const unsigned short& value) final;
    bool LeafBitfield8(const unsigned int& typeId, const unsigned char& value) final;
    bool LeafBitfield16(const unsigned int& typeId, const unsigned short& value) final;
    bool LeafString(const unsigned int& typeId, const char* text) final;
    bool LeafByteStream(const unsigned int& typeId, const void* data,
                        const unsigned int& length) final;
    bool LeafUInt32(const unsigned int& typeId, const unsigned int& value) final;
    bool LeafInt32(const unsigned int& typeId, const int& value) final;

  protected:
    TReceivingEngine(const tParserItem& item, TReceiver& receiver);

    TReceiver& m_receiver;

  private:
    friend struct TWalkTarget<TReceivingEngine>;
    // The element calls themselves, by value: the walk binds them statically
    // through its target, and the ITLV overrides forward to them. Every other
    // leaf is rare enough to go through its override.
    static constexpr unsigned int kWalkInlined = 0;
    bool OnNodeBegin(unsigned int typeId);
    bool OnNodeEnd(unsigned int typeId);
    bool OnString(unsigned int typeId, const char* text);
    // Whether a leaf is a value of an open property whose values are gathered:
    // the common case, placed without the state machine's other checks. Kept
    // as one flag, set wherever its parts change, since every leaf asks.
    bool GathersValues() const noexcept { return m_gathers; }
    void UpdateGathers() noexcept {
        m_gathers = m_row != nullptr && m_state == ParsingStatePropertyContext && !m_skip;
    }
    bool Leaf(ParserCreatorCollection::eClass elementClass, unsigned int typeId,
              const uTlvValue& value);
    bool Place(tPlacement placement, ParserCreatorCollection::eClass elementClass,
               unsigned int typeId, const uTlvValue& value);
    bool LeafNode(ParserCreatorCollection::eClass elementClass, unsigned int typeId,
                  const uTlvValue& value);
    bool BeginProperty(unsigned int typeId, const char* unimplementedText);
    bool EndProperty(unsigned int typeId);
    bool CallPropertyCallbackAndResetDataMember(unsigned int typeId);
    bool StorePropertyValue(ParserCreatorCollection::eClass elementClass, unsigned int typeId,
                            const uTlvValue& value);
    bool HandleXParamValue(const char* text);
    void NotePendingNameSource() noexcept;
    void CarryPendingName() noexcept;
    // The kind of an ID in this item: the slot whose values it gathers (or
    // none), with a bit for a property it knows but does not implement.
    unsigned int KindOf(unsigned int typeId) const noexcept {
        return typeId < sizeof m_property ? m_property[typeId] : kPropertySlots;
    }
    void SetCurrentProperty(unsigned int typeId) noexcept;
    void ResetSlot(unsigned int slot) noexcept;
    // Kept out of the element paths: a report is the rare case.
    __attribute__((noinline, cold)) bool Report(int code, const char* format, unsigned int first,
                                                unsigned int second = 0);
    // The code-0 line at the start of every event.
    void TraceLine(CTraceLine& line, unsigned int typeId) {
        m_receiver.TraceMessage(kTraceCode, line.Format(static_cast<int>(typeId)));
    }
    // Code 0: a trace line, not a fault. A static object, so that passing it
    // by reference costs no store per line.
    static constexpr int kTraceCode = 0;

    const tParserItem& m_item;
    PAL::CString m_message;
    // The trace lines, each with its head written once.
    CTraceLine m_traceNodeBegin{"NodeBegin():  typeId: %d"};
    CTraceLine m_traceNodeEnd{"NodeEnd():  typeId: %d"};
    CTraceLine m_traceLeaf{"LeafNode():  typeId: %d"};
    CTraceLine m_traceCallback{"callPropertyCallbackAndResetDataMember():  typeId: %d"};
    unsigned int m_state = ParsingStateBegin;
    unsigned int m_currentProperty;
    unsigned int m_currentSlot;         // slot of m_currentProperty, or none
    const tPlacement* m_row = nullptr;  // the placements of m_currentSlot, or null
    tPropertyValues* m_open = nullptr;  // the record of m_currentSlot, or null
    // Within a walk the pending name points at its leaf's text; between walks
    // it is null or, for an item that keeps it, m_heldName.
    const char* m_pendingName = nullptr;
    // Where the pending name's text lives until Parse returns: the caller's
    // buffer, or m_repairedName for a repaired text (whose copy the walk
    // frees); null when it could not be kept.
    const char* m_pendingSource = nullptr;
    std::string m_repairedName;
    std::string m_heldName;  // the name carried into the next Parse
    bool m_skip = false;
    bool m_gathers = false;  // GathersValues
    // Slots opened, and so perhaps holding values, since their last reset
    // (bit set of slots): only these are cleared when a stream starts.
    unsigned int m_filled = 0;
    unsigned char m_property[4096];  // KindOf every 12-bit ID
    tPropertyValues m_values[kPropertySlots];
};

// Compiled once, in the engine's own source.
extern template class TReceivingEngine<ICalendarReceiver>;
extern template class TReceivingEngine<ITaskReceiver>;
extern template class TReceivingEngine<INoteReceiver>;

}  // namespace CalendarFamily
}  // namespace PimShared

#endif
