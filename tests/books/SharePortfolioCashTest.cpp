#include "books/BooksTest.h"
#include "books/PortfolioEvents.h"
#include "foundation/RunTimeSettings.h"
#include "support/MessageOf.h"

namespace Tallymoor {
namespace {

class CashTest : public BooksTest {};

TEST_F(CashTest, CreditsAndDebitsAreStoredPositive) {
  user().creditCash(Date(2026, 1, 2), 12.345, CASH_EVENT_INTEREST, u"INTEREST bank");
  user().debitCash(Date(2026, 1, 3), 7, CASH_EVENT_WITHDRAWAL, u"WITHDRAWAL rent");
  ASSERT_EQ(numCashEntries(), 2u);
  EXPECT_EQ(cashEntryText(0), u"2/1/2026 3 " + String::fromDouble(12.345, 2) + u" INTEREST bank");
  EXPECT_EQ(cashEntryText(1), String(u"3/1/2026 5 7.00 WITHDRAWAL rent"));
}

TEST_F(CashTest, EachKindHasItsSignInTheRecord) {
  user().creditCash(m_today, 1000, CASH_EVENT_CREDIT, u"");
  user().debitCash(m_today, 200, CASH_EVENT_DEBIT, u"Account fee ");
  user().creditCash(m_today, 30, CASH_EVENT_INTEREST, u"INTEREST ");
  user().creditCash(m_today, 4, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
  user().debitCash(m_today, 0.5, CASH_EVENT_WITHDRAWAL, u"WITHDRAWAL ");
  updateCapitalRecord(user());
  EXPECT_EQ(dayOf(m_today), String(u"3/3/2026 cash 833.50 injected 3.50"));
}

TEST_F(CashTest, EditingOverwritesAllButTheType) {
  user().creditCash(Date(2026, 1, 2), 12, CASH_EVENT_INTEREST, u"INTEREST bank");
  user().editCashEvent(m_portfolio.cashEvents()[0], Date(2026, 1, 5), Date(2026, 1, 2), 7.5,
                       u"INTEREST other");
  ASSERT_EQ(numCashEntries(), 1u);
  EXPECT_EQ(cashEntryText(0), String(u"5/1/2026 3 7.50 INTEREST other"));
  user().editCashEvent(m_portfolio.cashEvents()[0], Date(2026, 1, 5), Date(2026, 1, 5), 7.5, u"");
  EXPECT_EQ(cashEntryText(0), String(u"5/1/2026 3 7.50 "));
}

TEST_F(CashTest, AnAmountBelowZeroIsRefusedUnlessItWasSo) {
  const String refused = u"The amount can't be less than zero.";
  EXPECT_EQ(refused, messageOf([&] { user().creditCash(m_today, -500, CASH_EVENT_DEPOSIT, u""); }));
  EXPECT_EQ(refused, messageOf([&] { user().creditCash(m_today, -5, CASH_EVENT_INTEREST, u""); }));
  EXPECT_EQ(refused, messageOf([&] { user().debitCash(m_today, -5, CASH_EVENT_WITHDRAWAL, u""); }));
  EXPECT_EQ(refused, messageOf([&] { user().debitCash(m_today, -5, CASH_EVENT_DEBIT, u""); }));
  EXPECT_EQ(numCashEntries(), 0u);
  user().creditCash(m_today, 5, CASH_EVENT_DEPOSIT, u"");
  EXPECT_EQ(refused,
            messageOf([&] { user().editCashEvent(m_portfolio.cashEvents()[0], m_today, m_today, -5, u""); }));
  EXPECT_EQ(cashEntryText(0), String(u"3/3/2026 4 5.00 "));
  user().creditCash(m_today, -20, CASH_EVENT_CREDIT, u"SELL"); // For less than its brokerage.
  user().editCashEvent(m_portfolio.cashEvents()[1], m_today, m_today, -25, u"SELL");
  EXPECT_EQ(cashEntryText(1), String(u"3/3/2026 1 -25.00 SELL"));
}

TEST_F(CashTest, EditingDropsTheDaysFromTheEarlierDate) {
  const Date first(2026, 2, 25);
  const auto daysFrom = [this](const Date& day) {
    return record().hasDayCap(day.plusDays(-1)) && !record().hasDayCap(day);
  };
  user().creditCash(first, 100, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
  user().creditCash(Date(2026, 2, 27), 5, CASH_EVENT_INTEREST, u"INTEREST ");
  updateCapitalRecord(user());
  user().editCashEvent(m_portfolio.cashEvents()[1], Date(2026, 3, 1), Date(2026, 2, 27), 5, u"INTEREST ");
  EXPECT_TRUE(daysFrom(Date(2026, 2, 27)));
  updateCapitalRecord(user());
  user().editCashEvent(m_portfolio.cashEvents()[1], Date(2026, 2, 26), Date(2026, 3, 1), 5, u"INTEREST ");
  EXPECT_TRUE(daysFrom(Date(2026, 2, 26)));
  updateCapitalRecord(user());
  // The old date given by the caller may be wrong, so the event's own date counts too.
  user().editCashEvent(m_portfolio.cashEvents()[1], Date(2026, 3, 2), Date(2026, 3, 2), 5, u"INTEREST ");
  EXPECT_TRUE(daysFrom(Date(2026, 2, 26)));
}

TEST_F(CashTest, DeletingFindsTheEventByIdentity) {
  for (int i = 0; i < 3; ++i)
    user().creditCash(Date(2026, 2, 25 + i), 5, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
  updateCapitalRecord(user());
  user().deleteCashEvent(m_portfolio.cashEvents()[1]);
  ASSERT_EQ(numCashEntries(), 2u);
  EXPECT_EQ(cashEntryText(0), String(u"25/2/2026 4 5.00 DEPOSIT "));
  EXPECT_EQ(cashEntryText(1), String(u"27/2/2026 4 5.00 DEPOSIT "));
  EXPECT_TRUE(record().hasDayCap(Date(2026, 2, 25)));
  EXPECT_FALSE(record().hasDayCap(Date(2026, 2, 26)));
}

TEST_F(CashTest, AnEventOfAnotherPortfolioIsLeftAlone) {
  user().creditCash(m_today, 5, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
  updateCapitalRecord(user());
  const XMLCashEvent other;
  user().deleteCashEvent(other);
  EXPECT_EQ(numCashEntries(), 1u);
  EXPECT_TRUE(record().hasDayCap(m_today));
}

TEST_F(CashTest, ANegativeReserveIsWarnedOf) {
  user().creditCash(Date(2026, 3, 1), 100, CASH_EVENT_DEPOSIT, u"");
  user().debitCash(m_today, 100.01, CASH_EVENT_WITHDRAWAL, u"");
  checkCashReserve(user());
  const auto warnings = m_interaction.calls(Kind::WarnOnce);
  ASSERT_EQ(warnings.size(), 1u);
  EXPECT_EQ(
      warnings[0].text,
      String(u"Warning: The cash reserve for Trading is currently negative. You need to reconcile the cash "
             u"reserve with the actual trading account."));
  EXPECT_EQ(warnings[0].title, String(u"Cash Reserve Warning"));
  EXPECT_EQ(warnings[0].key, String(u"TradingCRW"));
  EXPECT_EQ(warnings[0].level, 1);
}

TEST_F(CashTest, AReserveThatWasNegativeInThePastIsNotWarnedOf) {
  user().debitCash(Date(2026, 3, 1), 100, CASH_EVENT_WITHDRAWAL, u"");
  user().creditCash(Date(2026, 3, 2), 100, CASH_EVENT_DEPOSIT, u"");
  checkCashReserve(user());
  EXPECT_LT(record().capitalOn(Date(2026, 3, 1)), 0.0);
  EXPECT_TRUE(m_interaction.calls(Kind::WarnOnce).empty());
}

TEST_F(CashTest, AFailureIsReportedAndTheNextCheckGoesOn) {
  user().creditCash(Date(2026, 2, 26), 100, CASH_EVENT_DEPOSIT, u"");
  user().addBuyEvent(u"ABC.AX", {Date(2026, 3, 1), 1, 0, 0, u""});
  checkCashReserve(user());
  const auto errors = m_interaction.texts(Kind::Error);
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_TRUE(errors[0].startsWith(u"There was a problem refreshing your capital records. "));
  EXPECT_TRUE(errors[0].contains(u"SharePortfolioUser::sharePriceFor - could not get price for ABC.AX at " +
                                 Date(2026, 3, 1).toString(DATE_DISPLAY_LOCAL)));
  EXPECT_TRUE(record().hasDayCap(Date(2026, 2, 28)));
  EXPECT_FALSE(record().hasDayCap(Date(2026, 3, 1)));

  setPrices(u"ABC.AX", Date(2026, 2, 28), m_today, 5);
  checkCashReserve(user());
  EXPECT_EQ(m_interaction.texts(Kind::Error).size(), 1u);
  EXPECT_TRUE(record().hasDayCap(m_today));
}

TEST_F(CashTest, ABackgroundPassChecksNothing) {
  user().debitCash(m_today, 1, CASH_EVENT_WITHDRAWAL, u"");
  {
    const BackgroundPassScope pass;
    checkCashReserve(user());
  }
  EXPECT_FALSE(record().hasDayCap(m_today));
  EXPECT_TRUE(m_interaction.calls().empty());
}

} // namespace
} // namespace Tallymoor
