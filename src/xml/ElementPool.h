#pragma once
#include "xml/XMLElement.h"
#include <array>
#include <cstddef>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace Tallymoor {

/// Instances of an element class that occurs by the hundred thousand, made in blocks and never handed back to
/// the allocator before the program ends. Safe on any thread, since different trees share a pool.
template <class Element>
class ElementPool {
public:
  static constexpr std::size_t BLOCK_SIZE = 100;

  /// An empty instance, which belongs to the caller until it is given back.
  Element* take();
  /// Empties the instance and makes it the next to be taken. One that is not in use here (a copy) is left
  /// alone.
  void giveBack(Element& element);

  // Counts of instances and their blocks, for tests and measurements.
  std::size_t numBlocks() const;
  std::size_t numFree() const;
  std::size_t numInUse() const;

private:
  struct Block {
    std::array<Element, BLOCK_SIZE> elements;
    std::array<bool, BLOCK_SIZE> inUse{};
  };

  void addBlock();
  bool* inUseFlag(const Element& element);

  mutable std::mutex m_mutex;
  std::map<const Element*, std::unique_ptr<Block>, std::less<>>
      m_blocks;                 ///< by the address of the first element
  std::vector<Element*> m_free; ///< the next to be taken is at the back
  std::size_t m_inUse = 0;
};

template <class Element>
Element* ElementPool<Element>::take() {
  std::lock_guard lock(m_mutex);
  if (m_free.empty())
    addBlock();
  Element* element = m_free.back();
  m_free.pop_back();
  *inUseFlag(*element) = true;
  ++m_inUse;
  return element;
}

template <class Element>
void ElementPool<Element>::giveBack(Element& element) {
  {
    std::lock_guard lock(m_mutex);
    bool* inUse = inUseFlag(element);
    if (!inUse || !*inUse)
      return;
    // Nobody else can take or give back this instance until it is in the list of the free ones.
    *inUse = false;
    --m_inUse;
  }
  element.giveBackToPool();
  std::lock_guard lock(m_mutex);
  m_free.push_back(&element);
}

template <class Element>
std::size_t ElementPool<Element>::numBlocks() const {
  std::lock_guard lock(m_mutex);
  return m_blocks.size();
}

template <class Element>
std::size_t ElementPool<Element>::numFree() const {
  std::lock_guard lock(m_mutex);
  return m_free.size();
}

template <class Element>
std::size_t ElementPool<Element>::numInUse() const {
  std::lock_guard lock(m_mutex);
  return m_inUse;
}

template <class Element>
void ElementPool<Element>::addBlock() {
  auto block = std::make_unique<Block>();
  for (std::size_t i = BLOCK_SIZE; i > 0; --i)
    m_free.push_back(&block->elements[i - 1]);
  const Element* first = block->elements.data();
  m_blocks.emplace(first, std::move(block));
}

template <class Element>
bool* ElementPool<Element>::inUseFlag(const Element& element) {
  auto next = m_blocks.upper_bound(&element);
  if (next == m_blocks.begin())
    return nullptr;
  Block& block = *std::prev(next)->second;
  if (!std::less<>()(&element, block.elements.data() + BLOCK_SIZE))
    return nullptr;
  return &block.inUse[static_cast<std::size_t>(&element - block.elements.data())];
}

} // namespace Tallymoor
