#include "analysis/ShareAsOfDay.h"
#include "books/PortfolioEvents.h"
#include "books/SharePortfolioUser.h"
#include "books/SplitTerms.h"
#include "xml/PortfolioRecords.h"
#include <cmath>
#include <vector>

namespace Tallymoor {

namespace {

constexpr double LARGEST_ROUNDING = 0.01; ///< of a parcel in a day's number

/// The sales after the day of what had been bought by then.
std::vector<const XMLSellEvent*> salesSince(const SharePortfolioUser& portfolio, const String& code,
                                            const Date& day) {
  std::vector<const XMLSellEvent*> sales;
  if (const XMLSoldShare* sold = portfolio.findSoldShare(code))
    for (const XMLSellEvent& sale : sold->sales())
      if (sale.bought() <= day && sale.sold() > day)
        sales.push_back(&sale);
  return sales;
}

/// A parcel as it stood before its sale.
XMLBuyEvent& addParcelOfSale(const XMLSellEvent& sale, XMLHeldShare& share) {
  XMLBuyEvent& parcel = share.parcels().add();
  parcel.copyPurchase(sale);
  copyAdjustments(sale, parcel, FAR_OFF);
  return parcel;
}

/// The number of these parcels, all bought by the day, on the day.
double numberOf(const std::vector<XMLBuyEvent*>& parcels, const Date& day) {
  double sum = 0.0;
  for (const XMLBuyEvent* parcel : parcels)
    sum += sharesOn(*parcel, day).number;
  return sum;
}

double numberOf(const XMLHeldShare& share, const Date& day) {
  double sum = 0.0;
  for (const XMLBuyEvent& parcel : share.parcels())
    if (parcel.bought() <= day)
      sum += sharesOn(parcel, day).number;
  return sum;
}

/// A sale that an earlier version recorded is in shares of its own day, without the splits before
/// it. The number in the day's capital record says what they were on that day.
void undoSplits(const std::vector<XMLBuyEvent*>& parcels, double factor) {
  for (XMLBuyEvent* parcel : parcels) {
    parcel->setNumberText(String::fromDouble(parcel->number() * factor, 4));
    parcel->setPrice(parcel->price() / factor);
  }
}

} // namespace

std::unique_ptr<XMLHeldShare> shareWithParcelsSoldSince(const SharePortfolioUser& portfolio,
                                                        const String& code, double numberOnDay,
                                                        const Date& day) {
  const std::vector<const XMLSellEvent*> sales = salesSince(portfolio, code, day);
  if (sales.empty())
    return nullptr;
  auto share = std::make_unique<XMLHeldShare>();
  share->setCode(code);
  std::vector<XMLBuyEvent*> untold;
  for (const XMLSellEvent* sale : sales) {
    XMLBuyEvent& parcel = addParcelOfSale(*sale, *share);
    if (sale->adjustments().empty())
      untold.push_back(&parcel);
  }
  if (const XMLHeldShare* held = portfolio.findHeldShare(code))
    for (const XMLBuyEvent& parcel : held->parcels())
      share->parcels().addCopy(parcel);
  const double numberUntold = numberOf(untold, day);
  const double untoldOnDay = numberOnDay - (numberOf(*share, day) - numberUntold);
  // The day's number is rounded: a small difference is no split.
  if (untoldOnDay > 0.0 && numberUntold > 0.0 &&
      std::abs(untoldOnDay - numberUntold) > LARGEST_ROUNDING * double(share->parcels().size()))
    undoSplits(untold, untoldOnDay / numberUntold);
  return share;
}

} // namespace Tallymoor
