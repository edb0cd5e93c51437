#include "ReferenceHTMLParser.h"
#include "foundation/Exception.h"
#include <algorithm>

namespace Tallymoor {

ReferenceTag* ReferenceHTMLParser::parse() {
  tagLoop();
  if (m_list.empty())
    throw HTMLException(u"HTMLParser::Parse - no tags found");
  for (ReferenceTag* const tag : m_list)
    if (tag->name == u"html")
      return tag;
  throw HTMLException(u"HTMLParser::Parse - no html tag found");
}

void ReferenceHTMLParser::tagLoop() {
  while (!atEnd()) {
    String text;
    bool closing = true;
    if (m_lastOpening.toLower() == u"script")
      skipScript();
    else
      closing = readText(text);
    if (atEnd())
      return;
    if (closing)
      assignText(text);
    if (closing)
      closeTag();
    else
      openTag();
  }
}

bool ReferenceHTMLParser::readText(String& text) {
  for (;;) {
    while (!atEnd() && at(m_position) != u'<')
      text += m_html[m_position++];
    if (atEnd())
      return false;
    step();
    if (m_html.compare(m_position, 3, u"!--") == 0) {
      skipComment();
      continue;
    }
    if (at(m_position) == u'/' && !atEnd()) {
      step();
      return true;
    }
    return false;
  }
}

void ReferenceHTMLParser::skipComment() {
  for (; !atEnd(); step())
    if (m_html.compare(m_position, 3, u"-->") == 0) {
      m_position += 3;
      return;
    }
}

void ReferenceHTMLParser::skipScript() {
  const std::size_t lower = m_html.find(u"</script>", m_position);
  const std::size_t upper = m_html.find(u"</SCRIPT>", m_position);
  const std::size_t end = std::min(lower, upper);
  if (end == String::npos)
    throw HTMLException(u"HTMLParser::FindScriptEnd - failed to find script end!");
  m_position = end + 2;
}

void ReferenceHTMLParser::assignText(const String& text) {
  if (m_list.empty() || text.empty())
    return;
  ReferenceTag& last = *m_list.back();
  if ((!last.subTags || last.subTags->empty()) && last.text.empty())
    last.text = text;
}

bool ReferenceHTMLParser::isSpace() const {
  const char16_t unit = at(m_position);
  return !atEnd() && (unit == u' ' || unit == 9 || unit == 13 || unit == 10);
}

void ReferenceHTMLParser::skipSpaces() {
  while (isSpace())
    step();
}

String ReferenceHTMLParser::readTagName() {
  String name;
  while (!atEnd() && !isSpace() && at(m_position) != u'/' && at(m_position) != u'>')
    name += m_html[m_position++];
  return name.toLower();
}

void ReferenceHTMLParser::openTag() {
  ReferenceTag& tag = m_all.emplace_back();
  tag.name = readTagName();
  m_lastOpening = tag.name;
  readAttributes(tag);
  m_list.push_back(&tag);
}

void ReferenceHTMLParser::readAttributes(ReferenceTag& tag) {
  for (;;) {
    if (at(m_position) == u'>')
      return step();
    skipSpaces();
    if (at(m_position) == u'/' && at(m_position + 1) == u'>') {
      step();
      step();
      tag.closed = true;
      return;
    }
    if (at(m_position) == u'>')
      return step();
    String name;
    while (!atEnd() && !isSpace() && at(m_position) != u'>' && at(m_position) != u'=')
      name += m_html[m_position++];
    skipSpaces();
    String value;
    if (at(m_position) == u'=') {
      step();
      skipSpaces();
      value = readValue();
    }
    tag.attributes.emplace(name, value);
  }
}

String ReferenceHTMLParser::readValue() {
  String value;
  if (at(m_position) == u'"') {
    step();
    while (!atEnd() && at(m_position) != u'"')
      value += m_html[m_position++];
    step();
  } else {
    while (!atEnd() && !isSpace() && at(m_position) != u'>')
      value += m_html[m_position++];
  }
  return value;
}

void ReferenceHTMLParser::closeTag() {
  const String name = readTagName();
  step();
  m_lastOpening.clear();
  std::vector<ReferenceTag*> taken;
  std::size_t place = m_list.size();
  ReferenceTag* opener = nullptr;
  while (place > 0 && opener == nullptr) {
    ReferenceTag* const entry = m_list[--place];
    if (entry->name == name && !entry->closed)
      opener = entry;
    else
      taken.insert(taken.begin(), entry);
  }
  if (opener == nullptr) {
    m_list = taken;
    return;
  }
  for (ReferenceTag* const tag : taken)
    tag->parent = opener;
  opener->subTags = std::move(taken);
  opener->closed = true;
  while (m_list.back()->name != opener->name)
    m_list.pop_back();
}

} // namespace Tallymoor
