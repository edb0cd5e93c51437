#include "foundation/Amounts.h"
#include <algorithm>
#include <cmath>

namespace Tallymoor {

bool showsAsZero(double value, int decimals) {
  if (std::isfinite(value) && std::fabs(value) >= 1.0)
    return false; // Fast path: tables call this for every price.
  return String::fromDouble(std::fabs(value), decimals) == String::fromDouble(0.0, decimals);
}

bool showsTheSame(double a, double b, int decimals) {
  if (a == b)
    return true;
  if (showsAsZero(a, decimals) && showsAsZero(b, decimals))
    return true;
  return String::fromDouble(a, decimals) == String::fromDouble(b, decimals);
}

std::int64_t tenThousandths(double value) {
  String text = String::fromDouble(value, 4);
  std::erase(text, u'.');
  return text.toLong64();
}

String shortPriceText(double price) {
  const String text = String::fromDouble(price, 4);
  return text.ends_with(u"00") ? String::fromDouble(price, 2) : text;
}

String recordedPriceText(double price) {
  constexpr std::size_t SPARE_DECIMALS = 4;
  String text = String::fromDouble(price, 6);
  for (std::size_t i = 0; i < SPARE_DECIMALS && text.ends_with(u"0"); ++i)
    text = text.substr(0, text.size() - 1);
  return text;
}

} // namespace Tallymoor
