#include <string>

#include "bridges/common/ItemStreams.h"
#include "bridges/common/LossCollector.h"
#include "bridges/vcard/Vcard.h"
#include "bridges/vcard/private/ContentLine.h"
#include "bridges/vcard/private/VcardMap.h"
#include "pimshared/contact/ContactReceiver.h"
#include "pimshared/contact/TLVContactParser.h"

namespace PimBridge {

namespace {

using namespace Vcard;
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

// Writes each contact property as it arrives, in stream order.
class CardWriter final : public PimShared::IContactReceiver {
  public:
    explicit CardWriter(std::string& out) : out_(out) {}
    // The item whose diagnostics and losses the next parse gathers.
    void StartItem(ExportedItem& item) { item_ = &item; }
    std::vector<Loss> TakeLosses() { return losses_.Take(); }

    bool Begin(const unsigned int&) override { return true; }
    bool End() override { return true; }
    bool FormattedName(const char* text, const char* lang, const XParams& x) override {
        return Text("FN", text, lang, x);
    }
    bool Name(const char* p1, const char* p2, const char* p3, const char* p4, const char* p5,
              const char* lang, const XParams& x) override {
        Start(Property("N"), &x, lang);
        Parts({p1, p2, p3, p4, p5}, ';');
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
        Parts({p1, p2, p3, p4, p5, p6, p7}, ';');
        return Finish();
    }
    bool Label(const char* text, const unsigned char& type, const char* lang,
               const XParams& x) override {
        Start(Property("LABEL"), &x, lang, type);
        Escaped(text, true);
        return Finish();
    }
    bool Telephone(const char* number, const unsigned short& type, const unsigned char& byte,
                   const unsigned short& flags, const char* text, const XParams& x) override {
        if (byte != 0) losses_.Add("TEL;TELBYTE", 0);
        if (flags != 0) losses_.Add("TEL;TELFLAGS", 0);
        if (Set(text)) losses_.Add("TEL;TELTEXT", 0);
        Start(Property("TEL"), &x, nullptr, type);
        Escaped(number, false);
        return Finish();
    }
    bool Email(const char* address, const unsigned char& type) override {
        Start(Property("EMAIL"), nullptr, nullptr, type);
        Escaped(address, false);
        return Finish();
    }
    bool Mailer(const char* text, const char* lang, const XParams& x) override {
        return Text("MAILER", text, lang, x);
    }
    bool Timezone(const char* offset, const char* text) override {
        return Pair(Property("TZ"), offset, text);
    }
    bool GeographicPosition(const char* lat, const char* lon) override {
        Start(Property("GEO"));
        Parts({lat, lon}, ';');
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
        Escaped(name, true);
        for (const char* unit : units) {
            line_ += ';';
            Escaped(unit, true);
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
            losses_.Add("SOUND;NAME", 0);
        return Media(Property("SOUND"), uri, type, data, length, text3);
    }
    bool UID(const char* text) override { return Plain("UID", text); }
    bool SpeedDial(const char*) override { return Lose("SpeedDial"); }
    bool XUID(const char*) override { return Lose("XUID"); }
    bool XUCI(const char*, int, unsigned short) override { return Lose("XUCI"); }
    bool Handle(const char*) override { return Lose("Handle"); }
    bool URL(const char* text) override { return Plain("URL", text); }
    bool Version(const char* text) override {
        // The card says VERSION:3.0 at its top; another version in the stream
        // does not describe what is written.
        if (text == nullptr || std::string_view(text) != "3.0") losses_.Add("VERSION", 0);
        return true;
    }
    bool Classification(const char* text) override { return Plain("CLASS", text); }
    bool ProdID(const char* text) override { return Plain("PRODID", text); }
    bool Key(const char* text, const char* type, const void* data,
             const unsigned int& length) override {
        return Media(Property("KEY"), text, type, data, length, nullptr);
    }
    bool PhotoAvailability(const bool&) override { return Lose("PhotoAvailability"); }
    bool NonStandardProperty(const char* name, const char* value, const void* data,
                             const unsigned int& length, const XParams& x) override;
    bool TraceMessage(const int& code, const char* text) override {
        item_->diagnostics.push_back({code, text != nullptr ? text : ""});
        return true;
    }

  private:
    bool Lose(const char* what) {
        losses_.Add(what, 0);
        return true;
    }
    void Start(const PropertyInfo& info, const XParams* x = nullptr, const char* lang = nullptr,
               unsigned int bits = 0);
    void Start(std::string_view name, const XParams* x);
    void Params(const PropertyInfo* info, std::string_view property, const XParams& x,
                const char* lang);
    void Escaped(const char* text, bool structured) {
        if (text != nullptr) AppendEscaped(line_, text, structured);
    }
    void Parts(std::initializer_list<const char*> parts, char sep) {
        bool first = true;
        for (const char* part : parts) {
            if (!first) line_ += sep;
            first = false;
            Escaped(part, true);
        }
    }
    bool Finish() {
        AppendFolded(out_, line_);
        return true;
    }
    bool Text(const char* name, const char* text, const char* lang, const XParams& x) {
        Start(Property(name), &x, lang);
        Escaped(text, true);
        return Finish();
    }
    bool Plain(const char* name, const char* text) {
        Start(Property(name));
        Escaped(text, false);
        return Finish();
    }
    bool List(const char* name, const PAL::TVector<const char*>& list, const char* lang,
              const XParams& x) {
        Start(Property(name), &x, lang);
        for (const char* const& item : list) {
            if (&item != list.begin()) line_ += ',';
            Escaped(item, true);
        }
        return Finish();
    }
    bool Media(const PropertyInfo& info, const char* uri, const char* type, const void* data,
               unsigned int length, const char* text3);
    bool Pair(const PropertyInfo& info, const char* first, const char* second);

    std::string& out_;
    ExportedItem* item_ = nullptr;
    LossCollector losses_;
    std::string line_;
};

void CardWriter::Start(std::string_view name, const XParams* x) {
    line_.clear();
    if (x != nullptr) {
        for (const IContactAttributes::tXParam& p : *x) {
            if (p.name != nullptr && std::string_view(p.name) == "GROUP" && IsToken(p.value)) {
                (line_ += p.value) += '.';
                break;
            }
        }
    }
    line_ += name;
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
void CardWriter::Params(const PropertyInfo* info, std::string_view property, const XParams& x,
                        const char* lang) {
    if (Set(lang)) {
        if (info != nullptr && info->language) {
            AppendParam(line_, "LANGUAGE", lang, false);
        } else {
            losses_.Add(std::string(property) + ";LANGUAGE", 0);
        }
    }
    bool group = false;
    std::string others;
    for (const IContactAttributes::tXParam& p : x) {
        const std::string name = p.name != nullptr ? Upper(p.name) : std::string();
        const char* value = p.value != nullptr ? p.value : "";
        if (name == "GROUP") {
            // The first valid one is the prefix; any other has no place.
            if (group || !IsToken(value)) losses_.Add(std::string(property) + ";GROUP", 0);
            group = group || IsToken(value);
        } else if (name == "TYPE" && info != nullptr && info->types != TypeSet::None) {
            others.clear();
            ForEachTypeValue(Types(info->types), value, [&](std::string_view v, unsigned int bit) {
                if (bit == 0) ((others += others.empty() ? "" : ",") += v);
            });
            if (!others.empty()) AppendParam(line_, "TYPE", others);
        } else if (IsToken(name.c_str()) &&
                   (info == nullptr ? name != "ENCODING" && name != "CHARSET"
                                    : name.compare(0, 2, "X-") == 0)) {
            AppendParam(line_, name, value);
        } else {
            losses_.Add(std::string(property) + ";" + name, 0);
        }
    }
}

void CardWriter::Start(const PropertyInfo& info, const XParams* x, const char* lang,
                       unsigned int bits) {
    static const XParams kNone;
    const XParams& params = x != nullptr ? *x : kNone;
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
        std::string types;
        for (std::size_t i = 0; i < table.count; ++i) {
            if ((bits & table.bits[i].bit) == 0) continue;
            (types += types.empty() ? "" : ",") += table.bits[i].value;
            bits &= ~table.bits[i].bit;
        }
        if (!types.empty()) AppendParam(line_, "TYPE", types);
        if (bits != 0) losses_.Add(std::string(info.name) + ";TYPE=" + std::to_string(bits), 0);
    }
    Params(&info, info.name, params, lang);
    line_ += ':';
}

bool CardWriter::Media(const PropertyInfo& info, const char* uri, const char* type,
                       const void* data, unsigned int length, const char* text3) {
    if (Set(text3)) losses_.Add(std::string(info.name) + ";MEDIATEXT3", 0);
    Start(info.name, nullptr);
    const bool binary = data != nullptr || uri == nullptr;
    if (binary) {
        if (Set(uri)) losses_.Add(std::string(info.name) + ";VALUE=uri", 0);
        line_ += ";ENCODING=b";
    } else if (info.shape == Shape::Media) {
        line_ += ";VALUE=uri";
    }
    if (Set(type)) {
        // A list, as it reads back: without empty items.
        std::string types;
        ForEachListItem(type,
                        [&types](std::string_view v) { (types += types.empty() ? "" : ",") += v; });
        if (!types.empty()) AppendParam(line_, "TYPE", types);
    }
    line_ += ':';
    if (!binary) {
        Escaped(uri, false);
    } else if (data != nullptr) {
        AppendBase64(line_, data, length);
    }
    return Finish();
}

// Date, time zone and agent: the first slot is written as its default value
// type, the second as the other (text, or the agent's card).
bool CardWriter::Pair(const PropertyInfo& info, const char* first, const char* second) {
    if (!Set(first) && !Set(second)) return true;  // an empty node carries nothing
    if (Set(first) && Set(second)) losses_.Add(std::string(info.name) + ";VALUE=text", 0);
    Start(info.name, nullptr);
    const bool agent = info.shape == Shape::Agent;
    if (Set(first)) {
        if (agent) line_ += ";VALUE=uri";
        line_ += ':';
        Escaped(first, false);
    } else {
        if (!agent) line_ += ";VALUE=text";
        line_ += ':';
        Escaped(second, true);
    }
    return Finish();
}

bool CardWriter::NonStandardProperty(const char* name, const char* value, const void* data,
                                     const unsigned int& length, const XParams& x) {
    if (!IsToken(name) || (name[0] != 'X' && name[0] != 'x') || name[1] != '-') {
        losses_.Add(name != nullptr && *name != '\0' ? name : "(unnamed property)", 0);
        return true;
    }
    Start(Upper(name), &x);
    Params(nullptr, name, x, nullptr);
    if (data != nullptr) {
        if (Set(value)) losses_.Add(std::string(name) + ";VALUE", 0);
        line_ += ";ENCODING=b:";
        AppendBase64(line_, data, length);
    } else if (value != nullptr) {
        line_ += ':';
        for (const char* p = value; *p != '\0'; ++p) {
            if (*p == '\n') {
                line_ += "\\n";
            } else if (*p != '\r') {
                line_ += *p;
            }
        }
    } else {
        line_ += ':';
    }
    return Finish();
}

}  // namespace

ExportResult ExportVcard(const std::uint8_t* data, std::size_t size) {
    ExportResult result;
    if (data == nullptr) size = 0;
    std::string why;
    std::string notContact;
    CardWriter writer(result.text);
    PimShared::CTLVContactParser parser(writer);  // one for all items: it resets per parse
    const bool cut = ForEachItem(
        data, size,
        [&](const ItemSpan& span) {
            if (KindOf(span) != ItemKind::Contact) {
                notContact = "item at offset " + std::to_string(span.offset) +
                             " is no contact (root node " + std::to_string(span.frame.root) +
                             "): vCard carries contacts only";
                return false;
            }
            ExportedItem& item = result.items.emplace_back();
            item.kind = "contact";
            item.offset = span.offset;
            result.text += "BEGIN:VCARD\r\nVERSION:3.0\r\n";
            writer.StartItem(item);
            const char* errorText = nullptr;
            unsigned int consumed = 0;
            const auto length = static_cast<unsigned int>(span.size);
            item.malformed = !parser.Parse(data + span.offset, length, errorText, consumed);
            result.text += "END:VCARD\r\n";
            item.losses = writer.TakeLosses();
            return true;
        },
        why);
    if (!cut || !notContact.empty()) {
        result.error = cut ? notContact : why;
        result.text.clear();
        return result;
    }
    result.ok = true;
    return result;
}

}  // namespace PimBridge
