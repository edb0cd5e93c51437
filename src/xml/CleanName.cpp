#include "xml/CleanName.h"
#include "foundation/FirstUnits.h"
#include <string_view>

namespace Tallymoor {

namespace {

/// In any script the file names made of such a name stay below the 255 bytes that file systems take.
constexpr std::size_t LONGEST_NAME = 60;

} // namespace

String cleanName(const String& text) {
  constexpr std::u16string_view DROPPED = u"&<>\"'/\\";
  String name;
  char16_t last = u' ';
  for (char16_t unit : String::fromUTF8(text.toUTF8())) { // without halves of pairs
    const bool control = unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit >= 0xFFFE;
    const bool secondBlank = unit == u' ' && last == u' ';
    if (control || secondBlank || DROPPED.find(unit) != std::u16string_view::npos)
      continue;
    name += unit;
    last = unit;
  }
  return firstUnits(name, LONGEST_NAME).trimmed();
}

} // namespace Tallymoor
