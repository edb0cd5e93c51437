#include "widgets/ChartLayout.h"
#include "widgets/ChartTexts.h"
#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <numeric>

namespace Tallymoor {

namespace {

constexpr double LEAST_LINES_FOR_TITLE = 9.0;
constexpr double LEAST_LINES_FOR_LEGEND = 6.0;
constexpr double LEAST_LINES_FOR_TIMES = 4.0;
constexpr double LINES_BETWEEN_VALUES = 1.9;
constexpr double LEAST_LINES_BETWEEN_LABELS = 1.2;
constexpr double LARGEST_PART_FOR_VALUES = 0.35;
constexpr int MOST_VALUE_STEPS = 8;
constexpr std::size_t MOST_TIME_TICKS = 200;
constexpr double BOLD = 1.2;         ///< how much wider than others bold text may be, as the title is
constexpr double SAMPLE_LINES = 1.8; ///< width of a legend's sample, in heights of a line

bool isFinite(const ChartPoint& point) {
  return std::isfinite(point.value);
}

/// The points of one pixel column: where the line enters and leaves it, and its least and greatest value.
class Column {
public:
  void add(const ChartPixel& pixel) {
    if (m_count == 0)
      m_first = m_least = m_greatest = pixel;
    m_last = pixel;
    if (pixel.y < m_least.y)
      m_least = pixel;
    if (pixel.y > m_greatest.y)
      m_greatest = pixel;
    ++m_count;
  }
  void moveTo(std::vector<ChartPixel>& line) {
    if (m_count > 0) {
      line.push_back(m_first);
      const bool leastFirst = m_least.x < m_greatest.x;
      append(line, leastFirst ? m_least : m_greatest);
      append(line, leastFirst ? m_greatest : m_least);
      append(line, m_last);
    }
    m_count = 0;
  }

private:
  static void append(std::vector<ChartPixel>& line, const ChartPixel& pixel) {
    if (pixel.x > line.back().x)
      line.push_back(pixel);
  }

  ChartPixel m_first{}, m_least{}, m_greatest{}, m_last{};
  int m_count = 0;
};

} // namespace

ChartMetrics ChartMetrics::estimated(double fontSize) {
  const auto width = [fontSize](const String& text) {
    double units = 0.0;
    for (const char16_t unit : text)
      units += unit >= 0x1100 ? 1.05 : unit == u' ' || unit == u'.' || unit == u',' ? 0.35 : 0.66;
    return units * fontSize;
  };
  return {width, fontSize * 1.25};
}

ChartLayout::ChartLayout(const ChartModel& model, double width, double height, const ChartMetrics& metrics)
    : m_model(model), m_width(width), m_height(height), m_metrics(metrics), m_gap(metrics.lineHeight * 0.4),
      m_top(m_gap) {
  collectDays();
  placeTitle();
  if (isEmpty()) {
    placeEmptyText();
    return;
  }
  findAxisEnds();
  findValueRange();
  placeLegend();
  placePlot();
  placeValueTicks();
  placeTimeTicks();
}

void ChartLayout::collectDays() {
  addSeriesDays(false);
  if (m_days.empty())
    addSeriesDays(true);
  if (m_days.empty())
    return;
  std::vector<Date> traded;
  for (const ChartMarker& marker : m_model.markers)
    traded.push_back(marker.day);
  std::sort(traded.begin(), traded.end());
  addDays(traded);
}

/// A straight line may reach beyond the days with values, as up to today on a Sunday.
void ChartLayout::findAxisEnds() {
  m_axisStart = m_days.front();
  m_axisEnd = m_days.back();
  for (const ChartSeries& series : m_model.series)
    for (const ChartPoint& point : series.points)
      if (series.straight && isFinite(point)) {
        m_axisStart = std::min(m_axisStart, point.day);
        m_axisEnd = std::max(m_axisEnd, point.day);
      }
}

/// Of the series that are straight lines, or of the others. Each has its days in order, which makes merging
/// them cheap.
void ChartLayout::addSeriesDays(bool straight) {
  for (const ChartSeries& series : m_model.series) {
    if (series.straight != straight)
      continue;
    std::vector<Date> days;
    days.reserve(series.points.size());
    for (const ChartPoint& point : series.points)
      if (isFinite(point))
        days.push_back(point.day);
    addDays(days);
  }
}

/// Takes days in order.
void ChartLayout::addDays(const std::vector<Date>& days) {
  std::vector<Date> merged;
  merged.reserve(m_days.size() + days.size());
  std::set_union(m_days.begin(), m_days.end(), days.begin(), days.end(), std::back_inserter(merged));
  merged.erase(std::unique(merged.begin(), merged.end()), merged.end());
  m_days = std::move(merged);
}

void ChartLayout::findValueRange() {
  m_low = std::numeric_limits<double>::max();
  m_high = -m_low;
  const auto widen = [this](double value) {
    if (!std::isfinite(value))
      return;
    m_low = std::min(m_low, value);
    m_high = std::max(m_high, value);
  };
  for (const ChartSeries& series : m_model.series)
    for (const ChartPoint& point : series.points)
      widen(point.value);
  for (const ChartMarker& marker : m_model.markers)
    widen(marker.value);
  // A level far away would press the line flat: it is told in the legend alone.
  const double reach = std::max(m_high - m_low, std::abs(m_high) * 0.1);
  const double lowest = m_low - reach;
  const double highest = m_high + reach;
  for (const ChartLevel& level : m_model.levels)
    if (level.value >= lowest && level.value <= highest)
      widen(level.value);
}

void ChartLayout::placeTitle() {
  const bool hasRoom = m_height >= LEAST_LINES_FOR_TITLE * m_metrics.lineHeight &&
                       m_metrics.textWidth(m_model.title) * BOLD <= m_width - 2 * m_gap;
  if (m_model.title.empty() || !hasRoom)
    return;
  m_title = {m_gap, m_top, m_model.title};
  m_top += m_metrics.lineHeight + m_gap / 2;
}

/// Broken at blanks where it is wider than the chart.
void ChartLayout::placeEmptyText() {
  std::vector<String> lines;
  String line;
  std::size_t begin = 0;
  while (begin < m_model.emptyText.size()) {
    const std::size_t end = std::min(m_model.emptyText.find(u' ', begin), m_model.emptyText.size());
    const String word = m_model.emptyText.substr(begin, end - begin);
    const String longer = line.empty() ? word : line + u" " + word;
    if (line.empty() || m_metrics.textWidth(longer) <= m_width - 2 * m_gap) {
      line = longer;
    } else {
      lines.push_back(line);
      line = word;
    }
    begin = end + 1;
  }
  lines.push_back(line);
  double y = std::max(m_top, (m_height - m_metrics.lineHeight * double(lines.size())) / 2);
  for (const String& text : lines) {
    m_emptyText.push_back({std::max(0.0, (m_width - m_metrics.textWidth(text)) / 2), y, text});
    y += m_metrics.lineHeight;
  }
}

String ChartLayout::keyNameOf(const ChartLevel& level) const {
  return level.name + u" " + chartValueText(level.value, m_model.unit);
}

void ChartLayout::placeLegend() {
  if (m_height < LEAST_LINES_FOR_LEGEND * m_metrics.lineHeight)
    return;
  const double before = m_top;
  for (std::size_t i = 0; i < m_model.series.size(); ++i)
    if (std::any_of(m_model.series[i].points.begin(), m_model.series[i].points.end(), isFinite))
      addKey(ChartKey::SERIES, i, m_model.series[i].name);
  for (std::size_t i = 0; i < m_model.levels.size(); ++i)
    addKey(ChartKey::LEVEL, i, keyNameOf(m_model.levels[i]));
  const auto has = [this](bool up) {
    return std::any_of(m_model.markers.begin(), m_model.markers.end(),
                       [up](const ChartMarker& marker) { return marker.up == up; });
  };
  if (has(true))
    addKey(ChartKey::PURCHASES, 0, u"Purchases");
  if (has(false))
    addKey(ChartKey::SALES, 0, u"Sales");
  if (m_legend.empty())
    return;
  m_top = m_legend.back().name.y + m_metrics.lineHeight + m_gap;
  const double right =
      std::accumulate(m_legend.begin(), m_legend.end(), 0.0, [this](double x, const ChartKey& key) {
        return std::max(x, key.name.x + m_metrics.textWidth(key.name.text));
      });
  // One that is too wide or takes most of the height is left out as a whole, rather than told in part.
  if (right > m_width || m_top > m_height / 2) {
    m_legend.clear();
    m_top = before;
  }
}

void ChartLayout::addKey(ChartKey::Kind kind, std::size_t index, const String& name) {
  const double line = m_metrics.lineHeight;
  const bool isMarker = kind == ChartKey::PURCHASES || kind == ChartKey::SALES;
  const double sampleWidth = isMarker ? line : line * SAMPLE_LINES;
  double x = m_gap;
  double y = m_top;
  if (!m_legend.empty()) {
    const ChartText& last = m_legend.back().name;
    x = last.x + m_metrics.textWidth(last.text) + line;
    y = last.y;
    if (x + sampleWidth + m_gap + m_metrics.textWidth(name) > m_width - m_gap) {
      x = m_gap;
      y += line * 1.1;
    }
  }
  m_legend.push_back({kind, index, {x, y, sampleWidth, line}, {x + sampleWidth + m_gap, y, name}});
}

void ChartLayout::placePlot() {
  const double line = m_metrics.lineHeight;
  const bool hasTimes = m_height >= LEAST_LINES_FOR_TIMES * line;
  const double top = m_top + line / 2;
  const double bottom = m_height - (hasTimes ? line * 1.6 : m_gap);
  m_plot.y = top;
  m_plot.height = std::max(1.0, bottom - top);
  const int steps = std::clamp(int(m_plot.height / (LINES_BETWEEN_VALUES * line)), 1, MOST_VALUE_STEPS);
  m_scale = ValueScale::over(m_low, m_high, steps);
  const auto widest = [this] {
    double width = 0.0;
    for (const double value : m_scale.ticks())
      width = std::max(width, m_metrics.textWidth(valueLabel(value)));
    return width;
  };
  const double most = m_width * LARGEST_PART_FOR_VALUES;
  double labels = widest();
  if (labels > most) {
    m_shortLabels = true;
    labels = widest();
  }
  m_hasValueLabels = labels <= most;
  m_plot.x = m_hasValueLabels ? 2 * m_gap + labels : m_gap;
  m_plot.width = std::max(1.0, m_width - 2 * m_gap - m_plot.x);
}

String ChartLayout::valueLabel(double value) const {
  return m_shortLabels ? chartShortAxisText(value, m_scale.step, m_model.unit)
                       : chartAxisText(value, m_scale.step, m_model.unit);
}

void ChartLayout::placeValueTicks() {
  const double line = m_metrics.lineHeight;
  double lastLabel = std::numeric_limits<double>::max();
  for (const double value : m_scale.ticks()) {
    ChartTick tick{yOf(value), std::nullopt};
    const double top = tick.position - line / 2;
    const bool hasRoom = lastLabel - tick.position >= LEAST_LINES_BETWEEN_LABELS * line && top >= 0.0 &&
                         top + line <= m_height;
    if (m_hasValueLabels && hasRoom) {
      const String text = valueLabel(value);
      tick.label = ChartText{m_plot.x - m_gap - m_metrics.textWidth(text), top, text};
      lastLabel = tick.position;
    }
    m_valueTicks.push_back(tick);
  }
}

ChartTick ChartLayout::timeTick(const Date& day, const String& label) const {
  const double x = xOf(day);
  const double width = m_metrics.textWidth(label);
  const double left = std::clamp(x - width / 2, 0.0, std::max(0.0, m_width - m_gap / 2 - width));
  return {x, ChartText{left, m_plot.bottom() + m_metrics.lineHeight / 2, label}};
}

std::vector<ChartTick> ChartLayout::timeTicksFor(const TimeStep& step) const {
  std::vector<ChartTick> ticks;
  for (const Date& day : step.ticks(m_axisStart, m_axisEnd, MOST_TIME_TICKS))
    ticks.push_back(timeTick(day, step.label(day, ticks.empty())));
  return ticks;
}

std::vector<ChartTick> ChartLayout::ticksAtTheEnds() const {
  std::vector<ChartTick> ticks{timeTick(m_axisStart, m_axisStart.toString(DATE_DISPLAY_LOCAL))};
  if (m_axisStart != m_axisEnd)
    ticks.push_back(timeTick(m_axisEnd, m_axisEnd.toString(DATE_DISPLAY_LOCAL)));
  return ticks;
}

bool ChartLayout::labelsFit(const std::vector<ChartTick>& ticks) const {
  double end = -m_gap;
  for (const ChartTick& tick : ticks) {
    if (tick.label->x < end + 3 * m_gap && end >= 0.0)
      return false;
    end = tick.label->x + m_metrics.textWidth(tick.label->text);
    if (end > m_width)
      return false;
  }
  return ticks.size() < MOST_TIME_TICKS;
}

void ChartLayout::placeTimeTicks() {
  for (const TimeStep& step : TimeStep::all()) {
    m_timeTicks = timeTicksFor(step);
    if (labelsFit(m_timeTicks))
      break;
  }
  if (m_timeTicks.empty())
    m_timeTicks = ticksAtTheEnds();
  const bool hasRoom = m_height >= LEAST_LINES_FOR_TIMES * m_metrics.lineHeight;
  if (!hasRoom || !labelsFit(m_timeTicks))
    for (ChartTick& tick : m_timeTicks)
      tick.label.reset();
}

double ChartLayout::xOf(const Date& day) const {
  const int days = m_axisEnd.daysSince(m_axisStart);
  const double part = days == 0 ? 0.5 : double(day.daysSince(m_axisStart)) / days;
  return m_plot.x + part * m_plot.width;
}

double ChartLayout::yOf(double value) const {
  return m_plot.y + (m_scale.high - value) / (m_scale.high - m_scale.low) * m_plot.height;
}

std::vector<ChartPixel> ChartLayout::line(std::size_t series) const {
  std::vector<ChartPixel> line;
  Column column;
  double columnStart = -1.0;
  for (const ChartPoint& point : m_model.series[series].points) {
    if (!isFinite(point))
      continue;
    const ChartPixel pixel{xOf(point.day), yOf(point.value)};
    if (std::floor(pixel.x) != columnStart)
      column.moveTo(line);
    columnStart = std::floor(pixel.x);
    column.add(pixel);
  }
  column.moveTo(line);
  return line;
}

ChartPixel ChartLayout::markerPosition(const ChartMarker& marker) const {
  return {xOf(marker.day), yOf(marker.value)};
}

std::optional<double> ChartLayout::levelPosition(std::size_t level) const {
  const double value = m_model.levels[level].value;
  if (!(value >= m_scale.low && value <= m_scale.high))
    return std::nullopt;
  return yOf(value);
}

std::optional<ChartArea> ChartLayout::band() const {
  if (isEmpty() || m_model.levels.size() != 2)
    return std::nullopt;
  const auto [low, high] = std::minmax(m_model.levels[0].value, m_model.levels[1].value);
  if (!(low < m_scale.high && high > m_scale.low))
    return std::nullopt;
  const double top = yOf(std::min(high, m_scale.high));
  const double bottom = yOf(std::max(low, m_scale.low));
  return ChartArea{m_plot.x, top, m_plot.width, bottom - top};
}

} // namespace Tallymoor
