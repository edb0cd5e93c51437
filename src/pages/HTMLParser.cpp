#include "pages/HTMLParser.h"
#include "foundation/Exception.h"
#include "pages/HTMLCursor.h"
#include "pages/HTMLFlatList.h"
#include "pages/HTMLPageArena.h"
#include "pages/HTMLWalkLimit.h"

namespace Tallymoor {

namespace {

/// Of one tag: more than any honest page has.
constexpr std::size_t MOST_ATTRIBUTES = 16384;

/// Reads one page.
class Reader {
public:
  explicit Reader(HTMLPageArena& arena)
      : m_arena(arena), m_tags(arena), m_cursor(arena.page), m_script(m_tags.named(u"script")) {}

  const HTMLTag* read() {
    readTags();
    if (m_arena.tags.empty())
      throw HTMLException(u"HTMLParser::Parse - no tags found");
    const HTMLTag* const root = m_tags.firstNamed(m_tags.named(u"html"));
    if (root == nullptr)
      throw HTMLException(u"HTMLParser::Parse - no html tag found");
    m_tags.finish();
    m_arena.linkFollowers();
    return root;
  }

private:
  void readTags() {
    bool inScript = false;
    while (!m_cursor.atEnd()) {
      std::u16string_view text;
      if (inScript)
        m_cursor.skipScript();
      else
        text = readText();
      const bool isClosing = inScript || m_cursor.isAt(u"/");
      if (isClosing && !inScript)
        m_cursor.skip(1);
      if (m_cursor.atEnd())
        return;
      inScript = isClosing ? closeTag(text) : openTag();
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

  bool closeTag(std::u16string_view text) {
    m_tags.offerText(text);
    HTMLName& name = m_tags.named(m_cursor.readName());
    m_cursor.skip(1); // whatever it is: "</td >" leaves its ">" to the text
    m_tags.close(name);
    return false;
  }

  /// True when a script begins, also when it is closed by "/>".
  bool openTag() {
    HTMLName& name = m_tags.named(m_cursor.readName());
    m_tags.open(name, m_cursor.position());
    const bool isClosing = skipAttributes() == HTMLCursor::Part::ClosingEnd;
    m_tags.endAttributes(m_cursor.position(), isClosing);
    return &name == &m_script;
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

  HTMLPageArena& m_arena;
  HTMLFlatList m_tags;
  HTMLCursor m_cursor;
  const HTMLName& m_script;
};

void checkFindParameters(const HTMLTag* tag, const String& name) {
  if (tag == nullptr || name.empty())
    throw HTMLException(u"HTMLParser::FindTag - bad param");
}

/// The index-th tag with that name among the sub tags of parent behind the given one.
const HTMLTag* findBehind(const HTMLTag* parent, const HTMLTag* tag, const String& name, std::size_t index,
                          HTMLWalkLimit* limit) {
  while ((tag = parent->nextSubTag(tag)) != nullptr) {
    if (limit != nullptr)
      limit->spend(1);
    if (tag->nameView() == name && index-- == 0)
      return tag;
  }
  return nullptr;
}

} // namespace

HTMLPage HTMLParser::Parse(String html) {
  const auto arena = std::make_shared<HTMLPageArena>(std::move(html));
  return HTMLPage(arena, Reader(*arena).read());
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
