#include "xml/ElementText.h"
#include "xml/ElementWriter.h"
#include "xml/TextPiece.h"
#include <algorithm>
#include <sstream>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace Tallymoor {

namespace {

/// Of all differences together. Above it most has changed, and the texts are better compared as a whole.
constexpr std::size_t MOST_BYTES = std::size_t{64} * 1024;

using Groups = std::vector<std::shared_ptr<const WrittenGroup>>;
using Elements = std::vector<const WrittenElement*>;

Elements elementsOf(Groups::const_iterator first, Groups::const_iterator last) {
  Elements elements;
  for (; first != last; ++first)
    for (const WrittenElement& written : (*first)->elements)
      elements.push_back(&written);
  return elements;
}

class Comparison {
public:
  void compare(const TextPiece& before, const TextPiece& after);
  bool isTooMuch() const { return m_bytes > MOST_BYTES; }
  std::vector<ElementText::Difference> take() { return std::move(m_differences); }

private:
  void compare(const Groups& before, const Groups& after);
  void compare(const Elements& before, const Elements& after);
  void add(std::string_view before, std::string_view after);

  std::vector<ElementText::Difference> m_differences;
  std::size_t m_place = 0; ///< in the text before
  std::size_t m_bytes = 0;
};

void Comparison::compare(const TextPiece& before, const TextPiece& after) {
  if (&before == &after) {
    m_place += before.fingerprint.length();
  } else if (before.isSplit() && after.isSplit()) {
    add(before.head, after.head);
    compare(before.groups, after.groups);
    add(before.tail, after.tail);
  } else {
    add(before.text(), after.text());
  }
}

void Comparison::compare(const Groups& before, const Groups& after) {
  const auto [first, firstAfter] = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
  const auto [end, endAfter] = std::mismatch(before.rbegin(), std::make_reverse_iterator(first),
                                             after.rbegin(), std::make_reverse_iterator(firstAfter));
  for (auto same = before.begin(); same != first; ++same)
    m_place += (*same)->fingerprint.length();
  compare(elementsOf(first, end.base()), elementsOf(firstAfter, endAfter.base()));
  for (auto same = end.base(); same != before.end(); ++same)
    m_place += (*same)->fingerprint.length();
}

/// Those that stand on both sides in the same order are compared with each other.
void Comparison::compare(const Elements& before, const Elements& after) {
  std::unordered_map<const XMLElement*, std::size_t> places;
  for (std::size_t i = 0; i < after.size(); ++i)
    places.emplace(after[i]->element, i);
  std::size_t next = 0;
  for (const WrittenElement* const written : before) {
    if (isTooMuch())
      return;
    const auto found = places.find(written->element);
    if (found == places.end() || found->second < next) {
      add(written->piece->text(), {});
      continue;
    }
    for (; next < found->second; ++next)
      add({}, after[next]->piece->text());
    compare(*written->piece, *after[next++]->piece);
  }
  for (; next < after.size() && !isTooMuch(); ++next)
    add({}, after[next]->piece->text());
}

void Comparison::add(std::string_view before, std::string_view after) {
  if (before != after) {
    if (m_differences.empty() || m_differences.back().place + m_differences.back().before.size() != m_place)
      m_differences.push_back({m_place, {}, {}});
    m_differences.back().before += before;
    m_differences.back().after += after;
    m_bytes += before.size() + after.size();
  }
  m_place += before.size();
}

} // namespace

ElementText::ElementText(XMLElement& element, const ElementText* former)
    : m_piece(pieceOf(element, former ? former->m_piece.get() : nullptr)) {}

std::string ElementText::text() const {
  return m_piece->text();
}

const TextFingerprint& ElementText::fingerprint() const {
  return m_piece->fingerprint;
}

std::vector<ElementText::Difference> ElementText::differences(const ElementText& before,
                                                              const ElementText& after) {
  Comparison comparison;
  comparison.compare(*before.m_piece, *after.m_piece);
  if (comparison.isTooMuch())
    return {{0, before.text(), after.text()}};
  return comparison.take();
}

DocumentText::DocumentText(XMLElement& root, const String& dtdName, const Known& known) {
  std::ostringstream head;
  ElementWriter writer(head);
  writer.writeHead(root, String(), dtdName);
  const std::vector<XMLElement*> all = ElementWriter::subElementsOf(root);
  if (all.empty()) {
    writer.write(root);
    m_head = head.str();
    return;
  }
  writer.writeStart(root);
  m_head = head.str();
  for (XMLElement* const element : all) {
    const ElementText* const text = known(*element);
    m_below.push_back(text ? *text : ElementText(*element));
  }
  std::ostringstream tail;
  ElementWriter(tail).writeEnd(root);
  m_tail = tail.str();
}

std::string DocumentText::text() const {
  std::string text = m_head;
  for (const ElementText& element : m_below)
    element.m_piece->appendTo(text);
  return text + m_tail;
}

} // namespace Tallymoor
