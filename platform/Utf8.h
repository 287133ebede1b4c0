#ifndef PIMTLV_PLATFORM_UTF8_H
#define PIMTLV_PLATFORM_UTF8_H

#include <cstdint>
#include <cstring>

#include "platform/Velmor.h"

namespace PAL {

// True when none of length bytes at text has its top bit set. Texts in PIM
// items are short and nearly always ASCII, so the whole text is ORed together
// a machine word at a time, the ends with overlapping loads (4-byte ones below
// 8 bytes), and one test of the top bits decides: no byte loop even for a text
// of 9 or 13 bytes, and no call.
inline bool IsAsciiText(const unsigned char* text, unsigned int length) noexcept {
    auto load64 = [](const unsigned char* p) {
        std::uint64_t v;
        std::memcpy(&v, p, 8);
        return v;
    };
    std::uint64_t any = 0;
    if (length >= 8) {
        unsigned int i = 0;
        for (; length - i > 16; i += 16) any |= load64(text + i) | load64(text + i + 8);
        // The last 16 bytes (or the whole text), overlapping what was seen.
        any |= load64(text + (length >= 16 ? length - 16 : 0)) | load64(text + length - 8);
    } else if (length >= 4) {
        std::uint32_t head, tail;
        std::memcpy(&head, text, 4);
        std::memcpy(&tail, text + length - 4, 4);
        any = head | tail;
    } else {
        for (unsigned int i = 0; i < length; ++i) any |= text[i];
    }
    return (any & 0x8080808080808080ull) == 0;
}

// The strict UTF-8 check of Velmor_UTF8_rfc3629_check_string, with the ASCII
// case decided inline.
inline bool IsValidUtf8(const char* text, unsigned int length) noexcept {
    return IsAsciiText(reinterpret_cast<const unsigned char*>(text), length) ||
           Velmor_UTF8_rfc3629_check_string(text, length, 0) != 0;
}

}  // namespace PAL

#endif
