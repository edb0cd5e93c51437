#include "xml/XMLElement.h"
#include "foundation/KeptTexts.h"
#include "xml/DocumentReader.h"
#include "xml/ElementComments.h"
#include "xml/ElementLayout.h"
#include "xml/ElementSlot.h"
#include <algorithm>
#include <atomic>
#include <memory_resource>
#include <utility>

namespace Tallymoor {

namespace {

String asString(std::u16string_view text) {
  return String(String::Base(text));
}

String asString(std::size_t number) {
  return String::fromLong(static_cast<std::int64_t>(number));
}

// Elements with children that wait to be destroyed on this thread, linked by m_parent. A teardown works this
// list off in a loop, so that its depth on the stack does not follow the depth of the tree.
thread_local XMLElement* waitingForDestruction = nullptr;
thread_local bool destroying = false;

/// Counts the changes of all trees. Trees of several threads share it, so that a stamp never comes twice.
std::atomic<std::uint64_t> changes{0};

constexpr std::size_t ALIGNMENT = std::max(alignof(XMLElement), alignof(ElementSlot));

#if defined(__SANITIZE_ADDRESS__) // of gcc
constexpr bool FINDS_USE_AFTER_DELETION = true;
#elif defined(__has_feature) // of clang
constexpr bool FINDS_USE_AFTER_DELETION = __has_feature(address_sanitizer);
#else
constexpr bool FINDS_USE_AFTER_DELETION = false;
#endif

/// Lives as long as the process: elements in statics are destroyed late. A pool would hide from the sanitizer
/// that an element is used after its end.
std::pmr::memory_resource& elementMemory() {
  static auto& memory =
      FINDS_USE_AFTER_DELETION ? *std::pmr::new_delete_resource() : *new std::pmr::synchronized_pool_resource;
  return memory;
}

} // namespace

XMLElement::XMLElement(const String& name) : m_layout(&ElementLayout::named(name)) {}

XMLElement::XMLElement(const ElementLayout& layout) : m_layout(&layout) {}

void* XMLElement::operator new(std::size_t size) {
  return elementMemory().allocate(size, ALIGNMENT);
}

void XMLElement::operator delete(void* element, std::size_t size) {
  elementMemory().deallocate(element, size, ALIGNMENT);
}

void* ElementSlot::operator new[](std::size_t size) {
  return elementMemory().allocate(size, ALIGNMENT);
}

void ElementSlot::operator delete[](void* slots, std::size_t size) {
  elementMemory().deallocate(slots, size, ALIGNMENT);
}

std::uint64_t XMLElement::presentStamp() {
  return changes.load(std::memory_order_relaxed);
}

std::uint64_t XMLElement::nextStamp() {
  return changes.fetch_add(1, std::memory_order_relaxed) + 1;
}

void XMLElement::markChanged() {
  const std::uint64_t stamp = nextStamp();
  for (XMLElement* element = this; element; element = element->m_parent)
    element->m_changeStamp = stamp;
}

// g++ warns of a copy that does not name its base.
// NOLINTNEXTLINE(readability-redundant-member-init)
XMLElement::XMLElement(const XMLElement& other) : xercesc::ContentHandler(), m_layout(other.m_layout) {
  copyFrom(other);
}

XMLElement& XMLElement::operator=(const XMLElement& other) {
  if (this != &other) {
    destroyAllSubElements();
    m_slots.reset();
    m_slotCount = 0;
    copyFrom(other);
  }
  return *this;
}

XMLElement::~XMLElement() {
  destroyAllSubElements();
  dropComments();
  if (m_ownsParser)
    delete m_parser;
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
  m_attributes = other.m_attributes ? std::make_unique<AttributeValues>(*other.m_attributes) : nullptr;
  for (std::size_t rego = 0; rego < other.m_slotCount; ++rego) {
    const ElementSlot& source = other.m_slots[rego];
    ElementSlot& target = slotFor(rego);
    target.seen = source.seen;
    for (const XMLElement* instance : source) {
      XMLElement* copy = instance->clone(m_layout->subElements()[rego].factory);
      copy->m_parent = this;
      target.add(copy);
    }
  }
}

const String& XMLElement::name() const {
  return m_layout->name();
}

bool XMLElement::isLeaf() const {
  return m_layout->subElements().empty();
}

// --- Declaration

void XMLElement::registerSubElement(std::u16string_view elementName, std::u16string_view referenceName,
                                    Factory factory, bool optional) {
  m_layout = &m_layout->withSubElement(elementName, referenceName, factory, !optional, false);
}

void XMLElement::registerSubElements(std::u16string_view elementName, std::u16string_view referenceName,
                                     Factory factory, bool atLeastOne) {
  m_layout = &m_layout->withSubElement(elementName, referenceName, factory, atLeastOne, true);
}

void XMLElement::registerAndCreate(std::u16string_view elementName, std::u16string_view referenceName,
                                   Factory factory, bool optional) {
  registerSubElement(elementName, referenceName, factory, optional);
  addInstance(factory(), m_layout->subElements().size() - 1);
}

void XMLElement::registerAttribute(std::u16string_view name) {
  m_layout = &m_layout->withAttribute(name);
}

void XMLElement::markAttributeUnsafe(std::u16string_view name) {
  m_layout = &m_layout->withUnsafeAttribute(name);
}

void XMLElement::markContentUnsafe(std::u16string_view referenceName) {
  if (m_layout->find(referenceName) == m_layout->subElements().size())
    throw XMLException(kept::NO_SUCH_REFERENCE + asString(referenceName));
  m_layout = &m_layout->withUnsafeContent(referenceName);
}

// --- Sub-elements

XMLElement& XMLElement::subElement(std::u16string_view referenceName, std::size_t index) {
  const ElementSlot* slot = existingSlot(findRego(referenceName, u"XMLElement::findRego: "));
  if (!slot || index >= slot->size())
    throw XMLException(u"XMLElement::subElement(2) :" + asString(referenceName) + asString(index));
  return *(*slot)[index];
}

const XMLElement& XMLElement::subElement(std::u16string_view referenceName, std::size_t index) const {
  const ElementSlot* slot = existingSlot(findRego(referenceName, u"XMLElement::findRego(2): "));
  if (!slot || index >= slot->size())
    throw XMLException(u"XMLElement::subElement :" + asString(referenceName) + asString(index));
  return *(*slot)[index];
}

std::size_t XMLElement::numSubElements(std::u16string_view referenceName) const {
  const ElementSlot* slot = existingSlot(findRego(referenceName, u"XMLElement::findRego(2): "));
  return slot ? slot->size() : 0;
}

XMLElement& XMLElement::addSubElement(XMLElement* element, std::u16string_view referenceName) {
  const std::size_t rego = m_layout->find(referenceName);
  if (rego == m_layout->subElements().size()) {
    release(element);
    findRego(referenceName, u"XMLElement::findRego: ");
  }
  addInstance(element, rego);
  element->markChanged();
  return *element;
}

void XMLElement::removeSubElement(std::u16string_view referenceName, std::size_t index) {
  const std::size_t rego = findRego(referenceName, u"XMLElement::findRego: ");
  const ElementSlot* slot = existingSlot(rego);
  if (!slot || index >= slot->size())
    throw XMLException(u"XMLElement::removeSubElement: " + asString(referenceName) + asString(index));
  XMLElement* element = (*slot)[index];
  slotFor(rego).remove(index);
  release(element);
  markChanged();
}

std::size_t XMLElement::removeSubElements(std::u16string_view referenceName) {
  const std::size_t rego = findRego(referenceName, u"XMLElement::findRego: ");
  if (rego >= m_slotCount)
    return 0;
  markChanged();
  return destroySubElements(m_slots[rego]);
}

std::size_t XMLElement::findRego(std::u16string_view referenceName, const char16_t* failure) const {
  const std::size_t rego = m_layout->find(referenceName);
  if (rego == m_layout->subElements().size())
    throw XMLException(failure + asString(referenceName));
  return rego;
}

const ElementSlot* XMLElement::existingSlot(std::size_t rego) const {
  return rego < m_slotCount ? &m_slots[rego] : nullptr;
}

/// The slot of a registration. All slots that the class will need are made together; only a registration that
/// comes unexpectedly moves them.
ElementSlot& XMLElement::slotFor(std::size_t rego) {
  if (rego >= m_slotCount) {
    const std::size_t count = std::max(rego + 1, m_layout->expectedSubElements());
    auto slots = std::make_unique<ElementSlot[]>(count);
    std::move(m_slots.get(), m_slots.get() + m_slotCount, slots.get());
    m_slots = std::move(slots);
    m_slotCount = static_cast<std::uint16_t>(count);
  }
  return m_slots[rego];
}

void XMLElement::addInstance(XMLElement* element, std::size_t rego) {
  ElementSlot& slot = slotFor(rego);
  if (!m_layout->subElements()[rego].multiple && slot.size() == 1) {
    if (slot[0] == element)
      return;
    destroySubElements(slot);
  }
  element->m_parent = this;
  slot.add(element);
}

XMLElement& XMLElement::subElementAt(std::size_t place) {
  return const_cast<XMLElement&>(std::as_const(*this).subElementAt(place));
}

const XMLElement& XMLElement::subElementAt(std::size_t place) const {
  const ElementSlot* slot = existingSlot(place);
  if (!slot || slot->empty())
    throw XMLException(u"XMLElement::subElementAt: " + asString(place) + u" in " + name());
  return *(*slot)[0];
}

const String& XMLElement::textAt(std::size_t place) const {
  static const String none;
  const ElementSlot* slot = existingSlot(place);
  return slot && !slot->empty() ? (*slot)[0]->m_value : none;
}

void XMLElement::setTextAt(std::size_t place, const String& text) {
  const ElementSlot* slot = existingSlot(place);
  (slot && !slot->empty() ? *(*slot)[0] : addAt(place)).setValue(text);
}

std::span<XMLElement* const> XMLElement::instancesAt(std::size_t place) const {
  const ElementSlot* slot = existingSlot(place);
  return slot ? std::span(slot->begin(), slot->size()) : std::span<XMLElement* const>();
}

XMLElement& XMLElement::addAt(std::size_t place) {
  XMLElement* element = m_layout->subElements()[place].factory();
  addInstance(element, place);
  element->markChanged();
  return *element;
}

bool XMLElement::removeAt(std::size_t place, const XMLElement& instance) {
  const std::span<XMLElement* const> instances = instancesAt(place);
  const auto found = std::find(instances.begin(), instances.end(), &instance);
  if (found == instances.end())
    return false;
  XMLElement* element = *found;
  slotFor(place).remove(static_cast<std::size_t>(found - instances.begin()));
  release(element);
  markChanged();
  return true;
}

void XMLElement::moveLastAt(std::size_t place, std::size_t index) {
  ElementSlot& slot = slotFor(place);
  std::rotate(slot.begin() + index, slot.end() - 1, slot.end());
  markChanged();
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
  if (m_attributes) {
    const auto found = m_attributes->find(name);
    if (found != m_attributes->end())
      return found->second;
  }
  throw XMLException(u"XMLElement::attribute :" + asString(name) + u" in " + this->name());
}

bool XMLElement::hasAttribute(std::u16string_view name) const {
  return m_attributes && m_attributes->find(name) != m_attributes->end();
}

void XMLElement::setAttribute(std::u16string_view name, const String& value) {
  if (!m_attributes)
    m_attributes = std::make_unique<AttributeValues>();
  m_attributes->insert_or_assign(asString(name), value);
  markChanged();
}

void XMLElement::removeAttribute(std::u16string_view name) {
  if (!m_attributes)
    return;
  const auto found = m_attributes->find(name);
  if (found != m_attributes->end())
    m_attributes->erase(found);
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
  m_attributes.reset();
  m_value.clear();
  m_lastReference = NO_REFERENCE;
  dropComments();
  for (std::size_t index = 0; index < m_slotCount; ++index) {
    ElementSlot& slot = m_slots[index];
    slot.seen = false;
    if (slot.empty())
      continue;
    const SubElementRego& rego = m_layout->subElements()[index];
    if (rego.required && !rego.multiple)
      slot[0]->empty();
    else
      destroySubElements(slot);
  }
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
  if (m_ownsParser)
    delete m_parser;
  m_parser = nullptr;
  m_ownsParser = false;
}

void XMLElement::destroyAllSubElements() {
  for (std::size_t index = 0; index < m_slotCount; ++index)
    destroySubElements(m_slots[index]);
}

std::size_t XMLElement::destroySubElements(ElementSlot& slot) {
  const std::size_t count = slot.size();
  for (XMLElement* element : slot)
    release(element);
  slot.clear();
  return count;
}

void XMLElement::release(XMLElement* element) {
  if (!element->m_slots) {
    element->destroy();
    return;
  }
  element->m_parent = waitingForDestruction;
  waitingForDestruction = element;
  if (destroying)
    return;
  destroying = true;
  while (XMLElement* next = waitingForDestruction) {
    waitingForDestruction = next->m_parent;
    next->m_parent = nullptr;
    next->destroy();
  }
  destroying = false;
}

} // namespace Tallymoor
