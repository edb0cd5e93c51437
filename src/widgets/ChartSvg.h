#pragma once
#include "foundation/String.h"
#include "widgets/ChartModel.h"

namespace Tallymoor {

/// The chart as an SVG element to stand in a page of HTML or alone: it is laid out for this size and scales
/// with the page. Lines and markers can be told apart in black and white. All texts are escaped.
String chartSvg(const ChartModel& model, int width, int height);

} // namespace Tallymoor
