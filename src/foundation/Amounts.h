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

/// A price as it is shown: four decimals, or two when the last two are zeros. 1.2300 reads as 1.23, 1.2345
/// stays.
String shortPriceText(double price);

/// A price as the capital record keeps it: two decimals, and up to six where it needs them.
String recordedPriceText(double price);

} // namespace Tallymoor
