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
#include <array>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

#include "ICalendarBridge.h"
#include "bridges/common/Charset.h"
#include "bridges/common/LossCollector.h"
#include "parsercreatorcollection/src/tlv/creator/TLVObjects.h"
#include "platform/Utf8.h"
#include "private/ICalendarMapping.h"

namespace PimBridge {

using namespace Ical;

namespace {

constexpr const char* kLineTag = "X-PIMTLV-LINE";
constexpr std::size_t kNoComponent = static_cast<std::size_t>(-1);
// libical trims the blanks at both ends of a value and refuses an empty one,
// yet both are text the items carry. A text line whose value is empty or
// starts or ends with a blank is handed over with one letter added at each
// end and this parameter first; the walk takes the letters off again.
constexpr const char* kWrapTag = "X-PIMTLV-WRAP";
constexpr char kWrapLetter = 'x';
// The most a value of an item, and an item's stream, can hold.
constexpr unsigned int kMaxValue = ParserCreatorCollection::CTLVObject::MaxValueLength;
constexpr const char* kLimitText = "16 MiB";
static_assert(kMaxValue + 1 == 16u << 20, "kLimitText names kMaxValue");

// Whether a text of the property is more than a value can hold.
bool OverLimit(const PropertyValues& v) {
    for (const char* text : v.text) {
        if (text != nullptr && std::strlen(text) > kMaxValue) return true;
    }
    for (const PAL::TVector<const char*>* list : v.list) {
        if (list == nullptr) continue;
        for (const char* text : *list) {
            if (text != nullptr && std::strlen(text) > kMaxValue) return true;
        }
    }
    return false;
}

// Real calendars nest three deep (VCALENDAR, VEVENT, VALARM); libical frees
// and writes its trees by recursion, so hostile nesting stops here.
constexpr std::size_t kMaxDepth = 64;

// One item creator behind a common face, so the walk is written once.
class ItemSink {
  public:
    virtual ~ItemSink() = default;
    virtual bool Begin(unsigned int instance) = 0;
    // Whether the item has an operation for row.
    virtual bool Carries(const PropertyRow& row) const = 0;
    // Calls row's operation (its localOp with local) with the values.
    virtual bool Put(const PropertyRow& row, bool local, const PropertyValues& values) = 0;
    virtual bool Finish(const void*& data, unsigned int& length) = 0;
};

// The creator call of the operation a row names, for the item Item (its
// description), or null when the item has no such operation.
template <typename Item>
using CreatorCall = bool (*)(typename Item::Creator&, const PropertyValues&);

template <typename Item, const char* const PropertyRow::*Which, std::size_t Row>
constexpr CreatorCall<Item> CallOf() {
    constexpr std::size_t at = ItemOperations<Item>::Find(kRows[Row].*Which);
    using Ops = typename ItemOperations<Item>::Tuple;
    if constexpr (at == std::tuple_size_v<Ops>) {
        return nullptr;
    } else {
        return &Invoke<std::tuple_element_t<at, Ops>, typename Item::Creator>;
    }
}

// Per row, the call of its operation (Which: op or localOp).
template <typename Item, const char* const PropertyRow::*Which, std::size_t... R>
constexpr std::array<CreatorCall<Item>, kRowCount> CallsOf(std::index_sequence<R...>) {
    return {{CallOf<Item, Which, R>()...}};
}

// Which rows an item carries, and with what calls, is read from its
// description.
template <typename Item>
class CreatorSink final : public ItemSink {
    using Calls = std::array<CreatorCall<Item>, kRowCount>;
    static constexpr Calls kOps =
        CallsOf<Item, &PropertyRow::op>(std::make_index_sequence<kRowCount>{});
    static constexpr Calls kLocalOps =
        CallsOf<Item, &PropertyRow::localOp>(std::make_index_sequence<kRowCount>{});

  public:
    bool Begin(unsigned int instance) override {
        return m_creator.Reset() && m_creator.Begin(instance);
    }
    bool Carries(const PropertyRow& row) const override {
        const std::size_t r = static_cast<std::size_t>(&row - kRows);
        return kOps[r] != nullptr || kLocalOps[r] != nullptr;
    }
    bool Put(const PropertyRow& row, bool local, const PropertyValues& values) override {
        const CreatorCall<Item> call =
            (local ? kLocalOps : kOps)[static_cast<std::size_t>(&row - kRows)];
        return call != nullptr && call(m_creator, values);
    }
    bool Finish(const void*& data, unsigned int& length) override {
        return m_creator.End() && m_creator.GetData(data, length);
    }

  private:
    typename Item::Creator m_creator;
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
//
// libical also trims the blanks at the end of a content line, which may be
// part of a text value: the feed notes the blanks that end each physical
// line (in the text itself, so across pieces), and the walk asks for those of
// a content line's last physical line.
struct LineFeed {
    const char* pos = nullptr;
    const char* end = nullptr;
    unsigned int line = 0;
    bool atLineStart = true;
    bool exhausted = false;  // libical has asked past the end
    unsigned int lastStart = 1;
    const char* lineBegin = nullptr;
    struct Blanks {
        unsigned int line;
        const char* at;
        std::size_t size;
    };
    std::vector<Blanks> blanks;  // in line order; few
    std::size_t blanksSeen = 0;

    static bool IsBlankByte(char c) {
        return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f';
    }

    static char* Next(char* out, std::size_t room, void* self) {
        auto* feed = static_cast<LineFeed*>(self);
        if (feed->pos >= feed->end || room < 2) {
            feed->exhausted = feed->pos >= feed->end;
            return nullptr;
        }
        if (feed->atLineStart) {
            feed->lastStart = ++feed->line;
            feed->lineBegin = feed->pos;
        }
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
        if (feed->atLineStart || feed->pos == feed->end) feed->NoteBlanks();
        return out;
    }

    // The line that ended at pos: the blanks before its line break.
    void NoteBlanks() {
        const char* stop = pos;
        if (stop > lineBegin && stop[-1] == '\n') --stop;
        if (stop > lineBegin && stop[-1] == '\r') --stop;
        // The blank that marks a folded line is no part of the text.
        const bool folded = line > 1 && (lineBegin[0] == ' ' || lineBegin[0] == '\t');
        const char* floor = folded && stop > lineBegin ? lineBegin + 1 : lineBegin;
        const char* first = stop;
        while (first > floor && IsBlankByte(first[-1])) --first;
        if (first < stop) {
            blanks.push_back(Blanks{line, first, static_cast<std::size_t>(stop - first)});
        }
    }

    // The blanks that end the content line libical just handed back, which
    // started on line start (empty when none).
    std::pair<const char*, std::size_t> TrailingBlanks(unsigned int start) {
        // libical has read the first piece of the next line, unless there is none.
        const unsigned int last = exhausted || lastStart <= start ? lastStart : lastStart - 1;
        while (blanksSeen < blanks.size() && blanks[blanksSeen].line < last) ++blanksSeen;
        if (blanksSeen < blanks.size() && blanks[blanksSeen].line == last) {
            return {blanks[blanksSeen].at, blanks[blanksSeen].size};
        }
        return {nullptr, 0};
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
        bool wrapped = false;      // the value came with kWrapLetter at both ends
        bool utcWithZone = false;  // a UTC time that named a TZID as well
    };
    struct Converted {
        std::string name;
        unsigned int line;
        std::string detail;
    };

    bool Feed(char* line, unsigned int number);
    char* Prepare(char* line, std::size_t length, std::size_t nameLength, unsigned int number);
    unsigned int LineOf(std::size_t component, const std::string& name) const;
    void AddLoss(LossCollector& losses, std::size_t component, icalproperty* property,
                 Loss::Kind kind = Loss::Kind::NotCarried) const;
    void AddConverted(LossCollector& losses, std::size_t component) const;
    void DurationAsEnd(icalcomponent* component, const ItemKind& kind, std::size_t index,
                       LossCollector& losses);
    bool WalkRoot(icalcomponent* root);
    bool ImportItem(icalcomponent* component, const ItemKind& kind, std::size_t index,
                    const CalendarContext& calendar);
    bool PutProperty(ItemSink& sink, icalproperty* const* props, std::size_t count, std::size_t& i,
                     std::size_t component, LossCollector& losses);
    bool Gather(icalproperty* property, const PropertyRow& row, Gathered& g, bool& local);
    void GatherParams(icalproperty* property, const PropertyRow& row, Gathered& g,
                      const char*& tzid);
    const char* ValueText(icalvalue* value);
    const char* Unwrapped(const char* text);
    const char* ParamValue(icalparameter* param);
    std::vector<std::size_t> ChildOrder(std::size_t parent) const;
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
    std::string m_decoded;                        // a line that was not UTF-8, as UTF-8
    std::pair<const char*, std::size_t> m_trail;  // the blanks libical trimmed off the line
    // Per component: the lines read as Windows-1252, by property name.
    std::unordered_map<std::size_t, std::vector<Converted>> m_converted;
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
    // Per component (as in m_beginLines): its parent, whether it is a
    // VTIMEZONE, and where its subtree ends in m_beginLines.
    std::vector<std::size_t> m_parent;
    std::vector<bool> m_isZone;
    std::vector<std::size_t> m_subtreeEnd;
    std::vector<std::size_t> m_open;  // indices of the open components
    std::size_t m_nextRoot = 0;       // the walk's position in m_beginLines
    std::unordered_map<std::size_t, std::vector<unsigned int>> m_errors;  // per component
    std::unordered_map<std::size_t, std::size_t> m_errorsTaken;
    std::vector<std::unique_ptr<char, FreeDeleter>> m_owned;  // texts of one item
    std::vector<icalproperty*> m_props;
    Gathered m_gathered;
    unsigned int m_instance = 0;
    CreatorSink<PimShared::EventItem> m_event;
    CreatorSink<PimShared::TaskItem> m_task;
    CreatorSink<PimShared::NoteItem> m_note;
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
        m_parent.push_back(m_open.empty() ? kNoComponent : m_open.back());
        m_isZone.push_back(NameIs(line + n + 1, std::strlen(line + n + 1), "VTIMEZONE"));
        m_subtreeEnd.push_back(kNoComponent);
        m_open.push_back(m_beginLines.size());
        m_beginLines.push_back(number);
        m_firstNote.push_back(m_notes.size());
        m_endNote.push_back(static_cast<std::size_t>(-1));
    } else if (end) {
        if (!m_open.empty()) {
            m_endNote[m_open.back()] = m_notes.size();
            m_subtreeEnd[m_open.back()] = m_beginLines.size();
            m_open.pop_back();
        }
    } else if (m_open.empty()) {
        if (line[std::strspn(line, " \t\r\n")] != '\0') {
            m_fileLosses.Add("text outside any component", number);
        }
    } else if (named) {
        m_notes.push_back(LineNote{m_open.back(), number, m_names.size(), n});
        m_names.append(line, n);
    }
    const std::size_t length = std::strlen(line);
    if (!PAL::IsValidUtf8(line,
                          static_cast<unsigned int>(std::min<std::size_t>(length, UINT_MAX)))) {
        // Not UTF-8: read as the fallback charset, and said so.
        m_decoded.clear();
        AppendWindows1252AsUtf8(line, length, m_decoded);
        const std::string name = named ? std::string(line, n) : std::string("line");
        if (m_open.empty()) {
            m_fileLosses.Add(name, number, Loss::Kind::Converted,
                             std::string("from ") + kFallbackCharset);
        } else {
            m_converted[m_open.back()].push_back(
                Converted{name, number, std::string("from ") + kFallbackCharset});
        }
        given = &m_decoded[0];
    }
    if (named && !begin && !end && !m_open.empty()) {
        given = Prepare(given, given == line ? length : m_decoded.size(), n, number);
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

// Where the value of a content line starts: after the first colon outside
// quotes, or at its end when it has none.
std::size_t ValueStart(const char* line, std::size_t from, std::size_t length) {
    bool quoted = false;
    for (std::size_t i = from; i < length; ++i) {
        if (line[i] == '"') quoted = !quoted;
        if (line[i] == ':' && !quoted) return i + 1;
    }
    return length;
}

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\v' || c == '\f';
}

// Whether libical reads the property's value as one text, whose blanks it
// would trim (CATEGORIES and RESOURCES are lists, each value trimmed alike).
bool IsOneText(const char* name, std::size_t length) {
    if (length > 2 && strncasecmp(name, "X-", 2) == 0) return true;
    const std::string own(name, length);
    const icalproperty_kind kind = icalproperty_string_to_kind(own.c_str());
    return kind != ICAL_CATEGORIES_PROPERTY && kind != ICAL_RESOURCES_PROPERTY &&
           kind != ICAL_NO_PROPERTY && icalproperty_kind_to_value_kind(kind) == ICAL_TEXT_VALUE;
}

// Whether a value of a list (values apart by unescaped commas) starts or
// ends with a blank, which libical trims.
bool BlankAroundAValue(const char* text, std::size_t size, bool trailing) {
    if (trailing || (size > 0 && (IsBlank(text[0]) || IsBlank(text[size - 1])))) return true;
    for (std::size_t i = 0; i < size; ++i) {
        if (text[i] == '\\') {
            ++i;
        } else if (text[i] == ',' &&
                   ((i > 0 && IsBlank(text[i - 1])) || (i + 1 < size && IsBlank(text[i + 1])))) {
            return true;
        }
    }
    return false;
}

// Tags a CATEGORIES line with its line number and wraps a text value that
// libical would trim or refuse (see kWrapTag); other lines go as they are.
char* Importer::Prepare(char* line, std::size_t length, std::size_t nameLength,
                        unsigned int number) {
    const bool categories = NameIs(line, nameLength, "CATEGORIES");
    const std::size_t value = ValueStart(line, nameLength, length);
    std::size_t end = length;
    while (end > value && (line[end - 1] == '\n' || line[end - 1] == '\r')) --end;
    // A line that names the tag itself is wrapped too, so that the first
    // tag of a property is always the bridge's own.
    const std::string_view params(line + nameLength, value - nameLength);
    const bool wrap = !categories && line[value - 1] == ':' &&
                      (end == value || IsBlank(line[value]) || IsBlank(line[end - 1]) ||
                       m_trail.second > 0 || params.find(kWrapTag) != std::string_view::npos) &&
                      IsOneText(line, nameLength);
    if (categories && BlankAroundAValue(line + value, end - value, m_trail.second > 0)) {
        m_converted[m_open.back()].push_back(
            Converted{"CATEGORIES", number, "blanks around a category trimmed"});
    }
    if (!categories && !wrap) return line;
    std::string tagged(line, nameLength);
    tagged += ';';
    if (categories) {
        tagged += kLineTag;
        tagged += '=';
        tagged += std::to_string(number);
        tagged.append(line + nameLength);
    } else {
        tagged += kWrapTag;
        tagged += "=1";
        tagged.append(line + nameLength, value - nameLength);
        tagged += kWrapLetter;
        tagged.append(line + value, end - value);
        if (m_trail.first != nullptr) tagged.append(m_trail.first, m_trail.second);
        tagged += kWrapLetter;
        tagged.append(line + end);
    }
    m_tagged.swap(tagged);
    return &m_tagged[0];
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

void Importer::AddLoss(LossCollector& losses, std::size_t component, icalproperty* property,
                       Loss::Kind kind) const {
    const std::string name = PropertyNameOf(property);
    losses.Add(name, losses.Contains(name, kind) ? 0 : LineOf(component, name), kind);
}

void Importer::AddConverted(LossCollector& losses, std::size_t component) const {
    const auto found = m_converted.find(component);
    if (found == m_converted.end()) return;
    for (const Converted& c : found->second) {
        losses.Add(c.name, c.line, Loss::Kind::Converted, c.detail);
    }
}

unsigned int Importer::NextErrorLine(std::size_t component) {
    const auto found = m_errors.find(component);
    if (found == m_errors.end()) return 0;
    std::size_t& taken = m_errorsTaken[component];
    return taken < found->second.size() ? found->second[taken++] : found->second.back();
}

// The positions (in m_beginLines) of the children of parent, in the order
// libical keeps them: it moves every VTIMEZONE to the front, the last one
// first, and leaves the others in the order of the text.
std::vector<std::size_t> Importer::ChildOrder(std::size_t parent) const {
    std::vector<std::size_t> order;
    std::vector<std::size_t> others;
    if (parent >= m_beginLines.size()) return order;
    const std::size_t end = std::min(m_subtreeEnd[parent], m_beginLines.size());
    for (std::size_t i = parent + 1; i < end; ++i) {
        if (m_parent[i] != parent) continue;
        (m_isZone[i] ? order : others).push_back(i);
    }
    std::reverse(order.begin(), order.end());
    order.insert(order.end(), others.begin(), others.end());
    return order;
}

const char* TzidOf(icalcomponent* zone) {
    icalproperty* tzid = icalcomponent_get_first_property(zone, ICAL_TZID_PROPERTY);
    return tzid != nullptr ? icalproperty_get_tzid(tzid) : nullptr;
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
    // libical hands back each outermost component as it ends: in the order of the text.
    while (m_nextRoot < m_parent.size() && m_parent[m_nextRoot] != kNoComponent) ++m_nextRoot;
    const std::size_t rootIndex = m_nextRoot++;
    CalendarContext calendar;
    if (const ItemKind* kind = ItemKindOf(root)) {
        return ImportItem(root, *kind, rootIndex, calendar);
    }
    if (icalcomponent_isa(root) != ICAL_VCALENDAR_COMPONENT) {
        m_fileLosses.Add(ComponentName(root), BeginLine(rootIndex));
        return true;
    }
    AddConverted(m_fileLosses, rootIndex);
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
    const std::vector<std::size_t> order = ChildOrder(rootIndex);
    std::size_t child = 0;
    for (icalcomponent* c = icalcomponent_get_first_component(root, ICAL_ANY_COMPONENT);
         c != nullptr; c = icalcomponent_get_next_component(root, ICAL_ANY_COMPONENT)) {
        const std::size_t index = child < order.size() ? order[child] : kNoComponent;
        ++child;
        const ItemKind* kind = ItemKindOf(c);
        if (kind == nullptr) {
            // The export writes the definition of every zone the items use
            // from the time-zone database: one found there comes back.
            const bool rewritten =
                icalcomponent_isa(c) == ICAL_VTIMEZONE_COMPONENT && KnownZone(TzidOf(c)) != nullptr;
            m_fileLosses.Add(ComponentName(c), BeginLine(index),
                             rewritten ? Loss::Kind::Regenerated : Loss::Kind::NotCarried);
            continue;
        }
        if (!ImportItem(c, *kind, index, calendar)) return false;
    }
    return true;
}

bool Importer::ImportItem(icalcomponent* component, const ItemKind& kind, std::size_t index,
                          const CalendarContext& calendar) {
    ItemSink& sink = SinkOf(kind.item);
    LossCollector losses;
    AddConverted(losses, index);
    const unsigned int line = BeginLine(index);
    const std::string item = std::string(kind.name) + " " + std::to_string(m_instance + 1);
    const auto failed = [&](const char* what) {
        Fail(std::string("could not write the ") + what + " of " + item, line);
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
    DurationAsEnd(component, kind, index, losses);
    for (std::size_t i = 0; i < m_props.size(); ++i) {
        if (!PutProperty(sink, m_props.data(), m_props.size(), i, index, losses)) {
            const std::string name = PropertyNameOf(m_props[i]);
            const unsigned int at = LineOf(index, name);
            Fail(OverLimit(m_gathered.values)
                     ? "the " + name + " of " + item + " is longer than the " + kLimitText +
                           " a value of an item can hold"
                     : "could not write the " + name + " of " + item,
                 at != 0 ? at : line);
            return false;
        }
    }
    const std::vector<std::size_t> order = ChildOrder(index);
    std::size_t child = 0;
    for (icalcomponent* c = icalcomponent_get_first_component(component, ICAL_ANY_COMPONENT);
         c != nullptr; c = icalcomponent_get_next_component(component, ICAL_ANY_COMPONENT)) {
        const std::size_t at = child < order.size() ? order[child] : kNoComponent;
        ++child;
        losses.Add(ComponentName(c), BeginLine(at));
    }
    m_owned.clear();
    const void* data = nullptr;
    unsigned int length = 0;
    if (!sink.Finish(data, length)) {
        Fail(item + " is larger than the " + kLimitText + " an item's stream can hold", line);
        return false;
    }
    m_result.AddItem(kind.name, line, data, length, losses.Take());
    ++m_instance;
    return true;
}

const char* TzidParam(icalproperty* property) {
    icalparameter* tzid = icalproperty_get_first_parameter(property, ICAL_TZID_PARAMETER);
    return tzid != nullptr ? icalparameter_get_tzid(tzid) : nullptr;
}

// An event ends and a task is due at a time, and neither carries a length:
// a DURATION (without a DTEND or DUE beside it) becomes that time, counted
// from DTSTART, and is reported as converted. Days and weeks count on the
// wall clock; hours, minutes and seconds as elapsed time, across a change of
// the zone's offset when the zone is known.
void Importer::DurationAsEnd(icalcomponent* component, const ItemKind& kind, std::size_t index,
                             LossCollector& losses) {
    if (kind.item == kNote) return;
    const icalproperty_kind endKind = kind.item == kEvent ? ICAL_DTEND_PROPERTY : ICAL_DUE_PROPERTY;
    icalproperty* start = nullptr;
    std::size_t at = m_props.size();
    for (std::size_t i = 0; i < m_props.size(); ++i) {
        const icalproperty_kind k = icalproperty_isa(m_props[i]);
        if (k == endKind) return;
        if (k == ICAL_DTSTART_PROPERTY && start == nullptr) start = m_props[i];
        if (k == ICAL_DURATION_PROPERTY && at == m_props.size()) at = i;
    }
    if (start == nullptr || at == m_props.size()) return;
    icalvalue* startValue = icalproperty_get_value(start);
    icalvalue* lengthValue = icalproperty_get_value(m_props[at]);
    if (startValue == nullptr || lengthValue == nullptr ||
        icalvalue_isa(lengthValue) != ICAL_DURATION_VALUE) {
        return;
    }
    const icalvalue_kind startKind = icalvalue_isa(startValue);
    if (startKind != ICAL_DATETIME_VALUE && startKind != ICAL_DATE_VALUE) return;
    const icaltimetype begin = icalvalue_get_datetime(startValue);
    const icaldurationtype d = icalvalue_get_duration(lengthValue);
    // Beyond ten thousand years no date is written; an hour part on a date has no time to go to.
    const long long days = 7LL * d.weeks + d.days;
    const long long seconds = 3600LL * d.hours + 60LL * d.minutes + d.seconds;
    if (icaltime_is_null_time(begin) || icaldurationtype_is_bad_duration(d) || days > 3660000 ||
        seconds > 3660000LL * 86400 || (begin.is_date && seconds != 0)) {
        return;
    }
    const int sign = d.is_neg ? -1 : 1;
    icaltimetype end = begin;
    icaltime_adjust(&end, sign * static_cast<int>(days), 0, 0, 0);
    const char* tzid = TzidParam(start);
    icaltimezone* zone = icaltime_is_utc(begin) ? nullptr : KnownZone(tzid);
    icaltimezone* utc = icaltimezone_get_utc_timezone();
    if (zone != nullptr) icaltimezone_convert_time(&end, zone, utc);
    icaltime_adjust(&end, sign * static_cast<int>(seconds / 86400), 0, 0,
                    sign * static_cast<int>(seconds % 86400));
    if (zone != nullptr) icaltimezone_convert_time(&end, utc, zone);
    end.zone = begin.zone;
    end.is_date = begin.is_date;
    icalproperty* written = icalproperty_new(endKind);
    icalproperty_set_value(written,
                           begin.is_date ? icalvalue_new_date(end) : icalvalue_new_datetime(end));
    if (tzid != nullptr) icalproperty_add_parameter(written, icalparameter_new_tzid(tzid));
    icalcomponent_add_property(component, written);  // freed with the component
    m_props[at] = written;
    losses.Add("DURATION", LineOf(index, "DURATION"), Loss::Kind::Converted,
               kind.item == kEvent ? "written as DTEND" : "written as DUE");
}

// Puts props[i] into the item, or names it as lost. Consecutive CATEGORIES
// from one line (libical makes one property per value) become one list.
bool Importer::PutProperty(ItemSink& sink, icalproperty* const* props, std::size_t count,
                           std::size_t& i, std::size_t component, LossCollector& losses) {
    icalproperty* property = props[i];
    const icalproperty_kind propertyKind = icalproperty_isa(property);
    if (propertyKind == ICAL_XLICERROR_PROPERTY) {
        losses.Add("unreadable line", NextErrorLine(component));
        return true;
    }
    // Every export writes a DTSTAMP by its own rule (see ComponentWriter).
    if (propertyKind == ICAL_DTSTAMP_PROPERTY) {
        AddLoss(losses, component, property, Loss::Kind::Regenerated);
        return true;
    }
    const PropertyRow* row = RowOfKind(propertyKind);
    if (row == nullptr || !sink.Carries(*row)) {
        AddLoss(losses, component, property);
        return true;
    }
    Gathered& g = m_gathered;
    bool local = false;
    if (!Gather(property, *row, g, local)) {
        AddLoss(losses, component, property);
        return true;
    }
    if (g.utcWithZone) {
        const std::string name = PropertyNameOf(property) + ";TZID";
        losses.Add(name, losses.Contains(name) ? 0 : LineOf(component, PropertyNameOf(property)),
                   Loss::Kind::NotCarried, "the time is UTC");
    }
    if (row->shape == eShape::Categories) {
        const unsigned int line = TagLine(property);
        while (i + 1 < count && icalproperty_isa(props[i + 1]) == ICAL_CATEGORIES_PROPERTY &&
               line != 0 && TagLine(props[i + 1]) == line) {
            const char* more = ValueText(icalproperty_get_value(props[++i]));
            if (more != nullptr) g.lists[0].pushBack(more);
        }
    }
    return sink.Put(*row, local, g.values);
}

// A wrapped text without the letters the import added (see kWrapTag).
const char* Importer::Unwrapped(const char* text) {
    if (text == nullptr) return nullptr;
    const std::size_t length = std::strlen(text);
    if (length < 2) return "";
    char* own = static_cast<char*>(std::malloc(length - 1));
    if (own == nullptr) return nullptr;
    std::memcpy(own, text + 1, length - 2);
    own[length - 2] = '\0';
    m_owned.emplace_back(own);
    return own;
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
    const bool categories = row.shape == eShape::Categories;
    const char* ownTag = categories                                                     ? kLineTag
                         : icalproperty_kind_to_value_kind(row.kind) == ICAL_TEXT_VALUE ? kWrapTag
                                                                                        : "";
    bool tagSkipped = false;
    g.wrapped = false;
    for (icalparameter* p = icalproperty_get_first_parameter(property, ICAL_ANY_PARAMETER);
         p != nullptr; p = icalproperty_get_next_parameter(property, ICAL_ANY_PARAMETER)) {
        const icalparameter_kind kind = icalparameter_isa(p);
        const char* name = ParamNameOf(p);
        if (name == nullptr) continue;
        // The import's own tag comes first, and only on the lines it tags:
        // any other parameter of that name is the text's own.
        if (!tagSkipped && kind == ICAL_X_PARAMETER && std::strcmp(name, ownTag) == 0) {
            tagSkipped = true;
            g.wrapped = !categories;
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

bool Importer::Gather(icalproperty* property, const PropertyRow& row, Gathered& g, bool& local) {
    g.values = PropertyValues{};
    g.utcWithZone = false;
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
            // A UTC time is the same instant in every zone: its TZID is
            // dropped, and reported.
            g.utcWithZone = form == eForm::Utc && tzid != nullptr;
            if (g.utcWithZone) tzid = nullptr;
            if (row.op != nullptr && row.zoneArgument && form != eForm::Floating) {
                local = false;
                g.values.zone = form == eForm::Zoned ? tzid : nullptr;
            } else {
                local = row.localOp != nullptr;
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
            if (g.wrapped && icalvalue_isa(value) == ICAL_TEXT_VALUE) {
                g.values.text[0] = Unwrapped(g.values.text[0]);
            }
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
    LineFeed feed;
    feed.pos = text;
    feed.end = text + size;
    // A byte order mark is no text of the first line.
    if (size >= 3 && std::memcmp(text, "\xEF\xBB\xBF", 3) == 0) feed.pos += 3;
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
        m_trail = feed.TrailingBlanks(number);
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
