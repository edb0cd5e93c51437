#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"

namespace Tallymoor {

/// The days that a report covers, both ends included. "Last" means the last one that was over before today
/// (the view date, while one is set): on the last day of a month that month is still under way.
struct ReportPeriod {
  Date first;
  Date last;

  static ReportPeriod lastMonth(const Date& today = Date());
  /// Quarters of the financial year of the country of residence.
  static ReportPeriod lastFinancialQuarter(const Date& today = Date());
  static ReportPeriod lastCalendarQuarter(const Date& today = Date());
  static ReportPeriod lastFinancialYear(const Date& today = Date());
  static ReportPeriod lastCalendarYear(const Date& today = Date());

  /// The period starts with the state at the end of this day.
  Date dayBefore() const { return first.plusDays(-1); }
  bool contains(const Date& day) const { return first <= day && day <= last; }
  /// Name of a report's files without ending, of digits and fixed words alone: "Report 2025-07-01 to
  /// 2026-06-30".
  String fileName() const;
};

} // namespace Tallymoor
