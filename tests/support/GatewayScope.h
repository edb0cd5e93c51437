#pragma once
#include "market/TallymoorInternet.h"

namespace Tallymoor {

/// A gateway of its own for a test: built at the first use, ended with the scope. Its updater runs no pass by
/// itself; call priceUpdater().runPass() for one on this thread (with the big mutex not held), or start() for
/// the thread, which then begins at once. Make it after the TestProfile and the MarketFixture.
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
  /// Saves and ends the gateway as at the end of a run; the next use builds another, as at the beginning of
  /// the next.
  void restart() {
    TallymoorInternet::shutdownForNextTest();
    TallymoorInternet::setOptions(defaults());
  }
};

} // namespace Tallymoor
