#include "engine/PortfolioEvents.h"
#include "foundation/Amounts.h"
#include "foundation/Exception.h"
#include "xml/PortfolioRecords.h"
#include <memory>

namespace Tallymoor {

namespace {

String tradeDescription(const char16_t* kind, const String& code, double number, double price) {
  return String(kind) + numberText(number) + u" of " + code + u" @ " + priceText(price);
}

} // namespace

String purchaseDescription(const String& code, double number, double price) {
  return tradeDescription(u"BUY ", code, number, price);
}

String saleDescription(const String& code, double number, double price) {
  return tradeDescription(u"SELL ", code, number, price);
}

String dividendDescription(const String& code, double rate, double number) {
  return dividendDescriptionStart(code) + dividendRateText(rate) + u" x " + numberText(number);
}

String dividendDescriptionStart(const String& code) {
  return u"DIVIDEND " + code + u" @ ";
}

double purchaseCost(const XMLElement& purchase, double number, double price) {
  return number * price + doubleValue(purchase, u"Brokerage");
}

double purchaseCost(const XMLElement& purchase) {
  return purchaseCost(purchase, doubleValue(purchase, u"NumHeld"), doubleValue(purchase, u"BuyPrice"));
}

void requireNotNegative(double value, const char16_t* name) {
  if (value < 0.0)
    throw Exception(String(name) + u" can't be less than zero.");
}

void requireTrade(double number, double price, double brokerage) {
  requireNotNegative(number, u"The number of shares");
  requireNotNegative(price, u"The share price");
  requireNotNegative(brokerage, u"The brokerage");
}

void setOptionalText(XMLElement& event, std::u16string_view reference, const String& text) {
  if (text.empty())
    return;
  // The text may be the one that is about to be replaced.
  auto element = std::make_unique<XMLString>();
  element->setValue(text);
  event.addSubElement(element.release(), reference);
}

std::optional<std::size_t> indexOf(const XMLElement& parent, std::u16string_view reference,
                                   const XMLElement& instance) {
  const std::size_t count = parent.numSubElements(reference);
  for (std::size_t i = 0; i < count; ++i)
    if (&parent.subElement(reference, i) == &instance)
      return i;
  return std::nullopt;
}

std::optional<std::size_t> findCashEntry(const XMLElement& portfolio, const CashEntryKey& key) {
  const XMLElement& reserve = portfolio.subElement(u"CashReserve");
  const std::size_t count = reserve.numSubElements(u"CashEvents");
  for (std::size_t i = 0; i < count; ++i) {
    const XMLElement& entry = reserve.subElement(u"CashEvents", i);
    if (textValue(entry, u"Date") == key.day && textValue(entry, u"Value") == key.value &&
        longValue(entry, u"Type") == key.type && textValue(entry, u"Description").contains(key.description))
      return i;
  }
  return std::nullopt;
}

XMLElement& cashEntry(XMLElement& portfolio, std::size_t index) {
  return portfolio.subElement(u"CashReserve").subElement(u"CashEvents", index);
}

void removeCashEntry(XMLElement& portfolio, std::size_t index) {
  portfolio.subElement(u"CashReserve").removeSubElement(u"CashEvents", index);
}

} // namespace Tallymoor
