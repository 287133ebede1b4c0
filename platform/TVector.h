#ifndef PIMTLV_PLATFORM_TVECTOR_H
#define PIMTLV_PLATFORM_TVECTOR_H

#include <new>
#include <vector>

namespace PAL {

/// Growable array. Access is bounds-checked and reports failure instead of
/// reading out of range; insertion reports allocation failure as false rather
/// than throwing, so codec code never sees an exception.
template <typename T>
class TVector {
  public:
    /// An empty array.
    TVector() = default;
    /// An array of these items, in order.
    TVector(std::initializer_list<T> items) : m_items(items) {}

    /// The number of elements.
    unsigned int size() const noexcept { return static_cast<unsigned int>(m_items.size()); }
    /// Whether there are no elements.
    bool isEmpty() const noexcept { return m_items.empty(); }

    /// Appends a copy of item; false (array unchanged) when memory runs out.
    bool pushBack(const T& item) noexcept {
        try {
            m_items.push_back(item);
            return true;
        } catch (...) {
            return false;
        }
    }

    /// Makes room for count elements; false when memory runs out.
    bool reserve(unsigned int count) noexcept {
        try {
            m_items.reserve(count);
            return true;
        } catch (...) {
            return false;
        }
    }

    /// Copies element index into out; false (out unchanged) when out of range.
    bool getAt(unsigned int index, T& out) const {
        if (index >= m_items.size()) return false;
        out = m_items[index];
        return true;
    }
    /// Pointer to element index, or null when out of range.
    const T* at(unsigned int index) const noexcept {
        return index < m_items.size() ? &m_items[index] : nullptr;
    }
    /// Pointer to element index, or null when out of range.
    T* at(unsigned int index) noexcept {
        return index < m_items.size() ? &m_items[index] : nullptr;
    }
    /// Pointer to the last element, or null when empty.
    T* last() noexcept { return m_items.empty() ? nullptr : &m_items.back(); }
    /// Pointer to the last element, or null when empty.
    const T* last() const noexcept { return m_items.empty() ? nullptr : &m_items.back(); }

    /// Removes the last element; false when empty.
    bool removeLast() noexcept {
        if (m_items.empty()) return false;
        m_items.pop_back();
        return true;
    }
    /// Removes every element; the capacity is kept for reuse.
    void clear() noexcept { m_items.clear(); }

    /// The first element, for range loops.
    const T* begin() const noexcept { return m_items.data(); }
    /// One past the last element.
    const T* end() const noexcept { return m_items.data() + m_items.size(); }
    /// The first element, for range loops.
    T* begin() noexcept { return m_items.data(); }
    /// One past the last element.
    T* end() noexcept { return m_items.data() + m_items.size(); }

    /// Equal when the elements are, in order.
    bool operator==(const TVector& other) const { return m_items == other.m_items; }
    /// Different when an element is.
    bool operator!=(const TVector& other) const { return m_items != other.m_items; }

  private:
    std::vector<T> m_items;
};

/// Array of pointers. It owns nothing: whoever holds it states whether the
/// pointees are owned, and deletes them if so.
template <typename T>
class TPtrVector : public TVector<T*> {};

}  // namespace PAL

#endif
