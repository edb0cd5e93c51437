#include "views/SharedLimits.h"
#include "market/MarketPrices.h"
#include "support/GatewayScope.h"
#include "support/MarketFixture.h"
#include "support/TestProfile.h"
#include "views/PriceLimits.h"
#include "xml/PortfolioRecords.h"
#include <gtest/gtest.h>

using namespace Tallymoor;

namespace {

/// Portfolios whose shares have limits, without windows.
class SharedLimitsTest : public ::testing::Test {
protected:
  XMLHeldShare& hold(const String& name, const String& code, double min = 0.0, double max = 0.0) {
    if (!portfolios.contains(name)) {
      XMLSharePortfolio& element = m_records.portfolios().add();
      element.setPortfolioName(name);
      portfolios[name] = std::make_unique<SharePortfolioUser>(element, gatewayPrices());
    }
    SharePortfolioUser& user = *portfolios[name];
    XMLHeldShare& share = user.portfolio().heldShares().add();
    share.setCode(code);
    if (min != 0.0 || max != 0.0)
      user.setMinMax(share, min, max);
    return share;
  }
  static void expectLimits(const XMLHeldShare& share, double min, double max) {
    const PriceLimits limits = PriceLimits::ofHeldShare(share);
    EXPECT_DOUBLE_EQ(min, limits.min);
    EXPECT_DOUBLE_EQ(max, limits.max);
  }
  static void expectKept(const String& code, double min, double max) {
    EXPECT_DOUBLE_EQ(min, PriceLimits::ofStock(code).min);
    EXPECT_DOUBLE_EQ(max, PriceLimits::ofStock(code).max);
  }

  TestProfile m_profile;
  MarketFixture m_market;
  GatewayScope m_gateway;
  XMLPortfolios m_records;
  OpenPortfolios portfolios;
  SharedLimits m_sharedLimits;
};

TEST_F(SharedLimitsTest, LimitsAreSetInEveryHoldingAndInTheSettings) {
  XMLHeldShare& first = hold(u"A", u"AAA.AX", 1.0, 2.0);
  XMLHeldShare& second = hold(u"B", u"AAA.AX");
  XMLHeldShare& another = hold(u"B", u"BBB.AX");
  shareLimits(portfolios, u"AAA.AX", {3.0, 4.0});
  expectLimits(first, 3.0, 4.0);
  expectLimits(second, 3.0, 4.0);
  expectLimits(another, 0.0, 0.0);
  expectKept(u"AAA.AX", 3.0, 4.0);
  shareLimits(portfolios, u"CCC.AX", {5.0, 6.0}); // Not held anywhere.
  expectKept(u"CCC.AX", 5.0, 6.0);
}

TEST_F(SharedLimitsTest, HoldingWithoutLimitsTakesThoseOfTheWatchedStock) {
  PriceLimits{1.0, 2.0}.keepForStock(u"AAA.AX");
  XMLHeldShare& share = hold(u"A", u"AAA.AX");
  m_sharedLimits.bringTogether(portfolios);
  expectLimits(share, 1.0, 2.0);
}

TEST_F(SharedLimitsTest, LimitsOfAHoldingComeToTheSettings) {
  hold(u"A", u"AAA.AX");
  hold(u"B", u"AAA.AX", 1.0, 2.0);
  m_sharedLimits.bringTogether(portfolios);
  expectKept(u"AAA.AX", 1.0, 2.0);
  expectLimits(*portfolios[u"A"]->findHeldShare(u"AAA.AX"), 1.0, 2.0);
}

TEST_F(SharedLimitsTest, ImportedRecordsTakePrecedenceOverTheSettings) {
  PriceLimits{1.0, 2.0}.keepForStock(u"AAA.AX");
  XMLHeldShare& share = hold(u"A", u"AAA.AX", 3.0, 4.0);
  m_sharedLimits.bringTogether(portfolios);
  expectLimits(share, 3.0, 4.0);
  expectKept(u"AAA.AX", 3.0, 4.0);
}

TEST_F(SharedLimitsTest, HoldingsThatDifferKeepTheirsUntilLimitsAreSetAnew) {
  PriceLimits{5.0, 6.0}.keepForStock(u"AAA.AX");
  XMLHeldShare& first = hold(u"A", u"AAA.AX", 3.0, 4.0);
  XMLHeldShare& second = hold(u"B", u"AAA.AX", 5.0, 6.0);
  m_sharedLimits.bringTogether(portfolios);
  expectLimits(first, 3.0, 4.0);
  expectLimits(second, 5.0, 6.0);
  expectKept(u"AAA.AX", 5.0, 6.0); // One holding already has these limits.
  shareLimits(portfolios, u"AAA.AX", {7.0, 8.0});
  expectLimits(first, 7.0, 8.0);
  expectLimits(second, 7.0, 8.0);
}

TEST_F(SharedLimitsTest, APurchaseTakesTheLimitsOfAStockThatWasLookedAtBefore) {
  hold(u"A", u"AAA.AX", 1.0, 2.0);
  m_sharedLimits.bringTogether(portfolios);
  XMLHeldShare& later = hold(u"B", u"AAA.AX");
  m_sharedLimits.bringTogether(portfolios);
  expectLimits(later, 1.0, 2.0);
}

TEST_F(SharedLimitsTest, LimitsThatChangeInTheSettingsReachAHoldingThatWasLookedAtBefore) {
  XMLHeldShare& share = hold(u"A", u"AAA.AX");
  m_sharedLimits.bringTogether(portfolios);
  PriceLimits{1.0, 2.0}.keepForStock(u"AAA.AX");
  m_sharedLimits.bringTogether(portfolios);
  expectLimits(share, 1.0, 2.0);
}

TEST_F(SharedLimitsTest, WithoutLimitsNothingIsSet) {
  XMLHeldShare& share = hold(u"A", u"AAA.AX");
  m_sharedLimits.bringTogether(portfolios);
  expectLimits(share, 0.0, 0.0);
  expectKept(u"AAA.AX", 0.0, 0.0);
}

} // namespace
