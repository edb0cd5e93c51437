#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"

namespace Tallymoor {

// How days and amounts are written in the records. Users have records in these forms, and cash entries are
// found again by them, so they never change.

String dayText(const Date& date);
String moneyText(double amount);
String numberText(double shares);
/// A number of shares in the terms of their purchase: two decimals, or up to six where it was divided by a
/// split and needs them.
String recordedNumberText(double shares);
/// True for a number that was recorded with more than two decimals.
bool hasFractionOfHundredths(const String& number);
String priceText(double price);
/// Dividend for each share, at six decimals.
String dividendRateText(double rate);

} // namespace Tallymoor
