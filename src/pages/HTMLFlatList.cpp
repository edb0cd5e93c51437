#include "pages/HTMLFlatList.h"
#include "foundation/Exception.h"
#include <algorithm>

namespace Tallymoor {

HTMLName& HTMLFlatList::named(std::u16string_view name) {
  std::size_t hash = name.size();
  for (const char16_t unit : name)
    hash = hash * 31 + unit;
  HTMLName*& recent = m_recent[hash % RECENT];
  if (recent == nullptr || recent->first != name)
    recent = &lookUp(name);
  return *recent;
}

HTMLName& HTMLFlatList::lookUp(std::u16string_view name) {
  const bool isFolded = std::none_of(
      name.begin(), name.end(), [](char16_t unit) { return (unit >= u'A' && unit <= u'Z') || unit >= 0x80; });
  const String folded = isFolded ? String() : String(name).toLower();
  const auto found = m_arena.names.find(isFolded ? name : folded);
  if (found != m_arena.names.end())
    return *found;
  if (m_arena.names.size() == HTMLPageArena::MOST_NAMES)
    throw HTMLException(u"HTMLParser::Parse - too many different tag names");
  const std::u16string_view text = isFolded ? name : m_arena.kept.emplace_back(folded);
  return *m_arena.names.try_emplace(text, HTMLTag::NONE).first;
}

void HTMLFlatList::open(HTMLName& name, std::size_t attributes) {
  const auto tag = static_cast<std::uint32_t>(m_arena.tags.size());
  const std::uint32_t previous = m_entries.empty() ? HTMLTag::NONE : m_entries.back().tag;
  m_arena.tags.push_back(HTMLTag(m_arena, name, static_cast<std::uint32_t>(attributes), previous));
  m_arena.followersEnd.push_back(0);
  if (previous != HTMLTag::NONE)
    ++m_arena.followersEnd[previous];
  m_entries.push_back({tag, name.second, 0});
  name.second = static_cast<std::uint32_t>(m_entries.size() - 1);
}

void HTMLFlatList::endAttributes(std::size_t end, bool isClosing) {
  HTMLTag& tag = tagOf(m_entries.back());
  tag.m_attributesSize = static_cast<std::uint32_t>(end) - tag.m_attributes;
  if (!isClosing)
    return;
  tag.m_closed = true;
  tag.m_name->second = m_entries.back().previousOpen;
}

void HTMLFlatList::close(HTMLName& name) {
  if (name.second == HTMLTag::NONE)
    return;
  Entry& opener = m_entries[name.second];
  HTMLTag& tag = tagOf(opener);
  if (m_entries.back().tag != opener.tag)
    tag.m_lastSub = m_entries.back().tag;
  tag.m_closed = true;
  opener.closingOrder = ++m_numClosings;
  name.second = opener.previousOpen;
  for (; tagOf(m_entries.back()).m_name != &name; m_entries.pop_back()) {
    HTMLTag& last = tagOf(m_entries.back());
    last.m_parent = opener.tag;
    if (!last.m_closed)
      last.m_name->second = m_entries.back().previousOpen;
  }
}

void HTMLFlatList::offerText(std::u16string_view text) {
  if (m_entries.empty())
    return;
  HTMLTag& tag = tagOf(m_entries.back());
  if (tag.m_lastSub == HTMLTag::NONE && tag.m_textLength == 0) {
    tag.m_text = text.data();
    tag.m_textLength = text.size() & 0x7FFFFFFF;
  }
}

void HTMLFlatList::finish() {
  // The parent of an entry is the tag before it that was closed last, if the entry was there by then; if it
  // came later, no other closing took it either.
  const Entry* lastCloser = nullptr;
  for (const Entry& entry : m_entries) {
    HTMLTag& tag = tagOf(entry);
    if (lastCloser != nullptr && tagOf(*lastCloser).m_lastSub >= entry.tag)
      tag.m_parent = lastCloser->tag;
    if (tag.m_lastSub != HTMLTag::NONE &&
        (lastCloser == nullptr || entry.closingOrder > lastCloser->closingOrder))
      lastCloser = &entry;
  }
}

const HTMLTag* HTMLFlatList::firstNamed(const HTMLName& name) const {
  const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                  [&](const Entry& entry) { return tagOf(entry).m_name == &name; });
  return found == m_entries.end() ? nullptr : &tagOf(*found);
}

} // namespace Tallymoor
