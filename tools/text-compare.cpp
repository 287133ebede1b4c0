// text-compare --format ics|vcf A B: whether two files hold the same
// calendar (or cards) as the format's reader sees them: the same components
// in the same nesting and order, and in each the same properties, each with
// the same parameters (in any order) and value. Exit 0 when equal; 1 with one
// line per difference on stdout ("VCALENDAR/VEVENT[2] (UID x): SUMMARY
// differs"); 2 on bad use or a file the reader cannot read; 3 when this build
// has no reader for the format.
//
// tools/corpus-check.sh runs it on every file and its merge onto itself, and
// on an edited merge to see that exactly the edit changed.
#include <libical/ical.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

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
        std::cerr << "text-compare: no vCard reader in this build\n";
        return 3;
    }
    try {
        return CompareCalendars(ReadFile(files[0]), ReadFile(files[1]));
    } catch (const std::exception& e) {
        std::cerr << "text-compare: " << e.what() << '\n';
        return 2;
    }
}
