#include "books/SharePortfolioUser.h"
#include "books/Gains.h"
#include "books/RecordedSplits.h"
#include "books/SplitTerms.h"
#include "foundation/Amounts.h"
#include "foundation/Exception.h"
#include "market/TallymoorInternet.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>
#include <cstdlib>
#include <limits>
#include <optional>
#include <utility>

namespace Tallymoor {

SharePortfolioUser::SharePortfolioUser(XMLSharePortfolio& portfolio)
    : m_portfolio(portfolio), m_capitalRecord(portfolio.portfolioName()) {}

SharePortfolioUser::~SharePortfolioUser() = default;

const String& SharePortfolioUser::name() const {
  return m_portfolio.portfolioName();
}

void SharePortfolioUser::rename(const String& newName) {
  forgetCashWarning();
  m_capitalRecord.rename(newName);
  m_portfolio.setPortfolioName(newName);
}

void SharePortfolioUser::removeFiles() {
  m_capitalRecord.removeFile();
}

String SharePortfolioUser::comparisonIndex() const {
  return m_portfolio.comparisonIndex();
}

bool SharePortfolioUser::hasComparisonIndex() const {
  return !comparisonIndex().empty();
}

void SharePortfolioUser::setComparisonIndex(const String& code) {
  m_indexTrends.clear();
  m_portfolio.setComparisonIndex(code);
}

namespace {

/// The stock of a code in one of the portfolio's two lists; null when it is not there.
template <class Stock>
Stock* findStock(const ElementList<Stock>& stocks, const String& code) {
  const auto found = std::find_if(stocks.begin(), stocks.end(),
                                  [&code](const Stock& stock) { return stock.code() == code; });
  return found == stocks.end() ? nullptr : &*found;
}

/// Keeps the price of the day that lies nearest to another; the first one wins a tie.
class NearestPrice {
public:
  explicit NearestPrice(const Date& date) : m_date(date), m_day(date) {}

  void offer(const Date& day, double price) {
    const int distance = std::abs(m_date.daysSince(day));
    if (distance < m_distance) {
      m_distance = distance;
      m_day = day;
      m_price = price;
    }
  }

  const Date& day() const { return m_day; }
  double price() const { return m_price; }

private:
  Date m_date;
  Date m_day;
  int m_distance = std::numeric_limits<int>::max();
  double m_price = 0.0;
};

NearestPrice nearestTransaction(const SharePortfolioUser& portfolio, const String& code, const Date& date) {
  NearestPrice nearest(date);
  if (const XMLHeldShare* held = portfolio.findHeldShare(code))
    for (const XMLBuyEvent& parcel : held->parcels())
      nearest.offer(parcel.bought(), parcel.price());
  if (const XMLSoldShare* sold = portfolio.findSoldShare(code))
    for (const XMLSellEvent& sale : sold->sales()) {
      nearest.offer(sale.bought(), sale.price());
      nearest.offer(sale.sold(), sale.sellPrice());
    }
  return nearest;
}

Exception noPrice(const String& code, const Date& date) {
  return Exception(u"SharePortfolioUser::sharePriceFor - could not get price for " + code + u" at " +
                   date.toString(DATE_DISPLAY_LOCAL));
}

DayPrice dayPriceOf(const KnownClose& close) {
  return {close.close, close.isFinal ? PriceStanding::Final : PriceStanding::Open};
}

} // namespace

XMLHeldShare* SharePortfolioUser::findHeldShare(const String& code) {
  return findStock(m_portfolio.heldShares(), code);
}

const XMLHeldShare* SharePortfolioUser::findHeldShare(const String& code) const {
  return findStock(portfolio().heldShares(), code);
}

XMLSoldShare* SharePortfolioUser::findSoldShare(const String& code) {
  return findStock(m_portfolio.soldShares(), code);
}

const XMLSoldShare* SharePortfolioUser::findSoldShare(const String& code) const {
  return findStock(portfolio().soldShares(), code);
}

Date SharePortfolioUser::portfolioStartDate() const {
  std::optional<Date> earliest;
  const auto consider = [&earliest](const Date& date) {
    if (!earliest || date < *earliest)
      earliest = date;
  };
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

double SharePortfolioUser::numHeld(const String& code) const {
  return numHeld(code, Date());
}

double SharePortfolioUser::numHeld(const String& code, const Date& day) const {
  const XMLHeldShare* stock = findHeldShare(code);
  if (!stock)
    return 0.0;
  double sum = 0.0;
  for (const XMLBuyEvent& parcel : stock->parcels())
    if (!parcel.isSetAside())
      sum += sharesOn(parcel, day).number;
  return sum;
}

double SharePortfolioUser::nearestRecordedPrice(const String& code, const Date& date) const {
  return nearestTransaction(*this, code, date).price();
}

double SharePortfolioUser::sharePriceFor(const String& code, const Date& date, bool upTo) const {
  return dayPriceFor(code, date, upTo).price;
}

DayPrice SharePortfolioUser::dayPriceFor(const String& code, const Date& date, bool upTo) const {
  if (const std::optional<DayPrice> price = marketPrice(code, date, upTo))
    return *price;
  const DayPrice price = standInPrice(code, date);
  if (showsAsZero(price.price))
    throw noPrice(code, date);
  return price;
}

/// What the source or the user gave for the day; nothing when that is unavailable.
std::optional<DayPrice> SharePortfolioUser::marketPrice(const String& code, const Date& date,
                                                        bool upTo) const {
  try {
    TallymoorInternet& gateway = TallymoorInternet::Instance();
    if (!Date::hasFixedDate() && date == Date()) {
      const double price = gateway.priceUpdater().getLatestPrice(code);
      const std::optional<KnownClose> known = gateway.closeOn(code, date);
      return DayPrice{price, known && known->isFinal ? PriceStanding::Final : PriceStanding::Open};
    }
    std::optional<KnownClose> known = gateway.closeOn(code, date);
    if (!known) {
      gateway.historicalPrice(code, date, upTo);
      known = gateway.closeOn(code, date);
    }
    return known ? std::optional(dayPriceOf(*known)) : std::nullopt;
  } catch (const Exception&) {
    return std::nullopt;
  }
}

/// Where a split lies between the day and that of the price, the price is put into shares of the day.
DayPrice SharePortfolioUser::standInPrice(const String& code, const Date& date) const {
  const RecordedSplits splits(*this, code);
  TallymoorInternet& gateway = TallymoorInternet::Instance();
  if (const std::optional<KnownClose> last = gateway.lastCloseBefore(code, date)) {
    const double price = last->close / splits.sharesBetween(last->day, date);
    if (!gateway.hasAnsweredFor(code, date))
      return {price, PriceStanding::LastClose};
    // A day without trade has the close before it. Of the last days the source may still say more, also of a
    // code that was taken for delisted by mistake.
    const bool isLate = date < Date::realToday().plusDays(-SharePriceCache::LONGEST_CLOSURE);
    return {price, isLate ? PriceStanding::Final : PriceStanding::Open};
  }
  const NearestPrice nearest = nearestTransaction(*this, code, date);
  return {nearest.price() / splits.sharesBetween(nearest.day(), date), PriceStanding::Transaction};
}

double SharePortfolioUser::sharesValueToday() const {
  const Date today;
  return m_capitalRecord.hasDayCap(today) ? m_capitalRecord.sharesValueOn(today) : 0.0;
}

double SharePortfolioUser::cashReserveToday() const {
  const Date today;
  return m_capitalRecord.hasDayCap(today) ? m_capitalRecord.cashOn(today) : 0.0;
}

double SharePortfolioUser::capitalToday() const {
  return m_capitalRecord.capitalOn(Date());
}

double SharePortfolioUser::dailyGain() const {
  return gainSince(Date().plusDays(-1));
}

double SharePortfolioUser::weeklyGain() const {
  return gainSince(Date().fridayBeforeLastWeekend());
}

double SharePortfolioUser::gainSince(const Date& then) const {
  const Date today;
  if (!m_capitalRecord.hasDayCap(then) || !m_capitalRecord.hasDayCap(today))
    return 0.0;
  return gainPercent(m_capitalRecord.capitalOn(today), m_capitalRecord.capitalOn(then),
                     m_capitalRecord.externalFlowBetween(then, today))
      .value_or(0.0);
}

double SharePortfolioUser::indexDailyGain() const {
  return indexGainSince(Date().plusDays(-1));
}

double SharePortfolioUser::indexWeeklyGain() const {
  return indexGainSince(Date().fridayBeforeLastWeekend());
}

double SharePortfolioUser::indexGainSince(const Date& then) const {
  return indexGainPercent(indexValueOn(Date()), indexValueOn(then)).value_or(0.0);
}

double SharePortfolioUser::indexValueOn(const Date& date) const {
  const String index = comparisonIndex();
  if (index.empty())
    return 0.0;
  const std::optional<DayPrice> value = marketPrice(index, date, true);
  if (!value)
    throw noPrice(index, date);
  return value->price;
}

} // namespace Tallymoor
