#pragma once
#include "widgets/ChartFont.h"
#include "widgets/ChartLayout.h"
#include <cairo.h>

namespace Tallymoor {

/// Draws a chart on a cairo surface of any kind, in lines of a thickness that goes with the height of the
/// texts. The layout is one for this font. Needs no display.
void paintChart(cairo_t* context, const ChartModel& model, const ChartLayout& layout, const ChartFont& font);

/// Over a chart: a line at the day of the reading, dots on its values, and the box that tells them.
void paintReading(cairo_t* context, const ChartModel& model, const ChartLayout& layout,
                  const ChartReading& reading, const ChartFont& font);

} // namespace Tallymoor
