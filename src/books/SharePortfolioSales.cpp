// Sales of a portfolio: matching to parcels, sale records and their cash entries.
#include "books/SaleCash.h"
#include "books/SharePortfolioUser.h"
#include "books/SplitTerms.h"
#include "foundation/Amounts.h"
#include "foundation/Exception.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>
#include <utility>
#include <vector>

namespace Tallymoor {

namespace {

Date earlierDate(const XMLSellEvent& sale) {
  return std::min(sale.bought(), sale.sold());
}

/// Shares of the day as the parcel records them: only what a split has divided needs more than hundredths.
String recordedText(const XMLBuyEvent& parcel, const Date& day, double shares) {
  return isSplitBy(parcel, day) ? recordedNumberText(sharesAsBought(parcel, day, {shares, 0.0}).number)
                                : numberText(shares);
}

/// How many shares of the purchase one share of the day is.
double boughtOfOne(const XMLParcel& event, const Date& day) {
  return sharesAsBought(event, day, {1.0, 1.0}).number;
}

/// In the order in which a sale takes from them.
template <class Parcel>
std::vector<Parcel*> inOrderOfSale(const ElementList<Parcel>& all, bool firstInFirstOut) {
  std::vector<Parcel*> parcels;
  for (Parcel& parcel : all)
    if (!parcel.isSetAside())
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

Part partOf(const XMLBuyEvent& parcel, const Date& day, double wanted) {
  const double available = sharesOn(parcel, day).number;
  const String number = recordedText(parcel, day, wanted);
  const String rest = recordedNumberText(parcel.number() - number.toDouble());
  // A rest that would be recorded, or read, as 0.00 shares goes with the parcel.
  if (wanted < available && !showsAsZero(available - wanted, 2) && rest.toDouble() > 0.0)
    return {wanted, number, rest};
  // A number that a split divided may come back as 200.000001; the cash is that of the 200 that were typed.
  const String& whole = parcel.numberText();
  return {isSplitBy(parcel, day) && number == whole ? wanted : available, whole, String()};
}

bool isAllSold(double sold, double number) {
  return sold >= number || showsTheSame(sold, number, 4);
}

} // namespace

void SharePortfolioUser::sellShares(const String& code, const Trade& sale, bool firstInFirstOut) {
  requireTrade(sale.number, sale.price, sale.brokerage);
  XMLHeldShare* stock = findHeldShare(code);
  if (!stock)
    throw Exception(u"SharePortfolioUser::sellShares - cant find held shares to sell");
  const String codeSold = code; // which may be that of the stock itself
  Trade part = sale;
  double sold = 0.0;
  // The stock itself dies with its last parcel, and only then.
  for (XMLBuyEvent* parcel : inOrderOfSale(stock->parcels(), firstInFirstOut)) {
    if (isAllSold(sold, sale.number))
      break;
    part.number = sale.number - sold;
    sold += sellFromBuyEvent(*stock, *parcel, codeSold, part);
    part.brokerage = 0.0;
  }
}

double SharePortfolioUser::sellFromBuyEvent(XMLHeldShare& stock, XMLBuyEvent& parcel, const String& code,
                                            const Trade& sale) {
  const Part part = partOf(parcel, sale.date, sale.number);
  XMLSellEvent& event = addSellEvent(code);
  event.copyPurchase(parcel);
  copyAdjustments(parcel, event, sale.date);

  event.setNumberText(part.number);
  if (!part.rest.empty()) {
    event.setBrokerage(0.0);
    parcel.setNumberText(part.rest);
  } else {
    // What can't be divided goes with the last of the parcel.
    event.setBrokerage(parcel.brokerage());
    if (!parcel.comment().empty())
      event.setBuyComment(parcel.comment());
    removeParcel(stock, parcel);
  }
  event.setSold(sale.date);
  event.setSellPrice(sale.price);
  event.setSellBrokerage(sale.brokerage);
  if (!sale.comment.empty())
    event.setComment(sale.comment);
  creditCash(sale.date, part.taken * sale.price - sale.brokerage, CASH_EVENT_CREDIT,
             saleDescription(code, part.taken, sale.price));
  return part.taken;
}

double SharePortfolioUser::proceedsOfSale(const String& code, const Trade& sale, bool firstInFirstOut) const {
  const XMLHeldShare* stock = findHeldShare(code);
  double sold = 0.0;
  double proceeds = 0.0;
  double brokerage = sale.brokerage;
  for (const XMLBuyEvent* parcel :
       stock ? inOrderOfSale(stock->parcels(), firstInFirstOut) : std::vector<const XMLBuyEvent*>()) {
    if (isAllSold(sold, sale.number))
      break;
    const double taken = partOf(*parcel, sale.date, sale.number - sold).taken;
    sold += taken;
    proceeds += moneyText(taken * sale.price - std::exchange(brokerage, 0.0)).toDouble();
  }
  const double lacking = isAllSold(sold, sale.number) ? 0.0 : sale.number - sold;
  return proceeds + lacking * sale.price - brokerage;
}

XMLSellEvent& SharePortfolioUser::addSellEvent(const String& code) {
  XMLSoldShare* stock = findSoldShare(code);
  if (!stock) {
    stock = &m_portfolio.soldShares().add();
    stock->setCode(code);
  }
  return stock->sales().add();
}

void SharePortfolioUser::removeSoldShare(const String& code) {
  const XMLSoldShare* stock = findSoldShare(code);
  if (!stock)
    return;
  std::optional<Date> earliest;
  for (const XMLSellEvent& sale : stock->sales())
    earliest = std::min(earliest.value_or(earlierDate(sale)), earlierDate(sale));
  m_portfolio.soldShares().remove(*stock);
  if (earliest)
    m_capitalRecord.recordsChangedFrom(*earliest);
}

void SharePortfolioUser::storeSoldShares(XMLSellEvent& sale, const Date& buyDate, const Date& sellDate,
                                         const SharesAt& shares, bool recordedAsSold) {
  const Date soldBefore = sale.sold();
  const SharesAt before = sharesAsSold(sale, recordedAsSold);
  const double termsBefore = boughtOfOne(sale, soldBefore);
  const bool moved = buyDate != sale.bought() || sellDate != soldBefore;
  sale.setBought(buyDate);
  sale.setSold(sellDate);
  if (moved)
    takeSplitsBetween(sale, buyDate, sellDate);
  const bool split = !recordedAsSold && isSplitBy(sale, sellDate);
  const SharesAt recorded = split ? sharesAsBought(sale, sellDate, shares) : shares;
  // What was not changed stays as it is, to the last digit.
  const bool sameTerms = recordedAsSold || showsTheSame(termsBefore, boughtOfOne(sale, sellDate), 6);
  if (!sameTerms || !showsTheSame(shares.number, before.number, 6))
    sale.setNumberText(split ? recordedNumberText(recorded.number) : numberText(recorded.number));
  if (!sameTerms || !showsTheSame(shares.price, before.price, 4))
    sale.setPrice(recorded.price);
}

bool SharePortfolioUser::editSellEvent(XMLSellEvent& event, const SaleEntry& sale) {
  requireTrade(sale.number, sale.buyPrice, sale.buyBrokerage);
  requireTrade(sale.number, sale.sellPrice, sale.sellBrokerage);
  const String code = event.code();
  const bool recordedAsSold = isRecordedAsSold(event);
  const SharesAt before = sharesAsSold(event, recordedAsSold);
  const CashEntryKey costBefore = costKey(event), proceedsBefore = proceedsKey(event, before.number);
  const double paidBefore = costOf(event), receivedBefore = proceedsOf(event, before.number);
  const Date earliest = std::min({earlierDate(event), sale.bought, sale.sold});
  storeSoldShares(event, sale.bought, sale.sold, {sale.number, sale.buyPrice}, recordedAsSold);
  event.setSellPrice(sale.sellPrice);
  event.setBrokerage(sale.buyBrokerage);
  event.setSellBrokerage(sale.sellBrokerage);
  if (!sale.comment.empty())
    event.setComment(sale.comment);

  // Each entry speaks of the shares as they were on its day.
  const bool purchaseFollowed = moveCashEntry(costBefore, paidBefore, sale.bought, costOf(event),
                                              purchaseDescription(code, event.number(), event.price()));
  const double sold = sharesAsSold(event, recordedAsSold).number;
  const bool saleFollowed = moveCashEntry(proceedsBefore, receivedBefore, sale.sold, proceedsOf(event, sold),
                                          saleDescription(code, sold, event.sellPrice()));
  m_capitalRecord.recordsChangedFrom(earliest);
  if (purchaseFollowed || saleFollowed)
    tellCashChanged();
  return purchaseFollowed && saleFollowed;
}

} // namespace Tallymoor
