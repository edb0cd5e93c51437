#pragma once
#include "widgets/ChartGeometry.h"
#include "widgets/ChartModel.h"
#include <vector>

namespace Tallymoor {

/// One entry of the legend: a sample of what is drawn, and its name behind it.
struct ChartKey {
  enum Kind { SERIES, LEVEL, PURCHASES, SALES };
  Kind kind;
  std::size_t index; ///< of the series or level
  ChartArea sample;
  ChartText name;
};

/// The legend in lines from the top of the room; empty when it is too wide or too high for it, since a part
/// of it would mislead.
std::vector<ChartKey> placeLegend(const ChartModel& model, const ChartArea& room,
                                  const ChartMetrics& metrics);

} // namespace Tallymoor
