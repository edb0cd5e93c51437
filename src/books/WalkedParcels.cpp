#include "books/WalkedParcels.h"
#include "books/PortfolioEvents.h"
#include "books/SplitTerms.h"
#include "xml/PortfolioRecords.h"
#include <utility>

namespace Tallymoor {

namespace {

WalkedParcels::Parcel parcelOf(const XMLParcel& event, bool sold, const Date& until) {
  WalkedParcels::Parcel parcel{
      &event, sold, hasFractionOfHundredths(event.numberText()), event.bought(), until, std::nullopt, {}};
  for (const XMLSplitAdjustment& adjustment : event.adjustments())
    parcel.adjusted.push_back(adjustment.day());
  if (parcel.adjusted.empty())
    parcel.number = sharesOn(event, parcel.from).number;
  return parcel;
}

WalkedParcels::Stock stockOf(const XMLHeldShare& element) {
  WalkedParcels::Stock stock{element.code(), {}};
  for (const XMLBuyEvent& parcel : element.parcels())
    stock.parcels.push_back(parcelOf(parcel, false, FAR_OFF));
  return stock;
}

WalkedParcels::Stock stockOf(const XMLSoldShare& element) {
  WalkedParcels::Stock stock{element.code(), {}};
  for (const XMLSellEvent& sale : element.sales())
    stock.parcels.push_back(parcelOf(sale, true, sale.sold()));
  return stock;
}

} // namespace

void WalkedParcels::read(const XMLSharePortfolio& portfolio) {
  m_stocks.clear();
  KeptStocks before = std::exchange(m_kept, {});
  for (const XMLHeldShare& stock : portfolio.heldShares())
    add(before, stock);
  for (const XMLSoldShare& stock : portfolio.soldShares())
    add(before, stock);
}

template <class Element>
void WalkedParcels::add(KeptStocks& before, const Element& element) {
  const auto known = before.find(&element);
  const bool holds = known != before.end() && known->second.stamp == element.changeStamp();
  const auto place = holds
                         ? m_kept.insert(before.extract(known)).position
                         : m_kept.try_emplace(&element, Kept{element.changeStamp(), stockOf(element)}).first;
  m_stocks.push_back(&place->second.stock);
}

} // namespace Tallymoor
