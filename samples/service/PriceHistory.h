#pragma once
#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace SampleService {

using Day = std::chrono::sys_days;

/// A trading day as shown by a data source. Prices are in ten-thousandths, not adjusted for later splits.
struct DayRow {
  Day day;
  std::int64_t open = 0;
  std::int64_t high = 0;
  std::int64_t low = 0;
  std::int64_t close = 0;
  std::int64_t adjustedClose = 0;
  std::int64_t volume = 0;
};

/// An entry of a history table other than a price.
struct DayEvent {
  Day day;
  std::string text; ///< "2:1 Stock Split" or "$0.1250 Dividend".
};

/// The rows of a code, oldest first, and its events.
struct PriceHistory {
  std::vector<DayRow> rows;
  std::vector<DayEvent> events;
};

struct Listing {
  std::string code;
  std::string name;
  std::string market; ///< "N/A" if the code's suffix determines it.
  bool isIndex = false;
};

} // namespace SampleService
