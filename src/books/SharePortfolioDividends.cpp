// Dividends of a portfolio, and the cash entry or the reinvested parcel that each of them came as.
#include "books/PortfolioEvents.h"
#include "books/SharePortfolioUser.h"
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
XMLBuyEvent* findReinvestment(XMLHeldShare& stock, const Date& date, double shares, double price) {
  const String day = dayText(date);
  for (XMLBuyEvent& parcel : stock.parcels())
    if (parcel.boughtLeaf().value() == day && showsTheSame(parcel.number(), shares, 4) &&
        showsTheSame(parcel.price(), price, 4) && showsAsZero(parcel.brokerage()) &&
        parcel.comment().contains(DIVIDEND_MARK))
      return &parcel;
  return nullptr;
}

/// The parcel of a dividend that is to be deleted: the price counts to the cent only, and comment and
/// brokerage play no part.
const XMLBuyEvent* findParcelToDelete(const XMLHeldShare& stock, const Date& date, double shares,
                                      double price) {
  const String day = dayText(date);
  for (const XMLBuyEvent& parcel : stock.parcels())
    if (parcel.boughtLeaf().value() == day && showsTheSame(parcel.price(), price, 2) &&
        showsTheSame(parcel.number(), shares, 4))
      return &parcel;
  return nullptr;
}

} // namespace

void SharePortfolioUser::receiveDividend(const DividendEntry& dividend) {
  requireDividend(dividend);
  storeDividend(m_portfolio.dividends().add(), dividend);
  payDividend(dividend);
}

void SharePortfolioUser::payDividend(const DividendEntry& dividend) {
  if (dividend.isReinvested())
    addBuyEvent(dividend.code,
                {dividend.date, dividend.drpShares, dividend.drpRate, 0.0, dividend.description()});
  else
    creditCash(dividend.date, dividend.amount(), CASH_EVENT_CREDIT, dividend.description());
}

bool SharePortfolioUser::editDividend(XMLDividendEvent& event, const DividendEntry& dividend,
                                      double oldDRPShares, double oldBuyPrice, double oldValue,
                                      const Date& oldDate) {
  requireDividend(dividend);
  const DividendEntry before = DividendEntry::recorded(event);
  storeDividend(event, dividend);
  bool followed = false;
  if (oldValue > 0.0) {
    followed = moveCashDividend(
        {dayText(oldDate), moneyText(oldValue), CASH_EVENT_CREDIT, before.description()}, oldValue, dividend);
  } else {
    XMLHeldShare* stock = findHeldShare(before.code);
    XMLBuyEvent* parcel = stock ? findReinvestment(*stock, oldDate, oldDRPShares, oldBuyPrice) : nullptr;
    followed = parcel != nullptr;
    moveReinvestment(before.code, stock, parcel, dividend);
  }
  m_capitalRecord.recordsChangedFrom(std::min({dividend.date, oldDate, before.date}));
  return followed;
}

bool SharePortfolioUser::moveCashDividend(const CashEntryKey& key, double oldValue,
                                          const DividendEntry& now) {
  bool followed = false;
  if (now.isReinvested()) {
    const XMLCashEvent* entry = findCashEntry(m_portfolio, key);
    followed = entry && m_portfolio.cashEvents().remove(*entry);
    payDividend(now);
  } else {
    followed = moveCashEntry(key, oldValue, now.date, now.amount(), now.description());
  }
  if (followed)
    tellCashChanged();
  return followed;
}

void SharePortfolioUser::moveReinvestment(const String& oldCode, XMLHeldShare* stock, XMLBuyEvent* parcel,
                                          const DividendEntry& now) {
  // A parcel can't change its stock, so with another code the shares are received anew.
  if (now.isReinvested() && now.code == oldCode) {
    if (!parcel)
      return;
    if (parcel->bought() != now.date)
      takeSplitsBetween(*parcel, now.date, FAR_OFF);
    parcel->setBought(now.date);
    parcel->setNumberText(numberText(now.drpShares));
    parcel->setPrice(now.drpRate);
    return;
  }
  if (parcel)
    removeParcel(*stock, *parcel);
  payDividend(now);
}

bool SharePortfolioUser::deleteDividend(const XMLDividendEvent& event) {
  if (!m_portfolio.dividends().contains(event))
    return false;
  const DividendEntry dividend = DividendEntry::recorded(event);
  const bool found = dividend.isReinvested() ? removeReinvestment(dividend) : removeCashDividend(dividend);
  m_capitalRecord.recordsChangedFrom(dividend.date);
  m_portfolio.dividends().remove(event);
  return found;
}

bool SharePortfolioUser::removeCashDividend(const DividendEntry& dividend) {
  // The rate and number behind the code are left out: the amount says enough.
  const XMLCashEvent* entry =
      findCashEntry(m_portfolio, {dayText(dividend.date), moneyText(dividend.amount()), CASH_EVENT_CREDIT,
                                  dividendDescriptionStart(dividend.code)});
  if (!entry)
    return false;
  m_portfolio.cashEvents().remove(*entry);
  tellCashChanged();
  return true;
}

bool SharePortfolioUser::removeReinvestment(const DividendEntry& dividend) {
  XMLHeldShare* stock = findHeldShare(dividend.code);
  const XMLBuyEvent* parcel =
      stock ? findParcelToDelete(*stock, dividend.date, dividend.drpShares, dividend.drpRate) : nullptr;
  if (!parcel)
    return false;
  removeParcel(*stock, *parcel);
  return true;
}

} // namespace Tallymoor
