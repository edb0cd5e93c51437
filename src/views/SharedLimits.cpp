#include "views/SharedLimits.h"
#include "foundation/Exception.h"
#include "foundation/Settings.h"
#include "session/RecordChanges.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>
#include <utility>
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

/// Of these codes, or of all. Those of a code are in the order of the portfolios' names.
HoldingsByCode holdingsOf(OpenPortfolios& portfolios, const std::set<String>* codes = nullptr) {
  HoldingsByCode holdings;
  for (const auto& [name, portfolio] : portfolios)
    for (XMLHeldShare& share : portfolio->portfolio().heldShares())
      if (!codes || codes->contains(share.code()))
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

void bringLimitsTogether(OpenPortfolios& portfolios, const std::set<String>& codes) {
  std::vector<std::pair<Holding, PriceLimits>> without;
  for (const auto& [code, holdings] : holdingsOf(portfolios, &codes)) {
    const PriceLimits limits = limitsFor(code, holdings);
    if (limits.areNone())
      continue;
    if (limits != PriceLimits::ofStock(code))
      limits.keepForStock(code);
    for (const Holding& holding : holdings)
      if (holding.limits().areNone())
        without.emplace_back(holding, limits);
  }
  if (without.empty())
    return;
  makeChange(u"Limits of stocks that have some elsewhere", [&without] {
    for (const auto& [holding, limits] : without)
      holding.setLimits(limits);
  });
}

} // namespace

void shareLimits(OpenPortfolios& portfolios, const String& code, const PriceLimits& limits) {
  limits.keepForStock(code);
  HoldingsByCode holdings = holdingsOf(portfolios);
  for (const Holding& holding : holdings[code])
    holding.setLimits(limits);
}

void SharedLimits::bringTogether(OpenPortfolios& portfolios) {
  if (const std::uint64_t settings = Settings::Instance().changeStamp(); m_settings != settings) {
    m_settings = settings;
    m_changed.forget();
  }
  std::vector<const XMLHeldShare*> shares;
  for (const auto& [name, portfolio] : portfolios)
    for (const XMLHeldShare& share : portfolio->portfolio().heldShares())
      shares.push_back(&share);
  const ChangedHoldings::Changes changes = m_changed.look(shares);
  if (changes.codes.empty())
    return;
  try {
    bringLimitsTogether(portfolios, changes.codes);
  } catch (const Exception&) {
    m_changed.forget();
    throw;
  }
}

LimitsOfStocks limitsOfHoldings(OpenPortfolios& portfolios) {
  LimitsOfStocks limits;
  for (const auto& [code, holdings] : holdingsOf(portfolios))
    limits[code] = holdings.front().limits();
  return limits;
}

void keepChangedLimits(OpenPortfolios& portfolios, const LimitsOfStocks& before) {
  for (const auto& [code, limits] : limitsOfHoldings(portfolios))
    if (const auto old = before.find(code); old != before.end() && old->second != limits)
      limits.keepForStock(code);
}

} // namespace Tallymoor
