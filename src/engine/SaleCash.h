#pragma once
#include "engine/PortfolioEvents.h"

namespace Tallymoor {

// The two cash entries that belong to a recorded sale (SellEvent): the sale's own, and that of the purchase,
// which stands for exactly these shares only when they were the whole of it.

/// The portfolio that the sale belongs to; null for a sale outside any.
const XMLElement* portfolioOf(const XMLElement& sale);

/// What the sale brought in for so many shares of its day, less its brokerage.
double proceedsOf(const XMLElement& sale, double number);
CashEntryKey proceedsKey(const XMLElement& sale, double number);
std::optional<std::size_t> findProceeds(const XMLElement& portfolio, const XMLElement& sale, double number);

/// What the sold shares cost, with the brokerage of the purchase that the sale bears.
double costOf(const XMLElement& sale);
CashEntryKey costKey(const XMLElement& sale);
std::optional<std::size_t> findCost(const XMLElement& portfolio, const XMLElement& sale);

} // namespace Tallymoor
