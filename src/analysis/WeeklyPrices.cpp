#include "analysis/WeeklyPrices.h"
#include "books/SuspectedSplit.h"
#include "foundation/Amounts.h"
#include "foundation/RunTimeSettings.h"
#include "market/TallymoorInternet.h"
#include <algorithm>
#include <optional>

namespace Tallymoor {

namespace {

constexpr int DAYS_OF_A_WEEK = 7;

/// False for rows without a price, and for those that only carry one over a weekend.
bool isQuoted(const Date& day, const ShareValue& value) {
  return !showsAsZero(value.close) && (!day.isWeekend() || value.volume != 0);
}

Date fridayOf(const Date& day) {
  return day.lastFriday().plusDays(DAYS_OF_A_WEEK); // of a Friday, the last one lies a week back
}

/// A fall by a third is no split here: automatic limits are there to warn of it.
bool isSplitSized(double before, double now) {
  const auto split = SuspectedSplit::between(before, now);
  return split && (!split->isThreeForTwo() || now < before / splitRatioDetect);
}

/// The range always includes the close, even if the source's high and low don't.
WeeklyPrice weekOfOneDay(const Date& day, const ShareValue& value) {
  const double high = showsAsZero(value.high) ? value.close : std::max(value.high, value.close);
  const double low = showsAsZero(value.low) ? value.close : std::min(value.low, value.close);
  return {fridayOf(day), value.close, high, low};
}

void addDay(std::vector<WeeklyPrice>& weeks, const WeeklyPrice& day) {
  if (weeks.empty() || weeks.back().friday != day.friday) {
    weeks.push_back(day);
    return;
  }
  WeeklyPrice& week = weeks.back();
  week.close = day.close;
  week.high = std::max(week.high, day.high);
  week.low = std::min(week.low, day.low);
}

/// The last day whose close the data source may have: today's comes with the current prices.
Date lastClose(const Date& day) {
  return !Date::hasFixedDate() && day == Date() ? day.plusDays(-1) : day;
}

} // namespace

std::vector<WeeklyPrice> recentWeeks(const String& code, const Date& day, int count) {
  const Date last = day.lastFriday();
  const Date first = last.plusDays(1 - count * DAYS_OF_A_WEEK); // a Saturday
  TallymoorInternet& gateway = TallymoorInternet::Instance();
  // Beyond the weeks, too: a split may lie there.
  gateway.requireHistory({code, first, lastClose(day), HistoryNeed::Kind::Backward});
  std::vector<WeeklyPrice> weeks;
  std::optional<double> before;
  for (const auto& [quoted, value] : gateway.cachedRows(code, first, day)) {
    if (!isQuoted(quoted, value))
      continue;
    if (before && isSplitSized(*before, value.close))
      weeks.clear();
    before = value.close;
    if (quoted <= last)
      addDay(weeks, weekOfOneDay(quoted, value));
  }
  return weeks;
}

} // namespace Tallymoor
