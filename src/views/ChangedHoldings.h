#pragma once
#include "foundation/String.h"
#include <cstdint>
#include <map>
#include <set>
#include <vector>

namespace Tallymoor {

class XMLHeldShare;

/// Tells which of the held shares have changed since it looked last, so that a transaction costs no look at
/// hundreds of others. GUI thread, under the big mutex.
class ChangedHoldings {
public:
  struct Changes {
    std::set<String> codes;      ///< of shares that are new or have changed
    bool areOtherStocks = false; ///< some have come, gone or got another code
    bool none() const { return codes.empty() && !areOtherStocks; }
  };

  /// Looks at the shares; all of them are new to the first look.
  Changes look(const std::vector<const XMLHeldShare*>& shares);
  /// All will be new to the next look.
  void forget() { m_seen.clear(); }

private:
  struct Seen {
    std::uint64_t stamp;
    String code;
  };

  std::map<const XMLHeldShare*, Seen>
      m_seen; ///< a share that was made later at the same place has a later stamp
};

} // namespace Tallymoor
