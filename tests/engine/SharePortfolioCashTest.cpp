#include "engine/EngineTest.h"
#include "foundation/RunTimeSettings.h"

namespace Tallymoor {
namespace {

class CashTest : public EngineTest {};

class CountingWatcher : public SharePortfolioUser::CashWatcher {
public:
  CountingWatcher() { SharePortfolioUser::setCashWatcher(this); }
  ~CountingWatcher() override { SharePortfolioUser::setCashWatcher(nullptr); }
  void cashChanged(SharePortfolioUser& portfolio) override { portfolios.push_back(&portfolio); }

  std::vector<SharePortfolioUser*> portfolios;
};

TEST_F(CashTest, CreditsAndDebitsAreStoredPositive) {
  user().creditCash(Date(2026, 1, 2), 12.345, CASH_EVENT_INTEREST, u"INTEREST bank");
  user().debitCash(Date(2026, 1, 3), 7, CASH_EVENT_WITHDRAWAL, u"WITHDRAWAL rent");
  ASSERT_EQ(numCashEntries(), 2u);
  EXPECT_EQ(cashEntryText(0), u"2/1/2026 3 " + String::fromDouble(12.345, 2) + u" INTEREST bank");
  EXPECT_EQ(cashEntryText(1), String(u"3/1/2026 5 7.00 WITHDRAWAL rent"));
}

TEST_F(CashTest, TheWatcherHearsOfEachChange) {
  CountingWatcher watcher;
  user().creditCash(m_today, 100, CASH_EVENT_DEPOSIT, u"");
  user().debitCash(m_today, 10, CASH_EVENT_DEBIT, u"Account fee ");
  EXPECT_EQ(watcher.portfolios, (std::vector<SharePortfolioUser*>{&user(), &user()}));
  user().buyShares(u"ABC.AX", m_today, 1, 1, 0, u"");
  EXPECT_EQ(watcher.portfolios.size(), 3u);
  user().editBuyEvent(parcel(u"ABC.AX"), m_today, 2, 1, 0, u"", 1, m_today);
  EXPECT_EQ(watcher.portfolios.size(), 4u);
  user().deleteBuyEvent(u"ABC.AX", m_today, 2);
  EXPECT_EQ(watcher.portfolios.size(), 5u);
}

TEST_F(CashTest, ANegativeReserveIsWarnedOf) {
  user().creditCash(Date(2026, 3, 1), 100, CASH_EVENT_DEPOSIT, u"");
  user().debitCash(m_today, 100.01, CASH_EVENT_WITHDRAWAL, u"");
  user().checkCashReserve();
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
  user().checkCashReserve();
  EXPECT_LT(record().capitalOn(Date(2026, 3, 1)), 0.0);
  EXPECT_TRUE(m_interaction.calls(Kind::WarnOnce).empty());
}

TEST_F(CashTest, AFailureIsReportedAndTheNextCheckGoesOn) {
  user().creditCash(Date(2026, 2, 26), 100, CASH_EVENT_DEPOSIT, u"");
  user().addBuyEvent(u"ABC.AX", Date(2026, 3, 1), 1, 0, 0, u"");
  user().checkCashReserve();
  const auto errors = m_interaction.texts(Kind::Error);
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_TRUE(errors[0].startsWith(u"There was a problem refreshing your capital records. "));
  EXPECT_TRUE(errors[0].contains(u"SharePortfolioUser::sharePriceFor - could not get price for ABC.AX at " +
                                 Date(2026, 3, 1).toString(DATE_DISPLAY_LOCAL)));
  EXPECT_TRUE(record().hasDayCap(Date(2026, 2, 28)));
  EXPECT_FALSE(record().hasDayCap(Date(2026, 3, 1)));

  setPrices(u"ABC.AX", Date(2026, 2, 28), m_today, 5);
  user().checkCashReserve();
  EXPECT_EQ(m_interaction.texts(Kind::Error).size(), 1u);
  EXPECT_TRUE(record().hasDayCap(m_today));
}

TEST_F(CashTest, ABackgroundPassChecksNothing) {
  user().debitCash(m_today, 1, CASH_EVENT_WITHDRAWAL, u"");
  {
    const BackgroundPassScope pass;
    user().checkCashReserve();
  }
  EXPECT_FALSE(record().hasDayCap(m_today));
  EXPECT_TRUE(m_interaction.calls().empty());
}

} // namespace
} // namespace Tallymoor
