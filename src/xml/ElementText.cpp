#include "xml/ElementText.h"
#include "xml/ElementWriter.h"
#include "xml/XMLElement.h"
#include <algorithm>
#include <ostream>
#include <streambuf>

namespace Tallymoor {

namespace {

/// Appends to a string.
class StringBuffer : public std::streambuf {
public:
  explicit StringBuffer(std::string& text) : m_text(text) {}

protected:
  std::streamsize xsputn(const char* bytes, std::streamsize count) override {
    m_text.append(bytes, static_cast<std::size_t>(count));
    return count;
  }
  int_type overflow(int_type c) override {
    m_text.push_back(traits_type::to_char_type(c));
    return c;
  }

private:
  std::string& m_text;
};

} // namespace

// Pieces keep their order, so the next one is nearly always the one that is looked for.
std::string_view WrittenPieces::formerTextOf(const XMLElement& element) {
  const auto next = m_former.begin() + static_cast<std::ptrdiff_t>(m_next);
  const auto found = std::find_if(next, m_former.end(), [&element](const Piece& piece) {
    return piece.element == &element && piece.stamp == element.changeStamp();
  });
  if (found == m_former.end())
    return {};
  m_next = static_cast<std::size_t>(found - m_former.begin()) + 1;
  return m_formerText.substr(found->place, found->length);
}

void WrittenPieces::add(const XMLElement& element, std::size_t place, std::size_t length) {
  m_pieces.push_back({&element, element.changeStamp(), place, length});
}

ElementText::ElementText(XMLElement& element, const ElementText* former) {
  WrittenPieces pieces;
  if (former) {
    pieces.m_formerText = former->m_text;
    pieces.m_former = former->m_pieces;
    pieces.m_pieces.reserve(former->m_pieces.size() + 1);
    m_text.reserve(former->m_text.size() + former->m_text.size() / 8);
  }
  StringBuffer buffer(m_text);
  std::ostream stream(&buffer);
  ElementWriter(stream, &pieces).write(element);
  m_pieces = std::move(pieces.m_pieces);
}

} // namespace Tallymoor
