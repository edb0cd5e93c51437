// Purchases of a portfolio: parcels and their cash entries.
#include "books/PortfolioEvents.h"
#include "books/SharePortfolioUser.h"
#include "books/SplitTerms.h"
#include "foundation/Amounts.h"
#include "market/StockCode.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>

namespace Tallymoor {

namespace {

void storeBuyEvent(XMLBuyEvent& event, const String& number, const Trade& purchase) {
  event.setBought(purchase.date);
  event.setNumberText(number);
  event.setPrice(purchase.price);
  event.setBrokerage(purchase.brokerage);
  if (!purchase.comment.empty())
    event.setComment(purchase.comment);
}

/// What was not changed stays as it is, to the last digit: a number that was divided has more of them.
String editedNumber(const XMLBuyEvent& event, double number) {
  if (showsTheSame(number, event.number(), 6))
    return event.numberText();
  return isSplitBy(event, FAR_OFF) ? recordedNumberText(number) : numberText(number);
}

} // namespace

bool SharePortfolioUser::isOfAnotherMarket(const String& code) const {
  const auto stocks = portfolio().heldShares();
  return !stocks.empty() && StockCode(stocks[0].code()).suffix() != StockCode(code).suffix();
}

void SharePortfolioUser::buyShares(const String& code, const Trade& purchase) {
  const XMLBuyEvent& event = addBuyEvent(code, purchase);
  debitCash(purchase.date, purchaseCost(event, purchase.number, purchase.price), CASH_EVENT_DEBIT,
            purchaseDescription(code, purchase.number, purchase.price));
}

XMLHeldShare& SharePortfolioUser::heldShareFor(const String& code) {
  if (XMLHeldShare* stock = findHeldShare(code))
    return *stock;
  XMLHeldShare& stock = m_portfolio.heldShares().add();
  stock.setCode(code);
  return stock;
}

XMLBuyEvent& SharePortfolioUser::addBuyEvent(const String& code, const Trade& purchase) {
  requireTrade(purchase.number, purchase.price, purchase.brokerage);
  XMLBuyEvent& event = heldShareFor(code).parcels().add();
  storeBuyEvent(event, numberText(purchase.number), purchase);
  m_capitalRecord.recordsChangedFrom(purchase.date);
  return event;
}

void SharePortfolioUser::removeHeldShare(const String& code) {
  const XMLHeldShare* stock = findHeldShare(code);
  if (!stock)
    return;
  std::optional<Date> earliest;
  for (const XMLBuyEvent& parcel : stock->parcels())
    earliest = std::min(earliest.value_or(parcel.bought()), parcel.bought());
  m_portfolio.heldShares().remove(*stock);
  if (earliest)
    m_capitalRecord.recordsChangedFrom(*earliest);
}

void SharePortfolioUser::removeParcel(XMLHeldShare& stock, const XMLBuyEvent& parcel) {
  stock.parcels().remove(parcel);
  // A stock without a parcel can't be written.
  if (stock.parcels().empty())
    m_portfolio.heldShares().remove(stock);
}

XMLBuyEvent* SharePortfolioUser::findParcel(XMLHeldShare& stock, const Date& date, double number) const {
  const String day = dayText(date);
  const Date today;
  for (XMLBuyEvent& parcel : stock.parcels())
    if (parcel.boughtLeaf().value() == day && showsTheSame(sharesOn(parcel, today).number, number, 4))
      return &parcel;
  return nullptr;
}

bool SharePortfolioUser::deleteBuyEvent(const String& code, const Date& date, double number) {
  XMLHeldShare* stock = findHeldShare(code);
  const XMLBuyEvent* parcel = stock ? findParcel(*stock, date, number) : nullptr;
  if (!parcel)
    return false;
  const XMLCashEvent* entry =
      findCashEntry(m_portfolio, {dayText(date), moneyText(purchaseCost(*parcel)), CASH_EVENT_DEBIT, code});
  if (entry)
    m_portfolio.cashEvents().remove(*entry);
  removeParcel(*stock, *parcel);
  m_capitalRecord.recordsChangedFrom(date);
  if (entry)
    tellCashChanged();
  return entry != nullptr;
}

bool SharePortfolioUser::editBuyEvent(XMLBuyEvent& event, const Trade& purchase, double oldCost,
                                      const Date& oldDate) {
  requireTrade(purchase.number, purchase.price, purchase.brokerage);
  const String code = event.code();
  const Date earlier = std::min({purchase.date, oldDate, event.bought()});
  if (purchase.date != event.bought())
    takeSplitsBetween(event, purchase.date, FAR_OFF);
  storeBuyEvent(event, editedNumber(event, purchase.number), purchase);
  const bool followed = moveCashEntry({dayText(oldDate), moneyText(oldCost), CASH_EVENT_DEBIT, code}, oldCost,
                                      purchase.date, purchaseCost(event, purchase.number, purchase.price),
                                      purchaseDescription(code, purchase.number, purchase.price));
  m_capitalRecord.recordsChangedFrom(earlier);
  if (followed)
    tellCashChanged();
  return followed;
}

void SharePortfolioUser::setMinMax(XMLHeldShare& heldShare, double min, double max) {
  heldShare.setMinMax(min, max);
}

void SharePortfolioUser::setPortfolioMax(XMLHeldShare& heldShare, double value) {
  heldShare.setPortfolioMax(value);
}

} // namespace Tallymoor
