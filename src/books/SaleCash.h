#pragma once
#include "books/PortfolioEvents.h"

namespace Tallymoor {

class XMLSellEvent;

// The two cash entries that belong to a recorded sale: the sale's own, and that of the purchase,
// which stands for exactly these shares only when they were the whole of it.

/// The portfolio that the sale belongs to; null for a sale outside any.
const XMLSharePortfolio* portfolioOf(const XMLSellEvent& sale);

/// What the sale brought in for that number of shares of its day, less its brokerage.
double proceedsOf(const XMLSellEvent& sale, double number);
CashEntryKey proceedsKey(const XMLSellEvent& sale, double number);
/// Null when the cash has no such entry.
const XMLCashEvent* findProceeds(const XMLSharePortfolio& portfolio, const XMLSellEvent& sale, double number);

/// What the sold shares cost, with the brokerage of the purchase that the sale bears.
double costOf(const XMLSellEvent& sale);
CashEntryKey costKey(const XMLSellEvent& sale);
/// Null when the cash has no such entry.
const XMLCashEvent* findCost(const XMLSharePortfolio& portfolio, const XMLSellEvent& sale);

} // namespace Tallymoor
