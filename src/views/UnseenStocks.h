#pragma once
#include "foundation/String.h"
#include "views/PriceWatch.h"
#include "views/WatchedCodes.h"
#include <functional>
#include <set>

namespace Tallymoor {

struct PriceLimits;

/// Stands in for the table of a page that nobody has looked at yet: it keeps the prices of the table's stocks
/// current, and the user is warned when one leaves its limits.
///
/// GUI thread only, under the big mutex.
class UnseenStocks {
public:
  using LimitsOf = std::function<PriceLimits(const String& code)>;
  /// May throw Exception where a price is unavailable.
  using PriceOf = std::function<double(const String& code)>;

  UnseenStocks(FX::FXApp* app, LimitsOf limitsOf, PriceOf priceOf);

  /// These from now on; their limits are yet to be looked at. A view date changes nothing.
  void watch(const std::set<String>& codes);
  /// The limits of these are to be looked at again.
  void recheck(const std::set<String>& codes);
  /// Looks at the limits of the next stock that was not looked at since; false when there is none.
  bool checkNext();
  void checkAll();

private:
  void check(const std::set<String>& codes) const;

  const LimitsOf m_limitsOf;
  const PriceOf m_priceOf;
  std::set<String> m_codes;
  std::set<String> m_unchecked; ///< of these codes
  WatchedCodes m_watchedCodes;
  PriceWatch m_prices;
};

} // namespace Tallymoor
