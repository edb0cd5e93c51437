#include "market/HTMLTag.h"
#include "foundation/Exception.h"
#include "market/HTMLPageArena.h"
#include "market/HTMLTagSearch.h"
#include <algorithm>

namespace Tallymoor {

std::uint32_t HTMLTag::index() const {
  return m_arena->indexOf(this);
}

std::size_t HTMLTag::pageSize() const {
  return m_arena->page().size();
}

const HTMLTag* HTMLTag::parent() const {
  return m_parent == NONE ? nullptr : &(*m_arena)[m_parent];
}

const HTMLAttribute* HTMLTag::findAttribute(std::u16string_view name) const {
  const HTMLAttribute* const begin = m_arena->attributes(*this);
  const HTMLAttribute* const end = begin + m_numAttributes;
  const HTMLAttribute* const found =
      std::lower_bound(begin, end, name, [this](const HTMLAttribute& attribute, std::u16string_view wanted) {
        return m_arena->nameOf(attribute) < wanted;
      });
  return found != end && m_arena->nameOf(*found) == name ? found : nullptr;
}

String HTMLTag::attrVal(std::u16string_view name) const {
  const HTMLAttribute* const found = findAttribute(name);
  if (found == nullptr)
    throw HTMLException(u"HTMLTag::attrVal - not found attr: " + String(name));
  return String(m_arena->valueOf(*found));
}

std::pair<String, String> HTMLTag::attribute(std::size_t index) const {
  if (index >= m_numAttributes)
    throw HTMLException(u"HTMLTag::attribute - bad index");
  const HTMLAttribute& attribute = m_arena->attributes(*this)[index];
  return {String(m_arena->nameOf(attribute)), String(m_arena->valueOf(attribute))};
}

std::size_t HTMLTag::numSubTags() const {
  return m_lastSub == NONE ? 0 : (*m_arena)[m_lastSub].m_position - m_position;
}

std::size_t HTMLTag::countTags() const {
  return HTMLTagSearch(*this).numTags();
}

const HTMLTag& HTMLTag::subTag(std::u16string_view name) const {
  if (m_lastSub == NONE)
    throw HTMLException(u"HTMLTag::subTag - no sub tags");
  for (const HTMLTag* tag = firstSubTag(); tag != nullptr; tag = nextSubTag(tag))
    if (tag->nameView() == name)
      return *tag;
  throw HTMLException(u"HTMLTag::subTag - sub tag not found : " + String(name));
}

const HTMLTag* HTMLTag::firstSubTag() const {
  return nextSubTag(this);
}

const HTMLTag* HTMLTag::nextSubTag(const HTMLTag* subTag) const {
  const std::uint32_t from = subTag->index();
  if (m_lastSub == NONE || from == m_lastSub)
    return nullptr;
  return &(*m_arena)[m_arena->follower(from, m_lastSub)];
}

} // namespace Tallymoor
