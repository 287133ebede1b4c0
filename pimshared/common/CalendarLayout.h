#ifndef PIMTLV_PIMSHARED_COMMON_CALENDARLAYOUT_H
#define PIMTLV_PIMSHARED_COMMON_CALENDARLAYOUT_H

// The properties of events, tasks and notes as data, read by both directions:
// the creators write each property's value leaves in the order of its row,
// and the parsers place each value leaf by the row's field and index. Each
// item is a list of the rows it has, with its frame nodes. A layout change is
// made here once, and both directions follow it.
// Internal: not part of the library's interface.

#include "pimshared/common/CalendarTypeIds.h"
#include "pimshared/common/CreatorFrame.h"
#include "pimshared/common/TypeIds.h"

namespace PimShared {
namespace CalendarLayout {

// One row per property of the family; the order is the parser's slot order.
enum eProperty : unsigned char {
    ProductIdentifier,
    Version,
    Categories,
    Classification,
    Description,
    Location,
    Priority,
    Status,
    Summary,
    DateTimeStart,
    DateTimeEnd,
    DateTimeStartLocal,
    DateTimeEndLocal,
    DateTimeDueLocal,
    UniqueIdentifier,
    DateTimeCreated,
    LastModified,
    SequenceNumber,
    Attendee,
    Organizer,
    SendStatus,
    PropertyCount
};

// Where a value leaf goes in the parser's record of its property.
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

// When the creator writes a column.
enum class eWrite : unsigned char {
    Always,    // the property's main value: always one leaf (a null text as the empty text)
    IfGiven,   // a text that is not null, a list entry per entry, an RSVP that is given
    ReadOnly,  // older writers' form: read, never written
};

struct tValue {
    unsigned short id;
    eField field;
    unsigned char index;
    eWrite write;
};

constexpr unsigned int MaxValues = 12;

struct tProperty {
    unsigned short node;
    bool xParams;              // whether the property takes extension parameters
    unsigned int resetNumber;  // the number a parser reports when no leaf gave one
    tValue values[MaxValues];  // in the creator's write order; unused columns have ID 0
};

// Indices into the parser record's texts and lists. The main text of the
// single-text properties and the rich texts (description, location, summary)
// share their first three; an attendee's and an organizer's address is text 0.
constexpr unsigned char kMain = 0, kAltRep = 1, kLanguage = 2;
constexpr unsigned char kZone = 0;
constexpr unsigned char kCategoryLanguage = 0, kCategoryList = 0;
constexpr unsigned char kAddress = 0;
constexpr unsigned char kAttendeeCuType = 1, kAttendeeRole = 2, kAttendeePartStat = 3,
                        kAttendeeSentBy = 4, kAttendeeCommonName = 5, kAttendeeDirectory = 6,
                        kAttendeeLanguage = 7;
constexpr unsigned char kAttendeeMembers = 0, kAttendeeDelegatedTo = 1, kAttendeeDelegatedFrom = 2;
constexpr unsigned char kOrganizerSentBy = 1, kOrganizerCommonName = 2, kOrganizerDirectory = 3,
                        kOrganizerLanguage = 4;
constexpr unsigned int kTexts = 8, kLists = 3;

namespace Detail {
using namespace CalendarTypeIds;
constexpr eField T = eField::Text;
constexpr eField L = eField::Append;
constexpr eField DT = eField::DateTime;
constexpr eWrite Main = eWrite::Always;
constexpr eWrite Opt = eWrite::IfGiven;
constexpr eWrite Read = eWrite::ReadOnly;

// A rich text: alternate representation and language, then the text.
constexpr tProperty RichText(unsigned int node, unsigned int value) {
    return {static_cast<unsigned short>(node),
            true,
            0,
            {{TypeIdValTypeAltRep, T, kAltRep, Opt},
             {TypeIdValTypeLanguage, T, kLanguage, Opt},
             {static_cast<unsigned short>(value), T, kMain, Main}}};
}
constexpr tProperty SingleText(unsigned int node, unsigned int value) {
    return {static_cast<unsigned short>(node),
            true,
            0,
            {{static_cast<unsigned short>(value), T, kMain, Main}}};
}
// A date-time text, the zone it is in where the property has one, and the
// older writers' form of the date-time.
constexpr tProperty DateTime(unsigned int node, bool zone) {
    return zone ? tProperty{static_cast<unsigned short>(node),
                            true,
                            0,
                            {{TypeIdValTypeDateTime, DT, 0, Main},
                             {TypeIdValTypeDateTimeZone, T, kZone, Opt},
                             {TypeIdValTypeDateTimeAlt, DT, 0, Read}}}
                : tProperty{static_cast<unsigned short>(node),
                            true,
                            0,
                            {{TypeIdValTypeDateTime, DT, 0, Main},
                             {TypeIdValTypeDateTimeAlt, DT, 0, Read}}};
}
constexpr tProperty Stamp(unsigned int node) {
    return {static_cast<unsigned short>(node), true, 0, {{TypeIdValTypeDateTime, DT, 0, Main}}};
}

// clang-format off
constexpr tProperty kProperties[] = {
    SingleText(TypeIdPropTypeProductIdentifier, TypeIdValTypeProductIdentifier),
    SingleText(TypeIdPropTypeVersion, TypeIdValTypeVersion),
    {TypeIdPropTypeCategories, true, 0,
     {{TypeIdValTypeCategory, L, kCategoryList, Opt}, {TypeIdValTypeLanguage, T, kCategoryLanguage, Opt}}},
    SingleText(TypeIdPropTypeClassification, TypeIdValTypeClassification),
    RichText(TypeIdPropTypeDescription, TypeIdValTypeDescription),
    RichText(TypeIdPropTypeLocation, TypeIdValTypeLocation),
    {TypeIdPropTypePriority, true, 0, {{TypeIdValTypePriority, eField::Byte, 0, Main}}},
    // Written as the caller's text; a one-byte code is read too.
    {TypeIdPropTypeStatus, true, 0, {{TypeIdValTypeStatus, eField::Status, kMain, Main}}},
    RichText(TypeIdPropTypeSummary, TypeIdValTypeSummary),
    DateTime(TypeIdPropTypeDateTimeStart, true),
    DateTime(TypeIdPropTypeDateTimeEnd, true),
    DateTime(TypeIdPropTypeDateTimeStartLocal, false),
    DateTime(TypeIdPropTypeDateTimeEndLocal, false),
    DateTime(TypeIdPropTypeDateTimeDueLocal, false),
    SingleText(TypeIdPropTypeUniqueIdentifier, TypeIdValTypeUniqueIdentifier),
    Stamp(TypeIdPropTypeDateTimeCreated),
    Stamp(TypeIdPropTypeLastModified),
    {TypeIdPropTypeSequenceNumber, true, 0, {{TypeIdValTypeSequenceNumber, eField::Word, 0, Main}}},
    {TypeIdPropTypeAttendee, true, 0xFFFFFFFFu,  // no RSVP leaf: the setting is absent
     {{TypeIdValTypeCuType, T, kAttendeeCuType, Opt}, {TypeIdValTypeMember, L, kAttendeeMembers, Opt},
      {TypeIdValTypeRole, T, kAttendeeRole, Opt}, {TypeIdValTypePartStat, T, kAttendeePartStat, Opt},
      {TypeIdValTypeRsvp, eField::Byte, 0, Opt},
      {TypeIdValTypeDelegatedTo, L, kAttendeeDelegatedTo, Opt},
      {TypeIdValTypeDelegatedFrom, L, kAttendeeDelegatedFrom, Opt},
      {TypeIdValTypeSentBy, T, kAttendeeSentBy, Opt}, {TypeIdValTypeCommonName, T, kAttendeeCommonName, Opt},
      {TypeIdValTypeDirectory, T, kAttendeeDirectory, Opt}, {TypeIdValTypeLanguage, T, kAttendeeLanguage, Opt},
      {TypeIdValTypeCalAddress, T, kAddress, Main}}},
    {TypeIdPropTypeOrganizer, true, 0,
     {{TypeIdValTypeSentBy, T, kOrganizerSentBy, Opt}, {TypeIdValTypeCommonName, T, kOrganizerCommonName, Opt},
      {TypeIdValTypeDirectory, T, kOrganizerDirectory, Opt}, {TypeIdValTypeLanguage, T, kOrganizerLanguage, Opt},
      {TypeIdValTypeCalAddress, T, kAddress, Main}}},
    // The send status alone has no extension parameters.
    {TypeIdPropTypeSendStatus, false, 0, {{TypeIdValTypeSendStatus, eField::Byte, 0, Main}}},
};
// clang-format on
}  // namespace Detail

constexpr const tProperty& Row(eProperty property) {
    return Detail::kProperties[property];
}

// The number of columns a row uses (no value leaf has ID 0).
constexpr unsigned int ColumnCount(const tProperty& row) {
    unsigned int n = 0;
    while (n < MaxValues && row.values[n].id != 0) ++n;
    return n;
}

// The row of a property node, or PropertyCount for an ID that is none.
constexpr unsigned int IndexOfNode(unsigned int node) {
    for (unsigned int i = 0; i < PropertyCount; ++i) {
        if (Detail::kProperties[i].node == node) return i;
    }
    return PropertyCount;
}

// The row of every 12-bit node ID (PropertyCount for none), looked up once per
// property node by the parser and by the writers.
struct tNodeIndex {
    unsigned char row[4096];
};
constexpr tNodeIndex MakeNodeIndex() {
    tNodeIndex index{};
    for (unsigned char& r : index.row) r = static_cast<unsigned char>(PropertyCount);
    for (unsigned int i = 0; i < PropertyCount; ++i) {
        index.row[Detail::kProperties[i].node] = static_cast<unsigned char>(i);
    }
    return index;
}
inline constexpr tNodeIndex kNodeIndex = MakeNodeIndex();

constexpr unsigned int RowOfNode(unsigned int node) {
    return node < 4096 ? kNodeIndex.row[node] : static_cast<unsigned int>(PropertyCount);
}

// Whether every row is well formed: at most one value always written (the
// categories have none: their list may be empty), distinct value IDs, no
// extension parameter ID among the values, fields within the record.
constexpr bool RowsAreSound() {
    for (const tProperty& row : Detail::kProperties) {
        unsigned int mains = 0;
        const unsigned int n = ColumnCount(row);
        for (unsigned int i = 0; i < n; ++i) {
            const tValue& v = row.values[i];
            if (v.write == eWrite::Always) ++mains;
            if (v.id == TypeIdValTypeXparamName || v.id == TypeIdValTypeXparamValue) return false;
            if (v.field == eField::Text && v.index >= kTexts) return false;
            if (v.field == eField::Append && v.index >= kLists) return false;
            for (unsigned int j = 0; j < i; ++j) {
                if (row.values[j].id == v.id) return false;
            }
        }
        if (mains > 1) return false;
    }
    return true;
}

static_assert(sizeof(Detail::kProperties) / sizeof(Detail::kProperties[0]) == PropertyCount,
              "one row per property, in slot order");
static_assert(PropertyCount <= 32, "the rows an item has are a 32-bit set");
static_assert(RowsAreSound(),
              "at most one main value per row, distinct value IDs, fields in range");
static_assert(IndexOfNode(CalendarTypeIds::TypeIdPropTypeSendStatus) == SendStatus &&
                  IndexOfNode(CalendarTypeIds::TypeIdPropTypeCategories) == Categories &&
                  IndexOfNode(CalendarTypeIds::TypeIdPropTypeDateTimeDueLocal) ==
                      DateTimeDueLocal &&
                  IndexOfNode(CalendarTypeIds::TypeIdPropTypeObjLevel) == PropertyCount,
              "rows and their names agree");
static_assert(ColumnCount(Row(Attendee)) == 12 && ColumnCount(Row(Organizer)) == 5 &&
                  ColumnCount(Row(Description)) == 3 && ColumnCount(Row(DateTimeStart)) == 3 &&
                  ColumnCount(Row(DateTimeStartLocal)) == 2 && ColumnCount(Row(Categories)) == 2,
              "the widest rows hold every argument of their operation");
static_assert(Row(DateTimeStart).values[0].id == TypeIdValTypeDateTime &&
                  Row(DateTimeStart).values[1].id == TypeIdValTypeDateTimeZone &&
                  Row(DateTimeEnd).values[1].id == TypeIdValTypeDateTimeZone &&
                  Row(DateTimeCreated).values[0].id == TypeIdValTypeDateTime,
              "a date-time is its text, then its zone where it has one (the frame's date writer)");
static_assert(Row(Attendee).values[ColumnCount(Row(Attendee)) - 1].write == eWrite::Always &&
                  Row(Organizer).values[ColumnCount(Row(Organizer)) - 1].write == eWrite::Always,
              "the address is written after the parameters");

// An item of the family: its frame nodes, the rows it has (its operations)
// and the rows whose values its parser gathers.
struct tItem {
    unsigned short root;
    unsigned short component;
    unsigned int properties;  // bit set of eProperty
    unsigned int gathered;    // bit set of eProperty
};

constexpr unsigned int Bit(eProperty property) {
    return 1u << property;
}
constexpr bool Has(const tItem& item, eProperty property) {
    return (item.properties & Bit(property)) != 0;
}

// Every item has these.
constexpr unsigned int kShared =
    Bit(ProductIdentifier) | Bit(Version) | Bit(Categories) | Bit(Classification) |
    Bit(Description) | Bit(Status) | Bit(Summary) | Bit(UniqueIdentifier) | Bit(DateTimeCreated) |
    Bit(LastModified) | Bit(SequenceNumber) | Bit(Attendee) | Bit(Organizer) | Bit(SendStatus);
// Events and tasks have these beyond the shared ones.
constexpr unsigned int kEventAndTask =
    kShared | Bit(Location) | Bit(Priority) | Bit(DateTimeStart) | Bit(DateTimeStartLocal);

constexpr unsigned int kEventProperties = kEventAndTask | Bit(DateTimeEnd) | Bit(DateTimeEndLocal);
constexpr unsigned int kTaskProperties = kEventAndTask | Bit(DateTimeDueLocal);

constexpr tItem kEvent = {TypeIdObjTypeCalendarTask, TypeIdCompTypeVevent, kEventProperties,
                          kEventProperties};
constexpr tItem kTask = {TypeIdObjTypeCalendarTask, TypeIdCompTypeVtodo, kTaskProperties,
                         kTaskProperties};
// The note's parser gathers the event's set: location, priority and the
// event's times are read although a note has no operation for them (reported
// at their end).
constexpr tItem kNote = {TypeIdObjTypeNote, TypeIdCompTypeVJournal, kShared, kEventProperties};

static_assert(__builtin_popcount(kEvent.properties) == 20 &&
                  __builtin_popcount(kTask.properties) == 19 &&
                  __builtin_popcount(kNote.properties) == 14,
              "the event has 20 properties, the task 19, the note 14");
static_assert((kEvent.properties & ~kEvent.gathered) == 0 &&
                  (kTask.properties & ~kTask.gathered) == 0 &&
                  (kNote.properties & ~kNote.gathered) == 0,
              "a parser gathers every property its item has");
static_assert(!Has(kTask, DateTimeEnd) && !Has(kEvent, DateTimeDueLocal) && !Has(kNote, Location),
              "each item has only its own properties");

}  // namespace CalendarLayout
}  // namespace PimShared

#endif
