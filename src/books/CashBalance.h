#pragma once
#include "foundation/Date.h"

namespace Tallymoor {

class XMLCashEvent;
class XMLSharePortfolio;

/// A portfolio's cash reserve at the end of a day, summed over its entries: the capital record may not be
/// current while a form is open.
double cashBalance(const XMLSharePortfolio& portfolio, const Date& day);

/// A cash entry's amount; negative if it takes from the reserve.
double signedAmount(const XMLCashEvent& cashEvent);

/// What a cash entry adds to that balance: negative if it takes, 0 if it is of a later day.
double effectOnBalance(const XMLCashEvent& cashEvent, const Date& day);

} // namespace Tallymoor
