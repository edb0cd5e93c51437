#include "books/SplitTerms.h"
#include "books/PortfolioEvents.h"
#include "books/SaleCash.h"
#include "foundation/Amounts.h"
#include "xml/PortfolioRecords.h"
#include <cmath>

namespace Tallymoor {

namespace {

/// Calls with the factor of each adjustment that counts by the day.
template <class Use>
void forEachFactor(const XMLParcel& parcel, const Date& day, Use use) {
  if (parcel.bought() >= day)
    return;
  for (const XMLSplitAdjustment& adjustment : parcel.adjustments())
    if (adjustment.day() <= day)
      use(adjustment.factor());
}

SharesAt recordedShares(const XMLParcel& parcel) {
  return {parcel.number(), parcel.price()};
}

/// The number with the fewest decimals that is recorded as this one is: of 300 shares, 100 are recorded as
/// 33.333333 before their 3:1 split, and are 100 nevertheless.
double asTyped(const XMLSellEvent& sale, const Date& day, double number) {
  const String recorded = recordedNumberText(sale.number());
  for (int decimals = 2; decimals < 6; ++decimals) {
    const double candidate = String::fromDouble(number, decimals).toDouble();
    if (recordedNumberText(sharesAsBought(sale, day, {candidate, 0.0}).number) == recorded)
      return candidate;
  }
  return number;
}

/// A sale's shares as of its own day, by its own adjustments.
SharesAt sharesByItsSplits(const XMLSellEvent& sale) {
  const Date sold = sale.sold();
  SharesAt shares = sharesOn(sale, sold);
  shares.number = asTyped(sale, sold, shares.number);
  return shares;
}

} // namespace

void applyFactor(std::int32_t factor, SharesAt& shares) {
  const double magnitude = std::abs(double(factor));
  if (factor > 0) {
    shares.number *= magnitude;
    shares.price /= magnitude;
  } else {
    shares.number /= magnitude;
    shares.price *= magnitude;
  }
}

SharesAt sharesOn(const XMLParcel& parcel, const Date& day) {
  SharesAt shares = recordedShares(parcel);
  forEachFactor(parcel, day, [&shares](std::int32_t factor) { applyFactor(factor, shares); });
  return shares;
}

SharesAt sharesAsBought(const XMLParcel& parcel, const Date& day, const SharesAt& shares) {
  SharesAt one{1.0, 1.0};
  forEachFactor(parcel, day, [&one](std::int32_t factor) { applyFactor(factor, one); });
  return {shares.number * one.price, shares.price * one.number};
}

double sharesBetween(const XMLParcel& parcel, const Date& from, const Date& to) {
  SharesAt one{1.0, 1.0};
  for (const XMLSplitAdjustment& adjustment : parcel.adjustments())
    if (const Date start = adjustment.day(); start > from && start <= to)
      applyFactor(adjustment.factor(), one);
  return one.number;
}

bool isSplitBy(const XMLParcel& parcel, const Date& day) {
  bool split = false;
  forEachFactor(parcel, day, [&split](std::int32_t factor) { split |= std::abs(double(factor)) != 1.0; });
  return split;
}

bool isRecordedAsSold(const XMLSellEvent& sale) {
  if (!isSplitBy(sale, sale.sold()))
    return false;
  const XMLSharePortfolio* portfolio = portfolioOf(sale);
  return portfolio && !findProceeds(*portfolio, sale, sharesByItsSplits(sale).number) &&
         findProceeds(*portfolio, sale, recordedShares(sale).number);
}

SharesAt sharesAsSold(const XMLSellEvent& sale) {
  return sharesAsSold(sale, isRecordedAsSold(sale));
}

SharesAt sharesAsSold(const XMLSellEvent& sale, bool recordedAsSold) {
  const bool split = !recordedAsSold && isSplitBy(sale, sale.sold());
  return split ? sharesByItsSplits(sale) : recordedShares(sale);
}

const XMLSplitAdjustment* findAdjustment(const XMLParcel& parcel, const Date& day) {
  const String text = dayText(day);
  for (const XMLSplitAdjustment& adjustment : parcel.adjustments())
    if (adjustment.dayLeaf().value() == text)
      return &adjustment;
  return nullptr;
}

void copyAdjustments(const XMLParcel& from, XMLParcel& to, const Date& upTo) {
  for (const XMLSplitAdjustment& adjustment : from.adjustments())
    if (adjustment.day() <= upTo)
      to.adjustments().addCopy(adjustment);
}

} // namespace Tallymoor
