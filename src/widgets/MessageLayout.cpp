#include "widgets/MessageLayout.h"
#include "foundation/FirstUnits.h"
#include <algorithm>
#include <unicode/utf16.h>
#include <vector>

namespace Tallymoor {

namespace {

constexpr std::size_t LONGEST_LINE = 150;
constexpr std::size_t FEWEST_LINES = 3;
const String OMISSION = u"\u2026";

String ending(const String& text, std::size_t length) {
  const std::size_t from = text.size() - std::min(length, text.size());
  const bool splitsPair = from > 0 && U16_IS_LEAD(text[from - 1]);
  return text.substr(splitsPair ? from + 1 : from);
}

/// A text of which no more than this could be shown anyway, so that a whole page is not measured.
String withoutEndlessMiddle(const String& text, std::size_t lines) {
  const std::size_t half = lines * LONGEST_LINE;
  if (text.size() <= 2 * half)
    return text;
  return firstUnits(text, half) + u'\n' + OMISSION + u'\n' + ending(text, half);
}

class Breaker {
public:
  explicit Breaker(const MessageRoom& room) : m_room(room) {}

  void addLine(String line) {
    while (!fits(line)) {
      const std::size_t length = fittingLength(line);
      if (length >= line.size())
        break; // one character, wider than the room
      m_lines.push_back(line.substr(0, length));
      line.erase(0, line[length] == u' ' ? length + 1 : length);
    }
    m_lines.push_back(line);
  }
  std::vector<String> take() { return std::move(m_lines); }

private:
  bool fits(const String& line) const {
    return line.size() <= LONGEST_LINE && m_room.widthOf(line) <= m_room.width;
  }
  /// Where the line breaks: in front of a blank, or in a word that is longer than a line.
  std::size_t fittingLength(const String& line) const {
    const std::size_t longest = longestFitting(line);
    if (longest < line.size() && line[longest] == u' ')
      return longest;
    const std::size_t blank = line.rfind(u' ', longest);
    return blank == String::npos || blank == 0 ? longest : blank;
  }
  std::size_t longestFitting(const String& line) const {
    std::size_t fitting = 1;
    std::size_t tooLong = std::min(line.size(), LONGEST_LINE) + 1;
    while (tooLong - fitting > 1) {
      const std::size_t middle = (fitting + tooLong) / 2;
      (fits(firstUnits(line, middle)) ? fitting : tooLong) = middle;
    }
    const std::size_t whole = firstUnits(line, fitting).size();
    return whole > 0 ? whole : 2; // the first character is a pair
  }

  const MessageRoom& m_room;
  std::vector<String> m_lines;
};

std::vector<String> brokenLines(const String& text, const MessageRoom& room) {
  Breaker breaker(room);
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find(u'\n', begin), text.size());
    breaker.addLine(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return breaker.take();
}

/// Two thirds of what fits are the beginning.
void leaveOutMiddle(std::vector<String>& lines, std::size_t most) {
  const std::size_t atEnd = std::max<std::size_t>((most - 1) / 3, 1);
  const auto first = lines.begin() + std::ptrdiff_t(most - 1 - atEnd);
  *first = OMISSION;
  lines.erase(first + 1, lines.end() - std::ptrdiff_t(atEnd));
}

} // namespace

String fittedMessage(const String& text, const MessageRoom& room) {
  const std::size_t most = std::max(room.lines, FEWEST_LINES);
  std::vector<String> lines = brokenLines(withoutEndlessMiddle(text, most), room);
  if (lines.size() > most)
    leaveOutMiddle(lines, most);
  String fitted = lines.front();
  for (std::size_t i = 1; i < lines.size(); ++i)
    fitted += u'\n' + lines[i];
  return fitted;
}

} // namespace Tallymoor
