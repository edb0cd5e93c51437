#include "pages/HTMLParser.h"
#include "foundation/Exception.h"
#include "pages/HTMLCursor.h"
#include "pages/HTMLPageArena.h"
#include "pages/HTMLWalkLimit.h"
#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace Tallymoor {

/// Reads one page into a list of tags in the order of their opening, from which the tree is made on the way.
///
/// A closing tag takes everything behind the nearest unclosed tag of its name as that tag's sub tags. Then
/// entries are taken off the back of the list until the last one bears that name. That may be a closed tag
/// which was just taken: then it stays, with all before it, and a later closing tag takes these entries a
/// second time. So a tag may be found under two parents; the later one is its parent.
///
/// No entry is looked at to close a tag but those that are taken off for good: the list of sub tags is a run
/// that is known by its end, and each name knows its last unclosed entry.
class HTMLReader {
public:
  explicit HTMLReader(HTMLPageArena& arena)
      : m_arena(arena), m_cursor(arena.page), m_script(named(u"script")) {
    // A tag has two units at least. Room that isn't used costs nothing, growing costs a copy.
    const auto brackets = static_cast<std::size_t>(std::count(arena.page.begin(), arena.page.end(), u'<'));
    m_arena.tags.reserve(std::min(brackets, arena.page.size() / 2 + 1));
  }

  /// Gives the root.
  const HTMLTag* read() {
    readTags();
    if (m_arena.tags.empty())
      throw HTMLException(u"HTMLParser::Parse - no tags found");
    const HTMLName& html = named(u"html");
    const auto root = std::find_if(m_entries.begin(), m_entries.end(),
                                   [&](const Entry& entry) { return tagOf(entry).m_name == &html; });
    if (root == m_entries.end())
      throw HTMLException(u"HTMLParser::Parse - no html tag found");
    setParentsInList();
    return &tagOf(*root);
  }

private:
  /// Different names on a page: more than any honest page has. The bound keeps the table of them within the
  /// processor's caches, and short where they were chosen to meet in one place of it.
  static constexpr std::size_t MOST_NAMES = 4096;
  /// Of one tag: more than any honest page has.
  static constexpr std::size_t MOST_ATTRIBUTES = 16384;

  struct Entry {
    std::uint32_t tag;
    std::uint32_t previousOpen; ///< where the last unclosed entry of this name was when this one came
    std::uint32_t closingOrder; ///< number of the closing tag that closed it, from 1; 0 if it is open
  };

  HTMLTag& tagOf(const Entry& entry) const { return m_arena.tags[entry.tag]; }

  void readTags() {
    bool inScript = false;
    while (!m_cursor.atEnd()) {
      std::u16string_view text;
      if (inScript)
        m_cursor.skipScript();
      else
        text = readText();
      const bool isClosing = m_cursor.isAt(u"/");
      m_cursor.skip(isClosing ? 1 : 0);
      if (m_cursor.atEnd())
        return;
      if (isClosing)
        closeTag(text);
      inScript = !isClosing && openTag();
    }
  }

  /// Up to a tag, and past its "<". The text stays a view of the page unless a comment interrupts it.
  std::u16string_view readText() {
    std::u16string_view text = m_cursor.readText();
    for (m_cursor.skip(1); m_cursor.isAt(u"!--"); m_cursor.skip(1)) {
      m_cursor.skipComment();
      const std::u16string_view piece = m_cursor.readText();
      text = text.empty() ? piece : piece.empty() ? text : joined(text, piece);
    }
    return text;
  }

  std::u16string_view joined(std::u16string_view text, std::u16string_view piece) {
    if (m_arena.kept.empty() || m_arena.kept.back().data() != text.data())
      m_arena.kept.emplace_back(text);
    return m_arena.kept.back() += piece;
  }

  /// The name as it stands in the page, in any case.
  HTMLName& named(std::u16string_view name) {
    std::size_t hash = name.size();
    for (const char16_t unit : name)
      hash = hash * 31 + unit;
    HTMLName*& recent = m_recent[hash % m_recent.size()];
    if (recent == nullptr || recent->first != name)
      recent = &lookUp(String(name).toLower());
    return *recent;
  }

  HTMLName& lookUp(const String& name) {
    const auto found = m_arena.names.find(name);
    if (found != m_arena.names.end())
      return *found;
    if (m_arena.names.size() == MOST_NAMES)
      throw HTMLException(u"HTMLParser::Parse - too many different tag names");
    return *m_arena.names.try_emplace(m_arena.kept.emplace_back(name), HTMLTag::NONE).first;
  }

  /// True when a script begins, also when it is closed by "/>".
  bool openTag() {
    HTMLName& name = named(m_cursor.readName());
    HTMLTag& tag = append(name);
    if (skipAttributes() == HTMLCursor::Part::ClosingEnd) {
      tag.m_closed = true;
      name.second = m_entries.back().previousOpen;
    }
    tag.m_attributesSize = static_cast<std::uint32_t>(m_cursor.position()) - tag.m_attributes;
    return &name == &m_script;
  }

  /// Unclosed, behind the last tag of the list.
  HTMLTag& append(HTMLName& name) {
    const auto index = static_cast<std::uint32_t>(m_arena.tags.size());
    HTMLTag& tag = m_arena.tags.emplace_back(HTMLTag(m_arena, name, m_cursor.position()));
    if (!m_entries.empty()) {
      tag.m_previous = m_entries.back().tag;
      tag.m_followerBefore = std::exchange(tagOf(m_entries.back()).m_lastFollower, index);
    }
    m_entries.push_back({index, std::exchange(name.second, static_cast<std::uint32_t>(m_entries.size())), 0});
    return tag;
  }

  HTMLCursor::Part skipAttributes() {
    std::size_t number = 0;
    HTMLAttribute attribute;
    for (std::u16string_view last;; last = attribute.name) {
      const HTMLCursor::Part part = m_cursor.readPart(attribute);
      if (part != HTMLCursor::Part::Attribute)
        return part;
      if (number == MOST_ATTRIBUTES)
        throw HTMLException(u"HTMLParser::Parse - too many attributes in a tag");
      number += number == 0 || attribute.name != last ? 1 : 0;
    }
  }

  void closeTag(std::u16string_view text) {
    if (!m_entries.empty())
      offerText(tagOf(m_entries.back()), text);
    HTMLName& name = named(m_cursor.readName());
    m_cursor.skip(1); // whatever it is: "</td >" leaves its ">" to the text
    if (name.second != HTMLTag::NONE)
      close(name);
  }

  static void offerText(HTMLTag& tag, std::u16string_view text) {
    if (tag.m_lastSub != HTMLTag::NONE || tag.m_textLength != 0)
      return;
    tag.m_text = text.data();
    tag.m_textLength = text.size() & 0x7FFFFFFF;
  }

  void close(HTMLName& name) {
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

  /// Of the tags that are in the list at the end of the page.
  void setParentsInList() {
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

  HTMLPageArena& m_arena;
  HTMLCursor m_cursor;
  std::array<HTMLName*, 256> m_recent{}; ///< the name met last for each value of a quick hash
  const HTMLName& m_script;
  std::vector<Entry> m_entries;
  std::uint32_t m_numClosings = 0;
};

namespace {

/// The index-th tag with that name among the sub tags of parent behind the given one.
const HTMLTag* findBehind(const HTMLTag* parent, const HTMLTag* tag, const String& name, std::size_t index,
                          HTMLWalkLimit* limit) {
  while ((tag = parent->nextSubTag(tag)) != nullptr) {
    if (limit != nullptr)
      limit->take(1);
    if (tag->nameView() == name && index-- == 0)
      return tag;
  }
  return nullptr;
}

void checkFindParameters(const HTMLTag* tag, const String& name) {
  if (tag == nullptr || name.empty())
    throw HTMLException(u"HTMLParser::FindTag - bad param");
}

} // namespace

HTMLPage HTMLParser::Parse(String html) {
  const auto arena = std::make_shared<HTMLPageArena>(std::move(html));
  return HTMLPage(arena, HTMLReader(*arena).read());
}

const HTMLTag* HTMLParser::FindTag(const HTMLTag* parent, const String& name, std::size_t index,
                                   HTMLWalkLimit* limit) {
  checkFindParameters(parent, name);
  return findBehind(parent, parent, name, index, limit);
}

const HTMLTag* HTMLParser::FindSiblingTag(const HTMLTag* tag, const String& name, std::size_t index,
                                          HTMLWalkLimit* limit) {
  checkFindParameters(tag, name);
  return tag->parent() == nullptr ? nullptr : findBehind(tag->parent(), tag, name, index, limit);
}

} // namespace Tallymoor
