#pragma once
#include "foundation/Exception.h"
#include "foundation/String.h"
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <map>
#include <memory>
#include <span>
#include <string_view>
#include <vector>
#include <xercesc/sax2/ContentHandler.hpp>

namespace Tallymoor {

class DocumentReader;
class ElementLayout;
struct ElementComments;
struct ElementSlot;
class Utf8Writer;

/// One element of a document, and the base of every element class. Every document of the program is a tree of
/// these, and the tree is the working data: there is no second model behind it.
///
/// A class is declared by its constructor alone, which registers sub-elements and attributes. A registration
/// pairs the tag in the file with the reference name that code uses. Several registrations of one parent may
/// share a tag; the order of registration tells them apart, which makes the order in a file binding.
///
/// Documents hold hundreds of thousands of elements, so what a class declares is kept once (see
/// ElementLayout), and an instance holds only its values. Registering in a constructor is cheap from the
/// second instance on.
///
/// Comments of a document whose root asks for it (keepsComments) are written again at their places.
///
/// A tree has no lock: one thread at a time. Different trees may be used on different threads. Failures are
/// XMLException.
class XMLElement : public xercesc::ContentHandler {
public:
  /// Makes an instance of a sub-element's class, owned by whoever asked.
  using Factory = XMLElement* (*)();

  explicit XMLElement(const String& name);
  /// Deep copy; the copy is a root without a reader.
  XMLElement(const XMLElement& other);
  XMLElement& operator=(const XMLElement& other);
  ~XMLElement() override;
  // Elements stand beside those that were made with them, away from all else that comes and goes: records
  // that are entered over a year are then read as fast as those that have just been loaded.
  static void* operator new(std::size_t size);
  static void operator delete(void* element, std::size_t size);
  static void* operator new(std::size_t, void* place) { return place; }

  /// The tag in the file.
  const String& name() const;
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
  bool hasAttribute(std::u16string_view name) const;
  /// Replaces or inserts.
  void setAttribute(std::u16string_view name, const String& value);
  /// Does nothing when there is none of this name.
  void removeAttribute(std::u16string_view name);
  bool isContentSafe() const { return m_contentSafe; }
  /// This element's content is escaped on writing, and with it all that lies below.
  void markContentUnsafe() { m_contentSafe = false; }

  /// Grows whenever this element or anything below it changes, and is never that of an earlier element at the
  /// same address. Who keeps what was computed from an element keeps its stamp, too, and so knows whether it
  /// still holds.
  std::uint64_t changeStamp() const { return m_changeStamp; }

  /// Empties the element for another decode: attributes and value go, single required sub-elements are reset
  /// themselves, all others are destroyed.
  void reset();

  // --- Reading and writing

  /// Reads a file into the tree. What was built before a failure stays, and the caller decides what becomes
  /// of it.
  void decode(const String& fileName);
  /// Reads a text that ends in 0. Its encoding is what its XML declaration says.
  void decode(const char* text);
  /// Writes this element and all below it on one line, in UTF-8. What is missing throws, after what was
  /// written before it has gone to the stream. Characters that XML can't hold are dropped.
  void encode(std::ostream& stream);
  /// A whole document: the XML declaration, a line that names the document type, and the element.
  void encodeWithDoctype(std::ostream& stream, const String& dtdName);
  /// A whole document: the XML declaration, a line that names the stylesheet to show it by, and the element.
  void encodeWithStylesheet(std::ostream& stream, const String& stylesheetPath);
  /// The same with the line that names the document type between the stylesheet's line and the element.
  void encodeWithStylesheet(std::ostream& stream, const String& stylesheetPath, const String& dtdName);

  // --- Parse events; the reader calls them on the element that is being read

  void characters(const char16_t* chars, XMLSize_t length) override;
  void endDocument() override;
  void endElement(const char16_t* uri, const char16_t* localName, const char16_t* qualifiedName) override;
  void ignorableWhitespace(const char16_t*, XMLSize_t) override {}
  void processingInstruction(const char16_t*, const char16_t*) override {}
  void setDocumentLocator(const xercesc::Locator*) override {}
  void startDocument() override {}
  void startElement(const char16_t* uri, const char16_t* localName, const char16_t* qualifiedName,
                    const xercesc::Attributes& attributes) override;
  void startPrefixMapping(const char16_t*, const char16_t*) override {}
  void endPrefixMapping(const char16_t*) override {}
  void skippedEntity(const char16_t*) override {}

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

  // Declaration, called from constructors. All texts are copied.
  void registerSubElement(std::u16string_view elementName, std::u16string_view referenceName, Factory factory,
                          bool optional);
  void registerSubElements(std::u16string_view elementName, std::u16string_view referenceName,
                           Factory factory, bool atLeastOne);
  /// A single registration whose instance exists from construction on, so that code can always read it.
  /// Reading a document fills a required one and replaces an optional one.
  void registerAndCreate(std::u16string_view elementName, std::u16string_view referenceName, Factory factory,
                         bool optional = false);
  /// An attribute that must be there on writing. Optional attributes are not registered at all.
  void registerAttribute(std::u16string_view name);
  /// The attribute's value is escaped on writing; an attribute that is not registered yet becomes so.
  void markAttributeUnsafe(std::u16string_view name);
  /// All that lies below the registration is escaped on writing.
  void markContentUnsafe(std::u16string_view referenceName);

  // What an element class reaches by the place of a registration in its constructor, counted from 0: its own
  // operations need no search by name. ElementList gives the instances of a repeated one.

  /// The first instance; throws when there is none.
  XMLElement& subElementAt(std::size_t place);
  const XMLElement& subElementAt(std::size_t place) const;
  /// The text of the first instance; empty when there is none, as may be of an optional one.
  const String& textAt(std::size_t place) const;
  /// Sets the text of a single sub-element, which is made where there is none.
  void setTextAt(std::size_t place, const String& text);
  /// Valid until one is added or removed.
  std::span<XMLElement* const> instancesAt(std::size_t place) const;
  /// Makes one by the registered factory.
  XMLElement& addAt(std::size_t place);
  /// False when the instance is none of that registration.
  bool removeAt(std::size_t place, const XMLElement& instance);
  /// Moves the last instance before the one with this index.
  void moveLastAt(std::size_t place, std::size_t index);

  /// Called when the element's end tag was read, before its parent goes on. Classes that check themselves
  /// while they are read throw from here.
  virtual void endTagRead() {}
  /// Asked of the root: whether what the user wrote into the document as comments is kept. A comment goes
  /// with the element that follows it or, where none follows, with the one that it stands in.
  virtual bool keepsComments() const { return false; }

private:
  template <class>
  friend class ElementPool;
  template <class>
  friend class ElementList;
  class ParseScope;

  struct NameLess {
    using is_transparent = void;
    bool operator()(std::u16string_view left, std::u16string_view right) const { return left < right; }
  };
  using AttributeValues = std::map<String, String, NameLess>;
  static constexpr std::int16_t NO_REFERENCE = -1;

  bool isLeaf() const;
  void copyFrom(const XMLElement& other);
  std::size_t findRego(std::u16string_view referenceName, const char16_t* failure) const;
  ElementSlot& slotFor(std::size_t rego);
  const ElementSlot* existingSlot(std::size_t rego) const;
  void addInstance(XMLElement* element, std::size_t rego);
  void destroyAllSubElements();
  static std::size_t destroySubElements(ElementSlot& slot);
  static void release(XMLElement* element);
  void empty();
  void giveBackToPool();
  void readOwnStartTag(const xercesc::Attributes& attributes);
  std::size_t findExpected(const char16_t* tag) const;
  XMLElement& instanceFor(std::size_t rego);
  template <class MakeSource>
  void decodeFrom(const MakeSource& makeSource);
  void takeComments(std::vector<String> ElementComments::*place);
  void dropComments();
  void encode(Utf8Writer& writer);
  void encodeElement(Utf8Writer& writer, const std::vector<String>& commentsInside);
  void encodeAttributes(Utf8Writer& writer) const;
  void encodeSubElements(Utf8Writer& writer);
  bool hasSubElementInstances() const;
  static std::uint64_t presentStamp();
  static std::uint64_t nextStamp();
  void markChanged();

  const ElementLayout* m_layout;          ///< what the class declares; never null, lives for ever
  XMLElement* m_parent = nullptr;         ///< not owned; the link of a teardown while being destroyed
  DocumentReader* m_parser = nullptr;     ///< set while being read; kept between decodes where m_ownsParser
  std::unique_ptr<ElementSlot[]> m_slots; ///< the instances, one slot a registration; made when first needed
  std::unique_ptr<AttributeValues> m_attributes;
  String m_value;
  std::uint64_t m_changeStamp = presentStamp();
  std::int16_t m_lastReference = NO_REFERENCE; ///< the registration met last while reading
  std::uint16_t m_slotCount = 0;
  bool m_contentSafe = true;
  bool m_ownsParser = false;
  bool m_hasComments = false; ///< in ElementComments
};

/// The usual factory.
template <class Element>
XMLElement* newElement() {
  return new Element;
}

} // namespace Tallymoor
