#include "engine/CashBalance.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {

double cashBalance(const XMLElement& portfolio, const Date& day) {
  const XMLElement& reserve = portfolio.subElement(u"CashReserve");
  double balance = 0.0;
  for (std::size_t i = 0; i < reserve.numSubElements(u"CashEvents"); ++i) {
    const XMLElement& event = reserve.subElement(u"CashEvents", i);
    if (dateValue(event, u"Date") > day)
      continue;
    const double value = doubleValue(event, u"Value");
    // What is no credit takes from the balance, an unknown type too.
    balance += isCreditType(longValue(event, u"Type")) ? value : -value;
  }
  return balance;
}

} // namespace Tallymoor
