#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"

namespace Tallymoor {

/// What is known of a code's price on a day without asking anyone, for a form that proposes it; 0 when
/// nothing is. Of today it is the current price, otherwise the close.
double knownPrice(const String& code, const Date& day = Date());

/// The same, after what is missing of a past day has been fetched, if it can be; asks and throws nothing.
double priceOfDay(const String& code, const Date& day);

/// True when a price is so far from that of its day that it may be a slip: more than a quarter above, or a
/// fifth below.
bool isFarFrom(double price, double priceOfDay);

} // namespace Tallymoor
