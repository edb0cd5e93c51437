#pragma once
#include "widgets/ChartCanvas.h"
#include "widgets/ChartLayout.h"

namespace Tallymoor {

/// All of a chart but its texts: grid, band, lines, markers and the samples of the legend, in lines of a
/// thickness that goes with the height of the texts. Needs no display.
ChartCanvas drawChart(const ChartModel& model, const ChartLayout& layout, int width, int height,
                      double lineHeight);

} // namespace Tallymoor
