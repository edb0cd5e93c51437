#include "views/WatchedCodes.h"
#include "market/TallymoorInternet.h"
#include "support/FakeUserInteraction.h"
#include "support/GatewayScope.h"
#include "support/MarketFixture.h"
#include "support/TestProfile.h"
#include <gtest/gtest.h>

using namespace Tallymoor;

namespace {

class WatchedCodesTest : public testing::Test {
protected:
  static PriceUpdater& updater() { return TallymoorInternet::Instance().priceUpdater(); }

  FakeUserInteraction& user() { return m_interaction; }

private:
  TestProfile m_profile;
  FakeUserInteraction m_interaction;
  MarketFixture m_market;
  GatewayScope m_gateway;
};

TEST_F(WatchedCodesTest, CodeStaysWhileAnyViewWantsIt) {
  WatchedCodes first;
  {
    WatchedCodes second;
    first.watch({u"A", u"B"});
    second.watch({u"B", u"C"});
    first.watch({u"A"});
    EXPECT_TRUE(updater().hasCode(u"B"));
  }
  EXPECT_TRUE(updater().hasCode(u"A"));
  EXPECT_FALSE(updater().hasCode(u"B"));
  EXPECT_FALSE(updater().hasCode(u"C"));
}

TEST_F(WatchedCodesTest, ACodeThatNoViewWantsIsNoLongerWarnedOf) {
  WatchedCodes first;
  first.watch({u"A", u"B"});
  user().clearCalls();
  first.watch({u"A"});
  const auto over = user().calls(FakeUserInteraction::Kind::WarningOver);
  ASSERT_EQ(2u, over.size());
  EXPECT_EQ(String(u"Bmin warning"), over[0].key);
  EXPECT_EQ(String(u"Bmax warning"), over[1].key);
}

TEST_F(WatchedCodesTest, WatchingAgainKeepsThePrice) {
  WatchedCodes codes;
  codes.watch({u"A"});
  updater().setCurrentPrice(u"A", 3.0);
  codes.watch({u"A", u"B"});
  EXPECT_DOUBLE_EQ(3.0, updater().getCurrentPrice(u"A"));
}

TEST_F(WatchedCodesTest, OutlivesTheGateway) {
  WatchedCodes codes;
  codes.watch({u"A"});
  TallymoorInternet::shutdownForNextTest();
  EXPECT_FALSE(TallymoorInternet::exists());
}

} // namespace
