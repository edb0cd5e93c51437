#include "books/PortfolioPrices.h"
#include "books/Holdings.h"
#include "books/RecordedSplits.h"
#include "foundation/Amounts.h"
#include "market/MarketPrices.h"
#include "market/SharePriceCache.h"

namespace Tallymoor {

namespace {

PriceStanding standingOf(const std::optional<KnownClose>& close) {
  return close && close->isFinal ? PriceStanding::Final : PriceStanding::Open;
}

} // namespace

std::optional<double> PortfolioPrices::toldSplit(const String& code, const Date& first,
                                                 const Date& last) const {
  return m_market.toldSplit(code, first, last);
}

Exception PortfolioPrices::noPrice(const String& code, const Date& date) {
  return Exception(u"SharePortfolioUser::sharePriceFor - could not get price for " + code + u" at " +
                   date.toString(DATE_DISPLAY_LOCAL));
}

DayPrice PortfolioPrices::priceOn(const String& code, const Date& date, bool upTo) const {
  if (const std::optional<DayPrice> price = marketPrice(code, date, upTo))
    return *price;
  const DayPrice price = standInPrice(code, date);
  if (showsAsZero(price.price))
    throw noPrice(code, date);
  return price;
}

std::optional<DayPrice> PortfolioPrices::marketPrice(const String& code, const Date& date, bool upTo) const {
  try {
    if (!Date::hasFixedDate() && date == Date()) {
      const double price = m_market.latestPrice(code);
      return DayPrice{price, standingOf(m_market.closeOn(code, date))};
    }
    std::optional<KnownClose> known = m_market.closeOn(code, date);
    if (!known) {
      m_market.historicalPrice(code, date, upTo);
      known = m_market.closeOn(code, date);
    }
    return known ? std::optional(DayPrice{known->close, standingOf(known)}) : std::nullopt;
  } catch (const Exception&) {
    return std::nullopt;
  }
}

/// Where a split lies between the day and that of the price, the price is put into shares of the day.
DayPrice PortfolioPrices::standInPrice(const String& code, const Date& date) const {
  const RecordedSplits splits(m_holdings, code);
  if (const std::optional<KnownClose> last = m_market.lastCloseBefore(code, date)) {
    const double price = last->close / splits.sharesBetween(last->day, date);
    if (!m_market.hasAnsweredFor(code, date))
      return {price, PriceStanding::LastClose};
    // A day without trade has the close before it. Of the last days the source may still say more, also of a
    // code that was taken for delisted by mistake.
    const bool isLate = date < Date::realToday().plusDays(-SharePriceCache::LONGEST_CLOSURE);
    return {price, isLate ? PriceStanding::Final : PriceStanding::Open};
  }
  const Holdings::RecordedPrice nearest = m_holdings.nearestPrice(code, date);
  return {nearest.price / splits.sharesBetween(nearest.day, date), PriceStanding::Transaction};
}

} // namespace Tallymoor
