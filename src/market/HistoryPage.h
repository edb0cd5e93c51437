#pragma once
#include "market/DataSource.h"
#include <exception>

namespace Tallymoor {

/// Days of a code whose past prices somebody is going to ask for.
struct HistoryNeed {
  String code;
  Date first;
  Date last;
};

/// What a request for a page of past prices brought: rows, or a failure.
struct HistoryPage {
  DataSource::Rows rows;
  std::exception_ptr failure;

  /// Any thread, without the big mutex.
  static HistoryPage fetch(const DataSource& source, const String& code, const HistoryRange& range,
                           const std::stop_token& stop);
};

/// The requests for the price of a day, one after the other: the page that begins or ends there and, where
/// the first one has nothing up to the day, the page before it.
struct DayFetch {
  String code;
  Date day;
  bool upTo;
  HistoryRange range; ///< of the request that is due
  bool isLast = upTo; ///< no other follows it
};

} // namespace Tallymoor
