#include "xml/ElementDeclaration.h"
#include "foundation/Exception.h"
#include "foundation/KeptTexts.h"
#include "xml/ElementLayout.h"

namespace Tallymoor {

const String& ElementDeclaration::name() const {
  return m_layout->name();
}

void ElementDeclaration::registerSubElement(std::u16string_view elementName,
                                            std::u16string_view referenceName, Factory factory,
                                            bool optional) {
  m_layout = &m_layout->withSubElement(elementName, referenceName, factory, !optional, false);
}

void ElementDeclaration::registerSubElements(std::u16string_view elementName,
                                             std::u16string_view referenceName, Factory factory,
                                             bool atLeastOne) {
  m_layout = &m_layout->withSubElement(elementName, referenceName, factory, atLeastOne, true);
}

void ElementDeclaration::registerAttribute(std::u16string_view name) {
  m_layout = &m_layout->withAttribute(name);
}

void ElementDeclaration::markAttributeUnsafe(std::u16string_view name) {
  m_layout = &m_layout->withUnsafeAttribute(name);
}

void ElementDeclaration::markContentUnsafe(std::u16string_view referenceName) {
  placeOf(referenceName, kept::NO_SUCH_REFERENCE);
  m_layout = &m_layout->withUnsafeContent(referenceName);
}

bool ElementDeclaration::isLeaf() const {
  return m_layout->subElements().empty();
}

std::size_t ElementDeclaration::placeOf(std::u16string_view referenceName, const char16_t* failure) const {
  const std::size_t place = m_layout->find(referenceName);
  if (place == m_layout->subElements().size())
    throw XMLException(failure + String(String::Base(referenceName)));
  return place;
}

} // namespace Tallymoor
