#include "widgets/ToolkitText.h"

namespace Tallymoor {

namespace {

/// A box wider than the screen would hide its end: lines are broken at the last blank before this many units.
constexpr std::size_t longestLine = 150;

/// Control characters other than the line end would show as boxes, or end the text early.
String withoutControls(const String& text) {
  String shown;
  for (char16_t unit : text) {
    if (unit == u'\t')
      shown += u' ';
    else if (unit == u'\n' || (unit >= 0x20 && unit != 0x7F))
      shown += unit;
  }
  return shown;
}

String doubled(const String& text, char16_t mark) {
  String result;
  for (char16_t unit : text) {
    result += unit;
    if (unit == mark)
      result += unit;
  }
  return result;
}

/// A pair of percent signs is the formatter's own way of writing one and stays; a lone one becomes a pair.
String safePercents(const String& text) {
  String result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    result += text[i];
    if (text[i] != u'%')
      continue;
    result += u'%';
    if (i + 1 < text.size() && text[i + 1] == u'%')
      ++i;
  }
  return result;
}

std::size_t lineBreakIn(const String& line) {
  const std::size_t blank = line.rfind(u' ', longestLine);
  return blank == String::npos || blank == 0 ? longestLine : blank;
}

String brokenLines(const String& text) {
  String result;
  std::size_t begin = 0;
  while (begin <= text.size()) {
    const std::size_t end = std::min(text.find(u'\n', begin), text.size());
    String line(text.substr(begin, end - begin));
    while (line.size() > longestLine) {
      const std::size_t at = lineBreakIn(line);
      result += line.substr(0, at);
      result += u'\n';
      line.erase(0, line[at] == u' ' ? at + 1 : at);
    }
    result += line;
    if (end < text.size())
      result += u'\n';
    begin = end + 1;
  }
  return result;
}

} // namespace

FXString toFox(const String& text) {
  const std::string utf8 = text.toUTF8();
  return FXString(utf8.data(), static_cast<FXint>(utf8.size()));
}

String fromFox(const FXString& text) {
  return String::fromUTF8(std::string_view(text.text(), static_cast<std::size_t>(text.length())));
}

FXString labelText(const String& text) {
  return toFox(doubled(withoutControls(text), u'&'));
}

FXString messageBoxText(const String& text) {
  return toFox(doubled(safePercents(brokenLines(withoutControls(text))), u'&'));
}

} // namespace Tallymoor
