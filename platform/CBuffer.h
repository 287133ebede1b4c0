#ifndef PIMTLV_PLATFORM_CBUFFER_H
#define PIMTLV_PLATFORM_CBUFFER_H

#include <memory>

#include "platform/PalExport.h"

namespace PAL {

/// Growable byte buffer. The size is the count of bytes in use; capacity grows
/// geometrically (at least by the allocation step given to the constructor),
/// so a writer that places bytes one piece after another is amortised O(1).
class PIMTLV_API CBuffer {
  public:
    /// size: initial byte count (zero-filled); growBy: minimum allocation step.
    explicit CBuffer(unsigned int size = 0, unsigned int growBy = 1024);
    /// Construction, copying and destruction.
    /// @{
    CBuffer(const CBuffer& other);
    CBuffer(CBuffer&& other) noexcept;
    CBuffer& operator=(const CBuffer& other);
    CBuffer& operator=(CBuffer&& other) noexcept;
    ~CBuffer();
    /// @}

    /// Writes count bytes at position, growing the size to position + count when
    /// needed (a gap before position is zero-filled). False, and nothing changed,
    /// on allocation failure or when position + count overflows.
    bool copyTo(const void* source, unsigned int count, unsigned int position);

    /// Makes room for capacity bytes without changing the size.
    bool reserve(unsigned int capacity);
    /// Sets the size; new bytes are zero.
    bool resize(unsigned int size);
    /// Sets the size to size bytes that the caller writes next (not cleared)
    /// and returns where they start; null (buffer unchanged) when memory runs
    /// out. The bytes already there are kept.
    unsigned char* prepare(unsigned int size);
    /// Reduces the size to at most size bytes; the memory is kept for reuse.
    void shrink(unsigned int size) noexcept;
    /// Empties the buffer and frees its memory.
    void release() noexcept;

    /// The bytes in use, the bytes held, and where they are (null while nothing is held).
    /// @{
    unsigned int getSize() const noexcept { return m_size; }
    unsigned int getCapacity() const noexcept { return m_capacity; }
    const unsigned char* getData() const noexcept { return m_data.get(); }
    unsigned char* getData() noexcept { return m_data.get(); }
    /// @}

  private:
    bool grow(unsigned long long needed);

    std::unique_ptr<unsigned char[]> m_data;
    unsigned int m_size = 0;
    unsigned int m_capacity = 0;
    unsigned int m_growBy = 1024;
};

}  // namespace PAL

#endif
