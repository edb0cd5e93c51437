#include "widgets/ChartValueAxis.h"
#include "widgets/ChartTexts.h"
#include <algorithm>
#include <cmath>
#include <limits>

namespace Tallymoor {

namespace {

constexpr double LINES_BETWEEN_TICKS = 1.9;
constexpr double LEAST_LINES_BETWEEN_LABELS = 1.2;
constexpr int MOST_STEPS = 8;

struct ValueRange {
  double low = std::numeric_limits<double>::max();
  double high = std::numeric_limits<double>::lowest();

  void widenTo(double value) {
    if (!std::isfinite(value))
      return;
    low = std::min(low, value);
    high = std::max(high, value);
  }
};

ValueRange rangeOf(const ChartModel& model) {
  ValueRange range;
  for (const ChartSeries& series : model.series)
    for (const ChartPoint& point : series.points)
      range.widenTo(point.value);
  for (const ChartMarker& marker : model.markers)
    range.widenTo(marker.value);
  // A level far away would press the line flat: it is told in the legend alone.
  const double reach = std::max(range.high - range.low, std::abs(range.high) * 0.1);
  const double lowest = range.low - reach;
  const double highest = range.high + reach;
  for (const ChartLevel& level : model.levels)
    if (level.value >= lowest && level.value <= highest)
      range.widenTo(level.value);
  return range;
}

} // namespace

ValueAxis::ValueAxis(const ChartModel& model, double height, double mostLabelWidth,
                     const ChartMetrics& metrics)
    : m_unit(model.unit) {
  const int steps = std::clamp(int(height / (LINES_BETWEEN_TICKS * metrics.lineHeight)), 1, MOST_STEPS);
  const ValueRange range = rangeOf(model);
  m_scale = ValueScale::over(range.low, range.high, steps);
  m_labelWidth = widestLabel(metrics);
  if (m_labelWidth > mostLabelWidth) {
    m_shortLabels = true;
    m_labelWidth = widestLabel(metrics);
  }
  m_hasLabels = m_labelWidth <= mostLabelWidth;
}

double ValueAxis::widestLabel(const ChartMetrics& metrics) const {
  double width = 0.0;
  for (const double value : m_scale.ticks())
    width = std::max(width, metrics.textWidth(label(value)));
  return width;
}

String ValueAxis::label(double value) const {
  return m_shortLabels ? chartShortAxisText(value, m_scale.step, m_unit)
                       : chartAxisText(value, m_scale.step, m_unit);
}

std::vector<ChartTick> ValueAxis::ticks(const ChartArea& plot, double chartHeight,
                                        const ChartMetrics& metrics) const {
  const double line = metrics.lineHeight;
  std::vector<ChartTick> ticks;
  double lastLabel = std::numeric_limits<double>::max();
  for (const double value : m_scale.ticks()) {
    ChartTick tick{plot.y + partOf(value) * plot.height, std::nullopt};
    const double top = tick.position - line / 2;
    const bool hasRoom = lastLabel - tick.position >= LEAST_LINES_BETWEEN_LABELS * line && top >= 0.0 &&
                         top + line <= chartHeight;
    if (m_hasLabels && hasRoom) {
      const String text = label(value);
      tick.label = ChartText{plot.x - metrics.gap() - metrics.textWidth(text), top, text};
      lastLabel = tick.position;
    }
    ticks.push_back(tick);
  }
  return ticks;
}

} // namespace Tallymoor
