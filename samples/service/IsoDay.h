#pragma once
#include "PriceHistory.h"
#include <optional>
#include <string_view>

namespace SampleService {

/// Reads "2026-03-02". Empty for other forms and invalid dates.
std::optional<Day> isoDay(std::string_view text);

} // namespace SampleService
