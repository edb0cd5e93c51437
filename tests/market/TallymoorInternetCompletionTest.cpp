#include "foundation/LengthyFunctions.h"
#include "foundation/NotYetKnown.h"
#include "foundation/RunTimeSettings.h"
#include "market/FetchQueue.h"
#include "market/GatewayTest.h"

namespace Tallymoor {
namespace {

/// Fetches the missing history of a code. Figures stay empty where prices are unavailable.
class CompletionTest : public GatewayTest {
protected:
  using Need = HistoryNeed::Kind;
  /// As a chart needs the days.
  static HistoryNeed back(const String& code, const Date& first, const Date& last) {
    return {code, first, last, Need::Backward};
  }
  void complete(const Date& first, const Date& last) { complete(m_code, first, last); }
  void complete(const String& code, const Date& first, const Date& last) {
    gateway().requestHistory(back(code, first, last));
    gateway().historyFetcher().join();
    expectNothingAsked();
  }
  /// Checks that the fetch was shown in the status line and by the wait cursor only.
  void expectNothingAsked() const {
    for (const FakeUserInteraction::Call& call : m_user.calls())
      EXPECT_TRUE(call.kind == Kind::Status || call.kind == Kind::BeginWait || call.kind == Kind::EndWait)
          << call.text.toUTF8();
    EXPECT_EQ(m_user.openWaits(), 0);
  }
  void reconnect() {
    m_market.addListing(u"TEST.AX", u"Test", u"Australia"); // Going online searches for it.
    ASSERT_TRUE(gateway().reconnect());
    updater().stopAndJoin();
    m_user.clearCalls();
  }
  std::size_t numFetches() const { return m_market.requested(Page::History).size(); }

  const Date m_first{2006, 5, 1};
};

TEST_F(CompletionTest, CompleteDaysAreNotFetched) {
  for (Date day = m_first; day <= m_friday; day.addDays(1))
    gateway().setCachedPrice(m_code, day, 5);
  complete(m_first, m_friday);
  EXPECT_EQ(numFetches(), 0u);
}

TEST_F(CompletionTest, ASingleMissingDayIsFetched) {
  m_market.setHistory(m_code, Date(2005, 1, 1), m_today, 7);
  for (Date day = m_first; day <= m_friday; day.addDays(1))
    if (day != Date(2006, 8, 9))
      gateway().setCachedPrice(m_code, day, 5);
  complete(m_first, m_friday);
  EXPECT_EQ(numFetches(), 1u);
  EXPECT_EQ(gateway().cachedClose(m_code, Date(2006, 8, 9)), 7);
}

TEST_F(CompletionTest, SmallPagesAreFetchedUntilTheFirstDayIsReached) {
  m_market.setMaxEntries(50); // Covers 70 days.
  m_market.setHistory(m_code, Date(2005, 1, 1), m_today, 7);
  complete(m_first, m_friday);
  EXPECT_EQ(numFetches(), 3u);
  EXPECT_EQ(gateway().cachedRows(m_code, m_first, m_friday).size(),
            static_cast<std::size_t>(m_friday.daysSince(m_first)) + 1);
}

TEST_F(CompletionTest, DaysBeforeTheListingAreRequestedOncePerRun) {
  m_market.setHistory(m_code, Date(2006, 9, 1), m_today, 7);
  for (int again = 0; again < 3; ++again)
    complete(m_first, m_friday);
  EXPECT_EQ(numFetches(), 2u); // The page with the listing and the empty one before it.
  m_profile.setToday(m_today.plusDays(1));
  complete(m_first, m_friday);
  EXPECT_EQ(numFetches(), 2u);
  gateway().forgetFailures();
  complete(m_first, m_friday);
  EXPECT_EQ(numFetches(), 3u);
}

TEST_F(CompletionTest, AnEmptyPageEndsTheCompletionAndNoOtherRequest) {
  m_market.setHistory(m_code, Date(2004, 1, 5), Date(2004, 4, 1), 6);
  m_market.setHistory(m_code, Date(2006, 6, 1), m_today, 7); // After two years without trades.
  for (int again = 0; again < 3; ++again)
    complete(Date(2004, 1, 5), m_friday);
  EXPECT_EQ(numFetches(), 2u);
  EXPECT_FALSE(gateway().hasCachedPrice(m_code, Date(2004, 3, 9)));
  EXPECT_EQ(gateway().historicalPrice(m_code, Date(2004, 3, 9), true), 6) << "who needs a price gets it";
}

TEST_F(CompletionTest, TenYearsAreCompletedAtOnce) {
  const Date first(1996, 11, 15);
  m_market.setHistory(m_code, first, m_today, 7);
  complete(first, m_today);
  EXPECT_EQ(gateway().cachedRows(m_code, first, m_today).size(),
            static_cast<std::size_t>(m_today.daysSince(first)) + 1);
}

TEST_F(CompletionTest, AnUnknownCodeAndARefusalCostOneTryEach) {
  for (int again = 0; again < 3; ++again)
    complete(m_first, m_friday);
  EXPECT_EQ(numFetches(), 1u);
  m_market.refuse(Page::History, 500);
  for (int again = 0; again < 3; ++again)
    complete(u"XYZ.AX", m_first, m_friday);
  EXPECT_EQ(numFetches(), 2u);
}

TEST_F(CompletionTest, OnlyFetchesAreShown) {
  m_market.setHistory(m_code, Date(2005, 1, 1), m_today, 7);
  complete(m_first, m_friday);
  EXPECT_EQ(statuses(), std::vector<String>{u"updating historical prices for ABC.AX"});
  complete(m_first, m_friday);
  EXPECT_EQ(statuses().size(), 1u);
  EXPECT_TRUE(m_user.calls(Kind::BeginWait).empty()) << "the user goes on";
}

TEST_F(CompletionTest, EarlierDaysOfACodeThatFailedAreNotTried) {
  complete(m_first, m_friday);
  complete(m_first, m_friday.plusDays(-7));
  complete(Date(2005, 1, 1), Date(2005, 2, 1));
  EXPECT_EQ(numFetches(), 1u);
}

TEST_F(CompletionTest, GoingOnlineClearingTheCacheAndForgivingACodeAllowAnotherTry) {
  complete(m_first, m_friday);
  reconnect();
  complete(m_first, m_friday);
  EXPECT_EQ(numFetches(), 2u);
  gateway().clear();
  complete(m_first, m_friday);
  EXPECT_EQ(numFetches(), 3u);
  gateway().markBadCode(m_code);
  gateway().clearBadCode(m_code);
  complete(m_first, m_friday);
  EXPECT_EQ(numFetches(), 4u);
}

TEST_F(CompletionTest, ADelistedCodeIsNotFetched) {
  gateway().markBadCode(m_code);
  complete(m_first, m_friday);
  EXPECT_EQ(numFetches(), 0u);
}

TEST_F(CompletionTest, OfflineNothingIsRequestedAndNoFailureIsRecorded) {
  m_market.setHistory(m_code, Date(2005, 1, 1), m_today, 7);
  gateway().goOffline();
  complete(m_first, m_friday);
  EXPECT_TRUE(gateway().cachedRows(m_code, m_first, m_friday).empty());
  reconnect();
  complete(m_first, m_friday);
  EXPECT_EQ(numFetches(), 1u);
}

TEST_F(CompletionTest, AnUnreadableFileIsReportedWhenAPriceIsRequested) {
  TestProfile::writeFile(m_profile.cacheFolder() + u"PriceCache.ABC.AX.xml", "<ShareValues><broken");
  complete(m_first, m_friday);
  EXPECT_EQ(numFetches(), 0u);
  EXPECT_THROW(gateway().historicalPrice(m_code, m_friday, true), XMLException);
}

TEST_F(CompletionTest, TheUserGoesOnWhileSeveralCodesAreFetchedAtOnce) {
  const std::vector<String> codes{u"AAA", u"BBB", u"CCC", u"DDD", u"EEE", u"FFF", u"GGG"};
  m_market.stall(Page::History);
  {
    const BigMutexLock handler;
    for (const String& code : codes) {
      m_market.setHistory(code, Date(2005, 1, 3), m_today, 7);
      EXPECT_TRUE(gateway().requestHistory(back(code, m_first, m_friday)));
      EXPECT_TRUE(gateway().requestHistory(back(code, m_first, m_friday)))
          << "asked for again, and fetched once";
    }
  }
  m_market.awaitRequests(Page::History, FetchQueue::AT_ONCE);
  {
    const BigMutexLock handler; // would wait for ever if the fetches held it
    EXPECT_TRUE(gateway().cachedRows(codes.front(), m_first, m_friday).empty());
    EXPECT_EQ(numFetches(), FetchQueue::AT_ONCE);
  }
  m_market.release(Page::History);
  gateway().historyFetcher().join();
  for (const String& code : codes)
    EXPECT_FALSE(gateway().requestHistory(back(code, m_first, m_friday))) << code.toUTF8();
  EXPECT_EQ(numFetches(), codes.size());
  expectNothingAsked();
}

TEST_F(CompletionTest, ObserversHearOfEachPageAndOfAFailure) {
  m_market.setMaxEntries(50); // 70 days
  TallymoorInternet::reset();
  m_market.setHistory(m_code, Date(2005, 1, 1), m_today, 7);
  class Listener : public PriceUpdater::PricesObserver {
  public:
    Listener() { updater().addObserver(this); }
    ~Listener() override { updater().removeObserver(this); }
    void currentPriceUpdated(const String&, double) override {}
    void historyArrived(const String& code) override {
      EXPECT_TRUE(inBackgroundPass);
      EXPECT_TRUE(bigMutex().heldByThisThread());
      heard.push_back(code);
    }
    std::vector<String> heard;
  } listener;
  complete(m_first, m_friday);
  EXPECT_EQ(listener.heard, (std::vector<String>{m_code, m_code, m_code}));
  complete(u"NONE.AX", m_first, m_friday);
  EXPECT_EQ(listener.heard.back(), u"NONE.AX");
  EXPECT_EQ(listener.heard.size(), 4u);
}

TEST_F(CompletionTest, ALaterRequestDoesNotWaitForAnEarlierOne) {
  m_market.stall(Page::History);
  gateway().requestHistory(back(m_code, m_first, m_friday));
  m_market.awaitRequests(Page::History, 1);
  gateway().requestHistory(back(u"DEF.AX", m_first, m_friday));
  m_market.awaitRequests(Page::History, 2);
  m_market.release(Page::History);
  gateway().historyFetcher().join();
}

TEST_F(CompletionTest, DaysAreAskedForForwardUntilOneFails) {
  m_market.setMaxEntries(50); // 70 days
  TallymoorInternet::reset();
  m_market.setHistory(m_code, Date(2006, 9, 1), m_today, 7);
  gateway().requestHistory({m_code, Date(2006, 9, 4), m_friday});
  gateway().historyFetcher().join();
  EXPECT_EQ(gateway().cachedRows(m_code, Date(2006, 9, 4), m_friday).size(), 68u);
  EXPECT_EQ(m_market.requestedRanges().front().start, Date(2006, 9, 4));
  gateway().requestHistory({u"NONE.AX", m_first, m_friday});
  gateway().historyFetcher().join();
  EXPECT_EQ(numFetches(), 2u);
  EXPECT_FALSE(gateway().isToBeFetched(u"NONE.AX", m_first));
  EXPECT_TRUE(gateway().isToBeFetched(u"NONE.AX", m_friday)) << "the user is asked first";
}

TEST_F(CompletionTest, ADayWithoutACloseUpToItIsLookedForInThePageBefore) {
  m_market.setHistory(m_code, Date(2006, 10, 2), Date(2006, 10, 31), 6);
  m_market.setHistory(m_code, Date(2006, 11, 8), m_today, 7);
  gateway().requestHistory({m_code, Date(2006, 11, 6), Date(2006, 11, 6)});
  gateway().historyFetcher().join();
  EXPECT_EQ(numFetches(), 2u);
  EXPECT_EQ(gateway().cachedClose(m_code, Date(2006, 11, 6)), 6);
}

TEST_F(CompletionTest, AFailureOfTheNetworkEndsTheRequestsOfThoseWhoAsk) {
  m_market.refuse(Page::History, 503);
  std::vector<HistoryNeed> needs;
  {
    const BigMutexLock atOnce;
    for (int i = 0; i < 10; ++i)
      needs.push_back({u"C" + String::fromLong(i) + u".AX", m_first, m_friday});
    for (const HistoryNeed& need : needs)
      EXPECT_TRUE(gateway().requestHistory(need));
  }
  gateway().historyFetcher().join();
  EXPECT_FALSE(gateway().isToBeFetched(needs.front().code, m_first));
  for (std::size_t i = 1; i < needs.size(); ++i)
    EXPECT_TRUE(gateway().isToBeFetched(needs[i].code, m_first)) << "it is not blamed for that";
  EXPECT_LE(numFetches(), FetchQueue::AT_ONCE);
}

TEST_F(CompletionTest, AFigureThatCanNotDoWithoutThePriceSaysSoUntilItComes) {
  m_market.setHistory(m_code, Date(2005, 1, 1), m_today, 7);
  EXPECT_THROW(gateway().requirePrice(m_code, m_friday), NotYetKnown);
  gateway().historyFetcher().join();
  EXPECT_NO_THROW(gateway().requirePrice(m_code, m_friday));
  updater().addCode(m_code);
  EXPECT_THROW(gateway().requirePrice(m_code, m_today), NotYetKnown);
  updater().setCurrentPrice(m_code, 7.5);
  EXPECT_NO_THROW(gateway().requirePrice(m_code, m_today));
  gateway().historyFetcher().join();
}

TEST_F(CompletionTest, AnotherTryIsOfferedOnceAndIsMadeInTheBackground) {
  m_market.refuse(Page::History, 503);
  EXPECT_THROW(gateway().requirePrice(m_code, m_friday), NotYetKnown);
  gateway().historyFetcher().join();
  EXPECT_TRUE(questions().empty());
  m_user.answerQuestion(true);
  EXPECT_THROW(gateway().requirePrice(m_code, m_friday), NotYetKnown);
  EXPECT_EQ(questions().size(), 1u);
  gateway().historyFetcher().join();
  EXPECT_EQ(numFetches(), 2u);
  EXPECT_NO_THROW(gateway().requirePrice(m_code, m_friday)) << "nothing is fetched any more";
  EXPECT_EQ(questions().size(), 1u);
  EXPECT_THROW(gateway().historicalPrice(m_code, m_friday, true), HTTPException);
  EXPECT_EQ(numFetches(), 2u);
}

TEST_F(CompletionTest, AViewDateAndGoingOfflineEndTheFetches) {
  const std::vector<std::function<void()>> ends{[] { gateway().pauseUpdates(); },
                                                [] { gateway().goOffline(); }};
  for (const auto& end : ends) {
    m_market.stall(Page::History);
    const std::size_t before = numFetches();
    gateway().requestHistory(back(m_code, m_first, m_friday));
    m_market.awaitRequests(Page::History, before + 1);
    {
      const BigMutexLock handler;
      end();
    }
    EXPECT_FALSE(gateway().historyFetcher().isRunning());
    m_market.release(Page::History);
  }
  reconnect();
  m_market.setHistory(m_code, Date(2005, 1, 1), m_today, 7);
  complete(m_first, m_friday);
  EXPECT_TRUE(gateway().hasCachedPrice(m_code, m_first)) << "an end is no failure of the code";
}

TEST_F(CompletionTest, CachedRowsIncludeBothEnds) {
  for (int day = 1; day <= 5; ++day)
    gateway().setCachedPrice(m_code, Date(2006, 11, day), day);
  const SharePriceCache::Rows rows = gateway().cachedRows(m_code, Date(2006, 11, 2), Date(2006, 11, 4));
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows.begin()->second.close, 2);
  EXPECT_EQ(rows.rbegin()->second.close, 4);
  EXPECT_TRUE(gateway().cachedRows(u"XYZ.AX", Date(2006, 11, 2), Date(2006, 11, 4)).empty());
}

// --- Many codes at once

/// Records the progress of a completion.
class TestProgress : public Progress {
public:
  void setTotal(unsigned) override {}
  void step(unsigned, const String&) override {}
  void setText(const String& text) override {
    if (text.empty())
      ++eventsPassed;
    else
      texts.push_back(text);
    if (onText)
      onText();
  }
  bool isCancelled() const override { return cancelled; }

  std::vector<String> texts;
  int eventsPassed = 0;
  bool cancelled = false;
  std::function<void()> onText;
};

class ManyCodesTest : public CompletionTest {
protected:
  /// Codes with prices on all days, and the days needed of them.
  std::vector<HistoryNeed> needsOf(int count) {
    std::vector<HistoryNeed> needs;
    for (int i = 0; i < count; ++i) {
      const String code = u"C" + String::fromLong(i) + u".AX";
      m_market.setHistory(code, Date(2005, 1, 3), m_today, 10 + i);
      needs.push_back({code, m_first, m_friday});
    }
    return needs;
  }
  void expectComplete(const HistoryNeed& need) {
    EXPECT_EQ(gateway().cachedRows(need.code, need.first, need.last).size(),
              static_cast<std::size_t>(need.last.daysSince(need.first)) + 1)
        << need.code.toUTF8();
  }
};

TEST_F(ManyCodesTest, SeveralAreFetchedAtOnceWhileEventsAreHandled) {
  const std::vector<HistoryNeed> needs = needsOf(8);
  m_market.stall(Page::History);
  TestProgress progress;
  // Plays the window's part during the wait: without it, no request would be answered.
  progress.onText = [&] {
    if (progress.eventsPassed == 3) {
      m_market.awaitRequests(Page::History, FetchQueue::AT_ONCE);
      m_market.release(Page::History);
    }
  };
  EXPECT_TRUE(gateway().completeHistory(needs, &progress));
  for (const HistoryNeed& need : needs)
    expectComplete(need);
  EXPECT_EQ(numFetches(), needs.size());
  EXPECT_EQ(progress.texts.size(), needs.size());
  EXPECT_EQ(progress.texts.front(), u"Retrieving historical prices for C0.AX");
  expectNothingAsked();
}

TEST_F(ManyCodesTest, PagesFollowEachOtherAndTheRecordsAreNotifiedInOrderOfCodes) {
  m_market.setMaxEntries(50); // Covers 70 days.
  TallymoorInternet::reset();
  const std::vector<HistoryNeed> needs = needsOf(3);
  RecordingObserver observer(PriceUpdater::Rank::Records);
  EXPECT_TRUE(gateway().completeHistory(needs, nullptr));
  for (const HistoryNeed& need : needs)
    expectComplete(need);
  EXPECT_EQ(numFetches(), 9u);
  std::vector<String> codes;
  for (const String& heard : observer.heard())
    if (const String code = heard.substr(heard.find(u'C'), 5); codes.empty() || codes.back() != code)
      codes.push_back(code);
  const std::vector<String> once{u"C0.AX", u"C1.AX", u"C2.AX"};
  std::vector<String> expected;
  for (int page = 0; page < 3; ++page)
    expected.insert(expected.end(), once.begin(), once.end());
  EXPECT_EQ(codes, expected);
}

TEST_F(ManyCodesTest, AFailureEndsOnlyItsCodeAndIsAskedAboutLater) {
  std::vector<HistoryNeed> needs = needsOf(2);
  needs.insert(needs.begin() + 1, {u"NONE.AX", m_first, m_friday});
  EXPECT_TRUE(gateway().completeHistory(needs, nullptr));
  expectComplete(needs[0]);
  expectComplete(needs[2]);
  EXPECT_EQ(numFetches(), 3u);
  expectNothingAsked();
  EXPECT_FALSE(gateway().isToBeFetched(u"NONE.AX", m_first));
  m_user.answerQuestion(false);
  EXPECT_THROW(gateway().historicalPrice(u"NONE.AX", m_first, false), HTMLException);
  EXPECT_EQ(numFetches(), 3u) << "it is not fetched again for that";
}

TEST_F(ManyCodesTest, AFailureOfTheNetworkIsNotBlamedOnOtherCodes) {
  const std::vector<HistoryNeed> needs = needsOf(8);
  m_market.refuse(Page::History, 503);
  EXPECT_TRUE(gateway().completeHistory(needs, nullptr));
  expectNothingAsked();
  EXPECT_FALSE(gateway().isToBeFetched(needs[0].code, m_first))
      << "the user is asked when its price is needed";
  for (std::size_t i = 1; i < needs.size(); ++i)
    EXPECT_TRUE(gateway().isToBeFetched(needs[i].code, m_first));
  m_market.refuse(Page::History, 200);
  m_user.answerQuestion(true);
  EXPECT_EQ(gateway().historicalPrice(needs[0].code, m_first, false), 10);
  EXPECT_TRUE(gateway().completeHistory(needs, nullptr));
  for (const HistoryNeed& need : needs)
    expectComplete(need);
  EXPECT_EQ(questions().size(), 1u);
}

TEST_F(ManyCodesTest, AnAnswerThatThereIsNothingShowsThatTheNetworkIsBack) {
  std::vector<HistoryNeed> needs = needsOf(8);
  needs.insert(needs.begin(), {u"NONE.AX", m_first, m_friday});
  m_market.refuse(Page::History, 503);
  EXPECT_TRUE(gateway().completeHistory({needs.back()}, nullptr));
  m_market.refuse(Page::History, 200);
  gateway().forgetFailures();
  EXPECT_TRUE(gateway().completeHistory(needs, nullptr));
  for (std::size_t i = 1; i < needs.size(); ++i)
    expectComplete(needs[i]);
}

TEST_F(ManyCodesTest, ACancelAbortsRunningFetches) {
  const std::vector<HistoryNeed> needs = needsOf(8);
  m_market.stall(Page::History);
  TestProgress progress;
  progress.onText = [&] { progress.cancelled = progress.eventsPassed > 0; };
  EXPECT_FALSE(gateway().completeHistory(needs, &progress));
  EXPECT_FALSE(gateway().isToBeFetched(needs[0].code, m_first)) << "it would only be waited for again";
  EXPECT_THROW(gateway().historicalPrice(needs[0].code, m_first, false), HTTPException);
  EXPECT_TRUE(questions().empty());
  for (std::size_t i = 1; i < needs.size(); ++i)
    EXPECT_TRUE(gateway().isToBeFetched(needs[i].code, m_first)) << "it is no failure of the source";
  m_market.release(Page::History);
  gateway().forgetFailures();
  progress.onText = nullptr;
  progress.cancelled = false;
  EXPECT_TRUE(gateway().completeHistory(needs, &progress));
  for (const HistoryNeed& need : needs)
    expectComplete(need);
}

TEST_F(ManyCodesTest, TheEndOfTheProgramAbortsItToo) {
  const std::vector<HistoryNeed> needs = needsOf(2);
  m_market.stall(Page::History);
  m_user.stopWanted = [] { return true; };
  EXPECT_FALSE(gateway().completeHistory(needs, nullptr));
  m_market.release(Page::History);
}

TEST_F(ManyCodesTest, OfflineNothingIsFetched) {
  const std::vector<HistoryNeed> needs = needsOf(2);
  gateway().goOffline();
  EXPECT_TRUE(gateway().completeHistory(needs, nullptr));
  EXPECT_FALSE(gateway().isToBeFetched(needs[0].code, m_first));
  EXPECT_EQ(numFetches(), 0u);
}

} // namespace
} // namespace Tallymoor
