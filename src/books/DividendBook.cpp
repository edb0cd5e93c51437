#include "books/DividendBook.h"
#include "books/CashBook.h"
#include "books/DividendEntry.h"
#include "books/Holdings.h"
#include "books/PortfolioEvents.h"
#include "books/SharePortfolioCapitalRecordUser.h"
#include "books/SplitBook.h"
#include "books/Trade.h"
#include "books/TradeBook.h"
#include "foundation/Amounts.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>

namespace Tallymoor {

namespace {

const char16_t* const DIVIDEND_MARK = u"DIVIDEND";

void requireDividend(const DividendEntry& dividend) {
  requireTrade(dividend.drpShares, dividend.drpRate, 0.0);
  requireNotNegative(dividend.number, u"The number of shares");
  requireNotNegative(dividend.rate, u"The dividend rate");
  requireNotNegative(dividend.withholdingTax, u"The withholding tax");
}

void storeDividend(XMLDividendEvent& event, const DividendEntry& dividend) {
  event.setCode(dividend.code);
  event.setReceived(dividend.date);
  event.setNumber(dividend.number);
  event.setRate(dividend.rate);
  event.setPercentFranked(dividend.percentFranked);
  event.setReinvestment(dividend.drpShares, dividend.drpRate);
  if (!dividend.foreignDividend.empty())
    event.setForeignDividend(dividend.foreignDividend);
  if (!showsAsZero(dividend.withholdingTax, 2))
    event.setWithholdingTax(dividend.withholdingTax);
}

/// The parcel that a reinvested dividend made, as an edit looks for it. A parcel with brokerage or without
/// the dividend's comment is a purchase.
XMLBuyEvent* findReinvestment(XMLHeldShare* stock, const Date& date, double shares, double price) {
  if (!stock)
    return nullptr;
  const String day = dayText(date);
  for (XMLBuyEvent& parcel : stock->parcels())
    if (parcel.boughtLeaf().value() == day && showsTheSame(parcel.number(), shares, 4) &&
        showsTheSame(parcel.price(), price, 4) && showsAsZero(parcel.brokerage()) &&
        parcel.comment().contains(DIVIDEND_MARK))
      return &parcel;
  return nullptr;
}

/// The parcel of a dividend that is to be deleted: the price counts to the cent only, and comment and
/// brokerage play no part.
const XMLBuyEvent* findParcelToDelete(const XMLHeldShare* stock, const DividendEntry& dividend) {
  if (!stock)
    return nullptr;
  const String day = dayText(dividend.date);
  for (const XMLBuyEvent& parcel : stock->parcels())
    if (parcel.boughtLeaf().value() == day && showsTheSame(parcel.price(), dividend.drpRate, 2) &&
        showsTheSame(parcel.number(), dividend.drpShares, 4))
      return &parcel;
  return nullptr;
}

} // namespace

void DividendBook::receive(const DividendEntry& dividend) {
  requireDividend(dividend);
  storeDividend(m_holdings.portfolio().dividends().add(), dividend);
  pay(dividend);
}

void DividendBook::pay(const DividendEntry& dividend) {
  if (dividend.isReinvested())
    m_trades.addBuyEvent(dividend.code,
                         {dividend.date, dividend.drpShares, dividend.drpRate, 0.0, dividend.description()});
  else
    m_cash.credit(dividend.date, dividend.amount(), CASH_EVENT_CREDIT, dividend.description());
}

bool DividendBook::edit(XMLDividendEvent& event, const DividendEntry& dividend, double oldDRPShares,
                        double oldBuyPrice, double oldValue, const Date& oldDate) {
  requireDividend(dividend);
  const DividendEntry before = DividendEntry::recorded(event);
  storeDividend(event, dividend);
  bool followed = false;
  if (oldValue > 0.0) {
    followed = moveCash(before, dividend, oldValue, oldDate);
  } else {
    XMLBuyEvent* parcel =
        findReinvestment(m_holdings.findHeldShare(before.code), oldDate, oldDRPShares, oldBuyPrice);
    followed = parcel != nullptr;
    moveReinvestment(before, parcel, dividend);
  }
  m_record.recordsChangedFrom(std::min({dividend.date, oldDate, before.date}));
  return followed;
}

bool DividendBook::moveCash(const DividendEntry& before, const DividendEntry& now, double oldValue,
                            const Date& oldDate) {
  const CashEntryKey key{dayText(oldDate), moneyText(oldValue), CASH_EVENT_CREDIT, before.description()};
  if (!now.isReinvested())
    return m_cash.move(key, oldValue, now.date, now.amount(), now.description());
  const bool followed = m_cash.remove(key);
  pay(now);
  return followed;
}

void DividendBook::moveReinvestment(const DividendEntry& before, XMLBuyEvent* parcel,
                                    const DividendEntry& now) {
  // A parcel can't change its stock, so with another code the shares are received again.
  if (now.isReinvested() && now.code == before.code) {
    if (!parcel)
      return;
    if (parcel->bought() != now.date)
      m_splits.takeSplitsBetween(*parcel, now.date, FAR_OFF);
    parcel->setBought(now.date);
    parcel->setNumberText(numberText(now.drpShares));
    parcel->setPrice(now.drpRate);
    return;
  }
  if (parcel)
    removeParcel(*parcel);
  pay(now);
}

void DividendBook::removeParcel(const XMLBuyEvent& parcel) {
  m_holdings.remove(elementAs<XMLHeldShare>(*parcel.parent()), parcel);
}

bool DividendBook::remove(const XMLDividendEvent& event) {
  const auto dividends = m_holdings.portfolio().dividends();
  if (!dividends.contains(event))
    return false;
  const DividendEntry dividend = DividendEntry::recorded(event);
  m_record.recordsChangedFrom(dividend.date);
  dividends.remove(event);
  if (!dividend.isReinvested())
    // The rate and number behind the code are left out: the amount says enough.
    return m_cash.remove({dayText(dividend.date), moneyText(dividend.amount()), CASH_EVENT_CREDIT,
                          dividendDescriptionStart(dividend.code)});
  const XMLBuyEvent* parcel = findParcelToDelete(m_holdings.findHeldShare(dividend.code), dividend);
  if (parcel)
    removeParcel(*parcel);
  return parcel != nullptr;
}

} // namespace Tallymoor
