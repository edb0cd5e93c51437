#include "analysis/ReportValues.h"
#include "books/PortfolioEvents.h"
#include "foundation/Amounts.h"
#include "foundation/Platform.h"
#include "xml/XMLElement.h"
#include <cmath>

namespace Tallymoor {

namespace {

void put(XMLElement& element, std::u16string_view name, const String& fixed, const String& shown) {
  element.setAttribute(name, fixed);
  element.setAttribute(String(name) + u"Shown", shown);
}

template <class Fixed, class Shown>
void putFinite(XMLElement& element, std::u16string_view name, const std::optional<double>& value, Fixed fixed,
               Shown shown) {
  if (value && std::isfinite(*value))
    put(element, name, fixed(*value), shown(*value));
  else
    put(element, name, String(), String());
}

} // namespace

void putDate(XMLElement& element, std::u16string_view name, const Date& day) {
  put(element, name, dayText(day), day.toString(DATE_DISPLAY_LOCAL));
}

void putMoney(XMLElement& element, std::u16string_view name, const std::optional<double>& amount) {
  putFinite(element, name, amount, moneyText,
            [](double value) { return Platform::Instance().currencyFormat(value); });
}

void putPrice(XMLElement& element, std::u16string_view name, const std::optional<double>& price) {
  putFinite(element, name, price, priceText, shortPriceText);
}

void putPercent(XMLElement& element, std::u16string_view name, const std::optional<double>& percent) {
  putFinite(
      element, name, percent, [](double value) { return String::fromDouble(value, 2); },
      [](double value) { return String::toPercent(value); });
}

} // namespace Tallymoor
