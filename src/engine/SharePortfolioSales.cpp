// Sales of a portfolio: matching to parcels, sale records and their cash entries.
#include "engine/SaleCash.h"
#include "engine/SharePortfolioUser.h"
#include "engine/SplitTerms.h"
#include "engine/UnreadableDates.h"
#include "foundation/Amounts.h"
#include "foundation/Exception.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>
#include <utility>
#include <vector>

namespace Tallymoor {

namespace {

Date earlierDate(const XMLElement& sale) {
  return std::min(dateValue(sale, u"BuyDate"), dateValue(sale, u"SellDate"));
}

/// Shares of the day as the parcel records them: only what a split has divided needs more than hundredths.
String recordedText(const XMLElement& parcel, const Date& day, double shares) {
  return isSplitBy(parcel, day) ? recordedNumberText(sharesAsBought(parcel, day, {shares, 0.0}).number)
                                : numberText(shares);
}

/// How many shares of the purchase one share of the day is.
double boughtOfOne(const XMLElement& event, const Date& day) {
  return sharesAsBought(event, day, {1.0, 1.0}).number;
}

/// In the order in which a sale takes from them.
template <class Element>
std::vector<Element*> parcelsOf(Element& stock, bool firstInFirstOut) {
  std::vector<Element*> parcels;
  for (std::size_t i = 0; i < stock.numSubElements(u"BuyEvents"); ++i)
    if (Element& parcel = stock.subElement(u"BuyEvents", i); !isSetAside(parcel, u"BuyDate"))
      parcels.push_back(&parcel);
  if (!firstInFirstOut)
    std::reverse(parcels.begin(), parcels.end());
  return parcels;
}

/// What a sale takes from a parcel, in the shares of its day, and what it leaves.
struct Part {
  double taken;
  String number; ///< as the sale records it
  String rest;   ///< as the parcel records it; empty when the parcel goes whole
};

Part partOf(const XMLElement& parcel, const Date& day, double wanted) {
  const double available = sharesOn(parcel, day).number;
  const String number = recordedText(parcel, day, wanted);
  const String rest = recordedNumberText(doubleValue(parcel, u"NumHeld") - number.toDouble());
  // A rest that would be recorded, or read, as 0.00 shares goes with the parcel.
  if (wanted < available && !showsAsZero(available - wanted, 2) && rest.toDouble() > 0.0)
    return {wanted, number, rest};
  // A number that a split divided may come back as 200.000001; the cash is that of the 200 that were typed.
  const String whole = textValue(parcel, u"NumHeld");
  return {isSplitBy(parcel, day) && number == whole ? wanted : available, whole, String()};
}

bool isAllSold(double sold, double number) {
  return sold >= number || showsTheSame(sold, number, 4);
}

} // namespace

/// One sale by the user, which may take from several parcels.
struct SharePortfolioUser::Sale {
  String code;
  Date date;
  double price;
  double brokerage; ///< what no sale event bears yet
  String comment;
};

void SharePortfolioUser::sellShares(const String& code, const Date& date, double number, double price,
                                    double brokerage, bool firstInFirstOut, const String& comment) {
  requireTrade(number, price, brokerage);
  std::size_t index = 0;
  XMLElement* stock = findHeldShare(code, index);
  if (!stock)
    throw Exception(u"SharePortfolioUser::sellShares - cant find held shares to sell");
  Sale sale{code, date, price, brokerage, comment};
  double sold = 0.0;
  // The stock itself dies with its last parcel, and only then.
  for (XMLElement* parcel : parcelsOf(*stock, firstInFirstOut)) {
    if (isAllSold(sold, number))
      break;
    sold += sellFromBuyEvent(*stock, *parcel, number - sold, sale);
    sale.brokerage = 0.0;
  }
}

double SharePortfolioUser::sellFromBuyEvent(XMLElement& stock, XMLElement& parcel, double wanted,
                                            const Sale& sale) {
  const Part part = partOf(parcel, sale.date, wanted);
  XMLElement& event = addSellEvent(sale.code);
  event.subElement(u"BuyDate").setValue(textValue(parcel, u"BuyDate"));
  event.subElement(u"BuyPrice").setValue(textValue(parcel, u"BuyPrice"));
  copyAdjustments(parcel, event, sale.date);

  event.subElement(u"NumHeld").setValue(part.number);
  if (!part.rest.empty()) {
    event.subElement(u"BuyBrokerage").setValue(moneyText(0.0));
    parcel.subElement(u"NumHeld").setValue(part.rest);
  } else {
    // What can't be divided goes with the last of the parcel.
    event.subElement(u"BuyBrokerage").setValue(moneyText(doubleValue(parcel, u"Brokerage")));
    if (const String comment = textValue(parcel, u"Comment"); !comment.empty())
      event.setAttribute(BUY_COMMENT, comment);
    removeParcel(stock, parcel);
  }
  event.subElement(u"SellDate").setValue(dayText(sale.date));
  event.subElement(u"SellPrice").setValue(priceText(sale.price));
  event.subElement(u"SellBrokerage").setValue(moneyText(sale.brokerage));
  setOptionalText(event, u"Comment", sale.comment);
  creditCash(sale.date, part.taken * sale.price - sale.brokerage, CASH_EVENT_CREDIT,
             saleDescription(sale.code, part.taken, sale.price));
  return part.taken;
}

double SharePortfolioUser::proceedsOfSale(const String& code, const Date& date, double number, double price,
                                          double brokerage, bool firstInFirstOut) const {
  std::size_t index = 0;
  const XMLElement* stock = findHeldShare(code, index);
  double sold = 0.0;
  double proceeds = 0.0;
  for (const XMLElement* parcel :
       stock ? parcelsOf(*stock, firstInFirstOut) : std::vector<const XMLElement*>()) {
    if (isAllSold(sold, number))
      break;
    const double taken = partOf(*parcel, date, number - sold).taken;
    sold += taken;
    proceeds += moneyText(taken * price - std::exchange(brokerage, 0.0)).toDouble();
  }
  const double lacking = isAllSold(sold, number) ? 0.0 : number - sold;
  return proceeds + lacking * price - brokerage;
}

XMLElement& SharePortfolioUser::addSellEvent(const String& code) {
  std::size_t index = 0;
  XMLElement* stock = findSoldShare(code, index);
  if (!stock) {
    stock = &m_portfolio.subElement(u"SoldShares").addSubElement(new XMLSoldShare, u"SoldShares");
    stock->subElement(u"Code").setValue(code);
  }
  return stock->addSubElement(new XMLSellEvent, u"SellEvents");
}

void SharePortfolioUser::removeSoldShare(const String& code) {
  std::size_t index = 0;
  const XMLElement* stock = findSoldShare(code, index);
  if (!stock)
    return;
  std::optional<Date> earliest;
  for (std::size_t i = 0; i < stock->numSubElements(u"SellEvents"); ++i) {
    const Date touched = earlierDate(stock->subElement(u"SellEvents", i));
    earliest = earliest ? std::min(*earliest, touched) : touched;
  }
  m_portfolio.subElement(u"SoldShares").removeSubElement(u"SoldShares", index);
  if (earliest)
    m_capitalRecord.recordsChangedFrom(*earliest);
}

void SharePortfolioUser::storeSoldShares(XMLElement& sale, const Date& buyDate, const Date& sellDate,
                                         const SharesAt& shares, bool recordedAsSold) {
  const Date soldBefore = dateValue(sale, u"SellDate");
  const SharesAt before = sharesAsSold(sale, recordedAsSold);
  const double termsBefore = boughtOfOne(sale, soldBefore);
  const bool moved = buyDate != dateValue(sale, u"BuyDate") || sellDate != soldBefore;
  sale.subElement(u"BuyDate").setValue(dayText(buyDate));
  sale.subElement(u"SellDate").setValue(dayText(sellDate));
  if (moved)
    takeSplitsBetween(sale, textValue(*sale.parent(), u"Code"), buyDate, sellDate);
  const bool split = !recordedAsSold && isSplitBy(sale, sellDate);
  const SharesAt recorded = split ? sharesAsBought(sale, sellDate, shares) : shares;
  // What was not changed stays as it is, to the last digit.
  const bool sameTerms = recordedAsSold || showsTheSame(termsBefore, boughtOfOne(sale, sellDate), 6);
  if (!sameTerms || !showsTheSame(shares.number, before.number, 6))
    sale.subElement(u"NumHeld")
        .setValue(split ? recordedNumberText(recorded.number) : numberText(recorded.number));
  if (!sameTerms || !showsTheSame(shares.price, before.price, 4))
    sale.subElement(u"BuyPrice").setValue(priceText(recorded.price));
}

bool SharePortfolioUser::editSellEvent(XMLElement& event, const Date& buyDate, const Date& sellDate,
                                       double number, double buyPrice, double sellPrice, double buyBrokerage,
                                       double sellBrokerage, const String& comment) {
  requireTrade(number, buyPrice, buyBrokerage);
  requireTrade(number, sellPrice, sellBrokerage);
  const String code = textValue(*event.parent(), u"Code");
  const bool recordedAsSold = isRecordedAsSold(event);
  const SharesAt before = sharesAsSold(event, recordedAsSold);
  const CashEntryKey costBefore = costKey(event), proceedsBefore = proceedsKey(event, before.number);
  const double paidBefore = costOf(event), receivedBefore = proceedsOf(event, before.number);
  const Date earliest = std::min({earlierDate(event), buyDate, sellDate});
  storeSoldShares(event, buyDate, sellDate, {number, buyPrice}, recordedAsSold);
  event.subElement(u"SellPrice").setValue(priceText(sellPrice));
  event.subElement(u"BuyBrokerage").setValue(moneyText(buyBrokerage));
  event.subElement(u"SellBrokerage").setValue(moneyText(sellBrokerage));
  setOptionalText(event, u"Comment", comment);

  // Each entry speaks of the shares as they were on its day.
  const bool purchaseFollowed = moveCashEntry(
      costBefore, paidBefore, buyDate, costOf(event),
      purchaseDescription(code, doubleValue(event, u"NumHeld"), doubleValue(event, u"BuyPrice")));
  const double sold = sharesAsSold(event, recordedAsSold).number;
  const bool saleFollowed = moveCashEntry(proceedsBefore, receivedBefore, sellDate, proceedsOf(event, sold),
                                          saleDescription(code, sold, doubleValue(event, u"SellPrice")));
  m_capitalRecord.recordsChangedFrom(earliest);
  if (purchaseFollowed || saleFollowed)
    tellCashChanged();
  return purchaseFollowed && saleFollowed;
}

} // namespace Tallymoor
