#pragma once
#include "PriceHistory.h"

namespace SampleService {

/// True on weekdays that are none of the sample market's holidays: New Year, 26 January, Good Friday, Easter
/// Monday, 25 April, Christmas and the day after.
bool isTradingDay(Day day);

/// Easter Sunday of a Gregorian year, by the rule of Gauss in the form of Meeus, Jones and Butcher.
Day easterSunday(int year);

} // namespace SampleService
