#pragma once
#include "books/DayPrice.h"
#include "foundation/Date.h"
#include "foundation/Exception.h"
#include "foundation/String.h"
#include <optional>

namespace Tallymoor {

class Holdings;
class MarketPrices;

/// The prices of a portfolio's stocks: what the market says of a day, and what stands in for it.
class PortfolioPrices {
public:
  PortfolioPrices(const Holdings& holdings, MarketPrices& market) : m_holdings(holdings), m_market(market) {}

  /// The price of the day and what it rests on: what the user typed for it, the source's close (of the real
  /// today the current price), the last known close before it, and only then the price of a transaction; the
  /// last two in shares of the day. upTo only chooses in which direction a fetch reaches. Throws Exception
  /// when there is none, or one that shows as zero.
  DayPrice priceOn(const String& code, const Date& date, bool upTo) const;
  /// What the source or the user gave for the day; nothing if it is unavailable.
  std::optional<DayPrice> marketPrice(const String& code, const Date& date, bool upTo) const;

  /// The shares that one became by the splits that a source has told of the days, both included.
  std::optional<double> toldSplit(const String& code, const Date& first, const Date& last) const;

  static Exception noPrice(const String& code, const Date& date);

private:
  DayPrice standInPrice(const String& code, const Date& date) const;

  const Holdings& m_holdings;
  MarketPrices& m_market;
};

} // namespace Tallymoor
