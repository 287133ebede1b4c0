#include <deque>
#include <string>
#include <vector>

#include "bridges/common/Charset.h"
#include "bridges/common/LossCollector.h"
#include "bridges/vcard/Vcard.h"
#include "bridges/vcard/private/ContentLine.h"
#include "bridges/vcard/private/VcardMap.h"
#include "pimshared/contact/TLVContactCreator.h"

namespace PimBridge {

namespace {

using namespace Vcard;
using namespace std::string_view_literals;
using XParams = PAL::TVector<IContactAttributes::tXParam>;

// A contact is a vCard 3.0 record, whatever the version of the card it came
// from: the version the stream carries is the one export writes.
constexpr const char* kContactVersion = "3.0";

bool StartsWithName(std::string_view text, std::string_view prefix) {
    return text.size() >= prefix.size() && SameName(text.substr(0, prefix.size()), prefix);
}

// A geo: URI of two or three decimal coordinates. Anything else after "geo:"
// is text as it stands, so that such a value reads back as itself.
bool IsGeoUri(std::string_view v) {
    if (!StartsWithName(v, "geo:")) return false;
    v = v.substr(4, v.find(';') == std::string_view::npos ? v.npos : v.find(';') - 4);
    std::size_t coordinates = 0;
    ForEachListItem(v, [&coordinates](std::string_view) { ++coordinates; });
    if (coordinates < 2 || coordinates > 3 || v.front() == ',' || v.back() == ',' ||
        v.find(",,") != std::string_view::npos)
        return false;
    for (char c : v) {
        if (!((c >= '0' && c <= '9') || c == '.' || c == '-' || c == '+' || c == ',')) return false;
    }
    return true;
}

// Each non-empty item of a parameter's values, every value split at its
// commas: TYPE="work,voice" of vCard 4.0 is a list all the same.
template <typename OnValue>
void ForEachListValue(const std::vector<std::string>& values, OnValue&& onValue) {
    for (const std::string& value : values) ForEachListItem(value, onValue);
}

// What the parameters of one property say, once read.
struct Params {
    const char* language = nullptr;
    unsigned int bits = 0;
    bool valueText = false;    // VALUE=text
    bool valueUri = false;     // VALUE=uri or url
    bool valueOffset = false;  // VALUE=utc-offset
    std::string mediaType;
    bool hasMediaType = false;
    XParams xParams;
};

class Importer {
  public:
    Importer(const char* text, std::size_t size) : m_text(text), m_reader(text, size) {}
    ImportResult Run();

  private:
    bool StartCard(const ContentLine& line);
    bool FinishCard();
    void Property(const ContentLine& line);
    void Mapped(const ContentLine& line, const PropertyInfo& info);
    void NonStandard(const ContentLine& line);
    void ReadParams(const ContentLine& line, const PropertyInfo* info);
    void AddXParam(const char* name, const std::vector<std::string>& values);
    bool Media(const ContentLine& line, std::string& uri);
    void Lose(std::string_view property, std::string_view detail = {}) {
        std::string name(property);
        if (!detail.empty()) (name += ';') += detail;
        m_losses.Add(name, m_line);
    }
    void Check(bool ok, const ContentLine& line) {
        if (!ok) Lose(line.name);
    }
    const char* Part(std::size_t i) const {
        return i < m_parts.size() && !m_parts[i].empty() ? m_parts[i].c_str() : nullptr;
    }
    bool AgentCard(std::size_t start, bool keep, std::string& error);
    bool NoParts(std::size_t count) const {
        for (std::size_t i = 0; i < count; ++i) {
            if (Part(i) != nullptr) return false;
        }
        return true;
    }
    // A name, an address or categories without any value keep no parameters.
    void LoseParams(const ContentLine& line) {
        if (m_params.language != nullptr) Lose(line.name, "LANGUAGE");
        for (const IContactAttributes::tXParam& x : m_params.xParams) Lose(line.name, x.name);
    }
    // A comma in a component of N or ADR separates the component's values;
    // an escaped one meant a comma inside a value, which the contact cannot
    // tell from a separator: said as a conversion.
    void CommaValues(const ContentLine& line) {
        for (std::size_t i = 0; i + 1 < line.value.size(); ++i) {
            if (line.value[i] != '\\') continue;
            if (line.value[++i] == ',') {
                m_losses.Add(line.name, line.line, Loss::Kind::Converted,
                             "an escaped comma reads as a separator of values");
                return;
            }
        }
    }
    void TypeValues(const ContentLine& line, const PropertyInfo& info,
                    const std::vector<std::string>& values, std::string& unknown);
    // The value as text: the line's own when nothing is escaped in it.
    const char* Text(const ContentLine& line) {
        if (line.value.find('\\') == std::string::npos) return line.value.c_str();
        Unescape(line.value, m_value);
        return m_value.c_str();
    }

    const char* m_text;
    Reader m_reader;
    ImportResult m_result;
    PimShared::CTLVContactCreator m_creator;
    LossCollector m_losses;
    bool m_inCard = false;
    bool m_agentPending = false;  // an empty AGENT: its card may follow
    bool m_version4 = false;      // the card says VERSION:4.0
    unsigned int m_cardLine = 0;
    unsigned int m_line = 0;
    Params m_params;
    std::deque<std::string> m_joined;  // x-parameter values of the current property (stay put)
    std::vector<std::string> m_parts;
    std::string m_value, m_data;
    PAL::TVector<const char*> m_list;
};

void Importer::AddXParam(const char* name, const std::vector<std::string>& values) {
    std::string& v = m_joined.emplace_back();
    for (const std::string& part : values) {
        if (!v.empty() || &part != &values.front()) v += ',';
        v += part;
    }
    m_params.xParams.pushBack({name, v.c_str()});
}

void Importer::ReadParams(const ContentLine& line, const PropertyInfo* info) {
    m_params.language = nullptr;
    m_params.bits = 0;
    m_params.valueText = m_params.valueUri = m_params.valueOffset = false;
    m_params.mediaType.clear();
    m_params.hasMediaType = false;
    m_params.xParams.clear();
    m_joined.clear();
    const bool xParams = info == nullptr || info->xParams;
    if (!line.group.empty()) {
        // The group prefix (item1.TEL) travels as a parameter of its own name;
        // carried parameters are otherwise all X- ones, so it cannot clash.
        if (xParams) {
            m_params.xParams.pushBack({"GROUP", line.group.c_str()});
        } else {
            Lose(line.name, "GROUP");
        }
    }
    for (const Param& p : line.params) {
        if (p.name == "ENCODING"sv) continue;
        if (p.name == "CHARSET"sv) {
            if (line.badCharset) Lose(line.name, "CHARSET=" + p.values.front());
            continue;
        }
        if (info == nullptr) {  // a non-standard property keeps all its parameters
            AddXParam(p.name.c_str(), p.values);
            continue;
        }
        const bool media = info->shape == Shape::Media || info->shape == Shape::Key;
        if (p.name == "VALUE"sv) {
            m_params.valueText = SameName(p.values.front(), "text");
            m_params.valueUri =
                SameName(p.values.front(), "uri") || SameName(p.values.front(), "url");
            m_params.valueOffset = SameName(p.values.front(), "utc-offset");
        } else if (p.name == "LANGUAGE"sv && info->language) {
            m_params.language = p.values.front().c_str();
        } else if (p.name == "TYPE"sv && info->types != TypeSet::None) {
            // Values without a bit stay together, as one TYPE parameter.
            std::string& unknown = m_joined.emplace_back();
            TypeValues(line, *info, p.values, unknown);
            if (!unknown.empty()) m_params.xParams.pushBack({"TYPE", unknown.c_str()});
        } else if (p.name == "PREF"sv && info->types != TypeSet::None) {
            m_params.bits |= Types(info->types).pref;
        } else if (media && (p.name == "TYPE"sv || p.name == "MEDIATYPE"sv)) {
            if (!m_params.hasMediaType || p.name == "TYPE"sv) {
                m_params.mediaType.clear();
                ForEachListValue(p.values, [this](std::string_view v) {
                    (m_params.mediaType += m_params.mediaType.empty() ? "" : ",") += v;
                });
                m_params.hasMediaType = !m_params.mediaType.empty();  // TYPE= says nothing
            }
        } else if (info->xParams && StartsWithName(p.name, "X-")) {
            AddXParam(p.name.c_str(), p.values);
        } else {
            Lose(line.name, p.name);
        }
    }
}

void Importer::TypeValues(const ContentLine& line, const PropertyInfo& info,
                          const std::vector<std::string>& values, std::string& unknown) {
    const TypeTable& table = Types(info.types);
    ForEachListValue(values, [&](std::string_view v) {
        const unsigned int bit = BitOf(table, v);
        if (bit != 0) {
            m_params.bits |= bit;
        } else if (info.xParams) {
            // A value without a bit (iPhone, main) travels as it stands.
            (unknown += unknown.empty() ? "" : ",") += v;
        } else {
            Lose(line.name, "TYPE=" + std::string(v));
        }
    });
}

// Inline bytes into m_data (true), or the URI or text form into uri (false).
bool Importer::Media(const ContentLine& line, std::string& uri) {
    if (line.base64) {
        if (DecodeBase64(line.value, m_data)) return true;
        Lose(line.name, "ENCODING");
        m_data.clear();
        return true;
    }
    // data:image/png;base64,.... written inline by vCard 4.0
    Unescape(line.value, uri);
    if (StartsWithName(uri, "data:")) {
        const std::size_t comma = uri.find(',');
        const std::string_view head = std::string_view(uri).substr(5, comma - 5);
        const std::size_t b64 = head.rfind(";base64");
        if (comma != std::string::npos && b64 != std::string_view::npos &&
            DecodeBase64(std::string_view(uri).substr(comma + 1), m_data)) {
            if (!m_params.hasMediaType && b64 > 0) {
                m_params.mediaType.assign(head.substr(0, b64));
                m_params.hasMediaType = true;
            }
            return true;
        }
    }
    return false;
}

void Importer::Mapped(const ContentLine& line, const PropertyInfo& info) {
    if (line.base64 && info.shape != Shape::Media && info.shape != Shape::Key) {
        // Base64 on a property of text: old writers meant the text it
        // encodes. Anything else stays as written, and the encoding is named.
        if (DecodeBase64(line.value, m_data) && m_data.find('\0') == std::string::npos &&
            IsUtf8(m_data.data(), m_data.size())) {
            ContentLine decoded = line;
            decoded.value.swap(m_data);
            decoded.base64 = false;
            Mapped(decoded, info);
            return;
        }
        Lose(line.name, "ENCODING");
    }
    ReadParams(line, &info);
    const Params& p = m_params;
    const XParams& x = p.xParams;
    const auto bits8 = static_cast<unsigned char>(p.bits);
    const auto bits16 = static_cast<unsigned short>(p.bits);
    IContactAttributes& c = m_creator;
    switch (info.shape) {
        case Shape::Text:
            Check((c.*info.text)(Text(line), p.language, x), line);
            break;
        case Shape::Plain:
            Check((c.*info.plain)(Text(line)), line);
            break;
        case Shape::Version:
            m_version4 = line.value == "4.0"sv;
            m_reader.Version21(line.value == "2.1"sv);
            break;  // written once, at the start of the contact
        case Shape::Name:
            CommaValues(line);
            SplitUnescaped(line.value, ';', m_parts);
            if (m_parts.size() > 5) Lose(line.name, "COMPONENTS");
            if (NoParts(5)) LoseParams(line);
            Check(c.Name(Part(0), Part(1), Part(2), Part(3), Part(4), p.language, x), line);
            break;
        case Shape::Address:
            CommaValues(line);
            SplitUnescaped(line.value, ';', m_parts);
            if (m_parts.size() > 7) Lose(line.name, "COMPONENTS");
            if (NoParts(7)) LoseParams(line);
            Check(c.Address(Part(0), Part(1), Part(2), Part(3), Part(4), Part(5), Part(6), bits8,
                            p.language, x),
                  line);
            break;
        case Shape::List:
        case Shape::Organization: {
            const bool org = info.shape == Shape::Organization;
            SplitUnescaped(line.value, org ? ';' : ',', m_parts);
            m_list.clear();
            for (std::size_t i = org ? 1 : 0; i < m_parts.size(); ++i) {
                if (org || !m_parts[i].empty()) m_list.pushBack(m_parts[i].c_str());
            }
            if (org) {
                Check(c.Organization(m_parts.front().c_str(), m_list), line);
            } else if (line.name == "NICKNAME"sv) {
                Check(c.Nickname(m_list, p.language, x), line);
            } else {
                if (m_list.isEmpty()) LoseParams(line);
                Check(c.Categories(m_list, p.language, x), line);
            }
            break;
        }
        case Shape::Label:
            Check(c.Label(Text(line), bits8, p.language, x), line);
            break;
        case Shape::Telephone: {
            // A tel: URI carries the number; the URI form travels as VALUE=uri.
            const char* number = Text(line);
            if (p.valueUri) {
                if (StartsWithName(number, "tel:")) number += 4;
                m_params.xParams.pushBack({"VALUE", "uri"});
            }
            Check(c.Telephone(number, bits16, 0, 0, nullptr, x), line);
            break;
        }
        case Shape::Email:
            Check(c.Email(Text(line), bits8), line);
            break;
        case Shape::Media:
        case Shape::Key: {
            m_data.clear();
            const bool isInline = Media(line, m_value);
            const char* uri = isInline ? nullptr : m_value.c_str();
            const void* data = isInline ? m_data.data() : nullptr;
            const auto length = static_cast<unsigned int>(isInline ? m_data.size() : 0);
            const char* type = p.hasMediaType ? p.mediaType.c_str() : nullptr;
            if (info.shape == Shape::Key) {
                Check(c.Key(uri, type, data, length), line);
            } else if (line.name == "SOUND"sv) {
                Check(c.Sound(uri, type, data, length, nullptr, nullptr, nullptr, nullptr, nullptr,
                              nullptr, nullptr),
                      line);
            } else {
                const auto op =
                    line.name == "PHOTO"sv ? &IContactAttributes::Photo : &IContactAttributes::Logo;
                Check((c.*op)(uri, type, data, length, nullptr), line);
            }
            break;
        }
        case Shape::Date:
        case Shape::Timezone:
        case Shape::Agent: {
            const char* v = Text(line);
            bool second = p.valueText;
            // A time zone is a UTC offset unless it says otherwise; in vCard
            // 4.0 it is a text (a zone name) unless it says otherwise.
            if (info.shape == Shape::Timezone)
                second = p.valueText || p.valueUri || (m_version4 && !p.valueOffset);
            if (info.shape == Shape::Agent) second = !p.valueUri;
            Check((c.*info.pair)(second ? nullptr : v, second ? v : nullptr), line);
            break;
        }
        case Shape::Geo: {
            // geo:lat,lon;u=... of vCard 4.0, its comma escaped by some writers.
            Unescape(line.value, m_value);
            if (IsGeoUri(m_value)) {
                std::string_view v(m_value);
                v = v.substr(4, v.find(';') == std::string_view::npos ? v.npos : v.find(';') - 4);
                SplitUnescaped(v, ',', m_parts);
            } else {
                SplitUnescaped(line.value, ';', m_parts);
            }
            if (m_parts.size() > 2) Lose(line.name, "COMPONENTS");
            Check(c.GeographicPosition(Part(0), Part(1)), line);
            break;
        }
    }
}

// Text of a property the contact does not know, as it stands (its structure
// is its owner's), with line breaks in the escaped form of vCard 3.0.
void Importer::NonStandard(const ContentLine& line) {
    ReadParams(line, nullptr);
    IContactAttributes& c = m_creator;
    if (line.base64) {
        if (!DecodeBase64(line.value, m_data)) {
            Lose(line.name, "ENCODING");
            return;
        }
        Check(c.NonStandardProperty(line.name.c_str(), nullptr, m_data.data(),
                                    static_cast<unsigned int>(m_data.size()), m_params.xParams),
              line);
        return;
    }
    m_value.clear();
    for (std::size_t i = 0; i < line.value.size(); ++i) {
        const char ch = line.value[i];
        if (ch == '\r' || ch == '\n') {
            m_value += "\\n";
            if (ch == '\r' && i + 1 < line.value.size() && line.value[i + 1] == '\n') ++i;
        } else {
            m_value += ch;
        }
    }
    Check(c.NonStandardProperty(line.name.c_str(), m_value.c_str(), nullptr, 0, m_params.xParams),
          line);
}

void Importer::Property(const ContentLine& line) {
    m_line = line.line;
    if (line.fallback != nullptr) {
        m_losses.Add(line.name, m_line, Loss::Kind::Converted,
                     std::string("from ") + line.fallback);
    }
    if (m_agentPending) {
        m_agentPending = false;
        Check(m_creator.Agent(nullptr, ""), line);
    }
    if (const PropertyInfo* info = FindProperty(line.name)) {
        if (info->shape == Shape::Agent && line.value.empty()) {
            ReadParams(line, info);
            // vCard 2.1 writes the agent's card on the lines that follow.
            m_agentPending = !m_params.valueUri;
            if (m_agentPending) return;
        }
        Mapped(line, *info);
    } else if (StartsWithName(line.name, "X-")) {
        NonStandard(line);
    } else {
        Lose(line.name);
    }
}

// The agent's card of vCard 2.1, nested in the card: its lines as text, with
// line breaks as LF so that the text survives an escaped round trip.
bool Importer::AgentCard(std::size_t start, bool keep, std::string& error) {
    m_agentPending = false;
    ContentLine line;
    unsigned int depth = 1;
    std::size_t end = start;
    while (depth > 0) {
        const Reader::Result r = m_reader.Next(line, error);
        if (r == Reader::Result::End) error = "the card has no END:VCARD line";
        if (r != Reader::Result::Line) return false;
        end = m_reader.Position();
        if (line.name == "BEGIN"sv) ++depth;
        if (line.name == "END"sv) --depth;
    }
    if (!keep) return true;
    std::string card;
    for (std::size_t i = start; i < end; ++i) {
        if (m_text[i] != '\r') card += m_text[i];
    }
    while (!card.empty() && card.back() == '\n') card.pop_back();
    Check(m_creator.Agent(nullptr, card.c_str()), line);
    return true;
}

bool Importer::StartCard(const ContentLine& line) {
    m_inCard = true;
    m_version4 = false;
    m_reader.Version21(false);
    m_cardLine = line.line;
    const auto instance = static_cast<unsigned int>(m_result.items.size());
    return m_creator.Reset() && m_creator.Begin(instance) && m_creator.Version(kContactVersion);
}

bool Importer::FinishCard() {
    m_inCard = false;
    if (m_agentPending) {
        m_agentPending = false;
        Check(m_creator.Agent(nullptr, ""), ContentLine());
    }
    const void* data = nullptr;
    unsigned int length = 0;
    if (!m_creator.End() || !m_creator.GetData(data, length)) return false;
    m_result.AddItem("contact", m_cardLine, data, length, m_losses.Take());
    return true;
}

ImportResult Importer::Run() {
    ContentLine line;
    std::string error;
    const auto fail = [this](std::string why, unsigned int where) {
        m_result.ok = false;
        m_result.error = std::move(why);
        m_result.errorLine = where;
        return std::move(m_result);
    };
    for (;;) {
        const std::size_t start = m_reader.Position();
        const Reader::Result r = m_reader.Next(line, error);
        if (r == Reader::Result::End) break;
        if (r == Reader::Result::Malformed) return fail(error, m_reader.LineNumber());
        const bool frame = line.name == "BEGIN"sv || line.name == "END"sv;
        const bool vcard = frame && SameName(line.value, "VCARD");
        if (line.name == "BEGIN"sv && vcard) {
            if (!m_inCard) {
                if (!StartCard(line)) return fail("the contact could not be started", line.line);
            } else {
                // A card nested for no AGENT is skipped whole.
                if (!m_agentPending) m_losses.Add("VCARD", line.line);
                if (!AgentCard(start, m_agentPending, error))
                    return fail(error, m_reader.LineNumber());
            }
        } else if (line.name == "END"sv && vcard && m_inCard) {
            if (!FinishCard()) return fail("the contact could not be written", line.line);
        } else if (m_inCard) {
            Property(line);
        }
        // Lines outside any card belong to no contact and are skipped.
    }
    if (m_inCard) return fail("the card has no END:VCARD line", m_cardLine);
    if (m_result.items.empty()) return fail("no BEGIN:VCARD in the input", 0);
    m_result.ok = true;
    return std::move(m_result);
}

}  // namespace

ImportResult ImportVcard(const char* text, std::size_t size) {
    if (text == nullptr) size = 0;
    return Importer(text == nullptr ? "" : text, size).Run();
}

}  // namespace PimBridge
