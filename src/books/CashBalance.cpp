#include "books/CashBalance.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {

double cashBalance(const XMLSharePortfolio& portfolio, const Date& day) {
  double balance = 0.0;
  for (const XMLCashEvent& event : portfolio.cashEvents())
    balance += effectOnBalance(event, day);
  return balance;
}

double signedAmount(const XMLCashEvent& cashEvent) {
  // Every other type, unknown ones too, takes from the balance.
  return cashEvent.isCredit() ? cashEvent.amount() : -cashEvent.amount();
}

double effectOnBalance(const XMLCashEvent& cashEvent, const Date& day) {
  return cashEvent.day() > day ? 0.0 : signedAmount(cashEvent);
}

} // namespace Tallymoor
