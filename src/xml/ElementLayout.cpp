#include "xml/ElementLayout.h"
#include "foundation/XmlLibrary.h"
#include <algorithm>
#include <map>
#include <mutex>

namespace Tallymoor {

namespace {

std::mutex& growthMutex() {
  static std::mutex mutex;
  return mutex;
}

} // namespace

/// A known step, with its own copies of the texts that the step only refers to.
struct ElementLayout::Successor {
  Successor(const ElementLayout& base, const Step& taken, const Successor* next)
      : name(taken.name), referenceName(taken.referenceName), step(taken), layout(base, taken), next(next) {
    step.name = name;
    step.referenceName = referenceName;
  }

  std::u16string name;
  std::u16string referenceName;
  Step step;
  ElementLayout layout;
  const Successor* next;
};

ElementLayout::ElementLayout(std::u16string_view name) : m_name(name), m_nameUtf8(m_name.toUTF8()) {}

ElementLayout::ElementLayout(const ElementLayout& base, const Step& step)
    : m_base(&base), m_name(base.m_name), m_nameUtf8(base.m_nameUtf8), m_subElements(base.m_subElements),
      m_attributes(base.m_attributes) {
  apply(step);
  raiseExpectation(m_subElements.size());
}

const ElementLayout& ElementLayout::named(std::u16string_view name) {
  ensureXmlLibrary();
  static std::map<std::u16string, std::unique_ptr<const ElementLayout>, std::less<>>* roots =
      new std::map<std::u16string, std::unique_ptr<const ElementLayout>, std::less<>>;
  std::lock_guard lock(growthMutex());
  auto known = roots->find(name);
  if (known == roots->end())
    known = roots->emplace(name, std::unique_ptr<const ElementLayout>(new ElementLayout(name))).first;
  return *known->second;
}

const ElementLayout& ElementLayout::withSubElement(std::u16string_view elementName,
                                                   std::u16string_view referenceName,
                                                   XMLElement::Factory factory, bool required,
                                                   bool multiple) const {
  return follow({Step::SubElement, elementName, referenceName, factory, required, multiple});
}

const ElementLayout& ElementLayout::withAttribute(std::u16string_view name) const {
  return follow({Step::Attribute, name});
}

const ElementLayout& ElementLayout::withUnsafeAttribute(std::u16string_view name) const {
  return follow({Step::UnsafeAttribute, name});
}

const ElementLayout& ElementLayout::withUnsafeContent(std::u16string_view referenceName) const {
  return follow({Step::UnsafeContent, referenceName});
}

bool ElementLayout::isAttributeSafe(std::u16string_view name) const {
  const auto registration =
      std::find_if(m_attributes.begin(), m_attributes.end(),
                   [name](const AttributeRego& attribute) { return attribute.name == name; });
  return registration != m_attributes.end() && registration->contentSafe;
}

std::size_t ElementLayout::find(std::u16string_view referenceName) const {
  std::size_t index = 0;
  while (index < m_subElements.size() &&
         std::u16string_view(m_subElements[index].referenceName) != referenceName)
    ++index;
  return index;
}

const ElementLayout& ElementLayout::follow(const Step& step) const {
  if (const ElementLayout* known = knownSuccessor(step))
    return *known;
  std::lock_guard lock(growthMutex());
  if (const ElementLayout* known = knownSuccessor(step))
    return *known;
  const Successor* added = new Successor(*this, step, m_successors.load(std::memory_order_relaxed));
  m_successors.store(added, std::memory_order_release);
  return added->layout;
}

const ElementLayout* ElementLayout::knownSuccessor(const Step& step) const {
  for (const Successor* successor = m_successors.load(std::memory_order_acquire); successor;
       successor = successor->next)
    if (successor->step == step)
      return &successor->layout;
  return nullptr;
}

void ElementLayout::apply(const Step& step) {
  const auto attribute =
      std::find_if(m_attributes.begin(), m_attributes.end(),
                   [&step](const AttributeRego& known) { return known.name == step.name; });
  switch (step.kind) {
  case Step::SubElement: {
    const std::size_t first = find(step.referenceName);
    m_subElements.push_back({step.factory, step.required, step.multiple, true,
                             static_cast<std::int16_t>(first), String(String::Base(step.name)),
                             String(String::Base(step.referenceName))});
    break;
  }
  case Step::Attribute:
    m_attributes.push_back({String(String::Base(step.name)), true, true});
    break;
  case Step::UnsafeAttribute:
    if (attribute != m_attributes.end())
      attribute->contentSafe = false;
    else
      m_attributes.push_back({String(String::Base(step.name)), false, false});
    break;
  case Step::UnsafeContent:
    m_subElements[find(step.name)].contentSafe = false;
    break;
  }
}

void ElementLayout::raiseExpectation(std::size_t subElements) const {
  for (const ElementLayout* layout = this; layout; layout = layout->m_base)
    if (layout->m_expectedSubElements.load(std::memory_order_relaxed) < subElements)
      layout->m_expectedSubElements.store(subElements, std::memory_order_relaxed);
}

} // namespace Tallymoor
