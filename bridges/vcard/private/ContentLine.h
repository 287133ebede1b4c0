#ifndef PIMTLV_BRIDGES_VCARD_PRIVATE_CONTENTLINE_H
#define PIMTLV_BRIDGES_VCARD_PRIVATE_CONTENTLINE_H

// The content-line layer of vCard text, all versions: a card is lines of
// "group.NAME;PARAM=v1,v2;...:value", folded onto continuation lines that
// start with a blank. Version 2.1 adds quoted-printable values (with soft line
// breaks of their own), CHARSET, bare parameters ("TEL;HOME;VOICE") and base64
// blocks that end at an empty line. The reader hands out each logical line
// with its value decoded to UTF-8 text, except base64, which stays as written;
// the writer escapes, encodes and folds for version 3.0.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace PimBridge::Vcard {

// What 8-bit text without a (known) charset is read as.
inline constexpr const char* kFallbackCharset = "WINDOWS-1252";

struct Param {
    std::string name;                 // upper case
    std::vector<std::string> values;  // quotes removed; a bare 2.1 parameter is one TYPE value
};

struct ContentLine {
    std::string group;  // as written, empty when none
    std::string name;   // upper case
    std::vector<Param> params;
    std::string value;        // unfolded; quoted-printable and CHARSET decoded
    unsigned int line = 0;    // first physical line, 1-based
    bool base64 = false;      // ENCODING=b or BASE64: value is still encoded
    bool badCharset = false;  // a CHARSET this reader cannot convert; value kept as bytes
    // The charset the value was read in by guess, because its bytes are no
    // UTF-8 and no CHARSET said what they are; null when none was needed.
    const char* fallback = nullptr;

    const Param* Find(std::string_view paramName) const;
};

class Reader {
  public:
    Reader(const char* text, std::size_t size);
    // The next logical line, skipping empty ones. false at the end, or for a
    // line that is no content line (error says why, line says where).
    enum class Result { Line, End, Malformed };
    Result Next(ContentLine& out, std::string& error);
    unsigned int LineNumber() const { return m_line; }
    std::size_t Position() const { return m_pos; }  // offset of the next line
    // vCard 2.1 lets base64 go on over lines of their own, up to an empty
    // line; later versions fold it. Only a 2.1 card reads it so.
    void Version21(bool on) { m_version21 = on; }

  private:
    bool PhysicalLine(std::string_view& out);
    bool PeekPhysical(std::string_view& out) const;

    const char* m_text;
    std::size_t m_size;
    std::size_t m_pos = 0;
    unsigned int m_line = 0;  // lines read so far
    bool m_version21 = false;
    std::string m_scratch;
    struct Fold {
        std::size_t offset;  // in m_scratch, where a continuation line starts
        char blank;          // the blank that the unfolding took away
    };
    std::vector<Fold> m_folds;
};

// Case-insensitive comparison for ASCII names.
bool SameName(std::string_view a, std::string_view b);

// Calls onItem(std::string_view) for each non-empty item of a comma-separated
// parameter value. Parameter values know no backslash escapes.
template <typename OnItem>
void ForEachListItem(std::string_view list, OnItem&& onItem) {
    while (!list.empty()) {
        const std::size_t comma = list.find(',');
        const std::string_view item = list.substr(0, comma);
        list = comma == std::string_view::npos ? std::string_view() : list.substr(comma + 1);
        if (!item.empty()) onItem(item);
    }
}

// Backslash escapes of text values: \n and \N are a line break, \\ \, \; the
// character itself; an unknown escape keeps the character after the backslash.
void Unescape(std::string_view raw, std::string& out);
// Splits raw at every unescaped sep and unescapes each part.
void SplitUnescaped(std::string_view raw, char sep, std::vector<std::string>& parts);
// Escapes each character of text that is in special: a line break (CR, LF
// or CRLF) as \n, any other with a backslash in front.
void AppendEscaped(std::string& out, std::string_view text, std::string_view special);

bool DecodeBase64(std::string_view text, std::string& out);  // blanks ignored
void AppendBase64(std::string& out, const void* data, std::size_t size);

// Appends one content line with CRLF, folded so that no line holds more than
// 75 octets and no UTF-8 sequence is cut.
void AppendFolded(std::string& out, std::string_view line);
// Appends ";NAME=value", quoting a value that holds ':' or ';', or a comma
// unless the value is a list (its commas separate values).
void AppendParam(std::string& line, std::string_view name, std::string_view value,
                 bool list = true);

}  // namespace PimBridge::Vcard

#endif
