#include "engine/EngineTest.h"

namespace Tallymoor {
namespace {

class SalesTest : public EngineTest {
protected:
  String saleText(const String& code, std::size_t place) {
    const XMLElement& event = sale(code, place);
    String text;
    for (const char16_t* reference :
         {u"BuyDate", u"SellDate", u"NumHeld", u"BuyPrice", u"SellPrice", u"BuyBrokerage", u"SellBrokerage"})
      text = text + textValue(event, reference) + u' ';
    return text + textValue(event, u"Comment");
  }
};

TEST_F(SalesTest, SellingWhatIsNotHeldThrows) {
  EXPECT_EQ(messageOf([this] { user().sellShares(u"ABC.AX", m_today, 1, 1, 0, true, u""); }),
            String(u"SharePortfolioUser::sellShares - cant find held shares to sell"));
}

TEST_F(SalesTest, SellingExactlyAParcelTakesItAway) {
  user().addBuyEvent(u"ABC.AX", Date(2026, 1, 1), 100, 10, 30, u"bought");
  user().sellShares(u"ABC.AX", m_today, 100, 12, 25, true, u"sold");
  std::size_t index = 0;
  EXPECT_EQ(user().findHeldShare(u"ABC.AX", index), nullptr);
  ASSERT_EQ(numSales(u"ABC.AX"), 1u);
  EXPECT_EQ(saleText(u"ABC.AX", 0), String(u"1/1/2026 3/3/2026 100.00 10.0000 12.0000 30.00 25.00 sold"));
  ASSERT_EQ(numCashEntries(), 1u);
  EXPECT_EQ(cashEntryText(0), String(u"3/3/2026 1 1175.00 SELL 100.00 of ABC.AX @ 12.0000"));
}

TEST_F(SalesTest, SellingOneShareLessLeavesOneWithTheWholeBrokerage) {
  user().addBuyEvent(u"ABC.AX", Date(2026, 1, 1), 100, 10, 30, u"");
  user().sellShares(u"ABC.AX", m_today, 99, 12, 25, true, u"");
  EXPECT_EQ(saleText(u"ABC.AX", 0), String(u"1/1/2026 3/3/2026 99.00 10.0000 12.0000 0.00 25.00 "));
  ASSERT_EQ(numParcels(u"ABC.AX"), 1u);
  EXPECT_EQ(textValue(parcel(u"ABC.AX"), u"NumHeld"), String(u"1.00"));
  EXPECT_EQ(textValue(parcel(u"ABC.AX"), u"Brokerage"), String(u"30.00"));
}

TEST_F(SalesTest, ThreeParcelsMakeThreeSalesAndOneBrokerage) {
  user().addBuyEvent(u"ABC.AX", Date(2026, 1, 1), 10, 1, 1, u"");
  user().addBuyEvent(u"ABC.AX", Date(2026, 1, 2), 20, 2, 2, u"");
  user().addBuyEvent(u"ABC.AX", Date(2026, 1, 3), 30, 3, 3, u"");
  user().sellShares(u"ABC.AX", m_today, 50, 5, 25, true, u"");
  ASSERT_EQ(numSales(u"ABC.AX"), 3u);
  EXPECT_EQ(saleText(u"ABC.AX", 0), String(u"1/1/2026 3/3/2026 10.00 1.0000 5.0000 1.00 25.00 "));
  EXPECT_EQ(saleText(u"ABC.AX", 1), String(u"2/1/2026 3/3/2026 20.00 2.0000 5.0000 2.00 0.00 "));
  EXPECT_EQ(saleText(u"ABC.AX", 2), String(u"3/1/2026 3/3/2026 20.00 3.0000 5.0000 0.00 0.00 "));
  ASSERT_EQ(numCashEntries(), 3u);
  EXPECT_EQ(cashEntryText(0), String(u"3/3/2026 1 25.00 SELL 10.00 of ABC.AX @ 5.0000"));
  EXPECT_EQ(cashEntryText(1), String(u"3/3/2026 1 100.00 SELL 20.00 of ABC.AX @ 5.0000"));
  EXPECT_EQ(cashEntryText(2), String(u"3/3/2026 1 100.00 SELL 20.00 of ABC.AX @ 5.0000"));
  EXPECT_EQ(textValue(parcel(u"ABC.AX"), u"NumHeld"), String(u"10.00"));
}

TEST_F(SalesTest, LastInFirstOutGoesByEntryAndNotByDate) {
  user().addBuyEvent(u"ABC.AX", Date(2026, 2, 1), 10, 1, 0, u"");
  user().addBuyEvent(u"ABC.AX", Date(2025, 1, 1), 10, 2, 0, u"");
  user().sellShares(u"ABC.AX", m_today, 10, 5, 0, false, u"");
  EXPECT_EQ(textValue(sale(u"ABC.AX"), u"BuyDate"), String(u"1/1/2025"));
  ASSERT_EQ(numParcels(u"ABC.AX"), 1u);
  EXPECT_EQ(textValue(parcel(u"ABC.AX"), u"BuyDate"), String(u"1/2/2026"));
}

TEST_F(SalesTest, WhatTheParcelsCantSupplyIsDropped) {
  user().addBuyEvent(u"ABC.AX", Date(2026, 1, 1), 10, 1, 0, u"");
  user().addBuyEvent(u"ABC.AX", Date(2026, 1, 2), 10, 1, 0, u"");
  user().sellShares(u"ABC.AX", m_today, 1000, 5, 0, true, u"");
  EXPECT_EQ(numSales(u"ABC.AX"), 2u);
  EXPECT_EQ(numParcels(u"ABC.AX"), 0u);
}

TEST_F(SalesTest, SellingNothingRecordsNothing) {
  user().addBuyEvent(u"ABC.AX", Date(2026, 1, 1), 10, 1, 0, u"");
  user().sellShares(u"ABC.AX", m_today, 0, 5, 0, true, u"");
  EXPECT_EQ(numSales(u"ABC.AX"), 0u);
  EXPECT_EQ(numCashEntries(), 0u);
}

TEST_F(SalesTest, ARestThatWouldReadAsNothingGoesWithTheParcel) {
  user().addBuyEvent(u"ABC.AX", Date(2026, 1, 1), 100, 10, 30, u"");
  addAdjustment(parcel(u"ABC.AX"), Date(2026, 2, 1), -3); // 33.333... shares
  user().addBuyEvent(u"ABC.AX", Date(2026, 2, 2), 5, 10, 0, u"");
  user().sellShares(u"ABC.AX", m_today, 33.33, 12, 0, true, u"");
  ASSERT_EQ(numSales(u"ABC.AX"), 1u);
  EXPECT_EQ(saleText(u"ABC.AX", 0), String(u"1/1/2026 3/3/2026 33.33 30.0000 12.0000 30.00 0.00 "));
  ASSERT_EQ(numParcels(u"ABC.AX"), 1u);
  EXPECT_EQ(textValue(parcel(u"ABC.AX"), u"NumHeld"), String(u"5.00"));
}

TEST_F(SalesTest, APartlySoldSplitParcelIsAdjustedAgain) {
  user().addBuyEvent(u"ABC.AX", Date(2026, 1, 1), 100, 10, 30, u"");
  addAdjustment(parcel(u"ABC.AX"), Date(2026, 2, 1), 2); // 200 shares at 5
  user().sellShares(u"ABC.AX", m_today, 50, 6, 0, true, u"");
  EXPECT_EQ(saleText(u"ABC.AX", 0), String(u"1/1/2026 3/3/2026 50.00 5.0000 6.0000 0.00 0.00 "));
  EXPECT_EQ(sale(u"ABC.AX").numSubElements(u"Adjustments"), 0u);
  // The rest of 150 is kept in shares of today beside the adjustment, which counts once more.
  EXPECT_EQ(textValue(parcel(u"ABC.AX"), u"NumHeld"), String(u"150.00"));
  EXPECT_EQ(textValue(parcel(u"ABC.AX"), u"BuyPrice"), String(u"10.0000"));
  EXPECT_EQ(parcel(u"ABC.AX").numSubElements(u"Adjustments"), 1u);
  EXPECT_DOUBLE_EQ(user().numHeld(u"ABC.AX"), 300);
}

TEST_F(SalesTest, AdjustmentsAfterTheSaleDateDontCount) {
  user().addBuyEvent(u"ABC.AX", Date(2026, 1, 1), 100, 10, 30, u"");
  addAdjustment(parcel(u"ABC.AX"), Date(2026, 2, 1), 2);
  user().sellShares(u"ABC.AX", Date(2026, 1, 31), 100, 6, 0, true, u"");
  EXPECT_EQ(saleText(u"ABC.AX", 0), String(u"1/1/2026 31/1/2026 100.00 10.0000 6.0000 30.00 0.00 "));
  EXPECT_EQ(numParcels(u"ABC.AX"), 0u);
}

TEST_F(SalesTest, SellingMayBeGivenTheCodeOfTheRecordItself) {
  user().addBuyEvent(u"ABC.AX", Date(2026, 1, 1), 10, 1, 0, u"");
  std::size_t index = 0;
  const String& code = textValue(*user().findHeldShare(u"ABC.AX", index), u"Code");
  user().sellShares(code, m_today, 10, 5, 0, true, u"");
  EXPECT_EQ(cashEntryText(0), String(u"3/3/2026 1 50.00 SELL 10.00 of ABC.AX @ 5.0000"));
}

TEST_F(SalesTest, DeletingASaleDoesNotRestoreTheParcel) {
  user().buyShares(u"ABC.AX", Date(2026, 1, 1), 10, 1, 3, u"");
  user().creditCash(Date(2026, 1, 2), 500, CASH_EVENT_DEPOSIT, u"DEPOSIT between");
  user().sellShares(u"ABC.AX", m_today, 10, 5, 7, true, u"");
  EXPECT_TRUE(user().deleteSellEvent(u"ABC.AX", m_today, 10));
  std::size_t index = 0;
  EXPECT_EQ(user().findSoldShare(u"ABC.AX", index), nullptr);
  EXPECT_EQ(numParcels(u"ABC.AX"), 0u);
  ASSERT_EQ(numCashEntries(), 1u);
  EXPECT_EQ(cashEntryText(0), String(u"2/1/2026 4 500.00 DEPOSIT between"));
}

TEST_F(SalesTest, DeletingASaleEnteredBeforeItsPurchaseTakesBothEntriesToo) {
  user().creditCash(m_today, 50, CASH_EVENT_CREDIT, u"SELL 10.00 of ABC.AX @ 5.0000");
  user().creditCash(m_today, 1, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
  user().debitCash(Date(2026, 1, 1), 10, CASH_EVENT_DEBIT, u"BUY 10.00 of ABC.AX @ 1.0000");
  addSale(u"ABC.AX", Date(2026, 1, 1), m_today, 10, 1, 5);
  EXPECT_TRUE(user().deleteSellEvent(u"ABC.AX", m_today, 10));
  ASSERT_EQ(numCashEntries(), 1u);
  EXPECT_EQ(cashEntryText(0), String(u"3/3/2026 4 1.00 DEPOSIT "));
}

TEST_F(SalesTest, DeletingWithOneEntryFoundRemovesThatOne) {
  user().addBuyEvent(u"ABC.AX", Date(2026, 1, 1), 10, 1, 3, u"");
  user().sellShares(u"ABC.AX", m_today, 10, 5, 7, true, u"");
  EXPECT_FALSE(user().deleteSellEvent(u"ABC.AX", m_today, 10));
  EXPECT_EQ(numSales(u"ABC.AX"), 0u);
  EXPECT_EQ(numCashEntries(), 0u);
}

TEST_F(SalesTest, DeletingWhatIsNotThereDoesNothing) {
  EXPECT_FALSE(user().deleteSellEvent(u"ABC.AX", m_today, 10));
  addSale(u"ABC.AX", Date(2026, 1, 1), m_today, 10, 1, 5);
  const String before = encodedPortfolio();
  EXPECT_FALSE(user().deleteSellEvent(u"ABC.AX", m_today, 9.99));
  EXPECT_FALSE(user().deleteSellEvent(u"ABC.AX", Date(2026, 1, 1), 10));
  EXPECT_EQ(encodedPortfolio(), before);
}

TEST_F(SalesTest, DeletingOneOfTwoSalesKeepsTheStock) {
  addSale(u"ABC.AX", Date(2026, 1, 1), m_today, 10, 1, 5);
  addSale(u"ABC.AX", Date(2026, 1, 1), m_today, 20, 1, 5);
  user().deleteSellEvent(u"ABC.AX", m_today, 20);
  ASSERT_EQ(numSales(u"ABC.AX"), 1u);
  EXPECT_EQ(textValue(sale(u"ABC.AX"), u"NumHeld"), String(u"10.00"));
}

TEST_F(SalesTest, EditingCarriesBothCashEntriesAlong) {
  user().buyShares(u"ABC.AX", Date(2026, 1, 1), 10, 1, 3, u"");
  user().sellShares(u"ABC.AX", m_today, 10, 5, 7, true, u"");
  EXPECT_TRUE(
      user().editSellEvent(sale(u"ABC.AX"), Date(2026, 1, 5), Date(2026, 3, 2), 20, 2, 6, 4, 8, u"edited"));
  EXPECT_EQ(saleText(u"ABC.AX", 0), String(u"5/1/2026 2/3/2026 20.00 2.0000 6.0000 4.00 8.00 edited"));
  EXPECT_EQ(cashEntryText(0), String(u"5/1/2026 2 44.00 BUY 20.00 of ABC.AX @ 2.0000"));
  EXPECT_EQ(cashEntryText(1), String(u"2/3/2026 1 112.00 SELL 20.00 of ABC.AX @ 6.0000"));
}

TEST_F(SalesTest, EditingWithOneEntryFoundCarriesThatOne) {
  user().addBuyEvent(u"ABC.AX", Date(2026, 1, 1), 10, 1, 3, u"");
  user().sellShares(u"ABC.AX", m_today, 10, 5, 0, true, u"why");
  EXPECT_FALSE(user().editSellEvent(sale(u"ABC.AX"), Date(2026, 1, 1), m_today, 10, 1, 6, 3, 0, u""));
  EXPECT_EQ(cashEntryText(0), String(u"3/3/2026 1 60.00 SELL 10.00 of ABC.AX @ 6.0000"));
  EXPECT_EQ(textValue(sale(u"ABC.AX"), u"Comment"), String(u"why"));
}

TEST_F(SalesTest, RemovingASoldStockLeavesItsCash) {
  user().addBuyEvent(u"ABC.AX", Date(2026, 1, 1), 10, 1, 0, u"");
  user().sellShares(u"ABC.AX", m_today, 10, 5, 0, true, u"");
  user().removeSoldShare(u"ABC.AX");
  user().removeSoldShare(u"NONE.AX");
  EXPECT_EQ(numSales(u"ABC.AX"), 0u);
  EXPECT_EQ(numCashEntries(), 1u);
}

} // namespace
} // namespace Tallymoor
