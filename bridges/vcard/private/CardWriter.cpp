#include "bridges/vcard/private/CardWriter.h"

#include <algorithm>
#include <string>

#include "bridges/common/LossCollector.h"
#include "bridges/common/NotCarried.h"
#include "bridges/vcard/private/ContentLine.h"
#include "bridges/vcard/private/VcardMap.h"
#include "pimshared/contact/ContactDescription.h"

namespace PimBridge::Vcard {

namespace {

// The receiver has an operation named Version: the enum goes by another name.
using CardVersion = Version;
using XParams = PAL::TVector<IContactAttributes::tXParam>;

// Names and group prefixes go out unquoted: anything but letters, digits, '-'
// and the '_' some writers use would break the line or not read back.
bool IsToken(const char* text) {
    if (text == nullptr || *text == '\0') return false;
    for (const char* p = text; *p != '\0'; ++p) {
        const char c = *p;
        if (!((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
              c == '-' || c == '_'))
            return false;
    }
    return true;
}

bool Set(const char* text) {
    return text != nullptr;
}

// Names are written in upper case, as they read back whatever their case.
std::string Upper(const char* name) {
    std::string upper(name);
    for (char& c : upper) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return upper;
}

// How much of a value is escaped: a plain value (identifiers, URIs) only
// its backslashes and line breaks, a text also its commas and semicolons, a
// component of a structured value (N, ADR) its semicolons but not its commas,
// which separate the component's several values. vCard 2.1 knows fewer
// escapes: there a text escapes only backslashes, a list item its commas, a
// component its semicolons.
enum class Escape : unsigned char { Plain, Text, ListItem, Component };

// Where the value of an unfolded content line starts: after the first colon
// outside a quoted parameter value.
std::size_t ValueStart(std::string_view line) {
    bool quoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '"') quoted = !quoted;
        if (line[i] == ':' && !quoted) return i + 1;
    }
    return line.size();
}

// Whether text reads as a decimal number: a coordinate of a geo: URI.
bool IsDecimal(const char* text) {
    if (text == nullptr || *text == '\0') return false;
    for (const char* p = text; *p != '\0'; ++p) {
        if (!((*p >= '0' && *p <= '9') || *p == '.' || *p == '-' || *p == '+')) return false;
    }
    return true;
}

// Whether number starts with a URI scheme other than tel: ("sip:", "x-skype:").
bool HasOtherScheme(std::string_view number) {
    const std::size_t colon = number.find(':');
    if (colon == std::string_view::npos || colon == 0) return false;
    for (std::size_t i = 0; i < colon; ++i) {
        const char c = number[i];
        const bool letter = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        if (!letter && (i == 0 || !((c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.')))
            return false;
    }
    return !SameName(number.substr(0, colon), "tel");
}

}  // namespace

const char* VersionText(Version version) {
    return version == CardVersion::V21 ? "2.1" : version == CardVersion::V40 ? "4.0" : "3.0";
}

Version VersionOf(std::string_view value) {
    return value == "2.1" ? CardVersion::V21 : value == "4.0" ? CardVersion::V40 : CardVersion::V30;
}

void EmitLine(std::string& out, const OutLine& line, std::string_view eol) {
    if (!line.qp) {
        const std::size_t start = out.size();
        AppendFolded(out, line.text);
        if (eol != "\r\n") {  // the folding writes CRLF
            std::string tail = out.substr(start);
            out.resize(start);
            for (std::size_t at = 0;;) {
                const std::size_t crlf = tail.find("\r\n", at);
                out.append(tail, at, crlf == std::string::npos ? std::string::npos : crlf - at);
                if (crlf == std::string::npos) break;
                out += eol;
                at = crlf + 2;
            }
        }
    } else {
        // Soft line breaks: '=' ends every line but the last, no =XX is cut.
        // They break the value only: the first line holds the whole head.
        std::string_view rest = line.text;
        std::size_t head = ValueStart(rest);
        while (rest.size() > 75 && rest.size() > head + 1) {
            std::size_t cut = std::max<std::size_t>(74, head);
            if (rest[cut - 1] == '=' && cut - 1 >= head) {
                cut -= 1;
            } else if (rest[cut - 2] == '=' && cut - 2 >= head) {
                cut -= 2;
            }
            head = 0;
            out.append(rest.substr(0, cut));
            out += '=';
            out += eol;
            rest.remove_prefix(cut);
        }
        out.append(rest);
        out += eol;
    }
    if (line.blankAfter) out += eol;
}

// Writes each contact property as it arrives, in stream order. What it does
// not override (SpeedDial, XUID, XUCI, Handle, PhotoAvailability and any
// operation the contact gains) is reported as not carried, by its name.
class CardWriter::Receiver final : public TNotCarriedReceiver<PimShared::ContactItem> {
  public:
    explicit Receiver(CardVersion version) : TNotCarriedReceiver(m_losses), m_version(version) {}
    void Start(CardLines& out, std::string* text) {
        m_text = text;
        out.lines.clear();
        out.item = ExportedItem();
        out.uid.clear();
        out.instance = 0;
        m_card = &out;
    }
    void Finish(CardLines& out) { out.item.losses = m_losses.Take(); }

    bool Begin(const unsigned int& instance) override {
        m_card->instance = instance;
        return true;
    }
    bool End() override { return true; }
    bool FormattedName(const char* text, const char* lang, const XParams& x) override {
        return Text("FN", text, lang, x);
    }
    bool Name(const char* p1, const char* p2, const char* p3, const char* p4, const char* p5,
              const char* lang, const XParams& x) override {
        Start(Property("N"), &x, lang);
        Parts({p1, p2, p3, p4, p5}, Escape::Component);
        return Finish();
    }
    bool Nickname(const PAL::TVector<const char*>& list, const char* lang,
                  const XParams& x) override {
        return List("NICKNAME", list, lang, x);
    }
    bool Photo(const char* uri, const char* type, const void* data, const unsigned int& length,
               const char* text3) override {
        return Media(Property("PHOTO"), uri, type, data, length, text3);
    }
    bool Birthday(const char* date, const char* text) override {
        return Pair(Property("BDAY"), date, text);
    }
    bool Address(const char* p1, const char* p2, const char* p3, const char* p4, const char* p5,
                 const char* p6, const char* p7, const unsigned char& type, const char* lang,
                 const XParams& x) override {
        Start(Property("ADR"), &x, lang, type);
        Parts({p1, p2, p3, p4, p5, p6, p7}, Escape::Component);
        return Finish();
    }
    bool Label(const char* text, const unsigned char& type, const char* lang,
               const XParams& x) override {
        Start(Property("LABEL"), &x, lang, type);
        Escaped(text, Escape::Text);
        return Finish();
    }
    bool Telephone(const char* number, const unsigned short& type, const unsigned char& byte,
                   const unsigned short& flags, const char* text, const XParams& x) override {
        if (byte != 0) m_losses.Add("TEL;TELBYTE", 0);
        if (flags != 0) m_losses.Add("TEL;TELFLAGS", 0);
        if (Set(text)) m_losses.Add("TEL;TELTEXT", 0);
        Start(Property("TEL"), &x, nullptr, type);
        // A number that came as a tel: URI goes back as one where the
        // version has URIs for numbers.
        if (m_telUri && m_version != CardVersion::V21) {
            if (number == nullptr || !HasOtherScheme(number)) m_line += "tel:";
        } else if (m_telUri) {
            m_losses.Add("TEL;VALUE=uri", 0, Loss::Kind::Converted, "a number: 2.1 has no URIs");
        }
        Escaped(number, Escape::Plain);
        return Finish();
    }
    bool Email(const char* address, const unsigned char& type) override {
        Start(Property("EMAIL"), nullptr, nullptr, type);
        Escaped(address, Escape::Plain);
        return Finish();
    }
    bool Mailer(const char* text, const char* lang, const XParams& x) override {
        return Text("MAILER", text, lang, x);
    }
    bool Timezone(const char* offset, const char* text) override {
        return Pair(Property("TZ"), offset, text);
    }
    bool GeographicPosition(const char* lat, const char* lon) override {
        // A latitude that is a geo: URI's text would read back as the URI.
        if (lat != nullptr && SameName(std::string_view(lat).substr(0, 4), "geo:"))
            m_losses.Add("GEO", 0, Loss::Kind::Converted, "a latitude that reads as a geo: URI");
        Start(Property("GEO"));
        if (m_version == CardVersion::V40 && IsDecimal(lat) && IsDecimal(lon)) {
            ((m_line += "geo:") += lat) += ',';
            m_line += lon;
        } else {
            Parts({lat, lon}, Structured());
        }
        return Finish();
    }
    bool Title(const char* text, const char* lang, const XParams& x) override {
        return Text("TITLE", text, lang, x);
    }
    bool Role(const char* text, const char* lang, const XParams& x) override {
        return Text("ROLE", text, lang, x);
    }
    bool Logo(const char* uri, const char* type, const void* data, const unsigned int& length,
              const char* text3) override {
        return Media(Property("LOGO"), uri, type, data, length, text3);
    }
    bool Agent(const char* uri, const char* card) override {
        return Pair(Property("AGENT"), uri, card);
    }
    bool Organization(const char* name, const PAL::TVector<const char*>& units) override {
        Start(Property("ORG"));
        Escaped(name, Structured());
        for (const char* unit : units) {
            m_line += ';';
            Escaped(unit, Structured());
        }
        return Finish();
    }
    bool Categories(const PAL::TVector<const char*>& list, const char* lang,
                    const XParams& x) override {
        return List("CATEGORIES", list, lang, x);
    }
    bool Note(const char* text, const char* lang, const XParams& x) override {
        return Text("NOTE", text, lang, x);
    }
    bool Revision(const char* date, const char* text) override {
        return Pair(Property("REV"), date, text);
    }
    bool SortString(const char* text, const char* lang, const XParams& x) override {
        return Text("SORT-STRING", text, lang, x);
    }
    bool Sound(const char* uri, const char* type, const void* data, const unsigned int& length,
               const char* text3, const char* fn, const char* n1, const char* n2, const char* n3,
               const char* n4, const char* n5) override {
        if (Set(fn) || Set(n1) || Set(n2) || Set(n3) || Set(n4) || Set(n5))
            m_losses.Add("SOUND;NAME", 0);
        return Media(Property("SOUND"), uri, type, data, length, text3);
    }
    bool UID(const char* text) override {
        m_card->uid = text != nullptr ? text : "";
        return Plain("UID", text);
    }
    bool URL(const char* text) override { return Plain("URL", text); }
    bool Version(const char* text) override {
        // The card says VERSION:3.0 at its top; another version in the stream
        // does not describe what is written.
        if (text == nullptr || std::string_view(text) != "3.0") m_losses.Add("VERSION", 0);
        return true;
    }
    bool Classification(const char* text) override { return Plain("CLASS", text); }
    bool ProdID(const char* text) override { return Plain("PRODID", text); }
    bool Key(const char* text, const char* type, const void* data,
             const unsigned int& length) override {
        return Media(Property("KEY"), text, type, data, length, nullptr);
    }
    bool NonStandardProperty(const char* name, const char* value, const void* data,
                             const unsigned int& length, const XParams& x) override;
    bool TraceMessage(const int& code, const char* text) override {
        m_card->item.diagnostics.push_back({code, text != nullptr ? text : ""});
        return true;
    }

  private:
    void Start(const PropertyInfo& info, const XParams* x = nullptr, const char* lang = nullptr,
               unsigned int bits = 0);
    void Start(std::string_view name, const XParams* x);
    void Params(const PropertyInfo* info, std::string_view property, const XParams& x,
                const char* lang);
    void Escaped(const char* text, Escape escape);
    // The parts of ORG and GEO, which only semicolons separate.
    Escape Structured() const {
        return m_version == CardVersion::V21 ? Escape::Component : Escape::Text;
    }
    void Parts(std::initializer_list<const char*> parts, Escape escape) {
        bool first = true;
        for (const char* part : parts) {
            if (!first) m_line += ';';
            first = false;
            Escaped(part, escape);
        }
    }
    bool Finish(bool blankAfter = false);
    bool Text(const char* name, const char* text, const char* lang, const XParams& x) {
        Start(Property(name), &x, lang);
        Escaped(text, Escape::Text);
        return Finish();
    }
    bool Plain(const char* name, const char* text) {
        Start(Property(name));
        Escaped(text, Escape::Plain);
        return Finish();
    }
    // Empty items go: a list reads back without them.
    bool List(const char* name, const PAL::TVector<const char*>& list, const char* lang,
              const XParams& x) {
        Start(Property(name), &x, lang);
        bool first = true;
        for (const char* item : list) {
            if (item == nullptr || *item == '\0') continue;
            if (!first) m_line += ',';
            first = false;
            Escaped(item, Escape::ListItem);
        }
        return Finish();
    }
    void TypeParam(const std::string& values);
    bool Media(const PropertyInfo& info, const char* uri, const char* type, const void* data,
               unsigned int length, const char* text3);
    bool Pair(const PropertyInfo& info, const char* first, const char* second);

    const CardVersion m_version;
    CardLines* m_card = nullptr;
    LossCollector m_losses;
    std::string m_line;
    bool m_telUri = false;          // the telephone being written came as a tel: URI
    std::string* m_text = nullptr;  // where lines go as they are written, if anywhere
    OutLine m_out;
};

void CardWriter::Receiver::Escaped(const char* text, Escape escape) {
    if (text == nullptr) return;
    // vCard 2.1 escapes only its separators; line breaks go quoted-printable.
    if (m_version == CardVersion::V21) {
        AppendEscaped(m_line, text,
                      escape == Escape::ListItem    ? "\\,"
                      : escape == Escape::Component ? "\\;"
                                                    : "\\");
        return;
    }
    AppendEscaped(m_line, text,
                  escape == Escape::Plain       ? "\\\r\n"
                  : escape == Escape::Component ? "\\\r\n;"
                                                : "\\\r\n,;");
}

bool CardWriter::Receiver::Finish(bool blankAfter) {
    // Written straight to the text, the line's buffer is reused.
    OutLine& out = m_text != nullptr ? m_out : m_card->lines.emplace_back();
    out.blankAfter = blankAfter;
    out.qp = false;
    const auto done = [this, &out] {
        if (m_text != nullptr) EmitLine(*m_text, out);
        return true;
    };
    const std::size_t start = ValueStart(m_line);
    bool eightBit = false, breaks = false;
    if (m_version == CardVersion::V21) {
        for (std::size_t i = start; i < m_line.size(); ++i) {
            const auto c = static_cast<unsigned char>(m_line[i]);
            eightBit = eightBit || c >= 0x80;
            breaks = breaks || c == '\r' || c == '\n';
        }
    }
    if (!eightBit && !breaks) {
        out.text.assign(m_line);
        return done();
    }
    // 8-bit text and line breaks of 2.1 go quoted-printable, in UTF-8.
    static const char kHex[] = "0123456789ABCDEF";
    out.qp = true;
    out.text.assign(m_line, 0, start - 1);
    out.text += ";ENCODING=QUOTED-PRINTABLE";
    if (eightBit) out.text += ";CHARSET=UTF-8";
    out.text += ':';
    for (std::size_t i = start; i < m_line.size(); ++i) {
        const auto c = static_cast<unsigned char>(m_line[i]);
        if (c == '\r' || c == '\n') {
            out.text += "=0D=0A";
            if (c == '\r' && i + 1 < m_line.size() && m_line[i + 1] == '\n') ++i;
        } else if (c >= 0x80 || c == '=') {
            out.text += '=';
            out.text += kHex[c >> 4];
            out.text += kHex[c & 15];
        } else {
            out.text += static_cast<char>(c);
        }
    }
    return done();
}

void CardWriter::Receiver::Start(std::string_view name, const XParams* x) {
    m_line.clear();
    if (x != nullptr) {
        for (const IContactAttributes::tXParam& p : *x) {
            if (p.name != nullptr && std::string_view(p.name) == "GROUP" && IsToken(p.value)) {
                (m_line += p.value) += '.';
                break;
            }
        }
    }
    m_line += name;
}

// For each TYPE value of an extension parameter TYPE: its bit, or 0.
template <typename OnValue>
void ForEachTypeValue(const TypeTable& table, const char* list, OnValue&& onValue) {
    ForEachListItem(list, [&](std::string_view v) { onValue(v, BitOf(table, v)); });
}

// Extension parameters go out where they read back as the same: X- ones; for
// a property the contact does not know, any but the encodings the reading
// consumes; TYPE values without a bit of the property's set. The GROUP
// parameter is the prefix.
void CardWriter::Receiver::Params(const PropertyInfo* info, std::string_view property,
                                  const XParams& x, const char* lang) {
    if (Set(lang)) {
        if (info != nullptr && info->language) {
            AppendParam(m_line, "LANGUAGE", lang, false);
        } else {
            m_losses.Add(std::string(property) + ";LANGUAGE", 0);
        }
    }
    bool group = false;
    std::string others;
    for (const IContactAttributes::tXParam& p : x) {
        const std::string name = p.name != nullptr ? Upper(p.name) : std::string();
        const char* value = p.value != nullptr ? p.value : "";
        if (name == "GROUP") {
            // The first valid one is the prefix; any other has no place.
            if (group || !IsToken(value)) m_losses.Add(std::string(property) + ";GROUP", 0);
            group = group || IsToken(value);
        } else if (name == "TYPE" && info != nullptr && info->types != TypeSet::None) {
            others.clear();
            ForEachTypeValue(Types(info->types), value, [&](std::string_view v, unsigned int bit) {
                if (bit != 0) return;
                // A parameter value holds no CR; a value of nothing else
                // would go out as an empty TYPE and read back as none.
                std::string kept(v);
                kept.erase(std::remove(kept.begin(), kept.end(), '\r'), kept.end());
                if (!kept.empty()) (others += others.empty() ? "" : ",") += kept;
            });
            TypeParam(others);
        } else if (name == "VALUE" && info != nullptr && info->shape == Shape::Telephone &&
                   SameName(value, "uri") && !m_telUri) {
            m_telUri = true;
            if (m_version != CardVersion::V21) m_line += ";VALUE=uri";
        } else if (IsToken(name.c_str()) &&
                   (info == nullptr ? name != "ENCODING" && name != "CHARSET"
                                    : name.compare(0, 2, "X-") == 0)) {
            AppendParam(m_line, name, value);
        } else {
            m_losses.Add(std::string(property) + ";" + name, 0);
        }
    }
}

// TYPE values: bare parameters in 2.1, a list after TYPE= since 3.0.
void CardWriter::Receiver::TypeParam(const std::string& values) {
    if (values.empty()) return;
    if (m_version != CardVersion::V21) {
        AppendParam(m_line, "TYPE", values);
        return;
    }
    ForEachListItem(values, [this](std::string_view v) {
        if (IsToken(std::string(v).c_str())) {
            (m_line += ';') += v;
        } else {
            AppendParam(m_line, "TYPE", v);
        }
    });
}

void CardWriter::Receiver::Start(const PropertyInfo& info, const XParams* x, const char* lang,
                                 unsigned int bits) {
    static const XParams kNone;
    const XParams& params = x != nullptr ? *x : kNone;
    m_telUri = false;
    Start(info.name, x);
    if (info.types != TypeSet::None) {
        const TypeTable& table = Types(info.types);
        // A value with a bit may also stand in an extension parameter TYPE
        // (streams written elsewhere): it goes out with the bits.
        for (const IContactAttributes::tXParam& p : params) {
            if (p.name == nullptr || p.value == nullptr || Upper(p.name) != "TYPE") continue;
            ForEachTypeValue(table, p.value,
                             [&](std::string_view, unsigned int bit) { bits |= bit; });
        }
        // 4.0 says a preference with PREF, not with a TYPE value.
        const bool pref = m_version == CardVersion::V40 && (bits & table.pref) != 0;
        if (pref) bits &= ~table.pref;
        std::string types;
        for (std::size_t i = 0; i < table.count; ++i) {
            if ((bits & table.bits[i].bit) == 0) continue;
            (types += types.empty() ? "" : ",") += table.bits[i].value;
            bits &= ~table.bits[i].bit;
        }
        TypeParam(types);
        if (pref) m_line += ";PREF=1";
        if (bits != 0) m_losses.Add(std::string(info.name) + ";TYPE=" + std::to_string(bits), 0);
    }
    Params(&info, info.name, params, lang);
    m_line += ':';
}

bool CardWriter::Receiver::Media(const PropertyInfo& info, const char* uri, const char* type,
                                 const void* data, unsigned int length, const char* text3) {
    if (Set(text3)) m_losses.Add(std::string(info.name) + ";MEDIATEXT3", 0);
    Start(info.name, nullptr);
    const bool binary = data != nullptr || uri == nullptr;
    // A list, as it reads back: without empty items.
    std::string types;
    if (Set(type)) {
        ForEachListItem(type,
                        [&types](std::string_view v) { (types += types.empty() ? "" : ",") += v; });
    }
    // 4.0 writes inline bytes as a data: URI, whose media type it names when
    // it is one ("image/png").
    const bool dataUri = binary && m_version == CardVersion::V40;
    const bool typeInUri = dataUri && types.find('/') != std::string::npos &&
                           types.find_first_of(",;") == std::string::npos;
    if (binary) {
        if (Set(uri)) m_losses.Add(std::string(info.name) + ";VALUE=uri", 0);
        if (!dataUri) m_line += m_version == CardVersion::V21 ? ";ENCODING=BASE64" : ";ENCODING=b";
    } else if (info.shape == Shape::Media) {
        m_line += m_version == CardVersion::V21 ? ";VALUE=URL" : ";VALUE=uri";
    }
    if (!types.empty() && !typeInUri) AppendParam(m_line, "TYPE", types);
    m_line += ':';
    if (!binary) {
        Escaped(uri, Escape::Plain);
    } else if (data != nullptr || dataUri) {
        if (dataUri) ((m_line += "data:") += typeInUri ? types : "") += ";base64,";
        AppendBase64(m_line, data, length);
    }
    return Finish(binary && m_version == CardVersion::V21);
}

// Date, time zone and agent: the first slot is written as its default value
// type, the second as the other (text, or the agent's card).
bool CardWriter::Receiver::Pair(const PropertyInfo& info, const char* first, const char* second) {
    if (!Set(first) && !Set(second)) return true;  // an empty node carries nothing
    if (Set(first) && Set(second)) m_losses.Add(std::string(info.name) + ";VALUE=text", 0);
    Start(info.name, nullptr);
    const bool agent = info.shape == Shape::Agent;
    if (Set(first)) {
        if (agent) m_line += ";VALUE=uri";
        // 4.0 reads a time zone as a text unless told otherwise.
        if (info.shape == Shape::Timezone && m_version == CardVersion::V40)
            m_line += ";VALUE=utc-offset";
        m_line += ':';
        Escaped(first, Escape::Plain);
    } else {
        if (!agent) m_line += ";VALUE=text";
        m_line += ':';
        Escaped(second, Escape::Text);
    }
    return Finish();
}

bool CardWriter::Receiver::NonStandardProperty(const char* name, const char* value,
                                               const void* data, const unsigned int& length,
                                               const XParams& x) {
    if (!IsToken(name) || (name[0] != 'X' && name[0] != 'x') || name[1] != '-') {
        m_losses.Add(name != nullptr && *name != '\0' ? name : "(unnamed property)", 0);
        return true;
    }
    Start(Upper(name), &x);
    Params(nullptr, name, x, nullptr);
    if (data != nullptr) {
        if (Set(value)) m_losses.Add(std::string(name) + ";VALUE", 0);
        m_line += ";ENCODING=b:";
        AppendBase64(m_line, data, length);
    } else if (value != nullptr) {
        m_line += ':';
        // Line breaks as the import reads them back: CR LF, LF and a lone CR.
        for (const char* p = value; *p != '\0'; ++p) {
            if (*p == '\n' || (*p == '\r' && p[1] != '\n')) {
                m_line += "\\n";
            } else if (*p != '\r') {
                m_line += *p;
            }
        }
    } else {
        m_line += ':';
    }
    return Finish();
}

CardWriter::CardWriter(Version version)
    : m_receiver(std::make_unique<Receiver>(version)),
      m_parser(std::make_unique<PimShared::CTLVContactParser>(*m_receiver)) {}

CardWriter::~CardWriter() = default;

void CardWriter::Write(const std::uint8_t* data, std::size_t size, CardLines& out,
                       std::string* text) {
    m_receiver->Start(out, text);
    const char* errorText = nullptr;
    unsigned int consumed = 0;
    out.item.malformed =
        !m_parser->Parse(data, static_cast<unsigned int>(size), errorText, consumed);
    m_receiver->Finish(out);
}

}  // namespace PimBridge::Vcard
