#include "pages/HTMLTag.h"
#include "foundation/Exception.h"
#include "pages/HTMLCursor.h"
#include "pages/HTMLPageArena.h"
#include "pages/HTMLTagSearch.h"

namespace Tallymoor {

std::uint32_t HTMLTag::index() const {
  return static_cast<std::uint32_t>(this - m_arena->tags.data());
}

std::size_t HTMLTag::pageSize() const {
  return m_arena->page.size();
}

const HTMLTag* HTMLTag::parent() const {
  return m_parent == NONE ? nullptr : &m_arena->tags[m_parent];
}

std::optional<std::u16string_view> HTMLTag::findAttribute(std::u16string_view name) const {
  HTMLCursor cursor(m_arena->page, m_attributes);
  HTMLAttribute attribute;
  while (cursor.readPart(attribute) == HTMLCursor::Part::Attribute)
    if (attribute.name == name)
      return attribute.value;
  return std::nullopt;
}

String HTMLTag::attrVal(std::u16string_view name) const {
  const std::optional<std::u16string_view> found = findAttribute(name);
  if (!found)
    throw HTMLException(u"HTMLTag::attrVal - not found attr: " + String(name));
  return String(*found);
}

std::map<String, String> HTMLTag::attributes() const {
  std::map<String, String> values;
  HTMLCursor cursor(m_arena->page, m_attributes);
  HTMLAttribute attribute;
  while (cursor.readPart(attribute) == HTMLCursor::Part::Attribute)
    values.try_emplace(String(attribute.name), attribute.value);
  return values;
}

std::size_t HTMLTag::numSubTags() const {
  std::size_t count = 0;
  for (const HTMLTag* tag = firstSubTag(); tag != nullptr; tag = nextSubTag(tag))
    ++count;
  return count;
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

const HTMLTag* HTMLTag::nextSubTag(const HTMLTag* subTag) const {
  if (m_lastSub == NONE || subTag->index() == m_lastSub)
    return nullptr;
  // What was put behind the tag later came after the run's end; what was put there earlier had been taken
  // away again before the run's own follower came.
  std::uint32_t next = subTag->m_lastFollower;
  while (next > m_lastSub)
    next = m_arena->tags[next].m_followerBefore;
  return &m_arena->tags[next];
}

} // namespace Tallymoor
