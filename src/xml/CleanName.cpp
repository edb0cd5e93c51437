#include "xml/CleanName.h"
#include <string_view>

namespace Tallymoor {

namespace {

/// In any script the file names made of such a name stay below the 255 bytes that file systems take.
constexpr std::size_t longestName = 60;

bool isHighSurrogate(char16_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}

String shortened(const String& name) {
  if (name.size() <= longestName)
    return name;
  const bool splitsPair = isHighSurrogate(name[longestName - 1]);
  return name.substr(0, splitsPair ? longestName - 1 : longestName);
}

} // namespace

String cleanName(const String& text) {
  constexpr std::u16string_view dropped = u"&<>\"'/\\";
  String name;
  char16_t last = u' ';
  for (char16_t unit : String::fromUTF8(text.toUTF8())) { // without halves of pairs
    const bool control = unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit >= 0xFFFE;
    const bool secondBlank = unit == u' ' && last == u' ';
    if (control || secondBlank || dropped.find(unit) != std::u16string_view::npos)
      continue;
    name += unit;
    last = unit;
  }
  return shortened(name).trimmed();
}

} // namespace Tallymoor
