#pragma once
#include "foundation/String.h"
#include <string_view>

namespace Tallymoor {

class ElementLayout;
class XMLElement;

/// What the constructor of an element class declares: its tag, its sub-elements and its attributes. All texts
/// are copied.
class ElementDeclaration {
public:
  /// Makes an instance of a sub-element's class, owned by the caller.
  using Factory = XMLElement* (*)();

  /// The tag in the file.
  const String& name() const;

protected:
  explicit ElementDeclaration(const ElementLayout& layout) : m_layout(&layout) {}

  void registerSubElement(std::u16string_view elementName, std::u16string_view referenceName, Factory factory,
                          bool optional);
  void registerSubElements(std::u16string_view elementName, std::u16string_view referenceName,
                           Factory factory, bool atLeastOne);
  /// An attribute that must be there on writing. Optional attributes are not registered at all.
  void registerAttribute(std::u16string_view name);
  /// The attribute's value is escaped on writing; an attribute that is not registered yet becomes so.
  void markAttributeUnsafe(std::u16string_view name);
  /// All that lies below the registration is escaped on writing.
  void markContentUnsafe(std::u16string_view referenceName);

  bool isLeaf() const;
  /// The place of the first registration with that reference name. If there is none, throws XMLException with
  /// the failure and the name.
  std::size_t placeOf(std::u16string_view referenceName, const char16_t* failure) const;

  const ElementLayout* m_layout; ///< never null, lives for ever
};

} // namespace Tallymoor
