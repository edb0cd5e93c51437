#include "engine/ShareAsOfDay.h"
#include "engine/PortfolioEvents.h"
#include "engine/SharePortfolioUser.h"
#include "engine/SplitTerms.h"
#include "xml/PortfolioRecords.h"
#include <cmath>
#include <vector>

namespace Tallymoor {

namespace {

constexpr double LARGEST_ROUNDING = 0.01; ///< of a parcel in a day's number

/// The sales after the day of what had been bought by then.
std::vector<const XMLElement*> salesSince(const SharePortfolioUser& portfolio, const String& code,
                                          const Date& day) {
  std::vector<const XMLElement*> sales;
  std::size_t index = 0;
  const XMLElement* sold = portfolio.findSoldShare(code, index);
  for (std::size_t i = 0; sold && i < sold->numSubElements(u"SellEvents"); ++i) {
    const XMLElement& sale = sold->subElement(u"SellEvents", i);
    if (dateValue(sale, u"BuyDate") <= day && dateValue(sale, u"SellDate") > day)
      sales.push_back(&sale);
  }
  return sales;
}

/// A parcel as it stood before its sale.
XMLElement& addParcelOfSale(const XMLElement& sale, XMLHeldShare& share) {
  XMLElement& parcel = share.addSubElement(new XMLBuyEvent, u"BuyEvents");
  parcel.subElement(u"BuyDate").setValue(textValue(sale, u"BuyDate"));
  parcel.subElement(u"NumHeld").setValue(textValue(sale, u"NumHeld"));
  parcel.subElement(u"BuyPrice").setValue(textValue(sale, u"BuyPrice"));
  parcel.subElement(u"Brokerage").setValue(textValue(sale, u"BuyBrokerage"));
  copyAdjustments(sale, parcel, FAR_OFF);
  return parcel;
}

void copyParcels(const XMLElement& held, XMLHeldShare& share) {
  for (std::size_t i = 0; i < held.numSubElements(u"BuyEvents"); ++i)
    share.addSubElement(held.subElement(u"BuyEvents", i).clone(&newElement<XMLBuyEvent>), u"BuyEvents");
}

/// The number of these parcels, all bought by the day, on the day.
double numberOf(const std::vector<XMLElement*>& parcels, const Date& day) {
  double sum = 0.0;
  for (const XMLElement* parcel : parcels)
    sum += sharesOn(*parcel, day).number;
  return sum;
}

double numberOf(XMLElement& share, const Date& day) {
  std::vector<XMLElement*> bought;
  for (std::size_t i = 0; i < share.numSubElements(u"BuyEvents"); ++i)
    if (XMLElement& parcel = share.subElement(u"BuyEvents", i); dateValue(parcel, u"BuyDate") <= day)
      bought.push_back(&parcel);
  return numberOf(bought, day);
}

/// A sale that an earlier version recorded is in shares of its own day and does not tell of the splits before
/// it. The number that the day's record has of them tells what they were on that day.
void undoSplits(const std::vector<XMLElement*>& parcels, double factor) {
  for (XMLElement* parcel : parcels) {
    parcel->subElement(u"NumHeld").setValue(String::fromDouble(doubleValue(*parcel, u"NumHeld") * factor, 4));
    parcel->subElement(u"BuyPrice")
        .setValue(String::fromDouble(doubleValue(*parcel, u"BuyPrice") / factor, 4));
  }
}

} // namespace

std::unique_ptr<XMLHeldShare> shareWithParcelsSoldSince(const SharePortfolioUser& portfolio,
                                                        const String& code, double numberOnDay,
                                                        const Date& day) {
  const std::vector<const XMLElement*> sales = salesSince(portfolio, code, day);
  if (sales.empty())
    return nullptr;
  auto share = std::make_unique<XMLHeldShare>();
  share->subElement(u"Code").setValue(code);
  std::vector<XMLElement*> untold;
  for (const XMLElement* sale : sales) {
    XMLElement& parcel = addParcelOfSale(*sale, *share);
    if (sale->numSubElements(u"Adjustments") == 0)
      untold.push_back(&parcel);
  }
  std::size_t index = 0;
  if (const XMLElement* held = portfolio.findHeldShare(code, index))
    copyParcels(*held, *share);
  const double numberUntold = numberOf(untold, day);
  const double untoldOnDay = numberOnDay - (numberOf(*share, day) - numberUntold);
  // The day's number is rounded, so only what a split explains is one.
  if (untoldOnDay > 0.0 && numberUntold > 0.0 &&
      std::abs(untoldOnDay - numberUntold) > LARGEST_ROUNDING * double(share->numSubElements(u"BuyEvents")))
    undoSplits(untold, untoldOnDay / numberUntold);
  return share;
}

} // namespace Tallymoor
