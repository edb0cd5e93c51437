#pragma once
#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace SampleService {

using Day = std::chrono::sys_days;

/// One trading day as a data source shows it. Prices in ten-thousandths, not adjusted for later splits.
struct DayRow {
  Day day;
  std::int64_t open = 0;
  std::int64_t high = 0;
  std::int64_t low = 0;
  std::int64_t close = 0;
  std::int64_t adjustedClose = 0;
  std::int64_t volume = 0;
};

/// Something other than a price that a history table tells of a day.
struct DayEvent {
  Day day;
  std::string text; ///< as in "2:1 Stock Split" or "$0.1250 Dividend"
};

/// The rows of one code, oldest first, and its events.
struct PriceHistory {
  std::vector<DayRow> rows;
  std::vector<DayEvent> events;
};

struct Listing {
  std::string code;
  std::string name;
  std::string market; ///< "N/A" where the source leaves it to the code's suffix
  bool isIndex = false;
};

} // namespace SampleService
