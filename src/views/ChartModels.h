#pragma once
#include "analysis/Performance.h"
#include "foundation/Date.h"
#include "foundation/String.h"
#include "widgets/ChartModel.h"

namespace Tallymoor {

// What the charts of the views and of the reports show. Prices come from the cache. GUI thread, under the big
// mutex; the portfolios are not owned.

/// The capital with external flows taken out, and for exactly one portfolio its comparison index scaled to
/// the same start.
ChartModel capitalChartModel(const Portfolios& portfolios, const Date& from, const Date& to);

/// A stock's closes, its purchases and sales in the portfolios, the line through its recent weeks, and the
/// limits in force: those of a portfolio that holds it, else those it is watched by.
///
/// Prices are as of the last day: those before a split that a portfolio has recorded are divided by its
/// ratio, unless the closes show no jump there because the source had adjusted them itself. A trend line that
/// reaches back beyond such a split is left out, since its weeks are not adjusted.
ChartModel priceChartModel(const String& code, const Portfolios& portfolios, const Date& from,
                           const Date& to);

} // namespace Tallymoor
