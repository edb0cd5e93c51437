#include "analysis/HoldingOnDay.h"
#include "analysis/ShareAsOfDay.h"
#include "books/BooksWithGatewayTest.h"

namespace Tallymoor {
namespace {

class HoldingOnDayTest : public BooksWithGatewayTest {
protected:
  void expectHeld(const Date& day, double number, double price, const Date& earliest) {
    const std::optional<HeldOnDay> held = heldOn(user(), u"ABC.AX", number, day);
    ASSERT_TRUE(held) << day.toString(DATE_DISPLAY_DMY).toUTF8();
    EXPECT_DOUBLE_EQ(held->cost.number, number);
    EXPECT_DOUBLE_EQ(held->cost.averagePrice(), price);
    EXPECT_EQ(held->earliest, earliest);
  }
};

TEST_F(HoldingOnDayTest, NothingIsHeldBeforeThePurchaseNorFromTheSaleOn) {
  addSale(u"ABC.AX", Date(2026, 1, 10), Date(2026, 1, 20), 100, 2, 3);
  EXPECT_FALSE(heldOn(user(), u"ABC.AX", 0, Date(2026, 1, 9)));
  expectHeld(Date(2026, 1, 10), 100, 2, Date(2026, 1, 10));
  expectHeld(Date(2026, 1, 19), 100, 2, Date(2026, 1, 10));
  EXPECT_FALSE(heldOn(user(), u"ABC.AX", 0, Date(2026, 1, 20)));
  EXPECT_FALSE(heldOn(user(), u"XYZ.AX", 0, Date(2026, 1, 15)));
}

TEST_F(HoldingOnDayTest, ParcelsHeldStillAndSoldLaterAddUp) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 12), 300, 4, 0, String()});
  user().addBuyEvent(u"ABC.AX", {Date(2026, 2, 12), 300, 4, 0, String()});
  addSale(u"ABC.AX", Date(2026, 1, 10), Date(2026, 1, 20), 100, 2, 3);
  expectHeld(Date(2026, 1, 15), 400, 3.5, Date(2026, 1, 10));
  expectHeld(Date(2026, 1, 20), 300, 4, Date(2026, 1, 12));
  expectHeld(Date(2026, 2, 12), 600, 4, Date(2026, 1, 12));
}

TEST_F(HoldingOnDayTest, SplitsCountFromTheirDay) {
  addAdjustment(user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 12), 300, 4, 0, String()}), Date(2026, 1, 16),
                2);
  addAdjustment(addSale(u"ABC.AX", Date(2026, 1, 12), Date(2026, 1, 20), 100, 4, 3), Date(2026, 1, 16), 2);
  expectHeld(Date(2026, 1, 15), 400, 4, Date(2026, 1, 12));
  expectHeld(Date(2026, 1, 16), 800, 2, Date(2026, 1, 12));
}

TEST_F(HoldingOnDayTest, ASaleWithoutItsSplitsIsReadByTheDaysNumber) {
  addAdjustment(user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 12), 300, 4, 0, String()}), Date(2026, 1, 16),
                2);
  addSale(u"ABC.AX", Date(2026, 1, 12), Date(2026, 1, 20), 200, 2, 3);
  expectHeld(Date(2026, 1, 15), 400, 4, Date(2026, 1, 12));
  expectHeld(Date(2026, 1, 16), 800, 2, Date(2026, 1, 12));
}

TEST_F(HoldingOnDayTest, SalesOfASplitShareAreHeldUntilTheirDay) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 12), 100, 9, 0, String()});
  addAdjustment(parcel(u"ABC.AX"), Date(2026, 1, 16), 3);
  user().sellShares(u"ABC.AX", {Date(2026, 1, 20), 100, 4, 0, String()}, true);
  user().sellShares(u"ABC.AX", {Date(2026, 1, 25), 100, 4, 0, String()}, true);
  expectHeld(Date(2026, 1, 15), 100, 9, Date(2026, 1, 12));
  expectHeld(Date(2026, 1, 16), 300, 3, Date(2026, 1, 12));
  const std::optional<HeldOnDay> held = heldOn(user(), u"ABC.AX", 200, Date(2026, 1, 20));
  EXPECT_NEAR(held->cost.number, 200, 1e-5);
  EXPECT_NEAR(held->cost.averagePrice(), 3, 1e-6);
}

TEST_F(HoldingOnDayTest, OnlyASaleWithoutSplitsIsReadByTheDaysNumber) {
  addSale(u"ABC.AX", Date(2026, 1, 12), Date(2026, 1, 20), 200, 2, 3);
  addAdjustment(addSale(u"ABC.AX", Date(2026, 1, 12), Date(2026, 1, 20), 100, 4, 3), Date(2026, 1, 16), 2);
  const auto share = shareWithParcelsSoldSince(user(), u"ABC.AX", 200, Date(2026, 1, 15));
  EXPECT_EQ(doubleValue(share->parcels()[0], u"NumHeld"), 100);
  EXPECT_EQ(doubleValue(share->parcels()[1], u"NumHeld"), 100);
}

TEST_F(HoldingOnDayTest, OnlyTheCurrentPriceMayBeARecordedOne) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 12), 300, 4, 0, String()});
  setPrice(u"ABC.AX", Date(2026, 2, 3), 5);
  EXPECT_DOUBLE_EQ(shownPrice(user(), u"ABC.AX", Date(2026, 2, 3)), 5);
  EXPECT_DOUBLE_EQ(shownPrice(user(), u"ABC.AX", m_today), 5); // The last known price.
  user().addBuyEvent(u"NEW.AX", {Date(2026, 1, 12), 300, 4, 0, String()});
  EXPECT_DOUBLE_EQ(shownPrice(user(), u"NEW.AX", m_today), 4);
  EXPECT_FALSE(messageOf([&] { shownPrice(user(), u"ABC.AX", Date(2026, 2, 1)); }).empty());
}

} // namespace
} // namespace Tallymoor
