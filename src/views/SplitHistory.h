#pragma once
#include "analysis/Performance.h"
#include "foundation/Date.h"
#include "foundation/String.h"
#include <vector>

namespace Tallymoor {

/// The splits and merges of a stock as the portfolios have recorded them on their purchases and sales.
class SplitHistory {
public:
  /// The portfolios are only read here.
  SplitHistory(const String& code, const Portfolios& portfolios);

  /// How many shares of the second day are one share of the first: what numbers are to be multiplied and
  /// prices divided by. The second day may be the earlier one.
  double sharesBetween(const Date& from, const Date& to) const;
  /// The same for closes of the cache, in which a split that shows no jump does not count: the source had
  /// adjusted those itself.
  double closeDivisor(const Date& from, const Date& to) const;

private:
  struct Split {
    Date day; ///< the first with the new number of shares
    double ratio;
    bool inCloses;
  };

  std::vector<Split> m_splits;
};

} // namespace Tallymoor
