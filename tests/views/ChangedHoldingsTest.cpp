#include "views/ChangedHoldings.h"
#include "xml/PortfolioRecords.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

class ChangedHoldingsTest : public ::testing::Test {
protected:
  ChangedHoldingsTest() {
    for (const char16_t* code : {u"AAA.AX", u"BBB.AX", u"CCC.AX"})
      m_records.heldShares().add().setCode(code);
    look();
  }
  ChangedHoldings::Changes look() {
    std::vector<const XMLHeldShare*> shares;
    for (const XMLHeldShare& share : m_records.heldShares())
      shares.push_back(&share);
    return m_changed.look(shares);
  }
  XMLHeldShare& second() { return m_records.heldShares()[1]; }

  XMLSharePortfolio m_records;
  ChangedHoldings m_changed;
};

TEST_F(ChangedHoldingsTest, AllAreNewAtFirstAndAfterForgetting) {
  EXPECT_TRUE(look().none());
  m_changed.forget();
  const ChangedHoldings::Changes changes = look();
  EXPECT_EQ((std::set<String>{u"AAA.AX", u"BBB.AX", u"CCC.AX"}), changes.codes);
  EXPECT_TRUE(changes.areOtherStocks);
}

TEST_F(ChangedHoldingsTest, APurchaseChangesItsStockAlone) {
  second().parcels().add();
  const ChangedHoldings::Changes changes = look();
  EXPECT_EQ((std::set<String>{u"BBB.AX"}), changes.codes);
  EXPECT_FALSE(changes.areOtherStocks);
  EXPECT_TRUE(look().none());
}

TEST_F(ChangedHoldingsTest, AStockThatComesIsTold) {
  m_records.heldShares().add().setCode(u"DDD.AX");
  const ChangedHoldings::Changes changes = look();
  EXPECT_EQ((std::set<String>{u"DDD.AX"}), changes.codes);
  EXPECT_TRUE(changes.areOtherStocks);
}

TEST_F(ChangedHoldingsTest, AStockThatGoesIsTold) {
  m_records.heldShares().remove(second());
  const ChangedHoldings::Changes changes = look();
  EXPECT_TRUE(changes.codes.empty());
  EXPECT_TRUE(changes.areOtherStocks);
}

TEST_F(ChangedHoldingsTest, AnotherCodeIsAnotherStock) {
  second().setCode(u"EEE.AX");
  const ChangedHoldings::Changes changes = look();
  EXPECT_EQ((std::set<String>{u"EEE.AX"}), changes.codes);
  EXPECT_TRUE(changes.areOtherStocks);
}

} // namespace
} // namespace Tallymoor
