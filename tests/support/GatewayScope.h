#pragma once
#include "market/TallymoorInternet.h"

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
  }
  ~GatewayScope() { TallymoorInternet::shutdownForNextTest(); }
  GatewayScope(const GatewayScope&) = delete;
  GatewayScope& operator=(const GatewayScope&) = delete;

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
  }
};

} // namespace Tallymoor
