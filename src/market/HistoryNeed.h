#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"

namespace Tallymoor {

/// Days of a code whose past prices are needed.
struct HistoryNeed {
  /// Which page is asked for next.
  enum class Kind {
    Forward,  ///< the page from the first missing day on; a failure ends it
    Backward, ///< the page up to the last missing day; a failure or an empty page ends it
    UpTo,     ///< for a single day: the page up to it
    Refresh   ///< the page from the first day on, though it is known: its close may not be final
  };

  String code;
  Date first;
  Date last;
  Kind kind = Kind::Forward;

  bool operator==(const HistoryNeed&) const = default;
};

} // namespace Tallymoor
