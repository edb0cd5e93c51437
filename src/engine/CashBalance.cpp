#include "engine/CashBalance.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {

double cashBalance(const XMLElement& portfolio, const Date& day) {
  const XMLElement& reserve = portfolio.subElement(u"CashReserve");
  double balance = 0.0;
  for (std::size_t i = 0; i < reserve.numSubElements(u"CashEvents"); ++i)
    balance += effectOnBalance(reserve.subElement(u"CashEvents", i), day);
  return balance;
}

double signedAmount(const XMLElement& cashEvent) {
  const double value = doubleValue(cashEvent, u"Value");
  // What is no credit takes from the balance, an unknown type too.
  return isCreditType(longValue(cashEvent, u"Type")) ? value : -value;
}

double effectOnBalance(const XMLElement& cashEvent, const Date& day) {
  return dateValue(cashEvent, u"Date") > day ? 0.0 : signedAmount(cashEvent);
}

} // namespace Tallymoor
