#pragma once
#include <cstddef>
#include <string_view>

namespace Tallymoor {

/// A name and value of a tag, as they stand in the page's text.
struct HTMLAttribute {
  std::u16string_view name;
  std::u16string_view value;
};

/// Reads the text of a page from a place on. At its end, names, values and tags end as if a ">" stood there.
class HTMLCursor {
public:
  explicit HTMLCursor(std::u16string_view html, std::size_t position = 0)
      : m_html(html), m_position(position) {}

  bool atEnd() const { return m_position >= m_html.size(); }
  std::size_t position() const { return m_position; }
  bool isAt(std::u16string_view text) const { return m_html.substr(m_position, text.size()) == text; }
  void skip(std::size_t units);

  /// What stands before the next "<".
  std::u16string_view readText();
  /// Past the end of a comment that begins here.
  void skipComment();
  /// Past the "<" of the closing tag of a script. Throws HTMLException when there is none.
  void skipScript();
  /// The name of a tag, opening or closing.
  std::u16string_view readName();
  enum class Part { Attribute, End, ClosingEnd };
  /// The next attribute of a tag, or its end, which ">" or "/>" makes; the cursor is behind it then.
  Part readPart(HTMLAttribute& attribute);

private:
  template <class Ends>
  std::u16string_view readUntil(const Ends& ends);
  std::u16string_view readValue();
  void skipWhiteSpace();

  std::u16string_view m_html;
  std::size_t m_position;
};

} // namespace Tallymoor
