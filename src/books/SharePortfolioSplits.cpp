// Share splits: what a parcel was worth as of a day, and how a jump of the price becomes an adjustment.
#include "books/OldSales.h"
#include "books/PortfolioEvents.h"
#include "books/SharePortfolioUser.h"
#include "books/SplitTerms.h"
#include "books/SuspectedSplit.h"
#include "foundation/RunTimeSettings.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>
#include <set>

namespace Tallymoor {

namespace {

bool wasHeldAcross(const XMLBuyEvent& parcel, const Date& date) {
  return parcel.bought() < date;
}

bool wasHeldAcross(const XMLSellEvent& sale, const Date& date) {
  return sale.bought() < date && sale.sold() > date;
}

template <class Parcel>
bool anyAdjustmentOn(const ElementList<Parcel>& parcels, const Date& date) {
  return std::any_of(parcels.begin(), parcels.end(),
                     [&date](const Parcel& parcel) { return findAdjustment(parcel, date); });
}

template <class Parcel>
bool allAdjusted(const ElementList<Parcel>& parcels, const Date& date) {
  return std::all_of(parcels.begin(), parcels.end(), [&date](const Parcel& parcel) {
    return !wasHeldAcross(parcel, date) || findAdjustment(parcel, date);
  });
}

/// Copies the splits between the two days, the last one included, that the parcel does not know from another.
void takeSplitsOf(const XMLParcel& other, XMLParcel& parcel, const Date& after, const Date& last) {
  if (&other == &parcel)
    return;
  std::set<String> known; // what is added comes from this one
  for (const XMLSplitAdjustment& adjustment : parcel.adjustments())
    known.insert(adjustment.dayLeaf().value());
  for (const XMLSplitAdjustment& adjustment : other.adjustments())
    if (const Date start = adjustment.day();
        start > after && start <= last && !known.contains(dayText(start)))
      parcel.adjustments().addCopy(adjustment);
}

/// Puts the factors in the place of what is noted for the day.
void noteFactors(XMLParcel& parcel, const Date& date, const std::vector<std::int32_t>& factors) {
  const String day = dayText(date);
  const auto adjustments = parcel.adjustments();
  std::size_t noted = 0;
  for (std::size_t i = 0; i < adjustments.size();) {
    XMLSplitAdjustment& adjustment = adjustments[i];
    if (adjustment.dayLeaf().value() != day) {
      ++i;
    } else if (noted < factors.size()) {
      adjustment.set(date, factors[noted++]);
      ++i;
    } else {
      adjustments.remove(adjustment);
    }
  }
  for (; noted < factors.size(); ++noted)
    adjustments.add().set(date, factors[noted]);
}

template <class Parcel>
void noteFactorsAcross(const ElementList<Parcel>& parcels, const Date& date,
                       const std::vector<std::int32_t>& factors) {
  for (Parcel& parcel : parcels)
    if (wasHeldAcross(parcel, date))
      noteFactors(parcel, date, factors);
}

} // namespace

SharesAt SharePortfolioUser::adjustedBuyEvent(const XMLBuyEvent& event, const Date& date) const {
  return sharesOn(event, date);
}

SharesAt SharePortfolioUser::adjustedSellEvent(const XMLSellEvent& event, const Date& date) const {
  // A day on which no split counts leaves number and price as recorded.
  return sharesOn(event, wasHeldAcross(event, date) ? date : event.bought());
}

bool SharePortfolioUser::hasHeldAdjustment(const String& code, const Date& date) const {
  const XMLHeldShare* held = findHeldShare(code);
  return held && anyAdjustmentOn(held->parcels(), date);
}

bool SharePortfolioUser::hasSoldAdjustment(const String& code, const Date& date) const {
  const XMLSoldShare* sold = findSoldShare(code);
  return sold && anyAdjustmentOn(sold->sales(), date);
}

bool SharePortfolioUser::isAdjusted(const String& code, const Date& date) const {
  const XMLHeldShare* held = findHeldShare(code);
  const XMLSoldShare* sold = findSoldShare(code);
  return (!held || allAdjusted(held->parcels(), date)) && (!sold || allAdjusted(sold->sales(), date));
}

void SharePortfolioUser::recordAdjustment(const String& code, const Date& date, std::int32_t factor,
                                          bool reverse) {
  recordAdjustments(code, date, {reverse ? -factor : factor});
}

void SharePortfolioUser::recordAdjustments(const String& code, const Date& date,
                                           const std::vector<std::int32_t>& factors) {
  if (XMLHeldShare* held = findHeldShare(code))
    noteFactorsAcross(held->parcels(), date, factors);
  if (XMLSoldShare* sold = findSoldShare(code))
    noteFactorsAcross(sold->sales(), date, factors);
  mendOldSales();
}

void SharePortfolioUser::mendOldSales() {
  const OldSales old(m_portfolio);
  for (XMLSoldShare& stock : m_portfolio.soldShares())
    for (XMLSellEvent& sale : stock.sales())
      if (old.mend(sale))
        m_capitalRecord.recomputeFrom(sale.bought());
}

void SharePortfolioUser::takeSplitsBetween(XMLParcel& parcel, const Date& bought, const Date& last) {
  const auto adjustments = parcel.adjustments();
  for (std::size_t i = adjustments.size(); i-- > 0;)
    if (const Date start = adjustments[i].day(); start <= bought || start > last)
      adjustments.remove(adjustments[i]);
  takeKnownSplits(parcel, bought, last);
}

void SharePortfolioUser::takeKnownSplits(XMLParcel& parcel, const Date& after, const Date& last) {
  if (const XMLHeldShare* held = findHeldShare(parcel.code()))
    for (const XMLBuyEvent& other : held->parcels())
      takeSplitsOf(other, parcel, after, last);
  if (const XMLSoldShare* sold = findSoldShare(parcel.code()))
    for (const XMLSellEvent& other : sold->sales())
      takeSplitsOf(other, parcel, after, last);
}

void SharePortfolioUser::setAdjustment(XMLSplitAdjustment& adjustment, const Date& date, std::int32_t factor,
                                       bool reverse) {
  adjustment.set(date, reverse ? -std::int64_t(factor) : factor);
}

double SharePortfolioUser::priceWithSplitCheck(const String& code, const Date& date) {
  return checkPriceForSplit(code, date).price.price;
}

CheckedPrice SharePortfolioUser::checkPriceForSplit(const String& code, const Date& date) {
  const DayPrice today = dayPriceFor(code, date, false);
  const DayPrice yesterday = dayPriceFor(code, date.plusDays(-1), false);
  if (isStandIn(today.standing) || isStandIn(yesterday.standing))
    return {today, false};
  const auto split = SuspectedSplit::between(yesterday.price, today.price);
  return {today, split && askForSplit(code, date, *split)};
}

bool SharePortfolioUser::askForSplit(const String& code, const Date& date, const SuspectedSplit& split) {
  if (inBackgroundPass || isAdjusted(code, date))
    return false;
  recordAdjustments(code, date, split.ask(code, date));
  return true;
}

} // namespace Tallymoor
