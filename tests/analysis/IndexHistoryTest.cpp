#include "analysis/IndexHistory.h"
#include "foundation/FileReplacement.h"
#include "market/TallymoorInternet.h"
#include "support/FakeUserInteraction.h"
#include "support/GatewayScope.h"
#include "support/MarketFixture.h"
#include "support/TestProfile.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

/// Today is Tuesday, 3 March 2026; the gateway is online.
class IndexHistoryTest : public testing::Test {
protected:
  ~IndexHistoryTest() override { Date::clearFixedDate(); }

  /// Today and the preceding month ends.
  static std::vector<Date> days(int months) {
    std::vector<Date> list{Date()};
    for (int i = 1; i <= months; ++i)
      list.push_back(Date().plusMonths(-i).lastDayOfMonth());
    return list;
  }
  /// Requests the days and waits until they are there or unavailable; then the user is told of a failure.
  static void fetch(const String& code, const std::vector<Date>& days) {
    do
      IndexHistory::request(code, days);
    while (GatewayScope::awaitHistory());
  }
  std::size_t numFetches() { return m_market.requested(MarketFixture::Page::History).size(); }
  static bool knows(const Date& day) { return IndexHistory::isKnown(u"^IDX", day); }

  TestProfile m_profile;
  MarketFixture m_market;
  GatewayScope m_gateway;
  FakeUserInteraction m_user;
};

TEST_F(IndexHistoryTest, FetchesWhatIsMissingAndNothingTwice) {
  m_market.setHistory(u"^IDX", Date(2023, 1, 2), Date(2026, 3, 3), 4000.0);
  EXPECT_FALSE(knows(Date(2026, 2, 28)));
  fetch(u"^IDX", days(36));
  for (const Date& day : days(36))
    EXPECT_TRUE(knows(day)) << day.toString(DATE_DISPLAY_YMD).toUTF8();
  const std::size_t fetches = numFetches();
  EXPECT_LE(fetches, 8u); // Pages of 200 days.
  fetch(u"^IDX", days(36));
  EXPECT_EQ(fetches, numFetches());
}

TEST_F(IndexHistoryTest, IndexThatIsYoungerThanItsPortfolioIsAskedForOnce) {
  m_market.setHistory(u"^IDX", Date(2025, 12, 8), Date(2026, 3, 3), 4000.0);
  fetch(u"^IDX", days(60));
  EXPECT_TRUE(knows(Date(2025, 12, 31)));
  EXPECT_FALSE(knows(Date(2025, 11, 30)));
  const std::size_t fetches = numFetches();
  EXPECT_EQ(2u, fetches);
  fetch(u"^IDX", days(60));
  EXPECT_EQ(fetches, numFetches());
}

TEST_F(IndexHistoryTest, AnotherIndexStartsAgain) {
  m_market.setHistory(u"^IDX", Date(2025, 12, 8), Date(2026, 3, 3), 4000.0);
  m_market.setHistory(u"^OLD", Date(2024, 12, 2), Date(2026, 3, 3), 500.0);
  fetch(u"^IDX", days(12));
  fetch(u"^OLD", days(12));
  EXPECT_TRUE(IndexHistory::isKnown(u"^OLD", Date(2025, 11, 30)));
}

TEST_F(IndexHistoryTest, AFailureEndsTheRequestsUntilTheNextTime) {
  m_market.setHistory(u"^IDX", Date(2023, 1, 2), Date(2026, 3, 3), 4000.0);
  m_market.refuse(MarketFixture::Page::History, 500);
  m_user.answerQuestion(false); // Don't try again.
  fetch(u"^IDX", days(36));
  fetch(u"^IDX", days(36));
  EXPECT_FALSE(knows(Date()));
  EXPECT_EQ(m_market.requested(MarketFixture::Page::History).size(), 1u);
  m_market.refuse(MarketFixture::Page::History, 200);
  TallymoorInternet::Instance().forgetFailures();
  fetch(u"^IDX", days(36));
  EXPECT_TRUE(knows(Date(2024, 1, 31)));
}

TEST_F(IndexHistoryTest, TheCurrentPriceCountsForToday) {
  PriceUpdater& updater = TallymoorInternet::Instance().priceUpdater();
  updater.addCode(u"^IDX");
  EXPECT_FALSE(knows(Date()));
  updater.setCurrentPrice(u"^IDX", 4100.0);
  EXPECT_TRUE(knows(Date()));
  Date::setFixedDate(Date(2026, 3, 2));
  EXPECT_FALSE(knows(Date()));
  EXPECT_FALSE(knows(Date(2026, 3, 3)));
}

} // namespace
} // namespace Tallymoor
