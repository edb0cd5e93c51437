#pragma once

namespace Tallymoor {

class XMLElement;

// What the records of a portfolio (SharePortfolio) from a file must keep to before they come in. Both throw
// Exception.

/// A day that can't be read would make the whole portfolio unusable.
void checkImportedDates(const XMLElement& portfolio);

/// Numbers, prices, brokerages, rates and taxes below zero are refused as by the forms; the portfolio, the
/// entry and the field are named. Cash may be negative, as what a sale brings when the brokerage is higher.
void checkImportedAmounts(const XMLElement& portfolio);

} // namespace Tallymoor
