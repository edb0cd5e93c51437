#include "foundation/IcuText.h"

namespace Tallymoor {

String fromIcu(const icu::UnicodeString& text) {
  return String::Base(text.getBuffer(), static_cast<std::size_t>(text.length()));
}

bool isDirectionMark(char16_t unit) {
  return unit == 0x200E || unit == 0x200F || unit == 0x061C || (unit >= 0x202A && unit <= 0x202E) ||
         (unit >= 0x2066 && unit <= 0x2069);
}

} // namespace Tallymoor
