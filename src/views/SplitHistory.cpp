#include "views/SplitHistory.h"
#include "engine/SharePortfolioUser.h"
#include "foundation/Amounts.h"
#include "market/TallymoorInternet.h"
#include "xml/Leaves.h"
#include <algorithm>
#include <cmath>

namespace Tallymoor {

namespace {

constexpr int DAYS_AROUND_SPLIT = 14; ///< within which there are trading days on either side

/// True when the closes change at the split by about its ratio rather than hardly at all.
bool jumps(const String& code, const Date& day, double ratio) {
  const auto rows = TallymoorInternet::Instance().cachedRows(code, day.plusDays(-DAYS_AROUND_SPLIT),
                                                             day.plusDays(DAYS_AROUND_SPLIT));
  const auto after = rows.lower_bound(day);
  if (after == rows.begin() || after == rows.end())
    return true;
  const double before = std::prev(after)->second.close;
  if (showsAsZero(before) || showsAsZero(after->second.close))
    return true;
  const double change = std::log(before / after->second.close);
  return std::abs(change - std::log(ratio)) < std::abs(change);
}

} // namespace

SplitHistory::SplitHistory(const String& code, const Portfolios& portfolios) {
  for (const SharePortfolioUser* portfolio : portfolios) {
    std::size_t index = 0;
    if (const XMLElement* held = portfolio->findHeldShare(code, index))
      for (std::size_t i = 0; i < held->numSubElements(u"BuyEvents"); ++i)
        addAdjustments(held->subElement(u"BuyEvents", i), code);
    if (const XMLElement* sold = portfolio->findSoldShare(code, index))
      for (std::size_t i = 0; i < sold->numSubElements(u"SellEvents"); ++i)
        addAdjustments(sold->subElement(u"SellEvents", i), code);
  }
}

/// Each parcel that was held across a split has it recorded.
void SplitHistory::addAdjustments(const XMLElement& parcel, const String& code) {
  for (std::size_t i = 0; i < parcel.numSubElements(u"Adjustments"); ++i) {
    const XMLElement& adjustment = parcel.subElement(u"Adjustments", i);
    const Date day = dateValue(adjustment, u"StartDate");
    const double factor = longValue(adjustment, u"Factor");
    const bool isKnown = std::any_of(m_splits.begin(), m_splits.end(),
                                     [&day](const Split& split) { return split.day == day; });
    if (isKnown || std::abs(factor) < 2.0)
      continue;
    const double ratio = factor > 0.0 ? factor : -1.0 / factor;
    m_splits.push_back({day, ratio, jumps(code, day, ratio)});
  }
}

double SplitHistory::sharesBetween(const Date& from, const Date& to) const {
  if (to < from)
    return 1.0 / sharesBetween(to, from);
  double shares = 1.0;
  for (const Split& split : m_splits)
    if (from < split.day && split.day <= to)
      shares *= split.ratio;
  return shares;
}

double SplitHistory::closeDivisor(const Date& from, const Date& to) const {
  double divisor = 1.0;
  for (const Split& split : m_splits)
    if (split.inCloses && from < split.day && split.day <= to)
      divisor *= split.ratio;
  return divisor;
}

} // namespace Tallymoor
