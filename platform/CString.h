#ifndef PIMTLV_PLATFORM_CSTRING_H
#define PIMTLV_PLATFORM_CSTRING_H

#include <cstdarg>
#include <cstddef>
#include <string>

#include "platform/PalExport.h"

namespace PAL {

// Owned, zero-terminated text. Every operation that may allocate reports an
// allocation failure by returning false and leaves the text as it was.
class PIMTLV_API CString {
  public:
    CString() = default;
    CString(const char* text);  // NOLINT(google-explicit-constructor): texts convert freely
    CString(const char* text, std::size_t length);
    CString(const CString&) = default;
    CString(CString&&) noexcept = default;
    CString& operator=(const CString&) = default;
    CString& operator=(CString&&) noexcept = default;
    ~CString() = default;

    // printf-like formatting; replaces the text. False (text unchanged) on a
    // format error or allocation failure.
    bool format(const char* fmt, ...) __attribute__((format(printf, 2, 3)));
    bool vformat(const char* fmt, va_list args);

    // Replaces the text with length bytes of text (null text: empty).
    bool assign(const char* text, std::size_t length);
    bool assign(const char* text);
    bool append(const char* text, std::size_t length);
    bool append(const char* text);
    bool append(char c);

    const char* c_str() const noexcept { return m_text.c_str(); }
    std::size_t length() const noexcept { return m_text.size(); }
    bool isEmpty() const noexcept { return m_text.empty(); }

    // Keeps the first length bytes (no-op when the text is shorter).
    void truncate(std::size_t length) noexcept;
    // Empties the text and releases its memory.
    void clear() noexcept;

    bool operator==(const CString& other) const noexcept { return m_text == other.m_text; }
    bool operator!=(const CString& other) const noexcept { return m_text != other.m_text; }
    bool operator==(const char* other) const noexcept;

  private:
    std::string m_text;
};

}  // namespace PAL

#endif
