#include "books/PortfolioEvents.h"
#include "foundation/Exception.h"
#include "xml/PortfolioRecords.h"
#include <utility>

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

double purchaseCost(const XMLBuyEvent& purchase, double number, double price) {
  return number * price + purchase.brokerage();
}

double purchaseCost(const XMLBuyEvent& purchase) {
  return purchaseCost(purchase, purchase.number(), purchase.price());
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

XMLCashEvent* findCashEntry(XMLSharePortfolio& portfolio, const CashEntryKey& key) {
  return const_cast<XMLCashEvent*>(findCashEntry(std::as_const(portfolio), key));
}

const XMLCashEvent* findCashEntry(const XMLSharePortfolio& portfolio, const CashEntryKey& key) {
  for (const XMLCashEvent& entry : portfolio.cashEvents())
    if (entry.dayText() == key.day && entry.amountText() == key.value && entry.type() == key.type &&
        entry.description().contains(key.description))
      return &entry;
  return nullptr;
}

} // namespace Tallymoor
