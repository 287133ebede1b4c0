#include "pimshared/common/CalendarFamilyParser.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "parsercreatorcollection/src/tlv/parser/TLVWalk.h"
#include "pimshared/common/CreatorFrame.h"
#include "pimshared/common/DiagnosticFormat.h"
#include "pimshared/common/TypeIds.h"

namespace PimShared {
namespace CalendarFamily {

using ParserCreatorCollection::eClass;

namespace {

// Where a value leaf goes in its property's record.
enum class eField : unsigned char {
    None,         // not a value of the property
    XParamName,   // the name of an extension parameter, waiting for its value
    XParamValue,  // its value: the pair goes to the property's list
    Text,         // text[index] := the text
    Append,       // list[index] += the text
    Byte,         // number := low 8 bits
    Word,         // number := low 16 bits
    DateTime,     // dateTime := the text read as an iCalendar date-time
    Status,       // a String leaf: text[kMain]; any other: number := low 8 bits
};

struct tValueRule {
    unsigned short valueId;
    eField field;
    unsigned char index;
};

constexpr tValueRule kRichText[] = {
    {TypeIdValTypeAltRep, eField::Text, kAltRep},
    {TypeIdValTypeLanguage, eField::Text, kLanguage},
};
constexpr tValueRule kDateTimeZone[] = {
    {TypeIdValTypeDateTimeAlt, eField::DateTime, 0},
    {TypeIdValTypeDateTimeZone, eField::Text, kZone},
};
constexpr tValueRule kDateTimeAlt[] = {
    {TypeIdValTypeDateTimeAlt, eField::DateTime, 0},
};
constexpr tValueRule kCategories[] = {
    {TypeIdValTypeLanguage, eField::Text, kCategoryLanguage},
};
constexpr tValueRule kAttendee[] = {
    {TypeIdValTypeCuType, eField::Text, kAttendeeCuType},
    {TypeIdValTypeMember, eField::Append, kAttendeeMembers},
    {TypeIdValTypeRole, eField::Text, kAttendeeRole},
    {TypeIdValTypePartStat, eField::Text, kAttendeePartStat},
    {TypeIdValTypeRsvp, eField::Byte, 0},
    {TypeIdValTypeDelegatedTo, eField::Append, kAttendeeDelegatedTo},
    {TypeIdValTypeDelegatedFrom, eField::Append, kAttendeeDelegatedFrom},
    {TypeIdValTypeSentBy, eField::Text, kAttendeeSentBy},
    {TypeIdValTypeCommonName, eField::Text, kAttendeeCommonName},
    {TypeIdValTypeDirectory, eField::Text, kAttendeeDirectory},
    {TypeIdValTypeLanguage, eField::Text, kAttendeeLanguage},
};
constexpr tValueRule kOrganizer[] = {
    {TypeIdValTypeSentBy, eField::Text, kOrganizerSentBy},
    {TypeIdValTypeCommonName, eField::Text, kOrganizerCommonName},
    {TypeIdValTypeDirectory, eField::Text, kOrganizerDirectory},
    {TypeIdValTypeLanguage, eField::Text, kOrganizerLanguage},
};

// One property of the family: its main value (the leaf the creator always
// writes), the other value IDs it takes, whether it takes extension
// parameters, and the number it is reset to.
struct tSlotLayout {
    unsigned short property;
    unsigned short mainValue;
    eField mainField;
    unsigned char mainIndex;
    const tValueRule* extras;
    unsigned char extraCount;
    bool xParams;
    unsigned int resetNumber;
};

template <std::size_t N>
constexpr unsigned char Count(const tValueRule (&)[N]) {
    return static_cast<unsigned char>(N);
}

// The slot order is the order in which every item's record lists them.
constexpr tSlotLayout kSlots[] = {
    {TypeIdPropTypeProductIdentifier, TypeIdValTypeProductIdentifier, eField::Text, kMain, nullptr,
     0, true, 0},
    {TypeIdPropTypeVersion, TypeIdValTypeVersion, eField::Text, kMain, nullptr, 0, true, 0},
    {TypeIdPropTypeCategories, TypeIdValTypeCategory, eField::Append, kCategoryList, kCategories,
     Count(kCategories), true, 0},
    {TypeIdPropTypeClassification, TypeIdValTypeClassification, eField::Text, kMain, nullptr, 0,
     true, 0},
    {TypeIdPropTypeDescription, TypeIdValTypeDescription, eField::Text, kMain, kRichText,
     Count(kRichText), true, 0},
    {TypeIdPropTypeLocation, TypeIdValTypeLocation, eField::Text, kMain, kRichText,
     Count(kRichText), true, 0},
    {TypeIdPropTypePriority, TypeIdValTypePriority, eField::Byte, 0, nullptr, 0, true, 0},
    {TypeIdPropTypeStatus, TypeIdValTypeStatus, eField::Status, kMain, nullptr, 0, true, 0},
    {TypeIdPropTypeSummary, TypeIdValTypeSummary, eField::Text, kMain, kRichText, Count(kRichText),
     true, 0},
    {TypeIdPropTypeDateTimeStart, TypeIdValTypeDateTime, eField::DateTime, 0, kDateTimeZone,
     Count(kDateTimeZone), true, 0},
    {TypeIdPropTypeDateTimeEnd, TypeIdValTypeDateTime, eField::DateTime, 0, kDateTimeZone,
     Count(kDateTimeZone), true, 0},
    {TypeIdPropTypeDateTimeStartLocal, TypeIdValTypeDateTime, eField::DateTime, 0, kDateTimeAlt,
     Count(kDateTimeAlt), true, 0},
    {TypeIdPropTypeDateTimeEndLocal, TypeIdValTypeDateTime, eField::DateTime, 0, kDateTimeAlt,
     Count(kDateTimeAlt), true, 0},
    {TypeIdPropTypeDateTimeDueLocal, TypeIdValTypeDateTime, eField::DateTime, 0, kDateTimeAlt,
     Count(kDateTimeAlt), true, 0},
    {TypeIdPropTypeUniqueIdentifier, TypeIdValTypeUniqueIdentifier, eField::Text, kMain, nullptr, 0,
     true, 0},
    {TypeIdPropTypeDateTimeCreated, TypeIdValTypeDateTime, eField::DateTime, 0, nullptr, 0, true,
     0},
    {TypeIdPropTypeLastModified, TypeIdValTypeDateTime, eField::DateTime, 0, nullptr, 0, true, 0},
    {TypeIdPropTypeSequenceNumber, TypeIdValTypeSequenceNumber, eField::Word, 0, nullptr, 0, true,
     0},
    {TypeIdPropTypeAttendee, TypeIdValTypeCalAddress, eField::Text, kAddress, kAttendee,
     Count(kAttendee), true, eRsvpNotGiven},
    {TypeIdPropTypeOrganizer, TypeIdValTypeCalAddress, eField::Text, kAddress, kOrganizer,
     Count(kOrganizer), true, 0},
    {TypeIdPropTypeSendStatus, TypeIdValTypeSendStatus, eField::Byte, 0, nullptr, 0, false, 0},
};
constexpr unsigned int kSlotCount = sizeof kSlots / sizeof kSlots[0];
static_assert(kSlotCount == kPropertySlots, "one slot per property of the family");
static_assert(kSlotCount <= 32, "slots are a 32-bit set");
constexpr unsigned int kNoSlot = kSlotCount;

// Slot of every 12-bit ID, looked up once per property node.
struct tSlotIndex {
    unsigned char slot[4096];
};
constexpr tSlotIndex MakeSlotIndex() {
    tSlotIndex index{};
    for (unsigned char& s : index.slot) s = static_cast<unsigned char>(kNoSlot);
    for (unsigned int i = 0; i < kSlotCount; ++i) {
        index.slot[kSlots[i].property] = static_cast<unsigned char>(i);
    }
    return index;
}
constexpr tSlotIndex kSlotIndex = MakeSlotIndex();
static_assert(kNoSlot < 256, "slots fit the index");

// Where each value ID goes in each slot's record, so that a value leaf is
// placed by one look-up whatever the number of IDs its property takes. Value
// IDs are numbered densely (kValueColumns) for the per-slot rows.
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
    for (const tSlotLayout& layout : kSlots) {
        add(layout.mainValue);
        for (unsigned int i = 0; i < layout.extraCount; ++i) add(layout.extras[i].valueId);
    }
    add(TypeIdValTypeXparamName);
    add(TypeIdValTypeXparamValue);
    return columns;
}
constexpr tValueColumns kValueColumns = MakeValueColumns();
constexpr unsigned int kColumnCount = kValueColumns.count;
// Rows of a power-of-two width keep the look-up a shift.
constexpr unsigned int kColumnStride = 32;
static_assert(kColumnCount <= kColumnStride, "a slot's row holds every value column");

struct tPlacement {
    eField field;  // None where the property does not take the ID
    unsigned char index;
};
struct tPlacements {
    tPlacement cell[kSlotCount][kColumnStride];
};
// The extension parameters win over the values, the main value over an extra
// of the same ID, and an earlier extra over a later one: the rows are written
// in the reverse order.
constexpr tPlacements MakePlacements() {
    tPlacements placements{};
    for (unsigned int slot = 0; slot < kSlotCount; ++slot) {
        const tSlotLayout& layout = kSlots[slot];
        tPlacement* row = placements.cell[slot];
        for (unsigned int i = layout.extraCount; i > 0; --i) {
            const tValueRule& rule = layout.extras[i - 1];
            row[kValueColumns.column[rule.valueId]] = {rule.field, rule.index};
        }
        row[kValueColumns.column[layout.mainValue]] = {layout.mainField, layout.mainIndex};
        if (layout.xParams) {
            row[kValueColumns.column[TypeIdValTypeXparamName]] = {eField::XParamName, 0};
            row[kValueColumns.column[TypeIdValTypeXparamValue]] = {eField::XParamValue, 0};
        }
    }
    return placements;
}
constexpr tPlacements kPlacements = MakePlacements();

// Where valueId goes in slot's record (None for an ID the property does not take).
tPlacement FindPlacement(unsigned int slot, unsigned int valueId) noexcept {
    const unsigned int column = valueId < 4096 ? kValueColumns.column[valueId] : 0xFFu;
    return column == 0xFF ? tPlacement{eField::None, 0} : kPlacements.cell[slot][column];
}

// The lists a slot's values can reach (bit set of list indices), the only
// ones its reset clears.
struct tSlotLists {
    unsigned char slot[kSlotCount];
};
constexpr tSlotLists MakeSlotLists() {
    tSlotLists table{};
    for (unsigned int i = 0; i < kSlotCount; ++i) {
        for (unsigned int e = 0; e < kSlots[i].extraCount; ++e) {
            if (kSlots[i].extras[e].field == eField::Append) {
                table.slot[i] =
                    static_cast<unsigned char>(table.slot[i] | (1u << kSlots[i].extras[e].index));
            }
        }
        if (kSlots[i].mainField == eField::Append) {
            table.slot[i] = static_cast<unsigned char>(table.slot[i] | (1u << kSlots[i].mainIndex));
        }
    }
    return table;
}
constexpr tSlotLists kSlotLists = MakeSlotLists();
static_assert(kSlotLists.slot[kSlotIndex.slot[TypeIdPropTypeAttendee]] == 7,
              "the attendee reaches all three lists");

// Out of the store's common path: a list entry may allocate.
__attribute__((noinline)) bool AppendText(PAL::TVector<const char*>& list,
                                          const char* text) noexcept {
    return list.pushBack(text);
}

unsigned int FindSlot(unsigned int property) noexcept {
    return property < 4096 ? kSlotIndex.slot[property] : kNoSlot;
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

constexpr int kWrongRoot = 1;
constexpr int kUnexpected = 2;
constexpr int kUnimplemented = 4;
constexpr int kInternal = 6;

}  // namespace

unsigned int SlotBit(unsigned int property) noexcept {
    const unsigned int slot = FindSlot(property);
    return slot == kNoSlot ? 0u : 1u << slot;
}

template <typename TReceiver>
TReceivingEngine<TReceiver>::TReceivingEngine(const tParserItem& item, TReceiver& receiver)
    : CTLVParser(static_cast<ParserCreatorCollection::ITLV&>(*this)),
      m_receiver(receiver),
      m_item(item),
      m_currentProperty(TypeIdNone),
      m_currentSlot(kNoSlot) {
    for (unsigned int i = 0; i < kSlotCount; ++i) ResetSlot(i);
    for (unsigned int i = 0; i < m_item.unimplementedCount; ++i) {
        for (unsigned int id = m_item.unimplemented[i].first; id <= m_item.unimplemented[i].last;
             ++id) {
            m_unimplemented.set(id);
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
void TReceivingEngine<TReceiver>::ResetSlot(unsigned int slot) noexcept {
    tPropertyValues& v = m_values[slot];
    // Clearing all texts at once is cheaper than counting the used ones; the
    // lists, rarely used, are cleared only where a value can reach them. The
    // number and the microseconds are the reset state wherever no value
    // reaches them.
    std::fill(std::begin(v.text), std::end(v.text), nullptr);
    const unsigned int lists = kSlotLists.slot[slot];
    if (lists != 0) {
        for (unsigned int i = 0; i < 3; ++i) {
            if ((lists & (1u << i)) != 0) v.list[i].clear();
        }
    }
    v.number = kSlots[slot].resetNumber;
    // Only the microseconds: the other fields keep the last value read, which
    // receivers of a date-time that failed to read have come to expect.
    v.dateTime.setMicroseconds(0);
    v.xParams.clear();
}

template <typename TReceiver>
void TReceivingEngine<TReceiver>::SetCurrentProperty(unsigned int typeId) noexcept {
    m_currentProperty = typeId;
    const unsigned int slot = FindSlot(typeId);
    m_currentSlot =
        slot != kNoSlot && (m_item.gatheredProperties & (1u << slot)) != 0 ? slot : kNoSlot;
}

template <typename TReceiver>
bool TReceivingEngine<TReceiver>::IsUnimplemented(unsigned int typeId) const noexcept {
    return typeId < m_unimplemented.size() && m_unimplemented[typeId];
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
    const bool ok = ParseInto(*this, data, length, errorText, consumed);
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
bool TReceivingEngine<TReceiver>::NodeBegin(const unsigned int& typeId) {
    TraceLine(m_traceNodeBegin, typeId);
    switch (m_state) {
        case ParsingStateBegin:
            if (typeId == m_item.root) {
                m_state = ParsingStateObjectContext;
                m_skip = false;
                return true;
            }
            return Report(kWrongRoot, m_item.rootUnexpected, typeId, m_item.root);
        case ParsingStateObjectContext:
            if (IsObjectLevelProperty(typeId)) {
                m_skip = false;
                m_pendingName = nullptr;
                SetCurrentProperty(typeId);
                return true;
            }
            if (typeId == m_item.component) {
                m_skip = false;
                m_state = ParsingStateComponentContext;
                return true;
            }
            if (typeId == TypeIdObjLevelMarker) return true;
            return Report(kUnexpected, m_item.objectNodeUnexpected, typeId, m_item.component);
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
bool TReceivingEngine<TReceiver>::BeginProperty(unsigned int typeId,
                                                const char* unimplementedText) {
    if (IsUnimplemented(typeId)) {
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
bool TReceivingEngine<TReceiver>::NodeEnd(const unsigned int& typeId) {
    TraceLine(m_traceNodeEnd, typeId);
    switch (m_state) {
        case ParsingStateBegin:
            return Report(kUnexpected, "NodeEnd(): [state ParsingStateBegin] Unexpected typeId: %d",
                          typeId);
        case ParsingStateObjectContext:
            if (typeId == m_currentProperty) return EndProperty(typeId);
            if (typeId == m_item.root) {
                m_receiver.End();
                m_state = ParsingStateBegin;
                return true;
            }
            // A property of the object level that was already ended.
            if (typeId == TypeIdObjLevelMarker || IsObjectLevelProperty(typeId)) return true;
            return Report(kUnexpected, m_item.objectEndUnexpected, typeId, m_item.root);
        case ParsingStateComponentContext:
            if (typeId == m_item.component) {
                m_state = ParsingStateObjectContext;
                return true;
            }
            return Report(kUnexpected, m_item.componentEndUnexpected, typeId, m_item.component);
        case ParsingStatePropertyContext:
            if (typeId == m_currentProperty) {
                const bool answer = EndProperty(typeId);
                m_state = ParsingStateComponentContext;
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
bool TReceivingEngine<TReceiver>::EndProperty(unsigned int typeId) {
    bool answer = true;
    if (m_skip) {
        m_skip = false;
    } else {
        answer = CallPropertyCallbackAndResetDataMember(typeId);
    }
    m_currentProperty = TypeIdNone;
    m_currentSlot = kNoSlot;
    return answer;
}

template <typename TReceiver>
bool TReceivingEngine<TReceiver>::CallPropertyCallbackAndResetDataMember(unsigned int typeId) {
    TraceLine(m_traceCallback, typeId);
    bool answer = true;
    if (m_currentSlot != kNoSlot && Deliver(typeId, m_values[m_currentSlot], answer)) {
        ResetSlot(m_currentSlot);
        m_filled &= ~(1u << m_currentSlot);
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
    tPropertyValues& v = m_values[m_currentSlot];
    const tPlacement placement = FindPlacement(m_currentSlot, typeId);
    if (placement.field == eField::None) {
        return Report(kUnexpected, "Unexpected PropValue-Id (%d) for the current PropType-Id (%d)",
                      typeId, m_currentProperty);
    }
    // Marking the slot for a parameter name too costs less than telling it
    // apart, and a reset of a slot without values changes nothing.
    m_filled |= 1u << m_currentSlot;
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

// Every leaf class funnels into LeafNode: a leaf is interpreted by its type ID.
template <typename TReceiver>
bool TReceivingEngine<TReceiver>::LeafInt8(const unsigned int& typeId, const signed char& value) {
    uTlvValue v;
    v.int8 = value;
    return LeafNode(ParserCreatorCollection::Int8, typeId, v);
}
template <typename TReceiver>
bool TReceivingEngine<TReceiver>::LeafInt16(const unsigned int& typeId, const short& value) {
    uTlvValue v;
    v.int16 = value;
    return LeafNode(ParserCreatorCollection::Int16, typeId, v);
}
template <typename TReceiver>
bool TReceivingEngine<TReceiver>::LeafUInt8(const unsigned int& typeId,
                                            const unsigned char& value) {
    uTlvValue v;
    v.uint8 = value;
    return LeafNode(ParserCreatorCollection::UInt8, typeId, v);
}
template <typename TReceiver>
bool TReceivingEngine<TReceiver>::LeafUInt16(const unsigned int& typeId,
                                             const unsigned short& value) {
    uTlvValue v;
    v.uint16 = value;
    return LeafNode(ParserCreatorCollection::UInt16, typeId, v);
}
template <typename TReceiver>
bool TReceivingEngine<TReceiver>::LeafBitfield8(const unsigned int& typeId,
                                                const unsigned char& value) {
    uTlvValue v;
    v.uint8 = value;
    return LeafNode(ParserCreatorCollection::Bitfield8, typeId, v);
}
template <typename TReceiver>
bool TReceivingEngine<TReceiver>::LeafBitfield16(const unsigned int& typeId,
                                                 const unsigned short& value) {
    uTlvValue v;
    v.uint16 = value;
    return LeafNode(ParserCreatorCollection::Bitfield16, typeId, v);
}
template <typename TReceiver>
bool TReceivingEngine<TReceiver>::LeafString(const unsigned int& typeId, const char* text) {
    uTlvValue v;
    v.text = text;
    return LeafNode(ParserCreatorCollection::String, typeId, v);
}
template <typename TReceiver>
bool TReceivingEngine<TReceiver>::LeafByteStream(const unsigned int& typeId, const void* data,
                                                 const unsigned int& length) {
    uTlvValue v;
    v.bytes.data = data;
    v.bytes.length = length;
    return LeafNode(ParserCreatorCollection::ByteStream, typeId, v);
}
template <typename TReceiver>
bool TReceivingEngine<TReceiver>::LeafUInt32(const unsigned int& typeId,
                                             const unsigned int& value) {
    uTlvValue v;
    v.uint32 = value;
    return LeafNode(ParserCreatorCollection::UInt32, typeId, v);
}
template <typename TReceiver>
bool TReceivingEngine<TReceiver>::LeafInt32(const unsigned int& typeId, const int& value) {
    uTlvValue v;
    v.int32 = value;
    return LeafNode(ParserCreatorCollection::Int32, typeId, v);
}

template class TReceivingEngine<ICalendarReceiver>;
template class TReceivingEngine<ITaskReceiver>;
template class TReceivingEngine<INoteReceiver>;

}  // namespace CalendarFamily
}  // namespace PimShared
