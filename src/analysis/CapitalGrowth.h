#pragma once
#include "analysis/Performance.h"
#include "foundation/Date.h"
#include <optional>
#include <vector>

namespace Tallymoor {

/// One day of the chart of capital.
struct GrowthDay {
  Date day;
  double capital;              ///< of all portfolios with a record of the day
  double growth;               ///< what the first day's capital would have become by the gains alone
  std::optional<double> index; ///< what it would have become in the comparison index
};

/// The capital day by day, beside what the capital of the first day would have grown to by the portfolios'
/// gains alone. A deposit raises the capital and not the growth, so the growth can be held against an index.
///
/// The days' gains are chained, which is the true time-weighted return (Bacon, Practical Portfolio
/// Performance Measurement and Attribution; the Global Investment Performance Standards ask for it): each day
/// grows by
///   r = (capital - external flow of the day - capital before) / capital before,
/// with money that comes in counted at the end of its day. As in the other gains, portfolios without
/// records of both days are left out of r, so that one which begins later is no growth.
///
/// Where the capital before shows as zero, or the day's gain would leave nothing or less (as with a purchase
/// out of a deposit a thousand times what was there before), the chain starts again: growth and index go on
/// from the capital of that day.
///
/// The index is there only for exactly one portfolio with a comparison index, and on days whose price is
/// cached. It starts where the growth stands on the first such day. Gaps in its prices are filled in the
/// background (TallymoorInternet::requestHistory). Nothing is asked or kept: 20 years take some tens of
/// milliseconds. Days without a record of any portfolio are left out. GUI thread, under the big mutex.
std::vector<GrowthDay> capitalGrowth(const Portfolios& portfolios, const Date& from, const Date& to);

} // namespace Tallymoor
