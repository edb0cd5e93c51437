#pragma once
#include "foundation/String.h"

namespace Tallymoor {

/// What a price of a day rests on.
enum class PriceStanding {
  Final,      ///< typed by the user for the day, or the source's close
  Open,       ///< such a price, of a day that may not have been over when it was taken
  LastClose,  ///< the last known close before the day, until the source answers for it
  Transaction ///< what a purchase or sale was made at
};

/// The price of a stock on a day.
struct DayPrice {
  double price;
  PriceStanding standing;
};

/// True for a price that only stands in for one that is unavailable now. What is computed with it is
/// provisional: it is marked, computed again when the day's own price comes, and says nothing of splits.
constexpr bool isStandIn(PriceStanding standing) {
  return standing == PriceStanding::LastClose || standing == PriceStanding::Transaction;
}

/// How the capital record says it; empty for Final.
String standingName(PriceStanding standing);
/// The way back. A name of a later version counts as Open.
PriceStanding standingNamed(const String& name);

} // namespace Tallymoor
