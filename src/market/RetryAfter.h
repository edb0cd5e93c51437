#pragma once
#include <chrono>
#include <optional>

namespace Tallymoor {

struct HTTPAnswer;

/// How long the server wants to be left alone, by its Retry-After header: seconds, or a moment, which is
/// compared with the server's own Date, so that a wrong clock does no harm. Nothing without the header, or
/// when it can't be read.
std::optional<std::chrono::seconds> retryAfter(const HTTPAnswer& answer);

} // namespace Tallymoor
