#include "xml/XMLElement.h"
#include "foundation/KeptTexts.h"
#include "xml/ElementComments.h"
#include "xml/ElementLayout.h"
#include "xml/ElementMemory.h"
#include "xml/ElementWriter.h"
#include <algorithm>

namespace Tallymoor {

namespace {

String asString(std::size_t number) {
  return String::fromLong(static_cast<std::int64_t>(number));
}

} // namespace

static_assert(alignof(XMLElement) <= ElementMemory::ALIGNMENT);

XMLElement::XMLElement(const String& name) : XMLElement(ElementLayout::named(name)) {}

XMLElement::XMLElement(const ElementLayout& layout) : ElementReading(layout) {}

void* XMLElement::operator new(std::size_t size) {
  return ElementMemory::allocate(size);
}

void XMLElement::operator delete(void* element, std::size_t size) {
  ElementMemory::release(element, size);
}

XMLElement::XMLElement(const XMLElement& other) : ElementReading(*other.m_layout) {
  copyFrom(other);
}

XMLElement& XMLElement::operator=(const XMLElement& other) {
  if (this != &other)
    copyFrom(other);
  return *this;
}

XMLElement::~XMLElement() {
  dropComments();
}

void XMLElement::copyFrom(const XMLElement& other) {
  markChanged();
  m_layout = other.m_layout;
  m_value = other.m_value;
  dropComments();
  m_hasComments = other.m_hasComments;
  if (m_hasComments)
    ElementComments::set(*this, ElementComments::of(other));
  m_contentSafe = other.m_contentSafe;
  m_attributes = other.m_attributes;
  m_subElements.copy(*this, other);
}

void XMLElement::markChanged() {
  const std::uint64_t stamp = nextStamp();
  for (XMLElement* element = this; element; element = element->m_parent)
    element->m_changeStamp = stamp;
}

// --- Sub-elements by name

void XMLElement::registerAndCreate(std::u16string_view elementName, std::u16string_view referenceName,
                                   Factory factory, bool optional) {
  registerSubElement(elementName, referenceName, factory, optional);
  m_subElements.add(*this, factory(), m_layout->subElements().size() - 1);
}

XMLElement& XMLElement::subElement(std::u16string_view referenceName, std::size_t index) {
  const auto instances = m_subElements.at(placeOf(referenceName, kept::FIND_REGISTRATION));
  if (index >= instances.size())
    throw XMLException(u"XMLElement::subElement(2) :" + String(referenceName) + asString(index));
  return *instances[index];
}

const XMLElement& XMLElement::subElement(std::u16string_view referenceName, std::size_t index) const {
  const auto instances = m_subElements.at(placeOf(referenceName, kept::FIND_REGISTRATION_TO_READ));
  if (index >= instances.size())
    throw XMLException(u"XMLElement::subElement :" + String(referenceName) + asString(index));
  return *instances[index];
}

std::size_t XMLElement::numSubElements(std::u16string_view referenceName) const {
  return m_subElements.at(placeOf(referenceName, kept::FIND_REGISTRATION_TO_READ)).size();
}

XMLElement& XMLElement::addSubElement(XMLElement* element, std::u16string_view referenceName) {
  const std::size_t place = m_layout->find(referenceName);
  if (place == m_layout->subElements().size()) {
    SubElements::destroy(element);
    placeOf(referenceName, kept::FIND_REGISTRATION);
  }
  m_subElements.add(*this, element, place);
  element->markChanged();
  return *element;
}

void XMLElement::removeSubElement(std::u16string_view referenceName, std::size_t index) {
  const std::size_t place = placeOf(referenceName, kept::FIND_REGISTRATION);
  if (index >= m_subElements.at(place).size())
    throw XMLException(u"XMLElement::removeSubElement: " + String(referenceName) + asString(index));
  m_subElements.remove(place, index);
  markChanged();
}

std::size_t XMLElement::removeSubElements(std::u16string_view referenceName) {
  const std::size_t place = placeOf(referenceName, kept::FIND_REGISTRATION);
  markChanged();
  return m_subElements.removeAll(place);
}

// --- Sub-elements by place

void XMLElement::setTextAt(std::size_t place, const String& text) {
  const auto instances = m_subElements.at(place);
  (instances.empty() ? addAt(place) : *instances.front()).setValue(text);
}

XMLElement& XMLElement::addAt(std::size_t place) {
  XMLElement* element = m_layout->subElements()[place].factory();
  m_subElements.add(*this, element, place);
  element->markChanged();
  return *element;
}

bool XMLElement::removeAt(std::size_t place, const XMLElement& instance) {
  const auto instances = m_subElements.at(place);
  const auto found = std::find(instances.begin(), instances.end(), &instance);
  if (found == instances.end())
    return false;
  m_subElements.remove(place, static_cast<std::size_t>(found - instances.begin()));
  markChanged();
  return true;
}

// --- Values

void XMLElement::setValue(const String& text) {
  if (!isLeaf())
    throw XMLException(u"XMLElement::setValue: m_registeredSubElements.size() > 0 :" + name() +
                       u" with value: " + text);
  m_value = text;
  markChanged();
}

const String& XMLElement::attribute(std::u16string_view name) const {
  if (const String* value = m_attributes.find(name))
    return *value;
  throw XMLException(u"XMLElement::attribute :" + String(name) + u" in " + this->name());
}

void XMLElement::setAttribute(std::u16string_view name, const String& value) {
  m_attributes.set(name, value);
  markChanged();
}

void XMLElement::removeAttribute(std::u16string_view name) {
  m_attributes.remove(name);
  markChanged();
}

// --- Life

XMLElement* XMLElement::clone(Factory factory) const {
  XMLElement* copy = factory();
  *copy = *this;
  return copy;
}

void XMLElement::destroy() {
  delete this;
}

void XMLElement::reset() {
  empty();
  markChanged();
}

void XMLElement::empty() {
  m_changeStamp = nextStamp();
  m_attributes.clear();
  m_value.clear();
  forgetLastReference();
  dropComments();
  m_subElements.prepareForReading(*m_layout);
}

void XMLElement::dropComments() {
  if (m_hasComments)
    ElementComments::remove(*this);
  m_hasComments = false;
}

/// A pooled instance must know nothing of the tree that it leaves.
void XMLElement::giveBackToPool() {
  reset();
  m_parent = nullptr;
  dropReader();
}

// --- Writing

void XMLElement::encode(std::ostream& stream) {
  ElementWriter(stream).write(*this);
}

void XMLElement::encodeWithStylesheet(std::ostream& stream, const String& stylesheetPath,
                                      const String& dtdName) {
  ElementWriter writer(stream);
  writer.writeHead(*this, stylesheetPath, dtdName);
  writer.write(*this);
}

void XMLElement::checkAttributes() const {
  for (const AttributeRego& registration : m_layout->attributes())
    if (!hasAttribute(registration.name))
      throw XMLException(u"XMLElement::checkAttributes, missing attribute " + registration.name + u" in " +
                         name());
}

void XMLElement::checkSubElements() const {
  const auto& registrations = m_layout->subElements();
  for (std::size_t place = 0; place < registrations.size(); ++place)
    if (registrations[place].required && m_subElements.at(place).empty())
      throw XMLException(u"XMLElement::checkSubElements - required at least one " +
                         registrations[place].referenceName + u" in " + name());
}

} // namespace Tallymoor
