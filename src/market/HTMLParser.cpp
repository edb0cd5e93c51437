#include "market/HTMLParser.h"
#include "foundation/Exception.h"
#include "market/HTMLFlatList.h"
#include "market/HTMLNames.h"
#include "market/HTMLPageArena.h"
#include "market/HTMLWalkLimit.h"
#include <algorithm>
#include <array>
#include <string>

namespace Tallymoor {

namespace {

// What a unit ends.
constexpr std::uint8_t WHITE_SPACE = 1;
constexpr std::uint8_t ENDS_NAME = 2;
constexpr std::uint8_t ENDS_ATTRIBUTE = 4;
constexpr std::uint8_t ENDS_VALUE = 8;
constexpr std::uint8_t QUOTE = 16;

/// Of one tag: more than any honest page has, for the reason of HTMLNames::MOST.
constexpr std::size_t MOST_ATTRIBUTES = 16384;

constexpr std::array<std::uint8_t, 128> makeKinds() {
  std::array<std::uint8_t, 128> kinds{};
  for (const char unit : {' ', '\t', '\r', '\n'})
    kinds[static_cast<std::size_t>(unit)] = WHITE_SPACE | ENDS_NAME | ENDS_ATTRIBUTE | ENDS_VALUE;
  kinds['>'] = ENDS_NAME | ENDS_ATTRIBUTE | ENDS_VALUE;
  kinds['/'] = ENDS_NAME;
  kinds['='] = ENDS_ATTRIBUTE;
  kinds['"'] = QUOTE;
  return kinds;
}

constexpr std::array<std::uint8_t, 128> KINDS = makeKinds();

bool isOfKind(char16_t unit, std::uint8_t kinds) {
  return unit < KINDS.size() && (KINDS[unit] & kinds) != 0;
}

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

/// The text read before a tag. It stays a view of the page unless a comment interrupts it.
struct HTMLParser::Buffers {
  std::u16string_view text;
  std::u16string pieces;

  void append(std::u16string_view piece) {
    if (text.empty()) {
      text = piece;
    } else if (!piece.empty()) {
      if (text.data() != pieces.data())
        pieces = text;
      pieces += piece;
      text = pieces;
    }
  }
};

HTMLPage HTMLParser::Parse(String html) {
  const auto arena = std::make_shared<HTMLPageArena>(std::move(html));
  HTMLNames names(*arena);
  HTMLFlatList tags(*arena, names);
  HTMLParser(*arena).readTags(tags, names);
  if (tags.empty())
    throw HTMLException(u"HTMLParser::Parse - no tags found");
  const std::uint32_t root = tags.firstNamed(names.find(u"html"));
  if (root == HTMLFlatList::NONE)
    throw HTMLException(u"HTMLParser::Parse - no html tag found");
  tags.finish();
  arena->linkFollowers();
  return HTMLPage(arena, &(*arena)[root]);
}

HTMLParser::HTMLParser(HTMLPageArena& arena) : m_arena(arena), m_html(arena.page()) {}

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

void HTMLParser::readTags(HTMLFlatList& tags, HTMLNames& names) {
  const HTMLNames::Id script = names.find(u"script");
  bool inScript = false;
  Buffers buffers;
  while (!atEnd()) {
    Reading reading = Reading::Closing;
    buffers.text = {};
    if (inScript)
      skipScript();
    else
      reading = readText(buffers);
    if (atEnd())
      return;
    if (reading == Reading::Closing) {
      if (!buffers.text.empty() && tags.wantsText())
        tags.setText(buffers.text.data() == buffers.pieces.data() ? m_arena.keep(buffers.text)
                                                                  : buffers.text);
      const HTMLNames::Id name = names.find(readName());
      skipOne(); // whatever it is: "</td >" leaves its ">" to the text
      inScript = false;
      tags.close(name);
    } else {
      const HTMLNames::Id name = names.find(readName());
      inScript = name == script; // also when it is closed by "/>"
      const std::uint32_t tag = tags.open(name);
      if (readAttributes())
        tags.closeLast();
      m_arena.endAttributes(tag);
    }
  }
}

HTMLParser::Reading HTMLParser::readText(Buffers& buffers) {
  for (;;) {
    const std::size_t start = m_position;
    m_position = std::min(m_html.find(u'<', start), m_html.size());
    buffers.append(m_html.substr(start, m_position - start));
    skipOne();
    if (m_html.compare(m_position, 3, u"!--") == 0) {
      skipComment();
      continue;
    }
    if (peek() != u'/')
      return Reading::Opening;
    skipOne();
    return Reading::Closing;
  }
}

void HTMLParser::skipComment() {
  // From the "!", so that "<!-->" is a whole comment.
  const std::size_t end = m_html.find(u"-->", m_position);
  m_position = end == std::u16string_view::npos ? m_html.size() : end + 3;
}

void HTMLParser::skipScript() {
  // One search for both forms, which stops at the earlier: a page of many scripts stays linear.
  constexpr std::u16string_view LOWER = u"</script>";
  constexpr std::u16string_view UPPER = u"</SCRIPT>";
  for (std::size_t at = m_position; (at = m_html.find(u'<', at)) != std::u16string_view::npos; ++at) {
    const std::u16string_view here = m_html.substr(at, LOWER.size());
    if (here == LOWER || here == UPPER) {
      m_position = at + 2;
      return;
    }
  }
  throw HTMLException(u"HTMLParser::FindScriptEnd - failed to find script end!");
}

std::u16string_view HTMLParser::readName() {
  return readUntil(ENDS_NAME);
}

bool HTMLParser::readAttributes() {
  for (std::size_t number = 0;;) {
    skipWhiteSpace();
    if (peek() == u'/' && peek(1) == u'>') {
      skipOne();
      skipOne();
      return true;
    }
    if (peek() == u'>') {
      skipOne();
      return false;
    }
    if (number == MOST_ATTRIBUTES)
      throw HTMLException(u"HTMLParser::Parse - too many attributes in a tag");
    number += readAttribute() ? 1 : 0;
  }
}

bool HTMLParser::readAttribute() {
  const auto place = [this](std::u16string_view part) {
    return static_cast<std::uint32_t>(part.data() - m_html.data());
  };
  const std::u16string_view name = readUntil(ENDS_ATTRIBUTE);
  std::u16string_view value = name.substr(0, 0);
  skipWhiteSpace();
  if (peek() == u'=') {
    skipOne();
    skipWhiteSpace();
    value = readValue();
  }
  return m_arena.addAttribute({place(name), static_cast<std::uint32_t>(name.size()), place(value),
                               static_cast<std::uint32_t>(value.size())});
}

std::u16string_view HTMLParser::readValue() {
  if (peek() != u'"')
    return readUntil(ENDS_VALUE);
  skipOne();
  const std::u16string_view value = readUntil(QUOTE);
  skipOne();
  return value;
}

/// Behind the end of the text stands a ">", as often as it is looked for: so every loop ends there.
char16_t HTMLParser::peek(std::size_t ahead) const {
  return m_position + ahead < m_html.size() ? m_html[m_position + ahead] : u'>';
}

void HTMLParser::skipOne() {
  if (!atEnd())
    ++m_position;
}

void HTMLParser::skipWhiteSpace() {
  while (!atEnd() && isOfKind(m_html[m_position], WHITE_SPACE))
    ++m_position;
}

std::u16string_view HTMLParser::readUntil(std::uint8_t endKinds) {
  const std::size_t start = m_position;
  std::size_t end = start;
  while (end < m_html.size() && !isOfKind(m_html[end], endKinds))
    ++end;
  m_position = end;
  return m_html.substr(start, end - start);
}

} // namespace Tallymoor
