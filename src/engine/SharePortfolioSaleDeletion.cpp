// Deleting a sale, with the purchase of its shares or without.
#include "engine/SaleCash.h"
#include "engine/SaleDeletion.h"
#include "engine/SharePortfolioUser.h"
#include "engine/SplitTerms.h"
#include "foundation/Amounts.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>
#include <utility>
#include <vector>

namespace Tallymoor {

namespace {

XMLElement* findSale(XMLElement& stock, const Date& date, double number) {
  const String day = dayText(date);
  for (std::size_t i = 0; i < stock.numSubElements(u"SellEvents"); ++i) {
    XMLElement& sale = stock.subElement(u"SellEvents", i);
    if (textValue(sale, u"SellDate") == day && showsTheSame(sharesAsSold(sale).number, number, 4))
      return &sale;
  }
  return nullptr;
}

/// Puts the last parcel behind those bought by its day.
void sortInLast(XMLElement& stock) {
  const std::size_t last = stock.numSubElements(u"BuyEvents") - 1;
  const Date bought = dateValue(stock.subElement(u"BuyEvents", last), u"BuyDate");
  std::size_t place = last;
  while (place > 0 && dateValue(stock.subElement(u"BuyEvents", place - 1), u"BuyDate") > bought)
    --place;
  // Elements can only be appended, so those that belong behind it go there one by one.
  for (std::size_t i = place; i < last; ++i) {
    stock.addSubElement(stock.subElement(u"BuyEvents", place).clone(&newElement<XMLBuyEvent>), u"BuyEvents");
    stock.removeSubElement(u"BuyEvents", place);
  }
}

void addAmount(XMLElement& event, std::u16string_view reference, double amount, String (*text)(double)) {
  event.subElement(reference).setValue(text(doubleValue(event, reference) + amount));
}

} // namespace

bool SharePortfolioUser::deleteSellEvent(const String& code, const Date& date, double number) {
  std::size_t index = 0;
  XMLElement* stock = findSoldShare(code, index);
  const XMLElement* sale = stock ? findSale(*stock, date, number) : nullptr;
  return sale && deleteSale(*sale);
}

bool SharePortfolioUser::deleteSale(const XMLElement& sale) {
  const SaleDeletion deletion(sale);
  const Date earliest = std::min(deletion.bought, dateValue(sale, u"SellDate"));
  std::vector<std::size_t> places;
  for (const auto& line : {deletion.proceeds, deletion.cost})
    if (line)
      places.push_back(line->place);
  // From the back, so that the place of the other one stays true.
  std::sort(places.rbegin(), places.rend());
  for (std::size_t place : places)
    removeCashEntry(m_portfolio, place);
  removeSale(sale);
  m_capitalRecord.recordsChangedFrom(earliest);
  if (!places.empty())
    tellCashChanged();
  return deletion.proceeds && deletion.cost;
}

bool SharePortfolioUser::undoSale(const XMLElement& sale) {
  const SaleDeletion deletion(sale);
  // Until its sale the parcel counted as held all the same.
  const Date earliest = dateValue(sale, u"SellDate");
  giveBack(sale, deletion.rest);
  if (deletion.proceeds)
    removeCashEntry(m_portfolio, deletion.proceeds->place);
  removeSale(sale);
  m_capitalRecord.recordsChangedFrom(earliest);
  if (deletion.proceeds)
    tellCashChanged();
  return deletion.proceeds.has_value();
}

void SharePortfolioUser::giveBack(const XMLElement& sale, const XMLElement* rest) {
  const String code = textValue(*sale.parent(), u"Code");
  if (!rest) {
    XMLElement& parcel = parcelOfSale(sale);
    takeKnownSplits(parcel, code, dateValue(sale, u"SellDate"), FAR_OFF);
    sortInLast(*parcel.parent());
    return;
  }
  std::size_t index = 0;
  XMLElement& stock = *findHeldShare(code, index);
  XMLElement& parcel = stock.subElement(u"BuyEvents", *indexOf(stock, u"BuyEvents", *rest));
  addAmount(parcel, u"NumHeld", doubleValue(sale, u"NumHeld"), &recordedNumberText);
  addAmount(parcel, u"Brokerage", doubleValue(sale, u"BuyBrokerage"), &moneyText);
  if (textValue(parcel, u"Comment").empty())
    setOptionalText(parcel, u"Comment", boughtComment(sale, parcel));
}

XMLElement& SharePortfolioUser::parcelOfSale(const XMLElement& sale) {
  XMLElement& stock = heldShareFor(textValue(*sale.parent(), u"Code"));
  XMLElement& parcel = stock.addSubElement(new XMLBuyEvent, u"BuyEvents");
  parcel.subElement(u"BuyDate").setValue(textValue(sale, u"BuyDate"));
  parcel.subElement(u"NumHeld").setValue(textValue(sale, u"NumHeld"));
  parcel.subElement(u"BuyPrice").setValue(textValue(sale, u"BuyPrice"));
  parcel.subElement(u"Brokerage").setValue(textValue(sale, u"BuyBrokerage"));
  setOptionalText(parcel, u"Comment", boughtComment(sale, parcel));
  copyAdjustments(sale, parcel, FAR_OFF);
  return parcel;
}

/// What the sale has kept, which sales of earlier versions have not. That of a reinvestment follows its
/// dividend, by which it is found again.
String SharePortfolioUser::boughtComment(const XMLElement& sale, const XMLElement& parcel) const {
  const String kept = sale.hasAttribute(BUY_COMMENT) ? sale.attribute(BUY_COMMENT) : String();
  if (!kept.empty() && !kept.startsWith(dividendDescriptionStart(textValue(*parcel.parent(), u"Code"))))
    return kept;
  const String reinvested = reinvestmentComment(parcel);
  return reinvested.empty() ? kept : reinvested;
}

String SharePortfolioUser::reinvestmentComment(const XMLElement& parcel) const {
  const XMLElement& dividends = std::as_const(m_portfolio).subElement(u"Dividends");
  for (std::size_t i = 0; i < dividends.numSubElements(u"DividendEvents"); ++i) {
    const XMLElement& dividend = dividends.subElement(u"DividendEvents", i);
    if (textValue(dividend, u"Code") == textValue(*parcel.parent(), u"Code") &&
        dateValue(dividend, u"ReceiveDate") == dateValue(parcel, u"BuyDate") &&
        showsTheSame(doubleValue(dividend, u"DRPShares"), doubleValue(parcel, u"NumHeld"), 4) &&
        showsTheSame(doubleValue(dividend, u"DRPRate"), doubleValue(parcel, u"BuyPrice"), 4))
      return dividendDescription(textValue(dividend, u"Code"), doubleValue(dividend, u"Rate"),
                                 doubleValue(dividend, u"NumHeld"));
  }
  return String();
}

void SharePortfolioUser::removeSale(const XMLElement& sale) {
  XMLElement& stock = *sale.parent();
  if (const auto place = indexOf(stock, u"SellEvents", sale))
    stock.removeSubElement(u"SellEvents", *place);
  if (stock.numSubElements(u"SellEvents") > 0)
    return;
  XMLElement& stocks = m_portfolio.subElement(u"SoldShares");
  if (const auto place = indexOf(stocks, u"SoldShares", stock))
    stocks.removeSubElement(u"SoldShares", *place);
}

} // namespace Tallymoor
