#include "workbench/NumberRemark.h"
#include "pages/PageFigure.h"
#include "workbench/PageText.h"
#include <algorithm>

namespace Tallymoor {

namespace {

bool isDigit(char16_t unit) {
  return unit >= u'0' && unit <= u'9';
}

/// End of the number at the start of a text, which has no leading blanks.
std::size_t endOfNumber(const String& text) {
  std::size_t end = !text.empty() && (text[0] == u'-' || text[0] == u'+') ? 1 : 0;
  while (end < text.size() && (isDigit(text[end]) || text[end] == u'.' || text[end] == u','))
    ++end;
  return end;
}

bool hasDigit(const String& text) {
  return std::any_of(text.begin(), text.end(), isDigit);
}

} // namespace

bool beginsWithNumber(const String& text) {
  const String trimmed = text.trimmed();
  return hasDigit(trimmed.substr(0, endOfNumber(trimmed)));
}

String remarkOnNumber(const String& text) {
  if (readFigure(text))
    return String();
  if (!holdsDigits(text))
    return inQuotes(text) + u" is not a number";
  return inQuotes(text) + u" can't be read as a number: it has text before it, a comma that does not "
                          u"separate thousands, or text after it that could belong to it";
}

String remarkOnVolume(const String& text) {
  return readVolume(text) ? String() : remarkOnNumber(text);
}

} // namespace Tallymoor
