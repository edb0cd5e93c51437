#include "widgets/ChartScale.h"
#include <algorithm>
#include <cmath>

namespace Tallymoor {

namespace {

constexpr int MONTHS_IN_YEAR = 12;
/// Values further apart would overflow when they are subtracted.
constexpr double LARGEST = 1e300;
constexpr double MARGIN = 0.04; ///< of the values' range, on either side

/// The smallest round number that is not below the least step.
double roundStep(double least) {
  const double power = std::pow(10.0, std::floor(std::log10(least)));
  for (const double factor : {1.0, 2.0, 2.5, 5.0})
    if (least <= factor * power * (1.0 + 1e-9))
      return factor * power;
  return 10.0 * power;
}

/// The margin on either side of a constant value.
double roomAround(double value) {
  return std::max(std::abs(value) * 0.05, 1e-4);
}

Date firstOfMonth(int monthsSinceZero) {
  return Date(monthsSinceZero / MONTHS_IN_YEAR, monthsSinceZero % MONTHS_IN_YEAR + 1, 1);
}

/// The first tick at or after the day.
Date firstTick(const TimeStep& step, const Date& day) {
  switch (step.unit) {
  case TimeStep::DAYS:
    return day;
  case TimeStep::WEEKS: {
    constexpr int DAYS_IN_WEEK = 7;
    return day.plusDays((DAYS_IN_WEEK + 1 - day.dayOfWeek()) % DAYS_IN_WEEK);
  }
  case TimeStep::MONTHS:
  case TimeStep::YEARS:
    break;
  }
  const int months = step.unit == TimeStep::YEARS ? step.count * MONTHS_IN_YEAR : step.count;
  const int here = day.year() * MONTHS_IN_YEAR + day.month() - 1 + (day.day() > 1 ? 1 : 0);
  return firstOfMonth((here + months - 1) / months * months);
}

Date nextTick(const TimeStep& step, const Date& tick) {
  switch (step.unit) {
  case TimeStep::DAYS:
    return tick.plusDays(step.count);
  case TimeStep::WEEKS:
    return tick.plusDays(7 * step.count);
  case TimeStep::MONTHS:
    return tick.plusMonths(step.count);
  case TimeStep::YEARS:
    break;
  }
  return tick.plusMonths(MONTHS_IN_YEAR * step.count);
}

} // namespace

ValueScale ValueScale::over(double low, double high, int mostSteps) {
  low = std::clamp(low, -LARGEST, LARGEST);
  high = std::clamp(high, -LARGEST, LARGEST);
  if (high - low < 1e-9 * std::max(std::abs(low), std::abs(high)) || high - low < 1e-12) {
    const double room = roomAround(high);
    low -= room;
    high += room;
  }
  const double margin = (high - low) * MARGIN;
  ValueScale scale{low - margin, high + margin, 1.0};
  scale.step = roundStep((high - low) / std::max(1, mostSteps));
  while (scale.ticks().size() < 2)
    scale.step = roundStep(scale.step * 0.45);
  return scale;
}

std::vector<double> ValueScale::ticks() const {
  std::vector<double> all;
  for (double i = std::ceil(low / step); i * step <= high; ++i)
    all.push_back(i * step);
  return all;
}

const std::vector<TimeStep>& TimeStep::all() {
  static const std::vector<TimeStep> STEPS = {
      {DAYS, 1},  {DAYS, 2},  {WEEKS, 1}, {WEEKS, 2},  {MONTHS, 1}, {MONTHS, 2}, {MONTHS, 3},  {MONTHS, 6},
      {YEARS, 1}, {YEARS, 2}, {YEARS, 5}, {YEARS, 10}, {YEARS, 20}, {YEARS, 50}, {YEARS, 100}, {YEARS, 500}};
  return STEPS;
}

std::vector<Date> TimeStep::ticks(const Date& first, const Date& last, std::size_t limit) const {
  std::vector<Date> days;
  for (Date day = firstTick(*this, first); day <= last && days.size() < limit;) {
    days.push_back(day);
    const Date next = nextTick(*this, day);
    if (next <= day)
      break; // the end of the calendar
    day = next;
  }
  return days;
}

String TimeStep::label(const Date& tick, bool withYear) const {
  String year = String::fromLong(tick.year());
  switch (unit) {
  case DAYS:
  case WEEKS:
    return tick.toString(DATE_DISPLAY_LOCAL);
  case MONTHS:
    if (tick.month() == 1 && !withYear)
      return year;
    return String(FXJulianDate::shortMonthName(tick.month())) + (withYear ? u" " + year : String());
  case YEARS:
    break;
  }
  return year;
}

} // namespace Tallymoor
