#include "bridges/vcard/private/ContentLine.h"

#include "bridges/common/Charset.h"

#include <iconv.h>

#include <array>
#include <cerrno>
#include <cstring>

namespace PimBridge::Vcard {

namespace {

char Upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

void AppendUpper(std::string& out, std::string_view text) {
    for (char c : text) out += Upper(c);
}

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

// Letters, digits and '-' make names; '_' is tolerated, some writers use it.
bool IsNameChar(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' ||
           c == '_';
}

// A line of nothing but base64: how old writers continue a base64 value.
bool IsBase64Run(std::string_view line) {
    if (line.empty()) return false;
    for (char c : line) {
        if (!((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
              c == '+' || c == '/' || c == '=' || c == ' ' || c == '\t'))
            return false;
    }
    return true;
}

bool IsBlank(std::string_view line) {
    for (char c : line) {
        if (c != ' ' && c != '\t') return false;
    }
    return true;
}

// Quoted-printable: =XX is a byte; an '=' without two hex digits stays as it is.
// Encoded line breaks become LF, the line break of escaped text.
void DecodeQuotedPrintable(std::string_view in, std::string& out) {
    out.clear();
    for (std::size_t i = 0; i < in.size(); ++i) {
        if (in.compare(i, 3, "=0D") == 0 || in.compare(i, 3, "=0d") == 0) {
            out += '\n';  // CRLF or a lone CR
            i += in.compare(i + 3, 3, "=0A") == 0 || in.compare(i + 3, 3, "=0a") == 0 ? 5u : 2u;
            continue;
        }
        if (in[i] == '=' && i + 2 < in.size()) {
            const int hi = HexDigit(in[i + 1]), lo = HexDigit(in[i + 2]);
            if (hi >= 0 && lo >= 0) {
                out += static_cast<char>(hi * 16 + lo);
                i += 2;
                continue;
            }
        }
        out += in[i];
    }
}

// Converts text from charset to UTF-8; false (text unchanged) when the charset
// is unknown or the bytes are not in it.
bool ConvertCharset(const std::string& charset, std::string& text) {
    if (SameName(charset, "UTF-8") || SameName(charset, "US-ASCII"))
        return IsUtf8(text.data(), text.size());
    iconv_t cd = iconv_open("UTF-8", charset.c_str());
    if (cd == reinterpret_cast<iconv_t>(-1)) return false;
    std::string out(text.size() * 4 + 16, '\0');
    char* in = text.data();
    std::size_t inLeft = text.size();
    char* to = out.data();
    std::size_t toLeft = out.size();
    const std::size_t r = iconv(cd, &in, &inLeft, &to, &toLeft);
    iconv_close(cd);
    if (r == static_cast<std::size_t>(-1) || inLeft != 0) return false;
    out.resize(out.size() - toLeft);
    text.swap(out);
    return true;
}

// A parameter value: quotes removed, and the circumflex escapes of quoted
// values (^n line break, ^' double quote, ^^ circumflex) decoded.
void AppendParamValue(std::string& out, std::string_view raw) {
    for (std::size_t i = 0; i < raw.size(); ++i) {
        if (raw[i] == '^' && i + 1 < raw.size()) {
            const char n = raw[i + 1];
            if (n == 'n' || n == 'N' || n == '\'' || n == '^') {
                out += n == '^' ? '^' : n == '\'' ? '"' : '\n';
                ++i;
                continue;
            }
        }
        out += raw[i];
    }
}

bool IsEncodingToken(std::string_view v) {
    return SameName(v, "QUOTED-PRINTABLE") || SameName(v, "BASE64") || SameName(v, "8BIT") ||
           SameName(v, "7BIT");
}

// Splits "group.NAME;params:value" into out; false with a reason otherwise.
bool ParseLine(std::string_view s, ContentLine& out, std::string& error) {
    std::size_t i = 0;
    while (i < s.size() && s[i] != ';' && s[i] != ':') ++i;
    if (i == s.size()) {
        error = "no ':' in the content line";
        return false;
    }
    const std::string_view token = s.substr(0, i);
    const std::size_t dot = token.rfind('.');
    out.group.assign(dot == std::string_view::npos ? std::string_view() : token.substr(0, dot));
    out.name.clear();
    AppendUpper(out.name, dot == std::string_view::npos ? token : token.substr(dot + 1));
    if (out.name.empty()) {
        error = "a content line without a property name";
        return false;
    }
    for (char c : token) {
        if (!IsNameChar(c) && c != '.') {
            error = "a property name or group with characters other than letters, digits, '-'";
            return false;
        }
    }
    out.params.clear();
    while (i < s.size() && s[i] == ';') {
        ++i;
        std::size_t start = i;
        while (i < s.size() && s[i] != '=' && s[i] != ';' && s[i] != ':') ++i;
        if (i == s.size()) break;
        Param param;
        const std::string_view pname = s.substr(start, i - start);
        if (s[i] != '=') {
            if (pname.empty()) continue;
            param.name = IsEncodingToken(pname) ? "ENCODING" : "TYPE";
            param.values.emplace_back(pname);
            out.params.push_back(std::move(param));
            continue;
        }
        AppendUpper(param.name, pname);
        ++i;
        do {
            if (!param.values.empty()) ++i;  // the comma
            param.values.emplace_back();
            if (i < s.size() && s[i] == '"') {
                const std::size_t close = s.find('"', i + 1);
                if (close == std::string_view::npos) {
                    error = "a parameter value without its closing quote";
                    return false;
                }
                AppendParamValue(param.values.back(), s.substr(i + 1, close - i - 1));
                i = close + 1;
            }
            start = i;
            while (i < s.size() && s[i] != ',' && s[i] != ';' && s[i] != ':') ++i;
            AppendParamValue(param.values.back(), s.substr(start, i - start));
        } while (i < s.size() && s[i] == ',');
        out.params.push_back(std::move(param));
    }
    if (i >= s.size() || s[i] != ':') {
        error = "no ':' in the content line";
        return false;
    }
    out.value.assign(s.substr(i + 1));
    return true;
}

}  // namespace

bool SameName(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (Upper(a[i]) != Upper(b[i])) return false;
    }
    return true;
}

const Param* ContentLine::Find(std::string_view paramName) const {
    for (const Param& p : params) {
        if (p.name == paramName) return &p;
    }
    return nullptr;
}

Reader::Reader(const char* text, std::size_t size) : m_text(text), m_size(size) {
    if (m_size >= 3 && m_text[0] == '\xEF' && m_text[1] == '\xBB' && m_text[2] == '\xBF') m_pos = 3;
}

bool Reader::PeekPhysical(std::string_view& out) const {
    if (m_pos >= m_size) return false;
    // Lines end at LF, CRLF or a lone CR: find the LF with memchr, then any CR before it.
    const char* start = m_text + m_pos;
    const std::size_t left = m_size - m_pos;
    const void* lf = std::memchr(start, '\n', left);
    std::size_t end =
        lf == nullptr ? left : static_cast<std::size_t>(static_cast<const char*>(lf) - start);
    const void* cr = std::memchr(start, '\r', end);
    if (cr != nullptr) end = static_cast<std::size_t>(static_cast<const char*>(cr) - start);
    out = std::string_view(start, end);
    return true;
}

bool Reader::PhysicalLine(std::string_view& out) {
    if (!PeekPhysical(out)) return false;
    m_pos += out.size();
    // CRLF, LF or CR; some writers double the CR.
    while (m_pos < m_size && m_text[m_pos] == '\r') ++m_pos;
    if (m_pos < m_size && m_text[m_pos] == '\n') ++m_pos;
    ++m_line;
    return true;
}

Reader::Result Reader::Next(ContentLine& out, std::string& error) {
    std::string_view first;
    do {
        if (!PhysicalLine(first)) return Result::End;
    } while (IsBlank(first));
    out.line = m_line;
    while (first.front() == ' ' || first.front() == '\t') first.remove_prefix(1);
    m_scratch.assign(first);
    std::string_view next;
    // Where continuation lines were joined, for quoted-printable soft breaks.
    const auto unfold = [&] {
        m_folds.clear();
        while (PeekPhysical(next) && !next.empty() && (next[0] == ' ' || next[0] == '\t')) {
            PhysicalLine(next);
            m_folds.push_back({m_scratch.size(), next[0]});
            m_scratch.append(next.substr(1));
        }
    };
    // A quoted-printable line that ends in '=' continues on the next line as
    // it stands: a blank there is text, not folding, so it takes the place of
    // the '='. text holds m_scratch from offset base on.
    const auto dropSoftBreaks = [this](std::string& text, std::size_t base) {
        for (auto f = m_folds.rbegin(); f != m_folds.rend(); ++f) {
            if (f->offset > base && m_scratch[f->offset - 1] == '=')
                text[f->offset - 1 - base] = f->blank;
        }
    };
    unfold();
    if (m_scratch.find('\0') != std::string::npos) {
        error = "a NUL byte in the content line";
        return Result::Malformed;
    }
    if (!ParseLine(m_scratch, out, error)) return Result::Malformed;

    const Param* encoding = out.Find("ENCODING");
    const bool qp = encoding != nullptr && !encoding->values.empty() &&
                    SameName(encoding->values.front(), "QUOTED-PRINTABLE");
    out.base64 =
        encoding != nullptr && !encoding->values.empty() &&
        (SameName(encoding->values.front(), "B") || SameName(encoding->values.front(), "BASE64"));
    if (qp) {
        dropSoftBreaks(out.value, m_scratch.size() - out.value.size());
        // A soft line break is '=' at the end of a line, without folding blank.
        while (!out.value.empty() && out.value.back() == '=' && PeekPhysical(next)) {
            PhysicalLine(next);
            m_scratch.assign(next);
            unfold();
            std::string piece = m_scratch;
            dropSoftBreaks(piece, 0);
            out.value.pop_back();
            out.value += piece;
        }
        m_scratch.swap(out.value);
        DecodeQuotedPrintable(m_scratch, out.value);
    } else if (out.base64 && m_version21) {
        // Old writers continue base64 on lines of their own, without a blank
        // in front, up to an empty line.
        while (PeekPhysical(next) && IsBase64Run(next)) {
            PhysicalLine(next);
            out.value += next;
        }
    }
    out.badCharset = false;
    out.fallback = nullptr;
    // Parameter values name no charset of their own: one that is no UTF-8 is
    // read as the fallback, and the line reports it.
    for (Param& param : out.params) {
        for (std::string& value : param.values) {
            if (ReadAsUtf8(value)) out.fallback = kFallbackCharset;
        }
    }
    // A value said to be base64 that is no UTF-8 is no base64 either: it
    // fails to decode and is read as text like any other.
    if (!out.base64 || !IsUtf8(out.value.data(), out.value.size())) {
        const Param* charset = out.base64 ? nullptr : out.Find("CHARSET");
        if (charset != nullptr && !charset->values.empty())
            out.badCharset = !ConvertCharset(charset->values.front(), out.value);
        // 8-bit text that is no UTF-8 and names no charset this reader
        // knows: old writers meant Windows-1252 (Latin-1 with printable
        // characters where Latin-1 has control codes). The caller reports
        // the conversion.
        if ((charset == nullptr || out.badCharset) && ReadAsUtf8(out.value))
            out.fallback = kFallbackCharset;
    }
    if (out.value.find('\0') != std::string::npos) {  // =00, a charset's U+0000, or the byte
        error = "a NUL character in the decoded value";
        return Result::Malformed;
    }
    return Result::Line;
}

void Unescape(std::string_view raw, std::string& out) {
    if (raw.find('\\') == std::string_view::npos) {  // most values
        out.assign(raw);
        return;
    }
    out.clear();
    for (std::size_t i = 0; i < raw.size(); ++i) {
        if (raw[i] == '\\' && i + 1 < raw.size()) {
            const char n = raw[++i];
            out += n == 'n' || n == 'N' ? '\n' : n;
        } else {
            out += raw[i];
        }
    }
}

void SplitUnescaped(std::string_view raw, char sep, std::vector<std::string>& parts) {
    std::size_t n = 0;  // parts are reused: their buffers stay from the last call
    std::size_t start = 0;
    for (std::size_t i = 0; i <= raw.size(); ++i) {
        if (i == raw.size() || raw[i] == sep) {
            if (n == parts.size()) parts.emplace_back();
            Unescape(raw.substr(start, i - start), parts[n++]);
            start = i + 1;
        } else if (raw[i] == '\\' && i + 1 < raw.size()) {
            ++i;  // a backslash at the very end escapes nothing: the last part keeps it
        }
    }
    parts.resize(n);
}

void AppendEscaped(std::string& out, std::string_view text, std::string_view special) {
    std::size_t start = 0;
    for (;;) {
        const std::size_t i = text.find_first_of(special, start);  // copy plain runs whole
        out.append(text.substr(start, i == std::string_view::npos ? i : i - start));
        if (i == std::string_view::npos) return;
        const char c = text[i];
        start = i + 1;
        if (c == '\r' || c == '\n') {
            out += "\\n";
            if (c == '\r' && start < text.size() && text[start] == '\n') ++start;
        } else {
            out += '\\';
            out += c;
        }
    }
}

bool DecodeBase64(std::string_view text, std::string& out) {
    // 0-63 a digit, 64 padding, 65 a blank to skip, 66 anything else.
    static const auto kValues = [] {
        std::array<unsigned char, 256> v{};
        v.fill(66);
        const char* digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
        for (unsigned char i = 0; i < 64; ++i) v[static_cast<unsigned char>(digits[i])] = i;
        v['='] = 64;
        v[' '] = v['\t'] = v['\r'] = v['\n'] = 65;
        return v;
    }();
    out.clear();
    out.reserve(text.size() / 4 * 3);
    unsigned int acc = 0;
    int bits = 0;
    bool padding = false;
    for (char c : text) {
        const unsigned int v = kValues[static_cast<unsigned char>(c)];
        if (v >= 64) {
            if (v == 66) return false;
            padding = padding || v == 64;
            continue;
        }
        if (padding) return false;  // data after the padding
        acc = (acc << 6) | v;
        bits += 6;
        if (bits >= 8) {
            bits -= 8;
            out += static_cast<char>((acc >> bits) & 0xFFu);
        }
    }
    return bits < 6;  // a single leftover character holds no byte
}

void AppendBase64(std::string& out, const void* data, std::size_t size) {
    static const char kDigits[] =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const auto* p = static_cast<const unsigned char*>(data);
    out.reserve(out.size() + (size + 2) / 3 * 4);
    std::size_t i = 0;
    for (; i + 3 <= size; i += 3) {
        const unsigned int v = (unsigned(p[i]) << 16) | (unsigned(p[i + 1]) << 8) | p[i + 2];
        out += kDigits[v >> 18];
        out += kDigits[(v >> 12) & 63];
        out += kDigits[(v >> 6) & 63];
        out += kDigits[v & 63];
    }
    if (i < size) {
        const unsigned int v =
            (unsigned(p[i]) << 16) | (i + 1 < size ? unsigned(p[i + 1]) << 8 : 0u);
        out += kDigits[v >> 18];
        out += kDigits[(v >> 12) & 63];
        out += i + 1 < size ? kDigits[(v >> 6) & 63] : '=';
        out += '=';
    }
}

void AppendFolded(std::string& out, std::string_view line) {
    std::size_t limit = 75;
    while (line.size() > limit) {
        std::size_t cut = limit;
        // Never inside a UTF-8 sequence: back up to its first byte.
        while (cut > 1 && (static_cast<unsigned char>(line[cut]) & 0xC0) == 0x80) --cut;
        out.append(line.substr(0, cut));
        out += "\r\n ";
        line.remove_prefix(cut);
        limit = 74;
    }
    out.append(line);
    out += "\r\n";
}

void AppendParam(std::string& line, std::string_view name, std::string_view value, bool list) {
    line += ';';
    line.append(name);
    line += '=';
    // Commas stay bare: they separate the values of a list.
    const bool quote = value.find_first_of(list ? ":;" : ":;,") != std::string_view::npos;
    if (quote) line += '"';
    for (std::size_t i = 0; i < value.size(); ++i) {
        const char c = value[i];
        if (c == '^') {
            line += "^^";
        } else if (c == '"') {
            line += "^'";
        } else if (c == '\n' || (c == '\r' && (i + 1 == value.size() || value[i + 1] != '\n'))) {
            line += "^n";  // a line break, CR LF and a lone CR too, as in a text value
        } else if (c != '\r') {
            line += c;
        }
    }
    if (quote) line += '"';
}

}  // namespace PimBridge::Vcard
