#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <optional>
#include <vector>

namespace Tallymoor {

class SharePortfolioUser;
class XMLHeldShare;

/// Number and cost of some parcels, without brokerage, adjusted for share splits.
struct ParcelCost {
  double number = 0.0;
  double value = 0.0;

  double averagePrice() const { return value / number; }
};

/// The sum of a share's parcels that were bought by a day, as of that day. Nothing if there is none.
struct HeldOnDay {
  ParcelCost cost;
  Date earliest;                ///< the first day of purchase
  std::vector<String> comments; ///< of the purchases that have one
};
std::optional<HeldOnDay> heldOn(const XMLHeldShare& heldShare, const Date& day);

/// The same for all shares of a stock that a portfolio held at the end of the day, also those sold since. The
/// number is that of the day's capital record.
std::optional<HeldOnDay> heldOn(const SharePortfolioUser& portfolio, const String& code, double numberOnDay,
                                const Date& day);

/// The stock's price as the views show it: the current one of the real today, with a recorded purchase or
/// sale to stand in for it; of an earlier day that of the capital record, or else the market's alone, since a
/// price that was paid on a later day must not stand in. Throws Exception when none is known.
double shownPrice(const SharePortfolioUser& portfolio, const String& code, const Date& day);

} // namespace Tallymoor
