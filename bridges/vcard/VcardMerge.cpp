// The merge of contact streams onto the cards they came from. A card's lines
// are compared in the form the contact gives them: each line of the original
// is read into a contact of its own and written back in the card's version,
// which is what the device's stream writes for the same content. A line whose
// form the device's stream still has stays as the original wrote it, with its
// group, parameters the contact cannot carry and folding; a line the contact
// does not carry at all stays too. Only lines the device changed, removed or
// added are written anew.

#include <algorithm>
#include <array>
#include <cstring>
#include <ctime>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "bridges/common/Clock.h"
#include "bridges/common/Merge.h"
#include "bridges/vcard/Vcard.h"
#include "bridges/vcard/private/CardWriter.h"
#include "bridges/vcard/private/ContentLine.h"
#include "pimshared/contact/ContactReceiver.h"
#include "pimshared/contact/TLVContactParser.h"

namespace PimBridge {

namespace {

using namespace Vcard;
using namespace std::string_view_literals;

// One content line of a card (with the card an AGENT of 2.1 nests after it).
struct Unit {
    std::size_t begin = 0, end = 0;  // its bytes in the text, blank lines before it included
    std::string name;                // upper case, without group
    unsigned int line = 0;
    std::vector<std::string> keys;  // what a contact carries of it, as lines of the card's version
};

struct Card {
    std::size_t begin = 0;    // the BEGIN line
    std::size_t body = 0;     // after the BEGIN line
    std::size_t endLine = 0;  // the END line
    std::size_t end = 0;      // after the END line
    unsigned int line = 0;
    Version version = Version::V30;
    std::string versionText = "3.0";
    std::vector<Unit> units;
    bool keyed = false;  // keys computed
};

struct Text {
    const char* data = nullptr;
    std::size_t size = 0;
    std::vector<Card> cards;
    ComponentMatcher matcher;  // over cards, filled by MatchImported
};

// The cards of text and where their lines are; false with error and line for
// text the import would refuse.
bool Scan(Text& text, std::string& error, unsigned int& errorLine) {
    Reader reader(text.data, text.size);
    ContentLine line;
    Card* card = nullptr;
    bool agentOpen = false;  // the last line was an AGENT whose card may follow
    for (;;) {
        const std::size_t start = reader.Position();
        const Reader::Result r = reader.Next(line, error);
        if (r == Reader::Result::End) break;
        if (r == Reader::Result::Malformed) {
            errorLine = reader.LineNumber();
            return false;
        }
        const bool vcard = SameName(line.value, "VCARD");
        if (card == nullptr) {
            if (line.name == "BEGIN"sv && vcard) {
                card = &text.cards.emplace_back();
                card->begin = start;
                card->body = reader.Position();
                card->line = line.line;
                reader.Version21(false);
                agentOpen = false;
            }
            continue;  // text outside any card stays as it is
        }
        if (line.name == "END"sv && vcard) {
            card->endLine = start;
            card->end = reader.Position();
            card = nullptr;
            continue;
        }
        if (line.name == "BEGIN"sv && vcard) {  // a nested card: to its END
            for (unsigned int depth = 1; depth > 0;) {
                const Reader::Result n = reader.Next(line, error);
                if (n != Reader::Result::Line) {
                    if (n == Reader::Result::End) error = "the card has no END:VCARD line";
                    errorLine = reader.LineNumber();
                    return false;
                }
                // As the import reads it: any BEGIN and END nest.
                if (line.name == "BEGIN"sv) ++depth;
                if (line.name == "END"sv) --depth;
            }
            if (agentOpen) {
                card->units.back().end = reader.Position();
            } else {
                card->units.push_back(Unit{start, reader.Position(), "VCARD", line.line, {}});
            }
            agentOpen = false;
            continue;
        }
        if (line.name == "VERSION"sv) {
            card->version = VersionOf(line.value);
            card->versionText = line.value;
            reader.Version21(line.value == "2.1"sv);
        }
        agentOpen = line.name == "AGENT"sv && line.value.empty();
        card->units.push_back(Unit{start, reader.Position(), line.name, line.line, {}});
    }
    if (card != nullptr) {
        error = "the card has no END:VCARD line";
        errorLine = card->line;
        return false;
    }
    if (text.cards.empty()) {
        error = "no BEGIN:VCARD in the input";
        errorLine = 0;
        return false;
    }
    return true;
}

// The name of an unfolded content line, without its group.
// Fills the matcher with each card's UID as the import of the text wrote it
// (one item per card, in order). The import may convert or decode a UID's
// text, and the device sends that form back: matched on the line as written,
// a card the device returned unchanged would be taken for an added one.
void MatchImported(Text& text, const ImportResult& imported) {
    struct UidOf final : PimShared::CContactReceiverBase {
        std::string uid;  // the last UID, as the device's cards are read
        bool UID(const char* value) override {
            uid = value != nullptr ? value : "";
            return true;
        }
    } receiver;
    PimShared::CTLVContactParser parser(receiver);
    for (const ImportedItem& item : imported.items) {
        receiver.uid.clear();
        const char* errorText = nullptr;
        unsigned int consumed = 0;
        parser.Parse(imported.streams.data() + item.offset, static_cast<unsigned int>(item.size),
                     errorText, consumed);
        text.matcher.Add(receiver.uid);
    }
}

std::string_view LineName(std::string_view line) {
    std::size_t end = 0;
    while (end < line.size() && line[end] != ';' && line[end] != ':') ++end;
    const std::string_view token = line.substr(0, end);
    const std::size_t dot = token.rfind('.');
    return dot == std::string_view::npos ? token : token.substr(dot + 1);
}

std::string_view LineEnd(const char* text, std::size_t size) {
    const void* lf = std::memchr(text, '\n', size);
    if (lf == nullptr) return "\r\n";
    const char* p = static_cast<const char*>(lf);
    return p > text && p[-1] == '\r' ? "\r\n"sv : "\n"sv;
}

// REV of a changed card: now, in UTC.
std::string Revision() {
    const std::time_t now = Now();
    std::tm tm{};
    gmtime_r(&now, &tm);
    char stamp[32];
    std::strftime(stamp, sizeof stamp, "%Y%m%dT%H%M%SZ", &tm);
    return std::string("REV:") + stamp;
}

class Merger {
  public:
    Merger(const char* original, std::size_t originalSize, const MergeOptions& options)
        : m_options(options) {
        m_original.data = original != nullptr ? original : "";
        m_original.size = original != nullptr ? originalSize : 0;
        m_base.data = options.base != nullptr ? options.base : "";
        m_base.size = options.base != nullptr ? options.baseSize : 0;
        m_eol = LineEnd(m_original.data, m_original.size);
    }
    MergeResult Run(const std::uint8_t* data, std::size_t size);

  private:
    CardWriter& Writer(Version version) {
        auto& writer = m_writers[static_cast<std::size_t>(version)];
        if (!writer) writer = std::make_unique<CardWriter>(version);
        return *writer;
    }
    void Keys(const Text& text, Card& card, Version version);
    std::vector<std::string> Target(const Card& original, const Card& base,
                                    const std::vector<std::string>& device, MergedItem& report);
    void MergeCard(const Card& card, const std::vector<std::string>& device, MergedItem& report,
                   std::string& out);
    void Carry(const Unit& unit, std::string& line) const;

    const MergeOptions& m_options;
    Text m_original, m_base;
    std::string_view m_eol;
    std::array<std::unique_ptr<CardWriter>, 3> m_writers;
    CardLines m_lines;
};

// Each line of the card on its own through import and export, written as
// lines of version.
void Merger::Keys(const Text& text, Card& card, Version version) {
    if (card.keyed) return;
    card.keyed = true;
    std::string mini;
    for (Unit& unit : card.units) {
        if (unit.name == "VERSION"sv) continue;
        mini.assign("BEGIN:VCARD\r\nVERSION:").append(card.versionText).append("\r\n");
        mini.append(text.data + unit.begin, unit.end - unit.begin);
        if (mini.back() != '\n' && mini.back() != '\r') mini += "\r\n";
        mini += "END:VCARD\r\n";
        const ImportResult imported = ImportVcard(mini.data(), mini.size());
        if (!imported.ok || imported.items.size() != 1) continue;  // not carried: kept as it is
        Writer(version).Write(imported.streams.data(), imported.streams.size(), m_lines);
        for (OutLine& line : m_lines.lines) unit.keys.push_back(std::move(line.text));
    }
}

// What the changed line (the device's) takes over from the original line it
// replaces: the group and the parameters the contact could not carry.
void Merger::Carry(const Unit& unit, std::string& changed) const {
    Reader reader(m_original.data + unit.begin, unit.end - unit.begin);
    ContentLine line, carried;
    std::string error, out;
    if (unit.keys.empty() || reader.Next(line, error) != Reader::Result::Line) return;
    Reader keyReader(unit.keys.front().data(), unit.keys.front().size());
    if (keyReader.Next(carried, error) != Reader::Result::Line) return;
    for (const Param& p : line.params) {
        if (p.name == "ENCODING"sv || p.name == "CHARSET"sv || carried.Find(p.name) != nullptr)
            continue;
        std::string values;
        for (const std::string& v : p.values) (values += values.empty() ? "" : ",") += v;
        AppendParam(out, p.name, values);
    }
    const std::size_t colon = changed.find(':');
    changed.insert(colon == std::string::npos ? changed.size() : colon, out);
    if (!line.group.empty() && carried.group.empty() && LineName(changed).data() == changed.data())
        changed.insert(0, line.group + ".");
}

// Three-way: per property name, the device's lines where only the device
// changed that property, the original's where only the original did or
// neither, and on both sides the winner's (the original's unless the device
// is preferred), reported as a conflict.
std::vector<std::string> Merger::Target(const Card& original, const Card& base,
                                        const std::vector<std::string>& device,
                                        MergedItem& report) {
    using Lines = std::unordered_map<std::string, std::vector<std::string>>;
    const auto byName = [](Lines& lines, const std::string& line) {
        lines[std::string(LineName(line))].push_back(line);
    };
    Lines o, b, d;
    std::vector<std::string> names;  // in the order they first appear: device, original, base
    std::set<std::string> seen;
    const auto name = [&](const std::string& line) {
        std::string n(LineName(line));
        if (seen.insert(n).second) names.push_back(n);
    };
    for (const std::string& line : device) {
        name(line);
        byName(d, line);
    }
    for (const Unit& unit : original.units) {
        for (const std::string& key : unit.keys) {
            name(key);
            byName(o, key);
        }
    }
    for (const Unit& unit : base.units) {
        for (const std::string& key : unit.keys) {
            name(key);
            byName(b, key);
        }
    }
    const auto same = [](std::vector<std::string> x, std::vector<std::string> y) {
        std::sort(x.begin(), x.end());
        std::sort(y.begin(), y.end());
        return x == y;
    };
    std::vector<std::string> target;
    for (const std::string& n : names) {
        if (n == "REV") continue;
        const MergeDecision decision =
            Decide(!same(d[n], b[n]), !same(o[n], b[n]), same(d[n], o[n]), m_options.preferDevice);
        if (decision.conflict) report.conflicts.push_back({n, decision.takeDevice});
        for (std::string& line : decision.takeDevice ? d[n] : o[n])
            target.push_back(std::move(line));
    }
    return target;
}

void Merger::MergeCard(const Card& card, const std::vector<std::string>& device, MergedItem& report,
                       std::string& out) {
    // Each carried line of the original finds the same line of the device's.
    std::unordered_multimap<std::string_view, std::size_t> open;
    for (std::size_t i = 0; i < device.size(); ++i) {
        if (LineName(device[i]) != "REV"sv) open.emplace(device[i], i);
    }
    std::vector<bool> used(device.size(), false);
    enum class Fate : unsigned char { Kept, Removed, Replaced };
    std::vector<Fate> fate(card.units.size(), Fate::Kept);
    std::vector<std::size_t> replacement(card.units.size(), 0);
    for (std::size_t u = 0; u < card.units.size(); ++u) {
        const Unit& unit = card.units[u];
        if (unit.keys.empty() || unit.name == "REV"sv) continue;
        bool all = true;
        for (const std::string& key : unit.keys) all = all && open.count(key) > 0;
        if (!all) {
            fate[u] = Fate::Removed;
            continue;
        }
        for (const std::string& key : unit.keys) {
            const auto it = open.find(key);
            used[it->second] = true;
            open.erase(it);
        }
    }
    // What the device has anew takes the place of a removed line of its name.
    std::unordered_map<std::string_view, std::vector<std::size_t>> removed;  // by name, last first
    for (std::size_t u = card.units.size(); u-- > 0;) {
        if (fate[u] == Fate::Removed) removed[card.units[u].name].push_back(u);
    }
    std::vector<std::size_t> added;
    for (std::size_t i = 0; i < device.size(); ++i) {
        if (used[i] || LineName(device[i]) == "REV"sv) continue;
        const auto it = removed.find(LineName(device[i]));
        if (it != removed.end() && !it->second.empty()) {
            fate[it->second.back()] = Fate::Replaced;
            replacement[it->second.back()] = i;
            it->second.pop_back();
        } else {
            added.push_back(i);
        }
    }
    std::set<std::pair<std::string_view, PropertyChange::Kind>> said;
    const auto change = [&report, &said](std::string_view name, PropertyChange::Kind kind) {
        if (said.emplace(name, kind).second) report.changes.push_back({std::string(name), kind});
    };
    for (std::size_t u = 0; u < card.units.size(); ++u) {
        if (fate[u] == Fate::Removed) change(card.units[u].name, PropertyChange::Kind::Removed);
        if (fate[u] == Fate::Replaced) change(card.units[u].name, PropertyChange::Kind::Changed);
    }
    for (std::size_t i : added) change(LineName(device[i]), PropertyChange::Kind::Added);
    const char* text = m_original.data;
    if (report.changes.empty()) {
        report.outcome = MergedItem::Outcome::Unchanged;
        out.append(text + card.begin, card.end - card.begin);
        return;
    }
    report.outcome = MergedItem::Outcome::Changed;
    const std::string rev = Revision();
    bool revWritten = false;
    out.append(text + card.begin, card.body - card.begin);
    for (std::size_t u = 0; u < card.units.size(); ++u) {
        const Unit& unit = card.units[u];
        if (unit.name == "REV"sv && !revWritten) {
            EmitLine(out, OutLine{rev}, m_eol);
            revWritten = true;
        } else if (unit.name == "REV"sv || fate[u] == Fate::Removed) {
            continue;
        } else if (fate[u] == Fate::Kept) {
            out.append(text + unit.begin, unit.end - unit.begin);
        } else {
            OutLine line{device[replacement[u]]};
            Carry(unit, line.text);
            line.qp = line.text.find(";ENCODING=QUOTED-PRINTABLE") < line.text.find(':');
            EmitLine(out, line, m_eol);
        }
    }
    for (std::size_t i : added) {
        OutLine line{device[i]};
        line.qp = line.text.find(";ENCODING=QUOTED-PRINTABLE") < line.text.find(':');
        EmitLine(out, line, m_eol);
    }
    if (!revWritten) EmitLine(out, OutLine{rev}, m_eol);
    out.append(text + card.endLine, card.end - card.endLine);
}

MergeResult Merger::Run(const std::uint8_t* data, std::size_t size) {
    MergeResult result;
    const auto fail = [&result](std::string why, unsigned int line) {
        result = MergeResult();
        result.error = std::move(why);
        result.errorLine = line;
        return std::move(result);
    };
    std::string error;
    unsigned int errorLine = 0;
    if (!Scan(m_original, error, errorLine)) return fail("the original: " + error, errorLine);
    if (m_options.base != nullptr && !Scan(m_base, error, errorLine))
        return fail("the base: " + error, errorLine);
    const ImportResult imported = ImportVcard(m_original.data, m_original.size);
    if (!imported.ok || imported.items.size() != m_original.cards.size())
        return fail("the original: " + imported.error, imported.errorLine);
    MatchImported(m_original, imported);
    if (m_options.base != nullptr) {
        const ImportResult base = ImportVcard(m_base.data, m_base.size);
        if (!base.ok || base.items.size() != m_base.cards.size())
            return fail("the base: " + base.error, base.errorLine);
        MatchImported(m_base, base);
    }

    // Each card's merged text, written in place of the card; added cards after the last.
    std::vector<std::string> merged(m_original.cards.size());
    std::vector<bool> replaced(m_original.cards.size(), false);
    std::string appended;
    if (data == nullptr) size = 0;
    const bool cut = ForEachContact(
        data, size,
        [&](const ItemSpan& span) {
            const std::uint8_t* stream = data + span.offset;
            Writer(Version::V30).Write(stream, span.size, m_lines);
            MergedItem& report = result.items.emplace_back();
            report.kind = "contact";
            report.offset = span.offset;
            report.uid = m_lines.uid;
            report.instance = m_lines.instance;
            report.malformed = m_lines.item.malformed;
            report.diagnostics = m_lines.item.diagnostics;
            report.losses = m_lines.item.losses;
            if (report.malformed) {  // a stream cut short would remove what it lost
                Fail(report, "its stream is malformed; the original is left as it was");
                return true;
            }
            const std::size_t at = m_original.matcher.Match(m_lines.uid, m_lines.instance);
            if (at == ComponentMatcher::kNone) {
                report.outcome = MergedItem::Outcome::Added;
                appended.append("BEGIN:VCARD").append(m_eol).append("VERSION:3.0").append(m_eol);
                for (const OutLine& line : m_lines.lines) EmitLine(appended, line, m_eol);
                appended.append("END:VCARD").append(m_eol);
                return true;
            }
            Card& card = m_original.cards[at];
            replaced[at] = true;
            std::string& out = merged[at];
            const ImportedItem& own = imported.items[at];
            const bool threeWay = m_options.base != nullptr;
            if (!threeWay && own.size == span.size &&
                std::memcmp(stream, imported.streams.data() + own.offset, span.size) == 0) {
                report.outcome = MergedItem::Outcome::Unchanged;  // the same stream
                out.assign(m_original.data + card.begin, card.end - card.begin);
                return true;
            }
            Keys(m_original, card, card.version);
            Writer(card.version).Write(stream, span.size, m_lines);
            std::vector<std::string> device;
            for (OutLine& line : m_lines.lines) device.push_back(std::move(line.text));
            if (threeWay) {
                const std::size_t b = m_base.matcher.Match(m_lines.uid, m_lines.instance);
                if (b != ComponentMatcher::kNone) {
                    Card& base = m_base.cards[b];
                    Keys(m_base, base, card.version);
                    device = Target(card, base, device, report);
                }
            }
            MergeCard(card, device, report, out);
            return true;
        },
        error);
    if (!cut) return fail(error, 0);

    std::size_t at = 0;
    const Text& original = m_original;
    for (std::size_t i = 0; i < original.cards.size(); ++i) {
        const Card& card = original.cards[i];
        result.text.append(original.data + at, card.begin - at);
        if (replaced[i]) {
            result.text += merged[i];
        } else {
            result.text.append(original.data + card.begin, card.end - card.begin);
        }
        at = card.end;
    }
    result.text += appended;
    result.text.append(original.data + at, original.size - at);
    result.ok = true;
    return result;
}

}  // namespace

MergeResult MergeVcard(const char* original, std::size_t originalSize, const std::uint8_t* data,
                       std::size_t size, const MergeOptions& options) {
    return Merger(original, originalSize, options).Run(data, size);
}

}  // namespace PimBridge
