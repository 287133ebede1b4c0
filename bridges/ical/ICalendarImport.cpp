// iCalendar text to item streams. libical reads the text (unfolding,
// unescaping, parameter quoting); this file walks what it built and drives
// the item creators through the mapping table.
//
// libical keeps no positions, yet losses and items are reported with their
// lines. So the text is handed to libical one content line at a time
// (icalparser_get_line, fed one physical line at a time, which tells where
// each content line starts). The only look at the text outside libical is at
// the name that starts each content line: component begins are kept in order
// (and matched to the components libical builds, which come in the same
// order), and each property line is noted as (component, name, line). A lost
// property's line is then the first noted line of its component with its
// name: looked up only when something is lost, and right whatever libical
// did to the lines in between (splitting one into several properties,
// dropping a bad one). CATEGORIES lines alone get an extra parameter
// X-PIMTLV-LINE=<line> before libical reads them, because libical splits
// "a,b" into one property per value and the item wants each line's values
// as one list; the walk groups the properties by that tag and skips it.

#include <strings.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

#include "ICalendarBridge.h"
#include "bridges/common/LossCollector.h"
#include "pimshared/calendar/TLVCalendarCreator.h"
#include "pimshared/note/TLVNoteCreator.h"
#include "pimshared/task/TLVTaskCreator.h"
#include "private/ICalendarMapping.h"

namespace PimBridge {

using namespace Ical;

namespace {

constexpr const char* kLineTag = "X-PIMTLV-LINE";
// Real calendars nest three deep (VCALENDAR, VEVENT, VALARM); libical frees
// and writes its trees by recursion, so hostile nesting stops here.
constexpr std::size_t kMaxDepth = 64;

// Calls the creator operation of op with the gathered values. The item set
// of each row keeps an item from being asked for an operation it lacks; the
// constexpr branches only let the three interfaces share this one switch.
template <typename I>
bool Apply(I& c, eOp op, const PropertyValues& v) {
    constexpr bool kIsEvent = std::is_base_of<PimShared::ICalendarAttributes, I>::value;
    constexpr bool kIsTask = std::is_base_of<PimShared::ITaskAttributes, I>::value;
    static const PAL::TVector<const char*> kNoTexts;
    static const PAL::TVector<PimShared::tXParam> kNoXParams;
    const auto list = [&v](int i) -> const PAL::TVector<const char*>& {
        return v.list[i] != nullptr ? *v.list[i] : kNoTexts;
    };
    const PAL::TVector<PimShared::tXParam>& x = v.xParams != nullptr ? *v.xParams : kNoXParams;
    const unsigned char byte = static_cast<unsigned char>(v.number);
    const unsigned short word = static_cast<unsigned short>(v.number);
    static const PAL::CDateAndTime kNoTime;
    const PAL::CDateAndTime& dt = v.dateTime != nullptr ? *v.dateTime : kNoTime;
    switch (op) {
        case eOp::ProductIdentifier:
            return c.ProductIdentifier(v.text[0], x);
        case eOp::Version:
            return c.Version(v.text[0], x);
        case eOp::Categories:
            return c.Categories(list(0), v.text[1], x);
        case eOp::Classification:
            return c.Classification(v.text[0], x);
        case eOp::Description:
            return c.Description(v.text[0], v.text[1], v.text[2], x);
        case eOp::Status:
            return c.Status(v.text[0], x);
        case eOp::Summary:
            return c.Summary(v.text[0], v.text[1], v.text[2], x);
        case eOp::UniqueIdentifier:
            return c.UniqueIdentifier(v.text[0], x);
        case eOp::DateTimeCreated:
            return c.DateTimeCreated(dt, x);
        case eOp::LastModified:
            return c.LastModified(dt, x);
        case eOp::SequenceNumber:
            return c.SequenceNumber(word, x);
        case eOp::Attendee:
            return c.Attendee(v.text[0], v.text[1], list(0), v.text[2], v.text[3], v.rsvp, list(1),
                              list(2), v.text[4], v.text[5], v.text[6], v.text[7], x);
        case eOp::Organizer:
            return c.Organizer(v.text[0], v.text[1], v.text[2], v.text[3], v.text[4], x);
        case eOp::Location:
            if constexpr (kIsEvent || kIsTask)
                return c.Location(v.text[0], v.text[1], v.text[2], x);
            break;
        case eOp::Priority:
            if constexpr (kIsEvent || kIsTask) return c.Priority(byte, x);
            break;
        case eOp::DateTimeStart:
            if constexpr (kIsEvent || kIsTask) return c.DateTimeStart(dt, v.zone, x);
            break;
        case eOp::DateTimeStartLocal:
            if constexpr (kIsEvent || kIsTask) return c.DateTimeStartLocal(dt, x);
            break;
        case eOp::DateTimeEnd:
            if constexpr (kIsEvent) return c.DateTimeEnd(dt, v.zone, x);
            break;
        case eOp::DateTimeEndLocal:
            if constexpr (kIsEvent) return c.DateTimeEndLocal(dt, x);
            break;
        case eOp::DateTimeDueLocal:
            if constexpr (kIsTask) return c.DateTimeDueLocal(dt, x);
            break;
        case eOp::None:
            break;
    }
    return false;
}

// One item creator behind a common face, so the walk is written once.
class ItemSink {
  public:
    virtual ~ItemSink() = default;
    virtual bool Begin(unsigned int instance) = 0;
    virtual bool Put(eOp op, const PropertyValues& values) = 0;
    virtual bool Finish(const void*& data, unsigned int& length) = 0;
};

template <typename Creator>
class CreatorSink final : public ItemSink {
  public:
    bool Begin(unsigned int instance) override {
        return m_creator.Reset() && m_creator.Begin(instance);
    }
    bool Put(eOp op, const PropertyValues& values) override { return Apply(m_creator, op, values); }
    bool Finish(const void*& data, unsigned int& length) override {
        return m_creator.End() && m_creator.GetData(data, length);
    }

  private:
    Creator m_creator;
};

struct ItemKind {
    icalcomponent_kind kind;
    eItem item;
    const char* name;
};
constexpr ItemKind kItemKinds[] = {
    {ICAL_VEVENT_COMPONENT, kEvent, "event"},
    {ICAL_VTODO_COMPONENT, kTask, "task"},
    {ICAL_VJOURNAL_COMPONENT, kNote, "note"},
};

const ItemKind* ItemKindOf(icalcomponent* component) {
    const icalcomponent_kind kind = icalcomponent_isa(component);
    for (const ItemKind& k : kItemKinds) {
        if (k.kind == kind) return &k;
    }
    return nullptr;
}

// A component's name (libical keeps no name for X- components).
std::string ComponentName(icalcomponent* component) {
    const icalcomponent_kind kind = icalcomponent_isa(component);
    if (kind == ICAL_X_COMPONENT) return "X- component";
    const char* name = icalcomponent_kind_to_string(kind);
    return name != nullptr && name[0] != '\0' ? name : "unknown component";
}

// Hands libical the text one physical line at a time (longer lines in
// pieces of the size it asks for), and remembers on which line the last
// piece it was given starts: libical reads one line ahead to see whether the
// next line continues the current one, so when it hands back a content line,
// the line after it has just begun.
struct LineFeed {
    const char* pos;
    const char* end;
    unsigned int line = 0;
    bool atLineStart = true;
    unsigned int lastStart = 1;

    static char* Next(char* out, std::size_t room, void* self) {
        auto* feed = static_cast<LineFeed*>(self);
        if (feed->pos >= feed->end || room < 2) return nullptr;
        if (feed->atLineStart) feed->lastStart = ++feed->line;
        std::size_t n = 0;
        const std::size_t max = room - 1;
        const std::size_t left = static_cast<std::size_t>(feed->end - feed->pos);
        while (n < max && n < left) {
            if (feed->pos[n++] == '\n') break;
        }
        std::memcpy(out, feed->pos, n);
        out[n] = '\0';
        feed->atLineStart = out[n - 1] == '\n';
        feed->pos += n;
        return out;
    }
};

struct FreeDeleter {
    void operator()(char* p) const { std::free(p); }
};

class Importer {
  public:
    ImportResult Run(const char* text, std::size_t size);

  private:
    struct CalendarContext {
        icalproperty* prodid = nullptr;
        icalproperty* version = nullptr;
    };
    struct Gathered {
        PropertyValues values;
        PAL::TVector<const char*> lists[PropertyValues::kLists];
        PAL::TVector<PimShared::tXParam> xParams;
        PAL::CDateAndTime dateTime;
    };

    bool Feed(char* line, unsigned int number);
    unsigned int LineOf(std::size_t component, const std::string& name) const;
    void AddLoss(LossCollector& losses, std::size_t component, icalproperty* property) const;
    bool WalkRoot(icalcomponent* root);
    bool ImportItem(icalcomponent* component, const ItemKind& kind, std::size_t index,
                    const CalendarContext& calendar);
    bool PutProperty(ItemSink& sink, const ItemKind& kind, icalproperty* const* props,
                     std::size_t count, std::size_t& i, std::size_t component,
                     LossCollector& losses);
    bool Gather(icalproperty* property, const PropertyRow& row, Gathered& g, eOp& op);
    void GatherParams(icalproperty* property, const PropertyRow& row, Gathered& g,
                      const char*& tzid);
    const char* ValueText(icalvalue* value);
    const char* ParamValue(icalparameter* param);
    std::size_t SkipSubtree(icalcomponent* component);
    unsigned int BeginLine(std::size_t index) const {
        return index < m_beginLines.size() ? m_beginLines[index] : 0;
    }
    unsigned int NextErrorLine(std::size_t component);
    ItemSink& SinkOf(eItem item);
    void Fail(const std::string& why, unsigned int line) {
        if (!m_result.ok) return;
        m_result.ok = false;
        m_result.error = why;
        m_result.errorLine = line;
    }

    icalparser* m_parser = nullptr;
    ImportResult m_result;
    LossCollector m_fileLosses;
    std::string m_tagged;
    struct LineNote {
        std::size_t component;
        unsigned int line;
        std::size_t nameStart;  // in m_names
        std::size_t nameLength;
    };
    std::vector<LineNote> m_notes;  // every property line, in order
    std::string m_names;
    std::vector<std::size_t> m_firstNote;    // per component: its first line note
    std::vector<std::size_t> m_endNote;      // per component: past its last one
    std::vector<unsigned int> m_beginLines;  // line of every BEGIN, in order
    std::vector<std::size_t> m_open;         // indices of the open components
    std::size_t m_nextComponent = 0;         // the walk's position in m_beginLines
    std::unordered_map<std::size_t, std::vector<unsigned int>> m_errors;  // per component
    std::unordered_map<std::size_t, std::size_t> m_errorsTaken;
    std::vector<std::unique_ptr<char, FreeDeleter>> m_owned;  // texts of one item
    std::vector<icalproperty*> m_props;
    Gathered m_gathered;
    unsigned int m_instance = 0;
    CreatorSink<PimShared::CTLVCalendarCreator> m_event;
    CreatorSink<PimShared::CTLVTaskCreator> m_task;
    CreatorSink<PimShared::CTLVNoteCreator> m_note;
};

ItemSink& Importer::SinkOf(eItem item) {
    if (item == kEvent) return m_event;
    if (item == kTask) return m_task;
    return m_note;
}

bool NameIs(const char* name, std::size_t length, const char* word) {
    return std::strlen(word) == length && strncasecmp(name, word, length) == 0;
}

// Notes where each component begins and each property line stands, tags
// CATEGORIES lines, and hands the line to libical; keeps the lines libical
// could not read.
bool Importer::Feed(char* line, unsigned int number) {
    std::size_t n = 0;
    while (IsNameChar(line[n])) ++n;
    const bool named = n > 0 && (line[n] == ':' || line[n] == ';');
    char* given = line;
    const bool begin = named && NameIs(line, n, "BEGIN");
    const bool end = named && NameIs(line, n, "END");
    if (begin) {
        if (m_open.size() >= kMaxDepth) {
            Fail("components nested more than " + std::to_string(kMaxDepth) + " deep", number);
            return false;
        }
        m_open.push_back(m_beginLines.size());
        m_beginLines.push_back(number);
        m_firstNote.push_back(m_notes.size());
        m_endNote.push_back(static_cast<std::size_t>(-1));
    } else if (end) {
        if (!m_open.empty()) {
            m_endNote[m_open.back()] = m_notes.size();
            m_open.pop_back();
        }
    } else if (m_open.empty()) {
        if (line[std::strspn(line, " \t\r\n")] != '\0') {
            m_fileLosses.Add("text outside any component", number);
        }
    } else if (named) {
        m_notes.push_back(LineNote{m_open.back(), number, m_names.size(), n});
        m_names.append(line, n);
        if (NameIs(line, n, "CATEGORIES")) {
            m_tagged.assign(line, n);
            m_tagged += ';';
            m_tagged += kLineTag;
            m_tagged += '=';
            m_tagged += std::to_string(number);
            m_tagged += line + n;
            given = &m_tagged[0];
        }
    }
    icalcomponent* root = icalparser_add_line(m_parser, given);
    if (icalparser_get_state(m_parser) == ICALPARSER_ERROR && !m_open.empty()) {
        m_errors[m_open.back()].push_back(number);
    }
    if (root == nullptr) return true;
    const bool ok = WalkRoot(root);
    icalcomponent_free(root);
    return ok;
}

unsigned int Importer::LineOf(std::size_t component, const std::string& name) const {
    if (component >= m_firstNote.size()) return 0;
    const std::size_t end = std::min(m_endNote[component], m_notes.size());
    for (std::size_t i = m_firstNote[component]; i < end; ++i) {
        const LineNote& note = m_notes[i];
        if (note.component == component && note.nameLength == name.size() &&
            strncasecmp(m_names.data() + note.nameStart, name.data(), name.size()) == 0) {
            return note.line;
        }
    }
    return 0;
}

void Importer::AddLoss(LossCollector& losses, std::size_t component, icalproperty* property) const {
    const std::string name = PropertyNameOf(property);
    losses.Add(name, losses.Contains(name) ? 0 : LineOf(component, name));
}

unsigned int Importer::NextErrorLine(std::size_t component) {
    const auto found = m_errors.find(component);
    if (found == m_errors.end()) return 0;
    std::size_t& taken = m_errorsTaken[component];
    return taken < found->second.size() ? found->second[taken++] : found->second.back();
}

// Counts the component and everything inside it, for the walk's position.
std::size_t Importer::SkipSubtree(icalcomponent* component) {
    const std::size_t index = m_nextComponent++;
    for (icalcomponent* c = icalcomponent_get_first_component(component, ICAL_ANY_COMPONENT);
         c != nullptr; c = icalcomponent_get_next_component(component, ICAL_ANY_COMPONENT)) {
        SkipSubtree(c);
    }
    return index;
}

// The line a property was tagged with (0 for one libical made itself).
unsigned int TagLine(icalproperty* property) {
    for (icalparameter* p = icalproperty_get_first_parameter(property, ICAL_X_PARAMETER);
         p != nullptr; p = icalproperty_get_next_parameter(property, ICAL_X_PARAMETER)) {
        const char* name = icalparameter_get_xname(p);
        if (name != nullptr && std::strcmp(name, kLineTag) == 0) {
            const char* value = icalparameter_get_xvalue(p);
            return value != nullptr ? static_cast<unsigned int>(std::strtoul(value, nullptr, 10))
                                    : 0;
        }
    }
    return 0;
}

bool Importer::WalkRoot(icalcomponent* root) {
    const std::size_t rootIndex = m_nextComponent++;
    CalendarContext calendar;
    if (const ItemKind* kind = ItemKindOf(root)) {
        return ImportItem(root, *kind, rootIndex, calendar);
    }
    if (icalcomponent_isa(root) != ICAL_VCALENDAR_COMPONENT) {
        m_fileLosses.Add(ComponentName(root), BeginLine(rootIndex));
        for (icalcomponent* c = icalcomponent_get_first_component(root, ICAL_ANY_COMPONENT);
             c != nullptr; c = icalcomponent_get_next_component(root, ICAL_ANY_COMPONENT)) {
            SkipSubtree(c);
        }
        return true;
    }
    // The calendar's PRODID and VERSION go to each of its items; everything
    // else of its own is lost to all of them.
    for (icalproperty* p = icalcomponent_get_first_property(root, ICAL_ANY_PROPERTY); p != nullptr;
         p = icalcomponent_get_next_property(root, ICAL_ANY_PROPERTY)) {
        const icalproperty_kind kind = icalproperty_isa(p);
        if (kind == ICAL_PRODID_PROPERTY && calendar.prodid == nullptr) {
            calendar.prodid = p;
        } else if (kind == ICAL_VERSION_PROPERTY && calendar.version == nullptr) {
            calendar.version = p;
        } else if (kind == ICAL_XLICERROR_PROPERTY) {
            m_fileLosses.Add("unreadable line", NextErrorLine(rootIndex));
        } else {
            AddLoss(m_fileLosses, rootIndex, p);
        }
    }
    for (icalcomponent* c = icalcomponent_get_first_component(root, ICAL_ANY_COMPONENT);
         c != nullptr; c = icalcomponent_get_next_component(root, ICAL_ANY_COMPONENT)) {
        const ItemKind* kind = ItemKindOf(c);
        if (kind == nullptr) {
            m_fileLosses.Add(ComponentName(c), BeginLine(SkipSubtree(c)));
            continue;
        }
        if (!ImportItem(c, *kind, m_nextComponent++, calendar)) return false;
    }
    return true;
}

bool Importer::ImportItem(icalcomponent* component, const ItemKind& kind, std::size_t index,
                          const CalendarContext& calendar) {
    ItemSink& sink = SinkOf(kind.item);
    LossCollector losses;
    const unsigned int line = BeginLine(index);
    const auto failed = [&](const char* what) {
        Fail(std::string("could not write the ") + what + " of " + kind.name + " " +
                 std::to_string(m_instance + 1),
             line);
        return false;
    };
    if (!sink.Begin(m_instance)) return failed("start");
    m_props.clear();
    if (calendar.prodid != nullptr) m_props.push_back(calendar.prodid);
    if (calendar.version != nullptr) m_props.push_back(calendar.version);
    for (icalproperty* p = icalcomponent_get_first_property(component, ICAL_ANY_PROPERTY);
         p != nullptr; p = icalcomponent_get_next_property(component, ICAL_ANY_PROPERTY)) {
        m_props.push_back(p);
    }
    for (std::size_t i = 0; i < m_props.size(); ++i) {
        if (!PutProperty(sink, kind, m_props.data(), m_props.size(), i, index, losses)) {
            return failed(PropertyNameOf(m_props[i]).c_str());
        }
    }
    for (icalcomponent* c = icalcomponent_get_first_component(component, ICAL_ANY_COMPONENT);
         c != nullptr; c = icalcomponent_get_next_component(component, ICAL_ANY_COMPONENT)) {
        losses.Add(ComponentName(c), BeginLine(SkipSubtree(c)));
    }
    m_owned.clear();
    const void* data = nullptr;
    unsigned int length = 0;
    if (!sink.Finish(data, length)) return failed("end");
    m_result.AddItem(kind.name, line, data, length, losses.Take());
    ++m_instance;
    return true;
}

// Puts props[i] into the item, or names it as lost. Consecutive CATEGORIES
// from one line (libical makes one property per value) become one list.
bool Importer::PutProperty(ItemSink& sink, const ItemKind& kind, icalproperty* const* props,
                           std::size_t count, std::size_t& i, std::size_t component,
                           LossCollector& losses) {
    icalproperty* property = props[i];
    const icalproperty_kind propertyKind = icalproperty_isa(property);
    if (propertyKind == ICAL_XLICERROR_PROPERTY) {
        losses.Add("unreadable line", NextErrorLine(component));
        return true;
    }
    const PropertyRow* row = RowOfKind(propertyKind);
    if (row == nullptr || (row->items & kind.item) == 0) {
        AddLoss(losses, component, property);
        return true;
    }
    Gathered& g = m_gathered;
    eOp op = row->op;
    if (!Gather(property, *row, g, op)) {
        AddLoss(losses, component, property);
        return true;
    }
    if (row->shape == eShape::Categories) {
        const unsigned int line = TagLine(property);
        while (i + 1 < count && icalproperty_isa(props[i + 1]) == ICAL_CATEGORIES_PROPERTY &&
               line != 0 && TagLine(props[i + 1]) == line) {
            const char* more = ValueText(icalproperty_get_value(props[++i]));
            if (more != nullptr) g.lists[0].pushBack(more);
        }
    }
    return sink.Put(op, g.values);
}

const char* Importer::ValueText(icalvalue* value) {
    if (value == nullptr) return nullptr;
    switch (icalvalue_isa(value)) {
        case ICAL_TEXT_VALUE:
            return icalvalue_get_text(value);
        case ICAL_CALADDRESS_VALUE:
            return icalvalue_get_caladdress(value);
        // The enumerated values of carried properties, spelled without
        // asking libical to write (and allocate) them.
        case ICAL_STATUS_VALUE: {
            const icalproperty_status status = icalvalue_get_status(value);
            const char* text = status == ICAL_STATUS_X ? icalvalue_get_x(value)
                                                       : icalproperty_status_to_string(status);
            if (text != nullptr && text[0] != '\0') return text;
            break;
        }
        case ICAL_CLASS_VALUE: {
            const icalproperty_class cls = icalvalue_get_class(value);
            const char* text =
                cls == ICAL_CLASS_X ? icalvalue_get_x(value) : icalproperty_enum_to_string(cls);
            if (text != nullptr && text[0] != '\0') return text;
            break;
        }
        default:
            break;
    }
    char* text = icalvalue_as_ical_string_r(value);
    if (text == nullptr) return nullptr;
    m_owned.emplace_back(text);
    return text;
}

// The value of a parameter as text: libical keeps free texts as they came
// and enumerated ones as numbers, which it spells in its own writing.
const char* Importer::ParamValue(icalparameter* param) {
    const icalparameter_kind kind = icalparameter_isa(param);
    if (kind == ICAL_IANA_PARAMETER) return icalparameter_get_iana_value(param);
    const char* x = icalparameter_get_xvalue(param);
    if (x != nullptr) return x;
    int value = 0;
    switch (kind) {
        case ICAL_CUTYPE_PARAMETER:
            value = icalparameter_get_cutype(param);
            break;
        case ICAL_ROLE_PARAMETER:
            value = icalparameter_get_role(param);
            break;
        case ICAL_PARTSTAT_PARAMETER:
            value = icalparameter_get_partstat(param);
            break;
        case ICAL_RSVP_PARAMETER:
            value = icalparameter_get_rsvp(param);
            break;
        default:
            break;
    }
    if (const char* spelled = value != 0 ? icalparameter_enum_to_string(value) : nullptr) {
        return spelled;
    }
    char* text = icalparameter_as_ical_string_r(param);
    if (text == nullptr) return nullptr;
    m_owned.emplace_back(text);
    const char* eq = std::strchr(text, '=');
    return eq != nullptr ? eq + 1 : text;
}

void Importer::GatherParams(icalproperty* property, const PropertyRow& row, Gathered& g,
                            const char*& tzid) {
    std::size_t slotCount = 0;
    const ParamSlot* slots = ParamSlots(row.shape, slotCount);
    bool tagSkipped = false;
    for (icalparameter* p = icalproperty_get_first_parameter(property, ICAL_ANY_PARAMETER);
         p != nullptr; p = icalproperty_get_next_parameter(property, ICAL_ANY_PARAMETER)) {
        const icalparameter_kind kind = icalparameter_isa(p);
        const char* name = ParamNameOf(p);
        if (name == nullptr) continue;
        if (!tagSkipped && kind == ICAL_X_PARAMETER && std::strcmp(name, kLineTag) == 0) {
            tagSkipped = true;
            continue;
        }
        // The value type follows from the value itself (libical writes VALUE
        // from it): a date is marked below, any other type needs no word.
        if (kind == ICAL_VALUE_PARAMETER) continue;
        if (row.shape == eShape::DateTime && kind == ICAL_TZID_PARAMETER && tzid == nullptr) {
            tzid = ParamValue(p);
            continue;
        }
        const char* value = ParamValue(p);
        if (value == nullptr) continue;
        bool placed = false;
        for (std::size_t s = 0; s < slotCount && !placed; ++s) {
            if (slots[s].kind != kind) continue;
            if (slots[s].list >= 0) {
                g.lists[slots[s].list].pushBack(value);
                placed = true;
            } else if (slots[s].text == kRsvpSlot) {
                if (g.values.rsvp == PimShared::eRsvpNotGiven) {
                    g.values.rsvp = icalparameter_get_rsvp(p) == ICAL_RSVP_TRUE
                                        ? PimShared::eRsvpTrue
                                        : PimShared::eRsvpFalse;
                    placed = icalparameter_get_rsvp(p) == ICAL_RSVP_TRUE ||
                             icalparameter_get_rsvp(p) == ICAL_RSVP_FALSE;
                    if (!placed) g.values.rsvp = PimShared::eRsvpNotGiven;
                }
            } else if (g.values.text[slots[s].text] == nullptr) {
                g.values.text[slots[s].text] = value;
                placed = true;
            }
        }
        // A parameter without an argument of its own (or a second one of a
        // kind) travels by name.
        if (!placed) g.xParams.pushBack(PimShared::tXParam{name, value});
    }
}

bool Representable(const PAL::CDateAndTime& dt) {
    PAL::CString text;
    PAL::CDateAndTime back;
    return PAL::DateAndTimeUtilities::ToString(
               dt, PAL::DateAndTimeUtilities::eDateTimeFormatICalendar, 0, {}, text) &&
           PAL::DateAndTimeUtilities::FromString(
               back, text, PAL::DateAndTimeUtilities::eDateTimeFormatICalendar) &&
           back == dt;
}

bool Importer::Gather(icalproperty* property, const PropertyRow& row, Gathered& g, eOp& op) {
    g.values = PropertyValues{};
    for (auto& list : g.lists) list.clear();
    g.xParams.clear();
    for (int i = 0; i < PropertyValues::kLists; ++i) g.values.list[i] = &g.lists[i];
    g.values.xParams = &g.xParams;
    const char* tzid = nullptr;
    GatherParams(property, row, g, tzid);
    icalvalue* value = icalproperty_get_value(property);
    if (value == nullptr) return false;
    switch (row.shape) {
        case eShape::Byte:
        case eShape::Word: {
            if (icalvalue_isa(value) != ICAL_INTEGER_VALUE) return false;
            const int n = icalvalue_get_integer(value);
            const int max = row.shape == eShape::Byte ? 255 : 65535;
            if (n < 0 || n > max) return false;
            g.values.number = static_cast<unsigned int>(n);
            return true;
        }
        case eShape::DateTime: {
            icaltimetype t;
            const icalvalue_kind vk = icalvalue_isa(value);
            if (vk == ICAL_DATETIME_VALUE || vk == ICAL_DATE_VALUE) {
                t = icalvalue_get_datetime(value);
            } else if (vk == ICAL_DATETIMEPERIOD_VALUE) {
                t = icalvalue_get_datetimeperiod(value).time;
            } else {
                return false;
            }
            if (icaltime_is_null_time(t)) return false;
            if (t.year < 0 || t.month < 0 || t.day < 0 || t.hour < 0 || t.minute < 0 ||
                t.second < 0) {
                return false;
            }
            const auto u = [](int n) { return static_cast<unsigned int>(n); };
            g.dateTime = t.is_date ? PAL::CDateAndTime(u(t.year), u(t.month), u(t.day))
                                   : PAL::CDateAndTime(u(t.year), u(t.month), u(t.day), u(t.hour),
                                                       u(t.minute), u(t.second));
            if (!Representable(g.dateTime)) return false;
            g.values.dateTime = &g.dateTime;
            const eForm form = icaltime_is_utc(t) ? eForm::Utc
                               : tzid != nullptr  ? eForm::Zoned
                                                  : eForm::Floating;
            if (row.op != eOp::None && row.zoneArgument && form != eForm::Floating) {
                op = row.op;
                g.values.zone = form == eForm::Zoned ? tzid : nullptr;
            } else {
                const bool local = row.localOp != eOp::None;
                op = local ? row.localOp : row.op;
                if (tzid != nullptr) g.xParams.pushBack(PimShared::tXParam{kTzidParam, tzid});
                if (local && form == eForm::Utc) {
                    g.xParams.pushBack(PimShared::tXParam{kTimeMarker, kTimeUtc});
                } else if (!local && form == eForm::Floating) {
                    g.xParams.pushBack(PimShared::tXParam{kTimeMarker, kTimeFloating});
                }
            }
            if (t.is_date) g.xParams.pushBack(PimShared::tXParam{kValueParam, kValueDate});
            return true;
        }
        case eShape::Categories: {
            const char* text = ValueText(value);
            if (text == nullptr) return false;
            g.lists[0].pushBack(text);
            return true;
        }
        default:
            g.values.text[0] = ValueText(value);
            return g.values.text[0] != nullptr;
    }
}

ImportResult Importer::Run(const char* text, std::size_t size) {
    m_result.ok = true;
    if (text == nullptr) size = 0;
    if (const void* nul = size > 0 ? std::memchr(text, '\0', size) : nullptr) {
        const char* at = static_cast<const char*>(nul);
        unsigned int line = 1;
        for (const char* p = text; p < at; ++p) line += *p == '\n';
        Fail("a NUL byte, which iCalendar text never holds", line);
        return std::move(m_result);
    }
    // Streams take about as many bytes as the text they come from.
    m_result.streams.reserve(size);
    LineFeed feed{text, text + size};
    m_parser = icalparser_new();
    if (m_parser == nullptr) {
        Fail("out of memory", 0);
        return std::move(m_result);
    }
    icalparser_set_gen_data(m_parser, &feed);
    unsigned int start = 1;
    while (m_result.ok) {
        char* line = icalparser_get_line(m_parser, &LineFeed::Next);
        if (line == nullptr) break;
        const unsigned int number = start;
        start = feed.lastStart;
        const bool ok = Feed(line, number);
        icalmemory_free_buffer(line);
        if (!ok) break;
    }
    // A text that ends inside a component: libical closes what is open and
    // keeps the result, which icalparser_free frees.
    if (icalcomponent* rest = icalparser_clean(m_parser)) {
        if (m_result.ok) WalkRoot(rest);
    }
    icalparser_free(m_parser);
    m_parser = nullptr;
    if (m_result.ok && m_beginLines.empty()) {
        Fail("no iCalendar component here (BEGIN:VCALENDAR expected)", 1);
    }
    m_result.losses = m_fileLosses.Take();
    return std::move(m_result);
}

}  // namespace

ImportResult ImportICalendar(const char* text, std::size_t size) {
    return Importer().Run(text, size);
}

bool LooksLikeICalendar(const char* text, std::size_t size) {
    std::size_t i = 0;
    if (size >= 3 && std::memcmp(text, "\xEF\xBB\xBF", 3) == 0) i = 3;
    while (i < size && (text[i] == '\r' || text[i] == '\n' || text[i] == ' ' || text[i] == '\t')) {
        ++i;
    }
    static const char kStart[] = "BEGIN:VCALENDAR";
    const std::size_t n = sizeof kStart - 1;
    return size - i >= n && strncasecmp(text + i, kStart, n) == 0;
}

}  // namespace PimBridge
