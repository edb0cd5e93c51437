#pragma once
#include "foundation/String.h"
#include <cstdint>

namespace Tallymoor {

/// True when the absolute value, written with so many decimals, reads as zero. The one test for "nothing" in
/// the program: a double is never compared with zero directly.
bool showsAsZero(double value, int decimals = 4);

/// True when both values give the same text at so many decimals.
bool showsTheSame(double a, double b, int decimals);

/// The value in ten-thousandths, rounded through its text: how shares are compared. Does not overflow at
/// 300,000 shares.
std::int64_t tenThousandths(double value);

} // namespace Tallymoor
