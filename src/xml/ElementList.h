#pragma once
#include "xml/XMLElement.h"
#include <algorithm>
#include <iterator>
#include <type_traits>
#include <typeinfo>

namespace Tallymoor {

/// The element as the class that its registration makes. Throws XMLException for an instance of another
/// class.
template <class Element>
Element& elementAs(XMLElement& element) {
  if (typeid(element) != typeid(Element))
    throw XMLException(u"an element \"" + element.name() + u"\" is of another class than it should be");
  return static_cast<Element&>(element);
}
template <class Element>
const Element& elementAs(const XMLElement& element) {
  return elementAs<Element>(const_cast<XMLElement&>(element));
}

/// The sub-elements that one registration of a parent holds, in their order, as the class that they are of.
/// Refers to the parent. An iterator is valid until an element is added or removed. Elements can be added and
/// removed unless Element is const.
template <class Element>
class ElementList {
public:
  using Class = std::remove_const_t<Element>;
  using Parent = std::conditional_t<std::is_const_v<Element>, const XMLElement, XMLElement>;

  class Iterator {
  public:
    using iterator_category = std::bidirectional_iterator_tag;
    using value_type = Class;
    using difference_type = std::ptrdiff_t;
    using pointer = Element*;
    using reference = Element&;

    Iterator() = default;
    explicit Iterator(XMLElement* const* place) : m_place(place) {}
    Element& operator*() const { return elementAs<Class>(**m_place); }
    Element* operator->() const { return &**this; }
    Iterator& operator++() {
      ++m_place;
      return *this;
    }
    Iterator operator++(int) { return Iterator(m_place++); }
    Iterator& operator--() {
      --m_place;
      return *this;
    }
    Iterator operator--(int) { return Iterator(m_place--); }
    bool operator==(const Iterator&) const = default;

  private:
    XMLElement* const* m_place = nullptr;
  };

  /// The registration by its place, as in XMLElement::subElementAt.
  ElementList(Parent& parent, std::size_t place) : m_parent(parent), m_place(place) {}

  std::size_t size() const { return instances().size(); }
  bool empty() const { return instances().empty(); }
  /// XMLElement::changeStamp of the parent: the same as long as nothing in it has changed.
  std::uint64_t changeStamp() const { return m_parent.changeStamp(); }
  Iterator begin() const { return Iterator(instances().data()); }
  Iterator end() const {
    const auto all = instances();
    return Iterator(all.data() + all.size());
  }
  /// The index is below size().
  Element& operator[](std::size_t index) const { return elementAs<Class>(*instances()[index]); }
  Element& back() const { return (*this)[size() - 1]; }

  bool contains(const Class& element) const {
    const auto all = instances();
    return std::find(all.begin(), all.end(), &element) != all.end();
  }

  /// A new one behind the others.
  Element& add() const { return elementAs<Class>(m_parent.addAt(m_place)); }
  /// A copy behind the others.
  Element& addCopy(const Class& other) const {
    Element& copy = add();
    static_cast<XMLElement&>(copy) = other;
    return copy;
  }
  /// Destroys it. False when it is none of these.
  bool remove(const Class& element) const { return m_parent.removeAt(m_place, element); }
  /// Moves the last one before that with the index.
  void moveLastTo(std::size_t index) const {
    m_parent.m_subElements.moveLast(m_place, index);
    m_parent.markChanged();
  }

private:
  std::span<XMLElement* const> instances() const { return m_parent.m_subElements.at(m_place); }

  Parent& m_parent;
  std::size_t m_place;
};

} // namespace Tallymoor
