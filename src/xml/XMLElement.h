#pragma once
#include "foundation/Exception.h"
#include "foundation/String.h"
#include "xml/ElementAttributes.h"
#include "xml/ElementReading.h"
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <span>
#include <string_view>

namespace Tallymoor {

/// One element of a document, and the base of every element class. Every document of the program is a tree of
/// these, and the tree is the working data: there is no second model behind it.
///
/// A class is declared by its constructor alone, which registers sub-elements and attributes. A registration
/// pairs the tag in the file with the reference name that code uses. Several registrations of one parent may
/// share a tag; the order of registration tells them apart, which makes the order in a file binding.
///
/// Documents hold hundreds of thousands of elements, so what a class declares is kept once (ElementLayout),
/// and an instance holds only its values. Registering in a constructor is cheap from the second instance on.
///
/// Comments of a document whose root asks for it (keepsComments) are written again at their places.
///
/// A tree has no lock: one thread at a time. Different trees may be used on different threads. Failures are
/// XMLException.
class XMLElement : public ElementReading {
public:
  explicit XMLElement(const String& name);
  /// Deep copy; the copy is a root without a reader.
  XMLElement(const XMLElement& other);
  XMLElement& operator=(const XMLElement& other);
  ~XMLElement() override;
  // In ElementMemory.
  static void* operator new(std::size_t size);
  static void operator delete(void* element, std::size_t size);
  static void* operator new(std::size_t, void* place) { return place; }

  /// The owner; null at a root.
  XMLElement* parent() const { return m_parent; }

  // --- Sub-elements, reached by reference name; an unknown name throws

  /// Throws when the index is past the end.
  XMLElement& subElement(std::u16string_view referenceName, std::size_t index = 0);
  const XMLElement& subElement(std::u16string_view referenceName, std::size_t index = 0) const;
  /// How many instances stand under the name, 0 or 1 for a single registration.
  std::size_t numSubElements(std::u16string_view referenceName) const;
  /// Takes the element over, also when it throws, and gives it back. Where a single registration holds an
  /// instance already, that one is destroyed.
  XMLElement& addSubElement(XMLElement* element, std::u16string_view referenceName);
  /// Destroys the instance and closes the gap.
  void removeSubElement(std::u16string_view referenceName, std::size_t index);
  /// Destroys all instances and says how many there were.
  std::size_t removeSubElements(std::u16string_view referenceName);

  // --- Values

  const String& value() const { return m_value; }
  /// An element with registered sub-elements refuses it.
  void setValue(const String& text);
  /// Throws when the attribute is not present.
  const String& attribute(std::u16string_view name) const;
  bool hasAttribute(std::u16string_view name) const { return m_attributes.find(name) != nullptr; }
  /// Replaces or inserts.
  void setAttribute(std::u16string_view name, const String& value);
  void removeAttribute(std::u16string_view name);
  bool isContentSafe() const { return m_contentSafe; }
  /// This element's content is escaped on writing, and with it all that lies below.
  void markContentUnsafe() { m_contentSafe = false; }

  /// Grows whenever this element or anything below it changes, and is never that of an earlier element at the
  /// same address. What was computed from an element holds as long as its stamp is the same.
  std::uint64_t changeStamp() const { return m_changeStamp; }

  /// Empties the element for another decode: attributes and value go, single required sub-elements are reset
  /// themselves, all others are destroyed.
  void reset();

  // --- Writing; for reading see ElementReading

  /// Writes this element and all below it on one line, in UTF-8. What is missing throws, after what was
  /// written before it has gone to the stream. Characters that XML can't hold are dropped.
  void encode(std::ostream& stream);
  /// A whole document: the XML declaration, a line that names the document type, and the element.
  void encodeWithDoctype(std::ostream& stream, const String& dtdName) {
    encodeWithStylesheet(stream, String(), dtdName);
  }
  /// A whole document: the XML declaration, a line that names the stylesheet to show it by, one that names
  /// the document type unless that is empty, and the element.
  void encodeWithStylesheet(std::ostream& stream, const String& stylesheetPath,
                            const String& dtdName = String());

  /// A deep copy of this element in what the factory makes.
  virtual XMLElement* clone(Factory factory) const;
  /// Ends an instance that was made by its factory. Pooled classes give it back to their pool.
  virtual void destroy();
  /// Throws when a registered attribute is missing. Called on writing.
  virtual void checkAttributes() const;
  /// Throws when a required sub-element is missing. Called on writing.
  virtual void checkSubElements() const;

protected:
  /// For classes that keep the first layout of their name in a static, which saves looking it up.
  explicit XMLElement(const ElementLayout& layout);

  using ElementDeclaration::markContentUnsafe;
  /// A single registration whose instance exists from construction on, so that code can always read it.
  /// Reading a document fills a required one and replaces an optional one.
  void registerAndCreate(std::u16string_view elementName, std::u16string_view referenceName, Factory factory,
                         bool optional = false);

  // What an element class reaches by the place of a registration in its constructor, counted from 0: its own
  // operations need no search by name. ElementList gives the instances of a repeated one.

  /// The first instance; throws if there is none.
  XMLElement& subElementAt(std::size_t place) { return m_subElements.first(place); }
  const XMLElement& subElementAt(std::size_t place) const { return m_subElements.first(place); }
  /// The text of the first instance; empty if there is none, as may be of an optional one.
  const String& textAt(std::size_t place) const { return m_subElements.text(place); }
  /// Sets the text of a single sub-element, which is made if there is none.
  void setTextAt(std::size_t place, const String& text);

private:
  template <class>
  friend class ElementPool;
  template <class>
  friend class ElementList;
  friend class ElementReading;
  friend class ElementWriter;
  friend class SubElements;

  void copyFrom(const XMLElement& other);
  XMLElement& addAt(std::size_t place);
  bool removeAt(std::size_t place, const XMLElement& instance);
  void empty();
  void dropComments();
  void giveBackToPool();
  static std::uint64_t presentStamp() { return s_changes.load(std::memory_order_relaxed); }
  static std::uint64_t nextStamp() { return s_changes.fetch_add(1, std::memory_order_relaxed) + 1; }
  void markChanged();

  /// Of all trees. Those of several threads share it, so that a stamp never comes twice.
  inline static std::atomic<std::uint64_t> s_changes{0};

  bool m_contentSafe = true;
  bool m_hasComments = false;     ///< in ElementComments
  XMLElement* m_parent = nullptr; ///< not owned; the link of a teardown while being destroyed
  ElementAttributes m_attributes;
  String m_value;
  std::uint64_t m_changeStamp = presentStamp();
};

/// The usual factory.
template <class Element>
XMLElement* newElement() {
  return new Element;
}

} // namespace Tallymoor
