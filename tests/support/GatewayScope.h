#pragma once
#include "foundation/BigMutex.h"
#include "foundation/NotYetKnown.h"
#include "market/TallymoorInternet.h"
#include <cstdint>
#include <utility>

namespace Tallymoor {

/// A gateway for one test: created at first use, destroyed with the scope. Its updater makes no pass by
/// itself; call priceUpdater().runPass() for a pass on this thread (without holding the big mutex), or
/// start() for the thread, which then begins at once. Create it after the TestProfile and the MarketFixture.
class GatewayScope {
public:
  GatewayScope() : GatewayScope(defaults()) {}
  explicit GatewayScope(const TallymoorInternet::Options& options) {
    TallymoorInternet::shutdownForNextTest();
    TallymoorInternet::setOptions(options);
    s_lastStamp = 0;
  }
  ~GatewayScope() { TallymoorInternet::shutdownForNextTest(); }
  GatewayScope(const GatewayScope&) = delete;
  GatewayScope& operator=(const GatewayScope&) = delete;

  /// Waits for the past prices that are fetched in the background. False if none were requested since the
  /// last call.
  static bool awaitHistory() {
    if (!TallymoorInternet::exists())
      return false;
    const BigMutexLock lock;
    HistoryFetcher& fetcher = TallymoorInternet::Instance().historyFetcher();
    {
      const BigMutexRelease letItCome;
      fetcher.join();
    }
    const std::uint64_t stamp = fetcher.changeStamp();
    return std::exchange(s_lastStamp, stamp) != stamp;
  }
  /// The figure, when the prices that it needs have come.
  template <class Figure>
  static auto awaited(Figure figure) {
    for (;;)
      try {
        return figure();
      } catch (const NotYetKnown&) {
        awaitHistory();
      }
  }
  static TallymoorInternet::Options defaults() {
    TallymoorInternet::Options options;
    options.updaterStartDelay = 0;
    options.startUpdater = false;
    return options;
  }
  /// Saves and destroys the gateway, as at the end of a run. The next use creates a new one.
  void restart() {
    TallymoorInternet::shutdownForNextTest();
    TallymoorInternet::setOptions(defaults());
    s_lastStamp = 0;
  }

private:
  static inline std::uint64_t s_lastStamp = 0;
};

} // namespace Tallymoor
