#pragma once
#include "foundation/Date.h"

namespace Tallymoor {

class XMLElement;

/// What a portfolio's cash reserve comes to at the end of a day, by its entries and not by the capital
/// record, which may not be current while a form is open.
double cashBalance(const XMLElement& portfolio, const Date& day);

/// A cash entry's (CashEvent) amount; negative for what it takes from the reserve.
double signedAmount(const XMLElement& cashEvent);

/// What a cash entry adds to that balance; negative for what it takes, 0 when it is of a later
/// day.
double effectOnBalance(const XMLElement& cashEvent, const Date& day);

} // namespace Tallymoor
