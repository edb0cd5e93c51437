#pragma once
#include <cstdlib>

namespace Tallymoor {

/// True if a counting test should try all cases, as for ./counts. Otherwise it tries a sample, to save time.
inline bool wholeCounts() {
  return std::getenv("TALLYMOOR_WHOLE_COUNTS") != nullptr;
}

} // namespace Tallymoor
