#pragma once
#include "widgets/ChartLayout.h"
#include <cairo.h>

namespace Tallymoor {

/// Draws all of a chart but its texts on a cairo surface of any kind: grid, band, lines, markers and the
/// samples of the legend, in lines of a thickness that goes with the height of the texts. Needs no display.
void paintChart(cairo_t* context, const ChartModel& model, const ChartLayout& layout, double lineHeight);

} // namespace Tallymoor
