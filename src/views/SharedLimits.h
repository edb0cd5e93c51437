#pragma once
#include "session/OpenPortfolios.h"
#include "views/ChangedHoldings.h"
#include "views/PriceLimits.h"
#include <cstdint>
#include <map>

namespace Tallymoor {

// The user's limits of a stock are the same wherever they are set and shown. They are kept twice: each
// holding has them in its portfolio's records, which the user may carry to another machine, and the settings
// have them for stocks that are only watched. GUI thread only, under the big mutex.

/// These are the stock's limits from now on, in the settings and in every holding of it.
void shareLimits(OpenPortfolios& portfolios, const String& code, const PriceLimits& limits);

/// Brings both places together where they may differ, after records came from elsewhere and after a purchase.
/// A holding without limits takes those of the settings. Limits of a holding go to the settings, unless
/// another holding of the stock has those of the settings already. So nothing that was typed is lost:
/// holdings that differ keep what they have until the user sets limits again.
class SharedLimits {
public:
  /// Looks at stocks of which a holding or the settings have changed since the last call. Throws Exception;
  /// the next call then looks at all.
  void bringTogether(OpenPortfolios& portfolios);

private:
  ChangedHoldings m_changed;
  std::uint64_t m_settings = 0; ///< Settings::changeStamp
};

/// The limits of all stocks that are held, by code.
using LimitsOfStocks = std::map<String, PriceLimits>;
LimitsOfStocks limitsOfHoldings(OpenPortfolios& portfolios);
/// Where a holding's limits are not those any longer, because the records went back, the settings follow.
void keepChangedLimits(OpenPortfolios& portfolios, const LimitsOfStocks& before);

} // namespace Tallymoor
