#include "engine/SharePortfolioUser.h"
#include "engine/Gains.h"
#include "engine/RecordedSplits.h"
#include "engine/SplitTerms.h"
#include "engine/UnreadableDates.h"
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

SharePortfolioUser::SharePortfolioUser(XMLElement& portfolio)
    : m_portfolio(portfolio), m_capitalRecord(textValue(portfolio, u"Name")) {}

SharePortfolioUser::~SharePortfolioUser() = default;

const String& SharePortfolioUser::name() const {
  return textValue(m_portfolio, u"Name");
}

void SharePortfolioUser::rename(const String& newName) {
  forgetCashWarning();
  m_capitalRecord.rename(newName);
  m_portfolio.subElement(u"Name").setValue(newName);
}

void SharePortfolioUser::removeFiles() {
  m_capitalRecord.removeFile();
}

String SharePortfolioUser::comparisonIndex() const {
  if (m_portfolio.numSubElements(u"ComparisonIndex") == 0)
    return String();
  return textValue(m_portfolio, u"ComparisonIndex");
}

bool SharePortfolioUser::hasComparisonIndex() const {
  return !comparisonIndex().empty();
}

void SharePortfolioUser::setComparisonIndex(const String& code) {
  const String index = code; // the code may be the very text that is about to go
  m_indexTrends.clear();
  m_portfolio.removeSubElements(u"ComparisonIndex");
  if (!index.empty())
    m_portfolio.addSubElement(new XMLString, u"ComparisonIndex").setValue(index);
}

namespace {

/// The stock of a code in one of the portfolio's two lists; Element is XMLElement or const XMLElement.
template <class Element>
Element* findStock(Element& stocks, std::u16string_view reference, const String& code, std::size_t& index) {
  const std::size_t count = stocks.numSubElements(reference);
  for (std::size_t i = 0; i < count; ++i) {
    Element& stock = stocks.subElement(reference, i);
    if (textValue(stock, u"Code") == code) {
      index = i;
      return &stock;
    }
  }
  return nullptr;
}

/// Calls with each event of each stock of one of the portfolio's two lists.
template <class Use>
void forEachEvent(const XMLElement& stocks, std::u16string_view stockReference,
                  std::u16string_view eventReference, Use use) {
  for (std::size_t i = 0; i < stocks.numSubElements(stockReference); ++i) {
    const XMLElement& stock = stocks.subElement(stockReference, i);
    for (std::size_t j = 0; j < stock.numSubElements(eventReference); ++j)
      use(stock.subElement(eventReference, j));
  }
}

/// Keeps the price of the day that lies nearest to another; the first one wins a tie.
class NearestPrice {
public:
  explicit NearestPrice(const Date& date) : m_date(date), m_day(date) {}

  void offer(const XMLElement& event, std::u16string_view day, std::u16string_view price) {
    const Date offered = dateValue(event, day);
    const int distance = std::abs(m_date.daysSince(offered));
    if (distance < m_distance) {
      m_distance = distance;
      m_day = offered;
      m_price = doubleValue(event, price);
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
  std::size_t index = 0;
  if (const XMLElement* held = portfolio.findHeldShare(code, index))
    for (std::size_t i = 0; i < held->numSubElements(u"BuyEvents"); ++i)
      nearest.offer(held->subElement(u"BuyEvents", i), u"BuyDate", u"BuyPrice");
  if (const XMLElement* sold = portfolio.findSoldShare(code, index))
    for (std::size_t i = 0; i < sold->numSubElements(u"SellEvents"); ++i) {
      const XMLElement& sale = sold->subElement(u"SellEvents", i);
      nearest.offer(sale, u"BuyDate", u"BuyPrice");
      nearest.offer(sale, u"SellDate", u"SellPrice");
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

XMLElement* SharePortfolioUser::findHeldShare(const String& code, std::size_t& index) {
  return findStock(m_portfolio.subElement(u"HeldShares"), u"HeldShares", code, index);
}

const XMLElement* SharePortfolioUser::findHeldShare(const String& code, std::size_t& index) const {
  return findStock(std::as_const(m_portfolio).subElement(u"HeldShares"), u"HeldShares", code, index);
}

XMLElement* SharePortfolioUser::findSoldShare(const String& code, std::size_t& index) {
  return findStock(m_portfolio.subElement(u"SoldShares"), u"SoldShares", code, index);
}

const XMLElement* SharePortfolioUser::findSoldShare(const String& code, std::size_t& index) const {
  return findStock(std::as_const(m_portfolio).subElement(u"SoldShares"), u"SoldShares", code, index);
}

Date SharePortfolioUser::portfolioStartDate() const {
  std::optional<Date> earliest;
  const auto consider = [&earliest](const Date& date) {
    if (!earliest || date < *earliest)
      earliest = date;
  };
  const auto considerPurchase = [&consider](const XMLElement& event) {
    consider(dateValue(event, u"BuyDate"));
  };
  forEachEvent(m_portfolio.subElement(u"HeldShares"), u"HeldShares", u"BuyEvents", considerPurchase);
  forEachEvent(m_portfolio.subElement(u"SoldShares"), u"SoldShares", u"SellEvents", considerPurchase);
  const XMLElement& reserve = m_portfolio.subElement(u"CashReserve");
  for (std::size_t i = 0; i < reserve.numSubElements(u"CashEvents"); ++i)
    consider(dateValue(reserve.subElement(u"CashEvents", i), u"Date"));
  return earliest.value_or(Date());
}

double SharePortfolioUser::numHeld(const String& code) const {
  return numHeld(code, Date());
}

double SharePortfolioUser::numHeld(const String& code, const Date& day) const {
  std::size_t index = 0;
  const XMLElement* stock = findHeldShare(code, index);
  if (!stock)
    return 0.0;
  double sum = 0.0;
  for (std::size_t i = 0; i < stock->numSubElements(u"BuyEvents"); ++i)
    if (const XMLElement& parcel = stock->subElement(u"BuyEvents", i); !isSetAside(parcel, u"BuyDate"))
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
