#include "books/Holdings.h"
#include "books/SplitTerms.h"
#include "foundation/Amounts.h"
#include "market/StockCode.h"
#include "xml/PortfolioRecords.h"
#include "xml/RecordTexts.h"
#include <algorithm>
#include <cstdlib>
#include <limits>
#include <optional>
#include <utility>

namespace Tallymoor {

namespace {

template <class Stock>
Stock* findStock(const ElementList<Stock>& stocks, const String& code) {
  const auto found = std::find_if(stocks.begin(), stocks.end(),
                                  [&code](const Stock& stock) { return stock.code() == code; });
  return found == stocks.end() ? nullptr : &*found;
}

/// Keeps the price of the day that lies nearest to another.
class NearestPrice {
public:
  explicit NearestPrice(const Date& date) : m_date(date), m_nearest{date, 0.0} {}

  void offer(const Date& day, double price) {
    const int distance = std::abs(m_date.daysSince(day));
    if (distance < m_distance) {
      m_distance = distance;
      m_nearest = {day, price};
    }
  }

  const Holdings::RecordedPrice& nearest() const { return m_nearest; }

private:
  Date m_date;
  Holdings::RecordedPrice m_nearest;
  int m_distance = std::numeric_limits<int>::max();
};

} // namespace

XMLHeldShare* Holdings::findHeldShare(const String& code) {
  return findStock(m_portfolio.heldShares(), code);
}

const XMLHeldShare* Holdings::findHeldShare(const String& code) const {
  return findStock(portfolio().heldShares(), code);
}

XMLSoldShare* Holdings::findSoldShare(const String& code) {
  return findStock(m_portfolio.soldShares(), code);
}

const XMLSoldShare* Holdings::findSoldShare(const String& code) const {
  return findStock(portfolio().soldShares(), code);
}

XMLHeldShare& Holdings::heldShareFor(const String& code) {
  if (XMLHeldShare* stock = findHeldShare(code))
    return *stock;
  XMLHeldShare& stock = m_portfolio.heldShares().add();
  stock.setCode(code);
  return stock;
}

XMLSoldShare& Holdings::soldShareFor(const String& code) {
  if (XMLSoldShare* stock = findSoldShare(code))
    return *stock;
  XMLSoldShare& stock = m_portfolio.soldShares().add();
  stock.setCode(code);
  return stock;
}

XMLBuyEvent* Holdings::findParcel(XMLHeldShare& stock, const Date& bought, double number) const {
  const String day = dayText(bought);
  const Date today;
  for (XMLBuyEvent& parcel : stock.parcels())
    if (parcel.boughtLeaf().value() == day && showsTheSame(sharesOn(parcel, today).number, number, 4))
      return &parcel;
  return nullptr;
}

const XMLSellEvent* Holdings::findSale(const String& code, const Date& sold, double number) const {
  const XMLSoldShare* stock = findSoldShare(code);
  if (!stock)
    return nullptr;
  const String day = dayText(sold);
  for (const XMLSellEvent& sale : stock->sales())
    if (sale.dayLeaf().value() == day && showsTheSame(sharesAsSold(sale).number, number, 4))
      return &sale;
  return nullptr;
}

void Holdings::remove(XMLHeldShare& stock, const XMLBuyEvent& parcel) {
  stock.parcels().remove(parcel);
  if (stock.parcels().empty())
    m_portfolio.heldShares().remove(stock);
}

void Holdings::remove(const XMLSellEvent& sale) {
  auto& stock = elementAs<XMLSoldShare>(*sale.parent());
  stock.sales().remove(sale);
  if (stock.sales().empty())
    m_portfolio.soldShares().remove(stock);
}

bool Holdings::isOfAnotherMarket(const String& code) const {
  const auto stocks = portfolio().heldShares();
  return !stocks.empty() && StockCode(stocks[0].code()).suffix() != StockCode(code).suffix();
}

Date Holdings::startDate() const {
  std::optional<Date> earliest;
  const auto consider = [&earliest](const Date& date) { earliest = std::min(earliest.value_or(date), date); };
  for (const XMLHeldShare& stock : portfolio().heldShares())
    for (const XMLBuyEvent& parcel : stock.parcels())
      consider(parcel.bought());
  for (const XMLSoldShare& stock : portfolio().soldShares())
    for (const XMLSellEvent& sale : stock.sales())
      consider(sale.bought());
  for (const XMLCashEvent& event : portfolio().cashEvents())
    consider(event.day());
  return earliest.value_or(Date());
}

double Holdings::numHeld(const String& code, const Date& day) const {
  const XMLHeldShare* stock = findHeldShare(code);
  if (!stock)
    return 0.0;
  double sum = 0.0;
  for (const XMLBuyEvent& parcel : stock->parcels())
    if (!parcel.isSetAside())
      sum += sharesOn(parcel, day).number;
  return sum;
}

Holdings::RecordedPrice Holdings::nearestPrice(const String& code, const Date& date) const {
  NearestPrice prices(date);
  if (const XMLHeldShare* held = findHeldShare(code))
    for (const XMLBuyEvent& parcel : held->parcels())
      prices.offer(parcel.bought(), parcel.price());
  if (const XMLSoldShare* sold = findSoldShare(code))
    for (const XMLSellEvent& sale : sold->sales()) {
      prices.offer(sale.bought(), sale.price());
      prices.offer(sale.sold(), sale.sellPrice());
    }
  return prices.nearest();
}

} // namespace Tallymoor
