#include "pages/HTMLCursor.h"
#include "foundation/Exception.h"
#include <algorithm>

namespace Tallymoor {

namespace {

bool isWhiteSpace(char16_t unit) {
  return unit == u' ' || unit == u'\t' || unit == u'\r' || unit == u'\n';
}

bool endsValue(char16_t unit) {
  return isWhiteSpace(unit) || unit == u'>';
}

} // namespace

void HTMLCursor::skip(std::size_t units) {
  m_position = std::min(m_position + units, m_html.size());
}

template <class Ends>
std::u16string_view HTMLCursor::readUntil(const Ends& ends) {
  const std::size_t start = m_position;
  std::size_t end = start;
  while (end < m_html.size() && !ends(m_html[end]))
    ++end;
  m_position = end;
  return m_html.substr(start, end - start);
}

void HTMLCursor::skipWhiteSpace() {
  readUntil([](char16_t unit) { return !isWhiteSpace(unit); });
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
  do {
    readText();
    if (atEnd())
      throw HTMLException(u"HTMLParser::FindScriptEnd - failed to find script end!");
    skip(1);
  } while (!isAt(u"/script>") && !isAt(u"/SCRIPT>"));
}

std::u16string_view HTMLCursor::readName() {
  return readUntil([](char16_t unit) { return endsValue(unit) || unit == u'/'; });
}

HTMLCursor::Part HTMLCursor::readPart(HTMLAttribute& attribute) {
  skipWhiteSpace();
  if (atEnd() || isAt(u">")) {
    skip(1);
    return Part::End;
  }
  if (isAt(u"/>") || m_html.substr(m_position) == u"/") {
    skip(2);
    return Part::ClosingEnd;
  }
  attribute = {readUntil([](char16_t unit) { return endsValue(unit) || unit == u'='; }), {}};
  skipWhiteSpace();
  if (isAt(u"=")) {
    skip(1);
    skipWhiteSpace();
    attribute.value = readValue();
  }
  return Part::Attribute;
}

std::u16string_view HTMLCursor::readValue() {
  if (!isAt(u"\""))
    return readUntil(endsValue);
  skip(1);
  const std::u16string_view value = readUntil([](char16_t unit) { return unit == u'"'; });
  skip(1);
  return value;
}

} // namespace Tallymoor
