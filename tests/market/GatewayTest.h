#pragma once
#include "foundation/BigMutex.h"
#include "foundation/Exception.h"
#include "foundation/LinuxPlatform.h"
#include "market/TallymoorInternet.h"
#include "support/FailureOf.h"
#include "support/FakeUserInteraction.h"
#include "support/GatewayScope.h"
#include "support/MarketFixture.h"
#include "support/TestProfile.h"
#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <gtest/gtest.h>
#include <mutex>

namespace Tallymoor {

/// Lets a test wait for the work of another thread without using time.
class Signpost {
public:
  void notify() {
    const std::lock_guard lock(m_mutex);
    m_changed.notify_all();
  }
  /// Checks the condition after each notify. Fails the test if it does not become true within a very long
  /// time.
  template <class Condition>
  void await(Condition isTrue) {
    std::unique_lock lock(m_mutex);
    if (!m_changed.wait_for(lock, std::chrono::seconds(60), isTrue))
      ADD_FAILURE() << "what the test waits for did not happen";
  }

private:
  std::mutex m_mutex;
  std::condition_variable m_changed;
};

/// A user who performs an action before answering, and records what is displayed during a question.
class BusyUser : public FakeUserInteraction {
public:
  bool question(const String& text) override {
    if (openWaits() != 0)
      ADD_FAILURE() << "the wait cursor is on during a question";
    if (beforeAnswer)
      beforeAnswer();
    return FakeUserInteraction::question(text);
  }
  void setStatusText(const String& text) override {
    FakeUserInteraction::setStatusText(text);
    m_told.notify();
  }
  /// Waits until the status line has shown this text.
  void awaitStatus(const String& text) {
    m_told.await([&] {
      const std::vector<String> shown = texts(Kind::Status);
      return std::find(shown.begin(), shown.end(), text) != shown.end();
    });
  }
  bool isStopWanted() override { return stopWanted && stopWanted(); }
  std::function<void()> beforeAnswer;
  std::function<bool()> stopWanted; ///< Polled during fetches on the GUI thread.

private:
  Signpost m_told;
};

/// A platform with a clock set by the test.
class ClockPlatform : public LinuxPlatform {
public:
  explicit ClockPlatform(const LinuxPlatformOptions& options) : LinuxPlatform(options) {}
  std::uint32_t tickCount() override { return tick; }
  std::atomic<std::uint32_t> tick = 1000;
};

/// A gateway with a simulated exchange, on Wednesday, 15 November 2006. The updater runs only in tests that
/// start it.
class GatewayTest : public ::testing::Test {
protected:
  using Page = MarketFixture::Page;
  using Kind = FakeUserInteraction::Kind;

  static constexpr std::uint32_t HOUR = 3600000;

  GatewayTest() {
    LinuxPlatformOptions options;
    options.dataHome = m_profile.folder() + "/share";
    options.locale = "en_AU";
    auto platform = std::make_unique<ClockPlatform>(options);
    m_clock = platform.get();
    Platform::setInstance(std::move(platform));
  }

  static TallymoorInternet& gateway() { return TallymoorInternet::Instance(); }
  static PriceUpdater& updater() { return gateway().priceUpdater(); }

  std::vector<String> questions() const { return m_user.texts(Kind::Question); }
  std::vector<String> statuses() const { return m_user.texts(Kind::Status); }

  static String local(const Date& date) { return date.toString(DATE_DISPLAY_LOCAL); }

  const String m_code = u"ABC.AX";
  const Date m_today{2006, 11, 15};
  const Date m_friday{2006, 11, 10};
  ClockPlatform* m_clock;

  TestProfile m_profile{"en_AU", m_today};
  BusyUser m_user;
  MarketFixture m_market;
  GatewayScope m_scope;
};

/// Records its calls as "price ABC.AX 12.3400", "close ABC.AX 10/11/2006 5.0000" and "finished", and runs an
/// action of the test on each. Registered during its lifetime. Guarded by the big mutex.
class RecordingObserver : public PriceUpdater::PricesObserver {
public:
  explicit RecordingObserver(PriceUpdater::Rank rank = PriceUpdater::Rank::Views,
                             std::vector<String>* heard = nullptr, const String& name = String())
      : m_heard(heard ? heard : &m_own), m_name(name) {
    TallymoorInternet::Instance().priceUpdater().addObserver(this, rank);
  }
  ~RecordingObserver() override {
    if (TallymoorInternet::exists())
      TallymoorInternet::Instance().priceUpdater().removeObserver(this);
  }

  void currentPriceUpdated(const String& code, double price) override {
    hear(u"price " + code + u" " + String::fromDouble(price, 4));
    if (onPrice)
      onPrice(code);
  }
  void historicalPriceChanged(const String& code, const Date& date, double close) override {
    hear(u"close " + code + u" " + date.toString(DATE_DISPLAY_DMY) + u" " + String::fromDouble(close, 4));
  }
  void pricesUpdateFinished() override {
    hear(u"finished");
    ++m_finished;
    m_signpost.notify();
  }

  std::vector<String> heard() const {
    const BigMutexLock lock;
    return *m_heard;
  }
  /// Waits until this number of passes has ended since construction. Don't call it with the big mutex held.
  void awaitFinished(int passes) {
    m_signpost.await([&] { return m_finished >= passes; });
  }
  int passes() const { return m_finished; }
  std::function<void(const String& code)> onPrice;

private:
  void hear(const String& what) { m_heard->push_back(m_name + what); }

  std::vector<String> m_own;
  std::vector<String>* m_heard;
  const String m_name;
  std::atomic<int> m_finished = 0;
  Signpost m_signpost;
};

inline const String OFFLINE_QUESTION = u"If you are having problems with Internet access\n"
                                       u"you should place Tallymoor into offline mode to speed operation.\n"
                                       u"Put Tallymoor into offline mode now?";

} // namespace Tallymoor
