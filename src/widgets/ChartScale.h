#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <vector>

namespace Tallymoor {

/// A value axis: a little more than the values need, with ticks at round values.
struct ValueScale {
  double low = 0.0;
  double high = 1.0;
  double step = 1.0; ///< 1, 2, 2.5 or 5 times a power of ten

  /// With at least two ticks, and where that allows it at most so many steps. Finite values only; low may
  /// equal high.
  static ValueScale over(double low, double high, int mostSteps);
  /// The multiples of the step from low to high.
  std::vector<double> ticks() const;
};

/// What stands between two ticks of the time axis.
struct TimeStep {
  enum Unit { DAYS, WEEKS, MONTHS, YEARS };
  Unit unit;
  int count;

  /// All that are used, from the shortest to the longest.
  static const std::vector<TimeStep>& all();
  /// The days of the ticks from the first to the last day: every Monday, the first of every third month, and
  /// so on. No more than the limit.
  std::vector<Date> ticks(const Date& first, const Date& last, std::size_t limit) const;
  /// The user's short date for days and weeks; for months "Mar", or "Mar 2026" where the year is to be told,
  /// and "2026" in January; for years "2026".
  String label(const Date& tick, bool withYear) const;
};

} // namespace Tallymoor
