#ifndef PIMTLV_PLATFORM_CSTRING_H
#define PIMTLV_PLATFORM_CSTRING_H

#include <cstdarg>
#include <cstddef>
#include <cstring>
#include <memory>

#include "platform/PalExport.h"

namespace PAL {

/// Owned, zero-terminated text. Every operation that may allocate reports an
/// allocation failure by returning false and leaves the text as it was.
///
/// The parsers format a diagnostic text for nearly every element they read,
/// always into the same string, so replacing a text that fits the memory
/// already held is inline and allocation-free.
class PIMTLV_API CString {
  public:
    /// Construction, copying and destruction.
    /// @{
    CString() noexcept = default;
    CString(const char* text);  ///< NOLINT(google-explicit-constructor): texts convert freely
    CString(const char* text, std::size_t length);
    CString(const CString& other);
    CString(CString&& other) noexcept;
    CString& operator=(const CString& other);
    CString& operator=(CString&& other) noexcept;
    ~CString();
    /// @}

    /// printf-like formatting; replaces the text. False (text unchanged) on a
    /// format error or allocation failure.
    bool format(const char* fmt, ...) __attribute__((format(printf, 2, 3)));
    /// format with a va_list.
    bool vformat(const char* fmt, va_list args);

    /// Replaces the text with length bytes of text (null text: empty). text may
    /// point into this string.
    bool assign(const char* text, std::size_t length) {
        if (text == nullptr) length = 0;
        if (length >= m_capacity && !grow(length + 1, false)) return false;
        if (length != 0) std::memmove(m_data.get(), text, length);
        m_data[length] = 0;
        m_length = length;
        return true;
    }
    /// Replaces the text with a zero-terminated text (null: empty).
    bool assign(const char* text) { return assign(text, text == nullptr ? 0 : std::strlen(text)); }
    /// Makes the text length bytes long, for the caller to write at once, and
    /// returns where they go; null (text unchanged) when memory runs out. The
    /// bytes already there are kept when the memory held is large enough.
    char* overwrite(std::size_t length) {
        if (length >= m_capacity && !grow(length + 1, false)) return nullptr;
        m_data[length] = 0;
        m_length = length;
        return m_data.get();
    }
    /// Appends length bytes of text, a zero-terminated text, or one character; false (text
    /// unchanged) when memory runs out.
    /// @{
    bool append(const char* text, std::size_t length);
    bool append(const char* text) { return append(text, text == nullptr ? 0 : std::strlen(text)); }
    bool append(char c) { return append(&c, 1); }
    /// @}

    /// The zero-terminated text (never null), its length in bytes, whether it is empty.
    /// @{
    const char* c_str() const noexcept { return m_data ? m_data.get() : ""; }
    std::size_t length() const noexcept { return m_length; }
    bool isEmpty() const noexcept { return m_length == 0; }
    /// @}

    /// Keeps the first length bytes (no-op when the text is shorter).
    void truncate(std::size_t length) noexcept {
        if (length < m_length) {
            m_length = length;
            m_data[length] = 0;
        }
    }
    /// Empties the text and releases its memory.
    void clear() noexcept;

    /// Byte-wise comparison; a null text compares equal to the empty text.
    /// @{
    bool operator==(const CString& other) const noexcept {
        return m_length == other.m_length && std::memcmp(c_str(), other.c_str(), m_length) == 0;
    }
    bool operator!=(const CString& other) const noexcept { return !(*this == other); }
    bool operator==(const char* other) const noexcept;
    /// @}

  private:
    /// Makes room for capacity bytes (terminator included), keeping the text
    /// when keep is set. Out of line: only growth allocates.
    bool grow(std::size_t capacity, bool keep);

    std::unique_ptr<char[]> m_data;
    std::size_t m_length = 0;
    std::size_t m_capacity = 0;  ///< bytes held, terminator included
};

}  // namespace PAL

#endif
