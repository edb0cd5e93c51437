#include "widgets/ChartPicture.h"
#include "widgets/ChartStrokes.h"
#include <cmath>

namespace Tallymoor {

namespace {

constexpr double USUAL_LINE_HEIGHT = 15.0;
constexpr double LINE_WIDTH = 1.8;
constexpr double LEVEL_WIDTH = 1.2;
constexpr double MARKER_SIZE = 9.0;

class Drawing {
public:
  Drawing(const ChartModel& model, const ChartLayout& layout, int width, int height, double lineHeight)
      : m_model(model), m_layout(layout), m_canvas(width, height, ChartColours::BACKGROUND),
        m_zoom(std::max(1.0, lineHeight / USUAL_LINE_HEIGHT)) {}

  ChartCanvas draw() {
    if (!m_layout.isEmpty()) {
      band();
      grid();
      levels();
      for (std::size_t i = 0; i < m_model.series.size(); ++i)
        stroke(m_layout.line(i), m_model.series[i]);
      for (const ChartMarker& marker : m_model.markers)
        if (std::isfinite(marker.value))
          this->marker(m_layout.markerPosition(marker), marker.up);
      for (const ChartKey& key : m_layout.legend())
        sample(key);
    }
    return std::move(m_canvas);
  }

private:
  std::vector<double> scaled(const std::vector<double>& pattern, double width) const {
    std::vector<double> lengths;
    for (const double length : pattern)
      lengths.push_back(length * width);
    return lengths;
  }
  void stroke(const std::vector<ChartPixel>& points, const ChartSeries& series) {
    const double width = LINE_WIDTH * m_zoom;
    m_canvas.line(points, width, series.colour, scaled(strokePattern(series.style), width));
  }
  void level(double x, double right, double y, FXColor colour) {
    const double width = LEVEL_WIDTH * m_zoom;
    m_canvas.line({{x, y}, {right, y}}, width, colour, scaled(levelPattern(), width));
  }
  void marker(const ChartPixel& tip, bool up) {
    const FXColor colour = up ? ChartColours::PURCHASE : ChartColours::SALE;
    m_canvas.triangle(tip, MARKER_SIZE * m_zoom, up, colour, up ? colour : ChartColours::BACKGROUND);
  }

  void band() {
    if (const std::optional<ChartArea> area = m_layout.band())
      m_canvas.fill(*area, ChartColours::BAND, ChartColours::BAND_OPACITY);
  }
  void grid() {
    const ChartArea& plot = m_layout.plot();
    for (const ChartTick& tick : m_layout.valueTicks())
      m_canvas.horizontal(plot.x, tick.position, plot.width, ChartColours::GRID);
    for (const ChartTick& tick : m_layout.timeTicks())
      m_canvas.vertical(tick.position, plot.y, plot.height, ChartColours::GRID);
    m_canvas.horizontal(plot.x, plot.bottom(), plot.width, ChartColours::AXIS);
  }
  void levels() {
    const ChartArea& plot = m_layout.plot();
    for (std::size_t i = 0; i < m_model.levels.size(); ++i)
      if (const std::optional<double> y = m_layout.levelPosition(i))
        level(plot.x, plot.right(), *y, m_model.levels[i].colour);
  }
  void sample(const ChartKey& key) {
    const double middle = key.sample.y + key.sample.height / 2;
    const double centre = key.sample.x + key.sample.width / 2;
    const double half = MARKER_SIZE * m_zoom / 2;
    switch (key.kind) {
    case ChartKey::SERIES:
      stroke({{key.sample.x, middle}, {key.sample.right(), middle}}, m_model.series[key.index]);
      break;
    case ChartKey::LEVEL:
      level(key.sample.x, key.sample.right(), middle, m_model.levels[key.index].colour);
      break;
    case ChartKey::PURCHASES:
      marker({centre, middle - half}, true);
      break;
    case ChartKey::SALES:
      marker({centre, middle + half}, false);
      break;
    }
  }

  const ChartModel& m_model;
  const ChartLayout& m_layout;
  ChartCanvas m_canvas;
  const double m_zoom;
};

} // namespace

ChartCanvas drawChart(const ChartModel& model, const ChartLayout& layout, int width, int height,
                      double lineHeight) {
  return Drawing(model, layout, width, height, lineHeight).draw();
}

} // namespace Tallymoor
