// Dividends of a portfolio, and the cash entry or the reinvested parcel that each of them came as.
#include "engine/PortfolioEvents.h"
#include "engine/SharePortfolioUser.h"
#include "foundation/Amounts.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>

namespace Tallymoor {

/// What of a dividend makes, or finds again, its cash entry or parcel.
struct SharePortfolioUser::Dividend {
  static Dividend recorded(const XMLElement& event) {
    return {textValue(event, u"Code"),   dateValue(event, u"ReceiveDate"), doubleValue(event, u"NumHeld"),
            doubleValue(event, u"Rate"), doubleValue(event, u"DRPShares"), doubleValue(event, u"DRPRate")};
  }

  bool isReinvested() const { return !showsAsZero(drpShares); }
  /// The gross amount: tax withheld abroad is noted for the user and changes no cash.
  double amount() const { return numHeld * rate; }
  String description() const { return dividendDescription(code, rate, numHeld); }

  String code;
  Date date;
  double numHeld;
  double rate;
  double drpShares;
  double drpRate;
};

namespace {

const char16_t* const DIVIDEND_MARK = u"DIVIDEND";

void requireDividend(double numHeld, double rate, double drpShares, double drpRate, double withholdingTax) {
  requireTrade(drpShares, drpRate, 0.0);
  requireNotNegative(numHeld, u"The number of shares");
  requireNotNegative(rate, u"The dividend rate");
  requireNotNegative(withholdingTax, u"The withholding tax");
}

void storeDividend(XMLElement& event, const String& code, const Date& date, double numHeld, double rate,
                   std::int32_t percentFranked, double drpShares, double drpRate,
                   const String& foreignDividend, double withholdingTax) {
  event.subElement(u"Code").setValue(code);
  event.subElement(u"ReceiveDate").setValue(dayText(date));
  event.subElement(u"NumHeld").setValue(numberText(numHeld));
  event.subElement(u"Rate").setValue(dividendRateText(rate));
  event.subElement(u"PercentFranked").setValue(String::fromLong(percentFranked));
  event.subElement(u"DRPShares").setValue(numberText(drpShares));
  event.subElement(u"DRPRate").setValue(priceText(drpRate));
  setOptionalText(event, u"ForeignDividend", foreignDividend);
  if (!showsAsZero(withholdingTax, 2))
    event.subElement(u"WithholdingTax").setValue(moneyText(withholdingTax));
}

/// The parcel that a reinvested dividend made, as an edit looks for it. A parcel with brokerage or without
/// the dividend's comment is a purchase.
XMLElement* findReinvestment(XMLElement& stock, const Date& date, double shares, double price) {
  const String day = dayText(date);
  for (std::size_t i = 0; i < stock.numSubElements(u"BuyEvents"); ++i) {
    XMLElement& parcel = stock.subElement(u"BuyEvents", i);
    if (textValue(parcel, u"BuyDate") == day && showsTheSame(doubleValue(parcel, u"NumHeld"), shares, 4) &&
        showsTheSame(doubleValue(parcel, u"BuyPrice"), price, 4) &&
        showsAsZero(doubleValue(parcel, u"Brokerage")) &&
        textValue(parcel, u"Comment").contains(DIVIDEND_MARK))
      return &parcel;
  }
  return nullptr;
}

/// The parcel of a dividend that is to be deleted: the price counts to the cent only, and comment and
/// brokerage play no part.
XMLElement* findParcelToDelete(XMLElement& stock, const Date& date, double shares, double price) {
  const String day = dayText(date);
  for (std::size_t i = 0; i < stock.numSubElements(u"BuyEvents"); ++i) {
    XMLElement& parcel = stock.subElement(u"BuyEvents", i);
    if (textValue(parcel, u"BuyDate") == day && showsTheSame(doubleValue(parcel, u"BuyPrice"), price, 2) &&
        showsTheSame(doubleValue(parcel, u"NumHeld"), shares, 4))
      return &parcel;
  }
  return nullptr;
}

} // namespace

void SharePortfolioUser::receiveDividend(const String& code, const Date& date, double numHeld, double rate,
                                         std::int32_t percentFranked, double drpShares, double drpRate,
                                         const String& foreignDividend, double withholdingTax) {
  requireDividend(numHeld, rate, drpShares, drpRate, withholdingTax);
  XMLElement& event =
      m_portfolio.subElement(u"Dividends").addSubElement(new XMLDividendEvent, u"DividendEvents");
  storeDividend(event, code, date, numHeld, rate, percentFranked, drpShares, drpRate, foreignDividend,
                withholdingTax);
  payDividend({code, date, numHeld, rate, drpShares, drpRate});
}

void SharePortfolioUser::payDividend(const Dividend& dividend) {
  if (dividend.isReinvested())
    addBuyEvent(dividend.code, dividend.date, dividend.drpShares, dividend.drpRate, 0.0,
                dividend.description());
  else
    creditCash(dividend.date, dividend.amount(), CASH_EVENT_CREDIT, dividend.description());
}

bool SharePortfolioUser::editDividend(XMLElement& event, const String& code, const Date& date, double numHeld,
                                      double rate, std::int32_t percentFranked, double drpShares,
                                      double drpRate, const String& foreignDividend, double withholdingTax,
                                      double oldDRPShares, double oldBuyPrice, double oldValue,
                                      const Date& oldDate) {
  requireDividend(numHeld, rate, drpShares, drpRate, withholdingTax);
  const Dividend before = Dividend::recorded(event);
  const Dividend now{code, date, numHeld, rate, drpShares, drpRate};
  storeDividend(event, now.code, date, numHeld, rate, percentFranked, drpShares, drpRate, foreignDividend,
                withholdingTax);
  bool followed = false;
  if (oldValue > 0.0) {
    followed = moveCashDividend(
        {dayText(oldDate), moneyText(oldValue), CASH_EVENT_CREDIT, before.description()}, oldValue, now);
  } else {
    std::size_t index = 0;
    XMLElement* stock = findHeldShare(before.code, index);
    XMLElement* parcel = stock ? findReinvestment(*stock, oldDate, oldDRPShares, oldBuyPrice) : nullptr;
    followed = parcel != nullptr;
    moveReinvestment(before.code, stock, parcel, now);
  }
  m_capitalRecord.recordsChangedFrom(std::min({date, oldDate, before.date}));
  return followed;
}

bool SharePortfolioUser::moveCashDividend(const CashEntryKey& key, double oldValue, const Dividend& now) {
  bool followed = false;
  if (now.isReinvested()) {
    const auto entry = findCashEntry(m_portfolio, key);
    followed = entry.has_value();
    if (entry)
      removeCashEntry(m_portfolio, *entry);
    payDividend(now);
  } else {
    followed = moveCashEntry(key, oldValue, now.date, now.amount(), now.description());
  }
  if (followed)
    tellCashChanged();
  return followed;
}

void SharePortfolioUser::moveReinvestment(const String& oldCode, XMLElement* stock, XMLElement* parcel,
                                          const Dividend& now) {
  // A parcel can't change its stock, so with another code the shares are received anew.
  if (now.isReinvested() && now.code == oldCode) {
    if (!parcel)
      return;
    if (dateValue(*parcel, u"BuyDate") != now.date)
      takeSplitsBetween(*parcel, now.code, now.date, FAR_OFF);
    parcel->subElement(u"BuyDate").setValue(dayText(now.date));
    parcel->subElement(u"NumHeld").setValue(numberText(now.drpShares));
    parcel->subElement(u"BuyPrice").setValue(priceText(now.drpRate));
    return;
  }
  if (parcel)
    removeParcel(*stock, *parcel);
  payDividend(now);
}

bool SharePortfolioUser::deleteDividend(const XMLElement& event) {
  XMLElement& dividends = m_portfolio.subElement(u"Dividends");
  const auto place = indexOf(dividends, u"DividendEvents", event);
  if (!place)
    return false;
  const Dividend dividend = Dividend::recorded(event);
  const bool found = dividend.isReinvested() ? removeReinvestment(dividend) : removeCashDividend(dividend);
  m_capitalRecord.recordsChangedFrom(dividend.date);
  dividends.removeSubElement(u"DividendEvents", *place);
  return found;
}

bool SharePortfolioUser::removeCashDividend(const Dividend& dividend) {
  // The rate and number behind the code are left out: the amount says enough.
  const auto entry = findCashEntry(m_portfolio, {dayText(dividend.date), moneyText(dividend.amount()),
                                                 CASH_EVENT_CREDIT, dividendDescriptionStart(dividend.code)});
  if (!entry)
    return false;
  removeCashEntry(m_portfolio, *entry);
  tellCashChanged();
  return true;
}

bool SharePortfolioUser::removeReinvestment(const Dividend& dividend) {
  std::size_t index = 0;
  XMLElement* stock = findHeldShare(dividend.code, index);
  XMLElement* parcel =
      stock ? findParcelToDelete(*stock, dividend.date, dividend.drpShares, dividend.drpRate) : nullptr;
  if (!parcel)
    return false;
  removeParcel(*stock, *parcel);
  return true;
}

} // namespace Tallymoor
