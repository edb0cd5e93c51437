#pragma once
#include "foundation/Date.h"

namespace Tallymoor {

/// The days that one request for past prices asks for. A page of the data source holds a limited number of
/// trading days, so the range reaches from the wanted day about as far as a page does.
struct HistoryRange {
  /// A range ends early rather than lie in the future, and reaches back at least this many days where it
  /// does.
  static constexpr int SHORTEST_FROM_RANGE = 14;
  /// A range up to a day this close to today goes on to today.
  static constexpr int NEAR_TODAY = 5;

  Date start;
  Date end;

  bool contains(const Date& day) const { return start <= day && day <= end; }

  /// Up to the date or from it on, for pages of so many trading days; today is the view date while one is
  /// set.
  static HistoryRange around(const Date& date, bool upTo, int maxEntries);
  /// The length of the longest of those ranges, both of its ends included.
  static int daysOfPage(int maxEntries);
};

} // namespace Tallymoor
