#include "books/SaleCash.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {

const XMLSharePortfolio* portfolioOf(const XMLSellEvent& sale) {
  const XMLElement* stock = sale.parent();
  const XMLElement* stocks = stock ? stock->parent() : nullptr;
  const XMLElement* portfolio = stocks ? stocks->parent() : nullptr;
  return portfolio ? &elementAs<XMLSharePortfolio>(*portfolio) : nullptr;
}

double proceedsOf(const XMLSellEvent& sale, double number) {
  return number * sale.sellPrice() - sale.sellBrokerage();
}

CashEntryKey proceedsKey(const XMLSellEvent& sale, double number) {
  return {dayText(sale.sold()), moneyText(proceedsOf(sale, number)), CASH_EVENT_CREDIT, sale.code()};
}

const XMLCashEvent* findProceeds(const XMLSharePortfolio& portfolio, const XMLSellEvent& sale,
                                 double number) {
  return findCashEntry(portfolio, proceedsKey(sale, number));
}

double costOf(const XMLSellEvent& sale) {
  return sale.number() * sale.price() + sale.brokerage();
}

CashEntryKey costKey(const XMLSellEvent& sale) {
  return {dayText(sale.bought()), moneyText(costOf(sale)), CASH_EVENT_DEBIT, sale.code()};
}

const XMLCashEvent* findCost(const XMLSharePortfolio& portfolio, const XMLSellEvent& sale) {
  return findCashEntry(portfolio, costKey(sale));
}

} // namespace Tallymoor
