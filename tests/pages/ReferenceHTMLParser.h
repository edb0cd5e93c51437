#pragma once
#include "foundation/String.h"
#include <deque>
#include <map>
#include <optional>
#include <vector>

namespace Tallymoor {

/// A tag of the reference parser, with its own list of sub-tags.
struct ReferenceTag {
  String name;
  String text;
  std::map<String, String> attributes;
  std::optional<std::vector<ReferenceTag*>> subTags;
  ReferenceTag* parent = nullptr;
  bool closed = false;
};

/// A simple, slow page parser that processes one unit at a time. The program's parser must agree with it.
class ReferenceHTMLParser {
public:
  /// Owns all tags. Throws like HTMLParser.
  explicit ReferenceHTMLParser(const String& html) : m_html(html) {}
  ReferenceTag* parse();

private:
  char16_t at(std::size_t position) const { return position < m_html.size() ? m_html[position] : u'>'; }
  bool atEnd() const { return m_position >= m_html.size(); }
  bool isSpace() const;
  void step() { m_position += atEnd() ? 0 : 1; }
  void skipSpaces();
  void tagLoop();
  bool readText(String& text);
  void skipComment();
  void skipScript();
  void assignText(const String& text);
  String readTagName();
  void readAttributes(ReferenceTag& tag);
  String readValue();
  void openTag();
  void closeTag();

  const String m_html;
  std::size_t m_position = 0;
  String m_lastOpening;
  std::deque<ReferenceTag> m_all;
  std::vector<ReferenceTag*> m_list;
};

} // namespace Tallymoor
