#pragma once
#include "market/DataSource.h"
#include "market/HistoryNeed.h"
#include <exception>

namespace Tallymoor {

/// The result of a request for one page of past prices: rows, or a failure.
struct HistoryPage {
  DataSource::Rows rows;
  std::exception_ptr failure;
};

/// The requests for the price of a day, one after the other: the page that begins or ends there and, where
/// the first one has nothing up to the day, the page before it.
struct DayFetch {
  String code;
  Date day;
  bool upTo;
  HistoryRange range;          ///< of the request that is due
  bool isLast = upTo;          ///< no other follows it
  bool endsCompletion = false; ///< if it has no price of the day, none before it is asked for either
};

} // namespace Tallymoor
