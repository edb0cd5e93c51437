#pragma once
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

namespace Tallymoor {

class XMLElement;

/// The instances of one registration in one parent, and whether the element was met in the current decode.
/// Most slots hold one instance, which then needs no memory of its own. The parent owns the instances; a slot
/// only lists them.
struct ElementSlot {
  ElementSlot() = default;
  ElementSlot(ElementSlot&& other) noexcept { *this = std::move(other); }
  ElementSlot& operator=(ElementSlot&& other) noexcept {
    if (this == &other)
      return *this;
    if (m_capacity > 0)
      delete[] m_many;
    if (other.m_capacity > 0)
      m_many = other.m_many;
    else
      m_one = other.m_one;
    m_count = other.m_count;
    m_capacity = other.m_capacity;
    seen = other.seen;
    other.m_one = nullptr;
    other.m_count = 0;
    other.m_capacity = 0;
    return *this;
  }
  ~ElementSlot() {
    if (m_capacity > 0)
      delete[] m_many;
  }

  // In ElementMemory.
  static void* operator new[](std::size_t size);
  static void operator delete[](void* slots, std::size_t size);

  std::size_t size() const { return m_count; }
  bool empty() const { return m_count == 0; }
  XMLElement** begin() { return m_capacity > 0 ? m_many : &m_one; }
  XMLElement** end() { return begin() + m_count; }
  XMLElement* const* begin() const { return m_capacity > 0 ? m_many : &m_one; }
  XMLElement* const* end() const { return begin() + m_count; }
  XMLElement* operator[](std::size_t index) const { return begin()[index]; }

  void add(XMLElement* element) {
    if (m_capacity == 0 && m_count == 0) {
      m_one = element;
    } else {
      if (m_count >= m_capacity)
        grow();
      m_many[m_count] = element;
    }
    ++m_count;
  }
  void remove(std::size_t index) {
    XMLElement** gap = begin() + index;
    std::memmove(gap, gap + 1, (m_count - index - 1) * sizeof *gap);
    --m_count;
  }
  /// Forgets the instances. The memory of a long list goes too, so that pooled parents do not hoard it.
  void clear() {
    if (m_capacity > SMALL_CAPACITY) {
      delete[] m_many;
      m_one = nullptr;
      m_capacity = 0;
    }
    m_count = 0;
  }

private:
  static constexpr std::uint32_t SMALL_CAPACITY = 64;

  void grow() {
    const std::uint32_t capacity = m_capacity == 0 ? 4 : m_capacity + m_capacity / 2;
    XMLElement** many = new XMLElement*[capacity];
    std::memcpy(many, begin(), m_count * sizeof *many);
    if (m_capacity > 0)
      delete[] m_many;
    m_many = many;
    m_capacity = capacity;
  }

  union {
    XMLElement* m_one = nullptr; ///< while m_capacity is 0
    XMLElement** m_many;
  };
  std::uint32_t m_count = 0;
  std::uint32_t m_capacity : 31 = 0;

public:
  std::uint32_t seen : 1 = 0;
};

} // namespace Tallymoor
