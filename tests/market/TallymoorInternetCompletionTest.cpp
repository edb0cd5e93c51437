#include "foundation/RunTimeSettings.h"
#include "market/GatewayTest.h"

namespace Tallymoor {
namespace {

/// Completing the history of a code for figures that stay empty where it is unavailable.
class CompletionTest : public GatewayTest {
protected:
  void complete(const Date& first, const Date& last) {
    gateway().completeHistory(m_code, first, last);
    expectNothingAsked();
  }
  /// What is fetched is told in the status line, under the wait cursor, and nowhere else.
  void expectNothingAsked() const {
    for (const FakeUserInteraction::Call& call : m_user.calls())
      EXPECT_TRUE(call.kind == Kind::Status || call.kind == Kind::BeginWait || call.kind == Kind::EndWait)
          << call.text.toUTF8();
    EXPECT_EQ(m_user.openWaits(), 0);
  }
  void reconnect() {
    m_market.addListing(u"TEST.AX", u"Test", u"Australia"); // what going online looks for
    ASSERT_TRUE(gateway().reconnect());
    updater().stopAndJoin();
    m_user.clearCalls();
  }
  std::size_t numFetches() const { return m_market.requested(Page::History).size(); }

  const Date m_first{2006, 5, 1};
};

TEST_F(CompletionTest, CompleteDaysAreNotFetched) {
  for (Date day = m_first; day <= m_friday; day.addDays(1))
    gateway().setCachedPrice(m_code, day, 5);
  complete(m_first, m_friday);
  EXPECT_EQ(numFetches(), 0u);
}

TEST_F(CompletionTest, ASingleMissingDayIsFetched) {
  m_market.setHistory(m_code, Date(2005, 1, 1), m_today, 7);
  for (Date day = m_first; day <= m_friday; day.addDays(1))
    if (day != Date(2006, 8, 9))
      gateway().setCachedPrice(m_code, day, 5);
  complete(m_first, m_friday);
  EXPECT_EQ(numFetches(), 1u);
  EXPECT_EQ(gateway().cachedClose(m_code, Date(2006, 8, 9)), 7);
}

TEST_F(CompletionTest, SmallPagesAreFetchedUntilTheFirstDayIsReached) {
  m_market.setMaxEntries(50); // 70 days
  m_market.setHistory(m_code, Date(2005, 1, 1), m_today, 7);
  complete(m_first, m_friday);
  EXPECT_EQ(numFetches(), 3u);
  EXPECT_EQ(gateway().cachedRows(m_code, m_first, m_friday).size(),
            static_cast<std::size_t>(m_friday.daysSince(m_first)) + 1);
}

TEST_F(CompletionTest, DaysBeforeTheListingAreAskedForOnceARun) {
  m_market.setHistory(m_code, Date(2006, 9, 1), m_today, 7);
  for (int again = 0; again < 3; ++again)
    complete(m_first, m_friday);
  EXPECT_EQ(numFetches(), 2u); // the page with the listing, and the empty one before it
  m_profile.setToday(m_today.plusDays(1));
  complete(m_first, m_friday);
  EXPECT_EQ(numFetches(), 2u);
  gateway().forgetFailures();
  complete(m_first, m_friday);
  EXPECT_EQ(numFetches(), 3u);
}

TEST_F(CompletionTest, AnEmptyPageEndsTheCompletionAndNoOtherRequest) {
  m_market.setHistory(m_code, Date(2004, 1, 5), Date(2004, 4, 1), 6);
  m_market.setHistory(m_code, Date(2006, 6, 1), m_today, 7); // after two years without trade
  for (int again = 0; again < 3; ++again)
    complete(Date(2004, 1, 5), m_friday);
  EXPECT_EQ(numFetches(), 2u);
  EXPECT_FALSE(gateway().hasCachedPrice(m_code, Date(2004, 3, 9)));
  EXPECT_EQ(gateway().historicalPrice(m_code, Date(2004, 3, 9), true), 6) << "who needs a price gets it";
}

TEST_F(CompletionTest, TenYearsAreCompletedAtOnce) {
  const Date first(1996, 11, 15);
  m_market.setHistory(m_code, first, m_today, 7);
  complete(first, m_today);
  EXPECT_EQ(gateway().cachedRows(m_code, first, m_today).size(),
            static_cast<std::size_t>(m_today.daysSince(first)) + 1);
}

TEST_F(CompletionTest, AnUnknownCodeAndARefusalCostOneTryEach) {
  for (int again = 0; again < 3; ++again)
    complete(m_first, m_friday);
  EXPECT_EQ(numFetches(), 1u);
  m_market.refuse(Page::History, 500);
  for (int again = 0; again < 3; ++again)
    gateway().completeHistory(u"XYZ.AX", m_first, m_friday);
  EXPECT_EQ(numFetches(), 2u);
  expectNothingAsked();
}

TEST_F(CompletionTest, OnlyWhatIsFetchedIsTold) {
  m_market.setHistory(m_code, Date(2005, 1, 1), m_today, 7);
  complete(m_first, m_friday);
  EXPECT_EQ(statuses(), std::vector<String>{u"updating historical prices for ABC.AX"});
  EXPECT_EQ(m_user.calls(Kind::BeginWait).size(), 1u);
  complete(m_first, m_friday);
  EXPECT_EQ(statuses().size(), 1u);
  EXPECT_EQ(m_user.calls(Kind::BeginWait).size(), 1u);
}

TEST_F(CompletionTest, InABackgroundPassNothingIsTold) {
  m_market.setHistory(m_code, Date(2005, 1, 1), m_today, 7);
  {
    const BackgroundPassScope pass;
    complete(m_first, m_friday);
  }
  EXPECT_EQ(numFetches(), 1u);
  EXPECT_TRUE(m_user.calls().empty());
}

TEST_F(CompletionTest, EarlierDaysOfACodeThatFailedAreNotTried) {
  complete(m_first, m_friday);
  complete(m_first, m_friday.plusDays(-7));
  complete(Date(2005, 1, 1), Date(2005, 2, 1));
  EXPECT_EQ(numFetches(), 1u);
}

TEST_F(CompletionTest, GoingOnlineClearingTheCacheAndForgivingACodeAllowAnotherTry) {
  complete(m_first, m_friday);
  reconnect();
  complete(m_first, m_friday);
  EXPECT_EQ(numFetches(), 2u);
  gateway().clear();
  complete(m_first, m_friday);
  EXPECT_EQ(numFetches(), 3u);
  gateway().markBadCode(m_code);
  gateway().clearBadCode(m_code);
  complete(m_first, m_friday);
  EXPECT_EQ(numFetches(), 4u);
}

TEST_F(CompletionTest, ADelistedCodeIsNotFetched) {
  gateway().markBadCode(m_code);
  complete(m_first, m_friday);
  EXPECT_EQ(numFetches(), 0u);
}

TEST_F(CompletionTest, OfflineNothingIsTriedNorHeldAgainstTheCode) {
  m_market.setHistory(m_code, Date(2005, 1, 1), m_today, 7);
  gateway().goOffline();
  complete(m_first, m_friday);
  EXPECT_TRUE(gateway().cachedRows(m_code, m_first, m_friday).empty());
  reconnect();
  complete(m_first, m_friday);
  EXPECT_EQ(numFetches(), 1u);
}

TEST_F(CompletionTest, TheFailureOfAnUnreadableFileIsLeftForWhoeverAsksForAPrice) {
  TestProfile::writeFile(m_profile.cacheFolder() + u"PriceCache.ABC.AX.xml", "<ShareValues><broken");
  complete(m_first, m_friday);
  EXPECT_EQ(numFetches(), 0u);
  EXPECT_THROW(gateway().historicalPrice(m_code, m_friday, true), XMLException);
}

TEST_F(CompletionTest, ABackgroundPassGoesOnAsItWas) {
  complete(m_first, m_friday);
  EXPECT_FALSE(inBackgroundPass);
  const BackgroundPassScope pass;
  gateway().completeHistory(u"XYZ.AX", m_first, m_friday);
  EXPECT_TRUE(inBackgroundPass);
}

TEST_F(CompletionTest, CachedRowsIncludeBothEnds) {
  for (int day = 1; day <= 5; ++day)
    gateway().setCachedPrice(m_code, Date(2006, 11, day), day);
  const SharePriceCache::Rows rows = gateway().cachedRows(m_code, Date(2006, 11, 2), Date(2006, 11, 4));
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows.begin()->second.close, 2);
  EXPECT_EQ(rows.rbegin()->second.close, 4);
  EXPECT_TRUE(gateway().cachedRows(u"XYZ.AX", Date(2006, 11, 2), Date(2006, 11, 4)).empty());
}

} // namespace
} // namespace Tallymoor
