#pragma once
#include "foundation/String.h"
#include "xml/ElementSlot.h"
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace Tallymoor {

class ElementLayout;
class XMLElement;

/// The sub-elements of one element, by the place of their registration in its layout. Owns them.
class SubElements {
public:
  SubElements() = default;
  ~SubElements();
  SubElements(const SubElements&) = delete;
  SubElements& operator=(const SubElements&) = delete;

  /// The instances of a registration; valid until one of them is added or removed.
  std::span<XMLElement* const> at(std::size_t place) const {
    return place < m_count ? std::span<XMLElement* const>(m_slots[place].begin(), m_slots[place].size())
                           : std::span<XMLElement* const>();
  }
  /// How many places there may be instances at.
  std::size_t places() const { return m_count; }
  /// Of all places together.
  std::size_t size() const;
  bool empty() const;
  /// The first instance; throws if there is none.
  XMLElement& first(std::size_t place) const;
  /// The text of the first instance; empty if there is none.
  const String& text(std::size_t place) const;

  /// Takes the element over. The one that a single registration holds already is destroyed.
  void add(XMLElement& parent, XMLElement* element, std::size_t place);
  void remove(std::size_t place, std::size_t index);
  /// Says how many there were.
  std::size_t removeAll(std::size_t place);
  void clear();
  void moveLast(std::size_t place, std::size_t index);
  /// A deep copy of those of the other parent, in the place of all that are here.
  void copy(XMLElement& parent, const XMLElement& other);
  /// For another decode: what the layout requires once is emptied itself, all others are destroyed.
  void prepareForReading(const ElementLayout& layout);

  /// Whether the element at a place was met in the current decode.
  bool isSeen(std::size_t place) const;
  void setSeen(const ElementLayout& layout, std::size_t place);

  /// Ends an instance that no parent holds, without recursion on the depth of its tree.
  static void destroy(XMLElement* element);

private:
  ElementSlot& slotFor(const ElementLayout& layout, std::size_t place);

  std::unique_ptr<ElementSlot[]> m_slots; ///< one a registration; made when first needed
  std::uint16_t m_count = 0;
};

} // namespace Tallymoor
