#include "workbench/NumberRemark.h"
#include "workbench/PageText.h"
#include <algorithm>

namespace Tallymoor {

namespace {

bool isDigit(char16_t unit) {
  return unit >= u'0' && unit <= u'9';
}

/// Where the number at the head of a text without blanks in front ends.
std::size_t endOfNumber(const String& text) {
  std::size_t end = !text.empty() && (text[0] == u'-' || text[0] == u'+') ? 1 : 0;
  while (end < text.size() && (isDigit(text[end]) || text[end] == u'.' || text[end] == u','))
    ++end;
  return end;
}

bool hasDigit(const String& text) {
  return std::any_of(text.begin(), text.end(), isDigit);
}

/// Thousands stand in threes behind a comma, and before a point.
bool hasOddComma(const String& number) {
  for (std::size_t comma = number.find(u','); comma != String::npos; comma = number.find(u',', comma + 1)) {
    const std::size_t end = std::min(number.find_first_of(u",.", comma + 1), number.size());
    const std::size_t point = number.find(u'.');
    if (end - comma != 4 || point < comma)
      return true;
  }
  return false;
}

bool isLetter(char16_t unit) {
  return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
}

} // namespace

bool beginsWithNumber(const String& text) {
  const String trimmed = text.trimmed();
  return hasDigit(trimmed.substr(0, endOfNumber(trimmed)));
}

String remarkOnNumber(const String& text) {
  const String trimmed = text.trimmed();
  const String number = trimmed.substr(0, endOfNumber(trimmed));
  const String rest = trimmed.substr(number.size());
  if (!hasDigit(number))
    return quoted(text) + u" does not begin with a number and reads as 0: a currency sign, a word or a "
                          u"reference like &nbsp; in front is not passed over";
  const String read = String::fromDouble(number.toDouble(), 4);
  if (hasOddComma(number))
    return quoted(text) + u" reads as " + read + u": a comma divides thousands and is left out";
  if (hasDigit(rest) || (!rest.empty() && isLetter(rest.front())))
    return quoted(text) + u" reads as " + read + u": what stands behind the number is passed over";
  return String();
}

} // namespace Tallymoor
