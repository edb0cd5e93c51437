#include "engine/RecordedSplits.h"
#include "engine/SharePortfolioUser.h"
#include "foundation/Amounts.h"
#include "xml/Leaves.h"

namespace Tallymoor {

namespace {

/// A day may have two factors, of which one multiplies and the other divides.
RecordedSplits::Ratios ratiosOf(const SharePortfolioUser& portfolio, const XMLElement& parcel) {
  RecordedSplits::Ratios ratios;
  for (std::size_t i = 0; i < parcel.numSubElements(u"Adjustments"); ++i) {
    const XMLElement& adjustment = parcel.subElement(u"Adjustments", i);
    double price = 1.0;
    double& number = ratios.try_emplace(dateValue(adjustment, u"StartDate"), 1.0).first->second;
    portfolio.applyAdjustment(adjustment, dateValue(adjustment, u"StartDate"), number, price);
  }
  return ratios;
}

/// Each parcel that was held across a split has it recorded.
void addStock(const SharePortfolioUser& portfolio, const XMLElement* stock, std::u16string_view events,
              RecordedSplits::Ratios& all) {
  for (std::size_t i = 0; stock && i < stock->numSubElements(events); ++i)
    for (const auto& [day, ratio] : ratiosOf(portfolio, stock->subElement(events, i)))
      if (!showsTheSame(ratio, 1.0, 6))
        all.emplace(day, ratio);
}

} // namespace

RecordedSplits::RecordedSplits(const SharePortfolioUser& portfolio, const String& code) {
  std::size_t index = 0;
  addStock(portfolio, portfolio.findHeldShare(code, index), u"BuyEvents", m_ratios);
  addStock(portfolio, portfolio.findSoldShare(code, index), u"SellEvents", m_ratios);
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
