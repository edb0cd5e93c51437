#include "pages/HTMLCursor.h"
#include "foundation/Exception.h"
#include <algorithm>
#include <array>

namespace Tallymoor {

namespace {

// What a unit ends.
constexpr std::uint8_t WHITE_SPACE = 1;
constexpr std::uint8_t ENDS_NAME = 2;
constexpr std::uint8_t ENDS_ATTRIBUTE = 4;
constexpr std::uint8_t ENDS_VALUE = 8;
constexpr std::uint8_t QUOTE = 16;

constexpr std::array<std::uint8_t, 128> KINDS = [] {
  std::array<std::uint8_t, 128> kinds{};
  for (const char unit : {' ', '\t', '\r', '\n'})
    kinds[static_cast<std::size_t>(unit)] = WHITE_SPACE | ENDS_NAME | ENDS_ATTRIBUTE | ENDS_VALUE;
  kinds['>'] = ENDS_NAME | ENDS_ATTRIBUTE | ENDS_VALUE;
  kinds['/'] = ENDS_NAME;
  kinds['='] = ENDS_ATTRIBUTE;
  kinds['"'] = QUOTE;
  return kinds;
}();

bool isOfKind(char16_t unit, std::uint8_t kinds) {
  return unit < KINDS.size() && (KINDS[unit] & kinds) != 0;
}

} // namespace

void HTMLCursor::skip(std::size_t units) {
  m_position = std::min(m_position + units, m_html.size());
}

std::u16string_view HTMLCursor::readText() {
  const std::size_t start = m_position;
  m_position = std::min(m_html.find(u'<', start), m_html.size());
  return m_html.substr(start, m_position - start);
}

void HTMLCursor::skipComment() {
  // From the "!", so that "<!-->" is a whole comment.
  const std::size_t end = m_html.find(u"-->", m_position);
  m_position = end == std::u16string_view::npos ? m_html.size() : end + 3;
}

void HTMLCursor::skipScript() {
  // One search for both forms, which stops at the earlier: a page of many scripts stays linear.
  for (readText(); !atEnd(); skip(1), readText())
    if (isAt(u"</script>") || isAt(u"</SCRIPT>"))
      return skip(2);
  throw HTMLException(u"HTMLParser::FindScriptEnd - failed to find script end!");
}

std::u16string_view HTMLCursor::readName() {
  return readUntil(ENDS_NAME);
}

HTMLCursor::Part HTMLCursor::readPart(HTMLAttribute& attribute) {
  skipWhiteSpace();
  const bool isClosing = peek() == u'/' && peek(1) == u'>';
  if (isClosing || peek() == u'>') {
    skip(isClosing ? 2 : 1);
    return isClosing ? Part::ClosingEnd : Part::End;
  }
  attribute = {readUntil(ENDS_ATTRIBUTE), {}};
  skipWhiteSpace();
  if (peek() == u'=') {
    skip(1);
    skipWhiteSpace();
    attribute.value = readValue();
  }
  return Part::Attribute;
}

std::u16string_view HTMLCursor::readValue() {
  if (peek() != u'"')
    return readUntil(ENDS_VALUE);
  skip(1);
  const std::u16string_view value = readUntil(QUOTE);
  skip(1);
  return value;
}

void HTMLCursor::skipWhiteSpace() {
  while (!atEnd() && isOfKind(m_html[m_position], WHITE_SPACE))
    ++m_position;
}

std::u16string_view HTMLCursor::readUntil(std::uint8_t endKinds) {
  const std::size_t start = m_position;
  std::size_t end = start;
  while (end < m_html.size() && !isOfKind(m_html[end], endKinds))
    ++end;
  m_position = end;
  return m_html.substr(start, end - start);
}

} // namespace Tallymoor
