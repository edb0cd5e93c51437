#pragma once
#include "analysis/Performance.h"
#include "analysis/ReportPeriod.h"
#include "xml/ReportDocument.h"
#include <functional>
#include <memory>

namespace Tallymoor {

/// Draws the chart of some portfolios over a period, as an SVG element; an empty text for none.
using ReportChart = std::function<String(const Portfolios&, const ReportPeriod&)>;

/// Composes the report of some portfolios over a period that ends no later than today: a part for each, and
/// one for all where there are several.
///
/// Their capital records must be up to date. Throws Exception when one stops before the end of the period
/// because the user cancelled its update: rather no report than one that lacks days. GUI thread, under the
/// big mutex.
std::unique_ptr<XMLReport> makeReport(const Portfolios& portfolios, const ReportPeriod& period,
                                      const String& title, const ReportChart& chart = {});

} // namespace Tallymoor
