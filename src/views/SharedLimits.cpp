#include "views/SharedLimits.h"
#include "foundation/Settings.h"
#include "views/PriceLimits.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>
#include <vector>

namespace Tallymoor {

namespace {

/// A stock's shares in one portfolio.
struct Holding {
  SharePortfolioUser* portfolio;
  XMLHeldShare* share;
  PriceLimits limits() const { return PriceLimits::ofHeldShare(*share); }
  void setLimits(const PriceLimits& limits) const { portfolio->setMinMax(*share, limits.min, limits.max); }
};

using HoldingsByCode = std::map<String, std::vector<Holding>>;

/// Those of a code are in the order of the portfolios' names.
HoldingsByCode holdingsOf(OpenPortfolios& portfolios) {
  HoldingsByCode holdings;
  for (const auto& [name, portfolio] : portfolios)
    for (XMLHeldShare& share : portfolio->portfolio().heldShares())
      holdings[share.code()].push_back({portfolio.get(), &share});
  return holdings;
}

/// The limits that the settings are to have; none when there are none anywhere.
PriceLimits limitsFor(const String& code, const std::vector<Holding>& holdings) {
  const PriceLimits known = PriceLimits::ofStock(code);
  const auto hasKnown = [&](const Holding& holding) { return holding.limits() == known; };
  const auto hasAny = [](const Holding& holding) { return !holding.limits().areNone(); };
  if (!known.areNone() && std::any_of(holdings.begin(), holdings.end(), hasKnown))
    return known;
  const auto first = std::find_if(holdings.begin(), holdings.end(), hasAny);
  return first == holdings.end() ? known : first->limits();
}

} // namespace

void shareLimits(OpenPortfolios& portfolios, const String& code, const PriceLimits& limits) {
  limits.keepForStock(code);
  HoldingsByCode holdings = holdingsOf(portfolios);
  for (const Holding& holding : holdings[code])
    holding.setLimits(limits);
}

void bringLimitsTogether(OpenPortfolios& portfolios) {
  for (const auto& [code, holdings] : holdingsOf(portfolios)) {
    const PriceLimits limits = limitsFor(code, holdings);
    if (limits.areNone())
      continue;
    if (limits != PriceLimits::ofStock(code))
      limits.keepForStock(code);
    for (const Holding& holding : holdings)
      if (holding.limits().areNone())
        holding.setLimits(limits);
  }
}

} // namespace Tallymoor
