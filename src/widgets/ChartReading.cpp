#include "widgets/ChartReading.h"
#include "widgets/ChartTexts.h"
#include <algorithm>
#include <cmath>

namespace Tallymoor {

namespace {

bool isBefore(const ChartPoint& point, const Date& day) {
  return point.day < day;
}

std::vector<ChartBox::Line> linesOf(const ChartModel& model, const ChartReading& reading) {
  std::vector<ChartBox::Line> lines{{std::nullopt, {0, 0, reading.day.toString(DATE_DISPLAY_LOCAL)}}};
  for (const ChartReading::Value& value : reading.values)
    lines.push_back(
        {value.series,
         {0, 0, model.series[value.series].name + u"  " + chartValueText(value.value, model.unit)}});
  for (const String& note : reading.notes)
    lines.push_back({std::nullopt, {0, 0, note}});
  return lines;
}

double topOf(double boxHeight, const ChartReading& reading, const ChartArea& plot, double gap) {
  const double top = plot.y + gap;
  const bool hidesValues =
      std::any_of(reading.values.begin(), reading.values.end(),
                  [&](const ChartReading::Value& value) { return value.y < top + boxHeight + gap; });
  return hidesValues ? plot.bottom() - gap - boxHeight : top;
}

} // namespace

std::optional<double> valueOn(const ChartSeries& series, const Date& day) {
  const auto at = std::lower_bound(series.points.begin(), series.points.end(), day, isBefore);
  if (at == series.points.end())
    return std::nullopt;
  if (at->day == day)
    return at->isFinite() ? std::optional(at->value) : std::nullopt;
  if (!series.straight || at == series.points.begin() || !at->isFinite() || !(at - 1)->isFinite())
    return std::nullopt;
  const ChartPoint& before = *(at - 1);
  const double part = double(day.daysSince(before.day)) / at->day.daysSince(before.day);
  return before.value + (at->value - before.value) * part;
}

ChartBox placeBox(const ChartModel& model, const ChartReading& reading, const ChartArea& plot,
                  const ChartArea& chart, const ChartMetrics& metrics) {
  const double line = metrics.lineHeight;
  const double gap = metrics.gap();
  ChartBox box{{}, linesOf(model, reading)};
  for (const ChartBox::Line& entry : box.lines)
    box.area.width =
        std::max(box.area.width, metrics.textWidth(entry.text.text) + (entry.series ? line : 0.0));
  box.area.width += 2 * gap;
  box.area.height = line * double(box.lines.size()) + 2 * gap;
  const double right = reading.x + line;
  box.area.x = right + box.area.width <= chart.right() ? right : reading.x - line - box.area.width;
  box.area.x = std::clamp(box.area.x, 0.0, std::max(0.0, chart.right() - box.area.width));
  box.area.y = std::clamp(topOf(box.area.height, reading, plot, gap), 0.0,
                          std::max(0.0, chart.bottom() - box.area.height));
  double y = box.area.y + gap;
  for (ChartBox::Line& entry : box.lines) {
    entry.text.x = box.area.x + gap + (entry.series ? line : 0.0);
    entry.text.y = y;
    y += line;
  }
  return box;
}

} // namespace Tallymoor
