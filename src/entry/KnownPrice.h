#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"

namespace Tallymoor {

class SharePortfolioUser;

/// A price that a form proposes, and the day that it is of; 0 when none is known.
struct KnownPrice {
  double price = 0.0;
  Date day;
};

/// What is known of a code's price on a day without asking anyone: that of the day (of today it is the
/// current price, otherwise the close), or else the last close before it. Splits that the portfolio has
/// recorded since that close count; it may be null.
KnownPrice knownPrice(const String& code, const Date& day, const SharePortfolioUser* portfolio);

/// The same, after what is missing of a past day has been fetched, if it can be; asks and throws nothing.
KnownPrice priceOfDay(const String& code, const Date& day, const SharePortfolioUser* portfolio);

} // namespace Tallymoor
