#include "books/CapitalRecordTest.h"
#include "foundation/RunTimeSettings.h"

namespace Tallymoor {
namespace {

TEST_F(CapitalRecordTest, OnlyMoneyFromOutsideIsInjected) {
  user().creditCash(Date(2026, 2, 27), 100, CASH_EVENT_DEPOSIT, u"");
  user().creditCash(Date(2026, 2, 28), 5, CASH_EVENT_INTEREST, u"");
  user().debitCash(Date(2026, 3, 1), 100, CASH_EVENT_WITHDRAWAL, u"");
  user().creditCash(m_yesterday, 7, CASH_EVENT_CREDIT, u"");
  user().debitCash(m_today, 2, CASH_EVENT_DEBIT, u"");
  update();
  EXPECT_EQ(dayOf(Date(2026, 2, 27)), String(u"27/2/2026 cash 100.00 injected 100.00"));
  EXPECT_EQ(dayOf(Date(2026, 2, 28)), String(u"28/2/2026 cash 105.00"));
  EXPECT_EQ(dayOf(Date(2026, 3, 1)), String(u"1/3/2026 cash 5.00 injected -100.00"));
  EXPECT_EQ(dayOf(m_yesterday), String(u"2/3/2026 cash 12.00"));
  EXPECT_EQ(dayOf(m_today), String(u"3/3/2026 cash 10.00"));
}

TEST_F(CapitalRecordTest, WhatCameAndWentOnOneDayIsNotInjected) {
  user().creditCash(m_today, 100, CASH_EVENT_DEPOSIT, u"");
  user().debitCash(m_today, 100.004, CASH_EVENT_WITHDRAWAL, u"");
  update();
  EXPECT_EQ(dayOf(m_today), String(u"3/3/2026 cash 0.00"));
}

TEST_F(CapitalRecordTest, TwoParcelsMakeOneEntryWithTheirSum) {
  user().addBuyEvent(u"ABC.AX", {m_yesterday, 10, 5, 0, u""});
  user().addBuyEvent(u"DEF.AX", {m_yesterday, 1, 1, 0, u""});
  user().addBuyEvent(u"ABC.AX", {m_today, 2.5, 5, 0, u""});
  setPrices(u"ABC.AX", Date(2026, 3, 1), m_today, 5);
  setPrices(u"DEF.AX", Date(2026, 3, 1), m_today, 1.236);
  update();
  EXPECT_EQ(dayOf(m_yesterday), String(u"2/3/2026 cash 0.00; ABC.AX 10.00 x 5.00; DEF.AX 1.00 x 1.236"));
  EXPECT_EQ(dayOf(m_today), String(u"3/3/2026 cash 0.00; ABC.AX 12.50 x 5.00; DEF.AX 1.00 x 1.236"));
}

TEST_F(CapitalRecordTest, OnTheDayOfSaleTheCashIsThereAndTheSharesAreNot) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 3, 1), 10, 5, 0, u""});
  user().addBuyEvent(u"ABC.AX", {Date(2026, 3, 1), 5, 5, 0, u""});
  user().sellShares(u"ABC.AX", {m_today, 10, 6, 0, u""}, true);
  setPrices(u"ABC.AX", Date(2026, 2, 28), m_today, 5);
  update();
  EXPECT_EQ(dayOf(m_yesterday), String(u"2/3/2026 cash 0.00; ABC.AX 15.00 x 5.00"));
  EXPECT_EQ(dayOf(m_today), String(u"3/3/2026 cash 60.00; ABC.AX 5.00 x 5.00"));
}

TEST_F(CapitalRecordTest, SoldStocksStandBehindHeldOnes) {
  addSale(u"SOLD.AX", m_yesterday, Date(2026, 3, 9), 3, 1, 1);
  user().addBuyEvent(u"HELD.AX", {m_today, 1, 1, 0, u""});
  setPrices(u"SOLD.AX", Date(2026, 3, 1), m_today, 2);
  setPrices(u"HELD.AX", Date(2026, 3, 1), m_today, 4);
  update();
  EXPECT_EQ(dayOf(m_yesterday), String(u"2/3/2026 cash 0.00; SOLD.AX 3.00 x 2.00"));
  EXPECT_EQ(dayOf(m_today), String(u"3/3/2026 cash 0.00; HELD.AX 1.00 x 4.00; SOLD.AX 3.00 x 2.00"));
}

TEST_F(CapitalRecordTest, AConfirmedSplitCountsOnTheDayItself) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 2, 28), 100, 10, 0, u""});
  user().addBuyEvent(u"ABC.AX", {m_yesterday, 7, 10, 0, u""});
  setPrices(u"ABC.AX", Date(2026, 2, 27), Date(2026, 3, 1), 10);
  setPrices(u"ABC.AX", m_yesterday, m_today, 4.9);
  m_interaction.answerRatio(2);
  update();
  EXPECT_EQ(m_interaction.calls(Kind::AskRatio).size(), 1u);
  EXPECT_EQ(dayOf(Date(2026, 3, 1)), String(u"1/3/2026 cash 0.00; ABC.AX 100.00 x 10.00"));
  EXPECT_EQ(dayOf(m_yesterday), String(u"2/3/2026 cash 0.00; ABC.AX 207.00 x 4.90"));
  EXPECT_EQ(dayOf(m_today), String(u"3/3/2026 cash 0.00; ABC.AX 207.00 x 4.90"));
}

TEST_F(CapitalRecordTest, SplitsAreAskedForInTheOrderOfTheRecords) {
  user().addBuyEvent(u"BBB.AX", {Date(2026, 2, 28), 1, 10, 0, u""});
  user().addBuyEvent(u"AAA.AX", {Date(2026, 2, 28), 1, 10, 0, u""});
  for (const char16_t* code : {u"AAA.AX", u"BBB.AX"}) {
    setPrices(code, Date(2026, 2, 27), m_yesterday, 10);
    setPrice(code, m_today, 2);
  }
  m_interaction.answerRatio(5);
  m_interaction.answerRatio(std::nullopt);
  update();
  const auto questions = m_interaction.calls(Kind::AskRatio);
  ASSERT_EQ(questions.size(), 2u);
  EXPECT_TRUE(questions[0].text.contains(u"BBB.AX"));
  EXPECT_EQ(dayOf(m_today), String(u"3/3/2026 cash 0.00; BBB.AX 5.00 x 2.00; AAA.AX 1.00 x 2.00"));
}

TEST_F(CapitalRecordTest, WeekendsAreDaysToo) {
  makeDays(Date(2026, 2, 20));
  EXPECT_EQ(numDays(Date(2026, 2, 1), m_today), 12u);
  EXPECT_EQ(record().firstRecordDate(), Date(2026, 2, 20));
}

TEST_F(CapitalRecordTest, AChangeDropsItsDayAndAllLaterOnes) {
  user().creditCash(Date(2026, 2, 20), 1000, CASH_EVENT_DEPOSIT, u"");
  user().buyShares(u"ABC.AX", {Date(2026, 2, 24), 10, 5, 0, u""});
  setPrices(u"ABC.AX", Date(2026, 2, 19), m_today, 5);
  update();
  user().editBuyEvent(parcel(u"ABC.AX"), {Date(2026, 2, 24), 20, 5, 0, u""}, 50, Date(2026, 2, 24));
  EXPECT_EQ(numDays(Date(2026, 2, 1), m_today), 4u);
  EXPECT_TRUE(record().hasDayCap(Date(2026, 2, 23)));
  EXPECT_FALSE(record().hasDayCap(Date(2026, 2, 24)));
  update();
  EXPECT_EQ(dayOf(Date(2026, 2, 24)), String(u"24/2/2026 cash 900.00; ABC.AX 20.00 x 5.00"));
  EXPECT_EQ(numDays(Date(2026, 2, 1), m_today), 12u);
}

TEST_F(CapitalRecordTest, AChangeBeforeTheFirstDayDropsAll) {
  makeDays(Date(2026, 3, 1));
  record().save();
  user().addBuyEvent(u"ABC.AX", {Date(2026, 2, 28), 1, 1, 0, u""});
  EXPECT_EQ(numDays(Date(2026, 1, 1), m_today), 0u);
  EXPECT_EQ(record().firstRecordDate(), m_today);
  EXPECT_TRUE(record().isModified());
}

TEST_F(CapitalRecordTest, AChangeBeyondTheLastDayDropsNothing) {
  makeDays(Date(2026, 3, 1));
  record().save();
  record().recordsChangedFrom(Date(2026, 3, 4));
  EXPECT_EQ(numDays(Date(2026, 1, 1), m_today), 3u);
  EXPECT_FALSE(record().isModified());
}

TEST_F(CapitalRecordTest, AChangeWithinAGapDropsTheDaysBehindIt) {
  TestProfile::writeFile(file(), "<SharePortfolioCapitalRecord><String>Trading</String>"
                                 "<DayCap><Date>1/2/2026</Date><Constant>1.00</Constant></DayCap>"
                                 "<DayCap><Date>5/2/2026</Date><Constant>2.00</Constant></DayCap>"
                                 "<DayCap><Date>6/2/2026</Date><Constant>3.00</Constant></DayCap>"
                                 "</SharePortfolioCapitalRecord>");
  reopen();
  ASSERT_EQ(numDays(Date(2026, 1, 1), m_today), 3u);
  record().recordsChangedFrom(Date(2026, 2, 3));
  EXPECT_EQ(numDays(Date(2026, 1, 1), m_today), 1u);
  EXPECT_TRUE(record().hasDayCap(Date(2026, 2, 1)));
  EXPECT_TRUE(record().isModified());
}

TEST_F(CapitalRecordTest, ChangesTellTheEarliestDayTouched) {
  const Date first(2026, 2, 20);
  const auto lastDay = [this] {
    Date day = m_today;
    while (!record().hasDayCap(day))
      day.addDays(-1);
    return day;
  };
  user().creditCash(first, 1000, CASH_EVENT_DEPOSIT, u"");
  setPrices(u"ABC.AX", first.plusDays(-1), m_today, 5);
  user().addBuyEvent(u"ABC.AX", {Date(2026, 2, 25), 10, 5, 0, u""});
  user().addBuyEvent(u"ABC.AX", {Date(2026, 2, 23), 10, 5, 0, u""});
  update();
  user().editBuyEvent(parcel(u"ABC.AX"), {Date(2026, 2, 26), 10, 5, 0, u""}, 0, Date(2026, 2, 25));
  EXPECT_EQ(lastDay(), Date(2026, 2, 24));
  update();
  user().sellShares(u"ABC.AX", {Date(2026, 3, 1), 10, 6, 0, u""}, true);
  EXPECT_EQ(lastDay(), Date(2026, 2, 28));
  update();
  user().editSellEvent(sale(u"ABC.AX"), {Date(2026, 2, 27), Date(2026, 3, 2), 10, 5, 6, 0, 0, u""});
  EXPECT_EQ(lastDay(), Date(2026, 2, 25));
  update();
  user().deleteSellEvent(u"ABC.AX", Date(2026, 3, 2), 10);
  EXPECT_EQ(lastDay(), Date(2026, 2, 26));
  update();
  user().removeHeldShare(u"ABC.AX");
  EXPECT_EQ(lastDay(), Date(2026, 2, 22));
  addSale(u"ABC.AX", Date(2026, 2, 28), m_today, 10, 5, 6);
  update();
  user().removeSoldShare(u"ABC.AX");
  EXPECT_EQ(lastDay(), Date(2026, 2, 27));
}

TEST_F(CapitalRecordTest, TodayWithARecordNeedsNothing) {
  makeDays(m_yesterday);
  record().save();
  user().portfolio().cashEvents()[0].subElement(u"Value").setValue(u"7.00");
  update();
  EXPECT_EQ(dayOf(m_today), String(u"3/3/2026 cash 100.00"));
  EXPECT_FALSE(record().isModified());
}

TEST_F(CapitalRecordTest, APortfolioThatBeginsTomorrowNeedsNothing) {
  user().creditCash(Date(2026, 3, 4), 100, CASH_EVENT_DEPOSIT, u"");
  update();
  EXPECT_EQ(numDays(Date(2026, 1, 1), Date(2026, 3, 9)), 0u);
  EXPECT_FALSE(record().isModified());
}

TEST_F(CapitalRecordTest, AViewDateIsToday) {
  user().creditCash(Date(2026, 2, 20), 100, CASH_EVENT_DEPOSIT, u"");
  Date::setFixedDate(Date(2026, 2, 22));
  update();
  EXPECT_EQ(numDays(Date(2026, 1, 1), m_today), 3u);
  Date::clearFixedDate();
  update();
  EXPECT_EQ(numDays(Date(2026, 1, 1), m_today), 12u);
  Date::setFixedDate(Date(2026, 2, 22));
  update();
  EXPECT_EQ(numDays(Date(2026, 1, 1), m_today), 12u);
}

TEST_F(CapitalRecordTest, DaysAfterTheRealTodayAreDropped) {
  makeDays(Date(2026, 2, 28));
  m_profile.setToday(Date(2026, 3, 1));
  update();
  EXPECT_EQ(numDays(Date(2026, 1, 1), m_today), 2u);
}

TEST_F(CapitalRecordTest, FourteenDaysAreComputedWithoutProgress) {
  makeDays(Date(2026, 2, 17)); // 14 days before today.
  EXPECT_TRUE(m_interaction.lengthyCaption.empty());
  EXPECT_EQ(numDays(Date(2026, 1, 1), m_today), 15u);
}

TEST_F(CapitalRecordTest, FifteenDaysShowTheirProgress) {
  makeDays(Date(2026, 2, 16));
  EXPECT_EQ(m_interaction.lengthyCaption, String(u"Updating daily capital records for Trading"));
  EXPECT_EQ(m_interaction.lengthyHeading,
            String(u"Updating daily capital records from portfolio records      "));
  EXPECT_EQ(m_interaction.lengthySteps, 0u);
  EXPECT_EQ(m_interaction.lengthyArgument, 3);
  EXPECT_EQ(numDays(Date(2026, 1, 1), m_today), 16u);
}

TEST_F(CapitalRecordTest, ALongUpdateTellsTheMonths) {
  makeDays(Date(2025, 12, 15));
  EXPECT_EQ(m_interaction.lengthySteps, 2u); // 78 days.
  EXPECT_EQ(m_interaction.progress.texts,
            (std::vector<String>{u"updating capital record for month 2026 January",
                                 u"updating capital record for month 2026 February",
                                 u"updating capital record for month 2026 March"}));
  EXPECT_EQ(m_interaction.progress.steps, 3u);
}

TEST_F(CapitalRecordTest, ALongUpdateTellsOfCodesWithoutHistory) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 2, 10), 1, 5, 0, u""});
  user().addBuyEvent(u"DEF.AX", {Date(2026, 2, 10), 1, 5, 0, u""});
  setPrices(u"DEF.AX", Date(2026, 2, 9), m_today, 5);
  update();
  ASSERT_FALSE(m_interaction.progress.texts.empty());
  EXPECT_EQ(m_interaction.progress.texts[0], String(u"Retrieving historical prices for ABC.AX"));
  for (const String& text : m_interaction.progress.texts)
    EXPECT_FALSE(text.contains(u"DEF.AX"));
}

TEST_F(CapitalRecordTest, ACancelledUpdateEndsAfterTheDayAndGoesOnLater) {
  m_interaction.progress.cancelAfter = 1; // On the first day of February.
  makeDays(Date(2026, 1, 10));
  EXPECT_TRUE(record().hasDayCap(Date(2026, 2, 1)));
  EXPECT_FALSE(record().hasDayCap(Date(2026, 2, 2)));
  EXPECT_TRUE(record().isModified());
  m_interaction.progress.cancelAfter.reset();
  update();
  EXPECT_EQ(numDays(Date(2026, 1, 1), m_today), 53u);
}

// A day with many stocks whose histories must be fetched takes minutes.
TEST_F(CapitalRecordTest, ACancelledUpdateEndsBeforeTheNextStockIsFetched) {
  user().creditCash(Date(2026, 1, 10), 100, CASH_EVENT_DEPOSIT, u"");
  for (const char16_t* code : {u"AAA.AX", u"BBB.AX", u"CCC.AX"}) {
    m_market.setHistory(code, Date(2025, 12, 1), m_today, 5);
    user().addBuyEvent(code, {Date(2026, 1, 12), 1, 5, 0, u""});
  }
  m_market.addListing(u"TEST", u"test", u"Australia");
  ASSERT_TRUE(gateway().reconnect());
  gateway().priceUpdater().stopAndJoin();
  m_interaction.progress.cancelAtText = u"Retrieving historical prices for BBB.AX";
  update();
  for (const String& code : m_market.requested(MarketFixture::Page::History))
    EXPECT_EQ(code, String(u"AAA.AX"));
  EXPECT_TRUE(record().hasDayCap(Date(2026, 1, 11)));
  EXPECT_FALSE(record().hasDayCap(Date(2026, 1, 12))) << "no half day";
  m_interaction.progress.cancelAtText.reset();
  update();
  EXPECT_EQ(numDays(Date(2026, 1, 1), m_today), 53u);
  EXPECT_EQ(dayOf(Date(2026, 1, 12)),
            String(u"12/1/2026 cash 100.00; AAA.AX 1.00 x 5.00; BBB.AX 1.00 x 5.00; CCC.AX 1.00 x 5.00"));
}

TEST_F(CapitalRecordTest, PricesOfManyStocksAreFetchedAtOnceAndTheEndOfTheProgramEndsThat) {
  constexpr std::size_t AT_ONCE = 6;
  for (char16_t letter = u'A'; letter < u'I'; ++letter) {
    const String code = String() + letter + u".AX";
    m_market.setHistory(code, Date(2025, 12, 1), m_today, 5);
    user().addBuyEvent(code, {Date(2026, 1, 12), 1, 5, 0, u""});
  }
  m_market.addListing(u"TEST", u"test", u"Australia");
  ASSERT_TRUE(gateway().reconnect());
  gateway().priceUpdater().stopAndJoin();
  m_market.stall(MarketFixture::Page::History);
  const auto asked = [this] { return m_market.requested(MarketFixture::Page::History).size(); };
  m_interaction.stopWanted = [&] { return asked() >= AT_ONCE; };
  update();
  EXPECT_EQ(asked(), AT_ONCE) << "none is answered, and the others wait for these";
  EXPECT_FALSE(record().hasDayCap(Date(2026, 1, 12))) << "no day with prices that stand in";
  m_interaction.stopWanted = {};
  m_market.release(MarketFixture::Page::History);
  update();
  EXPECT_EQ(numDays(Date(2026, 1, 12), m_today), 51u);
  EXPECT_TRUE(dayOf(m_yesterday).contains(u"H.AX 1.00 x 5.00"));
  EXPECT_TRUE(m_interaction.calls(BooksInteraction::Kind::Question).empty());
}

TEST_F(CapitalRecordTest, AnotherPageOfAHistoryIsAnnouncedToo) {
  m_market.setMaxEntries(20); // Covers a month.
  TallymoorInternet::reset();
  m_market.setHistory(u"AAA.AX", Date(2025, 12, 1), m_today, 5);
  user().addBuyEvent(u"AAA.AX", {Date(2026, 1, 12), 1, 5, 0, u""});
  m_market.addListing(u"TEST", u"test", u"Australia");
  ASSERT_TRUE(gateway().reconnect());
  gateway().priceUpdater().stopAndJoin();
  update();
  std::size_t announced = 0;
  for (const String& text : m_interaction.progress.texts)
    announced += text == u"Retrieving historical prices for AAA.AX";
  EXPECT_LT(1u, announced);
  EXPECT_GE(m_market.requested(MarketFixture::Page::History).size(), announced);
}

TEST_F(CapitalRecordTest, AnUpdateInsideAnUpdateReturnsAtOnce) {
  bool nestedWasQuiet = false;
  m_interaction.duringLengthy = [this, &nestedWasQuiet] {
    update();
    nestedWasQuiet = record().firstRecordDate() == m_today && !record().hasDayCap(m_today);
  };
  makeDays(Date(2026, 1, 10));
  EXPECT_TRUE(nestedWasQuiet);
  EXPECT_EQ(numDays(Date(2026, 1, 1), m_today), 53u);
}

TEST_F(CapitalRecordTest, AFailureLeavesTheDaysBeforeAndNoHalfDay) {
  user().creditCash(Date(2026, 2, 26), 100, CASH_EVENT_DEPOSIT, u"");
  user().addBuyEvent(u"AAA.AX", {Date(2026, 2, 28), 1, 5, 0, u""});
  setPrices(u"AAA.AX", Date(2026, 2, 27), m_today, 5);
  user().addBuyEvent(u"ZERO.AX", {Date(2026, 3, 1), 1, 0, 0, u""});
  EXPECT_FALSE(messageOf([this] { update(); }).empty());
  EXPECT_EQ(numDays(Date(2026, 1, 1), m_today), 3u);
  EXPECT_FALSE(record().hasDayCap(Date(2026, 3, 1)));
  EXPECT_TRUE(record().isModified());
  user().removeHeldShare(u"ZERO.AX");
  update();
  EXPECT_EQ(numDays(Date(2026, 1, 1), m_today), 6u);
}

TEST_F(CapitalRecordTest, ALivePriceReplacesTodays) {
  user().addBuyEvent(u"ABC.AX", {m_yesterday, 10, 5, 0, u""});
  setPrices(u"ABC.AX", Date(2026, 3, 1), m_today, 5);
  update();
  record().save();
  record().currentPriceUpdated(u"NONE.AX", 9);
  EXPECT_FALSE(record().isModified());
  record().currentPriceUpdated(u"ABC.AX", 6.789);
  EXPECT_TRUE(record().isModified());
  EXPECT_EQ(dayOf(m_today), String(u"3/3/2026 cash 0.00; ABC.AX 10.00 x 6.789"));
  EXPECT_EQ(dayOf(m_yesterday), String(u"2/3/2026 cash 0.00; ABC.AX 10.00 x 5.00"));
  record().historicalPriceChanged(u"ABC.AX", m_yesterday, 4);
  record().historicalPriceChanged(u"ABC.AX", Date(2026, 1, 1), 4);
  EXPECT_EQ(dayOf(m_yesterday), String(u"2/3/2026 cash 0.00; ABC.AX 10.00 x 4.00"));
}

TEST_F(CapitalRecordTest, TheUpdatersPassReachesTheRecord) {
  user().addBuyEvent(u"ABC.AX", {m_yesterday, 10, 5, 0, u""});
  setPrices(u"ABC.AX", Date(2026, 3, 1), m_yesterday, 5);
  update();
  m_market.setCurrentPrice(u"ABC.AX", 7.5);
  m_market.addListing(u"TEST", u"test", u"Australia");
  ASSERT_TRUE(gateway().reconnect());
  gateway().priceUpdater().stopAndJoin();
  gateway().priceUpdater().addCode(u"ABC.AX");
  gateway().priceUpdater().runPass();
  gateway().goOffline();
  EXPECT_EQ(dayOf(m_today), String(u"3/3/2026 cash 0.00; ABC.AX 10.00 x 7.50"));
}

TEST_F(CapitalRecordTest, ASplitThatCameWithALivePriceIsAskedForNextDay) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 3, 1), 10, 10, 0, u""});
  setPrices(u"ABC.AX", Date(2026, 2, 28), m_today, 10);
  update();
  // The price halves during the day. No question may be asked when it arrives.
  setPrice(u"ABC.AX", m_today, 4.9);
  record().currentPriceUpdated(u"ABC.AX", 4.9);
  update();
  EXPECT_TRUE(m_interaction.calls(Kind::AskRatio).empty());

  m_profile.setToday(Date(2026, 3, 4));
  setPrice(u"ABC.AX", Date(2026, 3, 4), 4.9);
  m_interaction.answerRatio(2);
  update();
  EXPECT_EQ(m_interaction.calls(Kind::AskRatio).size(), 1u);
  EXPECT_EQ(dayOf(m_yesterday), String(u"2/3/2026 cash 0.00; ABC.AX 10.00 x 10.00"));
  EXPECT_EQ(dayOf(m_today), String(u"3/3/2026 cash 0.00; ABC.AX 20.00 x 4.90"));
  EXPECT_EQ(dayOf(Date(2026, 3, 4)), String(u"4/3/2026 cash 0.00; ABC.AX 20.00 x 4.90"));
}

TEST_F(CapitalRecordTest, APriceThatIsGoneDoesNotHoldUpTheNextDay) {
  user().addBuyEvent(u"ZERO.AX", {m_yesterday, 10, 0, 0, u""});
  user().creditCash(m_yesterday, 100, CASH_EVENT_DEPOSIT, u"");
  setPrices(u"ZERO.AX", Date(2026, 3, 1), m_today, 5);
  update();
  user().sellShares(u"ZERO.AX", {Date(2026, 3, 4), 10, 0, 0, u""}, true);
  gateway().clear();
  m_profile.setToday(Date(2026, 3, 4));
  EXPECT_EQ(messageOf([this] { update(); }), String());
  EXPECT_TRUE(record().hasDayCap(Date(2026, 3, 4)));
}

TEST_F(CapitalRecordTest, ABackgroundPassDoesNotExtendTheRecord) {
  user().creditCash(m_yesterday, 100, CASH_EVENT_DEPOSIT, u"");
  {
    const BackgroundPassScope pass;
    update();
  }
  EXPECT_FALSE(record().hasDayCap(m_yesterday));
}

TEST_F(CapitalRecordTest, CapitalIsSharesAndCash) {
  user().creditCash(m_yesterday, 100, CASH_EVENT_DEPOSIT, u"");
  user().addBuyEvent(u"ABC.AX", {m_yesterday, 10, 5, 0, u""});
  user().addBuyEvent(u"DEF.AX", {m_yesterday, 4, 5, 0, u""});
  setPrices(u"ABC.AX", Date(2026, 3, 1), m_today, 5.5);
  setPrices(u"DEF.AX", Date(2026, 3, 1), m_today, 2);
  update();
  EXPECT_DOUBLE_EQ(record().capitalOn(m_today), 163);
  EXPECT_DOUBLE_EQ(record().sharesValueOn(m_today), 63);
  EXPECT_DOUBLE_EQ(record().cashOn(m_today), 100);
}

TEST_F(CapitalRecordTest, WhatIsAskedOfADayAgainFollowsItsChanges) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 3, 1), 10, 5, 0, u""});
  setPrices(u"ABC.AX", Date(2026, 2, 28), m_today, 5);
  setPrices(u"DEF.AX", Date(2026, 2, 28), m_today, 2);
  update();
  EXPECT_DOUBLE_EQ(record().sharesValueOn(m_today), 50);
  EXPECT_DOUBLE_EQ(record().priceOn(u"ABC.AX", m_today)->price, 5);
  EXPECT_FALSE(record().priceOn(u"DEF.AX", m_today));
  record().currentPriceUpdated(u"ABC.AX", 6);
  EXPECT_DOUBLE_EQ(record().sharesValueOn(m_today), 60);
  EXPECT_DOUBLE_EQ(record().priceOn(u"ABC.AX", m_today)->price, 6);
  user().addBuyEvent(u"DEF.AX", {m_yesterday, 3, 2, 0, u""});
  EXPECT_FALSE(record().priceOn(u"ABC.AX", m_today));
  EXPECT_FALSE(messageOf([this] { record().sharesValueOn(m_today); }).empty());
  update();
  EXPECT_DOUBLE_EQ(record().sharesValueOn(m_today), 56); // Today's price is the cached one again.
  EXPECT_DOUBLE_EQ(record().priceOn(u"DEF.AX", m_today)->price, 2);
}

TEST_F(CapitalRecordTest, WhatIsAskedOfADayAgainFollowsEditsSalesAndSplits) {
  const Date bought(2026, 3, 1);
  setPrices(u"ABC.AX", Date(2026, 2, 28), m_today, 5);
  user().buyShares(u"ABC.AX", {bought, 10, 5, 0, u""});
  const auto shares = [this] {
    update();
    return record().sharesValueOn(m_today);
  };
  EXPECT_DOUBLE_EQ(shares(), 50);
  auto& purchase = user().findHeldShare(u"ABC.AX")->parcels()[0];
  user().editBuyEvent(purchase, {bought, 8, 5, 0, u""}, 50, bought);
  EXPECT_DOUBLE_EQ(shares(), 40);
  user().sellShares(u"ABC.AX", {m_yesterday, 2, 5, 0, u""}, true);
  EXPECT_DOUBLE_EQ(shares(), 30);
  EXPECT_TRUE(user().undoSale(sale(u"ABC.AX")));
  EXPECT_DOUBLE_EQ(shares(), 40);
  user().recordAdjustment(u"ABC.AX", m_yesterday, 2, false);
  record().recordsChangedFrom(m_yesterday);
  EXPECT_DOUBLE_EQ(shares(), 80);
  EXPECT_DOUBLE_EQ(record().capitalOn(m_today), 40);
}

TEST_F(CapitalRecordTest, WhatIsAskedOfAPastDayAgainFollowsItsClose) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 3, 1), 10, 5, 0, u""});
  setPrices(u"ABC.AX", Date(2026, 2, 28), m_today, 5);
  update();
  EXPECT_DOUBLE_EQ(record().sharesValueOn(m_yesterday), 50);
  EXPECT_DOUBLE_EQ(record().priceOn(u"ABC.AX", m_yesterday)->price, 5);
  setPrices(u"ABC.AX", m_yesterday, m_yesterday, 6);
  EXPECT_DOUBLE_EQ(record().sharesValueOn(m_yesterday), 60);
  EXPECT_DOUBLE_EQ(record().priceOn(u"ABC.AX", m_yesterday)->price, 6);
  update();
  EXPECT_DOUBLE_EQ(record().sharesValueOn(m_yesterday), 60);
  EXPECT_DOUBLE_EQ(record().sharesValueOn(m_today), 50);
}

TEST_F(CapitalRecordTest, WhatIsAskedOfADayIsThatOfTheViewDateAndOfTodayAgain) {
  user().addBuyEvent(u"ABC.AX", {Date(2026, 3, 1), 10, 5, 0, u""});
  setPrices(u"ABC.AX", Date(2026, 2, 28), m_yesterday, 5);
  setPrices(u"ABC.AX", m_today, m_today, 7);
  update();
  EXPECT_DOUBLE_EQ(record().sharesValueOn(Date()), 70);
  Date::setFixedDate(m_yesterday);
  user().addBuyEvent(u"ABC.AX", {m_yesterday, 2, 5, 0, u""});
  update();
  EXPECT_DOUBLE_EQ(record().sharesValueOn(Date()), 60);
  Date::clearFixedDate();
  update();
  record().currentPriceUpdated(u"ABC.AX", 8);
  EXPECT_DOUBLE_EQ(record().sharesValueOn(Date()), 96);
  EXPECT_DOUBLE_EQ(record().priceOn(u"ABC.AX", Date())->price, 8);
}

TEST_F(CapitalRecordTest, WhatIsAskedOfAReadRecordIsWhatItHolds) {
  user().addBuyEvent(u"ABC.AX", {m_yesterday, 10, 5, 0, u""});
  setPrices(u"ABC.AX", Date(2026, 2, 28), m_today, 5);
  update();
  record().save();
  record().currentPriceUpdated(u"ABC.AX", 6);
  EXPECT_DOUBLE_EQ(record().sharesValueOn(m_today), 60);
  EXPECT_DOUBLE_EQ(record().priceOn(u"ABC.AX", m_today)->price, 6);
  record().load();
  EXPECT_DOUBLE_EQ(record().sharesValueOn(m_today), 50);
  EXPECT_DOUBLE_EQ(record().priceOn(u"ABC.AX", m_today)->price, 5);
}

class LastDayTest : public CapitalRecordTest {
protected:
  LastDayTest() {
    user().addBuyEvent(u"ABC.AX", {Date(2026, 2, 26), 100, 10, 0, u""});
    setPrices(u"ABC.AX", Date(2026, 2, 25), m_yesterday.plusDays(-1), 10);
    setPrices(u"ABC.AX", m_yesterday, m_today, 8);
    update();
    changeToday();
    update(); // This has read yesterday's prices.
  }
  /// Yesterday is then the last day of the record.
  void changeToday() { user().creditCash(m_today, 1, CASH_EVENT_INTEREST, u""); }
  std::size_t questions() { return m_interaction.calls(Kind::AskRatio).size(); }
};

TEST_F(LastDayTest, IsLookedAtForASplitAgainWhenItsPriceIsAnotherOne) {
  EXPECT_EQ(questions(), 0u);
  changeToday();
  setPrices(u"ABC.AX", m_yesterday, m_today, 5);
  m_interaction.answerRatio(2);
  update();
  EXPECT_EQ(questions(), 1u);
  EXPECT_EQ(dayOf(m_yesterday), String(u"2/3/2026 cash 0.00; ABC.AX 200.00 x 5.00"));
  EXPECT_EQ(dayOf(m_today), String(u"3/3/2026 cash 2.00; ABC.AX 200.00 x 5.00"));
}

TEST_F(LastDayTest, IsLookedAtForASplitAgainByAnotherRatio) {
  changeToday();
  splitRatioDetect = 1.2;
  m_interaction.answerRatio(std::nullopt);
  update();
  EXPECT_EQ(questions(), 1u);
}

TEST_F(LastDayTest, IsLookedAtForASplitAgainWhenItWasComputedAnew) {
  user().creditCash(m_yesterday, 1, CASH_EVENT_INTEREST, u"");
  setPrices(u"ABC.AX", m_yesterday, m_today, 5);
  m_interaction.answerRatio(2);
  update();
  EXPECT_EQ(questions(), 1u);
  EXPECT_EQ(dayOf(m_yesterday), String(u"2/3/2026 cash 1.00; ABC.AX 200.00 x 5.00"));
}

TEST_F(CapitalRecordTest, ADayWithoutRecordThrows) {
  const String message = u"SharePortfolioCapitalRecordUser::dayCapFor - doesn't have one for " +
                         m_today.toString(DATE_DISPLAY_LOCAL);
  EXPECT_FALSE(record().hasDayCap(m_today));
  EXPECT_EQ(messageOf([this] { record().dayCapFor(m_today); }), message);
  EXPECT_EQ(messageOf([this] { record().capitalOn(m_today); }), message);
}

TEST_F(CapitalRecordTest, ExternalFlowLeavesOutTheFirstDayAndTakesTheLast) {
  user().creditCash(Date(2026, 2, 27), 1, CASH_EVENT_DEPOSIT, u"");
  user().creditCash(Date(2026, 2, 28), 10, CASH_EVENT_DEPOSIT, u"");
  user().debitCash(m_yesterday, 100, CASH_EVENT_WITHDRAWAL, u"");
  user().creditCash(m_today, 1000, CASH_EVENT_DEPOSIT, u"");
  update();
  EXPECT_DOUBLE_EQ(record().externalFlowBetween(Date(2026, 2, 27), m_yesterday), -90);
  EXPECT_DOUBLE_EQ(record().externalFlowBetween(Date(2026, 1, 1), Date(2027, 1, 1)), 911);
  EXPECT_DOUBLE_EQ(record().externalFlowBetween(m_today, m_today), 0);
}

TEST_F(CapitalRecordTest, ItStopsObservingWhenItEnds) {
  m_user.reset();
  m_market.setCurrentPrice(u"ABC.AX", 7.5);
  m_market.addListing(u"TEST", u"test", u"Australia");
  ASSERT_TRUE(gateway().reconnect());
  gateway().priceUpdater().stopAndJoin();
  gateway().priceUpdater().addCode(u"ABC.AX");
  gateway().priceUpdater().runPass(); // The address sanitizer would report a call of the destroyed record.
  EXPECT_DOUBLE_EQ(gateway().priceUpdater().getCurrentPrice(u"ABC.AX"), 7.5);
}

TEST_F(CapitalRecordTest, ItMayOutliveTheGateway) {
  TallymoorInternet::shutdown();
  m_user.reset();
  EXPECT_FALSE(TallymoorInternet::exists());
}

} // namespace
} // namespace Tallymoor
