#include "market/HistoryRange.h"
#include <algorithm>

namespace Tallymoor {

namespace {

/// Five trading days make a calendar week. Bounded at about a century, whatever a locator document says.
int calendarDays(int tradingDays) {
  constexpr int LONGEST = 36500;
  return std::clamp(tradingDays, 0, LONGEST / 7 * 5) * 7 / 5;
}

} // namespace

HistoryRange HistoryRange::around(const Date& date, bool upTo, int maxEntries) {
  const Date today;
  HistoryRange range{date, date};
  if (upTo) {
    range.start.addDays(-calendarDays(maxEntries));
    if (today.daysSince(range.end) < NEAR_TODAY) {
      range.start.addDays(NEAR_TODAY);
      range.end = today;
    }
    return range;
  }
  range.end.addDays(calendarDays(maxEntries));
  if (range.end > today) {
    range.end = today;
    if (range.end.daysSince(range.start) < SHORTEST_FROM_RANGE)
      range.start = range.end.plusDays(-SHORTEST_FROM_RANGE);
  }
  return range;
}

int HistoryRange::daysOfPage(int maxEntries) {
  return std::max(SHORTEST_FROM_RANGE, calendarDays(maxEntries)) + 1;
}

} // namespace Tallymoor
