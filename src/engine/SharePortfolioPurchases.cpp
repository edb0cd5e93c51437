// Purchases of a portfolio: parcels and their cash entries.
#include "engine/PortfolioEvents.h"
#include "engine/SharePortfolioUser.h"
#include "engine/SplitTerms.h"
#include "foundation/Amounts.h"
#include "market/StockCode.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>

namespace Tallymoor {

namespace {

void storeBuyEvent(XMLElement& event, const Date& date, const String& number, double price, double brokerage,
                   const String& comment) {
  event.subElement(u"BuyDate").setValue(dayText(date));
  event.subElement(u"NumHeld").setValue(number);
  event.subElement(u"BuyPrice").setValue(priceText(price));
  event.subElement(u"Brokerage").setValue(moneyText(brokerage));
  setOptionalText(event, u"Comment", comment);
}

/// What was not changed stays as it is, to the last digit: a number that was divided has more of them.
String editedNumber(const XMLElement& event, double number) {
  if (showsTheSame(number, doubleValue(event, u"NumHeld"), 6))
    return textValue(event, u"NumHeld");
  return isSplitBy(event, FAR_OFF) ? recordedNumberText(number) : numberText(number);
}

} // namespace

bool SharePortfolioUser::isOfAnotherMarket(const String& code) const {
  const XMLElement& stocks = m_portfolio.subElement(u"HeldShares");
  if (stocks.numSubElements(u"HeldShares") == 0)
    return false;
  const String& first = textValue(stocks.subElement(u"HeldShares", 0), u"Code");
  return !(StockCode(first).suffix() == StockCode(code).suffix());
}

void SharePortfolioUser::buyShares(const String& code, const Date& date, double number, double price,
                                   double brokerage, const String& comment) {
  const XMLElement& event = addBuyEvent(code, date, number, price, brokerage, comment);
  debitCash(date, purchaseCost(event, number, price), CASH_EVENT_DEBIT,
            purchaseDescription(code, number, price));
}

XMLElement& SharePortfolioUser::heldShareFor(const String& code) {
  std::size_t index = 0;
  if (XMLElement* stock = findHeldShare(code, index))
    return *stock;
  XMLElement& stock = m_portfolio.subElement(u"HeldShares").addSubElement(new XMLHeldShare, u"HeldShares");
  stock.subElement(u"Code").setValue(code);
  return stock;
}

XMLElement& SharePortfolioUser::addBuyEvent(const String& code, const Date& date, double number, double price,
                                            double brokerage, const String& comment) {
  requireTrade(number, price, brokerage);
  XMLElement& event = heldShareFor(code).addSubElement(new XMLBuyEvent, u"BuyEvents");
  storeBuyEvent(event, date, numberText(number), price, brokerage, comment);
  m_capitalRecord.recordsChangedFrom(date);
  return event;
}

void SharePortfolioUser::removeHeldShare(const String& code) {
  std::size_t index = 0;
  const XMLElement* stock = findHeldShare(code, index);
  if (!stock)
    return;
  std::optional<Date> earliest;
  for (std::size_t i = 0; i < stock->numSubElements(u"BuyEvents"); ++i) {
    const Date bought = dateValue(stock->subElement(u"BuyEvents", i), u"BuyDate");
    earliest = earliest ? std::min(*earliest, bought) : bought;
  }
  m_portfolio.subElement(u"HeldShares").removeSubElement(u"HeldShares", index);
  if (earliest)
    m_capitalRecord.recordsChangedFrom(*earliest);
}

void SharePortfolioUser::removeParcel(XMLElement& stock, const XMLElement& parcel) {
  if (const auto place = indexOf(stock, u"BuyEvents", parcel))
    stock.removeSubElement(u"BuyEvents", *place);
  if (stock.numSubElements(u"BuyEvents") > 0)
    return;
  // A stock without a parcel can't be written.
  XMLElement& stocks = m_portfolio.subElement(u"HeldShares");
  if (const auto place = indexOf(stocks, u"HeldShares", stock))
    stocks.removeSubElement(u"HeldShares", *place);
}

XMLElement* SharePortfolioUser::findParcel(XMLElement& stock, const Date& date, double number) const {
  const String day = dayText(date);
  const Date today;
  for (std::size_t i = 0; i < stock.numSubElements(u"BuyEvents"); ++i) {
    XMLElement& parcel = stock.subElement(u"BuyEvents", i);
    if (!(textValue(parcel, u"BuyDate") == day))
      continue;
    double held = 0.0;
    double price = 0.0;
    adjustedBuyEvent(parcel, today, held, price, true);
    if (showsTheSame(held, number, 4))
      return &parcel;
  }
  return nullptr;
}

bool SharePortfolioUser::deleteBuyEvent(const String& code, const Date& date, double number) {
  std::size_t index = 0;
  XMLElement* stock = findHeldShare(code, index);
  XMLElement* parcel = stock ? findParcel(*stock, date, number) : nullptr;
  if (!parcel)
    return false;
  const auto entry =
      findCashEntry(m_portfolio, {dayText(date), moneyText(purchaseCost(*parcel)), CASH_EVENT_DEBIT, code});
  if (entry)
    removeCashEntry(m_portfolio, *entry);
  removeParcel(*stock, *parcel);
  m_capitalRecord.recordsChangedFrom(date);
  if (entry)
    tellCashChanged();
  return entry.has_value();
}

bool SharePortfolioUser::editBuyEvent(XMLElement& event, const Date& date, double number, double price,
                                      double brokerage, const String& comment, double oldCost,
                                      const Date& oldDate) {
  requireTrade(number, price, brokerage);
  const String code = textValue(*event.parent(), u"Code");
  const Date earlier = std::min({date, oldDate, dateValue(event, u"BuyDate")});
  if (date != dateValue(event, u"BuyDate"))
    takeSplitsBetween(event, code, date, FAR_OFF);
  storeBuyEvent(event, date, editedNumber(event, number), price, brokerage, comment);
  const bool followed =
      moveCashEntry({dayText(oldDate), moneyText(oldCost), CASH_EVENT_DEBIT, code}, oldCost, date,
                    purchaseCost(event, number, price), purchaseDescription(code, number, price));
  m_capitalRecord.recordsChangedFrom(earlier);
  if (followed)
    tellCashChanged();
  return followed;
}

void SharePortfolioUser::setMinMax(XMLElement& heldShare, double min, double max) {
  heldShare.subElement(u"MinPrice").setValue(priceText(min));
  heldShare.subElement(u"MaxPrice").setValue(priceText(max));
}

void SharePortfolioUser::setPortfolioMax(XMLElement& heldShare, double value) {
  heldShare.subElement(u"PortfolioMax").setValue(moneyText(value));
}

} // namespace Tallymoor
