#pragma once
#include "widgets/ChartModel.h"

namespace FX {
class FXWindow;
}

namespace Tallymoor {

class ChartFont;

/// Asks for a file and writes the chart to it, laid out for this size in pixels, in the format that the
/// extension of its name tells; SVG without one. Throws Exception when it can't be written; an older file
/// then stands. GUI thread, under the big mutex.
void saveChart(FX::FXWindow* owner, const ChartModel& model, int width, int height, const ChartFont& font);

} // namespace Tallymoor
