#include "books/BooksTest.h"
#include "support/MessageOf.h"

namespace Tallymoor {
namespace {

class PurchasesTest : public BooksTest {};

TEST_F(PurchasesTest, BuyingRecordsParcelAndCashEntry) {
  user().buyShares(u"ABC.AX", {Date(2026, 2, 1), 100, 12.34, 30, u"first"});

  const auto& event = parcel(u"ABC.AX");
  EXPECT_EQ(textValue(event, u"BuyDate"), String(u"1/2/2026"));
  EXPECT_EQ(textValue(event, u"NumHeld"), String(u"100.00"));
  EXPECT_EQ(textValue(event, u"BuyPrice"), String(u"12.3400"));
  EXPECT_EQ(textValue(event, u"Brokerage"), String(u"30.00"));
  EXPECT_EQ(textValue(event, u"Comment"), String(u"first"));
  ASSERT_EQ(numCashEntries(), 1u);
  EXPECT_EQ(cashEntryText(0), String(u"1/2/2026 2 1264.00 BUY 100.00 of ABC.AX @ 12.3400"));
}

TEST_F(PurchasesTest, CostTakesTheBrokerageAsRecorded) {
  user().buyShares(u"ABC.AX", {m_today, 10, 1, 0.004, u""});
  EXPECT_EQ(textValue(parcel(u"ABC.AX"), u"Brokerage"), String(u"0.00"));
  EXPECT_EQ(cashEntryText(0), String(u"3/3/2026 2 10.00 BUY 10.00 of ABC.AX @ 1.0000"));
}

TEST_F(PurchasesTest, EmptyCommentLeavesTheDefault) {
  user().buyShares(u"ABC.AX", {m_today, 10, 1, 0, u""});
  ASSERT_EQ(parcel(u"ABC.AX").numSubElements(u"Comment"), 1u);
  EXPECT_EQ(textValue(parcel(u"ABC.AX"), u"Comment"), String());
}

TEST_F(PurchasesTest, ParcelsStandInTheOrderOfEntry) {
  user().buyShares(u"ABC.AX", {Date(2026, 2, 1), 1, 1, 0, u""});
  user().buyShares(u"ABC.AX", {Date(2026, 1, 1), 2, 1, 0, u""});
  ASSERT_EQ(numParcels(u"ABC.AX"), 2u);
  EXPECT_EQ(textValue(parcel(u"ABC.AX", 0), u"NumHeld"), String(u"1.00"));
  EXPECT_EQ(textValue(parcel(u"ABC.AX", 1), u"NumHeld"), String(u"2.00"));
}

TEST_F(PurchasesTest, NothingLessThanZeroIsRecorded) {
  user().buyShares(u"ABC.AX", {m_today, 10, 1, 0, u""});
  const String before = encodedPortfolio();
  const auto buying = [this](double number, double price, double brokerage) {
    return messageOf([=, this] { user().buyShares(u"XYZ.AX", {m_today, number, price, brokerage, u""}); });
  };
  EXPECT_EQ(buying(-1, 1, 1), u"The number of shares can't be less than zero.");
  EXPECT_EQ(buying(1, -1, 1), u"The share price can't be less than zero.");
  EXPECT_EQ(buying(1, 1, -1), u"The brokerage can't be less than zero.");
  EXPECT_EQ(messageOf([this] {
              user().editBuyEvent(parcel(u"ABC.AX"), {m_today, 10, -1, 0, u""}, 10, m_today);
            }),
            u"The share price can't be less than zero.");
  EXPECT_EQ(encodedPortfolio(), before);
}

TEST_F(PurchasesTest, AddBuyEventMakesNoCashEntry) {
  XMLBuyEvent& event = user().addBuyEvent(u"ABC.AX", {m_today, 5, 2, 0, u""});
  EXPECT_EQ(&event, &parcel(u"ABC.AX"));
  EXPECT_EQ(numCashEntries(), 0u);
}

TEST_F(PurchasesTest, TheFirstStockHeldDecidesTheMarket) {
  EXPECT_FALSE(user().isOfAnotherMarket(u"XYZ.L"));
  user().buyShares(u"ABC.AX", {m_today, 1, 1, 0, u""});
  user().buyShares(u"XYZ.L", {m_today, 1, 1, 0, u""});
  EXPECT_FALSE(user().isOfAnotherMarket(u"DEF.AX"));
  EXPECT_TRUE(user().isOfAnotherMarket(u"DEF.L"));
  EXPECT_TRUE(user().isOfAnotherMarket(u"XYZ"));
  EXPECT_TRUE(m_interaction.texts(Kind::Question).empty()) << "forms ask, before they close";
}

TEST_F(PurchasesTest, MarketIsWhatStandsBehindTheFirstPoint) {
  user().buyShares(u"ABC.AX", {m_today, 1, 1, 0, u""});
  EXPECT_TRUE(user().isOfAnotherMarket(u"ABC.B.AX"));
}

TEST_F(PurchasesTest, DeletingTakesParcelStockAndCashEntry) {
  user().buyShares(u"ABC.AX", {Date(2026, 2, 1), 100, 12.34, 30, u""});
  EXPECT_TRUE(user().deleteBuyEvent(u"ABC.AX", Date(2026, 2, 1), 100));
  EXPECT_EQ(user().findHeldShare(u"ABC.AX"), nullptr);
  EXPECT_EQ(numCashEntries(), 0u);
}

TEST_F(PurchasesTest, DeletingTakesTheFirstOfTwinParcels) {
  user().buyShares(u"ABC.AX", {m_today, 10, 1, 0, u"one"});
  user().buyShares(u"ABC.AX", {m_today, 10, 2, 0, u"two"});
  EXPECT_TRUE(user().deleteBuyEvent(u"ABC.AX", m_today, 10));
  ASSERT_EQ(numParcels(u"ABC.AX"), 1u);
  EXPECT_EQ(textValue(parcel(u"ABC.AX"), u"Comment"), String(u"two"));
  ASSERT_EQ(numCashEntries(), 1u);
  EXPECT_EQ(cashEntryText(0), String(u"3/3/2026 2 20.00 BUY 10.00 of ABC.AX @ 2.0000"));
}

TEST_F(PurchasesTest, DeletingMatchesTheAdjustedNumberAndTheCostAsBought) {
  user().buyShares(u"ABC.AX", {Date(2026, 1, 1), 100, 10, 30, u""});
  addAdjustment(parcel(u"ABC.AX"), Date(2026, 2, 1), 2);
  EXPECT_FALSE(user().deleteBuyEvent(u"ABC.AX", Date(2026, 1, 1), 100));
  EXPECT_EQ(numParcels(u"ABC.AX"), 1u);
  EXPECT_TRUE(user().deleteBuyEvent(u"ABC.AX", Date(2026, 1, 1), 200));
  EXPECT_EQ(numCashEntries(), 0u);
}

TEST_F(PurchasesTest, DeletingWhatIsNotThereDoesNothing) {
  EXPECT_FALSE(user().deleteBuyEvent(u"ABC.AX", m_today, 1));
  user().buyShares(u"ABC.AX", {m_today, 10, 1, 0, u""});
  const String before = encodedPortfolio();
  EXPECT_FALSE(user().deleteBuyEvent(u"ABC.AX", m_today, 11));
  EXPECT_FALSE(user().deleteBuyEvent(u"ABC.AX", Date(2026, 3, 2), 10));
  EXPECT_EQ(encodedPortfolio(), before);
}

TEST_F(PurchasesTest, DeletingWithoutItsCashEntryIsToldAndDeletesTheParcel) {
  user().addBuyEvent(u"ABC.AX", {m_today, 10, 1, 0, u""});
  user().debitCash(m_today, 10, CASH_EVENT_DEBIT, u"BUY 10.00 of XYZ.AX @ 1.0000");
  user().creditCash(m_today, 10, CASH_EVENT_CREDIT, u"BUY 10.00 of ABC.AX @ 1.0000");
  EXPECT_FALSE(user().deleteBuyEvent(u"ABC.AX", m_today, 10));
  EXPECT_EQ(numParcels(u"ABC.AX"), 0u);
  EXPECT_EQ(numCashEntries(), 2u);
}

TEST_F(PurchasesTest, DeletingMayBeGivenTheCodeOfTheRecordItself) {
  user().buyShares(u"ABC.AX", {m_today, 10, 1, 0, u""});
  const String& code = textValue(*user().findHeldShare(u"ABC.AX"), u"Code");
  EXPECT_TRUE(user().deleteBuyEvent(code, m_today, 10));
  EXPECT_EQ(numParcels(u"ABC.AX"), 0u);
}

TEST_F(PurchasesTest, EditingCarriesTheCashEntryAlong) {
  user().buyShares(u"ABC.AX", {Date(2026, 2, 1), 100, 12.34, 30, u"old"});
  EXPECT_TRUE(user().editBuyEvent(parcel(u"ABC.AX"), {Date(2026, 2, 5), 50, 10.5, 20, u"new"}, 1264,
                                  Date(2026, 2, 1)));
  const auto& event = parcel(u"ABC.AX");
  EXPECT_EQ(textValue(event, u"BuyDate"), String(u"5/2/2026"));
  EXPECT_EQ(textValue(event, u"NumHeld"), String(u"50.00"));
  EXPECT_EQ(textValue(event, u"BuyPrice"), String(u"10.5000"));
  EXPECT_EQ(textValue(event, u"Brokerage"), String(u"20.00"));
  EXPECT_EQ(textValue(event, u"Comment"), String(u"new"));
  EXPECT_EQ(cashEntryText(0), String(u"5/2/2026 2 545.00 BUY 50.00 of ABC.AX @ 10.5000"));
}

TEST_F(PurchasesTest, ACommentCannotBeClearedByAnEdit) {
  user().buyShares(u"ABC.AX", {m_today, 1, 1, 0, u"stays"});
  user().editBuyEvent(parcel(u"ABC.AX"), {m_today, 1, 1, 0, u""}, 1, m_today);
  EXPECT_EQ(textValue(parcel(u"ABC.AX"), u"Comment"), String(u"stays"));
}

TEST_F(PurchasesTest, EditingWithAnotherOldCostLeavesTheCash) {
  user().buyShares(u"ABC.AX", {m_today, 10, 1, 0, u""});
  const String before = cashEntryText(0);
  EXPECT_FALSE(user().editBuyEvent(parcel(u"ABC.AX"), {m_today, 20, 1, 0, u""}, 11, m_today));
  EXPECT_FALSE(user().editBuyEvent(parcel(u"ABC.AX"), {m_today, 20, 1, 0, u""}, 0, m_today));
  EXPECT_EQ(cashEntryText(0), before);
  EXPECT_EQ(textValue(parcel(u"ABC.AX"), u"NumHeld"), String(u"20.00"));
}

TEST_F(PurchasesTest, RemovingAStockLeavesItsCash) {
  user().buyShares(u"ABC.AX", {m_today, 10, 1, 0, u""});
  user().buyShares(u"DEF.AX", {m_today, 10, 1, 0, u""});
  user().removeHeldShare(u"ABC.AX");
  user().removeHeldShare(u"NONE.AX");
  EXPECT_EQ(user().findHeldShare(u"ABC.AX"), nullptr);
  EXPECT_NE(user().findHeldShare(u"DEF.AX"), nullptr);
  EXPECT_EQ(numCashEntries(), 2u);
}

TEST_F(PurchasesTest, LimitsAreStoredAsTexts) {
  user().buyShares(u"ABC.AX", {m_today, 10, 1, 0, u""});
  XMLHeldShare& stock = *user().findHeldShare(u"ABC.AX");
  user().setMinMax(stock, 1.23456, 20);
  user().setPortfolioMax(stock, 1000.005);
  EXPECT_EQ(textValue(stock, u"MinPrice"), String(u"1.2346"));
  EXPECT_EQ(textValue(stock, u"MaxPrice"), String(u"20.0000"));
  EXPECT_EQ(textValue(stock, u"PortfolioMax"), String::fromDouble(1000.005, 2));
}

TEST_F(PurchasesTest, EditingMayBeGivenTheCommentOfTheRecordItself) {
  const String comment = u"a comment that is too long to be kept in place";
  XMLBuyEvent& event = user().addBuyEvent(u"ABC.AX", {m_today, 10, 1, 0, comment});
  user().editBuyEvent(event, {m_today, 20, 1, 0, textValue(event, u"Comment")}, 10, m_today);
  EXPECT_EQ(textValue(event, u"Comment"), comment);
}

TEST_F(PurchasesTest, ANumberThatWasNotEditedKeepsItsDigits) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 1), 100, 10, 0, u""});
  parcel(u"ABC.AX").subElement(u"NumHeld").setValue(u"12.3456");
  user().editBuyEvent(parcel(u"ABC.AX"), {Date(2026, 1, 2), 12.3456, 11, 0, u""}, 0, Date(2026, 1, 1));
  EXPECT_EQ(textValue(parcel(u"ABC.AX"), u"NumHeld"), String(u"12.3456"));
  user().editBuyEvent(parcel(u"ABC.AX"), {Date(2026, 1, 2), 12.3457, 11, 0, u""}, 0, Date(2026, 1, 1));
  EXPECT_EQ(textValue(parcel(u"ABC.AX"), u"NumHeld"), String(u"12.35"));
}

} // namespace
} // namespace Tallymoor
