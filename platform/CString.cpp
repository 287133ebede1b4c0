#include "platform/CString.h"

#include <cstdio>
#include <cstring>

namespace PAL {

CString::CString(const char* text) {
    if (text != nullptr) m_text.assign(text);
}

CString::CString(const char* text, std::size_t length) {
    if (text != nullptr) m_text.assign(text, length);
}

bool CString::format(const char* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    const bool ok = vformat(fmt, args);
    va_end(args);
    return ok;
}

bool CString::vformat(const char* fmt, va_list args) {
    if (fmt == nullptr) return false;
    char small[256];
    va_list copy;
    va_copy(copy, args);
    const int needed = std::vsnprintf(small, sizeof small, fmt, copy);
    va_end(copy);
    if (needed < 0) return false;
    try {
        if (static_cast<std::size_t>(needed) < sizeof small) {
            m_text.assign(small, static_cast<std::size_t>(needed));
            return true;
        }
        std::string big(static_cast<std::size_t>(needed) + 1, '\0');
        std::vsnprintf(&big[0], big.size(), fmt, args);
        big.resize(static_cast<std::size_t>(needed));
        m_text.swap(big);
        return true;
    } catch (...) {
        return false;
    }
}

bool CString::assign(const char* text, std::size_t length) {
    try {
        if (text == nullptr) {
            m_text.clear();
        } else {
            m_text.assign(text, length);
        }
        return true;
    } catch (...) {
        return false;
    }
}

bool CString::assign(const char* text) {
    return assign(text, text == nullptr ? 0 : std::strlen(text));
}

bool CString::append(const char* text, std::size_t length) {
    if (text == nullptr) return true;
    try {
        m_text.append(text, length);
        return true;
    } catch (...) {
        return false;
    }
}

bool CString::append(const char* text) {
    return append(text, text == nullptr ? 0 : std::strlen(text));
}

bool CString::append(char c) {
    try {
        m_text.push_back(c);
        return true;
    } catch (...) {
        return false;
    }
}

void CString::truncate(std::size_t length) noexcept {
    if (length < m_text.size()) m_text.resize(length);
}

void CString::clear() noexcept {
    std::string().swap(m_text);
}

bool CString::operator==(const char* other) const noexcept {
    return other == nullptr ? m_text.empty() : m_text == other;
}

}  // namespace PAL
