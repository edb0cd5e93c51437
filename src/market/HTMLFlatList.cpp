#include "market/HTMLFlatList.h"

namespace Tallymoor {

HTMLFlatList::HTMLFlatList(HTMLPageArena& arena, HTMLNames& names) : m_arena(arena), m_names(names) {}

std::uint32_t HTMLFlatList::open(HTMLNames::Id name) {
  const auto place = static_cast<std::uint32_t>(m_entries.size());
  HTMLNames::Name& known = m_names[name];
  const std::uint32_t tag =
      m_arena.addTag(known.text, m_entries.empty() ? NONE : m_entries.back().tag, place);
  m_entries.push_back({tag, name, known.last, known.lastOpen, 0});
  known.last = place;
  known.lastOpen = place;
  return tag;
}

void HTMLFlatList::closeLast() {
  const Entry& entry = m_entries.back();
  m_arena[entry.tag].m_closed = true;
  m_names[entry.name].lastOpen = entry.previousOpen;
}

void HTMLFlatList::close(HTMLNames::Id name) {
  const std::uint32_t place = m_names[name].lastOpen;
  if (place == HTMLNames::NOWHERE)
    return;
  Entry& opener = m_entries[place];
  const std::uint32_t openerTag = opener.tag;
  HTMLTag& tag = m_arena[openerTag];
  if (m_entries.back().tag != openerTag)
    tag.m_lastSub = m_entries.back().tag;
  tag.m_closed = true;
  opener.closingOrder = ++m_numClosings;
  m_names[name].lastOpen = opener.previousOpen;
  while (m_entries.back().name != name)
    dropLast(openerTag);
}

void HTMLFlatList::dropLast(std::uint32_t newParent) {
  const Entry& entry = m_entries.back();
  HTMLTag& tag = m_arena[entry.tag];
  tag.m_parent = newParent;
  HTMLNames::Name& name = m_names[entry.name];
  name.last = entry.previousOfName;
  if (!tag.m_closed)
    name.lastOpen = entry.previousOpen;
  m_entries.pop_back();
}

bool HTMLFlatList::wantsText() const {
  if (m_entries.empty())
    return false;
  const HTMLTag& tag = m_arena[m_entries.back().tag];
  return tag.m_lastSub == NONE && tag.m_textLength == 0;
}

void HTMLFlatList::setText(std::u16string_view text) {
  HTMLTag& tag = m_arena[m_entries.back().tag];
  tag.m_text = text.data();
  tag.m_textLength = static_cast<std::uint32_t>(text.size());
}

void HTMLFlatList::finish() {
  // The parent of an entry is the tag before it that was closed last, if the entry was there by then; if it
  // came later, no other closing took it either.
  const Entry* lastCloser = nullptr;
  for (const Entry& entry : m_entries) {
    HTMLTag& tag = m_arena[entry.tag];
    if (lastCloser != nullptr && m_arena[lastCloser->tag].m_lastSub >= entry.tag)
      tag.m_parent = lastCloser->tag;
    if (tag.m_lastSub != NONE && (lastCloser == nullptr || entry.closingOrder > lastCloser->closingOrder))
      lastCloser = &entry;
  }
}

std::uint32_t HTMLFlatList::firstNamed(HTMLNames::Id name) const {
  for (const Entry& entry : m_entries)
    if (entry.name == name)
      return entry.tag;
  return NONE;
}

} // namespace Tallymoor
