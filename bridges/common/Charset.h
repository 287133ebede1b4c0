#ifndef PIMTLV_BRIDGES_COMMON_CHARSET_H
#define PIMTLV_BRIDGES_COMMON_CHARSET_H

// The bridges' fallback for text that is not UTF-8 and names no charset of
// its own: Windows-1252, which old exports of Western European calendars,
// address books and mail write, and a superset of the printable Latin-1.
// Every byte sequence reads as Windows-1252, so the fallback never fails: the
// five bytes that charset leaves undefined become the control characters of
// the same number, as web browsers read them. The bridge that converts says
// so in its report, naming what it converted. The iCalendar and vCard
// bridges convert with the function below; the MIME bridge names the same
// charset to GMime.

#include <climits>
#include <cstddef>
#include <string>

#include "platform/Utf8.h"

namespace PimBridge {

// Appends size bytes at text, read as Windows-1252, to out as UTF-8.
inline void AppendWindows1252AsUtf8(const char* text, std::size_t size, std::string& out) {
    // 0x80 to 0x9F; the others are the code points of their own number.
    static const unsigned short kHigh[32] = {
        0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
        0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
        0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
    };
    out.reserve(out.size() + size + size / 2);
    for (std::size_t i = 0; i < size; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte < 0x80) {
            out += static_cast<char>(byte);
            continue;
        }
        const unsigned int code = byte < 0xA0 ? kHigh[byte - 0x80] : byte;
        if (code < 0x800) {
            out += static_cast<char>(0xC0 | (code >> 6));
        } else {
            out += static_cast<char>(0xE0 | (code >> 12));
            out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        }
        out += static_cast<char>(0x80 | (code & 0x3F));
    }
}

// The fallback's name: what the reports say ("converted (from windows-1252)")
// and what a bridge hands a library that converts by name (GMime's fallback
// charsets), so that both read the bytes alike.
constexpr const char* kFallbackCharset = "windows-1252";

// Whether the bridges take text as UTF-8: by the check the creators make, so
// that no byte a creator would replace with '?' passes unreported.
inline bool IsUtf8(const char* text, std::size_t size) {
    return size <= UINT_MAX && PAL::IsValidUtf8(text, static_cast<unsigned int>(size));
}

// Text as the bridges read it: unchanged when it is UTF-8, otherwise read as
// the fallback charset. True when it was converted, which the caller reports.
inline bool ReadAsUtf8(std::string& text) {
    if (IsUtf8(text.data(), text.size())) return false;
    std::string converted;
    AppendWindows1252AsUtf8(text.data(), text.size(), converted);
    text.swap(converted);
    return true;
}

}  // namespace PimBridge

#endif
