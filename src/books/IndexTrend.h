#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <map>

namespace Tallymoor {

class MarketPrices;
class PortfolioPrices;
class XMLSharePortfolio;

/// The comparison index of a portfolio: its value, its gains and its moving averages. All are 0.0 without an
/// index.
class IndexTrend {
public:
  IndexTrend(XMLSharePortfolio& portfolio, const PortfolioPrices& prices, MarketPrices& market)
      : m_portfolio(portfolio), m_prices(prices), m_market(market) {}

  /// Empty if there is none.
  String code() const;
  /// An empty code takes the index away.
  void setCode(const String& code);

  /// Nothing stands in for a missing value: throws as PortfolioPrices::priceOn.
  double valueOn(const Date& date) const;
  /// Percent since the day; 0.0 if either value shows as zero. Throws as valueOn.
  double gainSince(const Date& then) const;

  /// Exponential moving average over trendDays weekdays before today, started from the mean of as many before
  /// those. Kept for each period and day. Throws as MarketPrices::historicalPrice.
  double movingAverage(double period);
  /// The same, computed again.
  double computeMovingAverage(double period) const;
  /// The period as the whole number of days that it stands for: at least one, no fraction, bounded above.
  static int trendDays(double period);
  /// The first day whose price movingAverage asks for.
  static Date firstDayOfAverage(double period);

private:
  XMLSharePortfolio& m_portfolio;
  const PortfolioPrices& m_prices;
  MarketPrices& m_market;
  std::map<int, std::map<Date, double>> m_averages; ///< by period in days, then by day
};

} // namespace Tallymoor
