#include "bridges/mime/private/Charsets.h"

#include <gmime/gmime.h>

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

namespace PimBridge {
namespace Mime {

std::string Unreadable(const std::string& charset, std::string_view bytes, bool partial) {
    iconv_t cd = g_mime_iconv_open("UTF-8", charset.c_str());
    if (cd == reinterpret_cast<iconv_t>(-1)) return "unknown charset " + charset;
    g_mime_iconv_close(cd);
    const char* name = g_mime_charset_iconv_name(charset.c_str());
    // Most text is 7-bit, which reads the same in every charset but those
    // of wide units: no conversion needed to know.
    const bool wide = g_ascii_strncasecmp(name, "UTF-16", 6) == 0 ||
                      g_ascii_strncasecmp(name, "UTF-32", 6) == 0 ||
                      g_ascii_strncasecmp(name, "UCS", 3) == 0;
    if (!wide && std::none_of(bytes.begin(), bytes.end(), [](char c) { return (c & 0x80) != 0; }))
        return std::string();
    if (g_ascii_strcasecmp(name, "UTF-8") == 0) {
        // iconv passes UTF-8 to UTF-8 unchecked.
        const char* end = nullptr;
        if (g_utf8_validate(bytes.data(), static_cast<gssize>(bytes.size()), &end))
            return std::string();
        const std::size_t rest = bytes.size() - static_cast<std::size_t>(end - bytes.data());
        const bool cut =
            partial && rest < 4 &&
            g_utf8_get_char_validated(end, static_cast<gssize>(rest)) == static_cast<gunichar>(-2);
        return cut ? std::string() : "bytes not valid in " + charset;
    }
    GError* error = nullptr;
    gsize read = 0, written = 0;
    gchar* text = g_convert(bytes.data(), static_cast<gssize>(bytes.size()), "UTF-8", name, &read,
                            &written, &error);
    g_free(text);
    const bool fault =
        error != nullptr && !(partial && error->code == G_CONVERT_ERROR_PARTIAL_INPUT);
    if (error != nullptr) g_error_free(error);
    return fault ? "bytes not valid in " + charset : std::string();
}

namespace {

// An encoded word "=?charset?B|Q?text?=" of a raw value.
struct Word {
    std::size_t begin = 0, end = 0;  // the whole word
    std::string charset;             // without a language
    std::size_t charsetBegin = 0, charsetEnd = 0;
    char encoding = 0;
    std::string_view text;
};

// The encoded words of a raw value, in order. Where a word's text ends (its
// "?=") and where the next blank is are remembered across candidates, so
// that a value of many unclosed "=?" is read in time linear in its length.
class WordScanner {
  public:
    explicit WordScanner(std::string_view raw) : m_raw(raw) {}

    bool Next(Word& w) {
        constexpr std::size_t npos = std::string_view::npos;
        for (std::size_t at = m_raw.find("=?", m_pos); at != npos; at = m_raw.find("=?", at + 2)) {
            const std::size_t q1 = m_raw.find('?', at + 2);
            if (q1 == npos) return false;
            if (q1 + 3 >= m_raw.size() || m_raw[q1 + 2] != '?') continue;
            const char encoding = static_cast<char>(m_raw[q1 + 1] | 0x20);
            if (encoding != 'b' && encoding != 'q') continue;
            const std::size_t from = q1 + 3;
            if (m_close == npos || m_close < from) m_close = m_raw.find("?=", from);
            if (m_close == npos) return false;  // no word closes after here
            if (m_blank != npos && m_blank < from) m_blank = m_raw.find_first_of(" \t\r\n", from);
            const std::string_view charset = m_raw.substr(at + 2, q1 - at - 2);
            if (charset.empty() || charset.find_first_of(" \t\r\n") != npos || m_blank < m_close)
                continue;
            w.begin = at;
            w.end = m_close + 2;
            w.charsetBegin = at + 2;
            w.charsetEnd = at + 2 + std::min(charset.size(), charset.find('*'));
            w.charset = std::string(m_raw.substr(w.charsetBegin, w.charsetEnd - w.charsetBegin));
            w.encoding = encoding;
            w.text = m_raw.substr(from, m_close - from);
            m_pos = w.end;
            return true;
        }
        return false;
    }

  private:
    std::string_view m_raw;
    std::size_t m_pos = 0;
    std::size_t m_close = std::string_view::npos;  // the first "?=" at or after the last look
    std::size_t m_blank = 0;                       // the first blank likewise (npos: none left)
};

int Hex(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    c = static_cast<char>(c | 0x20);
    return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

void AppendDecoded(const Word& w, std::string& out) {
    if (w.encoding == 'b') {
        const std::string text(w.text);
        gsize length = 0;
        guchar* bytes = g_base64_decode(text.c_str(), &length);
        out.append(reinterpret_cast<const char*>(bytes), length);
        g_free(bytes);
        return;
    }
    for (std::size_t i = 0; i < w.text.size(); ++i) {
        const char c = w.text[i];
        if (c == '_') {
            out.push_back(' ');
        } else if (c == '=' && i + 2 < w.text.size() && Hex(w.text[i + 1]) >= 0 &&
                   Hex(w.text[i + 2]) >= 0) {
            out.push_back(static_cast<char>(Hex(w.text[i + 1]) * 16 + Hex(w.text[i + 2])));
            i += 2;
        } else {
            out.push_back(c);
        }
    }
}

// Runs of adjacent encoded words of one charset, as GMime joins them before
// converting (a character may be split across words), with what is wrong
// with each run.
struct Run {
    std::vector<Word> words;
    std::string trouble;
};

std::vector<Run> Runs(std::string_view raw) {
    std::vector<Run> runs;
    WordScanner words(raw);
    Word w;
    std::string bytes;
    while (words.Next(w)) {
        const bool joins =
            !runs.empty() &&
            g_ascii_strcasecmp(runs.back().words.back().charset.c_str(), w.charset.c_str()) == 0 &&
            raw.substr(runs.back().words.back().end, w.begin - runs.back().words.back().end)
                    .find_first_not_of(" \t\r\n") == std::string_view::npos;
        if (!joins) runs.emplace_back();
        runs.back().words.push_back(w);
    }
    for (Run& run : runs) {
        bytes.clear();
        for (const Word& word : run.words) AppendDecoded(word, bytes);
        run.trouble = Unreadable(run.words.front().charset, bytes, false);
    }
    return runs;
}

// The first segment of an RFC 2231 parameter value, name*=charset'lang'%XX:
// its charset, where it stands, and its bytes.
struct Extended {
    std::string charset;
    std::size_t charsetBegin = 0, charsetEnd = 0;
    std::string trouble;
};

std::vector<Extended> ExtendedValues(std::string_view raw) {
    // Charset and language names are short: looking for their quotes only
    // this far keeps a value of many "*=" linear to read.
    constexpr std::size_t kNameRoom = 64;
    std::vector<Extended> values;
    for (std::size_t at = raw.find("*="); at != std::string_view::npos;
         at = raw.find("*=", at + 2)) {
        std::size_t i = at + 2;
        if (i < raw.size() && raw[i] == '"') ++i;
        const std::size_t quote = raw.substr(0, i + kNameRoom).find('\'', i);
        if (quote == std::string_view::npos || quote == i) continue;
        const std::string_view charset = raw.substr(i, quote - i);
        if (charset.find_first_of(" \t\r\n;=\"") != std::string_view::npos) continue;
        const std::size_t lang = raw.substr(0, quote + 1 + kNameRoom).find('\'', quote + 1);
        if (lang == std::string_view::npos) continue;
        Extended e;
        e.charset = std::string(charset);
        e.charsetBegin = i;
        e.charsetEnd = quote;
        std::string bytes;
        for (i = lang + 1; i < raw.size() && std::strchr(" \t\r\n;\"", raw[i]) == nullptr; ++i) {
            if (raw[i] == '%' && i + 2 < raw.size() && Hex(raw[i + 1]) >= 0 &&
                Hex(raw[i + 2]) >= 0) {
                bytes.push_back(static_cast<char>(Hex(raw[i + 1]) * 16 + Hex(raw[i + 2])));
                i += 2;
            } else {
                bytes.push_back(raw[i]);
            }
        }
        // A first continuation (name*0*=) may end inside a character.
        const bool continued = at >= 2 && raw[at - 2] == '*' && raw[at - 1] == '0';
        e.trouble = Unreadable(e.charset, bytes, continued);
        values.push_back(std::move(e));
        at = i - 2 > at ? i - 2 : at;  // the next "*=" lies after this value
    }
    return values;
}

}  // namespace

CharsetTrouble FindCharsetTrouble(const char* raw) {
    CharsetTrouble found;
    if (raw == nullptr) return found;
    const std::string_view text(raw);
    const bool eightBit = std::find_if(text.begin(), text.end(),
                                       [](char c) { return (c & 0x80) != 0; }) != text.end();
    if (eightBit && !g_utf8_validate(raw, static_cast<gssize>(text.size()), nullptr)) {
        found.what = "8-bit text without a charset";
        found.fallsBack = true;
        return found;
    }
    if (text.find("=?") != std::string_view::npos) {
        for (const Run& run : Runs(text)) {
            if (run.trouble.empty()) continue;
            found.what = "an encoded word: " + run.trouble;
            found.fallsBack = run.trouble.rfind("unknown", 0) == 0;
            return found;
        }
    }
    if (text.find("*=") != std::string_view::npos) {
        for (const Extended& e : ExtendedValues(text)) {
            if (e.trouble.empty()) continue;
            found.what = "a parameter value: " + e.trouble;
            return found;
        }
    }
    return found;
}

std::string WithFallbackCharset(const char* raw) {
    std::string out = raw != nullptr ? raw : "";
    const std::vector<Run> runs = Runs(out);
    // Each place to relabel, from the end, so that earlier offsets stay true.
    std::vector<std::pair<std::size_t, std::size_t>> places;
    for (const Run& run : runs) {
        if (run.trouble.empty()) continue;
        for (const Word& w : run.words) places.emplace_back(w.charsetBegin, w.charsetEnd);
    }
    for (const Extended& e : ExtendedValues(out)) {
        if (!e.trouble.empty()) places.emplace_back(e.charsetBegin, e.charsetEnd);
    }
    std::sort(places.begin(), places.end());
    for (auto place = places.rbegin(); place != places.rend(); ++place)
        out.replace(place->first, place->second - place->first, kFallbackCharset);
    return out;
}

}  // namespace Mime
}  // namespace PimBridge
