#include "books/CapitalRecordTest.h"
#include <filesystem>

namespace Tallymoor {
namespace {

/// A user who answers every question with No.
class DenyingUser : public FakeUserInteraction {
public:
  bool question(const String&) override { return false; }
};

/// A portfolio over days with and without prices from a real source. The program was last used at noon on
/// Thursday, 26 February, when the stock's price was 21.
class ProvisionalDaysTest : public CapitalRecordTest {
protected:
  ProvisionalDaysTest() {
    m_market.addListing(u"TEST", u"test", u"Australia");
    m_market.setHistory(u"ABC.AX", Date(2026, 1, 1), Date(2026, 2, 25), 20);
    m_market.setCurrentPrice(u"ABC.AX", 21);
    m_profile.setToday(m_thursday);
    user().addBuyEvent(u"ABC.AX", {Date(2026, 2, 24), 100, 40, 0, u""});
    user().creditCash(Date(2026, 2, 24), 1000, CASH_EVENT_DEPOSIT, u"");
    goOnline();
    gateway().priceUpdater().addCode(u"ABC.AX");
    update();
    gateway().priceUpdater().runPass();
  }

  static void goOnline() {
    ASSERT_TRUE(gateway().reconnect());
    gateway().priceUpdater().stopAndJoin();
  }
  /// Restarts the program.
  void restart(const Date& day, bool online) {
    record().save();
    m_user.reset();
    m_gateway.restart();
    m_profile.setToday(day);
    gateway().goOffline();
    if (online)
      goOnline();
    m_user = std::make_unique<SharePortfolioUser>(m_portfolio, gatewayPrices());
    m_fetchesBefore = m_market.requested(MarketFixture::Page::History).size();
  }
  /// Adds the source's prices up to Monday.
  void closeTheWeek(double friday = 23) {
    m_market.setDay(u"ABC.AX", m_thursday, 22);
    m_market.setDay(u"ABC.AX", m_friday, friday);
  }
  std::vector<String> shares(const Date& first, const Date& last) {
    std::vector<String> texts;
    for (Date day = first; day <= last; day.addDays(1)) {
      const XMLElement& shareVal = record().dayCapFor(day).subElement(u"ShareVals");
      texts.push_back(textValue(shareVal, u"Number") + u" x " + textValue(shareVal, u"Price") +
                      (record().isProvisional(day) ? u" *" : u""));
    }
    return texts;
  }
  using Texts = std::vector<String>;
  /// History pages requested since the restart.
  std::size_t fetches() { return m_market.requested(MarketFixture::Page::History).size() - m_fetchesBefore; }

  std::size_t m_fetchesBefore = 0;
  const Date m_thursday{2026, 2, 26};
  const Date m_friday{2026, 2, 27};
  const Date m_monday{2026, 3, 2};
};

TEST_F(ProvisionalDaysTest, DaysAwayAndAnOfflineStartLeaveNoTrace) {
  EXPECT_EQ(shares(Date(2026, 2, 24), m_thursday),
            (Texts{u"100.00 x 20.00", u"100.00 x 20.00", u"100.00 x 21.00"}));
  restart(m_monday, false);
  update();
  EXPECT_EQ(shares(m_thursday, m_monday), (Texts{u"100.00 x 21.00", u"100.00 x 21.00 *", u"100.00 x 21.00 *",
                                                 u"100.00 x 21.00 *", u"100.00 x 21.00 *"}))
      << "uses the last known price, not that of the purchase";
  EXPECT_DOUBLE_EQ(record().capitalOn(m_monday), 3100);

  closeTheWeek();
  goOnline();
  update();
  EXPECT_EQ(shares(m_thursday, m_monday), (Texts{u"100.00 x 22.00", u"100.00 x 23.00", u"100.00 x 23.00",
                                                 u"100.00 x 23.00", u"100.00 x 23.00"}));
  EXPECT_TRUE(m_interaction.calls(Kind::AskRatio).empty());
  EXPECT_TRUE(m_interaction.calls(Kind::Question).empty());
}

TEST_F(ProvisionalDaysTest, TheMarkOutlivesTheRun) {
  restart(m_monday, false);
  update();
  restart(m_monday, false);
  EXPECT_TRUE(record().isProvisional(m_friday));
  EXPECT_FALSE(record().isProvisional(m_thursday)) << "its price was that of the day";
  update();
  EXPECT_TRUE(record().isProvisional(m_friday));
  closeTheWeek();
  restart(m_monday, true);
  update();
  EXPECT_EQ(shares(m_friday, m_friday), Texts{u"100.00 x 23.00"});
  record().save();
  EXPECT_EQ(TestProfile::readFile(file()).find("last-close"), std::string::npos);
}

TEST_F(ProvisionalDaysTest, APageThatIsNoHistoryIsTheSameAsOffline) {
  const DenyingUser user;
  m_market.answerWith(MarketFixture::Page::History, "<html><body><form>Please log in</form></body></html>");
  restart(m_monday, true);
  update();
  EXPECT_EQ(shares(m_friday, m_monday),
            (Texts{u"100.00 x 21.00 *", u"100.00 x 21.00 *", u"100.00 x 21.00 *", u"100.00 x 21.00 *"}));
  m_market.answerWith(MarketFixture::Page::History, "");
  closeTheWeek();
  goOnline();
  update();
  EXPECT_EQ(shares(m_thursday, m_friday), (Texts{u"100.00 x 22.00", u"100.00 x 23.00"}));
}

TEST_F(ProvisionalDaysTest, TheNoonPriceOfTheLastDayGivesWayToItsClose) {
  closeTheWeek();
  restart(m_friday, true);
  update();
  EXPECT_EQ(shares(m_thursday, m_thursday), Texts{u"100.00 x 22.00"});
}

TEST_F(ProvisionalDaysTest, TheNoonPriceGivesWayAfterWeeksToo) {
  const Date later(2026, 4, 20);
  m_market.setHistory(u"ABC.AX", m_thursday, later, 22);
  restart(later, true);
  m_interaction.clearCalls();
  update();
  EXPECT_EQ(shares(m_thursday, m_friday), (Texts{u"100.00 x 22.00", u"100.00 x 22.00"}));
}

TEST_F(ProvisionalDaysTest, ACloseThatWasFetchedWhileTheRecordWasNotThereIsTakenOver) {
  record().save();
  m_user.reset();
  closeTheWeek();
  m_profile.setToday(m_monday);
  gateway().completeHistory({{u"ABC.AX", m_thursday, m_thursday, HistoryNeed::Kind::Refresh}}, nullptr);
  m_user = std::make_unique<SharePortfolioUser>(m_portfolio, gatewayPrices());
  EXPECT_EQ(shares(m_thursday, m_thursday), Texts{u"100.00 x 21.00"});
  gateway().goOffline();
  update();
  EXPECT_EQ(shares(m_thursday, m_thursday), Texts{u"100.00 x 22.00"});
}

TEST_F(ProvisionalDaysTest, ASplitThatCameMeanwhileIsAskedOnceTheClosesAreThere) {
  restart(m_monday, false);
  update();
  EXPECT_TRUE(m_interaction.calls(Kind::AskRatio).empty());
  closeTheWeek(11);
  goOnline();
  m_interaction.answerRatio(2);
  update();
  ASSERT_EQ(m_interaction.calls(Kind::AskRatio).size(), 1u);
  EXPECT_TRUE(m_interaction.calls(Kind::AskRatio)[0].text.contains(m_friday.toString(DATE_DISPLAY_LOCAL)));
  EXPECT_EQ(shares(m_thursday, Date(2026, 2, 28)),
            (Texts{u"100.00 x 22.00", u"200.00 x 11.00", u"200.00 x 11.00"}));
}

TEST_F(ProvisionalDaysTest, WhatIsToBeComputedAgainOutlivesTheRun) {
  restart(m_monday, false);
  update();
  closeTheWeek(11);
  m_market.setCurrentPrice(u"ABC.AX", 11);
  goOnline();
  gateway().priceUpdater().addCode(u"ABC.AX");
  gateway().priceUpdater().runPass();
  EXPECT_EQ(shares(m_friday, m_friday), Texts{u"100.00 x 11.00"});
  restart(m_monday, false);
  m_interaction.answerRatio(2);
  update();
  EXPECT_EQ(m_interaction.calls(Kind::AskRatio).size(), 1u);
  EXPECT_EQ(shares(m_friday, m_friday), Texts{u"200.00 x 11.00"});
  restart(m_monday, false);
  EXPECT_EQ(TestProfile::readFile(file()).find("RecomputeFrom"), std::string::npos);
}

TEST_F(ProvisionalDaysTest, ACodeTakenForDelistedByMistakeLeavesNoTraceInItsLastDays) {
  m_market.answerWith(MarketFixture::Page::History, "<html><body><form>Please log in</form></body></html>");
  m_interaction.answerQuestion(true);
  restart(m_monday, true);
  update();
  EXPECT_TRUE(gateway().isBadCode(u"ABC.AX"));
  m_market.answerWith(MarketFixture::Page::History, "");
  closeTheWeek();
  gateway().clearBadCode(u"ABC.AX");
  restart(m_monday, true);
  update();
  EXPECT_EQ(shares(m_friday, m_friday), Texts{u"100.00 x 23.00"});
}

TEST_F(ProvisionalDaysTest, ALivePriceEndsTheStandInOfToday) {
  restart(m_monday, false);
  update();
  record().currentPriceUpdated(u"ABC.AX", 24);
  EXPECT_EQ(shares(m_monday, m_monday), Texts{u"100.00 x 24.00"});
  record().historicalPriceChanged(u"ABC.AX", m_friday, 23);
  EXPECT_EQ(shares(m_friday, m_friday), Texts{u"100.00 x 23.00"});
}

/// Receives price notifications like a view.
class NotingView : public PriceUpdater::PricesObserver {
public:
  void currentPriceUpdated(const String&, double) override {}
  void historicalPriceChanged(const String&, const Date& date, double) override { days.insert(date); }
  std::set<Date> days;
};

TEST_F(ProvisionalDaysTest, APassOfTheUpdaterFetchesWhatIsMissingAndTellsTheViews) {
  restart(Date(2026, 3, 12), false); // More than a week ago.
  update();
  EXPECT_TRUE(record().isProvisional(m_friday));
  m_market.setHistory(u"ABC.AX", m_thursday, Date(2026, 3, 12), 22);
  goOnline();
  gateway().priceUpdater().addCode(u"ABC.AX");
  NotingView view;
  gateway().priceUpdater().addObserver(&view);
  gateway().priceUpdater().runPass();
  gateway().priceUpdater().removeObserver(&view);
  EXPECT_EQ(fetches(), 1u);
  for (Date day = m_friday; day <= Date(2026, 3, 12); day.addDays(1)) {
    EXPECT_FALSE(record().isProvisional(day)) << day.toString(DATE_DISPLAY_DMY).toUTF8();
    EXPECT_EQ(view.days.count(day), 1u) << day.toString(DATE_DISPLAY_DMY).toUTF8();
  }
  EXPECT_EQ(textValue(record().dayCapFor(m_friday).subElement(u"ShareVals"), u"Price"), String(u"22.00"));
  gateway().priceUpdater().runPass();
  EXPECT_EQ(fetches(), 1u) << "nothing is missing any more";
}

TEST_F(ProvisionalDaysTest, APassAsksOnceForWhatOnePageOfTheSourceReaches) {
  const Date later(2026, 4, 20);
  m_market.setMaxEntries(10);
  restart(later, false);
  update();
  m_market.setHistory(u"ABC.AX", m_thursday, later, 22);
  goOnline();
  gateway().priceUpdater().addCode(u"ABC.AX");
  for (int pass = 0; pass < 3; ++pass)
    gateway().priceUpdater().runPass();
  EXPECT_EQ(fetches(), 1u);
  EXPECT_FALSE(record().isProvisional(later.plusDays(-3)));
  EXPECT_TRUE(record().isProvisional(m_friday)) << "too long ago for that";
  update();
  EXPECT_FALSE(record().isProvisional(m_friday));
}

TEST_F(ProvisionalDaysTest, APassDoesNotAskAgainForWhatTheSourceHasNot) {
  m_market.addListing(u"NEW.AX", u"new", u"Australia");
  m_market.setCurrentPrice(u"NEW.AX", 5);
  user().addBuyEvent(u"NEW.AX", {m_thursday, 10, 3, 0, u""});
  restart(m_monday, false);
  update();
  EXPECT_TRUE(record().isProvisional(m_friday));
  m_market.setDay(u"NEW.AX", m_monday, 5);
  goOnline();
  gateway().priceUpdater().addCode(u"NEW.AX");
  for (int pass = 0; pass < 3; ++pass)
    gateway().priceUpdater().runPass();
  EXPECT_EQ(fetches(), 1u);
}

TEST_F(ProvisionalDaysTest, APassWhoseSourceDoesNotAnswerForACodeAsksForNoCloses) {
  restart(m_monday, false);
  update();
  closeTheWeek();
  goOnline();
  gateway().priceUpdater().addCode(u"ABC.AX");
  m_market.answerWith(MarketFixture::Page::Quote, "<html><body><form>Please log in</form></body></html>");
  gateway().priceUpdater().runPass();
  EXPECT_EQ(fetches(), 0u);
  EXPECT_TRUE(record().isProvisional(m_friday));
}

TEST_F(ProvisionalDaysTest, AStockWithoutAnyPriceCountsAtItsPurchaseUntilItsPriceComes) {
  m_profile.setToday(m_monday);
  const DenyingUser user;
  gateway().goOffline();
  this->user().removeHeldShare(u"ABC.AX");
  this->user().addBuyEvent(u"NEW.AX", {m_friday, 10, 3, 0, u""});
  update();
  EXPECT_EQ(shares(m_friday, m_friday), Texts{u"10.00 x 3.00 *"});
  m_market.setHistory(u"NEW.AX", m_friday, m_monday, 1.5);
  goOnline();
  update();
  EXPECT_EQ(shares(m_friday, m_monday),
            (Texts{u"10.00 x 1.50", u"10.00 x 1.50", u"10.00 x 1.50", u"10.00 x 1.50"}));
  EXPECT_TRUE(user.calls(Kind::AskRatio).empty());
}

TEST_F(ProvisionalDaysTest, ADayWithoutTradeIsNotProvisional) {
  // The source answers for Saturday without a price.
  closeTheWeek();
  restart(Date(2026, 2, 28), true);
  update();
  EXPECT_EQ(shares(m_friday, Date(2026, 2, 28)), (Texts{u"100.00 x 23.00", u"100.00 x 23.00"}));
}

TEST_F(ProvisionalDaysTest, NoDayOfTheFutureIsKeptInTheCacheOfAClockThatWasAhead) {
  m_market.setHistory(u"ABC.AX", m_thursday, Date(2026, 3, 20), 30);
  restart(Date(2026, 3, 20), true);
  update();
  restart(m_friday, false);
  update();
  EXPECT_FALSE(record().hasDayCap(Date(2026, 2, 28)));
  EXPECT_FALSE(gateway().hasCachedPrice(u"ABC.AX", Date(2026, 2, 28)));
  EXPECT_TRUE(gateway().hasCachedPrice(u"ABC.AX", m_friday));
}

TEST_F(ProvisionalDaysTest, ATypedPriceOutlivesAClockThatIsSlow) {
  restart(Date(2026, 3, 20), false);
  gateway().setCachedPrice(u"ABC.AX", Date(2026, 3, 20), 35);
  restart(m_friday, false);
  gateway().setCachedPrice(u"ABC.AX", m_friday, 30); // The file is written again.
  restart(Date(2026, 3, 20), false);
  update();
  EXPECT_EQ(shares(Date(2026, 3, 20), Date(2026, 3, 20)), Texts{u"100.00 x 35.00"});
}

TEST_F(ProvisionalDaysTest, WithoutATypedPriceThatWasTheOnlyOneThePurchaseCountsAgain) {
  gateway().goOffline();
  user().addBuyEvent(u"NEW.AX", {Date(2026, 2, 25), 10, 5, 0, u""});
  update();
  gateway().setCachedPrice(u"NEW.AX", Date(2026, 2, 25), 7);
  update();
  ASSERT_DOUBLE_EQ(record().priceOn(u"NEW.AX", m_thursday)->price, 7);
  gateway().removeTypedPrice(u"NEW.AX", Date(2026, 2, 25));
  update();
  for (const Date& day : {Date(2026, 2, 25), m_thursday}) {
    EXPECT_DOUBLE_EQ(record().priceOn(u"NEW.AX", day)->price, 5);
    EXPECT_EQ(record().priceOn(u"NEW.AX", day)->standing, PriceStanding::Transaction);
  }
}

TEST_F(ProvisionalDaysTest, AfterACrashNoDayHasAPriceThatWasForgotten) {
  record().save();
  ASSERT_TRUE(std::filesystem::exists(file().toUTF8()));
  gateway().priceUpdater().tellPricesForgotten();
  EXPECT_FALSE(std::filesystem::exists(file().toUTF8()));
  EXPECT_DOUBLE_EQ(record().capitalOn(m_thursday), 3100) << "until the next update";
  gateway().clear();
  gateway().goOffline();
  gateway().priceUpdater().setCurrentPrice(u"ABC.AX", 30);
  update();
  EXPECT_DOUBLE_EQ(record().capitalOn(m_thursday), 4000);
  EXPECT_DOUBLE_EQ(record().capitalOn(m_thursday.plusDays(-1)), 5000) << "that of the purchase";
}

} // namespace
} // namespace Tallymoor
