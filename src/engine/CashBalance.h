#pragma once
#include "foundation/Date.h"

namespace Tallymoor {

class XMLElement;

/// What a portfolio's cash reserve comes to at the end of a day, by its entries and not by the capital
/// record, which may not be current while a form is open.
double cashBalance(const XMLElement& portfolio, const Date& day);

} // namespace Tallymoor
