#include "books/CapitalRecordTest.h"
#include "support/TestHttpServer.h"

namespace Tallymoor {
namespace {

/// Counts questions and requests while a portfolio's days are computed without available prices. The gateway
/// is online.
class QuietFailuresTest : public CapitalRecordTest {
protected:
  QuietFailuresTest() {
    m_market.addListing(u"TEST.AX", u"Test", u"Australia"); // Going online searches for it.
    goOnline();
  }
  void goOnline() {
    EXPECT_TRUE(gateway().reconnect());
    gateway().priceUpdater().stopAndJoin();
    m_interaction.clearCalls();
  }
  /// Restarts the program and recomputes all days.
  void restart() {
    m_user.reset();
    m_gateway.restart();
    m_user = std::make_unique<SharePortfolioUser>(m_portfolio, gatewayPrices());
    update();
  }
  void buy(const String& code, const Date& day) { user().buyShares(code, {day, 100, 10.0, 0.0, String()}); }
  /// Requests prices of many days, like the views.
  void lookAround(const String& code) {
    for (Date day = m_today.plusDays(-400); day <= m_today; day.addDays(7))
      EXPECT_DOUBLE_EQ(user().sharePriceFor(code, day, true), 10.0);
  }
  std::size_t numQuestions() const { return m_interaction.calls(Kind::Question).size(); }
  std::size_t numRequests() const { return m_market.requested(MarketFixture::Page::History).size(); }
};

TEST_F(QuietFailuresTest, ACodeThatTheSourceDoesNotKnowCostsOneQuestionARun) {
  buy(u"NONE.AX", Date(2025, 3, 3));
  m_interaction.answerQuestion(false);
  update();
  lookAround(u"NONE.AX");
  EXPECT_EQ(numQuestions(), 1u);
  EXPECT_LE(numRequests(), 5u); // Pages of 280 days.
  EXPECT_TRUE(dayOf(m_yesterday).contains(u"NONE.AX 100.00 x 10.00"));
  m_interaction.answerQuestion(false);
  restart();
  lookAround(u"NONE.AX");
  EXPECT_EQ(numQuestions(), 2u);
  EXPECT_LE(numRequests(), 10u);
}

TEST_F(QuietFailuresTest, ACodeThatIsNotFoundCostsTheSame) {
  m_market.refuse(MarketFixture::Page::History, 404);
  buy(u"NONE.AX", Date(2025, 3, 3));
  m_interaction.answerQuestion(false);
  update();
  lookAround(u"NONE.AX");
  EXPECT_EQ(numQuestions(), 1u);
  EXPECT_LE(numRequests(), 5u);
}

TEST_F(QuietFailuresTest, ADelistedCodeIsNeverAskedForAgain) {
  buy(u"NONE.AX", Date(2025, 3, 3));
  m_interaction.answerQuestion(true);
  update();
  restart();
  lookAround(u"NONE.AX");
  EXPECT_EQ(numQuestions(), 1u);
  EXPECT_EQ(numRequests(), 1u);
}

TEST_F(QuietFailuresTest, AStockBoughtBeforeTheFirstPriceOfTheSourceCostsNoQuestion) {
  m_market.setHistory(u"YOUNG.AX", Date(2026, 2, 2), m_today, 10.0);
  buy(u"YOUNG.AX", Date(2023, 12, 1));
  update();
  lookAround(u"YOUNG.AX");
  EXPECT_EQ(numQuestions(), 0u);
  EXPECT_LE(numRequests(), 6u);
  EXPECT_TRUE(dayOf(Date(2025, 1, 6)).contains(u"YOUNG.AX 100.00 x 10.00"));
  restart();
  lookAround(u"YOUNG.AX");
  EXPECT_EQ(numQuestions(), 0u);
  EXPECT_LE(numRequests(), 12u);
}

TEST_F(QuietFailuresTest, WithoutANetworkThereIsOneQuestionForAllCodes) {
  for (const String code : {u"AAA.AX", u"BBB.AX", u"CCC.AX"})
    buy(code, Date(2025, 3, 3));
  m_market.server().stop();
  m_interaction.answerQuestion(false);
  update();
  for (const String code : {u"AAA.AX", u"BBB.AX", u"CCC.AX"})
    lookAround(code);
  EXPECT_EQ(numQuestions(), 1u);
  EXPECT_LE(m_interaction.calls(Kind::Status).size(), 12u) << "each attempt is shown";
}

TEST_F(QuietFailuresTest, ADayWhosePricesAreNoLongerWantedIsNotRecorded) {
  buy(u"AAA.AX", m_today.plusDays(-5));
  m_market.stall(MarketFixture::Page::History);
  m_interaction.stopWanted = [this] { return numRequests() == 1; };
  update();
  EXPECT_EQ(numDays(m_today.plusDays(-5), m_today), 0u);
  EXPECT_EQ(numQuestions(), 0u);
  m_interaction.stopWanted = {};
  m_market.release(MarketFixture::Page::History);
  m_market.setHistory(u"AAA.AX", Date(2026, 1, 5), m_today, 11.0);
  gateway().forgetFailures();
  update();
  EXPECT_TRUE(dayOf(m_yesterday).contains(u"AAA.AX 100.00 x 11.00"));
}

} // namespace
} // namespace Tallymoor
