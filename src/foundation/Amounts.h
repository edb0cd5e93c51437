#pragma once
#include "foundation/String.h"
#include <cstdint>

namespace Tallymoor {

/// True if the value rounds to zero at this number of decimals. Use this instead of comparing a double with
/// zero.
bool showsAsZero(double value, int decimals = 4);

/// True if both values give the same text at this number of decimals.
bool showsTheSame(double a, double b, int decimals);

/// The value in ten-thousandths, rounded through its text. Share counts are compared in this unit.
std::int64_t tenThousandths(double value);

/// A price as displayed: four decimals, or two if the last two are zeros (1.2300 gives "1.23", 1.2345 stays).
String shortPriceText(double price);

/// A price as stored in the capital record: two decimals, up to six if needed.
String recordedPriceText(double price);

} // namespace Tallymoor
