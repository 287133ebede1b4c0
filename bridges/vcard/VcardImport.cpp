#include <deque>
#include <string>
#include <vector>

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
    Importer(const char* text, std::size_t size) : text_(text), reader_(text, size) {}
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
        losses_.Add(name, line_);
    }
    void Check(bool ok, const ContentLine& line) {
        if (!ok) Lose(line.name);
    }
    const char* Part(std::size_t i) const {
        return i < parts_.size() && !parts_[i].empty() ? parts_[i].c_str() : nullptr;
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
        if (params_.language != nullptr) Lose(line.name, "LANGUAGE");
        for (const IContactAttributes::tXParam& x : params_.xParams) Lose(line.name, x.name);
    }
    void TypeValues(const ContentLine& line, const PropertyInfo& info,
                    const std::vector<std::string>& values, std::string& unknown);
    // The value as text: the line's own when nothing is escaped in it.
    const char* Text(const ContentLine& line) {
        if (line.value.find('\\') == std::string::npos) return line.value.c_str();
        Unescape(line.value, value_);
        return value_.c_str();
    }

    const char* text_;
    Reader reader_;
    ImportResult result_;
    PimShared::CTLVContactCreator creator_;
    LossCollector losses_;
    bool inCard_ = false;
    bool agentPending_ = false;  // an empty AGENT: its card may follow
    bool version4_ = false;      // the card says VERSION:4.0
    unsigned int cardLine_ = 0;
    unsigned int line_ = 0;
    Params params_;
    std::deque<std::string> joined_;  // x-parameter values of the current property (stay put)
    std::vector<std::string> parts_;
    std::string value_, data_;
    PAL::TVector<const char*> list_;
};

void Importer::AddXParam(const char* name, const std::vector<std::string>& values) {
    std::string& v = joined_.emplace_back();
    for (const std::string& part : values) {
        if (!v.empty() || &part != &values.front()) v += ',';
        v += part;
    }
    params_.xParams.pushBack({name, v.c_str()});
}

void Importer::ReadParams(const ContentLine& line, const PropertyInfo* info) {
    params_.language = nullptr;
    params_.bits = 0;
    params_.valueText = params_.valueUri = params_.valueOffset = false;
    params_.mediaType.clear();
    params_.hasMediaType = false;
    params_.xParams.clear();
    joined_.clear();
    const bool xParams = info == nullptr || info->xParams;
    if (!line.group.empty()) {
        // The group prefix (item1.TEL) travels as a parameter of its own name;
        // carried parameters are otherwise all X- ones, so it cannot clash.
        if (xParams) {
            params_.xParams.pushBack({"GROUP", line.group.c_str()});
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
            params_.valueText = SameName(p.values.front(), "text");
            params_.valueUri =
                SameName(p.values.front(), "uri") || SameName(p.values.front(), "url");
        } else if (p.name == "LANGUAGE"sv && info->language) {
            params_.language = p.values.front().c_str();
        } else if (p.name == "TYPE"sv && info->types != TypeSet::None) {
            // Values without a bit stay together, as one TYPE parameter.
            std::string& unknown = joined_.emplace_back();
            TypeValues(line, *info, p.values, unknown);
            if (!unknown.empty()) params_.xParams.pushBack({"TYPE", unknown.c_str()});
        } else if (p.name == "PREF"sv && info->types != TypeSet::None) {
            params_.bits |= Types(info->types).pref;
        } else if (media && (p.name == "TYPE"sv || p.name == "MEDIATYPE"sv)) {
            if (!params_.hasMediaType || p.name == "TYPE"sv) {
                params_.mediaType.clear();
                ForEachListValue(p.values, [this](std::string_view v) {
                    (params_.mediaType += params_.mediaType.empty() ? "" : ",") += v;
                });
                params_.hasMediaType = !params_.mediaType.empty();  // TYPE= says nothing
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
            params_.bits |= bit;
        } else if (info.xParams) {
            // A value without a bit (iPhone, main) travels as it stands.
            (unknown += unknown.empty() ? "" : ",") += v;
        } else {
            Lose(line.name, "TYPE=" + std::string(v));
        }
    });
}

// Inline bytes into data_ (true), or the URI or text form into uri (false).
bool Importer::Media(const ContentLine& line, std::string& uri) {
    if (line.base64) {
        if (DecodeBase64(line.value, data_)) return true;
        Lose(line.name, "ENCODING");
        data_.clear();
        return true;
    }
    // data:image/png;base64,.... written inline by vCard 4.0
    Unescape(line.value, uri);
    if (StartsWithName(uri, "data:")) {
        const std::size_t comma = uri.find(',');
        const std::string_view head = std::string_view(uri).substr(5, comma - 5);
        const std::size_t b64 = head.rfind(";base64");
        if (comma != std::string::npos && b64 != std::string_view::npos &&
            DecodeBase64(std::string_view(uri).substr(comma + 1), data_)) {
            if (!params_.hasMediaType && b64 > 0) {
                params_.mediaType.assign(head.substr(0, b64));
                params_.hasMediaType = true;
            }
            return true;
        }
    }
    return false;
}

void Importer::Mapped(const ContentLine& line, const PropertyInfo& info) {
    ReadParams(line, &info);
    const Params& p = params_;
    const XParams& x = p.xParams;
    const auto bits8 = static_cast<unsigned char>(p.bits);
    const auto bits16 = static_cast<unsigned short>(p.bits);
    IContactAttributes& c = creator_;
    switch (info.shape) {
        case Shape::Text:
            Check((c.*info.text)(Text(line), p.language, x), line);
            break;
        case Shape::Plain:
            Check((c.*info.plain)(Text(line)), line);
            break;
        case Shape::Version:
            version4_ = line.value == "4.0"sv;
            reader_.Version21(line.value == "2.1"sv);
            break;  // written once, at the start of the contact
        case Shape::Name:
            SplitUnescaped(line.value, ';', parts_);
            if (parts_.size() > 5) Lose(line.name, "COMPONENTS");
            if (NoParts(5)) LoseParams(line);
            Check(c.Name(Part(0), Part(1), Part(2), Part(3), Part(4), p.language, x), line);
            break;
        case Shape::Address:
            SplitUnescaped(line.value, ';', parts_);
            if (parts_.size() > 7) Lose(line.name, "COMPONENTS");
            if (NoParts(7)) LoseParams(line);
            Check(c.Address(Part(0), Part(1), Part(2), Part(3), Part(4), Part(5), Part(6), bits8,
                            p.language, x),
                  line);
            break;
        case Shape::List:
        case Shape::Organization: {
            const bool org = info.shape == Shape::Organization;
            SplitUnescaped(line.value, org ? ';' : ',', parts_);
            list_.clear();
            for (std::size_t i = org ? 1 : 0; i < parts_.size(); ++i) {
                if (org || !parts_[i].empty()) list_.pushBack(parts_[i].c_str());
            }
            if (org) {
                Check(c.Organization(parts_.front().c_str(), list_), line);
            } else if (line.name == "NICKNAME"sv) {
                Check(c.Nickname(list_, p.language, x), line);
            } else {
                if (list_.isEmpty()) LoseParams(line);
                Check(c.Categories(list_, p.language, x), line);
            }
            break;
        }
        case Shape::Label:
            Check(c.Label(Text(line), bits8, p.language, x), line);
            break;
        case Shape::Telephone:
            Check(c.Telephone(Text(line), bits16, 0, 0, nullptr, x), line);
            break;
        case Shape::Email:
            Check(c.Email(Text(line), bits8), line);
            break;
        case Shape::Media:
        case Shape::Key: {
            data_.clear();
            const bool inline_ = Media(line, value_);
            const char* uri = inline_ ? nullptr : value_.c_str();
            const void* data = inline_ ? data_.data() : nullptr;
            const auto length = static_cast<unsigned int>(inline_ ? data_.size() : 0);
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
                second = p.valueText || p.valueUri || (version4_ && !p.valueOffset);
            if (info.shape == Shape::Agent) second = !p.valueUri;
            Check((c.*info.pair)(second ? nullptr : v, second ? v : nullptr), line);
            break;
        }
        case Shape::Geo: {
            std::string_view v(line.value);
            char sep = ';';
            if (StartsWithName(v, "geo:")) {  // geo:lat,lon;u=... of vCard 4.0
                v = v.substr(4, v.find(';') == std::string_view::npos ? v.npos : v.find(';') - 4);
                sep = ',';
            }
            SplitUnescaped(v, sep, parts_);
            if (parts_.size() > 2) Lose(line.name, "COMPONENTS");
            Check(c.GeographicPosition(Part(0), Part(1)), line);
            break;
        }
    }
}

// Text of a property the contact does not know, as it stands (its structure
// is its owner's), with line breaks in the escaped form of vCard 3.0.
void Importer::NonStandard(const ContentLine& line) {
    ReadParams(line, nullptr);
    IContactAttributes& c = creator_;
    if (line.base64) {
        if (!DecodeBase64(line.value, data_)) {
            Lose(line.name, "ENCODING");
            return;
        }
        Check(c.NonStandardProperty(line.name.c_str(), nullptr, data_.data(),
                                    static_cast<unsigned int>(data_.size()), params_.xParams),
              line);
        return;
    }
    value_.clear();
    for (std::size_t i = 0; i < line.value.size(); ++i) {
        const char ch = line.value[i];
        if (ch == '\r' || ch == '\n') {
            value_ += "\\n";
            if (ch == '\r' && i + 1 < line.value.size() && line.value[i + 1] == '\n') ++i;
        } else {
            value_ += ch;
        }
    }
    Check(c.NonStandardProperty(line.name.c_str(), value_.c_str(), nullptr, 0, params_.xParams),
          line);
}

void Importer::Property(const ContentLine& line) {
    line_ = line.line;
    if (agentPending_) {
        agentPending_ = false;
        Check(creator_.Agent(nullptr, ""), line);
    }
    if (const PropertyInfo* info = FindProperty(line.name)) {
        if (info->shape == Shape::Agent && line.value.empty()) {
            ReadParams(line, info);
            // vCard 2.1 writes the agent's card on the lines that follow.
            agentPending_ = !params_.valueUri;
            if (agentPending_) return;
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
    agentPending_ = false;
    ContentLine line;
    unsigned int depth = 1;
    std::size_t end = start;
    while (depth > 0) {
        const Reader::Result r = reader_.Next(line, error);
        if (r == Reader::Result::End) error = "the card has no END:VCARD line";
        if (r != Reader::Result::Line) return false;
        end = reader_.Position();
        if (line.name == "BEGIN"sv) ++depth;
        if (line.name == "END"sv) --depth;
    }
    if (!keep) return true;
    std::string card;
    for (std::size_t i = start; i < end; ++i) {
        if (text_[i] != '\r') card += text_[i];
    }
    while (!card.empty() && card.back() == '\n') card.pop_back();
    Check(creator_.Agent(nullptr, card.c_str()), line);
    return true;
}

bool Importer::StartCard(const ContentLine& line) {
    inCard_ = true;
    version4_ = false;
    reader_.Version21(false);
    cardLine_ = line.line;
    const auto instance = static_cast<unsigned int>(result_.items.size());
    return creator_.Reset() && creator_.Begin(instance) && creator_.Version(kContactVersion);
}

bool Importer::FinishCard() {
    inCard_ = false;
    if (agentPending_) {
        agentPending_ = false;
        Check(creator_.Agent(nullptr, ""), ContentLine());
    }
    const void* data = nullptr;
    unsigned int length = 0;
    if (!creator_.End() || !creator_.GetData(data, length)) return false;
    result_.AddItem("contact", cardLine_, data, length, losses_.Take());
    return true;
}

ImportResult Importer::Run() {
    ContentLine line;
    std::string error;
    const auto fail = [this](std::string why, unsigned int where) {
        result_.ok = false;
        result_.error = std::move(why);
        result_.errorLine = where;
        return std::move(result_);
    };
    for (;;) {
        const std::size_t start = reader_.Position();
        const Reader::Result r = reader_.Next(line, error);
        if (r == Reader::Result::End) break;
        if (r == Reader::Result::Malformed) return fail(error, reader_.LineNumber());
        const bool frame = line.name == "BEGIN"sv || line.name == "END"sv;
        const bool vcard = frame && SameName(line.value, "VCARD");
        if (line.name == "BEGIN"sv && vcard) {
            if (!inCard_) {
                if (!StartCard(line)) return fail("the contact could not be started", line.line);
            } else {
                // A card nested for no AGENT is skipped whole.
                if (!agentPending_) losses_.Add("VCARD", line.line);
                if (!AgentCard(start, agentPending_, error))
                    return fail(error, reader_.LineNumber());
            }
        } else if (line.name == "END"sv && vcard && inCard_) {
            if (!FinishCard()) return fail("the contact could not be written", line.line);
        } else if (inCard_) {
            Property(line);
        }
        // Lines outside any card belong to no contact and are skipped.
    }
    if (inCard_) return fail("the card has no END:VCARD line", cardLine_);
    if (result_.items.empty()) return fail("no BEGIN:VCARD in the input", 0);
    result_.ok = true;
    return std::move(result_);
}

}  // namespace

ImportResult ImportVcard(const char* text, std::size_t size) {
    if (text == nullptr) size = 0;
    return Importer(text == nullptr ? "" : text, size).Run();
}

}  // namespace PimBridge
