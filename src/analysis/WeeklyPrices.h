#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <vector>

namespace Tallymoor {

/// One week of a stock's prices; the week is named by its Friday.
///
/// A week is full once its Friday is over: on a Friday the newest full week is the one before, on Saturday
/// and Sunday the one that has just ended. The close is that of the week's last trading day, so a holiday on
/// Friday leaves Thursday's. High and low span the days from Monday to Friday. A day whose high or low the
/// cache does not know counts with its close alone: a holiday, which carries the close of the day before
/// forward, or a day of which only the current price was seen. The carried-forward rows of a weekend count
/// for nothing; a weekend on which the source has trades counts to the Friday after it, as the markets do
/// that open on Sunday.
struct WeeklyPrice {
  Date friday;
  double close;
  double high;
  double low;
};

/// The last full weeks before the day, oldest first, at most `count`. Weeks without any price are left out.
/// The prices come from the price cache; days that it lacks, up to the day itself, are fetched once in the
/// background without a question; meanwhile throws NotYetKnown (TallymoorInternet::requireHistory). Prices
/// are those of the market, not adjusted for splits, and prices from before a split say nothing of the ones
/// after it: where a day's close makes a split suspected (see SuspectedSplit), except one of 3:2, up to the
/// day itself, all that lies before is left out. Throws nothing else for want of prices. GUI thread, under
/// the big mutex.
std::vector<WeeklyPrice> recentWeeks(const String& code, const Date& day, int count);

} // namespace Tallymoor
