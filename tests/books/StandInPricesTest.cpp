#include "books/BooksTest.h"
#include "books/RecordedSplits.h"

namespace Tallymoor {
namespace {

/// Days without a price of their own, at which another price stands in.
class StandInPricesTest : public BooksTest {
protected:
  void buy(const Date& day, double number, double price) {
    user().addBuyEvent(u"ABC.AX", {day, number, price, 0, u""});
  }
  void update() { updateCapitalRecord(user()); }
  double priceOn(const Date& day) { return user().sharePriceFor(u"ABC.AX", day, false); }
  String recordedPrice(const Date& day) {
    return textValue(record().dayCapFor(day).subElement(u"ShareVals"), u"Price");
  }

  const Date m_eve{2026, 2, 9};
  const Date m_splitDay{2026, 2, 10};
  const Date m_yesterday{2026, 3, 2};
};

TEST_F(StandInPricesTest, ThePriceOfAnEarlierDayIsPutIntoSharesOfTheDay) {
  buy(Date(2026, 1, 1), 100, 10);
  addAdjustment(parcel(u"ABC.AX"), m_splitDay, 2);
  EXPECT_DOUBLE_EQ(priceOn(m_eve), 10) << "that of the purchase";
  EXPECT_DOUBLE_EQ(priceOn(m_splitDay), 5) << "that of the purchase";
  setPrice(u"ABC.AX", m_eve, 12);
  EXPECT_DOUBLE_EQ(priceOn(m_splitDay), 6) << "the last close";
}

TEST_F(StandInPricesTest, ThePriceOfALaterPurchaseIsPutIntoSharesOfTheDay) {
  buy(Date(2026, 1, 1), 100, 10);
  addAdjustment(parcel(u"ABC.AX"), m_splitDay, 2);
  buy(m_splitDay.plusDays(1), 100, 5.5);
  const RecordedSplits splits(user().holdings(), u"ABC.AX");
  EXPECT_DOUBLE_EQ(splits.sharesBetween(m_eve, m_splitDay), 2);
  EXPECT_DOUBLE_EQ(splits.sharesBetween(m_splitDay, m_eve), 0.5);
  EXPECT_DOUBLE_EQ(priceOn(m_eve), 11) << "the purchase after the split is the nearest one";
}

TEST_F(StandInPricesTest, NoSplitIsSuspectedOnADayWithoutAPrice) {
  buy(Date(2026, 1, 1), 100, 10);
  addAdjustment(parcel(u"ABC.AX"), m_splitDay, 2);
  buy(Date(2026, 1, 2), 50, 10); // Nobody has asked about this one yet.
  setPrice(u"ABC.AX", m_eve, 10);
  EXPECT_DOUBLE_EQ(priceWithSplitCheck(u"ABC.AX", m_splitDay), 5);
  EXPECT_TRUE(m_interaction.calls(Kind::AskRatio).empty());
  setPrice(u"ABC.AX", m_splitDay, 5);
  m_interaction.answerRatio(2);
  priceWithSplitCheck(u"ABC.AX", m_splitDay);
  EXPECT_EQ(m_interaction.calls(Kind::AskRatio).size(), 1u);
}

TEST_F(StandInPricesTest, ADayOfWhichTheSourceHasNoCloseIsNotProvisional) {
  buy(Date(2026, 2, 26), 100, 10);
  setPrice(u"ABC.AX", Date(2026, 2, 26), 10);
  m_prices.setAnswered(u"ABC.AX", Date(2026, 2, 28));
  update();
  EXPECT_TRUE(record().isProvisional(Date(2026, 2, 27)));
  EXPECT_FALSE(record().isProvisional(Date(2026, 2, 28)));
}

TEST_F(StandInPricesTest, NobodyAsksForClosesOfDaysThatAreNoLongerRecorded) {
  user().creditCash(Date(2026, 2, 20), 5000, CASH_EVENT_DEPOSIT, u"");
  buy(Date(2026, 2, 26), 100, 10);
  update();
  EXPECT_TRUE(record().isProvisional(m_yesterday));
  user().removeHeldShare(u"ABC.AX");
  m_prices.completed.clear();
  update();
  EXPECT_FALSE(record().isProvisional(m_yesterday));
  EXPECT_TRUE(m_prices.completed.empty());
}

TEST_F(StandInPricesTest, APassAsksForClosesOfDaysWithoutAPriceOfTheirOwnAlone) {
  setPrices(u"ABC.AX", Date(2026, 2, 26), m_yesterday, 10);
  buy(Date(2026, 2, 26), 100, 10);
  update();
  record().currentPriceUpdated(u"ABC.AX", 11);
  m_profile.setToday(m_today.plusDays(1));
  EXPECT_FALSE(record().wantsHistory(u"ABC.AX")) << "the price at which the program was left";
  update();
  m_profile.setToday(m_today.plusDays(2));
  EXPECT_TRUE(record().isProvisional(m_today.plusDays(1)));
  EXPECT_TRUE(record().wantsHistory(u"ABC.AX"));
}

TEST_F(StandInPricesTest, AnotherDayOfWhichAFetchedPageTellsIsComputedInTheSameUpdate) {
  setPrices(u"ABC.AX", Date(2026, 2, 20), Date(2026, 2, 28), 10);
  buy(Date(2026, 2, 20), 100, 10);
  m_profile.setToday(Date(2026, 2, 28));
  update();
  m_profile.setToday(m_today);
  m_prices.beforeAnswer = [this] {
    m_prices.beforeAnswer = nullptr;
    setPrices(u"ABC.AX", Date(2026, 2, 26), m_today, 5); // The source has mended a close.
  };
  m_interaction.answerRatio(2);
  update();
  ASSERT_EQ(m_interaction.calls(Kind::AskRatio).size(), 1u);
  EXPECT_EQ(dayOf(Date(2026, 2, 26)), u"26/2/2026 cash 0.00; ABC.AX 200.00 x 5.00");
  EXPECT_EQ(dayOf(m_today), u"3/3/2026 cash 0.00; ABC.AX 200.00 x 5.00");
}

TEST_F(StandInPricesTest, ASplitThatIsToldLaterIsAskedAboutOnce) {
  setPrices(u"ABC.AX", Date(2026, 2, 6), m_today, 10);
  buy(Date(2026, 2, 6), 100, 10);
  update();
  ASSERT_TRUE(m_interaction.calls(Kind::AskRatio).empty());
  m_prices.toldSplits[{u"ABC.AX", m_splitDay}] = 2; // the source has adjusted its closes
  m_prices.toldSplits[{u"ABC.AX", Date(2026, 2, 3)}] = 3;
  m_prices.toldSplits[{u"XYZ.AX", m_splitDay}] = 2;
  m_interaction.answerRatio(2);
  update();
  EXPECT_EQ(m_interaction.calls(Kind::AskRatio).size(), 1u);
  EXPECT_EQ(dayOf(m_eve), u"9/2/2026 cash 0.00; ABC.AX 100.00 x 10.00");
  EXPECT_EQ(dayOf(m_splitDay), u"10/2/2026 cash 0.00; ABC.AX 200.00 x 10.00");
  EXPECT_EQ(dayOf(m_today), u"3/3/2026 cash 0.00; ABC.AX 200.00 x 10.00");
  update();
  EXPECT_EQ(m_interaction.calls(Kind::AskRatio).size(), 1u);
}

} // namespace
} // namespace Tallymoor
