#pragma once
#include "analysis/ReportPeriod.h"
#include "session/OpenPortfolios.h"

namespace Tallymoor {

/// Makes the report of all portfolios over a period, with their charts, and opens its page. Tells the user
/// where the page lies when it can't be opened, and that there is nothing to report on when there is no
/// portfolio. GUI thread, under the big mutex. Throws Exception when the report can't be made or written.
void showReport(const OpenPortfolios& portfolios, const ReportPeriod& period, const String& title);

} // namespace Tallymoor
