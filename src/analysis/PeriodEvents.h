#pragma once
#include "analysis/Performance.h"
#include "analysis/ReportPeriod.h"
#include "foundation/Date.h"
#include <vector>

namespace Tallymoor {

class XMLCashEvent;
class XMLDividendEvent;
class XMLSellEvent;

/// A recorded event of a portfolio. Both belong to the records.
template <class Record>
struct EventOf {
  Date day;
  const Record* record = nullptr;
  const SharePortfolioUser* portfolio = nullptr;
};
using SaleOf = EventOf<XMLSellEvent>;
using DividendOf = EventOf<XMLDividendEvent>;
using CashFlow = EventOf<XMLCashEvent>;

// The events of a period in all portfolios: the oldest first, those of one day in the order of the records.
std::vector<SaleOf> salesWithin(const Portfolios& portfolios, const ReportPeriod& period);
std::vector<DividendOf> dividendsWithin(const Portfolios& portfolios, const ReportPeriod& period);
std::vector<CashFlow> cashFlowsWithin(const Portfolios& portfolios, const ReportPeriod& period);

} // namespace Tallymoor
