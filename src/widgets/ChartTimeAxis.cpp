#include "widgets/ChartTimeAxis.h"
#include "widgets/ChartScale.h"
#include <algorithm>

namespace Tallymoor {

namespace {

constexpr std::size_t MOST_TICKS = 200;

class TimeTicks {
public:
  TimeTicks(const ChartDays& days, const ChartArea& plot, double chartWidth, const ChartMetrics& metrics)
      : m_days(days), m_plot(plot), m_chartWidth(chartWidth), m_metrics(metrics) {}

  std::vector<ChartTick> place() {
    const bool fitted = std::any_of(TimeStep::all().begin(), TimeStep::all().end(),
                                    [this](const TimeStep& step) { return addAll(step); });
    if (fitted && m_ticks.empty())
      return atTheEnds();
    if (!fitted)
      addWithoutLabels(TimeStep::all().back());
    return m_ticks;
  }

private:
  /// False where a label does not fit: it is not worth measuring the rest.
  bool addAll(const TimeStep& step) {
    start();
    const std::vector<Date> days = step.ticks(m_days.axisStart(), m_days.axisEnd(), MOST_TICKS);
    return days.size() < MOST_TICKS && std::all_of(days.begin(), days.end(), [&](const Date& day) {
             return add(day, step.label(day, m_ticks.empty()));
           });
  }
  void addWithoutLabels(const TimeStep& step) {
    start();
    for (const Date& day : step.ticks(m_days.axisStart(), m_days.axisEnd(), MOST_TICKS))
      m_ticks.push_back({xOf(day), std::nullopt});
  }
  std::vector<ChartTick> atTheEnds() {
    start();
    bool fits = add(m_days.axisStart(), m_days.axisStart().toString(DATE_DISPLAY_LOCAL));
    if (m_days.axisStart() != m_days.axisEnd())
      fits &= add(m_days.axisEnd(), m_days.axisEnd().toString(DATE_DISPLAY_LOCAL));
    if (!fits)
      for (ChartTick& tick : m_ticks)
        tick.label.reset();
    return m_ticks;
  }

  void start() {
    m_ticks.clear();
    m_end = 0.0;
  }
  /// False where the label overlaps the one before it or the edge.
  bool add(const Date& day, const String& label) {
    const double x = xOf(day);
    const double width = m_metrics.textWidth(label);
    const double gap = m_metrics.gap();
    const double left = std::clamp(x - width / 2, 0.0, std::max(0.0, m_chartWidth - gap / 2 - width));
    const bool fits = (m_ticks.empty() || left >= m_end + 3 * gap) && left + width <= m_chartWidth;
    m_end = left + width;
    m_ticks.push_back({x, ChartText{left, m_plot.bottom() + m_metrics.lineHeight / 2, label}});
    return fits;
  }
  double xOf(const Date& day) const { return m_plot.x + m_days.partOf(day) * m_plot.width; }

  const ChartDays& m_days;
  const ChartArea& m_plot;
  const double m_chartWidth;
  const ChartMetrics& m_metrics;
  std::vector<ChartTick> m_ticks;
  double m_end = 0.0; ///< of the last label
};

} // namespace

std::vector<ChartTick> placeTimeTicks(const ChartDays& days, const ChartArea& plot, double chartWidth,
                                      const ChartMetrics& metrics) {
  return TimeTicks(days, plot, chartWidth, metrics).place();
}

} // namespace Tallymoor
