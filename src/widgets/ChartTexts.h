#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include "widgets/ChartModel.h"

namespace Tallymoor {

// The texts of a chart, in the user's forms of money and dates.

/// A value as the reader is told it: "$1,234.56", "1.2345", "12.50%".
String chartValueText(double value, ChartUnit unit);

/// A value beside the axis whose ticks are so far apart, with no more decimals than tell the ticks apart.
String chartAxisText(double value, double step, ChartUnit unit);

/// The same in as little room as possible, for where the other does not fit: "$1.2M", "3e+20".
String chartShortAxisText(double value, double step, ChartUnit unit);

} // namespace Tallymoor
