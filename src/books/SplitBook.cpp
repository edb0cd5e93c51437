#include "books/SplitBook.h"
#include "books/Holdings.h"
#include "books/OldSales.h"
#include "books/PortfolioPrices.h"
#include "books/SharePortfolioCapitalRecordUser.h"
#include "books/SplitTerms.h"
#include "xml/PortfolioRecords.h"
#include "xml/RecordTexts.h"
#include <algorithm>
#include <set>

namespace Tallymoor {

namespace {

constexpr int DAYS_AROUND_A_SPLIT = 3;

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
void addSplitsOf(const XMLParcel& other, XMLParcel& parcel, const Date& after, const Date& last) {
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

bool SplitBook::hasHeldAdjustment(const String& code, const Date& date) const {
  const XMLHeldShare* held = m_holdings.findHeldShare(code);
  return held && anyAdjustmentOn(held->parcels(), date);
}

bool SplitBook::hasSoldAdjustment(const String& code, const Date& date) const {
  const XMLSoldShare* sold = m_holdings.findSoldShare(code);
  return sold && anyAdjustmentOn(sold->sales(), date);
}

bool SplitBook::isAdjusted(const String& code, const Date& date) const {
  const XMLHeldShare* held = m_holdings.findHeldShare(code);
  const XMLSoldShare* sold = m_holdings.findSoldShare(code);
  return (!held || allAdjusted(held->parcels(), date)) && (!sold || allAdjusted(sold->sales(), date));
}

void SplitBook::record(const String& code, const Date& date, const std::vector<std::int32_t>& factors) {
  if (XMLHeldShare* held = m_holdings.findHeldShare(code))
    noteFactorsAcross(held->parcels(), date, factors);
  if (XMLSoldShare* sold = m_holdings.findSoldShare(code))
    noteFactorsAcross(sold->sales(), date, factors);
  mendOldSales();
}

void SplitBook::mendOldSales() {
  const OldSales old(m_holdings.portfolio());
  for (XMLSoldShare& stock : m_holdings.portfolio().soldShares())
    for (XMLSellEvent& sale : stock.sales())
      if (old.mend(sale))
        m_record.recomputeFrom(sale.bought());
}

SplitBook::PriceCheck SplitBook::checkPrice(const String& code, const Date& date) const {
  const DayPrice today = m_prices.priceOn(code, date, false);
  const DayPrice yesterday = m_prices.priceOn(code, date.plusDays(-1), false);
  if (isStandIn(today.standing) || isStandIn(yesterday.standing))
    return {today, std::nullopt};
  const auto jump = SuspectedSplit::between(yesterday.price, today.price);
  const auto told = toldSplit(code, date, jump);
  const auto& split = told ? told : jump;
  return {today, split && !isAdjusted(code, date) ? split : std::nullopt};
}

/// A source may tell a split of a day beside that of the jump. Without a jump, because the source has
/// adjusted its closes, it counts on its own day alone, and only if the user has not recorded it nearby.
std::optional<SuspectedSplit> SplitBook::toldSplit(const String& code, const Date& date,
                                                   const std::optional<SuspectedSplit>& jump) const {
  const int days = jump ? DAYS_AROUND_A_SPLIT : 0;
  const auto ratio = m_prices.toldSplit(code, date.plusDays(-days), date.plusDays(days));
  const auto told = ratio ? SuspectedSplit::told(*ratio) : std::nullopt;
  if (jump)
    return told && told->isMerge() == jump->isMerge() ? told : std::nullopt;
  return told && !isAnsweredAround(code, date) ? told : std::nullopt;
}

bool SplitBook::isAnsweredAround(const String& code, const Date& date) const {
  for (int days = -DAYS_AROUND_A_SPLIT; days <= DAYS_AROUND_A_SPLIT; ++days)
    if (hasHeldAdjustment(code, date.plusDays(days)) || hasSoldAdjustment(code, date.plusDays(days)))
      return true;
  return false;
}

void SplitBook::takeSplitsBetween(XMLParcel& parcel, const Date& bought, const Date& last) const {
  const auto adjustments = parcel.adjustments();
  for (std::size_t i = adjustments.size(); i-- > 0;)
    if (const Date start = adjustments[i].day(); start <= bought || start > last)
      adjustments.remove(adjustments[i]);
  addKnownSplits(parcel, bought, last);
}

void SplitBook::addKnownSplits(XMLParcel& parcel, const Date& after, const Date& last) const {
  if (const XMLHeldShare* held = m_holdings.findHeldShare(parcel.code()))
    for (const XMLBuyEvent& other : held->parcels())
      addSplitsOf(other, parcel, after, last);
  if (const XMLSoldShare* sold = m_holdings.findSoldShare(parcel.code()))
    for (const XMLSellEvent& other : sold->sales())
      addSplitsOf(other, parcel, after, last);
}

} // namespace Tallymoor
