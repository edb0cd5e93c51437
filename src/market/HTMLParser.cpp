#include "market/HTMLParser.h"
#include "foundation/Exception.h"
#include "market/HTMLFlatList.h"
#include "market/HTMLNames.h"
#include "market/HTMLPageArena.h"
#include <algorithm>
#include <string>

namespace Tallymoor {

namespace {

/// What a page of ordinary density needs; more only costs a few moves.
constexpr std::size_t UNITS_PER_TAG = 48;

bool isWhiteSpace(char16_t unit) {
  return unit == u' ' || unit == u'\t' || unit == u'\r' || unit == u'\n';
}

void checkFindParameters(const HTMLTag* tag, const String& name) {
  if (tag == nullptr || name.empty())
    throw HTMLException(u"HTMLParser::FindTag - bad param");
}

/// The index-th tag with that name among the sub tags of parent behind the given one.
const HTMLTag* findBehind(const HTMLTag* parent, const HTMLTag* tag, const String& name, std::size_t index) {
  while ((tag = parent->nextSubTag(tag)) != nullptr)
    if (tag->nameView() == name && index-- == 0)
      return tag;
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

HTMLPage HTMLParser::Parse(const String& html) {
  const auto arena = std::make_shared<HTMLPageArena>(html.size() / UNITS_PER_TAG + 1);
  HTMLNames names(*arena);
  HTMLFlatList tags(*arena, names);
  HTMLParser(html).readTags(tags, names, *arena);
  if (tags.empty())
    throw HTMLException(u"HTMLParser::Parse - no tags found");
  const std::uint32_t root = tags.firstNamed(names.find(u"html"));
  if (root == HTMLTag::NONE)
    throw HTMLException(u"HTMLParser::Parse - no html tag found");
  tags.finish();
  arena->linkFollowers();
  return HTMLPage(arena, &(*arena)[root]);
}

const HTMLTag* HTMLParser::FindTag(const HTMLTag* parent, const String& name, std::size_t index) {
  checkFindParameters(parent, name);
  return findBehind(parent, parent, name, index);
}

const HTMLTag* HTMLParser::FindSiblingTag(const HTMLTag* tag, const String& name, std::size_t index) {
  checkFindParameters(tag, name);
  return tag->parent() == nullptr ? nullptr : findBehind(tag->parent(), tag, name, index);
}

void HTMLParser::readTags(HTMLFlatList& tags, HTMLNames& names, HTMLPageArena& arena) {
  const HTMLNames::Id script = names.find(u"script");
  bool inScript = false;
  Buffers buffers;
  std::vector<HTMLTag::Attribute> attributes;
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
        tags.setText(buffers.text);
      const HTMLNames::Id name = names.find(readName());
      skipOne(); // whatever it is: "</td >" leaves its ">" to the text
      inScript = false;
      tags.close(name);
    } else {
      const HTMLNames::Id name = names.find(readName());
      inScript = name == script; // also when it is closed by "/>"
      const std::uint32_t tag = tags.open(name);
      attributes.clear();
      if (readAttributes(attributes))
        tags.closeLast();
      arena.setAttributes(tag, attributes);
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
  return readUntil([](char16_t unit) { return isWhiteSpace(unit) || unit == u'/' || unit == u'>'; });
}

bool HTMLParser::readAttributes(std::vector<HTMLTag::Attribute>& attributes) {
  for (;;) {
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
    attributes.push_back(readAttribute());
  }
}

HTMLTag::Attribute HTMLParser::readAttribute() {
  HTMLTag::Attribute attribute;
  attribute.name =
      readUntil([](char16_t unit) { return isWhiteSpace(unit) || unit == u'>' || unit == u'='; });
  skipWhiteSpace();
  if (peek() == u'=') {
    skipOne();
    skipWhiteSpace();
    attribute.value = readValue();
  }
  return attribute;
}

std::u16string_view HTMLParser::readValue() {
  if (peek() != u'"')
    return readUntil([](char16_t unit) { return isWhiteSpace(unit) || unit == u'>'; });
  skipOne();
  const std::u16string_view value = readUntil([](char16_t unit) { return unit == u'"'; });
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
  while (!atEnd() && isWhiteSpace(m_html[m_position]))
    ++m_position;
}

template <class IsEnd>
std::u16string_view HTMLParser::readUntil(IsEnd isEnd) {
  const std::size_t start = m_position;
  while (!atEnd() && !isEnd(m_html[m_position]))
    ++m_position;
  return m_html.substr(start, m_position - start);
}

} // namespace Tallymoor
