#include "xml/SubElements.h"
#include "xml/ElementLayout.h"
#include "xml/ElementMemory.h"
#include "xml/XMLElement.h"
#include <algorithm>
#include <utility>

namespace Tallymoor {

namespace {

// Elements with children that wait to be destroyed on this thread, linked by m_parent. A teardown works this
// list off in a loop, so that its depth on the stack does not follow the depth of the tree.
thread_local XMLElement* waitingForDestruction = nullptr;
thread_local bool destroying = false;

} // namespace

static_assert(alignof(ElementSlot) <= ElementMemory::ALIGNMENT);

void* ElementSlot::operator new[](std::size_t size) {
  return ElementMemory::allocate(size);
}

void ElementSlot::operator delete[](void* slots, std::size_t size) {
  ElementMemory::release(slots, size);
}

SubElements::~SubElements() {
  clear();
}

bool SubElements::empty() const {
  return std::all_of(m_slots.get(), m_slots.get() + m_count,
                     [](const ElementSlot& slot) { return slot.empty(); });
}

std::size_t SubElements::size() const {
  std::size_t count = 0;
  for (std::size_t place = 0; place < m_count; ++place)
    count += m_slots[place].size();
  return count;
}

XMLElement& SubElements::first(std::size_t place) const {
  const auto instances = at(place);
  if (instances.empty())
    throw XMLException(u"XMLElement::subElementAt: " + String::fromLong(static_cast<std::int64_t>(place)));
  return *instances.front();
}

const String& SubElements::text(std::size_t place) const {
  static const String none;
  const auto instances = at(place);
  return instances.empty() ? none : instances.front()->value();
}

/// All slots that the class will need are made together; only a registration that comes unexpectedly moves
/// them.
ElementSlot& SubElements::slotFor(const ElementLayout& layout, std::size_t place) {
  if (place >= m_count) {
    const std::size_t count = std::max(place + 1, layout.expectedSubElements());
    auto slots = std::make_unique<ElementSlot[]>(count);
    std::move(m_slots.get(), m_slots.get() + m_count, slots.get());
    m_slots = std::move(slots);
    m_count = static_cast<std::uint16_t>(count);
  }
  return m_slots[place];
}

void SubElements::add(XMLElement& parent, XMLElement* element, std::size_t place) {
  const ElementLayout& layout = *parent.m_layout;
  ElementSlot& slot = slotFor(layout, place);
  if (!layout.subElements()[place].multiple && slot.size() == 1) {
    if (slot[0] == element)
      return;
    removeAll(place);
  }
  element->m_parent = &parent;
  slot.add(element);
}

void SubElements::remove(std::size_t place, std::size_t index) {
  XMLElement* element = m_slots[place][index];
  m_slots[place].remove(index);
  destroy(element);
}

std::size_t SubElements::removeAll(std::size_t place) {
  if (place >= m_count)
    return 0;
  ElementSlot& slot = m_slots[place];
  const std::size_t count = slot.size();
  for (XMLElement* element : slot)
    destroy(element);
  slot.clear();
  return count;
}

void SubElements::clear() {
  for (std::size_t place = 0; place < m_count; ++place)
    removeAll(place);
}

void SubElements::moveLast(std::size_t place, std::size_t index) {
  ElementSlot& slot = m_slots[place];
  std::rotate(slot.begin() + index, slot.end() - 1, slot.end());
}

void SubElements::copy(XMLElement& parent, const XMLElement& other) {
  clear();
  m_slots.reset();
  m_count = 0;
  const SubElements& sources = other.m_subElements;
  for (std::size_t place = 0; place < sources.m_count; ++place) {
    const ElementSlot& source = sources.m_slots[place];
    ElementSlot& target = slotFor(*other.m_layout, place);
    target.seen = source.seen;
    for (const XMLElement* instance : source) {
      XMLElement* copy = instance->clone(other.m_layout->subElements()[place].factory);
      copy->m_parent = &parent;
      target.add(copy);
    }
  }
}

void SubElements::prepareForReading(const ElementLayout& layout) {
  for (std::size_t place = 0; place < m_count; ++place) {
    ElementSlot& slot = m_slots[place];
    slot.seen = false;
    const SubElementRego& registration = layout.subElements()[place];
    if (registration.required && !registration.multiple && !slot.empty())
      slot[0]->empty();
    else
      removeAll(place);
  }
}

bool SubElements::isSeen(std::size_t place) const {
  return place < m_count && m_slots[place].seen;
}

void SubElements::setSeen(const ElementLayout& layout, std::size_t place) {
  slotFor(layout, place).seen = true;
}

void SubElements::destroy(XMLElement* element) {
  if (!element->m_subElements.m_slots) {
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
