#include "engine/SaleCash.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {

namespace {

const String& codeOf(const XMLElement& sale) {
  return textValue(*sale.parent(), u"Code");
}

} // namespace

const XMLElement* portfolioOf(const XMLElement& sale) {
  const XMLElement* stock = sale.parent();
  const XMLElement* stocks = stock ? stock->parent() : nullptr;
  return stocks ? stocks->parent() : nullptr;
}

double proceedsOf(const XMLElement& sale, double number) {
  return number * doubleValue(sale, u"SellPrice") - doubleValue(sale, u"SellBrokerage");
}

CashEntryKey proceedsKey(const XMLElement& sale, double number) {
  return {dayText(dateValue(sale, u"SellDate")), moneyText(proceedsOf(sale, number)), CASH_EVENT_CREDIT,
          codeOf(sale)};
}

std::optional<std::size_t> findProceeds(const XMLElement& portfolio, const XMLElement& sale, double number) {
  return findCashEntry(portfolio, proceedsKey(sale, number));
}

double costOf(const XMLElement& sale) {
  return doubleValue(sale, u"NumHeld") * doubleValue(sale, u"BuyPrice") + doubleValue(sale, u"BuyBrokerage");
}

CashEntryKey costKey(const XMLElement& sale) {
  return {dayText(dateValue(sale, u"BuyDate")), moneyText(costOf(sale)), CASH_EVENT_DEBIT, codeOf(sale)};
}

std::optional<std::size_t> findCost(const XMLElement& portfolio, const XMLElement& sale) {
  return findCashEntry(portfolio, costKey(sale));
}

} // namespace Tallymoor
