// Item streams merged onto the iCalendar text they came from.
//
// The original is imported as any text is, so that each of its components
// has the stream the device was given. An item whose stream is that very
// stream is unchanged and costs no more than the comparison. Any other item
// and its counterpart are built as export builds them and compared property
// by property (by name, as libical writes them); the names whose text differs
// are what the device changed. Only those lines of the original component are
// replaced, by libical's writing of the item's properties; every other line,
// every other component and the calendar around them stay byte for byte as
// they were. Lines are found by the names that start them (BEGIN, END and the
// property names), the one look at the text outside libical, and the
// components so found are checked against libical's count before anything is
// spliced.

#include <strings.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "ICalendarBridge.h"
#include "bridges/common/Charset.h"
#include "bridges/common/Clock.h"
#include "bridges/common/ItemStreams.h"
#include "bridges/common/Merge.h"
#include "private/ICalendarItems.h"
#include "private/ICalendarMapping.h"

namespace PimBridge {

using namespace Ical;

namespace {

constexpr std::size_t kNone = ComponentMatcher::kNone;

std::string Upper(const char* p, std::size_t n) {
    std::string out(p, n);
    for (char& c : out) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return out;
}

// One content line of the text: the physical line that starts it and every
// following line that starts with a blank.
struct ContentLine {
    std::size_t begin = 0;
    std::size_t end = 0;  // where the next one starts
    std::string name;     // upper case; empty when the line starts with no name
};

ContentLine ReadLine(const char* text, std::size_t size, std::size_t pos) {
    ContentLine line;
    line.begin = pos;
    std::size_t n = pos;
    while (n < size && IsNameChar(text[n])) ++n;
    line.name = Upper(text + pos, n - pos);
    std::size_t p = pos;
    for (;;) {
        const void* nl = std::memchr(text + p, '\n', size - p);
        p = nl != nullptr ? static_cast<std::size_t>(static_cast<const char*>(nl) - text) + 1
                          : size;
        if (p >= size || (text[p] != ' ' && text[p] != '\t')) break;
    }
    line.end = p;
    return line;
}

// The line without its folds and its line end.
std::string Unfold(const char* text, const ContentLine& line) {
    std::string out;
    out.reserve(line.end - line.begin);
    for (std::size_t i = line.begin; i < line.end; ++i) {
        const char c = text[i];
        if (c == '\r' && i + 1 < line.end && text[i + 1] == '\n') continue;
        if (c == '\n') {
            ++i;  // the blank that continues the line, if any
            continue;
        }
        out += c;
    }
    if (!out.empty() && out.back() == '\r') out.pop_back();
    return out;
}

// What follows the first colon outside quotes.
std::string ValueOf(const std::string& unfolded) {
    bool quoted = false;
    for (std::size_t i = 0; i < unfolded.size(); ++i) {
        if (unfolded[i] == '"') {
            quoted = !quoted;
        } else if (unfolded[i] == ':' && !quoted) {
            return unfolded.substr(i + 1);
        }
    }
    return {};
}

// A text value as libical hands it to the import: escapes resolved.
std::string Unescape(const std::string& value) {
    std::string out;
    out.reserve(value.size());
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] == '\\' && i + 1 < value.size()) {
            const char next = value[++i];
            out += next == 'n' || next == 'N' ? '\n' : next;
        } else {
            out += value[i];
        }
    }
    return out;
}

std::string Trimmed(std::string text) {
    const std::size_t end = text.find_last_not_of(" \t");
    text.erase(end == std::string::npos ? 0 : end + 1);
    return text;
}

const char* KindOfComponent(const std::string& name) {
    if (name == "VEVENT") return "event";
    if (name == "VTODO") return "task";
    if (name == "VJOURNAL") return "note";
    return nullptr;
}

// Where the items of a text stand, in the order the import numbers them:
// a VEVENT, VTODO or VJOURNAL directly in a top-level VCALENDAR, or at the
// top level itself.
struct ItemText {
    std::size_t begin = 0;  // its BEGIN line
    std::size_t end = 0;    // past its END line
    const char* kind = nullptr;
    std::string uid;
};

struct TextMap {
    std::vector<ItemText> items;
    std::size_t calendarEnd = kNone;  // the last top-level END:VCALENDAR line
    bool lfOnly = false;              // lines end in LF without CR
};

TextMap MapText(const char* text, std::size_t size) {
    TextMap map;
    const void* nl = std::memchr(text, '\n', size);
    map.lfOnly = nl != nullptr && (nl == text || static_cast<const char*>(nl)[-1] != '\r');
    std::vector<std::string> open;
    std::size_t itemDepth = kNone;
    for (std::size_t pos = 0; pos < size;) {
        ContentLine line = ReadLine(text, size, pos);
        pos = line.end;
        const bool begin = line.name == "BEGIN";
        if (begin || line.name == "END") {
            std::string value = Trimmed(ValueOf(Unfold(text, line)));
            value = Upper(value.data(), value.size());
            if (begin) {
                const char* kind = KindOfComponent(value);
                if (itemDepth == kNone && kind != nullptr &&
                    (open.empty() || (open.size() == 1 && open[0] == "VCALENDAR"))) {
                    itemDepth = open.size();
                    map.items.push_back(ItemText{line.begin, size, kind, {}});
                }
                open.push_back(value);
            } else {
                std::string closed;
                if (!open.empty()) {
                    closed = std::move(open.back());
                    open.pop_back();
                }
                if (itemDepth != kNone && open.size() == itemDepth) {
                    map.items.back().end = line.end;
                    itemDepth = kNone;
                }
                // Only an END that closes a calendar (not one that ends an
                // item left open) is where new items can go.
                if (open.empty() && value == "VCALENDAR" && closed == "VCALENDAR") {
                    map.calendarEnd = line.begin;
                }
            }
        } else if (line.name == "UID" && itemDepth != kNone && open.size() == itemDepth + 1 &&
                   map.items.back().uid.empty()) {
            // As the import reads it, so that the device's item finds it: a
            // line that is no UTF-8 is read as the fallback charset.
            std::string unfolded = Unfold(text, line);
            ReadAsUtf8(unfolded);
            map.items.back().uid = Unescape(ValueOf(unfolded));
        }
    }
    return map;
}

// One side of the merge (the original, or the base) as text and as streams.
// The TZIDs of the VTIMEZONEs a text defines: the one property named TZID
// (elsewhere TZID is a parameter), read from the start of its lines. Zone
// names are compared without trailing blanks, which libical drops from a
// parameter but keeps in a value.
std::vector<std::string> DefinedZones(const char* text, std::size_t size) {
    std::vector<std::string> zones;
    const std::string_view all(text, size);
    for (std::size_t at = 0; at < size;) {
        std::size_t end = all.find('\n', at);
        if (end == std::string_view::npos) end = size;
        if (end - at > 5 && strncasecmp(text + at, "TZID:", 5) == 0) {
            std::string tzid;
            for (std::size_t i = at + 5; i < end; ++i) {
                if (text[i] == '\\' && i + 1 < end)
                    ++i;  // TEXT escapes: "Kuala Lumpur\, Singapore"
                if (text[i] != '\r') tzid += text[i];
            }
            zones.push_back(Trimmed(tzid));
        }
        at = end + 1;
    }
    return zones;
}

struct Side {
    const char* text = nullptr;
    std::size_t size = 0;
    ImportResult imported;
    TextMap map;
    ComponentMatcher matcher;
    std::unordered_multimap<std::string_view, std::size_t> byStream;

    bool Load(const char* t, std::size_t n, const char* what, MergeResult& result) {
        text = t;
        size = n;
        imported = ImportICalendar(t, n);
        if (!imported.ok) {
            result.error = std::string(what) + ": " + imported.error;
            result.errorLine = imported.errorLine;
            return false;
        }
        map = MapText(t, n);
        if (map.items.size() != imported.items.size()) {
            result.error = std::string(what) + ": its components cannot be placed line by line (" +
                           std::to_string(map.items.size()) + " found, " +
                           std::to_string(imported.items.size()) + " read)";
            return false;
        }
        byStream.reserve(map.items.size());
        for (std::size_t i = 0; i < map.items.size(); ++i) {
            matcher.Add(map.items[i].uid);
            byStream.emplace(Stream(i), i);
        }
        return true;
    }
    std::string_view Stream(std::size_t i) const {
        const ImportedItem& item = imported.items[i];
        return std::string_view(
            reinterpret_cast<const char*>(imported.streams.data()) + item.offset, item.size);
    }
    // The component not yet matched whose stream is this very one.
    std::size_t Identical(std::string_view stream) const {
        const auto range = byStream.equal_range(stream);
        for (auto it = range.first; it != range.second; ++it) {
            if (!matcher.Matched(it->second)) return it->second;
        }
        return kNone;
    }
    BuiltItem Build(std::size_t i) const {
        ItemSpan span;
        ParserCreatorCollection::ReadItemSpan(imported.streams.data(), imported.streams.size(),
                                              imported.items[i].offset, span);
        ExportedItem ignored;
        return BuildItem(imported.streams.data(), span, false, ignored);
    }
};

std::string PropertyName(icalproperty* property) {
    const std::string name = PropertyNameOf(property);
    return Upper(name.data(), name.size());
}

std::string Written(icalproperty* property) {
    char* text = icalproperty_as_ical_string_r(property);
    std::string out = text != nullptr ? text : "";
    std::free(text);
    return out;
}

std::string WrittenValue(icalproperty* property) {
    char* text = icalproperty_get_value_as_string_r(property);
    std::string out = text != nullptr ? text : "";
    std::free(text);
    return out;
}

// A component's properties by name, in order of first occurrence, each
// name with libical's writing of all its properties. DTSTAMP is written by
// rule, never carried, and so never compared.
struct Named {
    std::string name;
    std::vector<icalproperty*> props;
    std::string text;
};
using PropertySet = std::vector<Named>;

PropertySet PropertiesOf(icalcomponent* component) {
    PropertySet set;
    if (component == nullptr) return set;
    for (icalproperty* p = icalcomponent_get_first_property(component, ICAL_ANY_PROPERTY);
         p != nullptr; p = icalcomponent_get_next_property(component, ICAL_ANY_PROPERTY)) {
        if (icalproperty_isa(p) == ICAL_DTSTAMP_PROPERTY) continue;
        const std::string name = PropertyName(p);
        auto it =
            std::find_if(set.begin(), set.end(), [&](const Named& n) { return n.name == name; });
        if (it == set.end()) it = set.insert(set.end(), Named{name, {}, {}});
        it->props.push_back(p);
        it->text += Written(p);
    }
    return set;
}

const Named* Find(const PropertySet& set, const std::string& name) {
    for (const Named& n : set) {
        if (n.name == name) return &n;
    }
    return nullptr;
}

bool HasParam(icalproperty* property, const char* name) {
    if (property == nullptr || name == nullptr) return false;
    for (icalparameter* p = icalproperty_get_first_parameter(property, ICAL_ANY_PARAMETER);
         p != nullptr; p = icalproperty_get_next_parameter(property, ICAL_ANY_PARAMETER)) {
        const char* n = ParamNameOf(p);
        if (n != nullptr && strcasecmp(n, name) == 0) return true;
    }
    return false;
}

// The property of list that stands for the same thing as one with value: the
// only one when each side has one, else the one with the same value.
icalproperty* Counterpart(const std::vector<icalproperty*>& list, std::size_t otherCount,
                          const std::string& value) {
    if (list.size() == 1 && otherCount == 1) return list[0];
    for (icalproperty* p : list) {
        if (WrittenValue(p) == value) return p;
    }
    return nullptr;
}

struct PropertyDeleter {
    void operator()(icalproperty* p) const { icalproperty_free(p); }
};
using PropertyPtr = std::unique_ptr<icalproperty, PropertyDeleter>;

// Merges one matched item onto its component's text. Fills item's outcome,
// changes and conflicts; replacement is the component's new text when the
// item changed it.
class ComponentMerge {
  public:
    ComponentMerge(const char* text, const ItemText& span, bool lfOnly)
        : m_text(text), m_span(span), m_lfOnly(lfOnly) {}

    void Run(icalcomponent* original, icalcomponent* device, icalcomponent* base, bool preferDevice,
             MergedItem& item, std::string& replacement);

  private:
    void KeepParams(const std::string& name, const Named* original, std::size_t deviceCount,
                    icalproperty* property);
    std::string Fitted(std::string text) const {
        if (!m_lfOnly) return text;
        std::string out;
        out.reserve(text.size());
        for (char c : text) {
            if (c != '\r') out += c;
        }
        return out;
    }
    void Replace(const std::string& name, std::string text) {
        for (auto& r : m_replaced) {
            if (r.first == name) {
                r.second = Fitted(std::move(text));
                return;
            }
        }
        m_replaced.emplace_back(name, Fitted(std::move(text)));
    }
    std::string Splice() const;

    const char* m_text;
    const ItemText& m_span;
    bool m_lfOnly;
    std::vector<ContentLine> m_own;  // the component's own property lines
    std::vector<std::pair<std::string, std::string>> m_replaced;
};

// Parameters of an original property that the item has no place for (the
// import of the original did not bring them back) stay on the property the
// item brings, when it is the same one (the same attendee, say).
void ComponentMerge::KeepParams(const std::string& name, const Named* original,
                                std::size_t deviceCount, icalproperty* property) {
    std::vector<PropertyPtr> lines;
    std::vector<icalproperty*> parsed;
    for (const ContentLine& line : m_own) {
        if (line.name != name) continue;
        icalproperty* p = icalproperty_new_from_string(Unfold(m_text, line).c_str());
        if (p == nullptr) continue;
        lines.emplace_back(p);
        parsed.push_back(p);
    }
    if (parsed.empty()) return;
    const std::string value = WrittenValue(property);
    icalproperty* source = Counterpart(parsed, deviceCount, value);
    if (source == nullptr) return;
    // Which parameters the item carried is told by the original's own
    // property as the import brought it back; without it, nothing is added.
    if (original == nullptr) return;
    const bool pairwise = original->props.size() == parsed.size();
    icalproperty* carried = Counterpart(original->props, pairwise ? deviceCount : 0, value);
    if (carried == nullptr) return;
    for (icalparameter* p = icalproperty_get_first_parameter(source, ICAL_ANY_PARAMETER);
         p != nullptr; p = icalproperty_get_next_parameter(source, ICAL_ANY_PARAMETER)) {
        // The value type follows from the value the item brings.
        if (icalparameter_isa(p) == ICAL_VALUE_PARAMETER) continue;
        const char* pname = ParamNameOf(p);
        if (HasParam(carried, pname) || HasParam(property, pname)) continue;
        icalproperty_add_parameter(property, icalparameter_new_clone(p));
    }
}

void ComponentMerge::Run(icalcomponent* original, icalcomponent* device, icalcomponent* base,
                         bool preferDevice, MergedItem& item, std::string& replacement) {
    const PropertySet a = PropertiesOf(original);
    const PropertySet b = PropertiesOf(device);
    const PropertySet c = base != nullptr ? PropertiesOf(base) : PropertySet();
    const PropertySet& sent = base != nullptr ? c : a;
    std::vector<std::string> names;
    for (const PropertySet* set : {&a, &b, &sent}) {
        for (const Named& n : *set) {
            if (std::find(names.begin(), names.end(), n.name) == names.end())
                names.push_back(n.name);
        }
    }
    const std::string none;
    std::vector<std::string> taken;
    for (const std::string& name : names) {
        const Named* na = Find(a, name);
        const Named* nb = Find(b, name);
        const Named* nc = Find(sent, name);
        const std::string& ta = na != nullptr ? na->text : none;
        const std::string& tb = nb != nullptr ? nb->text : none;
        const std::string& tc = nc != nullptr ? nc->text : none;
        const MergeDecision d = Decide(tb != tc, ta != tc, ta == tb, preferDevice);
        if (d.conflict) item.conflicts.push_back(Conflict{name, d.takeDevice});
        if (!d.takeDevice) continue;
        taken.push_back(name);
        item.changes.push_back(PropertyChange{name, na == nullptr ? PropertyChange::Kind::Added
                                                    : nb == nullptr
                                                        ? PropertyChange::Kind::Removed
                                                        : PropertyChange::Kind::Changed});
    }
    if (taken.empty()) {
        item.outcome = MergedItem::Outcome::Unchanged;
        return;
    }
    item.outcome = MergedItem::Outcome::Changed;
    const std::size_t size = m_span.end;
    for (std::size_t pos = m_span.begin, depth = 0; pos < size;) {
        ContentLine line = ReadLine(m_text, size, pos);
        pos = line.end;
        if (line.name == "BEGIN") {
            ++depth;
        } else if (line.name == "END") {
            --depth;
        } else if (depth == 1) {
            m_own.push_back(std::move(line));
        }
        if (depth == 0) break;
    }
    for (const std::string& name : taken) {
        std::string text;
        if (const Named* nb = Find(b, name)) {
            for (icalproperty* p : nb->props) {
                KeepParams(name, Find(a, name), nb->props.size(), p);
                text += Written(p);
            }
        }
        Replace(name, std::move(text));
    }
    // A changed item was modified now; a changed time or status is a revision
    // attendees must see, so its sequence number goes up unless the device
    // set one itself.
    const icaltimetype now =
        icaltime_from_timet_with_zone(Now(), 0, icaltimezone_get_utc_timezone());
    PropertyPtr stamp(icalproperty_new_dtstamp(now));
    Replace("DTSTAMP", Written(stamp.get()));
    PropertyPtr modified(icalproperty_new_lastmodified(now));
    Replace("LAST-MODIFIED", Written(modified.get()));
    const auto took = [&taken](const char* name) {
        return std::find(taken.begin(), taken.end(), name) != taken.end();
    };
    if (!took("SEQUENCE") &&
        (took("DTSTART") || took("DTEND") || took("DUE") || took("DURATION") || took("STATUS"))) {
        const Named* seq = Find(a, "SEQUENCE");
        const int next = seq != nullptr ? icalproperty_get_sequence(seq->props[0]) + 1 : 1;
        PropertyPtr sequence(icalproperty_new_sequence(next));
        Replace("SEQUENCE", Written(sequence.get()));
    }
    replacement = Splice();
}

// The component's text with the replaced names' lines in place of the
// first of the original's lines of that name; names the original did not
// have go after its last property, before any sub-component.
std::string ComponentMerge::Splice() const {
    std::string out;
    out.reserve(m_span.end - m_span.begin + 256);
    std::vector<bool> written(m_replaced.size(), false);
    const auto rest = [&] {
        for (std::size_t i = 0; i < m_replaced.size(); ++i) {
            if (!written[i]) out += m_replaced[i].second;
            written[i] = true;
        }
    };
    std::size_t depth = 0;
    bool restWritten = false;
    for (std::size_t pos = m_span.begin; pos < m_span.end;) {
        const ContentLine line = ReadLine(m_text, m_span.end, pos);
        pos = line.end;
        const bool begin = line.name == "BEGIN";
        if (begin || line.name == "END") {
            if (depth == 1 && !restWritten) {
                rest();
                restWritten = true;
            }
            depth = begin ? depth + 1 : depth - 1;
        } else if (depth == 1) {
            const auto found = std::find_if(m_replaced.begin(), m_replaced.end(),
                                            [&](const auto& r) { return r.first == line.name; });
            if (found != m_replaced.end()) {
                const std::size_t i = static_cast<std::size_t>(found - m_replaced.begin());
                if (!written[i]) out += found->second;
                written[i] = true;
                continue;
            }
        }
        out.append(m_text + line.begin, line.end - line.begin);
    }
    if (!restWritten) rest();
    return out;
}

struct Edit {
    std::size_t begin;
    std::size_t end;
    std::string text;
};

}  // namespace

MergeResult MergeICalendar(const char* original, std::size_t originalSize, const std::uint8_t* data,
                           std::size_t size, const MergeOptions& options) {
    MergeResult result;
    if (original == nullptr) originalSize = 0;
    if (data == nullptr) size = 0;
    Side server;
    if (!server.Load(original, originalSize, "the original", result)) return result;
    Side base;
    const bool threeWay = options.base != nullptr;
    if (threeWay && !base.Load(options.base, options.baseSize, "the base", result)) return result;

    std::vector<ItemSpan> spans;
    std::string why;
    const bool cut = ForEachItem(
        data, size,
        [&](const ItemSpan& span) {
            if (ItemKindName(span) == nullptr) {
                why = "item at offset " + std::to_string(span.offset) +
                      " is no event, task or note (root node " + std::to_string(span.frame.root) +
                      "), which is all iCalendar holds";
                return false;
            }
            spans.push_back(span);
            return true;
        },
        why);
    if (!cut || !why.empty()) {
        result.error = why;
        return result;
    }

    const std::vector<std::string> zones = DefinedZones(original, originalSize);
    std::vector<Edit> edits;
    std::string added;
    // Zones the added items name that the original defines no VTIMEZONE
    // for: written from the time-zone database as a plain export writes
    // them (one it does not know stays in the item's losses). A changed
    // item keeps the original's form, with or without its zones' VTIMEZONEs.
    std::vector<UsedZone> newZones;
    const auto useZones = [&zones, &newZones](const std::vector<UsedZone>& used) {
        for (const UsedZone& z : used) {
            const auto same = [&z](const UsedZone& n) { return n.tzid == z.tzid; };
            if (z.zone != nullptr && std::find(zones.begin(), zones.end(), z.tzid) == zones.end() &&
                std::none_of(newZones.begin(), newZones.end(), same))
                newZones.push_back(z);
        }
    };
    result.items.reserve(spans.size());
    for (const ItemSpan& span : spans) {
        MergedItem item;
        item.kind = ItemKindName(span);
        item.offset = span.offset;
        const std::string_view stream(reinterpret_cast<const char*>(data) + span.offset, span.size);
        const std::size_t same = server.Identical(stream);
        if (same != kNone) {
            server.matcher.Claim(same);
            item.uid = server.map.items[same].uid;
            item.instance = static_cast<unsigned int>(same);
            result.items.push_back(std::move(item));
            continue;
        }
        ExportedItem exported;
        BuiltItem device = BuildItem(data, span, false, exported);
        item.malformed = exported.malformed;
        item.diagnostics = std::move(exported.diagnostics);
        item.losses = std::move(exported.losses);
        // A zone the database does not know is no loss where the original
        // defines it: its VTIMEZONE stays.
        item.losses.erase(
            std::remove_if(item.losses.begin(), item.losses.end(),
                           [&](const Loss& loss) {
                               static const std::string kZone = "VTIMEZONE of TZID ";
                               return loss.name.compare(0, kZone.size(), kZone) == 0 &&
                                      std::find(zones.begin(), zones.end(),
                                                loss.name.substr(kZone.size())) != zones.end();
                           }),
            item.losses.end());
        item.instance = device.instance;
        if (const char* uid = icalcomponent_get_uid(device.component.get())) item.uid = uid;
        if (item.malformed) {
            Fail(item, "its stream is malformed; the original is left as it was");
            result.items.push_back(std::move(item));
            continue;
        }
        const std::size_t k = server.matcher.Match(item.uid, item.instance);
        if (k == kNone) {
            if (server.map.calendarEnd == kNone) {
                Fail(item, "no counterpart, and the original has no VCALENDAR to add it to");
            } else {
                ExportedItem plain;
                BuiltItem written = BuildItem(data, span, true, plain);
                char* text = icalcomponent_as_ical_string_r(written.component.get());
                std::string component = text != nullptr ? text : "";
                std::free(text);
                if (server.map.lfOnly) {
                    component.erase(std::remove(component.begin(), component.end(), '\r'),
                                    component.end());
                }
                added += component;
                useZones(written.zones);
                item.outcome = MergedItem::Outcome::Added;
            }
            result.items.push_back(std::move(item));
            continue;
        }
        const ItemText& target = server.map.items[k];
        if (std::strcmp(target.kind, item.kind.c_str()) != 0) {
            Fail(item, "its UID belongs to a " + std::string(target.kind) +
                           " of the original; the original is left as it was");
            result.items.push_back(std::move(item));
            continue;
        }
        const BuiltItem counterpart = server.Build(k);
        BuiltItem sent;
        if (threeWay) {
            const std::size_t b = base.matcher.Match(item.uid, item.instance);
            if (b != kNone) sent = base.Build(b);
        }
        std::string replacement;
        ComponentMerge merge(original, target, server.map.lfOnly);
        merge.Run(counterpart.component.get(), device.component.get(), sent.component.get(),
                  options.preferDevice, item, replacement);
        if (item.outcome == MergedItem::Outcome::Changed) {
            edits.push_back(Edit{target.begin, target.end, std::move(replacement)});
        }
        result.items.push_back(std::move(item));
    }

    result.ok = true;
    if (edits.empty() && added.empty()) {
        result.text.assign(original, originalSize);
        return result;
    }
    std::string defined = ZoneDefinitions(newZones);
    if (server.map.lfOnly)
        defined.erase(std::remove(defined.begin(), defined.end(), '\r'), defined.end());
    added.insert(0, defined);
    if (!added.empty()) {
        edits.push_back(Edit{server.map.calendarEnd, server.map.calendarEnd, std::move(added)});
    }
    std::stable_sort(edits.begin(), edits.end(),
                     [](const Edit& x, const Edit& y) { return x.begin < y.begin; });
    result.text.reserve(originalSize + originalSize / 8);
    std::size_t pos = 0;
    for (const Edit& e : edits) {
        if (e.begin < pos) {
            // Components that overlap in the text: nothing is placed.
            result = MergeResult();
            result.error = "the original: its components overlap, nothing can be placed in it";
            return result;
        }
        result.text.append(original + pos, e.begin - pos).append(e.text);
        pos = e.end;
    }
    result.text.append(original + pos, originalSize - pos);
    return result;
}

}  // namespace PimBridge
