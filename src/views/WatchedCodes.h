#pragma once
#include "foundation/String.h"
#include <set>

namespace Tallymoor {

/// The codes that one view wants current prices of. The price updater keeps a code as long as some view wants
/// it. GUI thread only, under the big mutex.
class WatchedCodes {
public:
  WatchedCodes() = default;
  ~WatchedCodes();
  WatchedCodes(const WatchedCodes&) = delete;
  WatchedCodes& operator=(const WatchedCodes&) = delete;

  /// From now on these, and no others.
  void watch(const std::set<String>& codes);

private:
  std::set<String> m_codes;
};

} // namespace Tallymoor
