#ifndef PIMTLV_TLV_ELEMENTARENA_H
#define PIMTLV_TLV_ELEMENTARENA_H

#include <cstddef>
#include <memory>
#include <new>
#include <vector>

namespace ParserCreatorCollection {

// Bump allocator for one creator's element objects and their copied values.
// A stream's elements all die together when it is written (or reset), so
// they need no individual frees: allocation is a pointer bump, release is
// Rewind. The first block is kept between streams, so a creator that writes
// items of similar size stops allocating after the first one.
class CElementArena {
  public:
    CElementArena() = default;
    CElementArena(const CElementArena&) = delete;
    CElementArena& operator=(const CElementArena&) = delete;

    // size bytes aligned for any element object, or null when memory runs out.
    void* Allocate(std::size_t size) noexcept {
        size = (size + kAlign - 1) & ~(kAlign - 1);
        if (static_cast<std::size_t>(m_end - m_next) < size && !NewBlock(size)) return nullptr;
        void* p = m_next;
        m_next += size;
        return p;
    }

    // Frees everything at once. REQUIRES: every object placed here has been
    // destroyed.
    void Rewind() noexcept {
        if (m_blocks.size() > 1) {
            // Keep the largest block (the last one) for the next stream.
            std::unique_ptr<unsigned char[]> keep = std::move(m_blocks.back().data);
            const std::size_t size = m_blocks.back().size;
            m_blocks.clear();
            m_blocks.push_back(Block{std::move(keep), size});
        }
        if (m_blocks.empty()) {
            m_next = m_end = nullptr;
        } else {
            m_next = m_blocks.back().data.get();
            m_end = m_next + m_blocks.back().size;
        }
    }

    // Frees the memory too.
    void Release() noexcept {
        m_blocks.clear();
        m_next = m_end = nullptr;
    }

  private:
    static constexpr std::size_t kAlign = alignof(std::max_align_t);
    static constexpr std::size_t kFirstBlock = 4096;

    struct Block {
        std::unique_ptr<unsigned char[]> data;
        std::size_t size;
    };

    bool NewBlock(std::size_t atLeast) noexcept {
        std::size_t size = m_blocks.empty() ? kFirstBlock : m_blocks.back().size * 2;
        if (size < atLeast) size = atLeast;
        try {
            m_blocks.reserve(m_blocks.size() + 1);
        } catch (...) {
            return false;
        }
        std::unique_ptr<unsigned char[]> data(new (std::nothrow) unsigned char[size]);
        if (!data) return false;
        m_next = data.get();
        m_end = m_next + size;
        m_blocks.push_back(Block{std::move(data), size});
        return true;
    }

    std::vector<Block> m_blocks;
    unsigned char* m_next = nullptr;
    unsigned char* m_end = nullptr;
};

}  // namespace ParserCreatorCollection

#endif
