#include "widgets/ChartLayout.h"
#include "widgets/ChartTimeAxis.h"
#include "widgets/ThinnedLine.h"
#include <algorithm>
#include <cmath>

namespace Tallymoor {

namespace {

constexpr double LEAST_LINES_FOR_TITLE = 9.0;
constexpr double LEAST_LINES_FOR_LEGEND = 6.0;
constexpr double LEAST_LINES_FOR_TIMES = 4.0;
constexpr double LINES_FOR_TIMES = 1.6;
constexpr double LARGEST_PART_FOR_VALUES = 0.35;
constexpr double BOLD = 1.2; ///< how much wider than others bold text may be, as the title is

/// Broken at blanks where it is wider than this.
std::vector<String> wrapped(const String& text, double width, const ChartMetrics& metrics) {
  std::vector<String> lines;
  String line;
  std::size_t begin = 0;
  while (begin < text.size()) {
    const std::size_t end = std::min(text.find(u' ', begin), text.size());
    const String word = text.substr(begin, end - begin);
    const String longer = line.empty() ? word : line + u" " + word;
    if (line.empty() || metrics.textWidth(longer) <= width) {
      line = longer;
    } else {
      lines.push_back(line);
      line = word;
    }
    begin = end + 1;
  }
  lines.push_back(line);
  return lines;
}

} // namespace

ChartLayout::ChartLayout(const ChartModel& model, double width, double height, const ChartMetrics& metrics)
    : m_model(model), m_width(width), m_height(height), m_metrics(metrics), m_days(model) {
  const double top = placeTitle(m_metrics.gap());
  if (isEmpty())
    placeEmptyText(top);
  else
    placePlot(placeLegendBelow(top));
}

/// Gives where it ends, as the two below do.
double ChartLayout::placeTitle(double top) {
  const double gap = m_metrics.gap();
  const bool hasRoom = m_height >= LEAST_LINES_FOR_TITLE * m_metrics.lineHeight &&
                       m_metrics.textWidth(m_model.title) * BOLD <= m_width - 2 * gap;
  if (m_model.title.empty() || !hasRoom)
    return top;
  m_title = {gap, top, m_model.title};
  return top + m_metrics.lineHeight + gap / 2;
}

void ChartLayout::placeEmptyText(double top) {
  const std::vector<String> lines = wrapped(m_model.emptyText, m_width - 2 * m_metrics.gap(), m_metrics);
  double y = std::max(top, (m_height - m_metrics.lineHeight * double(lines.size())) / 2);
  for (const String& text : lines) {
    m_emptyText.push_back({std::max(0.0, (m_width - m_metrics.textWidth(text)) / 2), y, text});
    y += m_metrics.lineHeight;
  }
}

double ChartLayout::placeLegendBelow(double top) {
  if (m_height >= LEAST_LINES_FOR_LEGEND * m_metrics.lineHeight)
    m_legend = placeLegend(m_model, {0.0, top, m_width, m_height / 2 - top}, m_metrics);
  return m_legend.empty() ? top : m_legend.back().name.y + m_metrics.lineHeight + m_metrics.gap();
}

void ChartLayout::placePlot(double top) {
  const double line = m_metrics.lineHeight;
  const double gap = m_metrics.gap();
  const bool hasTimes = m_height >= LEAST_LINES_FOR_TIMES * line;
  const double bottom = m_height - (hasTimes ? line * LINES_FOR_TIMES : gap);
  m_plot.y = top + line / 2;
  m_plot.height = std::max(1.0, bottom - m_plot.y);
  m_values.emplace(m_model, m_plot.height, m_width * LARGEST_PART_FOR_VALUES, m_metrics);
  m_plot.x = m_values->hasLabels() ? 2 * gap + m_values->labelWidth() : gap;
  m_plot.width = std::max(1.0, m_width - 2 * gap - m_plot.x);

  m_valueTicks = m_values->ticks(m_plot, m_height, m_metrics);
  m_timeTicks = placeTimeTicks(m_days, m_plot, m_width, m_metrics);
  if (!hasTimes)
    for (ChartTick& tick : m_timeTicks)
      tick.label.reset();
}

double ChartLayout::xOf(const Date& day) const {
  return m_plot.x + m_days.partOf(day) * m_plot.width;
}

double ChartLayout::yOf(double value) const {
  return m_plot.y + m_values->partOf(value) * m_plot.height;
}

std::vector<ChartPixel> ChartLayout::line(std::size_t series) const {
  ThinnedLine line;
  for (const ChartPoint& point : m_model.series[series].points)
    if (point.isFinite())
      line.add({xOf(point.day), yOf(point.value)});
  return line.points();
}

ChartPixel ChartLayout::markerPosition(const ChartMarker& marker) const {
  return {xOf(marker.day), yOf(marker.value)};
}

std::optional<double> ChartLayout::levelPosition(std::size_t level) const {
  const double value = m_model.levels[level].value;
  if (isEmpty() || !(value >= m_values->low() && value <= m_values->high()))
    return std::nullopt;
  return yOf(value);
}

std::optional<ChartArea> ChartLayout::band() const {
  if (isEmpty() || m_model.levels.size() != 2)
    return std::nullopt;
  const auto [low, high] = std::minmax(m_model.levels[0].value, m_model.levels[1].value);
  if (!(low < m_values->high() && high > m_values->low()))
    return std::nullopt;
  const double top = yOf(std::min(high, m_values->high()));
  const double bottom = yOf(std::max(low, m_values->low()));
  return ChartArea{m_plot.x, top, m_plot.width, bottom - top};
}

std::optional<Date> ChartLayout::dayAt(double x) const {
  if (isEmpty() || x < m_plot.x - m_metrics.gap() || x > m_plot.right() + m_metrics.gap())
    return std::nullopt;
  if (const ChartMarker* marker = markerAt(x))
    return marker->day;
  return m_days.nearest((x - m_plot.x) / m_plot.width);
}

/// The nearest within a few pixels: where days are narrower than pixels, its own could hardly be met.
const ChartMarker* ChartLayout::markerAt(double x) const {
  const ChartMarker* nearest = nullptr;
  double least = m_metrics.gap() / 2;
  for (const ChartMarker& marker : m_model.markers)
    if (const double distance = std::abs(xOf(marker.day) - x); distance < least) {
      nearest = &marker;
      least = distance;
    }
  return nearest;
}

ChartReading ChartLayout::reading(const Date& day) const {
  ChartReading reading{day, xOf(day), {}, {}};
  for (std::size_t i = 0; i < m_model.series.size(); ++i)
    if (const std::optional<double> value = valueOn(m_model.series[i], day))
      reading.values.push_back({i, *value, yOf(*value)});
  for (const ChartMarker& marker : m_model.markers)
    if (marker.day == day)
      reading.notes.push_back(marker.text);
  return reading;
}

ChartBox ChartLayout::boxOf(const ChartReading& reading) const {
  return placeBox(m_model, reading, m_plot, {0.0, 0.0, m_width, m_height}, m_metrics);
}

} // namespace Tallymoor
