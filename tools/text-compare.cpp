// text-compare --format ics|vcf A B: whether two files hold the same
// calendar (or cards) as the format's reader sees them. Exit 0 when equal; 1
// with the differences on stdout; 2 on bad use or a file the reader cannot
// read; 3 when this build has no reader for the format.
//
// Calendars are read by libical: the same components in the same nesting and
// order, and in each the same properties, each with the same parameters (in
// any order) and value; one line per difference ("VCALENDAR/VEVENT[2] (UID
// x): SUMMARY differs").
//
// Cards are read by the vCard bridge's content-line reader: the same cards in
// the same order, each with the same content lines in any order. A line is
// its group, name, parameters (names in upper case, values as a set, TYPE
// values in lower case, bare 2.1 values as TYPE) and value, decoded:
// quoted-printable and charsets to UTF-8, base64 to bytes, backslash escapes
// to characters (each component of a structured value on its own). Folding,
// line ends, encodings and the order of lines and parameters may differ. The
// first difference is named ("card 2: only in A: .FN:Jane").
//
// tools/corpus-check.sh runs it on every file and its merge onto itself, and
// on an edited calendar merge to see that exactly the edit changed.
#ifdef TEXT_COMPARE_ICS
#include <libical/ical.h>
#endif

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#ifdef TEXT_COMPARE_VCF
#include "bridges/vcard/private/ContentLine.h"
#endif

namespace {

#ifdef TEXT_COMPARE_ICS
namespace ics {

std::string ReadFile(const char* path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw std::runtime_error(std::string("cannot read ") + path);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

std::string Take(char* text) {
    std::string out = text != nullptr ? text : "";
    std::free(text);
    return out;
}

std::string ComponentName(icalcomponent* c) {
    const char* name = icalcomponent_kind_to_string(icalcomponent_isa(c));
    return name != nullptr && name[0] != '\0' ? name : "X-COMPONENT";
}

// One property as a comparable text: its value and its parameters sorted,
// so that the order libical writes parameters in does not count.
std::string Canonical(icalproperty* p) {
    std::vector<std::string> params;
    for (icalparameter* q = icalproperty_get_first_parameter(p, ICAL_ANY_PARAMETER); q != nullptr;
         q = icalproperty_get_next_parameter(p, ICAL_ANY_PARAMETER)) {
        params.push_back(Take(icalparameter_as_ical_string_r(q)));
    }
    std::sort(params.begin(), params.end());
    std::string out;
    for (const std::string& s : params) out += ";" + s;
    return out + ":" + Take(icalproperty_get_value_as_string_r(p));
}

using Properties = std::map<std::string, std::vector<std::string>>;

Properties PropertiesOf(icalcomponent* c) {
    Properties out;
    for (icalproperty* p = icalcomponent_get_first_property(c, ICAL_ANY_PROPERTY); p != nullptr;
         p = icalcomponent_get_next_property(c, ICAL_ANY_PROPERTY)) {
        out[Take(icalproperty_get_property_name_r(p))].push_back(Canonical(p));
    }
    for (auto& entry : out) std::sort(entry.second.begin(), entry.second.end());
    return out;
}

std::vector<icalcomponent*> Children(icalcomponent* c) {
    std::vector<icalcomponent*> out;
    for (icalcomponent* k = icalcomponent_get_first_component(c, ICAL_ANY_COMPONENT); k != nullptr;
         k = icalcomponent_get_next_component(c, ICAL_ANY_COMPONENT)) {
        out.push_back(k);
    }
    return out;
}

// Prints every difference under path; returns their count.
int Compare(icalcomponent* a, icalcomponent* b, const std::string& path) {
    int differences = 0;
    std::string where = path;
    if (icalproperty* uid = icalcomponent_get_first_property(a, ICAL_UID_PROPERTY)) {
        where += " (UID " + Take(icalproperty_get_value_as_string_r(uid)) + ")";
    }
    const Properties pa = PropertiesOf(a);
    const Properties pb = PropertiesOf(b);
    for (const auto& entry : pa) {
        const auto found = pb.find(entry.first);
        if (found == pb.end()) {
            std::cout << where << ": " << entry.first << " only in the first\n";
            ++differences;
        } else if (found->second != entry.second) {
            std::cout << where << ": " << entry.first << " differs\n";
            ++differences;
        }
    }
    for (const auto& entry : pb) {
        if (pa.count(entry.first) == 0) {
            std::cout << where << ": " << entry.first << " only in the second\n";
            ++differences;
        }
    }
    const std::vector<icalcomponent*> ca = Children(a);
    const std::vector<icalcomponent*> cb = Children(b);
    std::map<std::string, int> seen;
    for (std::size_t i = 0; i < std::max(ca.size(), cb.size()); ++i) {
        if (i >= ca.size() || i >= cb.size() || ComponentName(ca[i]) != ComponentName(cb[i])) {
            std::cout << path << ": components differ from the " << i + 1 << ". on (" << ca.size()
                      << " and " << cb.size() << ")\n";
            return differences + 1;
        }
        const std::string name = ComponentName(ca[i]);
        differences +=
            Compare(ca[i], cb[i], path + "/" + name + "[" + std::to_string(++seen[name]) + "]");
    }
    return differences;
}

struct ComponentDeleter {
    void operator()(icalcomponent* c) const { icalcomponent_free(c); }
};
using ComponentPtr = std::unique_ptr<icalcomponent, ComponentDeleter>;

// libical refuses a content line with an empty value (an empty DESCRIPTION
// is valid iCalendar) and keeps an X-LIC-ERROR in its place, so removing such
// a line would read as an X-LIC-ERROR difference. Both files get the same
// stand-in for an empty value, which libical reads as text.
std::string WithEmptyValuesShown(const std::string& text) {
    std::string out;
    out.reserve(text.size());
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        end = end == std::string::npos ? text.size() : end + 1;
        std::size_t stop = end;
        while (stop > start && (text[stop - 1] == '\n' || text[stop - 1] == '\r')) --stop;
        const bool folded = end < text.size() && (text[end] == ' ' || text[end] == '\t');
        // The value starts after the first colon outside a quoted parameter.
        bool quoted = false;
        std::size_t colon = std::string::npos;
        for (std::size_t i = start; i < stop && colon == std::string::npos; ++i) {
            if (text[i] == '"') quoted = !quoted;
            if (text[i] == ':' && !quoted) colon = i;
        }
        out.append(text, start, stop - start);
        if (!folded && colon != std::string::npos && colon + 1 == stop) out += "\xE2\x90\x80";
        out.append(text, stop, end - stop);
        start = end;
    }
    return out;
}

int CompareCalendars(const std::string& a, const std::string& b) {
    ComponentPtr ra(icalparser_parse_string(WithEmptyValuesShown(a).c_str()));
    ComponentPtr rb(icalparser_parse_string(WithEmptyValuesShown(b).c_str()));
    if (ra == nullptr || rb == nullptr) {
        std::cerr << "text-compare: libical reads no calendar in the "
                  << (ra == nullptr ? "first" : "second") << " file\n";
        return 2;
    }
    if (ComponentName(ra.get()) != ComponentName(rb.get())) {
        std::cout << "the files' top components differ\n";
        return 1;
    }
    return Compare(ra.get(), rb.get(), ComponentName(ra.get())) == 0 ? 0 : 1;
}

}  // namespace ics
#endif

#ifdef TEXT_COMPARE_VCF
namespace vcf {

using namespace PimBridge::Vcard;

using Cards = std::vector<std::vector<std::string>>;  // each card's lines, sorted

std::string Lower(std::string text) {
    for (char& c : text) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return text;
}

// One line as comparable text: "group.NAME;P=v1,v2;...:value".
std::string Canonical(const ContentLine& line) {
    std::vector<std::string> params;
    for (const Param& p : line.params) {
        if (p.name == "ENCODING" || p.name == "CHARSET") continue;  // decoded already
        std::vector<std::string> values;
        for (const std::string& v : p.values) {
            ForEachListItem(v, [&](std::string_view item) {
                values.push_back(p.name == "TYPE" ? Lower(std::string(item)) : std::string(item));
            });
        }
        std::sort(values.begin(), values.end());
        std::string text = p.name + "=";
        for (const std::string& v : values) text += v + ",";
        params.push_back(text);
    }
    std::sort(params.begin(), params.end());
    std::string out = Lower(line.group) + "." + line.name;
    for (const std::string& p : params) out += ";" + p;
    out += ":";
    std::string decoded;
    if (line.base64 && DecodeBase64(line.value, decoded)) {
        out += "base64 " + decoded;
        return out;
    }
    std::vector<std::string> parts;
    SplitUnescaped(line.value, ';', parts);
    for (std::size_t i = 0; i < parts.size(); ++i) out += (i == 0 ? "" : "\x1F") + parts[i];
    return out;
}

bool Read(const char* path, Cards& cards, std::string& error) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        error = std::string("cannot read ") + path;
        return false;
    }
    std::stringstream buffer;
    buffer << in.rdbuf();
    const std::string text = buffer.str();
    Reader reader(text.data(), text.size());
    ContentLine line;
    int depth = 0;
    for (;;) {
        const Reader::Result r = reader.Next(line, error);
        if (r == Reader::Result::End) break;
        if (r == Reader::Result::Malformed) {
            error = std::string(path) + ":" + std::to_string(reader.LineNumber()) + ": " + error;
            return false;
        }
        const bool frame = SameName(line.value, "VCARD");
        if (line.name == "BEGIN" && frame && depth++ == 0) {
            cards.emplace_back();
            reader.Version21(false);
            continue;
        }
        if (line.name == "END" && frame && depth > 0 && --depth == 0) {
            std::sort(cards.back().begin(), cards.back().end());
            continue;
        }
        if (depth == 0) continue;
        if (line.name == "VERSION") reader.Version21(line.value == "2.1");
        cards.back().push_back(Canonical(line));
    }
    return true;
}

// Cards are compared card by card in order, each as a set of lines; the
// first difference is named.
int CompareCards(const char* first, const char* second) {
    const char* files[] = {first, second};
    Cards a, b;
    std::string error;
    if (!Read(files[0], a, error) || !Read(files[1], b, error)) {
        std::cerr << error << "\n";
        return 2;
    }
    for (std::size_t i = 0; i < a.size() || i < b.size(); ++i) {
        if (i >= a.size() || i >= b.size()) {
            std::cout << "card " << i + 1 << " only in " << files[i >= a.size() ? 1 : 0] << "\n";
            return 1;
        }
        std::vector<std::string> onlyA, onlyB;
        std::set_difference(a[i].begin(), a[i].end(), b[i].begin(), b[i].end(),
                            std::back_inserter(onlyA));
        std::set_difference(b[i].begin(), b[i].end(), a[i].begin(), a[i].end(),
                            std::back_inserter(onlyB));
        if (!onlyA.empty() || !onlyB.empty()) {
            std::cout << "card " << i + 1 << ": "
                      << (!onlyA.empty() ? "only in A: " + onlyA.front()
                                         : "only in B: " + onlyB.front())
                      << "\n";
            return 1;
        }
    }
    return 0;
}

}  // namespace vcf
#endif

}  // namespace

int main(int argc, char** argv) {
    std::string format;
    std::vector<const char*> files;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--format" && i + 1 < argc) {
            format = argv[++i];
        } else {
            files.push_back(argv[i]);
        }
    }
    if (files.size() != 2 || (format != "ics" && format != "vcf")) {
        std::cerr << "usage: text-compare --format ics|vcf A B\n";
        return 2;
    }
    if (format == "vcf") {
#ifdef TEXT_COMPARE_VCF
        return vcf::CompareCards(files[0], files[1]);
#else
        std::cerr << "text-compare: no vCard reader in this build\n";
        return 3;
#endif
    }
#ifdef TEXT_COMPARE_ICS
    try {
        return ics::CompareCalendars(ics::ReadFile(files[0]), ics::ReadFile(files[1]));
    } catch (const std::exception& e) {
        std::cerr << "text-compare: " << e.what() << '\n';
        return 2;
    }
#else
    std::cerr << "text-compare: no iCalendar reader in this build\n";
    return 3;
#endif
}
