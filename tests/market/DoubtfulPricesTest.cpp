#include "market/GatewayTest.h"

namespace Tallymoor {
namespace {

/// A stock whose closes of the fortnight up to Tuesday are 5.00, and whose source then gives prices that are
/// hard to believe.
class DoubtfulPricesTest : public GatewayTest {
protected:
  DoubtfulPricesTest() {
    m_market.setHistory(m_code, Date(2006, 11, 1), m_tuesday, 5.0);
    gateway().historicalPrice(m_code, m_today, true);
    updater().addCode(m_code);
    m_clock->tick += 8 * HOUR + 1;
  }
  void passWith(double price) {
    m_market.setCurrentPrice(m_code, price);
    updater().runPass();
  }
  std::size_t numWaiting() { return gateway().doubtfulPrices()[m_code].size(); }

  const Date m_tuesday{2006, 11, 14};
};

TEST_F(DoubtfulPricesTest, ThePriceBeforeItCountsUntilTheUserHasDecided) {
  int told = 0;
  gateway().setDoubtWatcher([&told] { ++told; });
  passWith(500);
  EXPECT_EQ(told, 1);
  EXPECT_DOUBLE_EQ(updater().getCurrentPrice(m_code), 5);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, m_today, 0), 5);
  EXPECT_DOUBLE_EQ(gateway().currentPrice(m_code, false, true), 5) << "asked for directly";
  ASSERT_EQ(numWaiting(), 1u);
  EXPECT_EQ(gateway().doubtfulPrices()[m_code].begin()->second.reason, DoubtReason::Unit);
  EXPECT_TRUE(questions().empty());

  gateway().acceptDoubtful(m_code, false);
  EXPECT_EQ(told, 2);
  EXPECT_EQ(numWaiting(), 0u);
  EXPECT_DOUBLE_EQ(updater().getCurrentPrice(m_code), 500);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, m_today, 0), 500);
  passWith(505);
  EXPECT_DOUBLE_EQ(updater().getCurrentPrice(m_code), 505);
  EXPECT_EQ(numWaiting(), 0u);
  gateway().acceptDoubtful(m_code, false); // nothing waits
}

TEST_F(DoubtfulPricesTest, NothingIsAskedForADayWhosePriceWasTyped) {
  gateway().setCachedPrice(m_code, m_today, 0.05);
  passWith(5);
  EXPECT_EQ(numWaiting(), 0u);
  EXPECT_DOUBLE_EQ(updater().getCurrentPrice(m_code), 0.05);
}

TEST_F(DoubtfulPricesTest, ARefusedPriceIsNotAskedAboutAgain) {
  passWith(500);
  gateway().refuseDoubtful(m_code);
  passWith(500);
  EXPECT_EQ(numWaiting(), 0u);
  EXPECT_DOUBLE_EQ(updater().getCurrentPrice(m_code), 5);
  passWith(5.2);
  EXPECT_DOUBLE_EQ(updater().getCurrentPrice(m_code), 5.2);
}

TEST_F(DoubtfulPricesTest, ACodeThatIsTrustedFromNowOnIsTakenAsItComes) {
  passWith(500);
  gateway().acceptDoubtful(m_code, true);
  passWith(5);
  EXPECT_DOUBLE_EQ(updater().getCurrentPrice(m_code), 5);
  EXPECT_EQ(numWaiting(), 0u);
}

TEST_F(DoubtfulPricesTest, AnAcceptedCloseReachesTheDaysThatWereFilledInBehindIt) {
  m_profile.setToday(Date(2006, 11, 19));
  m_market.setDay(m_code, Date(2006, 11, 15), 5);
  m_market.setDay(m_code, Date(2006, 11, 17), 1);
  passWith(0);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, Date(2006, 11, 17), 0), 5);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, Date(2006, 11, 19), 0), 5);
  gateway().acceptDoubtful(m_code, false);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, Date(2006, 11, 16), 0), 5);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, Date(2006, 11, 17), 0), 1);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, Date(2006, 11, 19), 0), 1);
}

TEST_F(DoubtfulPricesTest, WhatThePriceOfADayContradictsIsKept) {
  m_market.setDay(m_code, Date(2006, 11, 8), 6);
  passWith(5);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, Date(2006, 11, 8), 0), 5);
  ASSERT_EQ(numWaiting(), 1u);
  EXPECT_EQ(gateway().doubtfulPrices()[m_code].begin()->second.reason, DoubtReason::Contradiction);
}

} // namespace
} // namespace Tallymoor
