#include "foundation/BigMutexWaiters.h"
#include "foundation/RunTimeSettings.h"
#include "market/FetchQueue.h"
#include "market/GatewayTest.h"
#include "market/HTTPClient.h"
#include "support/TestHttpServer.h"
#include <thread>
#include <utility>

namespace Tallymoor {
namespace {

// The updater on its own thread while the user continues to work. Tests wait for events, never for time.

/// A network that never answers, so only a stop ends a fetch.
class SilentNetwork {
public:
  class Client : public HTTPClient {
  public:
    explicit Client(SilentNetwork& network) : m_network(network) {}
    void goOnline() override {}
    HTTPAnswer get(const URL&, const HTTPHeaders&, const std::stop_token& stop) override {
      m_network.fetches = true;
      m_network.signpost.notify();
      const std::stop_callback stopped(stop, [this] {
        m_network.aborted = true;
        m_network.signpost.notify();
      });
      m_network.signpost.await([this] { return m_network.aborted.load(); });
      throw HTTPException(u"aborted");
    }
    void setBodyLimit(std::size_t) override {}

  private:
    SilentNetwork& m_network;
  };

  void awaitFetch() {
    signpost.await([this] { return fetches.load(); });
  }
  TallymoorInternet::Options options() {
    TallymoorInternet::Options options = GatewayScope::defaults();
    options.makeClient = [this] { return std::make_unique<Client>(*this); };
    return options;
  }

  Signpost signpost;
  std::atomic<bool> fetches = false;
  std::atomic<bool> aborted = false;
};

/// A network that fails, and counts how many fetches are under way at once.
class FailingNetwork {
public:
  class Client : public HTTPClient {
  public:
    explicit Client(FailingNetwork& network) : m_network(network) {}
    void goOnline() override {}
    HTTPAnswer get(const URL&, const HTTPHeaders&, const std::stop_token&) override {
      m_network.fetch();
      throw HTTPException(u"no network");
    }
    void setBodyLimit(std::size_t) override {}

  private:
    FailingNetwork& m_network;
  };

  TallymoorInternet::Options options() {
    TallymoorInternet::Options options = GatewayScope::defaults();
    options.makeClient = [this] { return std::make_unique<Client>(*this); };
    return options;
  }
  /// The most fetches at once, and all of them, since the last call.
  std::pair<int, int> takeCounts() {
    const std::lock_guard lock(m_mutex);
    return {std::exchange(m_mostAtOnce, 0), std::exchange(m_fetches, 0)};
  }

private:
  /// Waits a moment for others to join it.
  void fetch() {
    std::unique_lock lock(m_mutex);
    ++m_fetches;
    m_mostAtOnce = std::max(m_mostAtOnce, ++m_underWay);
    m_changed.notify_all();
    m_changed.wait_for(lock, std::chrono::milliseconds(100), [this] { return m_mostAtOnce > 1; });
    --m_underWay;
  }

  std::mutex m_mutex;
  std::condition_variable m_changed;
  int m_fetches = 0;
  int m_underWay = 0;
  int m_mostAtOnce = 0;
};

class PriceUpdaterThreadTest : public GatewayTest {
protected:
  void watch(const String& code, double price) {
    m_market.setCurrentPrice(code, price);
    updater().addCode(code);
  }
  bool sawFailure() const {
    for (const String& status : statuses())
      if (status.startsWith(u"PriceUpdater::threadFunction failed"))
        return true;
    return false;
  }
  /// Starts a pass whose fetches hang.
  void startStalledPass() {
    m_market.stall(Page::Quote);
    updater().start();
    m_market.awaitRequests(Page::Quote, updater().codes().size());
  }
};

TEST_F(PriceUpdaterThreadTest, TheThreadMakesAPassAtOnceWithoutADelay) {
  watch(m_code, 1.5);
  RecordingObserver observer;
  updater().start();
  observer.awaitFinished(1);
  EXPECT_DOUBLE_EQ(updater().getCurrentPrice(m_code), 1.5);
}

TEST_F(PriceUpdaterThreadTest, TheGatewayStartsTheThreadItself) {
  TallymoorInternet::Options options = GatewayScope::defaults();
  options.startUpdater = true;
  TallymoorInternet::setOptions(options);
  watch(m_code, 1.5);
  RecordingObserver observer;
  EXPECT_TRUE(updater().isRunning());
  updater().wakeUp();
  observer.awaitFinished(1);
}

TEST_F(PriceUpdaterThreadTest, AWakeUpStartsAPassAtOnce) {
  watch(m_code, 1.5);
  RecordingObserver observer;
  updater().start();
  observer.awaitFinished(1);
  m_market.setCurrentPrice(m_code, 2.5);
  updater().wakeUp();
  observer.awaitFinished(2);
  EXPECT_DOUBLE_EQ(updater().getCurrentPrice(m_code), 2.5);
}

TEST_F(PriceUpdaterThreadTest, ANewCodeIsFetchedAtOnceAndWithoutTheOthers) {
  watch(m_code, 1.5);
  RecordingObserver observer;
  updater().start();
  observer.awaitFinished(1);
  watch(u"NEW.AX", 2.5);
  observer.awaitFinished(2);
  EXPECT_DOUBLE_EQ(updater().getCurrentPrice(u"NEW.AX"), 2.5);
  EXPECT_EQ(m_market.requested(Page::Quote), (std::vector<String>{m_code, u"NEW.AX"}));
  updater().addCode(u"NEW.AX"); // known
  updater().wakeUp();
  observer.awaitFinished(3);
  EXPECT_EQ(m_market.requested(Page::Quote).size(), 4u);
}

TEST_F(PriceUpdaterThreadTest, ANewCodeDoesNotPutOffTheNextPassOverAll) {
  watch(m_code, 1.5);
  RecordingObserver observer;
  updater().start();
  observer.awaitFinished(1);
  m_clock->tick += PriceUpdater::passPeriod() - 1;
  watch(u"NEW.AX", 2.5);
  observer.awaitFinished(3);
  EXPECT_EQ(m_market.requested(Page::Quote).size(), 4u);
}

TEST_F(PriceUpdaterThreadTest, ANewCodeIsNotFetchedWhileAViewDateIsSet) {
  watch(m_code, 1.5);
  RecordingObserver observer;
  updater().start();
  observer.awaitFinished(1);
  gateway().pauseUpdates();
  watch(u"NEW.AX", 2.5);
  EXPECT_FALSE(updater().isRunning());
}

TEST_F(PriceUpdaterThreadTest, AFailedPassIsFollowedByTheNext) {
  watch(m_code, 1.5);
  m_market.refuse(Page::Quote, 500);
  RecordingObserver observer;
  updater().start();
  const String message = failureOf<HTTPException>([this] { gateway().currentPrice(m_code, false, true); });
  m_user.awaitStatus(u"PriceUpdater::threadFunction failed: ABC.AX: " + message);
  m_market.refuse(Page::Quote, 200);
  updater().wakeUp();
  observer.awaitFinished(2);
  EXPECT_DOUBLE_EQ(updater().getCurrentPrice(m_code), 1.5);
}

TEST_F(PriceUpdaterThreadTest, SeveralCodesAreFetchedAtOnceAndToldInTheirOrder) {
  std::vector<String> expected;
  for (int i = 1; i <= 9; ++i) {
    const String code = u"C" + String::fromLong(i);
    watch(code, i);
    expected.push_back(u"price " + code + u" " + String::fromDouble(i, 4));
  }
  expected.push_back(u"finished");
  RecordingObserver observer;
  m_market.stall(Page::Quote);
  updater().start();
  m_market.awaitRequests(Page::Quote, FetchQueue::AT_ONCE);
  EXPECT_EQ(m_market.requested(Page::Quote).size(), FetchQueue::AT_ONCE);
  EXPECT_TRUE(observer.heard().empty());
  m_market.release(Page::Quote);
  observer.awaitFinished(1);
  EXPECT_EQ(observer.heard(), expected);
  EXPECT_EQ(m_market.requested(Page::Quote).size(), 9u) << "each once";
}

TEST_F(PriceUpdaterThreadTest, RecentClosesOfSeveralCodesAreFetchedAtOnce) {
  for (std::size_t i = 1; i <= FetchQueue::AT_ONCE; ++i) {
    const String code = u"C" + String::fromLong(static_cast<std::int64_t>(i));
    watch(code, 1.5);
    m_market.setHistory(code, Date(2006, 11, 1), m_today, 1.25);
  }
  RecordingObserver observer;
  m_market.stall(Page::History);
  m_clock->tick += 8 * HOUR + 1;
  updater().start();
  m_market.awaitRequests(Page::History, FetchQueue::AT_ONCE);
  m_market.release(Page::History);
  observer.awaitFinished(1);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(u"C6", m_today, 0), 1.25);
}

TEST_F(PriceUpdaterThreadTest, WhileTheNetworkHasFailedOneRequestTriesWhetherItIsBack) {
  FailingNetwork network;
  const GatewayScope scope(network.options());
  for (const char16_t* const code : {u"AAA", u"BBB", u"CCC", u"DDD"})
    updater().addCode(code);
  updater().runPass();
  EXPECT_EQ(network.takeCounts().second, 4);
  updater().runPass();
  EXPECT_EQ(network.takeCounts(), std::pair(1, 1)) << "after the fifth failure in a row the host rests";
  EXPECT_EQ(statuses().back(), String(u"PriceUpdater::threadFunction failed: AAA: no network (and 3 more)"));
}

TEST_F(PriceUpdaterThreadTest, TheUserCanWorkWhileRecentClosesAreFetched) {
  m_market.setHistory(m_code, Date(2006, 11, 1), m_today, 1.25);
  watch(m_code, 1.5);
  RecordingObserver observer;
  m_market.stall(Page::History);
  m_clock->tick += 8 * HOUR + 1;
  updater().start();
  m_market.awaitRequests(Page::History, 1);
  {
    const BigMutexLock lock; // Would hang if the fetch held the mutex.
    gateway().setCachedPrice(u"DEF.AX", m_friday, 5.0);
  }
  m_market.release(Page::History);
  observer.awaitFinished(1);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, m_today, 0), 1.25);
}

TEST_F(PriceUpdaterThreadTest, TheUserCanWorkWhileACurrentPriceIsFetched) {
  watch(m_code, 1.5);
  RecordingObserver observer;
  startStalledPass();
  {
    const BigMutexLock lock; // Would hang if the fetch held the mutex.
    gateway().setCachedPrice(u"DEF.AX", m_friday, 5.0);
  }
  m_market.release(Page::Quote);
  observer.awaitFinished(1);
}

TEST_F(PriceUpdaterThreadTest, GoingOfflineAbortsAStalledFetch) {
  watch(m_code, 1.5);
  watch(u"DEF.AX", 2.5);
  RecordingObserver observer;
  startStalledPass();
  {
    const BigMutexLock handler;
    const BigMutexLock innerHandler;
    gateway().goOffline();
    EXPECT_TRUE(bigMutex().heldByThisThread());
  }
  EXPECT_FALSE(bigMutex().heldByThisThread());
  EXPECT_FALSE(updater().isRunning());
  EXPECT_FALSE(gateway().isOnline());
  EXPECT_TRUE(observer.heard().empty());
  EXPECT_FALSE(sawFailure());
  EXPECT_EQ(m_market.requested(Page::Quote).size(), 2u);
  EXPECT_TRUE(updater().hasCode(m_code));
}

TEST_F(PriceUpdaterThreadTest, OfflineViewDateAndShutDownEachAbortTheTransfer) {
  const std::vector<std::function<void()>> ends{
      [] { gateway().goOffline(); }, [] { gateway().pauseUpdates(); }, [] { TallymoorInternet::shutdown(); }};
  for (const auto& end : ends) {
    SilentNetwork network;
    const GatewayScope scope(network.options());
    updater().addCode(m_code);
    updater().start();
    network.awaitFetch();
    end();
    EXPECT_TRUE(network.aborted);
  }
}

TEST_F(PriceUpdaterThreadTest, ReconnectingAfterAStalledFetchContinuesWithTheSameCodes) {
  watch(m_code, 1.5);
  m_market.addListing(u"TST", u"Test", u"Australia");
  RecordingObserver observer;
  startStalledPass();
  gateway().goOffline();
  m_market.release(Page::Quote);
  EXPECT_TRUE(gateway().reconnect());
  observer.awaitFinished(1);
  EXPECT_DOUBLE_EQ(updater().getCurrentPrice(m_code), 1.5);
}

TEST_F(PriceUpdaterThreadTest, AFailedReconnectShowsInTheStatusLine) {
  updater().addCode(m_code);
  EXPECT_FALSE(gateway().reconnect());
  m_user.awaitStatus(
      u"PriceUpdater::threadFunction failed: TallymoorInternet::currentPrice - internet offline.");
  EXPECT_TRUE(questions().empty());
}

TEST_F(PriceUpdaterThreadTest, AViewDateDoesNotWaitForAStalledFetch) {
  watch(m_code, 1.5);
  RecordingObserver observer;
  startStalledPass();
  gateway().pauseUpdates();
  EXPECT_FALSE(updater().isRunning());
  EXPECT_TRUE(gateway().isOnline());
  EXPECT_FALSE(sawFailure());
  Date::setFixedDate(m_friday);
  m_market.release(Page::Quote);
  EXPECT_DOUBLE_EQ(gateway().currentPrice(m_code, false, true), 1.5);
  Date::clearFixedDate();
  gateway().resumeUpdates();
  observer.awaitFinished(1);
  EXPECT_EQ(observer.heard(), (std::vector<String>{u"price ABC.AX 1.5000", u"finished"}));
}

TEST_F(PriceUpdaterThreadTest, StoppingWithoutAnAbortTakesEffectWhenTheFetchReturns) {
  watch(m_code, 1.5);
  watch(u"DEF.AX", 2.5);
  RecordingObserver observer;
  startStalledPass();
  updater().stop();
  m_market.release(Page::Quote);
  updater().stopAndJoin();
  EXPECT_TRUE(observer.heard().empty());
  EXPECT_DOUBLE_EQ(updater().getCurrentPrice(m_code), 0.0);
  EXPECT_EQ(m_market.requested(Page::Quote).size(), 2u) << "each once";
}

TEST_F(PriceUpdaterThreadTest, AStopIsSeenAfterTakingTheMutex) {
  watch(m_code, 1.5);
  RecordingObserver observer;
  startStalledPass();
  {
    const BigMutexLock handler;
    m_market.release(Page::Quote);
    // The pass saw no stop before it waited for the mutex, so it must check again once it has it.
    while (threadsWaitingForBigMutex() == 0)
      std::this_thread::yield();
    updater().stop();
  }
  updater().stopAndJoin();
  EXPECT_TRUE(observer.heard().empty());
  EXPECT_DOUBLE_EQ(updater().getCurrentPrice(m_code), 0.0);
}

TEST_F(PriceUpdaterThreadTest, ACodeRemovedDuringItsFetchLosesThePrice) {
  watch(m_code, 1.5);
  RecordingObserver observer;
  startStalledPass();
  updater().removeCode(m_code);
  m_market.release(Page::Quote);
  observer.awaitFinished(1);
  EXPECT_FALSE(updater().hasCode(m_code));
}

TEST_F(PriceUpdaterThreadTest, AnObserverThatDiesDuringAFetchIsNotCalled) {
  watch(m_code, 1.5);
  std::vector<String> heard;
  auto dying = std::make_unique<RecordingObserver>(PriceUpdater::Rank::Views, &heard);
  RecordingObserver observer;
  startStalledPass();
  dying.reset();
  m_market.release(Page::Quote);
  observer.awaitFinished(1);
  const BigMutexLock lock;
  EXPECT_TRUE(heard.empty());
}

TEST_F(PriceUpdaterThreadTest, NewLocatorsDoNotDisturbAFetch) {
  watch(m_code, 1.5);
  RecordingObserver observer;
  startStalledPass();
  TallymoorInternet::reset();
  TallymoorInternet::reset();
  m_market.release(Page::Quote);
  observer.awaitFinished(1);
  EXPECT_DOUBLE_EQ(updater().getCurrentPrice(m_code), 1.5);
}

TEST_F(PriceUpdaterThreadTest, AShutDownDuringAStalledFetchSavesAndEnds) {
  watch(m_code, 1.5);
  gateway().setCachedPrice(u"DEF.AX", m_friday, 5.0);
  startStalledPass();
  {
    const BigMutexLock handler;
    EXPECT_TRUE(TallymoorInternet::shutdown());
    EXPECT_TRUE(bigMutex().heldByThisThread());
  }
  EXPECT_FALSE(TallymoorInternet::exists());
  EXPECT_FALSE(sawFailure());
  EXPECT_NE(TestProfile::readFile(m_profile.cacheFolder() + u"PriceCache.DEF.AX.xml"), "");
}

TEST_F(PriceUpdaterThreadTest, NoNewGatewayIsCreatedDuringAShutDown) {
  // The user shuts down while an observer is working; the observer's requests are then refused.
  watch(m_code, 1.5);
  Signpost signpost;
  std::atomic<bool> inCall = false;
  std::atomic<bool> refused = false;
  auto* observer = new RecordingObserver;
  observer->onPrice = [&](const String&) {
    inCall = true;
    signpost.notify();
    const BigMutexRelease letTheShutDownBegin;
    while (TallymoorInternet::exists())
      std::this_thread::yield();
    try {
      TallymoorInternet::Instance();
    } catch (const Exception& failure) {
      refused = failure.message() == String(u"in shutdown mode");
    }
  };
  updater().start();
  signpost.await([&] { return inCall.load(); });
  EXPECT_TRUE(TallymoorInternet::shutdown());
  EXPECT_TRUE(refused);
  delete observer;
}

TEST_F(PriceUpdaterThreadTest, PassesContinueWhileObserversAndCodesChange) {
  constexpr int PASSES = 25;
  const std::vector<String> codes{u"AAA", u"BBB", u"CCC"};
  for (const String& code : codes)
    watch(code, 1.5);
  RecordingObserver steady;
  std::vector<String> heard;
  updater().start();
  for (std::size_t turn = 0; steady.passes() < PASSES; ++turn) {
    RecordingObserver passing(turn % 2 ? PriceUpdater::Rank::Views : PriceUpdater::Rank::Records, &heard);
    const String& code = codes[turn % codes.size()];
    updater().removeCode(code);
    updater().addCode(code);
    const BigMutexLock handler;
    const double price = updater().getCurrentPrice(code);
    EXPECT_TRUE(price == 0.0 || price == 1.5);
    gateway().hasCachedPrice(code, m_today);
    updater().wakeUp();
  }
  gateway().goOffline();
  EXPECT_FALSE(inBackgroundPass);
  EXPECT_FALSE(sawFailure());
}

TEST_F(PriceUpdaterThreadTest, StartsAndStopsInAnyOrderLeaveTheThreadStopped) {
  watch(m_code, 1.5);
  RecordingObserver observer;
  for (int turn = 0; turn < 20; ++turn) {
    const int passesBefore = observer.passes(); // The next pass may end before the wait begins.
    updater().start();
    updater().wakeUp();
    if (turn % 3 == 0)
      observer.awaitFinished(passesBefore + 1);
    gateway().pauseUpdates();
    EXPECT_FALSE(updater().isRunning());
  }
}

TEST_F(PriceUpdaterThreadTest, HistoricalChecksShareTheCacheWithTheUser) {
  m_market.setHistory(m_code, Date(2006, 11, 1), m_today, 1.5);
  watch(m_code, 1.5);
  RecordingObserver observer;
  updater().start();
  for (int turn = 0; m_market.requested(Page::History).size() < 10; ++turn) {
    EXPECT_DOUBLE_EQ(gateway().historicalPrice(m_code, Date(2006, 11, 1 + turn % 10), true), 1.5);
    m_clock->tick += 8 * HOUR + 1;
    updater().wakeUp();
  }
  gateway().goOffline();
  EXPECT_TRUE(questions().empty());
  EXPECT_FALSE(sawFailure());
}

} // namespace
} // namespace Tallymoor
