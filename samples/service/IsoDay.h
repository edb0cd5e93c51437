#pragma once
#include "PriceHistory.h"
#include <optional>
#include <string_view>

namespace SampleService {

/// Reads "2026-03-02"; nothing for any other form and for days that the calendar does not have.
std::optional<Day> isoDay(std::string_view text);

} // namespace SampleService
