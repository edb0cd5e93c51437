#include "market/PriceUpdater.h"
#include "foundation/RunTimeSettings.h"
#include "market/GatewayTest.h"
#include "market/StockNames.h"
#include <stdexcept>

namespace Tallymoor {
namespace {

// Passes on the test's own thread: fetches, stored prices, notifications and their order.

class PriceUpdaterTest : public GatewayTest {
protected:
  ~PriceUpdaterTest() override { readSettings(); }

  void watch(const String& code, double price) {
    m_market.setCurrentPrice(code, price);
    updater().addCode(code);
  }
  static void runPass() { updater().runPass(); }
  /// Several requests are under way at once, so that they come in in any order.
  std::vector<String> codesAskedFor() const {
    std::vector<String> codes = m_market.requested(Page::Quote);
    std::sort(codes.begin(), codes.end());
    return codes;
  }
};

// --- Codes and prices

TEST_F(PriceUpdaterTest, ANewCodeHasNoPriceAndAKnownCodeKeepsIts) {
  updater().addCode(m_code);
  EXPECT_TRUE(updater().hasCode(m_code));
  EXPECT_DOUBLE_EQ(updater().getCurrentPrice(m_code), 0.0);
  updater().setCurrentPrice(m_code, 5.0);
  updater().addCode(m_code);
  EXPECT_DOUBLE_EQ(updater().getCurrentPrice(m_code), 5.0);
  updater().removeCode(m_code);
  EXPECT_FALSE(updater().hasCode(m_code));
}

TEST_F(PriceUpdaterTest, AnUnknownCodeHasNoPrice) {
  EXPECT_EQ(failureOf<Exception>([&] { updater().getCurrentPrice(m_code); }),
            String(u"PriceUpdater::getCurrentPrice - dont' have this code: ABC.AX"));
  updater().setCurrentPrice(m_code, 5.0);
  EXPECT_FALSE(updater().hasCode(m_code));
}

TEST_F(PriceUpdaterTest, ADelistedCodeIsNotAdded) {
  gateway().markBadCode(m_code);
  updater().addCode(m_code);
  EXPECT_FALSE(updater().hasCode(m_code));
}

TEST_F(PriceUpdaterTest, TheLatestPriceIsTheCurrentOne) {
  updater().addCode(m_code);
  updater().setCurrentPrice(m_code, 0.0001);
  EXPECT_DOUBLE_EQ(updater().getLatestPrice(m_code), 0.0001);
  EXPECT_TRUE(m_market.requested(Page::History).empty());
}

TEST_F(PriceUpdaterTest, TheLatestPriceIsTodaysCloseWhereThereIsNoCurrentOne) {
  m_market.setHistory(m_code, Date(2006, 11, 1), m_friday, 5.0);
  EXPECT_DOUBLE_EQ(updater().getLatestPrice(m_code), 5.0);
  updater().addCode(m_code);
  EXPECT_DOUBLE_EQ(updater().getLatestPrice(m_code), 5.0);
  updater().setCurrentPrice(m_code, 0.00004);
  EXPECT_DOUBLE_EQ(updater().getLatestPrice(m_code), 5.0);
}

TEST_F(PriceUpdaterTest, APriceThatRoundsToZeroIsIgnored) {
  m_market.setHistory(m_code, Date(2006, 11, 1), m_today, 0.0);
  EXPECT_EQ(failureOf<Exception>([&] { updater().getLatestPrice(m_code); }),
            String(u"PriceUpdater::getLatestPrice - could not get price for ABC.AX"));
}

// --- A pass

TEST_F(PriceUpdaterTest, APassFetchesAllCodesInOrderAndNotifiesTheObservers) {
  watch(u"BBB", 2.0);
  watch(u"AAA", 1.0);
  RecordingObserver observer;
  runPass();
  EXPECT_EQ(codesAskedFor(), (std::vector<String>{u"AAA", u"BBB"}));
  EXPECT_EQ(observer.heard(), (std::vector<String>{u"price AAA 1.0000", u"price BBB 2.0000", u"finished"}));
  EXPECT_DOUBLE_EQ(updater().getCurrentPrice(u"BBB"), 2.0);
  EXPECT_EQ(statuses(),
            (std::vector<String>{u"updating current price for AAA", u"updating current price for BBB"}));
}

TEST_F(PriceUpdaterTest, ANameThatNobodyKnowsIsAskedForOnceARun) {
  watch(m_code, 1.5);
  watch(u"DEF.AX", 2.5);
  m_market.addListing(m_code, u"Alphabet Bricks", u"Australia");
  runPass();
  EXPECT_EQ(StockNames::nameOf(m_code), u"Alphabet Bricks");
  EXPECT_EQ(StockNames::nameOf(u"DEF.AX"), String());
  runPass();
  EXPECT_EQ(m_market.requested(Page::Search).size(), 2u);
  gateway().forgetFailures();
  runPass();
  EXPECT_EQ(m_market.requested(Page::Search).size(), 3u) << "the one without a name";
}

TEST_F(PriceUpdaterTest, APassWithoutCodesNotifiesOfItsEnd) {
  RecordingObserver observer;
  runPass();
  EXPECT_EQ(observer.heard(), std::vector<String>{u"finished"});
  EXPECT_TRUE(statuses().empty());
}

TEST_F(PriceUpdaterTest, TheCacheAndRecordsAreNotifiedBeforeTheViews) {
  watch(m_code, 1.5);
  std::vector<String> heard;
  RecordingObserver view(PriceUpdater::Rank::Views, &heard, u"view ");
  RecordingObserver record(PriceUpdater::Rank::Records, &heard, u"record ");
  RecordingObserver secondView(PriceUpdater::Rank::Views, &heard, u"second view ");
  record.onPrice = [this](const String& code) {
    EXPECT_DOUBLE_EQ(gateway().getCachedPrice(code, m_today, 0), 1.5);
    EXPECT_DOUBLE_EQ(updater().getCurrentPrice(code), 1.5);
  };
  runPass();
  EXPECT_EQ(heard, (std::vector<String>{u"record price ABC.AX 1.5000", u"view price ABC.AX 1.5000",
                                        u"second view price ABC.AX 1.5000", u"record finished",
                                        u"view finished", u"second view finished"}));
}

TEST_F(PriceUpdaterTest, ObserversAreCalledUnderTheBigMutexInABackgroundPass) {
  watch(m_code, 1.5);
  RecordingObserver observer;
  int calls = 0;
  observer.onPrice = [&calls](const String&) {
    ++calls;
    EXPECT_TRUE(inBackgroundPass);
    EXPECT_TRUE(bigMutex().heldByThisThread());
  };
  runPass();
  EXPECT_EQ(calls, 1);
  EXPECT_FALSE(inBackgroundPass);
  EXPECT_FALSE(bigMutex().heldByThisThread());
}

TEST_F(PriceUpdaterTest, AnObserverRemovedDuringAPassIsNotCalled) {
  watch(m_code, 1.5);
  watch(u"DEF.AX", 2.5);
  RecordingObserver first(PriceUpdater::Rank::Records);
  RecordingObserver self;
  RecordingObserver other;
  first.onPrice = [&other](const String&) { updater().removeObserver(&other); };
  self.onPrice = [&self](const String&) { updater().removeObserver(&self); };
  runPass();
  EXPECT_EQ(first.heard().size(), 3u);
  EXPECT_EQ(self.heard(), std::vector<String>{u"price ABC.AX 1.5000"});
  EXPECT_TRUE(other.heard().empty());
}

TEST_F(PriceUpdaterTest, AnObserverAddedDuringAPassIsNotifiedInTheNext) {
  watch(m_code, 1.5);
  RecordingObserver first;
  RecordingObserver late;
  updater().removeObserver(&late);
  first.onPrice = [&late](const String&) { updater().addObserver(&late); };
  runPass();
  EXPECT_TRUE(late.heard().empty());
  runPass();
  EXPECT_EQ(late.heard(), (std::vector<String>{u"price ABC.AX 1.5000", u"finished"}));
}

TEST_F(PriceUpdaterTest, AnObserverIsAddedOnce) {
  RecordingObserver observer;
  updater().addObserver(&observer);
  updater().addObserver(&observer, PriceUpdater::Rank::Records);
  runPass();
  EXPECT_EQ(observer.heard(), std::vector<String>{u"finished"});
}

TEST_F(PriceUpdaterTest, ACodeAddedDuringAPassIsFetchedInTheNext) {
  watch(m_code, 1.5);
  RecordingObserver observer;
  observer.onPrice = [this](const String&) { watch(u"DEF.AX", 2.5); };
  runPass();
  EXPECT_EQ(m_market.requested(Page::Quote), std::vector<String>{m_code});
  runPass();
  EXPECT_DOUBLE_EQ(updater().getCurrentPrice(u"DEF.AX"), 2.5);
}

TEST_F(PriceUpdaterTest, ACodeThatIsRemovedDuringAPassIsFetchedAndItsPriceDropped) {
  watch(m_code, 1.5);
  watch(u"DEF.AX", 2.5);
  RecordingObserver observer;
  observer.onPrice = [](const String&) { updater().removeCode(u"DEF.AX"); };
  runPass();
  EXPECT_EQ(codesAskedFor(), (std::vector<String>{m_code, u"DEF.AX"}));
  EXPECT_FALSE(updater().hasCode(u"DEF.AX"));
}

TEST_F(PriceUpdaterTest, APriceOfZeroIsNeitherStoredNorReported) {
  watch(m_code, 0.00001);
  updater().setCurrentPrice(m_code, 3.0);
  RecordingObserver observer;
  runPass();
  EXPECT_DOUBLE_EQ(updater().getCurrentPrice(m_code), 3.0);
  EXPECT_EQ(observer.heard(), std::vector<String>{u"finished"});
  EXPECT_FALSE(gateway().hasCachedPrice(m_code, m_today));
}

TEST_F(PriceUpdaterTest, ACodeMarkedAsDelistedLaterIsShownButNotCached) {
  watch(m_code, 1.5);
  gateway().markBadCode(m_code);
  RecordingObserver observer;
  runPass();
  EXPECT_EQ(observer.heard(), (std::vector<String>{u"price ABC.AX 1.5000", u"finished"}));
  EXPECT_DOUBLE_EQ(updater().getCurrentPrice(m_code), 1.5);
  EXPECT_FALSE(gateway().hasCachedPrice(m_code, m_today));
}

// --- Failures

TEST_F(PriceUpdaterTest, AFailedCodeDoesNotAffectTheOthersAndShowsInTheStatusLine) {
  watch(u"AAA", 1.0);
  updater().addCode(u"BBB");
  watch(u"CCC", 3.0);
  RecordingObserver observer;
  runPass();
  EXPECT_EQ(observer.heard(), (std::vector<String>{u"price AAA 1.0000", u"price CCC 3.0000", u"finished"}));
  const String message = failureOf<HTMLException>([] { gateway().currentPrice(u"BBB", false, true); });
  EXPECT_EQ(statuses().back(), u"PriceUpdater::threadFunction failed: BBB: " + message);
  EXPECT_TRUE(questions().empty());
  EXPECT_FALSE(inBackgroundPass);
  EXPECT_FALSE(bigMutex().heldByThisThread());
  m_market.setCurrentPrice(u"BBB", 2.0);
  runPass();
  EXPECT_DOUBLE_EQ(updater().getCurrentPrice(u"BBB"), 2.0);
}

TEST_F(PriceUpdaterTest, TheStatusLineNamesTheFirstFailureAndCountsTheOthers) {
  updater().addCode(u"AAA");
  m_market.refuse(Page::Quote, 404);
  updater().addCode(u"BBB");
  watch(u"CCC", 3.0);
  runPass();
  EXPECT_EQ(statuses().back(), String(u"PriceUpdater::threadFunction failed: AAA: "
                                      u"Win32HTTPClient::getResponse - HTTP GET failed \nwith code: 404 and "
                                      u"status: Not Found (and 2 more)"));
}

TEST_F(PriceUpdaterTest, AQuoteWithoutANumberIsIgnoredLikeAPriceOfZero) {
  for (const char* const text : {"N/A", "-", ""}) {
    m_market.answerWith(Page::Quote, std::string("<html><div id=\"price\">") + text + "</div></html>");
    updater().addCode(m_code);
    updater().setCurrentPrice(m_code, 3.0);
    RecordingObserver observer;
    runPass();
    EXPECT_DOUBLE_EQ(updater().getCurrentPrice(m_code), 3.0);
    EXPECT_EQ(observer.heard(), std::vector<String>{u"finished"});
    EXPECT_FALSE(gateway().hasCachedPrice(m_code, m_today));
    EXPECT_EQ(statuses().back(), String(u"updating current price for ABC.AX")) << "no failure is shown";
  }
}

TEST_F(PriceUpdaterTest, GoingOfflineDuringAPassEndsItAtTheNextFetch) {
  watch(m_code, 1.5);
  watch(u"DEF.AX", 2.5);
  RecordingObserver observer;
  observer.onPrice = [](const String&) { gateway().goOffline(); };
  runPass();
  EXPECT_EQ(observer.heard(), std::vector<String>{u"price ABC.AX 1.5000"});
  EXPECT_EQ(statuses().back(),
            String(u"PriceUpdater::threadFunction failed: TallymoorInternet::currentPrice - "
                   u"internet offline."));
}

TEST_F(PriceUpdaterTest, AFailureOfAnObserverCountsAsOneOfTheCode) {
  watch(m_code, 1.5);
  watch(u"DEF.AX", 2.5);
  RecordingObserver observer;
  observer.onPrice = [this](const String& code) {
    if (code == m_code)
      throw Exception(u"the observer fails");
  };
  runPass();
  EXPECT_EQ(statuses().back(), String(u"PriceUpdater::threadFunction failed: ABC.AX: the observer fails"));
  EXPECT_DOUBLE_EQ(updater().getCurrentPrice(u"DEF.AX"), 2.5);
  observer.onPrice = [](const String&) { throw std::runtime_error("a library fails"); };
  runPass();
  EXPECT_EQ(statuses().back(),
            String(u"PriceUpdater::threadFunction failed: ABC.AX: a library fails (and 1 more)"));
  EXPECT_FALSE(inBackgroundPass);
  EXPECT_FALSE(bigMutex().heldByThisThread());
}

// --- Recent closes

TEST_F(PriceUpdaterTest, RecentClosesAreRefreshedAfterTheirPeriod) {
  watch(m_code, 1.5);
  m_market.setHistory(m_code, Date(2006, 11, 1), m_today, 1.5);
  runPass();
  m_clock->tick += 8 * HOUR;
  runPass();
  EXPECT_TRUE(m_market.requested(Page::History).empty());
  m_clock->tick += 1;
  runPass();
  EXPECT_EQ(m_market.requested(Page::History), std::vector<String>{m_code});
  EXPECT_EQ(statuses().back(), String(u"updating recent historical prices for ABC.AX"));
  EXPECT_EQ(m_market.requestedRanges().at(0).end, m_today);
  m_clock->tick += 8 * HOUR;
  runPass();
  EXPECT_EQ(m_market.requested(Page::History).size(), 1u);
}

TEST_F(PriceUpdaterTest, TheClockMayWrapAround) {
  m_clock->tick = 0xFFFFFFFF - HOUR;
  watch(m_code, 1.5);
  m_market.setHistory(m_code, Date(2006, 11, 1), m_today, 1.5);
  m_clock->tick = 2 * HOUR;
  runPass();
  EXPECT_TRUE(m_market.requested(Page::History).empty());
  m_clock->tick = 7 * HOUR + 1;
  runPass();
  EXPECT_EQ(m_market.requested(Page::History).size(), 1u);
}

TEST_F(PriceUpdaterTest, TheHoursBetweenChecksAreASetting) {
  historicalPriceUpdateHours = 1;
  watch(m_code, 1.5);
  m_market.setHistory(m_code, Date(2006, 11, 1), m_today, 1.5);
  m_clock->tick += HOUR + 1;
  runPass();
  EXPECT_EQ(m_market.requested(Page::History).size(), 1u);
  // From here on the setting is 0, which counts as an hour.
  historicalPriceUpdateHours = 0;
  m_clock->tick += HOUR + 1;
  runPass();
  m_clock->tick += HOUR;
  runPass();
  EXPECT_EQ(m_market.requested(Page::History).size(), 2u);
}

TEST_F(PriceUpdaterTest, ChangedClosesAreReportedLatestFirst) {
  m_market.setHistory(m_code, Date(2006, 11, 1), Date(2006, 11, 14), 1.5);
  gateway().historicalPrice(m_code, m_today, true);
  watch(m_code, 1.75);
  // The exchange corrects Monday and a day before the last week, and publishes today's close.
  m_market.setDay(m_code, Date(2006, 11, 13), 1.485);
  m_market.setDay(m_code, Date(2006, 11, 8), 1.485);
  m_market.setDay(m_code, m_today, 2.0);
  RecordingObserver observer;
  m_clock->tick += 8 * HOUR + 1;
  runPass();
  EXPECT_EQ(observer.heard(), (std::vector<String>{u"price ABC.AX 1.7500", u"close ABC.AX 15/11/2006 2.0000",
                                                   u"close ABC.AX 13/11/2006 1.4850",
                                                   u"close ABC.AX 8/11/2006 1.4850", u"finished"}));
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, Date(2006, 11, 8), 0), 1.485);
}

TEST_F(PriceUpdaterTest, ADayThatWasNotCachedCountsAsZero) {
  m_market.setHistory(m_code, Date(2006, 11, 14), m_today, 1.5);
  watch(m_code, 1.5);
  RecordingObserver observer;
  m_clock->tick += 8 * HOUR + 1;
  runPass();
  // Today's row comes from the current price of the same pass.
  EXPECT_EQ(observer.heard(),
            (std::vector<String>{u"price ABC.AX 1.5000", u"close ABC.AX 14/11/2006 1.5000", u"finished"}));
}

TEST_F(PriceUpdaterTest, ARefreshedCloseOfZeroIsNoPrice) {
  m_market.setHistory(m_code, Date(2006, 11, 1), Date(2006, 11, 14), 1.5);
  gateway().historicalPrice(m_code, m_today, true);
  watch(m_code, 1.5);
  m_market.setDay(m_code, Date(2006, 11, 13), 0.0);
  RecordingObserver observer;
  m_clock->tick += 8 * HOUR + 1;
  runPass();
  EXPECT_EQ(observer.heard(), (std::vector<String>{u"price ABC.AX 1.5000", u"finished"}));
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, Date(2006, 11, 13), 0), 1.5);
}

TEST_F(PriceUpdaterTest, AnUnknownDayWithACloseOfZeroIsNotReported) {
  m_market.setHistory(m_code, Date(2006, 11, 13), m_today, 0.0);
  watch(m_code, 1.5);
  RecordingObserver observer;
  m_clock->tick += 8 * HOUR + 1;
  runPass();
  EXPECT_EQ(observer.heard(), (std::vector<String>{u"price ABC.AX 1.5000", u"finished"}));
}

TEST_F(PriceUpdaterTest, DelistedCodesAreNotChecked) {
  watch(m_code, 1.5);
  watch(u"DEF.AX", 2.5);
  m_market.setHistory(u"DEF.AX", Date(2006, 11, 1), m_today, 2.5);
  gateway().markBadCode(m_code);
  m_clock->tick += 8 * HOUR + 1;
  runPass();
  EXPECT_EQ(m_market.requested(Page::History), std::vector<String>{u"DEF.AX"});
}

TEST_F(PriceUpdaterTest, AFailedCheckAsksNothingAndLeavesTheOtherCodes) {
  watch(m_code, 1.5);
  watch(u"DEF.AX", 2.5);
  m_market.setDay(u"DEF.AX", m_today, 2.25);
  RecordingObserver observer;
  m_clock->tick += 8 * HOUR + 1;
  runPass();
  EXPECT_EQ(observer.heard(), (std::vector<String>{u"price ABC.AX 1.5000", u"price DEF.AX 2.5000",
                                                   u"close DEF.AX 15/11/2006 2.2500", u"finished"}));
  EXPECT_TRUE(questions().empty());
  EXPECT_TRUE(
      statuses().back().startsWith(u"PriceUpdater::threadFunction failed: ABC.AX: HTMLTable::fillFrom"));
  EXPECT_FALSE(inBackgroundPass);
}

// --- Settings

TEST_F(PriceUpdaterTest, APassAppliesThePeriodOfTheSettings) {
  watch(m_code, 1.5);
  EXPECT_EQ(updater().period(), 10u * 60000);
  currentPriceUpdateMins = 3;
  EXPECT_EQ(updater().period(), 10u * 60000);
  runPass();
  EXPECT_EQ(updater().period(), 3u * 60000);
  currentPriceUpdateMins = 4;
  gateway().goOffline(); // A failing pass does so too.
  runPass();
  EXPECT_EQ(updater().period(), 4u * 60000);
}

TEST_F(PriceUpdaterTest, ThePeriodOfTheSettingsIsLimited) {
  EXPECT_EQ(PriceUpdater::passPeriod(), 10u * 60000);
  currentPriceUpdateMins = 3;
  EXPECT_EQ(PriceUpdater::passPeriod(), 3u * 60000);
  currentPriceUpdateMins = 0;
  EXPECT_EQ(PriceUpdater::passPeriod(), 60000u);
  currentPriceUpdateMins = 4000000000;
  EXPECT_EQ(PriceUpdater::passPeriod(), 4294920000u);
}

} // namespace
} // namespace Tallymoor
