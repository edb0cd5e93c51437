#include "analysis/WeeklyPrices.h"
#include "analysis/Indicators.h"
#include "market/TallymoorInternet.h"
#include "support/FakeUserInteraction.h"
#include "support/GatewayScope.h"
#include "support/MarketFixture.h"
#include "support/TestProfile.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

/// Tuesday, 3 March 2026, online. The last complete week is 23 to 27 February.
class WeeklyPricesTest : public testing::Test {
protected:
  using Page = MarketFixture::Page;

  static TallymoorInternet& gateway() { return TallymoorInternet::Instance(); }
  static void setPrice(const String& code, const Date& day, double close) {
    gateway().setCachedPrice(code, day, close);
  }

  std::vector<WeeklyPrice> weeks(int count) { return weeksBefore(Date(), count); }
  std::vector<WeeklyPrice> weeksBefore(const Date& day, int count) {
    return GatewayScope::awaited([&] { return recentWeeks(m_code, day, count); });
  }
  Indicators indicatorsOn(const Date& day) {
    return GatewayScope::awaited([&] { return indicatorsOf(m_code, day); });
  }
  std::size_t numFetches() { return m_market.requested(Page::History).size(); }
  /// Sets the same close on every weekday of the last weeks.
  void setHistory(int weeks, double close) {
    m_market.setHistory(m_code, m_lastFriday.plusDays(-7 * weeks + 1), m_today, close);
  }
  /// Checks that no question was asked and that the fetch was shown in the status line.
  void expectQuiet() {
    using Kind = FakeUserInteraction::Kind;
    for (const FakeUserInteraction::Call& call : m_interaction.calls())
      EXPECT_TRUE(call.kind == Kind::Status || call.kind == Kind::BeginWait || call.kind == Kind::EndWait)
          << call.text.toUTF8();
  }

  static String textOf(const WeeklyPrice& week) {
    return week.friday.toString(DATE_DISPLAY_DMY) + u" " + String::fromDouble(week.close, 2) + u" " +
           String::fromDouble(week.high, 2) + u" " + String::fromDouble(week.low, 2);
  }

  const String m_code = u"ABC.AX";
  const Date m_today{2026, 3, 3};
  const Date m_lastFriday{2026, 2, 27};
  TestProfile m_profile{"en_AU", m_today};
  FakeUserInteraction m_interaction;
  MarketFixture m_market;
  GatewayScope m_gateway;
};

TEST_F(WeeklyPricesTest, AWeekHasTheCloseOfItsFridayAndTheRangeOfItsDays) {
  setHistory(27, 10);
  m_market.setDay(m_code, Date(2026, 2, 24), 12, 15, 11, 1000);
  m_market.setDay(m_code, Date(2026, 2, 26), 8, 9, 7.5, 1000);
  m_market.setDay(m_code, Date(2026, 2, 27), 9.5, 10, 9, 1000);
  m_market.setDay(m_code, Date(2026, 3, 2), 13, 60, 5, 1000);
  const std::vector<WeeklyPrice> found = weeks(2);
  ASSERT_EQ(found.size(), 2u);
  EXPECT_EQ(textOf(found[0]), String(u"20/2/2026 10.00 10.50 9.50"));
  EXPECT_EQ(textOf(found[1]), String(u"27/2/2026 9.50 15.00 7.50"));
}

TEST_F(WeeklyPricesTest, PricesFromBeforeASplitAreLeftOut) {
  setHistory(27, 10);
  for (int day = 24; day <= 27; ++day)
    m_market.setDay(m_code, Date(2026, 2, day), 4.9, 5, 4.8, 1000);
  for (int day = 2; day <= 3; ++day)
    m_market.setDay(m_code, Date(2026, 3, day), 5, 1000);
  const std::vector<WeeklyPrice> found = weeks(27);
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(textOf(found[0]), String(u"27/2/2026 4.90 5.00 4.80"));
}

TEST_F(WeeklyPricesTest, AMergeSinceTheLastCompleteWeekExcludesAllWeeks) {
  setHistory(27, 10);
  gateway().historicalPrice(m_code, m_lastFriday, true);
  setPrice(m_code, m_today, 20.1);
  EXPECT_TRUE(weeks(27).empty());
}

TEST_F(WeeklyPricesTest, AMoveThatLooksLikeNoSplitIsKept) {
  setHistory(27, 10);
  gateway().historicalPrice(m_code, m_lastFriday, true);
  setPrice(m_code, m_today, 17.5);
  EXPECT_EQ(weeks(27).size(), 27u);
  for (const double close : {7.5, 6.7}) { // The second one could be a 3:2 split or bad news.
    setPrice(m_code, m_today, close);
    EXPECT_EQ(weeks(27).size(), 27u) << close;
  }
}

TEST_F(WeeklyPricesTest, AJumpThatAsksForASplitExcludesEarlierPrices) {
  setHistory(27, 10);
  gateway().historicalPrice(m_code, m_lastFriday, true);
  for (const double close : {5.2, 20.0, 18.5, 2.1}) {
    setPrice(m_code, m_today, close);
    EXPECT_TRUE(weeks(27).empty()) << close;
  }
}

TEST_F(WeeklyPricesTest, AHolidayOnFridayLeavesThursdaysCloseAndAddsNoRange) {
  m_market.setDay(m_code, Date(2026, 2, 25), 10, 11, 9, 1000);
  m_market.setDay(m_code, Date(2026, 2, 26), 12, 12.5, 11.5, 1000);
  m_market.setDay(m_code, Date(2026, 3, 2), 15, 60, 5, 1000);
  const std::vector<WeeklyPrice> found = weeks(1);
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(textOf(found[0]), String(u"27/2/2026 12.00 12.50 9.00"));
}

TEST_F(WeeklyPricesTest, AWeekWithoutTradesCarriesTheCloseBeforeIt) {
  m_market.setDay(m_code, Date(2026, 2, 20), 12, 13, 11, 1000);
  m_market.setDay(m_code, Date(2026, 3, 2), 15, 60, 5, 1000);
  const std::vector<WeeklyPrice> found = weeks(3);
  ASSERT_EQ(found.size(), 2u);
  EXPECT_EQ(textOf(found[0]), String(u"20/2/2026 12.00 13.00 11.00"));
  EXPECT_EQ(textOf(found[1]), String(u"27/2/2026 12.00 12.00 12.00"));
}

TEST_F(WeeklyPricesTest, AWeekendThatCarriesAPriceIsNoPartOfAWeek) {
  m_market.setDay(m_code, Date(2026, 2, 20), 15, 16, 14, 1000);
  m_market.setDay(m_code, Date(2026, 2, 23), 10, 11, 9, 1000);
  EXPECT_EQ(textOf(weeks(1).back()), String(u"27/2/2026 10.00 11.00 9.00"));
}

TEST_F(WeeklyPricesTest, ATradedSundayBelongsToTheFridayAfterIt) {
  m_market.setDay(m_code, Date(2026, 2, 22), 13, 31, 12, 1000);
  m_market.setDay(m_code, Date(2026, 2, 23), 10, 11, 9, 1000);
  EXPECT_EQ(textOf(weeks(1).back()), String(u"27/2/2026 10.00 31.00 9.00"));
}

TEST_F(WeeklyPricesTest, ADayWithOnlyACurrentPriceUsesThatPrice) {
  gateway().goOffline();
  setPrice(m_code, Date(2026, 2, 25), 14);
  setPrice(m_code, Date(2026, 2, 26), 0); // Not a price.
  setPrice(m_code, Date(2026, 2, 24), 9);
  EXPECT_EQ(textOf(weeks(1).back()), String(u"27/2/2026 14.00 14.00 9.00"));
}

TEST_F(WeeklyPricesTest, TheRangeAlwaysContainsTheClose) {
  // By as much as rounding may leave it outside: anything more is doubtful.
  m_market.setDay(m_code, Date(2026, 2, 16), 10, 10.01, 10.008, 1000);
  m_market.setDay(m_code, Date(2026, 2, 23), 10, 9.992, 9.99, 1000);
  EXPECT_EQ(textOf(weeks(2).front()), String(u"20/2/2026 10.00 10.01 10.00"));
  EXPECT_EQ(textOf(weeks(2).back()), String(u"27/2/2026 10.00 10.00 9.99"));
}

TEST_F(WeeklyPricesTest, AWeekIsCompleteAfterItsFriday) {
  setHistory(27, 10);
  EXPECT_EQ(weeksBefore(Date(2026, 2, 26), 5).back().friday, Date(2026, 2, 20));
  EXPECT_EQ(weeksBefore(Date(2026, 2, 27), 5).back().friday, Date(2026, 2, 20));
  EXPECT_EQ(weeksBefore(Date(2026, 2, 28), 5).back().friday, Date(2026, 2, 27));
  EXPECT_EQ(weeksBefore(Date(2026, 3, 1), 5).back().friday, Date(2026, 2, 27));
  EXPECT_EQ(weeksBefore(Date(2026, 3, 2), 5).back().friday, Date(2026, 2, 27));
}

TEST_F(WeeklyPricesTest, HalfAYearAndTheWeekBeforeItAreFetchedOnceSilently) {
  setHistory(60, 10);
  const std::vector<WeeklyPrice> found = weeks(27);
  EXPECT_EQ(found.size(), 27u);
  EXPECT_EQ(found.front().friday, m_lastFriday.plusDays(-26 * 7));
  EXPECT_EQ(found.back().friday, m_lastFriday);
  for (int again = 0; again < 10; ++again)
    indicatorsOn(m_today);
  EXPECT_EQ(numFetches(), 1u);
  expectQuiet();
}

TEST_F(WeeklyPricesTest, UnderAViewDateTheWeeksEndBeforeIt) {
  m_market.setHistory(m_code, Date(2024, 1, 1), Date(2025, 6, 13), 20);
  m_market.setHistory(m_code, Date(2025, 6, 14), m_today, 35);
  gateway().pauseUpdates();
  Date::setFixedDate(Date(2025, 6, 16));
  const Indicators figures = indicatorsOn(Date());
  EXPECT_NEAR(figures.lrValue.value(), 20, 1e-9);
  EXPECT_NEAR(figures.averageTrueRange.value(), 1, 1e-9);
  EXPECT_EQ(numFetches(), 1u);
}

TEST_F(WeeklyPricesTest, ASplitInTheRunningWeekIsLookedForAtTheSource) {
  // A 2:1 split on Monday. The cache has nothing after the last Friday.
  m_market.setHistory(m_code, Date(2025, 6, 2), m_lastFriday, 50);
  m_market.setHistory(m_code, Date(2026, 3, 2), m_today, 25);
  gateway().completeHistory({{m_code, Date(2025, 6, 2), m_lastFriday, HistoryNeed::Kind::Backward}}, nullptr);
  ASSERT_TRUE(gateway().hasCachedPrice(m_code, m_lastFriday));
  m_profile.setToday(Date(2026, 3, 5));
  m_market.setHistory(m_code, Date(2026, 3, 2), Date(2026, 3, 5), 25);
  EXPECT_FALSE(indicatorsOn(Date()).lrValue);
  gateway().pauseUpdates();
  Date::setFixedDate(Date(2026, 3, 2));
  EXPECT_FALSE(indicatorsOn(Date()).lrValue);
  Date::setFixedDate(Date(2026, 3, 1));
  EXPECT_NEAR(indicatorsOn(Date()).lrValue.value(), 50, 1e-9) << "before the split";
  Date::clearFixedDate();
}

TEST_F(WeeklyPricesTest, AYoungStockHasTheWeeksSinceItsListingAndIsFetchedOnce) {
  setHistory(7, 10);
  for (int again = 0; again < 5; ++again)
    EXPECT_FALSE(indicatorsOn(m_today).lrValue);
  EXPECT_EQ(weeks(27).size(), 7u);
  EXPECT_EQ(numFetches(), 2u); // The page with the listing and the empty one before it.
  expectQuiet();
}

TEST_F(WeeklyPricesTest, TheEighthWeekBringsTheFigures) {
  setHistory(8, 10);
  EXPECT_NEAR(indicatorsOn(m_today).lrValue.value(), 10, 1e-9);
  EXPECT_EQ(trendLineOf(m_code, m_today).value().from, m_lastFriday.plusDays(-7 * 7));
}

TEST_F(WeeklyPricesTest, OfflineOnlyTheCacheIsUsed) {
  setHistory(60, 10);
  gateway().goOffline();
  EXPECT_TRUE(weeks(27).empty());
  m_market.addListing(u"TEST.AX", u"Test", u"Australia"); // Going online searches for it.
  ASSERT_TRUE(gateway().reconnect());
  EXPECT_EQ(weeks(27).size(), 27u);
}

} // namespace
} // namespace Tallymoor
