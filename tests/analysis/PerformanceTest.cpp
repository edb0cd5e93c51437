#include "analysis/Performance.h"
#include "books/CapitalRecordTest.h"
#include "foundation/Settings.h"
#include "xml/CountryOfResidence.h"

namespace Tallymoor {
namespace {

/// The capital is cash only: deposits and withdrawals are flows, interest is a gain.
class PerformanceTest : public CapitalRecordTest {
protected:
  PerformanceTest() { m_second.subElement(u"Name").setValue(u"Savings"); }

  void deposit(const Date& day, double value) {
    user().creditCash(day, value, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
  }
  void withdraw(const Date& day, double value) {
    user().debitCash(day, value, CASH_EVENT_WITHDRAWAL, u"WITHDRAWAL ");
  }
  void interest(const Date& day, double value) {
    user().creditCash(day, value, CASH_EVENT_INTEREST, u"INTEREST ");
  }
  Portfolios one() { return {&user()}; }

  /// A second portfolio with a record that starts at its deposit.
  SharePortfolioUser& second(const Date& day, double value) {
    m_secondUser = std::make_unique<SharePortfolioUser>(m_second, gatewayPrices());
    m_secondUser->creditCash(day, value, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
    updateCapitalRecord(*m_secondUser);
    return *m_secondUser;
  }

  static String textOf(const std::vector<PerformanceSpan>& months) {
    String text;
    for (const PerformanceSpan& month : months)
      text =
          text + month.start.toString(DATE_DISPLAY_DMY) + u"-" + month.end.toString(DATE_DISPLAY_DMY) + u" ";
    return text;
  }

  XMLSharePortfolio m_second;
  std::unique_ptr<SharePortfolioUser> m_secondUser;
};

// ---- Rows

TEST_F(PerformanceTest, MonthsAreTheCurrentOneToTodayAndThenEachBeforeIt) {
  makeDays(Date(2025, 12, 15));
  EXPECT_EQ(textOf(performanceMonths(one(), m_today)),
            String(u"28/2/2026-3/3/2026 31/1/2026-28/2/2026 31/12/2025-31/1/2026 30/11/2025-31/12/2025 "));
}

TEST_F(PerformanceTest, OnTheLastDayOfAMonthTheRowIsThatMonth) {
  makeDays(Date(2026, 1, 31));
  EXPECT_EQ(textOf(performanceMonths(one(), Date(2026, 2, 28))),
            String(u"31/1/2026-28/2/2026 31/12/2025-31/1/2026 "));
}

TEST_F(PerformanceTest, WithoutARecordOfTodayThereAreNoRows) {
  makeDays(Date(2025, 12, 15));
  EXPECT_TRUE(performanceMonths(one(), Date(2026, 3, 4)).empty());
  EXPECT_TRUE(performanceMonths({}, m_today).empty());
}

TEST_F(PerformanceTest, AMonthIsShownWhileAnyPortfolioHasARecordOfItsEnd) {
  makeDays(Date(2026, 3, 1));
  EXPECT_EQ(performanceMonths(one(), m_today).size(), 1u);
  EXPECT_EQ(performanceMonths({&user(), &second(Date(2025, 12, 31), 10)}, m_today).size(), 4u);
}

TEST_F(PerformanceTest, UnderAViewDateTheFirstRowEndsOnIt) {
  makeDays(Date(2025, 12, 15));
  Date::setFixedDate(Date(2026, 1, 20));
  EXPECT_EQ(textOf(performanceMonths(one(), Date())), String(u"31/12/2025-20/1/2026 30/11/2025-31/12/2025 "));
}

TEST_F(PerformanceTest, APeriodBeginsOnTheLastDayOfTheMonthItReaches) {
  EXPECT_EQ(startOfPeriod(Date(2026, 3, 3), 1), Date(2026, 2, 28));
  EXPECT_EQ(startOfPeriod(Date(2026, 3, 31), 1), Date(2026, 2, 28));
  EXPECT_EQ(startOfPeriod(Date(2024, 3, 30), 1), Date(2024, 2, 29));
  EXPECT_EQ(startOfPeriod(Date(2026, 2, 28), 1), Date(2026, 1, 31));
  EXPECT_EQ(startOfPeriod(Date(2026, 3, 15), 3), Date(2025, 12, 31));
  EXPECT_EQ(startOfPeriod(Date(2026, 3, 15), 60), Date(2021, 3, 31));
}

// ---- Capital and gains

TEST_F(PerformanceTest, CapitalIsSummedOverThePortfoliosWithARecordOfTheDay) {
  deposit(Date(2026, 2, 1), 1000);
  update();
  const Portfolios both{&user(), &second(Date(2026, 2, 20), 500)};
  EXPECT_DOUBLE_EQ(capitalOn(both, Date(2026, 2, 19)), 1000);
  EXPECT_DOUBLE_EQ(capitalOn(both, Date(2026, 2, 20)), 1500);
  EXPECT_DOUBLE_EQ(capitalOn(both, Date(2026, 1, 31)), 0);
}

TEST_F(PerformanceTest, DepositsAreNoGain) {
  deposit(Date(2026, 1, 31), 1000);
  deposit(Date(2026, 2, 15), 100);
  interest(Date(2026, 2, 20), 100);
  update();
  EXPECT_NEAR(periodGain(one(), Date(2026, 2, 28), 1).value(), 10, 1e-9);
}

TEST_F(PerformanceTest, MoneyOfTheFirstDayIsCapitalAndThatOfTheLastIsFlow) {
  deposit(Date(2025, 12, 1), 400);
  deposit(Date(2026, 1, 31), 600);
  interest(Date(2026, 2, 28), 50);
  withdraw(Date(2026, 2, 28), 200);
  update();
  EXPECT_NEAR(periodGain(one(), Date(2026, 2, 28), 1).value(), 5, 1e-9);
}

TEST_F(PerformanceTest, OneMonthOfTheCurrentRowReachesBackToTheEndOfTheMonthBefore) {
  deposit(Date(2026, 1, 15), 1000);
  interest(Date(2026, 2, 10), 500); // In February, so not in the current row.
  interest(Date(2026, 3, 1), 300);
  update();
  EXPECT_NEAR(periodGain(one(), m_today, 1).value(), 20, 1e-9);
  EXPECT_NEAR(periodGain(one(), m_today, 2).value(), 80, 1e-9);
}

TEST_F(PerformanceTest, WithoutCapitalAtTheStartTheGainIsEmpty) {
  deposit(Date(2026, 1, 10), 100);
  withdraw(Date(2026, 1, 20), 100);
  interest(Date(2026, 2, 10), 50);
  update();
  EXPECT_FALSE(periodGain(one(), Date(2026, 2, 28), 1));
}

TEST_F(PerformanceTest, WithoutARecordOfBothDaysThereIsNoGain) {
  makeDays(Date(2026, 2, 1));
  EXPECT_FALSE(periodGain(one(), Date(2026, 2, 28), 1));
  EXPECT_FALSE(gainBetween(one(), Date(2026, 2, 10), Date(2026, 3, 4)));
  EXPECT_FALSE(periodGain({}, Date(2026, 2, 28), 1));
}

TEST_F(PerformanceTest, AYoungPortfolioIsLeftOutOfTheSums) {
  deposit(Date(2026, 1, 1), 1000);
  interest(Date(2026, 2, 10), 100);
  update();
  const Portfolios both{&user(), &second(Date(2026, 2, 5), 9000)};
  EXPECT_NEAR(periodGain(both, Date(2026, 2, 28), 1).value(), 10, 1e-9);
  EXPECT_DOUBLE_EQ(gainBetween(both, Date(2026, 2, 15), Date(2026, 2, 28)).value(), 0);
}

TEST_F(PerformanceTest, GainsOfSeveralPortfoliosAreWeightedByCapital) {
  deposit(Date(2026, 1, 1), 1000);
  interest(Date(2026, 2, 10), 100);
  update();
  EXPECT_NEAR(periodGain({&user(), &second(Date(2026, 1, 1), 3000)}, Date(2026, 2, 28), 1).value(), 2.5,
              1e-9);
}

TEST_F(PerformanceTest, AGainOfYearsIsAlsoGivenAsGrowthAYear) {
  deposit(Date(2021, 2, 28), 1000);
  interest(Date(2021, 3, 10), 1000);
  interest(Date(2024, 5, 5), 662); // 33.1% of 2000.
  update();
  EXPECT_NEAR(annualisedGain(one(), Date(2026, 2, 28), 3).value(), 10, 1e-9);
  // The fifth root of 2.662.
  EXPECT_NEAR(annualisedGain(one(), Date(2026, 2, 28), 5).value(), 21.6311, 1e-3);
  EXPECT_FALSE(annualisedGain(one(), Date(2026, 2, 28), 6));
}

// ---- Index

class IndexPerformanceTest : public PerformanceTest {
protected:
  IndexPerformanceTest() { user().setComparisonIndex(u"^AORD"); }
};

TEST_F(IndexPerformanceTest, TheIndexIsItsPriceOfTheDay) {
  setPrice(u"^AORD", Date(2026, 1, 31), 4000);
  EXPECT_DOUBLE_EQ(indexValue(one(), Date(2026, 1, 31)).value(), 4000);
}

TEST_F(IndexPerformanceTest, TodaysIndexIsTheCurrentPrice) {
  gateway().priceUpdater().addCode(u"^AORD");
  gateway().priceUpdater().setCurrentPrice(u"^AORD", 4123);
  EXPECT_DOUBLE_EQ(indexValue(one(), m_today).value(), 4123);
}

TEST_F(IndexPerformanceTest, TheGainOfTheIndexSpansTheSameDays) {
  setPrice(u"^AORD", Date(2025, 11, 30), 4000);
  setPrice(u"^AORD", Date(2026, 2, 28), 5000);
  EXPECT_DOUBLE_EQ(indexGain(one(), Date(2026, 2, 28), 3).value(), 25);
  EXPECT_DOUBLE_EQ(indexGainBetween(one(), Date(2026, 2, 28), Date(2025, 11, 30)).value(), -20);
}

TEST_F(IndexPerformanceTest, ThereIsAnIndexOnlyForExactlyOnePortfolioThatHasOne) {
  setPrice(u"^AORD", Date(2026, 1, 31), 4000);
  setPrice(u"^AORD", Date(2026, 2, 28), 5000);
  SharePortfolioUser& other = second(Date(2026, 1, 1), 100);
  for (const Portfolios& portfolios : {Portfolios{&user(), &other}, Portfolios{&other}, Portfolios{}}) {
    EXPECT_FALSE(indexValue(portfolios, Date(2026, 2, 28)));
    EXPECT_FALSE(indexGain(portfolios, Date(2026, 2, 28), 1));
    EXPECT_FALSE(indexGainBetween(portfolios, Date(2026, 1, 31), Date(2026, 2, 28)));
    EXPECT_FALSE(annualisedIndexGain(portfolios, Date(2026, 2, 28), 3));
  }
}

TEST_F(IndexPerformanceTest, AnIndexWithoutAPriceFails) {
  EXPECT_EQ(messageOf([&] { indexValue(one(), Date(2026, 1, 31)); }),
            String(u"SharePortfolioUser::sharePriceFor - could not get price for ^AORD at 31/01/2026"));
  setPrice(u"^AORD", Date(2026, 2, 28), 5000);
  EXPECT_THROW(indexGain(one(), Date(2026, 2, 28), 1), Exception);
}

TEST_F(IndexPerformanceTest, OnlyTheAnnualisedIndexNeedsARecordOfTheStart) {
  setPrice(u"^AORD", Date(2023, 2, 28), 1000);
  setPrice(u"^AORD", Date(2026, 2, 28), 1331);
  makeDays(Date(2023, 3, 1));
  EXPECT_NEAR(indexGain(one(), Date(2026, 2, 28), 36).value(), 33.1, 1e-9);
  EXPECT_FALSE(annualisedIndexGain(one(), Date(2026, 2, 28), 3));
  deposit(Date(2023, 2, 28), 1);
  update();
  EXPECT_NEAR(annualisedIndexGain(one(), Date(2026, 2, 28), 3).value(), 10, 1e-9);
}

TEST_F(IndexPerformanceTest, WithoutARecordOfTheStartNoPriceIsAskedFor) {
  makeDays(Date(2026, 2, 1));
  EXPECT_FALSE(annualisedIndexGain(one(), Date(2026, 2, 28), 3)); // A request for a price would throw.
}

// ---- Brokerage and flow

class BrokerageTest : public PerformanceTest {
protected:
  void buy(const Date& day, double brokerage) {
    user().addBuyEvent(u"ABC.AX", {day, 1, 1, brokerage, String()});
  }
  void sell(const Date& bought, double buyBrokerage, const Date& sold, double sellBrokerage) {
    XMLElement& event = addSale(u"XYZ.AX", bought, sold, 1, 1, 1);
    event.subElement(u"BuyBrokerage").setValue(String::fromDouble(buyBrokerage, 2));
    event.subElement(u"SellBrokerage").setValue(String::fromDouble(sellBrokerage, 2));
  }
  /// A record of cash only, made before the purchases and sales, which have no prices here.
  void makeCapital(double capital) {
    deposit(Date(2026, 1, 1), capital);
    update();
  }
  const PerformanceSpan m_february{Date(2026, 1, 31), Date(2026, 2, 28)};
  std::optional<double> percent(const Portfolios& portfolios) {
    return brokeragePercent(portfolios, m_february);
  }
};

TEST_F(BrokerageTest, BothEndsOfTheSpanCount) {
  makeCapital(1000);
  buy(Date(2026, 1, 30), 1);
  buy(Date(2026, 1, 31), 2);
  buy(Date(2026, 2, 15), 4);
  buy(Date(2026, 2, 28), 8);
  buy(Date(2026, 3, 1), 16);
  setPrices(u"ABC.AX", Date(2026, 1, 29), m_today, 1);
  update();
  // 2 + 4 + 8 of 1000 and the two parcels held on 31 January.
  EXPECT_NEAR(percent(one()).value(), 14.0 / 1002 * 100, 1e-9);
}

TEST_F(BrokerageTest, EachBrokerageOfASaleCountsOnItsOwnDay) {
  makeCapital(1000);
  sell(Date(2026, 1, 30), 1, Date(2026, 2, 1), 2);
  sell(Date(2026, 1, 31), 4, Date(2026, 3, 1), 8);
  sell(Date(2026, 2, 10), 16, Date(2026, 2, 28), 32);
  sell(Date(2025, 1, 10), 64, Date(2026, 1, 30), 128);
  EXPECT_NEAR(percent(one()).value(), (2 + 4 + 16 + 32) / 1000.0 * 100, 1e-9);
}

TEST_F(BrokerageTest, BrokerageOfAllPortfoliosCountsButYoungOnesAddNoCapital) {
  makeCapital(1000);
  sell(Date(2026, 2, 10), 16, Date(2026, 2, 28), 32);
  EXPECT_NEAR(percent({&user(), &second(Date(2026, 2, 1), 200)}).value(), 4.8, 1e-9);
  EXPECT_NEAR(percent({&user(), &second(Date(2026, 1, 31), 1400)}).value(), 2, 1e-9);
}

TEST_F(BrokerageTest, WithoutCapitalThereIsNoPercentage) {
  sell(Date(2026, 2, 10), 16, Date(2026, 2, 28), 32);
  EXPECT_FALSE(percent(one()));
  EXPECT_FALSE(percent({}));
}

TEST_F(BrokerageTest, NoBrokerageIsZeroPercent) {
  makeCapital(1000);
  EXPECT_DOUBLE_EQ(percent(one()).value(), 0);
}

TEST_F(PerformanceTest, ExternalFlowIsWhatCameInAfterTheFirstDayUpToTheLast) {
  deposit(Date(2026, 1, 31), 1);
  deposit(Date(2026, 2, 1), 20);
  withdraw(Date(2026, 2, 10), 5);
  interest(Date(2026, 2, 11), 1000);
  deposit(Date(2026, 2, 28), 300);
  deposit(Date(2026, 3, 1), 4000);
  update();
  const PerformanceSpan february{Date(2026, 1, 31), Date(2026, 2, 28)};
  EXPECT_DOUBLE_EQ(externalFlow(one(), february).value(), 315);
  EXPECT_DOUBLE_EQ(externalFlow({&user(), &second(Date(2026, 2, 5), 40)}, february).value(), 355);
}

TEST_F(PerformanceTest, AFlowThatRoundsToZeroIsEmpty) {
  deposit(Date(2026, 1, 1), 100);
  deposit(Date(2026, 2, 3), 70);
  withdraw(Date(2026, 2, 20), 70);
  update();
  EXPECT_FALSE(externalFlow(one(), {Date(2026, 1, 31), Date(2026, 2, 28)}));
  EXPECT_FALSE(externalFlow({}, {Date(2026, 1, 31), Date(2026, 2, 28)}));
}

// ---- Financial year

class FinancialYearTest : public PerformanceTest {
protected:
  FinancialYearTest() {
    TestProfile::writeFile(m_profile.configFolder() + u"CountryConfig.xml",
                           "<CountryOptions version='1'>"
                           "<CountryOption Name='Australia' FinYearStart='1/7/2000'/>"
                           "<CountryOption Name='United Kingdom' FinYearStart='6/4/2000'/>"
                           "<CountryOption Name='Germany' FinYearStart='1/1/2000'/></CountryOptions>");
    liveIn(u"Australia");
  }
  ~FinancialYearTest() override { CountryOfResidence::destroyInstance(); }

  static void liveIn(const char16_t* country) {
    Settings::Instance().writeString(u"Config", u"Country", country);
    CountryOfResidence::destroyInstance();
  }
};

TEST_F(FinancialYearTest, MarchOfAYearFromJulyIsItsNinthMonthAndAugustItsSecond) {
  EXPECT_EQ(monthsOfFinancialYear(Date(2026, 3, 31), m_today), 9);
  EXPECT_EQ(monthsOfFinancialYear(Date(2025, 8, 31), m_today), 2);
  EXPECT_EQ(monthsOfFinancialYear(Date(2025, 7, 31), m_today), 1);
  EXPECT_EQ(monthsOfFinancialYear(Date(2025, 6, 30), m_today), 12);
  EXPECT_EQ(monthsOfFinancialYear(Date(2025, 12, 31), m_today), 6);
  EXPECT_EQ(monthsOfFinancialYear(Date(2026, 1, 31), m_today), 7);
}

TEST_F(FinancialYearTest, TheYearsGainReachesBackToTheEndOfTheMonthBeforeItBegan) {
  const Date end(2026, 2, 28);
  EXPECT_EQ(startOfPeriod(end, monthsOfFinancialYear(end, m_today)), Date(2025, 6, 30));
}

TEST_F(FinancialYearTest, AYearFromJanuaryIsTheCalendarYear) {
  liveIn(u"Germany");
  for (int month = 1; month <= 12; ++month)
    EXPECT_EQ(monthsOfFinancialYear(Date(2025, month, 28), m_today), month);
}

TEST_F(FinancialYearTest, OnlyTheMonthOfTheFirstDayCounts) {
  liveIn(u"United Kingdom");
  EXPECT_EQ(monthsOfFinancialYear(Date(2025, 4, 30), m_today), 1);
  EXPECT_EQ(monthsOfFinancialYear(Date(2026, 3, 3), m_today), 12);
}

} // namespace
} // namespace Tallymoor
