#include "platform/CBuffer.h"

#include <cstring>
#include <new>

namespace PAL {

CBuffer::CBuffer(unsigned int size, unsigned int growBy) : m_growBy(growBy == 0 ? 1 : growBy) {
    if (size != 0) resize(size);
}

CBuffer::CBuffer(const CBuffer& other) : m_growBy(other.m_growBy) {
    if (other.m_size != 0 && grow(other.m_size)) {
        std::memcpy(m_data.get(), other.m_data.get(), other.m_size);
        m_size = other.m_size;
    }
}

CBuffer::CBuffer(CBuffer&& other) noexcept
    : m_data(std::move(other.m_data)),
      m_size(other.m_size),
      m_capacity(other.m_capacity),
      m_growBy(other.m_growBy) {
    other.m_size = 0;
    other.m_capacity = 0;
}

CBuffer& CBuffer::operator=(const CBuffer& other) {
    if (this != &other) {
        CBuffer copy(other);
        *this = std::move(copy);
    }
    return *this;
}

CBuffer& CBuffer::operator=(CBuffer&& other) noexcept {
    if (this != &other) {
        m_data = std::move(other.m_data);
        m_size = other.m_size;
        m_capacity = other.m_capacity;
        m_growBy = other.m_growBy;
        other.m_size = 0;
        other.m_capacity = 0;
    }
    return *this;
}

CBuffer::~CBuffer() = default;

bool CBuffer::grow(unsigned long long needed) {
    if (needed <= m_capacity) return true;
    if (needed > 0xFFFFFFFFull) return false;
    unsigned long long capacity = static_cast<unsigned long long>(m_capacity) * 2;
    if (capacity < needed) capacity = needed;
    if (capacity < m_growBy) capacity = m_growBy;
    if (capacity > 0xFFFFFFFFull) capacity = 0xFFFFFFFFull;
    std::unique_ptr<unsigned char[]> bigger(new (std::nothrow) unsigned char[capacity]);
    if (!bigger) return false;
    if (m_size != 0) std::memcpy(bigger.get(), m_data.get(), m_size);
    m_data = std::move(bigger);
    m_capacity = static_cast<unsigned int>(capacity);
    return true;
}

bool CBuffer::copyTo(const void* source, unsigned int count, unsigned int position) {
    const unsigned long long end = static_cast<unsigned long long>(position) + count;
    if (end > m_size) {
        if (!grow(end)) return false;
        if (position > m_size) std::memset(m_data.get() + m_size, 0, position - m_size);
        m_size = static_cast<unsigned int>(end);
    }
    if (count != 0) std::memmove(m_data.get() + position, source, count);
    return true;
}

bool CBuffer::reserve(unsigned int capacity) {
    return grow(capacity);
}

bool CBuffer::resize(unsigned int size) {
    if (size > m_size) {
        if (!grow(size)) return false;
        std::memset(m_data.get() + m_size, 0, size - m_size);
    }
    m_size = size;
    return true;
}

unsigned char* CBuffer::prepare(unsigned int size) {
    if (!grow(size)) return nullptr;
    m_size = size;
    return m_data.get();
}

void CBuffer::shrink(unsigned int size) noexcept {
    if (size < m_size) m_size = size;
}

void CBuffer::release() noexcept {
    m_data.reset();
    m_size = 0;
    m_capacity = 0;
}

}  // namespace PAL
