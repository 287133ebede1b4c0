#include "pimshared/common/CalendarFamilyParser.h"

#include <cstdint>
#include <cstring>

#include "parsercreatorcollection/src/tlv/parser/TLVWalk.h"
#include "pimshared/common/DiagnosticFormat.h"
#include "pimshared/common/TypeIds.h"
#include "pimshared/common/WalkInline.h"

namespace PimShared {
namespace CalendarFamily {

using ParserCreatorCollection::eClass;

namespace {

using CalendarLayout::eField;
using CalendarLayout::tProperty;

constexpr unsigned int kSlotCount = CalendarLayout::PropertyCount;
static_assert(kSlotCount == kPropertySlots, "one slot per property of the family");
constexpr unsigned int kNoSlot = kSlotCount;
// In an engine's kind of an ID: the item knows the property but does not
// implement it.
constexpr unsigned int kUnimplementedBit = 0x80;
static_assert(kNoSlot < kUnimplementedBit, "a kind is a slot and the bit");

// Where each value ID goes in each slot's record, so that a value leaf is
// placed by one look-up whatever the number of IDs its property takes. Value
// IDs are numbered densely (kValueColumns) for the per-slot rows; every ID no
// row takes shares the last column, which is None in every row.
struct tValueColumns {
    unsigned char column[4096];
    unsigned int count;
};
constexpr tValueColumns MakeValueColumns() {
    tValueColumns columns{};
    for (unsigned char& c : columns.column) c = 0xFF;
    const auto add = [&columns](unsigned int valueId) {
        if (columns.column[valueId] == 0xFF) {
            columns.column[valueId] = static_cast<unsigned char>(columns.count++);
        }
    };
    for (unsigned int slot = 0; slot < kSlotCount; ++slot) {
        const tProperty& row = CalendarLayout::Detail::kProperties[slot];
        for (unsigned int i = 0; i < CalendarLayout::ColumnCount(row); ++i) add(row.values[i].id);
    }
    add(TypeIdValTypeXparamName);
    add(TypeIdValTypeXparamValue);
    for (unsigned char& c : columns.column) {
        if (c == 0xFF) c = static_cast<unsigned char>(columns.count);
    }
    return columns;
}
constexpr tValueColumns kValueColumns = MakeValueColumns();
constexpr unsigned int kNoneColumn = kValueColumns.count;
// Rows of a power-of-two width keep the look-up a shift.
constexpr unsigned int kColumnStride = 32;
static_assert(kNoneColumn < kColumnStride, "a slot's row holds every value column and None");

struct tPlacements {
    tPlacement cell[kSlotCount][kColumnStride];
};
// The extension parameters win over the values (no row takes their IDs).
constexpr tPlacements MakePlacements() {
    tPlacements placements{};
    for (unsigned int slot = 0; slot < kSlotCount; ++slot) {
        const tProperty& layout = CalendarLayout::Detail::kProperties[slot];
        tPlacement* row = placements.cell[slot];
        for (unsigned int i = 0; i < CalendarLayout::ColumnCount(layout); ++i) {
            const CalendarLayout::tValue& value = layout.values[i];
            row[kValueColumns.column[value.id]] = {value.field, value.index};
        }
        if (layout.xParams) {
            row[kValueColumns.column[TypeIdValTypeXparamName]] = {eField::XParamName, 0};
            row[kValueColumns.column[TypeIdValTypeXparamValue]] = {eField::XParamValue, 0};
        }
    }
    return placements;
}
constexpr tPlacements kPlacements = MakePlacements();

unsigned int ColumnOf(unsigned int valueId) noexcept {
    return valueId < 4096 ? kValueColumns.column[valueId] : kNoneColumn;
}

// The lists a slot's values can reach (bit set of list indices), the only
// ones its reset clears.
struct tSlotLists {
    unsigned char slot[kSlotCount];
    unsigned int resetNumber[kSlotCount];  // and the number each starts from
};
constexpr tSlotLists MakeSlotLists() {
    tSlotLists table{};
    for (unsigned int i = 0; i < kSlotCount; ++i) {
        const tProperty& row = CalendarLayout::Detail::kProperties[i];
        table.resetNumber[i] = row.resetNumber;
        for (unsigned int c = 0; c < CalendarLayout::ColumnCount(row); ++c) {
            if (row.values[c].field == eField::Append) {
                table.slot[i] =
                    static_cast<unsigned char>(table.slot[i] | (1u << row.values[c].index));
            }
        }
    }
    return table;
}
constexpr tSlotLists kSlotLists = MakeSlotLists();
static_assert(kSlotLists.slot[CalendarLayout::Attendee] == 7,
              "the attendee reaches all three lists");

// Out of the store's common path: a list entry may allocate.
__attribute__((noinline)) bool AppendText(PAL::TVector<const char*>& list,
                                          const char* text) noexcept {
    return list.pushBack(text);
}

unsigned int FindSlot(unsigned int property) noexcept {
    return CalendarLayout::RowOfNode(property);
}

// The leaf's value as a number, whatever its class; texts and byte streams
// carry none.
unsigned int NumberOf(eClass elementClass, const uTlvValue& value) noexcept {
    switch (elementClass) {
        case ParserCreatorCollection::Int8:
            return static_cast<unsigned int>(value.int8);
        case ParserCreatorCollection::Int16:
            return static_cast<unsigned int>(value.int16);
        case ParserCreatorCollection::UInt8:
        case ParserCreatorCollection::Bitfield8:
            return value.uint8;
        case ParserCreatorCollection::UInt16:
        case ParserCreatorCollection::Bitfield16:
            return value.uint16;
        case ParserCreatorCollection::UInt32:
            return value.uint32;
        case ParserCreatorCollection::Int32:
            return static_cast<unsigned int>(value.int32);
        default:
            return 0;
    }
}

// The leaf's text; a leaf of another class where a text is expected reads as
// the empty text, so receivers never get a pointer that is not a text.
const char* TextOf(eClass elementClass, const uTlvValue& value) noexcept {
    return elementClass == ParserCreatorCollection::String && value.text != nullptr ? value.text
                                                                                    : "";
}

bool IsObjectLevelProperty(unsigned int typeId) noexcept {
    return typeId == TypeIdPropTypeObjLevel || typeId == TypeIdPropTypeProductIdentifier ||
           typeId == TypeIdPropTypeVersion || typeId == TypeIdValTypeInstance;
}

// The layout of the item a receiver interface serves.
template <typename TReceiver>
struct tItemOf;
template <>
struct tItemOf<ICalendarReceiver> {
    static constexpr unsigned int kProperties = CalendarLayout::kEvent.properties;
};
template <>
struct tItemOf<ITaskReceiver> {
    static constexpr unsigned int kProperties = CalendarLayout::kTask.properties;
};
template <>
struct tItemOf<INoteReceiver> {
    static constexpr unsigned int kProperties = CalendarLayout::kNote.properties;
};

template <typename TReceiver>
constexpr bool Has(CalendarLayout::eProperty property) {
    return (tItemOf<TReceiver>::kProperties & CalendarLayout::Bit(property)) != 0;
}

// The receiver call of the property in slot with its gathered values, written
// once for the three receiver interfaces (their operations of the same name
// take the same arguments): sets answer to the receiver's answer; false when
// the item has no operation for the property.
template <typename TReceiver>
bool Deliver(TReceiver& receiver, unsigned int slot, const tPropertyValues& v, bool& answer) {
    using namespace CalendarLayout;
    switch (slot) {
        case ProductIdentifier:
            answer = receiver.ProductIdentifier(v.text[kMain], v.xParams);
            return true;
        case Version:
            answer = receiver.Version(v.text[kMain], v.xParams);
            return true;
        case Categories:
            answer =
                receiver.Categories(v.list[kCategoryList], v.text[kCategoryLanguage], v.xParams);
            return true;
        case Classification:
            answer = receiver.Classification(v.text[kMain], v.xParams);
            return true;
        case CalendarLayout::Description:  // not the namespace of the item descriptions
            answer =
                receiver.Description(v.text[kMain], v.text[kAltRep], v.text[kLanguage], v.xParams);
            return true;
        case Location:
            if constexpr (Has<TReceiver>(Location)) {
                answer =
                    receiver.Location(v.text[kMain], v.text[kAltRep], v.text[kLanguage], v.xParams);
                return true;
            }
            return false;
        case Priority:
            if constexpr (Has<TReceiver>(Priority)) {
                answer = receiver.Priority(static_cast<unsigned char>(v.number), v.xParams);
                return true;
            }
            return false;
        case Status: {
            // A String status leaf carries its own text; a UInt8 leaf a code.
            const char* text = v.text[kMain] != nullptr ? v.text[kMain] : StatusText(v.number);
            answer = receiver.Status(text, v.xParams);
            return true;
        }
        case Summary:
            answer = receiver.Summary(v.text[kMain], v.text[kAltRep], v.text[kLanguage], v.xParams);
            return true;
        case DateTimeStart:
            if constexpr (Has<TReceiver>(DateTimeStart)) {
                answer = receiver.DateTimeStart(v.dateTime, v.text[kZone], v.xParams);
                return true;
            }
            return false;
        case DateTimeEnd:
            if constexpr (Has<TReceiver>(DateTimeEnd)) {
                answer = receiver.DateTimeEnd(v.dateTime, v.text[kZone], v.xParams);
                return true;
            }
            return false;
        case DateTimeStartLocal:
            if constexpr (Has<TReceiver>(DateTimeStartLocal)) {
                answer = receiver.DateTimeStartLocal(v.dateTime, v.xParams);
                return true;
            }
            return false;
        case DateTimeEndLocal:
            if constexpr (Has<TReceiver>(DateTimeEndLocal)) {
                answer = receiver.DateTimeEndLocal(v.dateTime, v.xParams);
                return true;
            }
            return false;
        case DateTimeDueLocal:
            if constexpr (Has<TReceiver>(DateTimeDueLocal)) {
                answer = receiver.DateTimeDueLocal(v.dateTime, v.xParams);
                return true;
            }
            return false;
        case UniqueIdentifier:
            answer = receiver.UniqueIdentifier(v.text[kMain], v.xParams);
            return true;
        case DateTimeCreated:
            answer = receiver.DateTimeCreated(v.dateTime, v.xParams);
            return true;
        case LastModified:
            answer = receiver.LastModified(v.dateTime, v.xParams);
            return true;
        case SequenceNumber:
            answer = receiver.SequenceNumber(static_cast<unsigned short>(v.number), v.xParams);
            return true;
        case Attendee:
            answer = receiver.Attendee(
                v.text[kAddress], v.text[kAttendeeCuType], v.list[kAttendeeMembers],
                v.text[kAttendeeRole], v.text[kAttendeePartStat], static_cast<eRsvpType>(v.number),
                v.list[kAttendeeDelegatedTo], v.list[kAttendeeDelegatedFrom],
                v.text[kAttendeeSentBy], v.text[kAttendeeCommonName], v.text[kAttendeeDirectory],
                v.text[kAttendeeLanguage], v.xParams);
            return true;
        case Organizer:
            answer = receiver.Organizer(v.text[kAddress], v.text[kOrganizerSentBy],
                                        v.text[kOrganizerCommonName], v.text[kOrganizerDirectory],
                                        v.text[kOrganizerLanguage], v.xParams);
            return true;
        case SendStatus:
            answer = receiver.SendStatus(static_cast<unsigned char>(v.number));
            return true;
        default:
            return false;
    }
}

constexpr int kWrongRoot = 1;
constexpr int kUnexpected = 2;
constexpr int kUnimplemented = 4;
constexpr int kInternal = 6;

}  // namespace

template <typename TReceiver>
TReceivingEngine<TReceiver>::TReceivingEngine(const tParserItem& item, TReceiver& receiver)
    : CTLVParser(static_cast<ParserCreatorCollection::ITLV&>(*this)),
      m_receiver(receiver),
      m_item(item),
      m_currentProperty(TypeIdNone),
      m_currentSlot(kNoSlot) {
    for (unsigned int i = 0; i < kSlotCount; ++i) ResetSlot(i);
    for (unsigned int id = 0; id < 4096; ++id) {
        const unsigned int slot = FindSlot(id);
        m_property[id] = static_cast<unsigned char>(
            slot != kNoSlot && (m_item.layout.gathered & (1u << slot)) != 0 ? slot : kNoSlot);
    }
    for (unsigned int i = 0; i < m_item.unimplementedCount; ++i) {
        for (unsigned int id = m_item.unimplemented[i].first; id <= m_item.unimplemented[i].last;
             ++id) {
            m_property[id] = static_cast<unsigned char>(m_property[id] | kUnimplementedBit);
        }
    }
}

template <typename TReceiver>
TReceivingEngine<TReceiver>::~TReceivingEngine() = default;

template <typename TReceiver>
bool TReceivingEngine<TReceiver>::Report(int code, const char* format, unsigned int first,
                                         unsigned int second) {
    FormatDiagnostic(m_message, format, static_cast<int>(first), static_cast<int>(second));
    return m_receiver.TraceMessage(code, m_message.c_str());
}

template <typename TReceiver>
PIMTLV_WALK_INLINE void TReceivingEngine<TReceiver>::ResetSlot(unsigned int slot) noexcept {
    tPropertyValues& v = m_values[slot];
    // The texts in a few wide stores, cheaper than marking and clearing the
    // ones a value reached; the lists, rarely used, only where a value can
    // reach them. The number and the microseconds are the reset state
    // wherever no value reaches them.
    std::memset(v.text, 0, sizeof v.text);
    const unsigned int lists = kSlotLists.slot[slot];
    if (lists != 0) {
        for (unsigned int i = 0; i < 3; ++i) {
            if ((lists & (1u << i)) != 0) v.list[i].clear();
        }
    }
    v.number = kSlotLists.resetNumber[slot];
    // Only the microseconds: the other fields keep the last value read, which
    // receivers of a date-time that failed to read have come to expect.
    v.dateTime.setMicroseconds(0);
    v.xParams.clear();
}

template <typename TReceiver>
PIMTLV_WALK_INLINE void TReceivingEngine<TReceiver>::SetCurrentProperty(
    unsigned int typeId) noexcept {
    m_currentProperty = typeId;
    const unsigned int slot = KindOf(typeId) & ~kUnimplementedBit;
    if (slot != kNoSlot) {
        m_currentSlot = slot;
        m_row = kPlacements.cell[slot];
        m_open = &m_values[slot];
        // Marked when the property opens rather than per value: a reset of a
        // slot that got no values changes nothing.
        m_filled |= 1u << slot;
    } else {
        m_currentSlot = kNoSlot;
        m_row = nullptr;
        m_open = nullptr;
    }
    UpdateGathers();
}

template <typename TReceiver>
bool TReceivingEngine<TReceiver>::Parse(const void* data, const unsigned int& length,
                                        const char*& errorText, unsigned int& consumed) {
    consumed = 0;
    for (unsigned int filled = m_filled; filled != 0; filled &= filled - 1) {
        ResetSlot(static_cast<unsigned int>(__builtin_ctz(filled)));
    }
    m_filled = 0;
    if (data == nullptr) {
        m_message.assign("invalid TLV stream");
        errorText = m_message.c_str();
        return false;
    }
    m_state = ParsingStateBegin;
    UpdateGathers();
    TWalkTarget<TReceivingEngine> direct{*this};
    const bool ok = ParseInto(direct, data, length, errorText, consumed);
    if (!ok) m_receiver.TraceMessage(kInternal, errorText);
    CarryPendingName();
    return ok;
}

// A 1013 text in the caller's buffer lives until Parse returns; a repaired
// one only until the walk ends, so an item that keeps its pending name across
// streams copies that one now. Texts in the buffer, the common case, are
// copied only if they are still pending when Parse returns.
template <typename TReceiver>
void TReceivingEngine<TReceiver>::NotePendingNameSource() noexcept {
    const auto text = reinterpret_cast<std::uintptr_t>(m_pendingName);
    const auto first = reinterpret_cast<std::uintptr_t>(m_data);
    if (text >= first && text - first < m_length) {
        m_pendingSource = m_pendingName;
        return;
    }
    try {
        m_repairedName.assign(m_pendingName);
        m_pendingSource = m_repairedName.c_str();
    } catch (...) {
        m_pendingSource = nullptr;  // out of memory: the name cannot outlive the walk
    }
}

// The stream's texts die when Parse returns. The event and the note forget a
// name still waiting for its value (as if each Parse began without one); the
// task keeps its own copy, so a 1014 at the start of the next stream pairs
// with it.
template <typename TReceiver>
void TReceivingEngine<TReceiver>::CarryPendingName() noexcept {
    if (!m_item.keepsPendingName || m_pendingName == nullptr) {
        m_pendingName = nullptr;
        return;
    }
    if (m_pendingName == m_heldName.c_str()) return;  // carried in, still unpaired
    const char* source = m_pendingSource;
    m_pendingName = nullptr;
    if (source == nullptr) return;
    try {
        m_heldName.assign(source);
        m_pendingName = m_heldName.c_str();
    } catch (...) {
        // Out of memory: the name is lost rather than left dangling.
    }
}

template <typename TReceiver>
bool TReceivingEngine<TReceiver>::Unknown(const eClass& elementClass, const unsigned int& typeId,
                                          const void*, const unsigned int&) {
    TraceLine(m_traceLeaf, typeId);
    return Report(kInternal, "Unknown(): Unexpected class: %d  TypeId: %d", elementClass, typeId);
}

template <typename TReceiver>
PIMTLV_WALK_INLINE bool TReceivingEngine<TReceiver>::OnNodeBegin(unsigned int typeId) {
    TraceLine(m_traceNodeBegin, typeId);
    switch (m_state) {
        case ParsingStateBegin:
            if (typeId == m_item.layout.root) {
                m_state = ParsingStateObjectContext;
                m_skip = false;
                UpdateGathers();
                return true;
            }
            return Report(kWrongRoot, m_item.rootUnexpected, typeId, m_item.layout.root);
        case ParsingStateObjectContext:
            if (IsObjectLevelProperty(typeId)) {
                m_skip = false;
                m_pendingName = nullptr;
                SetCurrentProperty(typeId);
                return true;
            }
            if (typeId == m_item.layout.component) {
                m_skip = false;
                m_state = ParsingStateComponentContext;
                UpdateGathers();
                return true;
            }
            if (typeId == TypeIdObjLevelMarker) return true;
            return Report(kUnexpected, m_item.objectNodeUnexpected, typeId,
                          m_item.layout.component);
        case ParsingStateComponentContext:
            m_state = ParsingStatePropertyContext;
            return BeginProperty(typeId, m_item.componentUnimplemented);
        case ParsingStatePropertyContext:
            return BeginProperty(typeId,
                                 "NodeBegin(): [state ParsingStatePropertyContext] Unimplemented "
                                 "typeId. TypeId: %d.");
        default:
            return Report(kInternal, "NodeBegin(): Unknown mParsingState: %d", m_state);
    }
}

// A node inside the component (or inside a property: it then replaces the
// current property). Unknown IDs are let in on purpose: the value store and
// the property end report them, with the values they carried.
template <typename TReceiver>
PIMTLV_WALK_INLINE bool TReceivingEngine<TReceiver>::BeginProperty(unsigned int typeId,
                                                                   const char* unimplementedText) {
    if ((KindOf(typeId) & kUnimplementedBit) != 0) {
        m_skip = true;
        if (m_item.unimplementedDropsPendingName) m_pendingName = nullptr;
        SetCurrentProperty(typeId);
        return Report(kUnimplemented, unimplementedText, typeId);
    }
    m_pendingName = nullptr;
    SetCurrentProperty(typeId);
    return true;
}

template <typename TReceiver>
PIMTLV_WALK_INLINE bool TReceivingEngine<TReceiver>::OnNodeEnd(unsigned int typeId) {
    TraceLine(m_traceNodeEnd, typeId);
    switch (m_state) {
        case ParsingStateBegin:
            return Report(kUnexpected, "NodeEnd(): [state ParsingStateBegin] Unexpected typeId: %d",
                          typeId);
        case ParsingStateObjectContext:
            if (typeId == m_currentProperty) return EndProperty(typeId);
            if (typeId == m_item.layout.root) {
                m_receiver.End();
                m_state = ParsingStateBegin;
                UpdateGathers();
                return true;
            }
            // A property of the object level that was already ended.
            if (typeId == TypeIdObjLevelMarker || IsObjectLevelProperty(typeId)) return true;
            return Report(kUnexpected, m_item.objectEndUnexpected, typeId, m_item.layout.root);
        case ParsingStateComponentContext:
            if (typeId == m_item.layout.component) {
                m_state = ParsingStateObjectContext;
                UpdateGathers();
                return true;
            }
            return Report(kUnexpected, m_item.componentEndUnexpected, typeId,
                          m_item.layout.component);
        case ParsingStatePropertyContext:
            if (typeId == m_currentProperty) {
                const bool answer = EndProperty(typeId);
                m_state = ParsingStateComponentContext;  // gathers nothing, as EndProperty left it
                return answer;
            }
            return Report(kUnexpected,
                          "NodeEnd(): [state ParsingStatePropertyContext] Unexpected typeId: %d  "
                          "Expected: %d (current property)",
                          typeId, m_currentProperty);
        default:
            return Report(kInternal, "NodeEnd(): Unknown mParsingState: %d", m_state);
    }
}

template <typename TReceiver>
PIMTLV_WALK_INLINE bool TReceivingEngine<TReceiver>::EndProperty(unsigned int typeId) {
    bool answer = true;
    if (m_skip) {
        m_skip = false;
    } else {
        answer = CallPropertyCallbackAndResetDataMember(typeId);
    }
    m_currentProperty = TypeIdNone;
    m_currentSlot = kNoSlot;
    m_row = nullptr;
    m_open = nullptr;
    m_gathers = false;  // no row
    return answer;
}

template <typename TReceiver>
bool TReceivingEngine<TReceiver>::CallPropertyCallbackAndResetDataMember(unsigned int typeId) {
    TraceLine(m_traceCallback, typeId);
    bool answer = true;
    const unsigned int slot = m_currentSlot;
    if (slot != kNoSlot && Deliver(m_receiver, slot, *m_open, answer)) {
        ResetSlot(slot);
        m_filled &= ~(1u << slot);
        return answer;
    }
    // Values gathered for a property without a receiver operation stay until
    // the next Parse.
    Report(kInternal, "callPropertyCallbackAndResetDataMember(): Unexpected typeId: %d", typeId);
    return true;
}

template <typename TReceiver>
bool TReceivingEngine<TReceiver>::LeafNode(eClass elementClass, unsigned int typeId,
                                           const uTlvValue& value) {
    TraceLine(m_traceLeaf, typeId);
    switch (m_state) {
        case ParsingStateBegin:
            return Report(kUnexpected,
                          "LeafNode(): [state ParsingStateBegin] Unexpected typeId: %d", typeId);
        case ParsingStateObjectContext:
            if (typeId == TypeIdValTypeInstance) {
                if (!m_skip) m_receiver.Begin(NumberOf(elementClass, value));
                return true;
            }
            if (typeId == TypeIdValTypeVersion || typeId == TypeIdValTypeObjLevel ||
                typeId == TypeIdValTypeProductIdentifier) {
                return m_skip || StorePropertyValue(elementClass, typeId, value);
            }
            return Report(kUnexpected, m_item.objectLeafUnexpected, typeId);
        case ParsingStateComponentContext:
            // The instance leaf is the component's first element; after it
            // the component counts as inside a property.
            m_state = ParsingStatePropertyContext;
            UpdateGathers();
            if (typeId == TypeIdValTypeInstance) {
                m_receiver.Begin(NumberOf(elementClass, value));
            } else if (typeId == TypeIdValTypeInstanceName) {
                m_receiver.InstanceName(TextOf(elementClass, value));
            }
            return true;
        case ParsingStatePropertyContext:
            return m_skip || StorePropertyValue(elementClass, typeId, value);
        default:
            return Report(kInternal, "LeafNode(): Unknown mParsingState: %d", m_state);
    }
}

template <typename TReceiver>
bool TReceivingEngine<TReceiver>::StorePropertyValue(eClass elementClass, unsigned int typeId,
                                                     const uTlvValue& value) {
    if (m_currentSlot == kNoSlot) {
        return Report(kInternal, "storePropertyValue(): Unexpected mCurrentProperty: %d",
                      m_currentProperty);
    }
    return Place(kPlacements.cell[m_currentSlot][ColumnOf(typeId)], elementClass, typeId, value);
}

// A leaf of the open property, whose record is m_values[m_currentSlot].
template <typename TReceiver>
bool TReceivingEngine<TReceiver>::Place(tPlacement placement, eClass elementClass,
                                        unsigned int typeId, const uTlvValue& value) {
    if (placement.field == eField::None) {
        return Report(kUnexpected, "Unexpected PropValue-Id (%d) for the current PropType-Id (%d)",
                      typeId, m_currentProperty);
    }
    tPropertyValues& v = *m_open;
    const unsigned int index = placement.index;
    switch (placement.field) {
        case eField::None:
            return true;
        case eField::XParamName:
            m_pendingName = TextOf(elementClass, value);
            if (m_item.keepsPendingName) NotePendingNameSource();
            return true;
        case eField::XParamValue:
            return HandleXParamValue(TextOf(elementClass, value));
        case eField::Text:
            v.text[index] = TextOf(elementClass, value);
            return true;
        case eField::Append:
            return AppendText(v.list[index], TextOf(elementClass, value));
        case eField::Byte:
            v.number = NumberOf(elementClass, value) & 0xFFu;
            return true;
        case eField::Word:
            v.number = NumberOf(elementClass, value) & 0xFFFFu;
            return true;
        case eField::DateTime:
            // A text that does not read leaves the value as it was; the
            // property is still delivered.
            PAL::DateAndTimeUtilities::FromString(
                v.dateTime, TextOf(elementClass, value),
                PAL::DateAndTimeUtilities::eDateTimeFormatICalendar);
            return true;
        case eField::Status:
            if (elementClass == ParserCreatorCollection::String) {
                v.text[kMain] = TextOf(elementClass, value);
            } else {
                v.text[kMain] = nullptr;
                v.number = NumberOf(elementClass, value) & 0xFFu;
            }
            return true;
    }
    return true;
}

template <typename TReceiver>
bool TReceivingEngine<TReceiver>::HandleXParamValue(const char* text) {
    if (m_pendingName == nullptr) {
        return Report(kInternal,
                      "handleXParamValue(): Missing TypeIdValTypeXparamName. Property-TypeId: %d",
                      m_currentProperty);
    }
    const tXParam pair{m_pendingName, text};
    m_pendingName = nullptr;
    return m_values[m_currentSlot].xParams.pushBack(pair);
}

// Every leaf class funnels into Leaf: a leaf is interpreted by its type ID.
// A value of an open property is placed straight away; every other leaf goes
// through the state machine.
template <typename TReceiver>
PIMTLV_WALK_INLINE bool TReceivingEngine<TReceiver>::Leaf(eClass elementClass, unsigned int typeId,
                                                          const uTlvValue& value) {
    if (GathersValues()) {
        TraceLine(m_traceLeaf, typeId);
        return Place(m_row[ColumnOf(typeId)], elementClass, typeId, value);
    }
    return LeafNode(elementClass, typeId, value);
}
template <typename TReceiver>
bool TReceivingEngine<TReceiver>::LeafInt8(const unsigned int& typeId, const signed char& value) {
    uTlvValue v;
    v.int8 = value;
    return Leaf(ParserCreatorCollection::Int8, typeId, v);
}
template <typename TReceiver>
bool TReceivingEngine<TReceiver>::LeafInt16(const unsigned int& typeId, const short& value) {
    uTlvValue v;
    v.int16 = value;
    return Leaf(ParserCreatorCollection::Int16, typeId, v);
}
template <typename TReceiver>
bool TReceivingEngine<TReceiver>::LeafUInt8(const unsigned int& typeId,
                                            const unsigned char& value) {
    uTlvValue v;
    v.uint8 = value;
    return Leaf(ParserCreatorCollection::UInt8, typeId, v);
}
template <typename TReceiver>
bool TReceivingEngine<TReceiver>::LeafUInt16(const unsigned int& typeId,
                                             const unsigned short& value) {
    uTlvValue v;
    v.uint16 = value;
    return Leaf(ParserCreatorCollection::UInt16, typeId, v);
}
template <typename TReceiver>
bool TReceivingEngine<TReceiver>::LeafBitfield8(const unsigned int& typeId,
                                                const unsigned char& value) {
    uTlvValue v;
    v.uint8 = value;
    return Leaf(ParserCreatorCollection::Bitfield8, typeId, v);
}
template <typename TReceiver>
bool TReceivingEngine<TReceiver>::LeafBitfield16(const unsigned int& typeId,
                                                 const unsigned short& value) {
    uTlvValue v;
    v.uint16 = value;
    return Leaf(ParserCreatorCollection::Bitfield16, typeId, v);
}
// Most values are texts of a text field: stored without the general placement.
template <typename TReceiver>
PIMTLV_WALK_INLINE bool TReceivingEngine<TReceiver>::OnString(unsigned int typeId,
                                                              const char* text) {
    uTlvValue v;
    v.text = text;
    if (!GathersValues()) return LeafNode(ParserCreatorCollection::String, typeId, v);
    TraceLine(m_traceLeaf, typeId);
    const tPlacement placement = m_row[ColumnOf(typeId)];
    if (placement.field != eField::Text || text == nullptr) {
        return Place(placement, ParserCreatorCollection::String, typeId, v);
    }
    m_open->text[placement.index] = text;
    return true;
}
template <typename TReceiver>
bool TReceivingEngine<TReceiver>::LeafByteStream(const unsigned int& typeId, const void* data,
                                                 const unsigned int& length) {
    uTlvValue v;
    v.bytes.data = data;
    v.bytes.length = length;
    return Leaf(ParserCreatorCollection::ByteStream, typeId, v);
}
template <typename TReceiver>
bool TReceivingEngine<TReceiver>::LeafUInt32(const unsigned int& typeId,
                                             const unsigned int& value) {
    uTlvValue v;
    v.uint32 = value;
    return Leaf(ParserCreatorCollection::UInt32, typeId, v);
}
template <typename TReceiver>
bool TReceivingEngine<TReceiver>::LeafInt32(const unsigned int& typeId, const int& value) {
    uTlvValue v;
    v.int32 = value;
    return Leaf(ParserCreatorCollection::Int32, typeId, v);
}

template <typename TReceiver>
bool TReceivingEngine<TReceiver>::NodeBegin(const unsigned int& typeId) {
    return OnNodeBegin(typeId);
}
template <typename TReceiver>
bool TReceivingEngine<TReceiver>::NodeEnd(const unsigned int& typeId) {
    return OnNodeEnd(typeId);
}
template <typename TReceiver>
bool TReceivingEngine<TReceiver>::LeafString(const unsigned int& typeId, const char* text) {
    return OnString(typeId, text);
}

template class TReceivingEngine<ICalendarReceiver>;
template class TReceivingEngine<ITaskReceiver>;
template class TReceivingEngine<INoteReceiver>;

}  // namespace CalendarFamily
}  // namespace PimShared
