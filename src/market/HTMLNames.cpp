#include "market/HTMLNames.h"
#include "foundation/Exception.h"
#include "foundation/String.h"
#include "market/HTMLPageArena.h"

namespace Tallymoor {

HTMLNames::HTMLNames(HTMLPageArena& arena) : m_arena(arena) {
  m_recent.fill(NO_ID);
}

HTMLNames::Id HTMLNames::find(std::u16string_view name) {
  const std::u16string_view text = folded(name);
  std::size_t hash = text.size();
  for (const char16_t unit : text)
    hash = hash * 31 + unit;
  Id& recent = m_recent[hash % RECENT];
  if (recent == NO_ID || m_names[recent].text != text)
    recent = lookUp(text);
  return recent;
}

std::u16string_view HTMLNames::folded(std::u16string_view name) {
  bool plain = true;
  for (const char16_t unit : name)
    plain = plain && (unit < u'A' || (unit > u'Z' && unit < 0x80));
  if (plain)
    return name;
  m_folded = String(name).toLower();
  return m_folded;
}

HTMLNames::Id HTMLNames::lookUp(std::u16string_view folded) {
  const auto found = m_ids.find(folded);
  if (found != m_ids.end())
    return found->second;
  if (m_names.size() == MOST)
    throw HTMLException(u"HTMLParser::Parse - too many different tag names");
  const auto id = static_cast<Id>(m_names.size());
  // A name that is not folded is a part of the page, which may be one long name.
  m_names.push_back({folded.data() == m_folded.data() ? m_arena.keep(folded) : folded, NOWHERE, NOWHERE});
  m_ids.emplace(m_names.back().text, id);
  return id;
}

} // namespace Tallymoor
