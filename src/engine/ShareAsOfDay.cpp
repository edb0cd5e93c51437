#include "engine/ShareAsOfDay.h"
#include "engine/SharePortfolioUser.h"
#include "foundation/Amounts.h"
#include "xml/PortfolioRecords.h"
#include <vector>

namespace Tallymoor {

namespace {

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

void copyAdjustments(const XMLElement& from, XMLElement& to) {
  for (std::size_t i = 0; i < from.numSubElements(u"Adjustments"); ++i)
    to.addSubElement(from.subElement(u"Adjustments", i).clone(&newElement<XMLSplitAdjustment>),
                     u"Adjustments");
}

/// A parcel as it stood before its sale.
XMLElement& addParcelOfSale(const XMLElement& sale, XMLHeldShare& share) {
  XMLElement& parcel = share.addSubElement(new XMLBuyEvent, u"BuyEvents");
  parcel.subElement(u"BuyDate").setValue(textValue(sale, u"BuyDate"));
  parcel.subElement(u"NumHeld").setValue(textValue(sale, u"NumHeld"));
  parcel.subElement(u"BuyPrice").setValue(textValue(sale, u"BuyPrice"));
  parcel.subElement(u"Brokerage").setValue(textValue(sale, u"BuyBrokerage"));
  copyAdjustments(sale, parcel);
  return parcel;
}

void copyParcels(const XMLElement& held, XMLHeldShare& share) {
  for (std::size_t i = 0; i < held.numSubElements(u"BuyEvents"); ++i)
    share.addSubElement(held.subElement(u"BuyEvents", i).clone(&newElement<XMLBuyEvent>), u"BuyEvents");
}

/// The number of these parcels on the day.
double numberOf(const SharePortfolioUser& portfolio, const XMLElement& share, const Date& day) {
  double sum = 0.0;
  for (std::size_t i = 0; i < share.numSubElements(u"BuyEvents"); ++i) {
    const XMLElement& parcel = share.subElement(u"BuyEvents", i);
    if (dateValue(parcel, u"BuyDate") > day)
      continue;
    double number = 0.0;
    double price = 0.0;
    portfolio.adjustedBuyEvent(parcel, day, number, price, true);
    sum += number;
  }
  return sum;
}

/// A sale is recorded in shares of its own day, and no longer tells of splits before it. The number that the
/// day's record has of them tells what they were on that day.
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
  std::vector<XMLElement*> sold;
  for (const XMLElement* sale : sales)
    sold.push_back(&addParcelOfSale(*sale, *share));
  const double numberSold = numberOf(portfolio, *share, day);
  std::size_t index = 0;
  if (const XMLElement* held = portfolio.findHeldShare(code, index))
    copyParcels(*held, *share);
  const double numberKept = numberOf(portfolio, *share, day) - numberSold;
  const double soldOnDay = numberOnDay - numberKept;
  if (soldOnDay > 0.0 && numberSold > 0.0 && !showsTheSame(soldOnDay, numberSold, 2))
    undoSplits(sold, soldOnDay / numberSold);
  return share;
}

} // namespace Tallymoor
