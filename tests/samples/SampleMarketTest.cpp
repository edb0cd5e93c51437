#include "service/SampleMarket.h"
#include "service/TradingCalendar.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <set>

using namespace std::chrono;

namespace SampleService {
namespace {

constexpr Day TODAY = sys_days(2026y / March / 3);

long countListings(const std::function<bool(const Listing&)>& wanted) {
  return std::count_if(SampleMarket::listings().begin(), SampleMarket::listings().end(), wanted);
}

TEST(SampleMarketTest, ListsEnoughOfEachKind) {
  EXPECT_GE(countListings([](const Listing& l) { return l.code.ends_with(".AX"); }), 40);
  EXPECT_GE(
      countListings([](const Listing& l) { return !l.isIndex && l.code.find('.') == std::string::npos; }),
      10);
  EXPECT_GE(countListings([](const Listing& l) { return l.isIndex; }), 3);
}

TEST(SampleMarketTest, CodesAreDistinctAndNamesNeedNoEscaping) {
  std::set<std::string> codes;
  for (const Listing& listing : SampleMarket::listings()) {
    EXPECT_TRUE(codes.insert(listing.code).second) << listing.code;
    EXPECT_EQ(std::string::npos, listing.name.find_first_of("&<>\"")) << listing.name;
  }
}

/// Figures that other machines must give too, as expected_prices.py works them out.
TEST(SampleMarketTest, PricesAreTheSameOnEveryMachine) {
  const SampleMarket market;
  const PriceHistory history = *market.history("ABC.AX", TODAY);
  ASSERT_FALSE(history.rows.empty());
  EXPECT_EQ(sys_days(2001y / January / 2), history.rows.front().day);
  EXPECT_EQ(sys_days(2026y / March / 2), history.rows.back().day);
  EXPECT_EQ(82700, history.rows.front().close);
  EXPECT_EQ(289600, history.rows.back().close);
}

TEST(SampleMarketTest, PastDaysDoNotChangeAsTimeGoesOn) {
  const SampleMarket market;
  const PriceHistory before = *market.history("CBR.AX", TODAY);
  const PriceHistory after = *market.history("CBR.AX", TODAY + days(30));
  ASSERT_LT(before.rows.size(), after.rows.size());
  for (std::size_t i = 0; i < before.rows.size(); ++i)
    ASSERT_EQ(before.rows[i].close, after.rows[i].close);
}

TEST(SampleMarketTest, EveryRowIsATradingDayWithSensiblePrices) {
  const SampleMarket market;
  for (const Listing& listing : SampleMarket::listings()) {
    const PriceHistory history = *market.history(listing.code, TODAY);
    for (const DayRow& row : history.rows) {
      ASSERT_TRUE(isTradingDay(row.day)) << listing.code;
      ASSERT_GT(row.low, 0) << listing.code;
      ASSERT_LE(row.low, std::min(row.open, row.close)) << listing.code;
      ASSERT_GE(row.high, std::max(row.open, row.close)) << listing.code;
      ASSERT_GT(row.volume, 0) << listing.code;
    }
  }
}

struct Jump {
  const char* code;
  Day day;
  double least, most; ///< of the day's close by the close before
};

/// Jumps beyond the factor of two from which a split is suspected; no other day of the market has one.
TEST(SampleMarketTest, TwoSplitsAndAMergeAreTheOnlyJumps) {
  const Jump known[] = {{"GRV.AX", sys_days(2024y / May / 14), 0.45, 0.4999},
                        {"TLM.AX", sys_days(2022y / September / 6), 0.30, 0.34},
                        {"OPL.AX", sys_days(2023y / November / 15), 4.5, 5.5}};
  const SampleMarket market;
  std::size_t found = 0;
  for (const Listing& listing : SampleMarket::listings()) {
    const PriceHistory history = *market.history(listing.code, TODAY);
    for (std::size_t i = 1; i < history.rows.size(); ++i) {
      const double ratio = double(history.rows[i].close) / double(history.rows[i - 1].close);
      if (ratio >= 0.5 && ratio <= 2.0)
        continue;
      const auto jump = std::find_if(std::begin(known), std::end(known), [&](const Jump& k) {
        return listing.code == k.code && history.rows[i].day == k.day && ratio > k.least && ratio < k.most;
      });
      EXPECT_NE(std::end(known), jump) << listing.code << " ratio " << ratio;
      ++found;
    }
  }
  EXPECT_EQ(std::size(known), found);
}

TEST(SampleMarketTest, QuoteIsConstantWithoutTradingAndMovesOtherwise) {
  const SampleMarket market;
  const Day saturday = sys_days(2026y / March / 7);
  EXPECT_EQ(market.history("ABC.AX", saturday)->rows.back().close, *market.quote("ABC.AX", saturday, 600));
  std::set<std::int64_t> prices;
  for (int minute = 0; minute < 1440; minute += 60)
    prices.insert(*market.quote("ABC.AX", TODAY, minute));
  EXPECT_GT(prices.size(), 3u);
}

TEST(SampleMarketTest, UnknownCodeHasNothing) {
  const SampleMarket market;
  EXPECT_FALSE(market.history("NOPE.AX", TODAY));
  EXPECT_FALSE(market.quote("NOPE.AX", TODAY, 0));
}

TEST(TradingCalendarTest, WeekendsAndHolidaysAreMissing) {
  EXPECT_FALSE(isTradingDay(sys_days(2026y / March / 7)));
  EXPECT_FALSE(isTradingDay(sys_days(2026y / January / 1)));
  EXPECT_FALSE(isTradingDay(sys_days(2025y / December / 25)));
  EXPECT_FALSE(isTradingDay(sys_days(2026y / April / 3))) << "Good Friday";
  EXPECT_FALSE(isTradingDay(sys_days(2026y / April / 6))) << "Easter Monday";
  EXPECT_TRUE(isTradingDay(sys_days(2026y / April / 7)));
}

TEST(TradingCalendarTest, EasterSundays) {
  EXPECT_EQ(sys_days(2000y / April / 23), easterSunday(2000));
  EXPECT_EQ(sys_days(2008y / March / 23), easterSunday(2008));
  EXPECT_EQ(sys_days(2026y / April / 5), easterSunday(2026));
  EXPECT_EQ(sys_days(2038y / April / 25), easterSunday(2038));
}

} // namespace
} // namespace SampleService
