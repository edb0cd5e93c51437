#pragma once
#include "analysis/Performance.h"
#include "foundation/Date.h"
#include "foundation/String.h"
#include <map>
#include <vector>

namespace Tallymoor {

/// A dividend that a source tells, of a stock that was held, and that is not recorded.
struct UnrecordedDividend {
  SharePortfolioUser* portfolio; ///< not owned
  String code;
  Date day;      ///< from which the share is traded without it; it is paid some weeks later
  double rate;   ///< cash a share
  double number; ///< of shares that were held the day before
};

/// Those of the portfolios, the newest first. A dividend of the stock that is recorded from ten days before
/// the day to sixty after it is taken for one that is told, and each for one alone. GUI thread, under the big
/// mutex.
std::vector<UnrecordedDividend> unrecordedDividends(const Portfolios& portfolios,
                                                    const std::map<String, std::map<Date, double>>& told);

} // namespace Tallymoor
