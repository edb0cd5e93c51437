#include "books/CashBalance.h"
#include "xml/PortfolioRecords.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

void book(XMLElement& portfolio, const char16_t* date, const char16_t* value, const char16_t* type) {
  XMLElement& event = portfolio.subElement(u"CashReserve").addSubElement(new XMLCashEvent, u"CashEvents");
  event.subElement(u"Date").setValue(date);
  event.subElement(u"Value").setValue(value);
  event.subElement(u"Type").setValue(type);
}

TEST(CashBalanceTest, CreditsCountUpAndAllElseDownToTheEndOfTheDay) {
  XMLSharePortfolio portfolio;
  EXPECT_EQ(0.0, cashBalance(portfolio, Date(2026, 3, 3)));
  book(portfolio, u"5/3/2026", u"1000.00", u"4"); // Deposit.
  book(portfolio, u"1/3/2026", u"300.00", u"1");  // Credit.
  book(portfolio, u"2/3/2026", u"50.25", u"2");   // Debit.
  book(portfolio, u"2/3/2026", u"4.00", u"3");    // Interest.
  book(portfolio, u"3/3/2026", u"20.00", u"5");   // Withdrawal.
  book(portfolio, u"3/3/2026", u"1.00", u"9");    // Unknown type.
  EXPECT_DOUBLE_EQ(300.0, cashBalance(portfolio, Date(2026, 3, 1)));
  EXPECT_DOUBLE_EQ(253.75, cashBalance(portfolio, Date(2026, 3, 2)));
  EXPECT_DOUBLE_EQ(232.75, cashBalance(portfolio, Date(2026, 3, 4)));
  EXPECT_DOUBLE_EQ(1232.75, cashBalance(portfolio, Date(2026, 3, 5)));
}

TEST(CashBalanceTest, AnEntryOfALaterDayHasNoEffectYet) {
  XMLSharePortfolio portfolio;
  book(portfolio, u"2/3/2026", u"50.25", u"2");
  const auto& debit = portfolio.cashEvents()[0];
  EXPECT_EQ(-50.25, effectOnBalance(debit, Date(2026, 3, 2)));
  EXPECT_EQ(0.0, effectOnBalance(debit, Date(2026, 3, 1)));
}

} // namespace
} // namespace Tallymoor
