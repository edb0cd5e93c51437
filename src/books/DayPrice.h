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

/// True for a price that stands in for one that is unavailable. What is computed with it is provisional: it
/// is marked, computed again when the day's own price is known, and never suggests a split.
constexpr bool isStandIn(PriceStanding standing) {
  return standing == PriceStanding::LastClose || standing == PriceStanding::Transaction;
}

/// The word for it in the capital record; empty for Final.
String standingName(PriceStanding standing);
/// The reverse. A word of a later version counts as Open.
PriceStanding standingNamed(const String& name);

} // namespace Tallymoor
