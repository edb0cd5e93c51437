#include "market/StockNames.h"
#include "foundation/FirstUnits.h"
#include "foundation/Settings.h"

namespace Tallymoor::StockNames {

namespace {

const String SECTION = u"Stock Names";
constexpr std::size_t LONGEST_NAME = 100;

bool isControl(char16_t unit) {
  return unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit == 0x2028 || unit == 0x2029 || unit >= 0xFFFE;
}

String cleaned(const String& text) {
  String name;
  for (char16_t unit : String::fromUTF8(text.toUTF8())) { // without halves of pairs
    if (isControl(unit) || unit == 0xA0)
      unit = u' ';
    if (unit != u' ' || !name.ends_with(u' '))
      name += unit;
  }
  return firstUnits(name.trimmed(), LONGEST_NAME).trimmed();
}

} // namespace

String nameOf(const String& code) {
  return code.empty() ? String() : Settings::Instance().readString(SECTION, code);
}

void remember(const String& code, const String& name) {
  const String kept = cleaned(name);
  if (code.empty() || kept.empty() || kept == code || kept == nameOf(code))
    return;
  Settings::Instance().writeString(SECTION, code, kept);
  Settings::Instance().commitIfPossible(); // a name is no reason to trouble the user
}

} // namespace Tallymoor::StockNames
