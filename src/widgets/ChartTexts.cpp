#include "widgets/ChartTexts.h"
#include "foundation/Amounts.h"
#include "foundation/Platform.h"
#include "widgets/CellResult.h"
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace Tallymoor {

namespace {

constexpr int MOST_DECIMALS = 8;
constexpr double LARGEST_WITH_SUFFIX = 1e15;

bool isDigit(char16_t unit) {
  return unit >= u'0' && unit <= u'9';
}

/// "$1,200.00" reads as "$1,200", "1.200,00 €" as "1.200 €": the two decimals at the end of the digits and
/// the sign before them go. A text without them stays as it is.
String withoutCents(const String& text) {
  const auto lastDigit = std::find_if(text.rbegin(), text.rend(), isDigit);
  const std::size_t end = static_cast<std::size_t>(text.rend() - lastDigit);
  constexpr std::size_t CENTS = 3;
  if (end < CENTS + 1 || text.substr(end - 2, 2) != u"00" || isDigit(text[end - CENTS]))
    return text;
  return text.substr(0, end - CENTS) + text.substr(end);
}

/// Decimals that tell multiples of the step apart.
int decimalsOf(double step) {
  for (int decimals = 0; decimals < MOST_DECIMALS; ++decimals) {
    const double scaled = step * std::pow(10.0, decimals);
    if (std::abs(scaled - std::round(scaled)) < 1e-6 * scaled)
      return decimals;
  }
  return MOST_DECIMALS;
}

String scientific(double value) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.3g", value);
  return String(text.data());
}

/// In thousands, millions and so on; the step says how many decimals are needed.
String abbreviated(double value, double step) {
  struct Suffix {
    double size;
    const char16_t* text;
  };
  static constexpr std::array<Suffix, 4> SUFFIXES{{{1e12, u"T"}, {1e9, u"B"}, {1e6, u"M"}, {1e3, u"K"}}};
  for (const Suffix& suffix : SUFFIXES)
    if (std::abs(value) >= suffix.size)
      return String::fromDouble(value / suffix.size, std::min(decimalsOf(step / suffix.size), 3)) +
             suffix.text;
  return String::fromDouble(value, std::min(decimalsOf(step), 4));
}

} // namespace

String chartValueText(double value, ChartUnit unit) {
  switch (unit) {
  case ChartUnit::MONEY:
    return Platform::Instance().currencyFormat(value);
  case ChartUnit::PRICE:
    return CellResult(value, CELL_PRICE).shown();
  case ChartUnit::PERCENT:
    break;
  }
  return String::toPercent(value);
}

String chartAxisText(double value, double step, ChartUnit unit) {
  const int decimals = decimalsOf(step);
  if (unit == ChartUnit::PERCENT)
    return String::appendPercent(String::fromDouble(value, decimals));
  if (unit == ChartUnit::PRICE)
    return String::fromDouble(value, decimals == 1 ? 2 : decimals);
  if (decimals > 2)
    return String::fromDouble(value, decimals);
  const String text = Platform::Instance().currencyFormat(value);
  return decimals == 0 ? withoutCents(text) : text;
}

String chartShortAxisText(double value, double step, ChartUnit unit) {
  const String text = std::abs(value) < LARGEST_WITH_SUFFIX ? abbreviated(value, step) : scientific(value);
  return unit == ChartUnit::PERCENT ? String::appendPercent(text) : text;
}

} // namespace Tallymoor
