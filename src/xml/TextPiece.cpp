#include "xml/TextPiece.h"
#include "xml/ElementWriter.h"
#include "xml/XMLElement.h"
#include <algorithm>
#include <ostream>
#include <span>
#include <streambuf>
#include <unordered_map>
#include <utility>

namespace Tallymoor {

namespace {

constexpr std::size_t LARGEST_GROUP = 64;
constexpr int ALWAYS_SPLIT_DEPTH = 2;    ///< elements above it are split
constexpr std::size_t MOST_UNSPLIT = 16; ///< sub-elements of any other one that is not

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

using Group = std::shared_ptr<const WrittenGroup>;
using Groups = std::vector<Group>;
using Elements = std::span<XMLElement* const>;

/// Whether the elements from an index on are those of the group, as they were.
bool standAt(std::size_t index, Elements elements, const WrittenGroup& group) {
  return index + group.elements.size() <= elements.size() &&
         std::equal(group.elements.begin(), group.elements.end(),
                    elements.begin() + static_cast<std::ptrdiff_t>(index),
                    [](const WrittenElement& written, const XMLElement* element) {
                      return written.element == element && written.stamp == element->changeStamp();
                    });
}

void addGroups(Groups& groups, std::vector<WrittenElement> elements) {
  for (std::size_t done = 0; done < elements.size(); done += LARGEST_GROUP) {
    auto group = std::make_shared<WrittenGroup>();
    const std::size_t end = std::min(done + LARGEST_GROUP, elements.size());
    for (std::size_t i = done; i < end; ++i) {
      group->fingerprint.append(elements[i].piece->fingerprint);
      group->elements.push_back(std::move(elements[i]));
    }
    groups.push_back(std::move(group));
  }
}

class PieceWriter {
public:
  PieceWriter() : m_buffer(m_text), m_stream(&m_buffer), m_writer(m_stream) {}

  std::shared_ptr<const TextPiece> write(XMLElement& element, const TextPiece* former, int depth);

private:
  Groups writeGroups(Elements elements, const Groups& former, int depth);
  std::vector<WrittenElement> writeElements(Elements elements, std::span<const Group> former, int depth);
  std::string taken() {
    std::string text = m_text;
    m_text.clear();
    return text;
  }

  std::string m_text;
  StringBuffer m_buffer;
  std::ostream m_stream;
  ElementWriter m_writer;
};

std::shared_ptr<const TextPiece> PieceWriter::write(XMLElement& element, const TextPiece* former, int depth) {
  auto piece = std::make_shared<TextPiece>();
  const std::vector<XMLElement*> below = ElementWriter::subElementsOf(element);
  if (below.empty() || (depth >= ALWAYS_SPLIT_DEPTH && below.size() <= MOST_UNSPLIT)) {
    m_writer.write(element);
    piece->head = taken();
    piece->fingerprint = TextFingerprint(piece->head);
    return piece;
  }
  m_writer.writeStart(element);
  piece->head = taken();
  piece->groups = writeGroups(below, former ? former->groups : Groups(), depth + 1);
  m_writer.writeEnd(element);
  piece->tail = taken();
  piece->fingerprint = TextFingerprint(piece->head);
  for (const Group& group : piece->groups)
    piece->fingerprint.append(group->fingerprint);
  piece->fingerprint.append(TextFingerprint(piece->tail));
  return piece;
}

/// Groups at both ends whose elements are as they were stay; what is between them is grouped anew.
Groups PieceWriter::writeGroups(Elements elements, const Groups& former, int depth) {
  std::size_t first = 0; // of the groups
  std::size_t start = 0; // of the elements
  while (first < former.size() && standAt(start, elements, *former[first]))
    start += former[first++]->elements.size();
  std::size_t last = former.size();
  std::size_t end = elements.size();
  while (last > first && former[last - 1]->elements.size() <= end - start &&
         standAt(end - former[last - 1]->elements.size(), elements, *former[last - 1]))
    end -= former[--last]->elements.size();
  // A small group takes in what is new, or there would be one for each new element.
  if (start < end && first > 0 && former[first - 1]->elements.size() < LARGEST_GROUP)
    start -= former[--first]->elements.size();
  const auto at = [&former](std::size_t index) {
    return former.begin() + static_cast<std::ptrdiff_t>(index);
  };
  Groups groups(former.begin(), at(first));
  addGroups(groups, writeElements(elements.subspan(start, end - start),
                                  std::span(former).subspan(first, last - first), depth));
  groups.insert(groups.end(), at(last), former.end());
  return groups;
}

std::vector<WrittenElement> PieceWriter::writeElements(Elements elements, std::span<const Group> former,
                                                       int depth) {
  std::unordered_map<const XMLElement*, const WrittenElement*> known;
  for (const Group& group : former)
    for (const WrittenElement& written : group->elements)
      known.emplace(written.element, &written);
  std::vector<WrittenElement> all;
  all.reserve(elements.size());
  for (XMLElement* const element : elements) {
    const auto found = known.find(element);
    const WrittenElement* const before = found == known.end() ? nullptr : found->second;
    const std::uint64_t stamp = element->changeStamp();
    if (before && before->stamp == stamp)
      all.push_back(*before);
    else
      all.push_back({element, stamp, write(*element, before ? before->piece.get() : nullptr, depth)});
  }
  return all;
}

} // namespace

void TextPiece::appendTo(std::string& text) const {
  text += head;
  for (const Group& group : groups)
    for (const WrittenElement& written : group->elements)
      written.piece->appendTo(text);
  text += tail;
}

std::string TextPiece::text() const {
  std::string text;
  text.reserve(fingerprint.length());
  appendTo(text);
  return text;
}

std::shared_ptr<const TextPiece> pieceOf(XMLElement& element, const TextPiece* former) {
  return PieceWriter().write(element, former, 0);
}

} // namespace Tallymoor
