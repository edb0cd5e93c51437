#include "analysis/ReportPeriod.h"
#include "xml/CountryOfResidence.h"
#include <array>
#include <cstdio>

namespace Tallymoor {

namespace {

constexpr int MONTHS_A_QUARTER = 3;
constexpr int QUARTERS_A_YEAR = 4;

Date financialYearOf(const Date& day) {
  return CountryOfResidence::Instance().financialYearOf(day);
}

Date calendarYearOf(const Date& day) {
  return Date(day.year(), 1, 1);
}

Date monthOf(const Date& day) {
  return Date(day.year(), day.month(), 1);
}

/// First day of the quarter that contains the day. The function gives the start of a year.
template <class YearOf>
Date quarterOf(const Date& day, YearOf yearOf) {
  const Date year = yearOf(day);
  int quarter = QUARTERS_A_YEAR - 1;
  while (quarter > 0 && year.plusMonths(quarter * MONTHS_A_QUARTER) > day)
    --quarter;
  return year.plusMonths(quarter * MONTHS_A_QUARTER);
}

/// The span before the one that holds today, where the function gives the first day of the span that holds a
/// day.
template <class StartOf>
ReportPeriod spanBefore(const Date& today, StartOf startOf) {
  const Date last = startOf(today).plusDays(-1);
  return {startOf(last), last};
}

std::string isoText(const Date& day) {
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02d-%02d", day.year(), day.month(), day.day());
  return text.data();
}

} // namespace

ReportPeriod ReportPeriod::lastMonth(const Date& today) {
  return spanBefore(today, monthOf);
}

ReportPeriod ReportPeriod::lastFinancialQuarter(const Date& today) {
  return spanBefore(today, [](const Date& day) { return quarterOf(day, financialYearOf); });
}

ReportPeriod ReportPeriod::lastCalendarQuarter(const Date& today) {
  return spanBefore(today, [](const Date& day) { return quarterOf(day, calendarYearOf); });
}

ReportPeriod ReportPeriod::lastFinancialYear(const Date& today) {
  return spanBefore(today, financialYearOf);
}

ReportPeriod ReportPeriod::lastCalendarYear(const Date& today) {
  return spanBefore(today, calendarYearOf);
}

String ReportPeriod::fileName() const {
  return String(("Report " + isoText(first) + " to " + isoText(last)).c_str());
}

} // namespace Tallymoor
