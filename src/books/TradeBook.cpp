#include "books/TradeBook.h"
#include "books/CashBook.h"
#include "books/Holdings.h"
#include "books/PortfolioEvents.h"
#include "books/SaleCash.h"
#include "books/SaleDeletion.h"
#include "books/SaleParts.h"
#include "books/SaleUndo.h"
#include "books/SharePortfolioCapitalRecordUser.h"
#include "books/SplitBook.h"
#include "books/SplitTerms.h"
#include "books/Trade.h"
#include "foundation/Amounts.h"
#include "foundation/Exception.h"
#include "foundation/KeptTexts.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>
#include <utility>

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

Date earlierDate(const XMLSellEvent& sale) {
  return std::min(sale.bought(), sale.sold());
}

/// How many shares of the purchase one share of the day is.
double boughtOfOne(const XMLParcel& event, const Date& day) {
  return sharesAsBought(event, day, {1.0, 1.0}).number;
}

} // namespace

// ---- Purchases ----

void TradeBook::buyShares(const String& code, const Trade& purchase) {
  const XMLBuyEvent& event = addBuyEvent(code, purchase);
  m_cash.debit(purchase.date, purchaseCost(event, purchase.number, purchase.price), CASH_EVENT_DEBIT,
               purchaseDescription(code, purchase.number, purchase.price));
}

XMLBuyEvent& TradeBook::addBuyEvent(const String& code, const Trade& purchase) {
  requireTrade(purchase.number, purchase.price, purchase.brokerage);
  XMLBuyEvent& event = m_holdings.heldShareFor(code).parcels().add();
  storeBuyEvent(event, numberText(purchase.number), purchase);
  m_record.recordsChangedFrom(purchase.date);
  return event;
}

void TradeBook::removeHeldShare(const String& code) {
  const XMLHeldShare* stock = m_holdings.findHeldShare(code);
  if (!stock)
    return;
  for (const XMLBuyEvent& parcel : stock->parcels())
    m_record.recordsChangedFrom(parcel.bought());
  m_holdings.portfolio().heldShares().remove(*stock);
}

bool TradeBook::deleteBuyEvent(const String& code, const Date& date, double number) {
  XMLHeldShare* stock = m_holdings.findHeldShare(code);
  const XMLBuyEvent* parcel = stock ? m_holdings.findParcel(*stock, date, number) : nullptr;
  if (!parcel)
    return false;
  const bool paid = m_cash.remove({dayText(date), moneyText(purchaseCost(*parcel)), CASH_EVENT_DEBIT, code});
  m_holdings.remove(*stock, *parcel);
  m_record.recordsChangedFrom(date);
  return paid;
}

bool TradeBook::editBuyEvent(XMLBuyEvent& event, const Trade& purchase, double oldCost, const Date& oldDate) {
  requireTrade(purchase.number, purchase.price, purchase.brokerage);
  const String code = event.code();
  const Date earlier = std::min({purchase.date, oldDate, event.bought()});
  if (purchase.date != event.bought())
    m_splits.takeSplitsBetween(event, purchase.date, FAR_OFF);
  storeBuyEvent(event, editedNumber(event, purchase.number), purchase);
  const bool followed = m_cash.move({dayText(oldDate), moneyText(oldCost), CASH_EVENT_DEBIT, code}, oldCost,
                                    purchase.date, purchaseCost(event, purchase.number, purchase.price),
                                    purchaseDescription(code, purchase.number, purchase.price));
  m_record.recordsChangedFrom(earlier);
  return followed;
}

// ---- Sales ----

void TradeBook::sellShares(const String& code, const Trade& sale, bool firstInFirstOut) {
  requireTrade(sale.number, sale.price, sale.brokerage);
  XMLHeldShare* stock = m_holdings.findHeldShare(code);
  if (!stock)
    throw Exception(kept::NO_SHARES_TO_SELL);
  // A copy: the code may be that of the stock itself, which goes with its last share.
  const String codeSold = code; // NOLINT(performance-unnecessary-copy-initialization)
  Trade part = sale;
  for (const SalePart& taken : partsOfSale(*stock, sale, firstInFirstOut)) {
    recordSale(codeSold, taken, part);
    part.brokerage = 0.0;
  }
}

void TradeBook::recordSale(const String& code, const SalePart& part, const Trade& sale) {
  XMLSellEvent& event = m_holdings.soldShareFor(code).sales().add();
  event.copyPurchase(*part.parcel);
  copyAdjustments(*part.parcel, event, sale.date);
  event.setNumberText(part.number);
  if (!part.rest.empty()) {
    event.setBrokerage(0.0);
    part.parcel->setNumberText(part.rest);
  } else {
    // What can't be divided goes with the last of the parcel.
    event.setBrokerage(part.parcel->brokerage());
    if (!part.parcel->comment().empty())
      event.setBuyComment(part.parcel->comment());
    m_holdings.remove(elementAs<XMLHeldShare>(*part.parcel->parent()), *part.parcel);
  }
  event.setSold(sale.date);
  event.setSellPrice(sale.price);
  event.setSellBrokerage(sale.brokerage);
  if (!sale.comment.empty())
    event.setComment(sale.comment);
  m_cash.credit(sale.date, part.taken * sale.price - sale.brokerage, CASH_EVENT_CREDIT,
                saleDescription(code, part.taken, sale.price));
}

double TradeBook::proceedsOfSale(const String& code, const Trade& sale, bool firstInFirstOut) const {
  double sold = 0.0;
  double proceeds = 0.0;
  double brokerage = sale.brokerage;
  if (XMLHeldShare* stock = m_holdings.findHeldShare(code))
    for (const SalePart& part : partsOfSale(*stock, sale, firstInFirstOut)) {
      sold += part.taken;
      // Each cash entry is rounded by itself.
      proceeds += moneyText(part.taken * sale.price - std::exchange(brokerage, 0.0)).toDouble();
    }
  const double lacking = isAllSold(sold, sale.number) ? 0.0 : sale.number - sold;
  return proceeds + lacking * sale.price - brokerage;
}

void TradeBook::removeSoldShare(const String& code) {
  const XMLSoldShare* stock = m_holdings.findSoldShare(code);
  if (!stock)
    return;
  for (const XMLSellEvent& sale : stock->sales())
    m_record.recordsChangedFrom(earlierDate(sale));
  m_holdings.portfolio().soldShares().remove(*stock);
}

bool TradeBook::deleteSellEvent(const String& code, const Date& date, double number) {
  const XMLSellEvent* sale = m_holdings.findSale(code, date, number);
  return sale && deleteSale(*sale);
}

bool TradeBook::deleteSale(const XMLSellEvent& sale) {
  const SaleDeletion deletion(sale);
  const Date earliest = std::min(deletion.bought, sale.sold());
  for (const auto& line : {deletion.proceeds, deletion.cost})
    if (line)
      m_cash.remove(*line->event);
  m_holdings.remove(sale);
  m_record.recordsChangedFrom(earliest);
  return deletion.proceeds && deletion.cost;
}

bool TradeBook::undoSale(const XMLSellEvent& sale) {
  const SaleDeletion deletion(sale);
  // Until its sale the parcel counted as held nevertheless.
  const Date earliest = sale.sold();
  giveSharesBack(m_holdings, m_splits, sale, deletion.rest);
  if (deletion.proceeds)
    m_cash.remove(*deletion.proceeds->event);
  m_holdings.remove(sale);
  m_record.recordsChangedFrom(earliest);
  return deletion.proceeds.has_value();
}

void TradeBook::storeSoldShares(XMLSellEvent& sale, const SaleEntry& now, bool recordedAsSold) {
  const Date soldBefore = sale.sold();
  const SharesAt before = sharesAsSold(sale, recordedAsSold);
  const double termsBefore = boughtOfOne(sale, soldBefore);
  const bool moved = now.bought != sale.bought() || now.sold != soldBefore;
  sale.setBought(now.bought);
  sale.setSold(now.sold);
  if (moved)
    m_splits.takeSplitsBetween(sale, now.bought, now.sold);
  const SharesAt shares{now.number, now.buyPrice};
  const bool split = !recordedAsSold && isSplitBy(sale, now.sold);
  const SharesAt recorded = split ? sharesAsBought(sale, now.sold, shares) : shares;
  // What was not changed stays as it is, to the last digit.
  const bool sameTerms = recordedAsSold || showsTheSame(termsBefore, boughtOfOne(sale, now.sold), 6);
  if (!sameTerms || !showsTheSame(shares.number, before.number, 6))
    sale.setNumberText(split ? recordedNumberText(recorded.number) : numberText(recorded.number));
  if (!sameTerms || !showsTheSame(shares.price, before.price, 4))
    sale.setPrice(recorded.price);
}

bool TradeBook::editSellEvent(XMLSellEvent& event, const SaleEntry& sale) {
  requireTrade(sale.number, sale.buyPrice, sale.buyBrokerage);
  requireTrade(sale.number, sale.sellPrice, sale.sellBrokerage);
  const String code = event.code();
  const bool recordedAsSold = isRecordedAsSold(event);
  const SharesAt before = sharesAsSold(event, recordedAsSold);
  const CashEntryKey costBefore = costKey(event), proceedsBefore = proceedsKey(event, before.number);
  const double paidBefore = costOf(event), receivedBefore = proceedsOf(event, before.number);
  const Date earliest = std::min({earlierDate(event), sale.bought, sale.sold});
  storeSoldShares(event, sale, recordedAsSold);
  event.setSellPrice(sale.sellPrice);
  event.setBrokerage(sale.buyBrokerage);
  event.setSellBrokerage(sale.sellBrokerage);
  if (!sale.comment.empty())
    event.setComment(sale.comment);

  // Each entry is in shares of its own day.
  const bool purchaseFollowed = m_cash.move(costBefore, paidBefore, sale.bought, costOf(event),
                                            purchaseDescription(code, event.number(), event.price()));
  const double sold = sharesAsSold(event, recordedAsSold).number;
  const bool saleFollowed = m_cash.move(proceedsBefore, receivedBefore, sale.sold, proceedsOf(event, sold),
                                        saleDescription(code, sold, event.sellPrice()));
  m_record.recordsChangedFrom(earliest);
  return purchaseFollowed && saleFollowed;
}

} // namespace Tallymoor
