#include "analysis/CapitalGrowth.h"
#include "books/CapitalRecordTest.h"

namespace Tallymoor {
namespace {

/// Days from Sunday, 1 February 2026. The capital is cash only: interest is a gain, deposits and withdrawals
/// are not.
class CapitalGrowthTest : public CapitalRecordTest {
protected:
  static Date february(int day) { return Date(2026, 2, day); }

  static void deposit(SharePortfolioUser& portfolio, int day, double value) {
    portfolio.creditCash(february(day), value, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
  }
  void deposit(int day, double value) { deposit(user(), day, value); }
  void withdraw(int day, double value) {
    user().debitCash(february(day), value, CASH_EVENT_WITHDRAWAL, u"WITHDRAWAL ");
  }
  void interest(int day, double value) {
    user().creditCash(february(day), value, CASH_EVENT_INTEREST, u"INTEREST ");
  }
  void fee(int day, double value) { user().debitCash(february(day), value, CASH_EVENT_DEBIT, u"FEE "); }
  std::vector<GrowthDay> growth(int from, int to) {
    update();
    std::vector<GrowthDay> days;
    do
      days = capitalGrowth({&user()}, february(from), february(to));
    while (GatewayScope::awaitHistory());
    return days;
  }

  using Numbers = std::vector<double>;
  static Numbers capitals(const std::vector<GrowthDay>& days) {
    Numbers numbers;
    for (const GrowthDay& day : days)
      numbers.push_back(day.capital);
    return numbers;
  }
  static void expectGrowth(const std::vector<GrowthDay>& days, const Numbers& expected) {
    ASSERT_EQ(days.size(), expected.size());
    for (std::size_t i = 0; i < days.size(); ++i)
      EXPECT_NEAR(days[i].growth, expected[i], 1e-9) << i;
  }
  /// -1 means no index.
  static void expectIndex(const std::vector<GrowthDay>& days, const Numbers& expected) {
    ASSERT_EQ(days.size(), expected.size());
    for (std::size_t i = 0; i < days.size(); ++i)
      EXPECT_NEAR(days[i].index.value_or(-1), expected[i], 1e-9) << i;
  }

  XMLSharePortfolio m_second;
  std::unique_ptr<SharePortfolioUser> m_secondUser;
};

TEST_F(CapitalGrowthTest, ADepositRaisesTheCapitalAndNotTheGrowth) {
  deposit(1, 1000);
  interest(2, 100);
  deposit(3, 500);
  interest(4, 160);
  withdraw(5, 880);
  interest(6, 88);
  const std::vector<GrowthDay> days = growth(1, 6);
  EXPECT_EQ(capitals(days), (Numbers{1000, 1100, 1600, 1760, 880, 968}));
  expectGrowth(days, {1000, 1100, 1100, 1210, 1210, 1331});
  EXPECT_EQ(days.front().day, february(1));
  EXPECT_EQ(days.back().day, february(6));
}

TEST_F(CapitalGrowthTest, TheGainOfADayIsOnTheCapitalBeforeIt) {
  deposit(1, 1000);
  deposit(2, 4000);
  interest(2, 100);
  expectGrowth(growth(1, 2), {1000, 1100});
}

TEST_F(CapitalGrowthTest, ItStartsAtTheCapitalOfTheFirstDayShown) {
  deposit(1, 1000);
  interest(2, 100);
  deposit(3, 900);
  interest(4, 200);
  expectGrowth(growth(3, 4), {2000, 2200});
}

TEST_F(CapitalGrowthTest, DaysWithoutARecordAreLeftOut) {
  deposit(10, 1000);
  const std::vector<GrowthDay> days = growth(1, 11);
  ASSERT_EQ(days.size(), 2u);
  EXPECT_EQ(days.front().day, february(10));
  EXPECT_EQ(capitalGrowth({&user()}, february(10), m_today.plusDays(5)).back().day, m_today);
  EXPECT_TRUE(capitalGrowth({&user()}, february(1), february(9)).empty());
  EXPECT_TRUE(capitalGrowth({&user()}, february(12), february(11)).empty());
  EXPECT_TRUE(capitalGrowth({}, february(1), february(11)).empty());
}

TEST_F(CapitalGrowthTest, WithNothingLeftItStartsAgain) {
  deposit(1, 1000);
  interest(2, 100);
  withdraw(3, 1100);
  deposit(5, 500);
  interest(6, 50);
  expectGrowth(growth(1, 6), {1000, 1100, 1100, 0, 500, 550});
}

TEST_F(CapitalGrowthTest, ADayThatWouldLeaveNothingOrLessStartsAgain) {
  deposit(1, 1);
  deposit(2, 10000);
  fee(2, 30);
  interest(3, 997.1);
  // A loss of 30 from 1 would give a factor of -29.
  expectGrowth(growth(1, 3), {1, 9971, 10968.1});
}

TEST_F(CapitalGrowthTest, APortfolioThatBeginsLaterIsNoGrowth) {
  deposit(1, 1000);
  interest(3, 100);
  m_second.subElement(u"Name").setValue(u"Savings");
  m_secondUser = std::make_unique<SharePortfolioUser>(m_second, gatewayPrices());
  deposit(*m_secondUser, 3, 2000);
  m_secondUser->creditCash(february(3), 200, CASH_EVENT_INTEREST, u"INTEREST ");
  m_secondUser->creditCash(february(4), 330, CASH_EVENT_INTEREST, u"INTEREST ");
  updateCapitalRecord(*m_secondUser);
  update();
  const std::vector<GrowthDay> days = capitalGrowth({&user(), m_secondUser.get()}, february(1), february(4));
  EXPECT_EQ(capitals(days), (Numbers{1000, 1000, 3300, 3630}));
  expectGrowth(days, {1000, 1000, 1100, 1210});
}

TEST_F(CapitalGrowthTest, TheWholeGrowthOfOnePortfolioWithoutFlowsIsItsGain) {
  deposit(1, 1000);
  for (int day = 2; day <= 20; ++day)
    interest(day, day * 1.5);
  const std::vector<GrowthDay> days = growth(1, 20);
  for (const GrowthDay& day : days)
    EXPECT_NEAR(day.growth, day.capital, 1e-9);
}

// ---- Index

TEST_F(CapitalGrowthTest, TheIndexStartsAtTheCapitalOfTheFirstDay) {
  user().setComparisonIndex(u"^AORD");
  setPrice(u"^AORD", february(1), 4000);
  setPrice(u"^AORD", february(2), 5000);
  setPrice(u"^AORD", february(4), 3000);
  deposit(1, 1000);
  deposit(2, 700);
  expectIndex(growth(1, 4), {1000, 1250, -1, 750});
}

TEST_F(CapitalGrowthTest, AnIndexThatIsCachedLaterStartsWhereTheGrowthStands) {
  user().setComparisonIndex(u"^AORD");
  setPrice(u"^AORD", february(2), 0);
  setPrice(u"^AORD", february(3), 4000);
  setPrice(u"^AORD", february(4), 4400);
  deposit(1, 1000);
  interest(2, 100);
  expectIndex(growth(1, 4), {-1, -1, 1100, 1210});
}

TEST_F(CapitalGrowthTest, TheIndexStartsAgainWithTheGrowth) {
  user().setComparisonIndex(u"^AORD");
  setPrices(u"^AORD", february(1), february(4), 4000);
  setPrice(u"^AORD", february(5), 8000);
  setPrice(u"^AORD", february(6), 6000);
  deposit(1, 1000);
  withdraw(2, 1000);
  deposit(5, 500);
  expectIndex(growth(1, 6), {1000, 1000, 0, 0, 500, 375});
}

TEST_F(CapitalGrowthTest, ThereIsNoIndexWithoutOneOrForSeveralPortfolios) {
  deposit(1, 1000);
  setPrices(u"^AORD", february(1), february(4), 4000);
  expectIndex(growth(1, 2), {-1, -1});
  user().setComparisonIndex(u"^AORD");
  m_second.subElement(u"Name").setValue(u"Savings");
  m_secondUser = std::make_unique<SharePortfolioUser>(m_second, gatewayPrices());
  expectIndex(capitalGrowth({&user(), m_secondUser.get()}, february(1), february(2)), {-1, -1});
  expectIndex(growth(1, 2), {1000, 1000});
}

TEST_F(CapitalGrowthTest, TheGapsOfTheIndexAreFetched) {
  user().setComparisonIndex(u"^AORD");
  deposit(1, 1000);
  update();
  setPrice(u"^AORD", february(2), 4000);
  setPrice(u"^AORD", february(5), 4000);
  expectIndex(growth(2, 5), {1000, -1, -1, 1000});
  m_market.addListing(u"TEST.AX", u"Test", u"Australia"); // Going online searches for it.
  ASSERT_TRUE(gateway().reconnect());
  gateway().priceUpdater().stopAndJoin();
  m_market.setHistory(u"^AORD", Date(2026, 1, 5), february(27), 4000);
  expectIndex(growth(2, 5), {1000, 1000, 1000, 1000});
  expectIndex(growth(2, 5), {1000, 1000, 1000, 1000});
  EXPECT_EQ(m_market.requested(MarketFixture::Page::History).size(), 1u);
  EXPECT_TRUE(m_interaction.calls(Kind::Question).empty());
}

TEST_F(CapitalGrowthTest, NothingIsAskedOrShown) {
  user().setComparisonIndex(u"^AORD");
  deposit(1, 1000);
  update();
  gateway().reconnect();
  m_interaction.clearCalls();
  growth(1, 28);
  EXPECT_TRUE(m_interaction.calls().empty());
  EXPECT_TRUE(m_market.requested(MarketFixture::Page::History).empty());
}

} // namespace
} // namespace Tallymoor
