#pragma once
#include <cstdlib>

namespace Tallymoor {

/// Whether a test that counts cases tries all of them, as ./counts has it. Otherwise it tries some of each
/// kind, which ./test has time for.
inline bool wholeCounts() {
  return std::getenv("TALLYMOOR_WHOLE_COUNTS") != nullptr;
}

} // namespace Tallymoor
