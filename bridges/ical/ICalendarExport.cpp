// Item streams to iCalendar text. Each item's parser replays it to a
// receiver that turns every call into a libical property through the mapping
// table; libical writes the VCALENDAR (line folding, escaping, quoting).

#include <strings.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "ICalendarBridge.h"
#include "bridges/common/Clock.h"
#include "bridges/common/ItemStreams.h"
#include "bridges/common/LossCollector.h"
#include "private/ICalendarItems.h"
#include "private/ICalendarMapping.h"

namespace PimBridge {

using namespace Ical;

namespace {

using XParams = PAL::TVector<PimShared::tXParam>;

// Written when no item names a product.
constexpr const char* kOwnProductId = "-//pimtlv//pimtlv iCalendar bridge//EN";

// The calendar's PRODID or VERSION: the first item's that has one; an item
// with another one loses its own.
struct CalendarText {
    icalproperty_kind kind;
    bool set = false;
    std::string text;
    std::vector<std::pair<std::string, std::string>> xParams;

    bool Same(const char* t, const XParams& x) const {
        if (text != (t != nullptr ? t : "") || xParams.size() != x.size()) return false;
        for (unsigned int i = 0; i < x.size(); ++i) {
            const PimShared::tXParam& p = *x.at(i);
            if (xParams[i].first != (p.name ? p.name : "") ||
                xParams[i].second != (p.value ? p.value : "")) {
                return false;
            }
        }
        return true;
    }
};

// Texts that libical writes as they are (parameter values, addresses,
// enumerated values) must stay on one line: a line break in them would end
// the line early and let the rest read as lines of their own.
bool OneLine(const char* text) {
    for (const char* p = text; *p != '\0'; ++p) {
        const unsigned char c = static_cast<unsigned char>(*p);
        if ((c < 0x20 && c != '\t') || c == 0x7F) return false;
    }
    return true;
}

bool IsName(const char* name) {
    if (name[0] == '\0') return false;
    for (const char* p = name; *p != '\0'; ++p) {
        if (!IsNameChar(*p)) return false;
    }
    return true;
}

icalparameter* ParamOfKind(icalparameter_kind kind, const char* value) {
    return OneLine(value) ? icalparameter_new_from_value_string(kind, value) : nullptr;
}

// A text value for libical, which writes a LF as "\n" but drops a CR: a CR
// not followed by a LF is a line break of its own, and goes as a LF.
icalvalue* NewText(const char* text) {
    if (std::strchr(text, '\r') == nullptr) return icalvalue_new_text(text);
    std::string breaks;
    for (const char* p = text; *p != '\0'; ++p) {
        if (*p != '\r') {
            breaks += *p;
        } else if (p[1] != '\n') {
            breaks += '\n';
        }
    }
    return icalvalue_new_text(breaks.c_str());
}

// Null for a name or value that cannot be written as a parameter.
icalparameter* MakeParam(const char* name, const char* value) {
    if (!IsName(name) || !OneLine(value)) return nullptr;
    const icalparameter_kind kind = icalparameter_string_to_kind(name);
    icalparameter* param = nullptr;
    if (kind == ICAL_X_PARAMETER || kind == ICAL_NO_PARAMETER || kind == ICAL_IANA_PARAMETER) {
        const bool x = strncasecmp(name, "X-", 2) == 0;
        param = x ? icalparameter_new_x(value) : icalparameter_new_iana(value);
        if (param != nullptr) {
            if (x) {
                icalparameter_set_xname(param, name);
            } else {
                icalparameter_set_iana_name(param, name);
            }
        }
    } else {
        param = icalparameter_new_from_value_string(kind, value);
    }
    return param;
}

// Builds the component of one item from the parser's calls.
class ComponentWriter {
  public:
    // A position that takes any instance number as its own.
    static constexpr std::size_t kAnyPosition = static_cast<std::size_t>(-1);

    ComponentWriter(CalendarText& prodid, CalendarText& version, std::time_t now)
        : m_prodid(prodid), m_version(version), m_now(now) {}

    // The next item goes into component; what it says and loses into item.
    void Start(icalcomponent* component, ExportedItem& item, std::size_t position) {
        m_component = component;
        m_item = &item;
        m_position = position;
        m_created = icaltime_null_time();
        m_modified = icaltime_null_time();
    }
    bool Begin(unsigned int instance) {
        m_instance = instance;
        if (m_position != kAnyPosition && instance != m_position) {
            m_losses.Add("instance number", 0);
        }
        return true;
    }
    unsigned int Instance() const { return m_instance; }
    // The property of row from an operation's values; local: the operation
    // was the row's localOp.
    bool Put(const PropertyRow& row, bool local, const PropertyValues& v);
    void Unplaced(const char* what) { m_losses.Add(what, 0); }
    bool Trace(int code, const char* text) {
        if (code != 0) m_item->diagnostics.push_back(Diagnostic{code, text != nullptr ? text : ""});
        return true;
    }
    std::vector<Loss> TakeLosses() { return m_losses.Take(); }
    // The zones the items' times named, in order of first use.
    const std::vector<UsedZone>& Zones() const { return m_zones; }
    // RFC 5545 wants a DTSTAMP in every event, task and note, which the
    // items do not carry; the import notes it as written anew by rule. A
    // calendar without METHOD, as this one, stamps each component with the
    // time its information was last revised: the item's last modification,
    // else its creation (so that the same item gives the same text), else,
    // having no revision time at all, the time of the export (from
    // PimBridge::Now, which SOURCE_DATE_EPOCH can fix). All in UTC.
    void AddStamp() {
        icaltimetype stamp = m_modified.year != 0 ? m_modified
                             : m_created.year != 0
                                 ? m_created
                                 : icaltime_from_timet_with_zone(m_now, 0, nullptr);
        stamp.is_date = 0;
        stamp.zone = icaltimezone_get_utc_timezone();
        icalcomponent_add_property(m_component, icalproperty_new_dtstamp(stamp));
    }

  private:
    bool PutCalendarText(CalendarText& target, const PropertyValues& v);
    icalvalue* MakeValue(const PropertyRow& row, bool local, const PropertyValues& v,
                         icalproperty* property);
    void AddParams(const PropertyRow& row, const PropertyValues& v, icalproperty* property);
    void UseZone(const char* tzid);

    CalendarText& m_prodid;
    CalendarText& m_version;
    icalcomponent* m_component = nullptr;
    ExportedItem* m_item = nullptr;
    LossCollector m_losses;
    std::size_t m_position = 0;
    unsigned int m_instance = 0;
    icaltimetype m_created = icaltime_null_time();
    icaltimetype m_modified = icaltime_null_time();
    std::time_t m_now;
    std::vector<UsedZone> m_zones;
    std::unordered_map<std::string, std::size_t> m_zoneIndex;  // into m_zones, by TZID
};

// Notes a zone for its VTIMEZONE; one the time-zone database does not know
// has no definition to write, which each item that names it reports.
void ComponentWriter::UseZone(const char* tzid) {
    const auto found = m_zoneIndex.emplace(tzid, m_zones.size());
    if (found.second) {
        icaltimezone* zone = KnownZone(tzid);
        // libical's UTC, say, is known but has no definition to write.
        if (zone != nullptr && icaltimezone_get_component(zone) == nullptr) zone = nullptr;
        m_zones.push_back(UsedZone{tzid, zone});
    }
    if (m_zones[found.first->second].zone == nullptr) {
        m_losses.Add(std::string("VTIMEZONE of TZID ") + tzid, 0, Loss::Kind::NotCarried,
                     "not in the time-zone database");
    }
}

bool ComponentWriter::PutCalendarText(CalendarText& target, const PropertyValues& v) {
    const XParams& x = *v.xParams;
    if (!target.set) {
        target.set = true;
        target.text = v.text[0] != nullptr ? v.text[0] : "";
        for (const PimShared::tXParam& p : x) {
            target.xParams.emplace_back(p.name ? p.name : "", p.value ? p.value : "");
        }
    } else if (!target.Same(v.text[0], x)) {
        m_losses.Add(icalproperty_kind_to_string(target.kind), 0);
    }
    return true;
}

// The name of a date-time's marker parameter, as the import wrote it.
bool IsMarker(const PimShared::tXParam& p, bool zoneArgument) {
    if (p.name == nullptr) return true;
    return std::strcmp(p.name, kTimeMarker) == 0 || std::strcmp(p.name, kValueParam) == 0 ||
           (!zoneArgument && std::strcmp(p.name, kTzidParam) == 0);
}

const char* Find(const XParams& x, const char* name) {
    for (const PimShared::tXParam& p : x) {
        if (p.name != nullptr && std::strcmp(p.name, name) == 0) return p.value;
    }
    return nullptr;
}

icalvalue* ComponentWriter::MakeValue(const PropertyRow& row, bool local, const PropertyValues& v,
                                      icalproperty* property) {
    switch (row.shape) {
        case eShape::Byte:
        case eShape::Word:
            return icalvalue_new_integer(static_cast<int>(v.number));
        case eShape::DateTime: {
            const XParams& x = *v.xParams;
            const bool zoned = row.zoneArgument && !local;
            const char* tzid = zoned ? v.zone : Find(x, kTzidParam);
            const char* marker = Find(x, kTimeMarker);
            const char* type = Find(x, kValueParam);
            const bool date = type != nullptr && std::strcmp(type, kValueDate) == 0;
            eForm form = eForm::Utc;
            if (tzid != nullptr) {
                form = eForm::Zoned;
            } else if (local) {
                form = marker != nullptr && std::strcmp(marker, kTimeUtc) == 0 ? eForm::Utc
                                                                               : eForm::Floating;
            } else if (!zoned && marker != nullptr && std::strcmp(marker, kTimeFloating) == 0) {
                form = eForm::Floating;
            }
            const PAL::CDateAndTime& dt = *v.dateTime;
            icaltimetype t = icaltime_null_time();
            t.year = static_cast<int>(dt.getYear());
            t.month = static_cast<int>(dt.getMonth());
            t.day = static_cast<int>(dt.getDay());
            t.is_date = date ? 1 : 0;
            if (!date) {
                t.hour = static_cast<int>(dt.getHour());
                t.minute = static_cast<int>(dt.getMinute());
                t.second = static_cast<int>(dt.getSecond());
                if (form == eForm::Utc) t.zone = icaltimezone_get_utc_timezone();
            }
            if (form == eForm::Zoned) {
                if (OneLine(tzid)) {
                    icalproperty_add_parameter(property, icalparameter_new_tzid(tzid));
                    UseZone(tzid);
                } else {
                    m_losses.Add(std::string(icalproperty_kind_to_string(row.kind)) + ";TZID", 0);
                }
            }
            // A zoned revision time is stamped as the same instant in UTC.
            const bool modified = row.kind == ICAL_LASTMODIFIED_PROPERTY;
            if (modified || row.kind == ICAL_CREATED_PROPERTY) {
                icaltimetype instant = t;
                icaltimezone* zone = form == eForm::Zoned ? KnownZone(tzid) : nullptr;
                if (zone != nullptr && !date) {
                    icaltimezone_convert_time(&instant, zone, icaltimezone_get_utc_timezone());
                }
                (modified ? m_modified : m_created) = instant;
            }
            icalvalue* value = icalvalue_new_datetime(t);
            if (value != nullptr && date) icalvalue_free(value), value = icalvalue_new_date(t);
            return value;
        }
        case eShape::Categories: {
            // libical writes the values of one CATEGORIES line apart by
            // commas and reads them back as one property each; it has no way
            // to write a comma inside a category, which then comes back as
            // two.
            std::string joined;
            if (v.list[0] != nullptr) {
                for (const char* c : *v.list[0]) {
                    if (!joined.empty()) joined += ',';
                    joined += c != nullptr ? c : "";
                    if (c != nullptr && std::strchr(c, ',') != nullptr) {
                        m_losses.Add("comma inside a category", 0);
                    }
                }
            }
            return NewText(joined.c_str());
        }
        default: {
            const char* text = v.text[0] != nullptr ? v.text[0] : "";
            const icalvalue_kind kind = icalproperty_kind_to_value_kind(row.kind);
            if (kind == ICAL_TEXT_VALUE) return NewText(text);
            return OneLine(text) ? icalvalue_new_from_string(kind, text) : nullptr;
        }
    }
}

void ComponentWriter::AddParams(const PropertyRow& row, const PropertyValues& v,
                                icalproperty* property) {
    const auto name = [&row] { return std::string(icalproperty_kind_to_string(row.kind)); };
    const auto add = [&](icalparameter* param, icalparameter_kind kind, const char* xName) {
        if (param != nullptr) {
            icalproperty_add_parameter(property, param);
        } else {
            m_losses.Add(
                name() + ";" + (xName != nullptr ? xName : icalparameter_kind_to_string(kind)), 0);
        }
    };
    std::size_t count = 0;
    const ParamSlot* slots = ParamSlots(row.shape, count);
    for (std::size_t s = 0; s < count; ++s) {
        const ParamSlot& slot = slots[s];
        if (slot.list >= 0) {
            if (v.list[slot.list] == nullptr) continue;
            for (const char* entry : *v.list[slot.list]) {
                add(ParamOfKind(slot.kind, entry ? entry : ""), slot.kind, nullptr);
            }
        } else if (slot.text == kRsvpSlot) {
            if (v.rsvp == PimShared::eRsvpNotGiven) continue;
            add(icalparameter_new_rsvp(v.rsvp == PimShared::eRsvpFalse ? ICAL_RSVP_FALSE
                                                                       : ICAL_RSVP_TRUE),
                slot.kind, nullptr);
        } else if (v.text[slot.text] != nullptr) {
            add(ParamOfKind(slot.kind, v.text[slot.text]), slot.kind, nullptr);
        }
    }
    const bool dateTime = row.shape == eShape::DateTime;
    for (const PimShared::tXParam& p : *v.xParams) {
        if (dateTime && IsMarker(p, row.zoneArgument)) continue;
        if (p.name == nullptr || !IsName(p.name)) {
            m_losses.Add(name() + " parameter with an unwritable name", 0);
            continue;
        }
        add(MakeParam(p.name, p.value != nullptr ? p.value : ""), ICAL_X_PARAMETER, p.name);
    }
}

bool ComponentWriter::Put(const PropertyRow& row, bool local, const PropertyValues& v) {
    if (row.kind == ICAL_PRODID_PROPERTY) return PutCalendarText(m_prodid, v);
    if (row.kind == ICAL_VERSION_PROPERTY) return PutCalendarText(m_version, v);
    icalproperty* property = icalproperty_new(row.kind);
    if (property == nullptr) return true;
    icalvalue* value = MakeValue(row, local, v, property);
    if (value == nullptr) {
        icalproperty_free(property);
        m_losses.Add(icalproperty_kind_to_string(row.kind), 0);
        return true;
    }
    icalproperty_set_value(property, value);
    AddParams(row, v, property);
    icalcomponent_add_property(m_component, property);
    return true;
}

// Where the parsers' calls go: each operation a row names becomes its
// property; any other, and every operation an item gains, is reported as
// not carried, by its name.
class ComponentSink {
  public:
    explicit ComponentSink(ComponentWriter& out) : m_out(out) {}

    template <typename Op, typename... A>
    bool Call(const A&... args) {
        constexpr std::size_t row = RowOfOp(Op::kName);
        if constexpr (SameName(Op::kName, "Begin")) {
            return m_out.Begin(args...);
        } else if constexpr (SameName(Op::kName, "End")) {
            return true;
        } else if constexpr (row == kRowCount) {
            m_out.Unplaced(LossName(Op::kName));
            return true;
        } else {
            return m_out.Put(kRows[row], SameName(kRows[row].localOp, Op::kName),
                             Pack<Op>(args...));
        }
    }
    bool Trace(const int& code, const char* text) { return m_out.Trace(code, text); }

  private:
    // The names losses of these operations have always had.
    static const char* LossName(const char* op) {
        if (SameName(op, "SendStatus")) return "send status";
        if (SameName(op, "InstanceName")) return "instance name";
        return op;
    }

    ComponentWriter& m_out;
};

// The three receivers, made once for the whole export; a parser per item,
// so that nothing one item left half-read (a task parser keeps an extension
// parameter's name waiting for its value) reaches the next.
class ItemReaders {
  public:
    explicit ItemReaders(ComponentWriter& writer)
        : m_sink(writer), m_event(m_sink), m_task(m_sink), m_note(m_sink) {}

    bool Parse(eItem item, const std::uint8_t* data, std::size_t size) {
        if (size > UINT_MAX) return false;
        const unsigned int length = static_cast<unsigned int>(size);
        if (item == kEvent) return Run<PimShared::CTLVCalendarParser>(m_event, data, length);
        if (item == kTask) return Run<PimShared::CTLVTaskParser>(m_task, data, length);
        return Run<PimShared::CTLVNoteParser>(m_note, data, length);
    }

  private:
    template <typename Parser, typename Receiver>
    static bool Run(Receiver& receiver, const std::uint8_t* data, unsigned int length) {
        Parser parser(receiver);
        const char* errorText = nullptr;
        unsigned int consumed = 0;
        return parser.Parse(data, length, errorText, consumed);
    }

    ComponentSink m_sink;
    PimShared::EventItem::ReceiverFor<ComponentSink> m_event;
    PimShared::TaskItem::ReceiverFor<ComponentSink> m_task;
    PimShared::NoteItem::ReceiverFor<ComponentSink> m_note;
};

struct ItemForm {
    ItemKind item;
    icalcomponent_kind kind;
    const char* name;
    eItem reader;
};
const ItemForm kForms[] = {
    {ItemKind::Event, ICAL_VEVENT_COMPONENT, "event", kEvent},
    {ItemKind::Task, ICAL_VTODO_COMPONENT, "task", kTask},
    {ItemKind::Note, ICAL_VJOURNAL_COMPONENT, "note", kNote},
};

const ItemForm* FormOf(const ItemSpan& span) {
    const ItemKind kind = KindOf(span);
    for (const ItemForm& f : kForms) {
        if (f.item == kind) return &f;
    }
    return nullptr;
}

void AddCalendarText(icalcomponent* calendar, const CalendarText& t, const char* fallback) {
    icalproperty* p = icalproperty_new(t.kind);
    icalproperty_set_value(p, NewText(t.set ? t.text.c_str() : fallback));
    for (const auto& x : t.xParams) {
        if (icalparameter* param = MakeParam(x.first.c_str(), x.second.c_str())) {
            icalproperty_add_parameter(p, param);
        }
    }
    icalcomponent_add_property(calendar, p);
}

}  // namespace

namespace Ical {

// A VTIMEZONE for every zone the items name that the time-zone database
// knows, from its definition there, under the very TZID the items use.
std::string ZoneDefinitions(const std::vector<UsedZone>& zones) {
    std::string text;
    for (const UsedZone& used : zones) {
        icalcomponent* own = used.zone != nullptr ? icaltimezone_get_component(used.zone) : nullptr;
        if (own == nullptr) continue;
        ComponentPtr copy(icalcomponent_new_clone(own));
        icalproperty* tzid = icalcomponent_get_first_property(copy.get(), ICAL_TZID_PROPERTY);
        if (tzid == nullptr) continue;
        icalproperty_set_tzid(tzid, used.tzid.c_str());
        char* written = icalcomponent_as_ical_string_r(copy.get());
        if (written != nullptr) text += written;
        std::free(written);
    }
    return text;
}

const char* ItemKindName(const ItemSpan& span) {
    const ItemForm* form = FormOf(span);
    return form != nullptr ? form->name : nullptr;
}

BuiltItem BuildItem(const std::uint8_t* data, const ItemSpan& span, bool stamp,
                    ExportedItem& item) {
    BuiltItem built;
    const ItemForm* form = FormOf(span);
    if (form == nullptr) return built;
    CalendarText prodid{ICAL_PRODID_PROPERTY, false, {}, {}};
    CalendarText version{ICAL_VERSION_PROPERTY, false, {}, {}};
    ComponentWriter writer(prodid, version, Now());
    ItemReaders readers(writer);
    item.kind = form->name;
    item.offset = span.offset;
    built.kind = form->name;
    built.component.reset(icalcomponent_new(form->kind));
    writer.Start(built.component.get(), item, ComponentWriter::kAnyPosition);
    item.malformed = !readers.Parse(form->reader, data + span.offset, span.size);
    if (stamp) writer.AddStamp();
    item.losses = writer.TakeLosses();
    built.instance = writer.Instance();
    built.zones = writer.Zones();
    return built;
}

}  // namespace Ical

ExportResult ExportICalendar(const std::uint8_t* data, std::size_t size) {
    ExportResult result;
    if (data == nullptr) size = 0;
    // The cut first, so that a file with anything but events, tasks and
    // notes writes nothing.
    std::vector<std::pair<ItemSpan, const ItemForm*>> spans;
    std::string why;
    const bool cut = ForEachItem(
        data, size,
        [&](const ItemSpan& span) {
            const ItemForm* form = FormOf(span);
            if (form == nullptr) {
                why = "item at offset " + std::to_string(span.offset) +
                      " is no event, task or note (root node " + std::to_string(span.frame.root) +
                      "), which is all iCalendar holds";
                return false;
            }
            spans.emplace_back(span, form);
            return true;
        },
        why);
    if (!cut || !why.empty()) {
        result.error = why;
        return result;
    }
    // An iCalendar object holds at least one component: an empty VCALENDAR
    // is refused by readers (this bridge's import among them).
    if (spans.empty()) {
        result.error = "no event, task or note to write, and a calendar needs at least one";
        return result;
    }
    // Each item's component is written by libical as soon as it is built
    // and freed at once: one small tree at a time, never the whole calendar.
    CalendarText prodid{ICAL_PRODID_PROPERTY, false, {}, {}};
    CalendarText version{ICAL_VERSION_PROPERTY, false, {}, {}};
    ComponentWriter writer(prodid, version, Now());
    ItemReaders readers(writer);
    result.items.reserve(spans.size());
    std::string body;
    body.reserve(size * 2);  // text runs about 1.5 times the streams' size
    for (std::size_t i = 0; i < spans.size(); ++i) {
        const ItemSpan& span = spans[i].first;
        const ItemForm& form = *spans[i].second;
        ExportedItem item;
        item.kind = form.name;
        item.offset = span.offset;
        ComponentPtr component(icalcomponent_new(form.kind));
        writer.Start(component.get(), item, i);
        item.malformed = !readers.Parse(form.reader, data + span.offset, span.size);
        writer.AddStamp();
        item.losses = writer.TakeLosses();
        result.items.push_back(std::move(item));
        char* text = icalcomponent_as_ical_string_r(component.get());
        if (text == nullptr) {
            result.error = "libical could not write the " + std::string(form.name) + " at offset " +
                           std::to_string(span.offset);
            result.items.clear();
            return result;
        }
        body += text;
        std::free(text);
    }
    // The calendar around them, as libical writes it without components.
    ComponentPtr calendar(icalcomponent_new(ICAL_VCALENDAR_COMPONENT));
    AddCalendarText(calendar.get(), prodid, kOwnProductId);
    AddCalendarText(calendar.get(), version, "2.0");
    char* frame = icalcomponent_as_ical_string_r(calendar.get());
    const std::string shell = frame != nullptr ? frame : "";
    std::free(frame);
    const std::size_t end = shell.rfind("END:VCALENDAR");
    if (end == std::string::npos) {
        result.error = "libical could not write the calendar";
        result.items.clear();
        return result;
    }
    const std::string zones = ZoneDefinitions(writer.Zones());
    result.text.reserve(shell.size() + zones.size() + body.size());
    result.text.append(shell, 0, end)
        .append(zones)
        .append(body)
        .append(shell, end, std::string::npos);
    result.ok = true;
    return result;
}

}  // namespace PimBridge
