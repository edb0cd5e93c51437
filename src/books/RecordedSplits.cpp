#include "books/RecordedSplits.h"
#include "books/Holdings.h"
#include "books/SplitTerms.h"
#include "foundation/Amounts.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {

namespace {

/// Adds the splits of a parcel. A day may have two factors, one that multiplies and one that divides.
void addSplits(const XMLParcel& parcel, RecordedSplits::Ratios& all) {
  RecordedSplits::Ratios ratios;
  for (const XMLSplitAdjustment& adjustment : parcel.adjustments()) {
    double& ratio = ratios.try_emplace(adjustment.day(), 1.0).first->second;
    SharesAt shares{ratio, 1.0};
    applyFactor(adjustment.factor(), shares);
    ratio = shares.number;
  }
  for (const auto& [day, ratio] : ratios)
    if (!showsTheSame(ratio, 1.0, 6))
      all.emplace(day, ratio);
}

} // namespace

RecordedSplits::RecordedSplits(const Holdings& holdings, const String& code) {
  if (const XMLHeldShare* held = holdings.findHeldShare(code))
    for (const XMLBuyEvent& parcel : held->parcels())
      addSplits(parcel, m_ratios);
  if (const XMLSoldShare* sold = holdings.findSoldShare(code))
    for (const XMLSellEvent& sale : sold->sales())
      addSplits(sale, m_ratios);
}

double RecordedSplits::sharesBetween(const Date& from, const Date& to) const {
  if (to < from)
    return 1.0 / sharesBetween(to, from);
  double shares = 1.0;
  for (auto split = m_ratios.upper_bound(from); split != m_ratios.end() && split->first <= to; ++split)
    shares *= split->second;
  return shares;
}

} // namespace Tallymoor
