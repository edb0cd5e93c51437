#include "views/ChangeSentences.h"

namespace Tallymoor {

String sharesText(double number, const String& code) {
  constexpr int DECIMALS = 2;
  String text = String::fromDouble(number, DECIMALS);
  if (text.ends_with(u".00"))
    text.resize(text.size() - DECIMALS - 1);
  return text + u" " + code;
}

} // namespace Tallymoor
