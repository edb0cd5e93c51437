#include "analysis/SaleFigures.h"
#include "books/BooksTest.h"
#include "books/CashBalance.h"
#include "books/SaleDeletion.h"
#include "support/MessageOf.h"

namespace Tallymoor {
namespace {

class SalesTest : public BooksTest {
protected:
  String saleText(const String& code, std::size_t place) {
    const auto& event = sale(code, place);
    String text;
    for (const char16_t* reference :
         {u"BuyDate", u"SellDate", u"NumHeld", u"BuyPrice", u"SellPrice", u"BuyBrokerage", u"SellBrokerage"})
      text = text + textValue(event, reference) + u' ';
    return text + textValue(event, u"Comment");
  }
};

TEST_F(SalesTest, SellingWhatIsNotHeldThrows) {
  EXPECT_EQ(messageOf([this] {
              user().sellShares(u"ABC.AX", {m_today, 1, 1, 0, u""}, true);
            }),
            String(u"SharePortfolioUser::sellShares - cant find held shares to sell"));
}

TEST_F(SalesTest, NothingLessThanZeroIsRecorded) {
  user().buyShares(u"ABC.AX", {m_today, 10, 1, 0, u""});
  const String before = encodedPortfolio();
  const auto selling = [this](double number, double price, double brokerage) {
    return messageOf([=, this] {
      user().sellShares(u"ABC.AX", {m_today, number, price, brokerage, u""}, true);
    });
  };
  EXPECT_EQ(selling(-1, 1, 1), u"The number of shares can't be less than zero.");
  EXPECT_EQ(selling(1, -5, 1), u"The share price can't be less than zero.");
  EXPECT_EQ(selling(1, 1, -1), u"The brokerage can't be less than zero.");
  EXPECT_EQ(encodedPortfolio(), before);
}

TEST_F(SalesTest, AnEditToLessThanZeroChangesNothing) {
  user().buyShares(u"ABC.AX", {m_today, 10, 1, 0, u""});
  user().sellShares(u"ABC.AX", {m_today, 10, 2, 0, u""}, true);
  const String before = encodedPortfolio();
  auto& sale = user().findSoldShare(u"ABC.AX")->sales()[0];
  const auto editing = [&](double number, double buyPrice, double sellPrice, double brokerage) {
    return messageOf([&] {
      user().editSellEvent(sale, {m_today, m_today, number, buyPrice, sellPrice, 0, brokerage, u""});
    });
  };
  EXPECT_EQ(editing(-1, 1, 1, 1), u"The number of shares can't be less than zero.");
  EXPECT_EQ(editing(1, -1, 1, 1), u"The share price can't be less than zero.");
  EXPECT_EQ(editing(1, 1, -1, 1), u"The share price can't be less than zero.");
  EXPECT_EQ(editing(1, 1, 1, -1), u"The brokerage can't be less than zero.");
  EXPECT_EQ(encodedPortfolio(), before);
}

TEST_F(SalesTest, SellingExactlyAParcelTakesItAway) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 1), 100, 10, 30, u"bought"});
  user().sellShares(u"ABC.AX", {m_today, 100, 12, 25, u"sold"}, true);
  EXPECT_EQ(user().findHeldShare(u"ABC.AX"), nullptr);
  ASSERT_EQ(numSales(u"ABC.AX"), 1u);
  EXPECT_EQ(saleText(u"ABC.AX", 0), String(u"1/1/2026 3/3/2026 100.00 10.0000 12.0000 30.00 25.00 sold"));
  ASSERT_EQ(numCashEntries(), 1u);
  EXPECT_EQ(cashEntryText(0), String(u"3/3/2026 1 1175.00 SELL 100.00 of ABC.AX @ 12.0000"));
}

TEST_F(SalesTest, SellingOneShareLessLeavesOneWithTheWholeBrokerage) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 1), 100, 10, 30, u""});
  user().sellShares(u"ABC.AX", {m_today, 99, 12, 25, u""}, true);
  EXPECT_EQ(saleText(u"ABC.AX", 0), String(u"1/1/2026 3/3/2026 99.00 10.0000 12.0000 0.00 25.00 "));
  ASSERT_EQ(numParcels(u"ABC.AX"), 1u);
  EXPECT_EQ(textValue(parcel(u"ABC.AX"), u"NumHeld"), String(u"1.00"));
  EXPECT_EQ(textValue(parcel(u"ABC.AX"), u"Brokerage"), String(u"30.00"));
}

TEST_F(SalesTest, ThreeParcelsMakeThreeSalesAndOneBrokerage) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 1), 10, 1, 1, u""});
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 2), 20, 2, 2, u""});
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 3), 30, 3, 3, u""});
  user().sellShares(u"ABC.AX", {m_today, 50, 5, 25, u""}, true);
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
  user().addBuyEvent(u"ABC.AX", {Date(2026, 2, 1), 10, 1, 0, u""});
  user().addBuyEvent(u"ABC.AX", {Date(2025, 1, 1), 10, 2, 0, u""});
  user().sellShares(u"ABC.AX", {m_today, 10, 5, 0, u""}, false);
  EXPECT_EQ(textValue(sale(u"ABC.AX"), u"BuyDate"), String(u"1/1/2025"));
  ASSERT_EQ(numParcels(u"ABC.AX"), 1u);
  EXPECT_EQ(textValue(parcel(u"ABC.AX"), u"BuyDate"), String(u"1/2/2026"));
}

TEST_F(SalesTest, WhatTheParcelsCantSupplyIsDropped) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 1), 10, 1, 0, u""});
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 2), 10, 1, 0, u""});
  user().sellShares(u"ABC.AX", {m_today, 1000, 5, 0, u""}, true);
  EXPECT_EQ(numSales(u"ABC.AX"), 2u);
  EXPECT_EQ(numParcels(u"ABC.AX"), 0u);
}

TEST_F(SalesTest, SellingNothingRecordsNothing) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 1), 10, 1, 0, u""});
  user().sellShares(u"ABC.AX", {m_today, 0, 5, 0, u""}, true);
  EXPECT_EQ(numSales(u"ABC.AX"), 0u);
  EXPECT_EQ(numCashEntries(), 0u);
}

TEST_F(SalesTest, ARestThatWouldReadAsNothingGoesWithTheParcel) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 1), 100, 10, 30, u""});
  addAdjustment(parcel(u"ABC.AX"), Date(2026, 2, 1), -3); // 33.333... shares.
  user().addBuyEvent(u"ABC.AX", {Date(2026, 2, 2), 5, 10, 0, u""});
  user().sellShares(u"ABC.AX", {m_today, 33.33, 12, 0, u""}, true);
  ASSERT_EQ(numSales(u"ABC.AX"), 1u);
  EXPECT_EQ(saleText(u"ABC.AX", 0), String(u"1/1/2026 3/3/2026 100.00 10.0000 12.0000 30.00 0.00 "));
  ASSERT_EQ(numParcels(u"ABC.AX"), 1u);
  EXPECT_EQ(textValue(parcel(u"ABC.AX"), u"NumHeld"), String(u"5.00"));
  EXPECT_FALSE(user().deleteSellEvent(u"ABC.AX", m_today, 100 / 3.0)) << "there is no cost";
  EXPECT_EQ(numCashEntries(), 0u) << "what the sale brought in is found by the number that it was made of";
}

TEST_F(SalesTest, WhatASaleBringsInIsToldBeforehandToTheCent) {
  EXPECT_DOUBLE_EQ(user().proceedsOfSale(u"ABC.AX", {m_today, 10, 2, 3, String()}, true), 17)
      << "nothing is held";
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 1), 100, 10, 30, u""});
  addAdjustment(parcel(u"ABC.AX"), Date(2026, 2, 1), -3); // 33.333... shares.
  for (int day = 2; day <= 5; ++day)
    user().addBuyEvent(u"ABC.AX", {Date(2026, 2, day), 0.5, 10, 0, u""});
  EXPECT_DOUBLE_EQ(user().proceedsOfSale(u"ABC.AX", {m_today, 0, 31, 5, String()}, true), -5);
  const double prices[] = {31, 0.07, 12.3333};
  for (const bool firstInFirstOut : {true, false})
    for (const double number : {33.33, 33.3333, 10.0, 1.25, 34.58, 99.0})
      for (const double price : prices) {
        SCOPED_TRACE(number);
        SCOPED_TRACE(price);
        XMLSharePortfolio copy;
        static_cast<XMLElement&>(copy) = user().portfolio();
        SharePortfolioUser seller(copy, m_prices);
        const double told =
            seller.proceedsOfSale(u"ABC.AX", {m_today, number, price, 5, String()}, firstInFirstOut);
        seller.sellShares(u"ABC.AX", {m_today, number, price, 5, u""}, firstInFirstOut);
        const double lacking = number > 50 ? (number - 33.0 - 1.0 / 3 - 2) * price : 0.0;
        EXPECT_NEAR(told, cashBalance(copy, m_today) + lacking, 1e-6);
      }
}

TEST_F(SalesTest, APartlySoldSplitParcelStaysInSharesOfItsPurchase) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 1), 100, 10, 30, u""});
  addAdjustment(parcel(u"ABC.AX"), Date(2026, 2, 1), 2); // 200 shares at 5.
  user().sellShares(u"ABC.AX", {m_today, 50, 6, 0, u""}, true);
  EXPECT_EQ(saleText(u"ABC.AX", 0), String(u"1/1/2026 3/3/2026 25.00 10.0000 6.0000 0.00 0.00 "));
  EXPECT_EQ(sale(u"ABC.AX").numSubElements(u"Adjustments"), 1u);
  EXPECT_EQ(textValue(parcel(u"ABC.AX"), u"NumHeld"), String(u"75.00"));
  EXPECT_EQ(textValue(parcel(u"ABC.AX"), u"BuyPrice"), String(u"10.0000"));
  EXPECT_EQ(parcel(u"ABC.AX").numSubElements(u"Adjustments"), 1u);
  EXPECT_DOUBLE_EQ(user().numHeld(u"ABC.AX"), 150);
  const SaleFigures figures(sale(u"ABC.AX"));
  EXPECT_DOUBLE_EQ(figures.number(), 50);
  EXPECT_DOUBLE_EQ(figures.buyPrice(), 5);
  EXPECT_DOUBLE_EQ(figures.grossSale(), 300);
}

TEST_F(SalesTest, ANumberThatDoesNotDivideKeepsSixDecimalsAndReadsAsItWasTyped) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 1), 100, 10, 30, u""});
  addAdjustment(parcel(u"ABC.AX"), Date(2026, 2, 1), 3);
  user().sellShares(u"ABC.AX", {m_today, 100, 6, 0, u""}, true);
  EXPECT_EQ(textValue(sale(u"ABC.AX"), u"NumHeld"), String(u"33.333333"));
  EXPECT_EQ(textValue(parcel(u"ABC.AX"), u"NumHeld"), String(u"66.666667"));
  EXPECT_DOUBLE_EQ(SaleFigures(sale(u"ABC.AX")).number(), 100);
  EXPECT_FALSE(user().deleteSellEvent(u"ABC.AX", m_today, 100)) << "there is no cost";
  EXPECT_EQ(numCashEntries(), 0u);
}

TEST_F(SalesTest, ARestThatCouldNotBeRecordedGoesWithTheParcel) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 1), 1, 10, 0, u""});
  addAdjustment(parcel(u"ABC.AX"), Date(2026, 2, 1), 1000000);
  user().sellShares(u"ABC.AX", {m_today, 999999.98, 6, 0, u""}, true);
  EXPECT_EQ(numParcels(u"ABC.AX"), 0u);
  EXPECT_EQ(textValue(sale(u"ABC.AX"), u"NumHeld"), String(u"1.00"));
}

TEST_F(SalesTest, TheRestOfADividedPurchaseIsSoldAtTheNumberThatWasTyped) {
  user().buyShares(u"ABC.AX", {Date(2026, 1, 1), 100, 27000, 0, u""});
  user().recordAdjustment(u"ABC.AX", Date(2026, 2, 1), 3, false);
  user().sellShares(u"ABC.AX", {m_today, 100, 9000, 0, u""}, true);
  EXPECT_DOUBLE_EQ(user().proceedsOfSale(u"ABC.AX", {m_today, 200, 9000, 0, String()}, true), 1'800'000.0);
  user().sellShares(u"ABC.AX", {m_today, 200, 9000, 0, u""}, true);
  EXPECT_EQ(cashEntryText(2), String(u"3/3/2026 1 1800000.00 SELL 200.00 of ABC.AX @ 9000.0000"));
  EXPECT_TRUE(user().undoSale(sale(u"ABC.AX", 1))) << "its cash entry is found again";
}

TEST_F(SalesTest, ASaleOfTheWholeKnowsItsSplits) {
  user().buyShares(u"ABC.AX", {Date(2026, 1, 1), 100, 10, 30, u""});
  user().recordAdjustment(u"ABC.AX", Date(2026, 2, 1), 2, false);
  user().sellShares(u"ABC.AX", {m_today, 200, 6, 5, u""}, false);
  EXPECT_TRUE(user().isAdjusted(u"ABC.AX", Date(2026, 2, 1)));
  EXPECT_TRUE(user().hasSoldAdjustment(u"ABC.AX", Date(2026, 2, 1)));
  EXPECT_EQ(cashEntryText(1), String(u"3/3/2026 1 1195.00 SELL 200.00 of ABC.AX @ 6.0000"));
}

// A sale that an earlier version recorded in units of its own day, before it asked for the split again.
TEST_F(SalesTest, TheCashTellsThatAnOldSaleIsInSharesOfItsDay) {
  user().debitCash(Date(2026, 1, 1), 1000, CASH_EVENT_DEBIT, u"BUY 100.00 of ABC.AX @ 10.0000");
  user().creditCash(m_today, 1200, CASH_EVENT_CREDIT, u"SELL 200.00 of ABC.AX @ 6.0000");
  XMLSellEvent& old = addSale(u"ABC.AX", Date(2026, 1, 1), m_today, 200, 5, 6);
  EXPECT_DOUBLE_EQ(SaleFigures(old).number(), 200);
  addAdjustment(old, Date(2026, 2, 1), 2);
  EXPECT_DOUBLE_EQ(SaleFigures(old).number(), 200);
  EXPECT_DOUBLE_EQ(SaleFigures(old).buyPrice(), 5);
  EXPECT_TRUE(user().editSellEvent(old, {Date(2026, 1, 1), m_today, 150, 5, 7, 0, 0, u""}));
  EXPECT_DOUBLE_EQ(SaleFigures(old).number(), 150);
  EXPECT_EQ(cashEntryText(1), String(u"3/3/2026 1 1050.00 SELL 150.00 of ABC.AX @ 7.0000"));
  EXPECT_TRUE(user().deleteSellEvent(u"ABC.AX", m_today, 150));
}

TEST_F(SalesTest, AnOldSaleThatIsAskedForItsSplitAgainIsPutIntoTheTermsOfItsPurchase) {
  user().debitCash(Date(2026, 1, 1), 1000.03, CASH_EVENT_DEBIT, u"BUY 99.00 of ABC.AX @ 10.1010");
  user().creditCash(m_today, 1776, CASH_EVENT_CREDIT, u"SELL 297.00 of ABC.AX @ 6.0000");
  XMLSellEvent& old = addSale(u"ABC.AX", Date(2026, 1, 1), m_today, 297, 3.3670, 6);
  old.subElement(u"SellBrokerage").setValue(u"6.00");
  const String cash = cashEntryText(1);
  user().recordAdjustment(u"ABC.AX", Date(2026, 2, 1), 3, false);
  EXPECT_EQ(textValue(old, u"NumHeld") + u" at " + textValue(old, u"BuyPrice"), String(u"99.00 at 10.1010"));
  EXPECT_DOUBLE_EQ(SaleFigures(old).number(), 297);
  EXPECT_EQ(cashEntryText(1), cash);
  EXPECT_DOUBLE_EQ(user().adjustedSellEvent(old, Date(2026, 1, 31)).number, 99);
  EXPECT_DOUBLE_EQ(user().adjustedSellEvent(old, Date(2026, 2, 1)).number, 297);
  user().mendOldSales();
  EXPECT_DOUBLE_EQ(SaleFigures(old).number(), 297) << "once";
}

TEST_F(SalesTest, ASaleWhosePurchaseSaysNothingOfASplitStaysAsItIs) {
  XMLSellEvent& event = addSale(u"ABC.AX", Date(2026, 1, 1), m_today, 200, 5, 6);
  addAdjustment(event, Date(2026, 2, 1), 2);
  user().creditCash(m_today, 1200, CASH_EVENT_CREDIT, u"SELL 200.00 of ABC.AX @ 6.0000");
  const auto staysWith = [&](const String& purchase) {
    user().debitCash(Date(2026, 1, 1), 1000, CASH_EVENT_DEBIT, purchase);
    user().mendOldSales();
    EXPECT_EQ(textValue(event, u"NumHeld"), String(u"200.00")) << purchase.toUTF8();
  };
  staysWith(u"rent, 5 of 12 @ 10.0000");
  staysWith(u"BUY 100.00 of DEF.AX @ 10.0000");
  staysWith(u"BUY 100.00 of ABC.AX @ 11.0000");
  staysWith(u"BUY 200.00 of ABC.AX @ 5.0000");
  staysWith(u"BUY 100.00 of ABC.AX @ 10.0000"); // Either can be the one.
}

TEST_F(SalesTest, ThePurchaseAloneDoesNotMakeASaleAnOldOne) {
  XMLSellEvent& event = addSale(u"ABC.AX", Date(2026, 1, 1), m_today, 200, 5, 6);
  addAdjustment(event, Date(2026, 2, 1), 2);
  user().debitCash(Date(2026, 1, 1), 1000, CASH_EVENT_DEBIT, u"BUY 100.00 of ABC.AX @ 10.0000");
  user().mendOldSales();
  EXPECT_EQ(textValue(event, u"NumHeld"), String(u"200.00"));
}

TEST_F(SalesTest, WithoutItsCashASaleIsReadByItsSplits) {
  XMLSellEvent& event = addSale(u"ABC.AX", Date(2026, 1, 1), m_today, 100, 10, 6);
  addAdjustment(event, Date(2026, 2, 1), 2);
  EXPECT_DOUBLE_EQ(SaleFigures(event).number(), 200);
  EXPECT_DOUBLE_EQ(SaleFigures(event).buyPrice(), 5);
}

TEST_F(SalesTest, ASaleThatTellsOtherSplitsIsNoPartOfAParcel) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 1), 100, 10, 0, u""});
  user().recordAdjustment(u"ABC.AX", Date(2026, 2, 1), 2, false);
  user().undoSale(addSale(u"ABC.AX", Date(2026, 1, 1), m_today, 40, 10, 6));
  ASSERT_EQ(numParcels(u"ABC.AX"), 2u);
  EXPECT_DOUBLE_EQ(user().numHeld(u"ABC.AX"), 240);
}

TEST_F(SalesTest, AReinvestmentThatWasSoldIsFoundAgainByItsDividend) {
  user().receiveDividend({u"ABC.AX", Date(2026, 1, 5), 100, 0.5, 0, 10, 5, u"", 0});
  user().sellShares(u"ABC.AX", {m_today, 10, 6, 0, u""}, true);
  const String comment = u"DIVIDEND ABC.AX @ 0.500000 x 100.00";
  user().undoSale(sale(u"ABC.AX"));
  EXPECT_EQ(textValue(parcel(u"ABC.AX"), u"Comment"), comment);
}

TEST_F(SalesTest, AReinvestmentThatWasSoldFollowsItsDividendAsItIsNow) {
  user().receiveDividend({u"ABC.AX", Date(2026, 1, 5), 100, 0.5, 0, 10, 5, u"", 0});
  user().sellShares(u"ABC.AX", {m_today, 10, 6, 0, u""}, true);
  XMLDividendEvent& dividend = m_portfolio.dividends()[0];
  user().editDividend(dividend, {u"ABC.AX", Date(2026, 1, 5), 90, 0.6, 0, 10, 5, u"", 0}, 10, 5, 0,
                      Date(2026, 1, 5));
  user().undoSale(sale(u"ABC.AX"));
  EXPECT_EQ(textValue(parcel(u"ABC.AX"), u"Comment"), u"DIVIDEND ABC.AX @ 0.600000 x 90.00");
}

TEST_F(SalesTest, AnUndoneSaleLeavesTheRecordsAsTheyWereBeforeIt) {
  user().buyShares(u"ABC.AX", {Date(2026, 1, 1), 100, 10, 30, u"why"});
  user().buyShares(u"ABC.AX", {Date(2026, 1, 2), 50, 11, 31, u""});
  user().recordAdjustment(u"ABC.AX", Date(2026, 2, 1), 3, false);
  const String before = encodedPortfolio();
  user().sellShares(u"ABC.AX", {m_today, 100, 6, 5, u"sold"}, true);
  EXPECT_NE(encodedPortfolio(), before);
  EXPECT_TRUE(user().undoSale(sale(u"ABC.AX")));
  EXPECT_EQ(encodedPortfolio(), before);
}

TEST_F(SalesTest, DeletionTellsBeforehandWhatGoes) {
  user().buyShares(u"ABC.AX", {Date(2026, 1, 1), 100, 10, 30, u""});
  user().recordAdjustment(u"ABC.AX", Date(2026, 2, 1), 2, false);
  user().sellShares(u"ABC.AX", {m_today, 50, 6, 5, u""}, true);
  const SaleDeletion part(sale(u"ABC.AX"));
  EXPECT_DOUBLE_EQ(part.number, 50);
  EXPECT_DOUBLE_EQ(part.buyPrice, 5);
  EXPECT_DOUBLE_EQ(part.costValue, 250);
  ASSERT_TRUE(part.proceeds);
  EXPECT_EQ(part.proceeds->description, String(u"SELL 50.00 of ABC.AX @ 6.0000"));
  EXPECT_DOUBLE_EQ(part.proceeds->value, 295);
  EXPECT_FALSE(part.cost);
  EXPECT_EQ(part.rest, &parcel(u"ABC.AX"));
  user().undoSale(sale(u"ABC.AX"));
  user().sellShares(u"ABC.AX", {m_today, 200, 6, 5, u""}, true);
  const SaleDeletion whole(sale(u"ABC.AX"));
  ASSERT_TRUE(whole.cost);
  EXPECT_EQ(whole.cost->description, String(u"BUY 100.00 of ABC.AX @ 10.0000"));
  EXPECT_EQ(whole.rest, nullptr);
}

TEST_F(SalesTest, AdjustmentsAfterTheSaleDateDontCount) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 1), 100, 10, 30, u""});
  addAdjustment(parcel(u"ABC.AX"), Date(2026, 2, 1), 2);
  user().sellShares(u"ABC.AX", {Date(2026, 1, 31), 100, 6, 0, u""}, true);
  EXPECT_EQ(saleText(u"ABC.AX", 0), String(u"1/1/2026 31/1/2026 100.00 10.0000 6.0000 30.00 0.00 "));
  EXPECT_EQ(numParcels(u"ABC.AX"), 0u);
}

TEST_F(SalesTest, SellingMayBeGivenTheCodeOfTheRecordItself) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 1), 10, 1, 0, u""});
  const String& code = textValue(*user().findHeldShare(u"ABC.AX"), u"Code");
  user().sellShares(code, {m_today, 10, 5, 0, u""}, true);
  EXPECT_EQ(cashEntryText(0), String(u"3/3/2026 1 50.00 SELL 10.00 of ABC.AX @ 5.0000"));
}

TEST_F(SalesTest, DeletingASaleDoesNotRestoreTheParcel) {
  user().buyShares(u"ABC.AX", {Date(2026, 1, 1), 10, 1, 3, u""});
  user().creditCash(Date(2026, 1, 2), 500, CASH_EVENT_DEPOSIT, u"DEPOSIT between");
  user().sellShares(u"ABC.AX", {m_today, 10, 5, 7, u""}, true);
  EXPECT_TRUE(user().deleteSellEvent(u"ABC.AX", m_today, 10));
  EXPECT_EQ(user().findSoldShare(u"ABC.AX"), nullptr);
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
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 1), 10, 1, 3, u""});
  user().sellShares(u"ABC.AX", {m_today, 10, 5, 7, u""}, true);
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
  user().buyShares(u"ABC.AX", {Date(2026, 1, 1), 10, 1, 3, u""});
  user().sellShares(u"ABC.AX", {m_today, 10, 5, 7, u""}, true);
  EXPECT_TRUE(
      user().editSellEvent(sale(u"ABC.AX"), {Date(2026, 1, 5), Date(2026, 3, 2), 20, 2, 6, 4, 8, u"edited"}));
  EXPECT_EQ(saleText(u"ABC.AX", 0), String(u"5/1/2026 2/3/2026 20.00 2.0000 6.0000 4.00 8.00 edited"));
  EXPECT_EQ(cashEntryText(0), String(u"5/1/2026 2 44.00 BUY 20.00 of ABC.AX @ 2.0000"));
  EXPECT_EQ(cashEntryText(1), String(u"2/3/2026 1 112.00 SELL 20.00 of ABC.AX @ 6.0000"));
}

TEST_F(SalesTest, EditingWithOneEntryFoundCarriesThatOne) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 1), 10, 1, 3, u""});
  user().sellShares(u"ABC.AX", {m_today, 10, 5, 0, u"why"}, true);
  EXPECT_FALSE(user().editSellEvent(sale(u"ABC.AX"), {Date(2026, 1, 1), m_today, 10, 1, 6, 3, 0, u""}));
  EXPECT_EQ(cashEntryText(0), String(u"3/3/2026 1 60.00 SELL 10.00 of ABC.AX @ 6.0000"));
  EXPECT_EQ(textValue(sale(u"ABC.AX"), u"Comment"), String(u"why"));
}

TEST_F(SalesTest, RemovingASoldStockLeavesItsCash) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 1, 1), 10, 1, 0, u""});
  user().sellShares(u"ABC.AX", {m_today, 10, 5, 0, u""}, true);
  user().removeSoldShare(u"ABC.AX");
  user().removeSoldShare(u"NONE.AX");
  EXPECT_EQ(numSales(u"ABC.AX"), 0u);
  EXPECT_EQ(numCashEntries(), 1u);
}

} // namespace
} // namespace Tallymoor
