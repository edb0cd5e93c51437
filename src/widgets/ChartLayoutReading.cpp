// The half of ChartLayout that tells what is under the pointer.
#include "widgets/ChartLayout.h"
#include "widgets/ChartTexts.h"
#include <algorithm>
#include <cmath>

namespace Tallymoor {

namespace {

bool isBefore(const ChartPoint& point, const Date& day) {
  return point.day < day;
}

/// The series' value on the day: its point's, or that of the straight line between the points around it.
std::optional<double> valueOn(const ChartSeries& series, const Date& day) {
  const auto at = std::lower_bound(series.points.begin(), series.points.end(), day, isBefore);
  if (at == series.points.end())
    return std::nullopt;
  if (at->day == day)
    return std::isfinite(at->value) ? std::optional(at->value) : std::nullopt;
  if (!series.straight || at == series.points.begin() || !std::isfinite(at->value) ||
      !std::isfinite((at - 1)->value))
    return std::nullopt;
  const ChartPoint& before = *(at - 1);
  const double part = double(day.daysSince(before.day)) / at->day.daysSince(before.day);
  return before.value + (at->value - before.value) * part;
}

} // namespace

std::optional<Date> ChartLayout::dayAt(double x) const {
  if (isEmpty() || x < m_plot.x - m_gap || x > m_plot.right() + m_gap)
    return std::nullopt;
  if (const ChartMarker* marker = markerAt(x))
    return marker->day;
  const double days = m_axisEnd.daysSince(m_axisStart);
  const double wish = std::clamp((x - m_plot.x) / m_plot.width, 0.0, 1.0) * days;
  const auto after = std::upper_bound(m_days.begin(), m_days.end(), m_axisStart.plusDays(int(wish)));
  if (after == m_days.end())
    return m_days.back();
  if (after == m_days.begin())
    return m_days.front();
  const double toBefore = wish - (after - 1)->daysSince(m_axisStart);
  const double toAfter = after->daysSince(m_axisStart) - wish;
  return toBefore <= toAfter ? *(after - 1) : *after;
}

/// The nearest within a few pixels: where days are narrower than pixels, its own could hardly be met.
const ChartMarker* ChartLayout::markerAt(double x) const {
  const ChartMarker* nearest = nullptr;
  double least = m_gap / 2;
  for (const ChartMarker& marker : m_model.markers)
    if (const double distance = std::abs(xOf(marker.day) - x); distance < least) {
      nearest = &marker;
      least = distance;
    }
  return nearest;
}

Date ChartLayout::dayBeside(const Date& day, int steps) const {
  const auto at = std::lower_bound(m_days.begin(), m_days.end(), day);
  const auto place =
      std::clamp<std::ptrdiff_t>(at - m_days.begin() + steps, 0, std::ptrdiff_t(m_days.size()) - 1);
  return m_days[std::size_t(place)];
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

/// At the top of the plot, or at its bottom when the values would lie behind it there.
double ChartLayout::boxTop(const ChartReading& reading, double boxHeight) const {
  const double top = m_plot.y + m_gap;
  const bool hidesValues =
      std::any_of(reading.values.begin(), reading.values.end(),
                  [&](const ChartReading::Value& value) { return value.y < top + boxHeight + m_gap; });
  return hidesValues ? m_plot.bottom() - m_gap - boxHeight : top;
}

ChartBox ChartLayout::boxOf(const ChartReading& reading) const {
  ChartBox box;
  box.lines.push_back({std::nullopt, {0, 0, reading.day.toString(DATE_DISPLAY_LOCAL)}});
  for (const ChartReading::Value& value : reading.values)
    box.lines.push_back(
        {value.series,
         {0, 0, m_model.series[value.series].name + u"  " + chartValueText(value.value, m_model.unit)}});
  for (const String& note : reading.notes)
    box.lines.push_back({std::nullopt, {0, 0, note}});

  const double line = m_metrics.lineHeight;
  for (const ChartBox::Line& entry : box.lines)
    box.area.width =
        std::max(box.area.width, m_metrics.textWidth(entry.text.text) + (entry.series ? line : 0.0));
  box.area.width += 2 * m_gap;
  box.area.height = line * double(box.lines.size()) + 2 * m_gap;
  const double right = reading.x + line;
  box.area.x = right + box.area.width <= m_width ? right : reading.x - line - box.area.width;
  box.area.x = std::clamp(box.area.x, 0.0, std::max(0.0, m_width - box.area.width));
  box.area.y = std::clamp(boxTop(reading, box.area.height), 0.0, std::max(0.0, m_height - box.area.height));
  double y = box.area.y + m_gap;
  for (ChartBox::Line& entry : box.lines) {
    entry.text.x = box.area.x + m_gap + (entry.series ? line : 0.0);
    entry.text.y = y;
    y += line;
  }
  return box;
}

} // namespace Tallymoor
