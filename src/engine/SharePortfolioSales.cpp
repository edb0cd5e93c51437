// Sales of a portfolio: matching to parcels, sale records and their cash entries.
#include "engine/PortfolioEvents.h"
#include "engine/SharePortfolioUser.h"
#include "foundation/Amounts.h"
#include "foundation/Exception.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>
#include <vector>

namespace Tallymoor {

namespace {

/// What a sale's record says it cost and brought in, and the texts of the two cash entries that go with it.
struct SaleCash {
  explicit SaleCash(const XMLElement& event)
      : buyDate(dateValue(event, u"BuyDate")), sellDate(dateValue(event, u"SellDate")),
        number(doubleValue(event, u"NumHeld")), buyPrice(doubleValue(event, u"BuyPrice")),
        sellPrice(doubleValue(event, u"SellPrice")),
        cost(number * buyPrice + doubleValue(event, u"BuyBrokerage")),
        proceeds(number * sellPrice - doubleValue(event, u"SellBrokerage")) {}

  CashEntryKey purchaseKey(const String& code) const {
    return {dayText(buyDate), moneyText(cost), CASH_EVENT_DEBIT, code};
  }
  CashEntryKey saleKey(const String& code) const {
    return {dayText(sellDate), moneyText(proceeds), CASH_EVENT_CREDIT, code};
  }
  Date earlierDate() const { return std::min(buyDate, sellDate); }

  Date buyDate;
  Date sellDate;
  double number;
  double buyPrice;
  double sellPrice;
  double cost;
  double proceeds;
};

XMLElement* findSale(XMLElement& stock, const Date& date, double number) {
  const String day = dayText(date);
  for (std::size_t i = 0; i < stock.numSubElements(u"SellEvents"); ++i) {
    XMLElement& sale = stock.subElement(u"SellEvents", i);
    if (textValue(sale, u"SellDate") == day && showsTheSame(doubleValue(sale, u"NumHeld"), number, 4))
      return &sale;
  }
  return nullptr;
}

std::vector<XMLElement*> parcelsOf(XMLElement& stock, bool firstInFirstOut) {
  std::vector<XMLElement*> parcels;
  for (std::size_t i = 0; i < stock.numSubElements(u"BuyEvents"); ++i)
    parcels.push_back(&stock.subElement(u"BuyEvents", i));
  if (!firstInFirstOut)
    std::reverse(parcels.begin(), parcels.end());
  return parcels;
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
  std::size_t index = 0;
  XMLElement* stock = findHeldShare(code, index);
  if (!stock)
    throw Exception(u"SharePortfolioUser::sellShares - cant find held shares to sell");
  Sale sale{code, date, price, brokerage, comment};
  double sold = 0.0;
  // The stock itself dies with its last parcel, and only then.
  for (XMLElement* parcel : parcelsOf(*stock, firstInFirstOut)) {
    if (sold >= number || showsTheSame(sold, number, 4))
      break;
    sold += sellFromBuyEvent(*stock, *parcel, number - sold, sale);
    sale.brokerage = 0.0;
  }
}

double SharePortfolioUser::sellFromBuyEvent(XMLElement& stock, XMLElement& parcel, double wanted,
                                            const Sale& sale) {
  double available = 0.0;
  double buyPrice = 0.0;
  adjustedBuyEvent(parcel, sale.date, available, buyPrice);
  XMLElement& event = addSellEvent(sale.code);
  event.subElement(u"BuyDate").setValue(textValue(parcel, u"BuyDate"));

  double taken = available;
  // A rest that would be recorded as 0.00 shares goes with the parcel.
  if (wanted < available && !showsAsZero(available - wanted, 2)) {
    taken = wanted;
    event.subElement(u"BuyBrokerage").setValue(moneyText(0.0));
    // The rest is recorded in shares of the day of sale, and adjustments of the parcel stay with it.
    parcel.subElement(u"NumHeld").setValue(numberText(available - wanted));
  } else {
    // The brokerage of a purchase is never divided: it goes with the last of the parcel.
    event.subElement(u"BuyBrokerage").setValue(moneyText(doubleValue(parcel, u"Brokerage")));
    removeParcel(stock, parcel);
  }
  event.subElement(u"SellDate").setValue(dayText(sale.date));
  event.subElement(u"NumHeld").setValue(numberText(taken));
  event.subElement(u"BuyPrice").setValue(priceText(buyPrice));
  event.subElement(u"SellPrice").setValue(priceText(sale.price));
  event.subElement(u"SellBrokerage").setValue(moneyText(sale.brokerage));
  setOptionalText(event, u"Comment", sale.comment);
  creditCash(sale.date, taken * sale.price - sale.brokerage, CASH_EVENT_CREDIT,
             saleDescription(sale.code, taken, sale.price));
  return taken;
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
    const Date touched = SaleCash(stock->subElement(u"SellEvents", i)).earlierDate();
    earliest = earliest ? std::min(*earliest, touched) : touched;
  }
  m_portfolio.subElement(u"SoldShares").removeSubElement(u"SoldShares", index);
  if (earliest)
    m_capitalRecord.recordsChangedFrom(*earliest);
}

void SharePortfolioUser::removeSale(XMLElement& stock, const XMLElement& sale) {
  if (const auto place = indexOf(stock, u"SellEvents", sale))
    stock.removeSubElement(u"SellEvents", *place);
  if (stock.numSubElements(u"SellEvents") > 0)
    return;
  XMLElement& stocks = m_portfolio.subElement(u"SoldShares");
  if (const auto place = indexOf(stocks, u"SoldShares", stock))
    stocks.removeSubElement(u"SoldShares", *place);
}

bool SharePortfolioUser::deleteSellEvent(const String& code, const Date& date, double number) {
  std::size_t index = 0;
  XMLElement* stock = findSoldShare(code, index);
  XMLElement* sale = stock ? findSale(*stock, date, number) : nullptr;
  if (!sale)
    return false;
  const SaleCash cash(*sale);
  const auto proceeds = findCashEntry(m_portfolio, cash.saleKey(code));
  const auto cost = findCashEntry(m_portfolio, cash.purchaseKey(code));
  std::vector<std::size_t> places;
  if (proceeds)
    places.push_back(*proceeds);
  if (cost)
    places.push_back(*cost);
  // From the back, so that the place of the other one stays true.
  std::sort(places.rbegin(), places.rend());
  for (std::size_t place : places)
    removeCashEntry(m_portfolio, place);
  removeSale(*stock, *sale);
  m_capitalRecord.recordsChangedFrom(cash.earlierDate());
  if (!places.empty())
    tellCashChanged();
  return proceeds && cost;
}

bool SharePortfolioUser::editSellEvent(XMLElement& event, const Date& buyDate, const Date& sellDate,
                                       double number, double buyPrice, double sellPrice, double buyBrokerage,
                                       double sellBrokerage, const String& comment) {
  const String code = textValue(*event.parent(), u"Code");
  const SaleCash before(event);
  event.subElement(u"BuyDate").setValue(dayText(buyDate));
  event.subElement(u"SellDate").setValue(dayText(sellDate));
  event.subElement(u"NumHeld").setValue(numberText(number));
  event.subElement(u"BuyPrice").setValue(priceText(buyPrice));
  event.subElement(u"SellPrice").setValue(priceText(sellPrice));
  event.subElement(u"BuyBrokerage").setValue(moneyText(buyBrokerage));
  event.subElement(u"SellBrokerage").setValue(moneyText(sellBrokerage));
  setOptionalText(event, u"Comment", comment);

  const SaleCash after(event);
  const bool purchaseFollowed =
      moveCashEntry(before.purchaseKey(code), before.cost, after.buyDate, after.cost,
                    purchaseDescription(code, after.number, after.buyPrice));
  const bool saleFollowed =
      moveCashEntry(before.saleKey(code), before.proceeds, after.sellDate, after.proceeds,
                    saleDescription(code, after.number, after.sellPrice));
  m_capitalRecord.recordsChangedFrom(std::min(before.earlierDate(), after.earlierDate()));
  if (purchaseFollowed || saleFollowed)
    tellCashChanged();
  return purchaseFollowed && saleFollowed;
}

} // namespace Tallymoor
