#pragma once
#include "PriceHistory.h"

namespace SampleService {

/// True on weekdays except the sample market's holidays: New Year, 26 January, Good Friday, Easter Monday, 25
/// April, Christmas and 26 December.
bool isTradingDay(Day day);

/// Easter Sunday of a Gregorian year, by the algorithm of Meeus, Jones and Butcher.
Day easterSunday(int year);

} // namespace SampleService
