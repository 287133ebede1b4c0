// vcard-compare [--format vcf] A B: whether two vCard files hold the same
// cards as the bridge's content-line reader sees them: the same cards in the
// same order, each with the same content lines in any order. A line is its
// group, name, parameters (names in upper case, values as a set, TYPE values
// in lower case, bare 2.1 values as TYPE) and value, decoded: quoted-printable
// and charsets to UTF-8, base64 to bytes, backslash escapes to characters
// (each component of a structured value on its own). Folding, line ends,
// encodings and the order of lines and parameters may differ. Exit 0 when
// equal; 1 with the first difference on stdout; 2 on bad use.
//
// The corpus script runs it on every vCard file and its merge onto itself.
#include <algorithm>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "bridges/vcard/private/ContentLine.h"

namespace {

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

}  // namespace

int main(int argc, char** argv) {
    std::vector<const char*> files;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--format" && i + 1 < argc && std::string(argv[i + 1]) == "vcf") {
            ++i;
        } else if (!arg.empty() && arg[0] != '-') {
            files.push_back(argv[i]);
        } else {
            files.clear();
            break;
        }
    }
    if (files.size() != 2) {
        std::cerr << "usage: vcard-compare [--format vcf] A B\n";
        return 2;
    }
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
