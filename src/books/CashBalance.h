#pragma once
#include "foundation/Date.h"

namespace Tallymoor {

class XMLCashEvent;
class XMLSharePortfolio;

/// What a portfolio's cash reserve comes to at the end of a day, by its entries and not by the capital
/// record, which may not be current while a form is open.
double cashBalance(const XMLSharePortfolio& portfolio, const Date& day);

/// A cash entry's amount; negative for what it takes from the reserve.
double signedAmount(const XMLCashEvent& cashEvent);

/// What a cash entry adds to that balance; negative for what it takes, 0 when it is of a later
/// day.
double effectOnBalance(const XMLCashEvent& cashEvent, const Date& day);

} // namespace Tallymoor
