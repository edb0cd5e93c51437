#pragma once
#include "widgets/ChartDays.h"
#include "widgets/ChartGeometry.h"
#include <vector>

namespace Tallymoor {

/// The ticks of the time axis below the plot, at round days as close as their labels allow; at the first and
/// the last day when no round day lies between them. The labels stay within the width of the chart.
std::vector<ChartTick> placeTimeTicks(const ChartDays& days, const ChartArea& plot, double chartWidth,
                                      const ChartMetrics& metrics);

} // namespace Tallymoor
