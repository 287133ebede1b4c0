#include "platform/CString.h"

#include <cstdio>
#include <new>

namespace PAL {

CString::CString(const char* text) {
    assign(text);
}

CString::CString(const char* text, std::size_t length) {
    assign(text, length);
}

CString::CString(const CString& other) {
    assign(other.c_str(), other.m_length);
}

CString::CString(CString&& other) noexcept
    : m_data(std::move(other.m_data)), m_length(other.m_length), m_capacity(other.m_capacity) {
    other.m_length = 0;
    other.m_capacity = 0;
}

CString& CString::operator=(const CString& other) {
    if (this != &other) assign(other.c_str(), other.m_length);
    return *this;
}

CString& CString::operator=(CString&& other) noexcept {
    if (this != &other) {
        m_data = std::move(other.m_data);
        m_length = other.m_length;
        m_capacity = other.m_capacity;
        other.m_length = 0;
        other.m_capacity = 0;
    }
    return *this;
}

CString::~CString() = default;

bool CString::grow(std::size_t capacity, bool keep) {
    if (capacity <= m_capacity) return true;
    std::size_t size = m_capacity * 2;
    if (size < capacity) size = capacity;
    if (size < 32) size = 32;
    std::unique_ptr<char[]> bigger(new (std::nothrow) char[size]);
    if (!bigger) return false;
    if (keep && m_length != 0) std::memcpy(bigger.get(), m_data.get(), m_length);
    bigger[keep ? m_length : 0] = 0;
    // Only assign grows without keeping, and a text inside this string never
    // needs growth there (it is shorter than the memory it lies in).
    m_data = std::move(bigger);
    m_capacity = size;
    if (!keep) m_length = 0;
    return true;
}

bool CString::append(const char* text, std::size_t length) {
    if (text == nullptr || length == 0) return true;
    const std::size_t total = m_length + length;
    if (total < m_capacity) {
        std::memmove(m_data.get() + m_length, text, length);
    } else {
        // Growing frees the old block, and text may lie in it: keep the old
        // block alive until the bytes are copied.
        std::unique_ptr<char[]> old(new (std::nothrow) char[m_length + length + 1]);
        if (!old) return false;
        std::memcpy(old.get(), c_str(), m_length);
        std::memcpy(old.get() + m_length, text, length);
        old[total] = 0;
        m_data = std::move(old);
        m_capacity = total + 1;
        m_length = total;
        return true;
    }
    m_length = total;
    m_data[total] = 0;
    return true;
}

bool CString::vformat(const char* fmt, va_list args) {
    if (fmt == nullptr) return false;
    char small[256];
    va_list copy;
    va_copy(copy, args);
    const int needed = std::vsnprintf(small, sizeof small, fmt, copy);
    va_end(copy);
    if (needed < 0) return false;
    const auto length = static_cast<std::size_t>(needed);
    if (length < sizeof small) return assign(small, length);
    std::unique_ptr<char[]> big(new (std::nothrow) char[length + 1]);
    if (!big) return false;
    std::vsnprintf(big.get(), length + 1, fmt, args);
    m_data = std::move(big);
    m_length = length;
    m_capacity = length + 1;
    return true;
}

bool CString::format(const char* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    const bool ok = vformat(fmt, args);
    va_end(args);
    return ok;
}

void CString::clear() noexcept {
    m_data.reset();
    m_length = 0;
    m_capacity = 0;
}

bool CString::operator==(const char* other) const noexcept {
    if (other == nullptr) return m_length == 0;
    return std::strlen(other) == m_length && std::memcmp(c_str(), other, m_length) == 0;
}

}  // namespace PAL
