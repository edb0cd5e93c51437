#pragma once
#include "widgets/ChartGeometry.h"
#include "widgets/ChartModel.h"
#include "widgets/ChartScale.h"
#include <vector>

namespace Tallymoor {

/// The axis of values on the left of a chart, which has a value at least.
class ValueAxis {
public:
  /// The labels are shortened where they are wider than the limit, and left out where that does not help. A
  /// level far from the values is not on the axis.
  ValueAxis(const ChartModel& model, double height, double mostLabelWidth, const ChartMetrics& metrics);

  double low() const { return m_scale.low; }
  double high() const { return m_scale.high; }
  /// How far below the top a value stands: 0 for the highest, 1 for the lowest.
  double partOf(double value) const { return (high() - value) / (high() - low()); }

  bool hasLabels() const { return m_hasLabels; }
  double labelWidth() const { return m_labelWidth; } ///< of the widest
  /// From the lowest, beside this plot of a chart of this height.
  std::vector<ChartTick> ticks(const ChartArea& plot, double chartHeight, const ChartMetrics& metrics) const;

private:
  String label(double value) const;
  double widestLabel(const ChartMetrics& metrics) const;

  ChartUnit m_unit;
  ValueScale m_scale;
  bool m_shortLabels = false;
  bool m_hasLabels = true;
  double m_labelWidth = 0.0;
};

} // namespace Tallymoor
