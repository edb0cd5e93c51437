#include "widgets/ChartPainter.h"
#include "widgets/ChartStrokes.h"
#include <algorithm>
#include <cmath>
#include <numbers>

namespace Tallymoor {

namespace {

constexpr double USUAL_LINE_HEIGHT = 15.0;
constexpr double DOT_RADIUS = 3.5; ///< of a reading

class Painter {
public:
  Painter(cairo_t* context, const ChartModel& model, const ChartLayout& layout, const ChartFont& font)
      : m_context(context), m_model(model), m_layout(layout), m_font(font),
        m_zoom(std::max(1.0, font.lineHeight() / USUAL_LINE_HEIGHT)) {
    // Decades of days have long lines in many corners: the best smoothing takes ten times as long, to no eye.
    cairo_set_antialias(m_context, CAIRO_ANTIALIAS_FAST);
  }

  void paint() {
    setColour(ChartColours::BACKGROUND);
    cairo_paint(m_context);
    if (!m_layout.isEmpty())
      drawing();
    texts();
  }

  void paintReading(const ChartReading& reading) {
    const ChartArea& plot = m_layout.plot();
    fill(reading.x, plot.y, std::floor(reading.x) + 1.0, std::floor(plot.bottom()) + 1.0, ChartColours::AXIS);
    for (const ChartReading::Value& value : reading.values)
      disc({std::floor(reading.x) + 0.5, std::floor(value.y) + 0.5}, DOT_RADIUS,
           m_model.series[value.series].colour);
    box(m_layout.boxOf(reading));
  }

private:
  void drawing() {
    band();
    grid();
    levels();
    for (std::size_t i = 0; i < m_model.series.size(); ++i)
      line(m_layout.line(i), m_model.series[i]);
    for (const ChartMarker& marker : m_model.markers)
      if (std::isfinite(marker.value))
        this->marker(m_layout.markerPosition(marker), marker.up);
    for (const ChartKey& key : m_layout.legend())
      sample(key);
  }

  void texts() {
    setColour(ChartColours::TEXT);
    if (m_layout.title())
      m_font.draw(m_context, *m_layout.title(), ChartFont::Weight::BOLD);
    for (const ChartText& line : m_layout.emptyText())
      m_font.draw(m_context, line);
    for (const auto* ticks : {&m_layout.valueTicks(), &m_layout.timeTicks()})
      for (const ChartTick& tick : *ticks)
        if (tick.label)
          m_font.draw(m_context, *tick.label);
    for (const ChartKey& key : m_layout.legend())
      m_font.draw(m_context, key.name);
  }

  void box(const ChartBox& box) {
    const ChartArea& area = box.area;
    fill(area.x, area.y, area.right(), area.bottom(), ChartColours::AXIS);
    fill(area.x + 1, area.y + 1, area.right() - 1, area.bottom() - 1, ChartColours::BACKGROUND);
    const double line = m_font.lineHeight();
    for (const ChartBox::Line& entry : box.lines) {
      const double x = entry.text.x - line;
      const double y = std::floor(entry.text.y) + line / 4;
      if (entry.series)
        fill(x, y, x + line / 2, y + line / 2, m_model.series[*entry.series].colour);
      setColour(ChartColours::TEXT);
      m_font.draw(m_context, entry.text);
    }
  }

  void setColour(FXColor colour, double opacity = 1.0) {
    cairo_set_source_rgba(m_context, FXREDVAL(colour) / 255.0, FXGREENVAL(colour) / 255.0,
                          FXBLUEVAL(colour) / 255.0, opacity);
  }

  /// Along the pixels.
  void fill(double x, double y, double right, double bottom, FXColor colour, double opacity = 1.0) {
    setColour(colour, opacity);
    cairo_rectangle(m_context, std::floor(x), std::floor(y), std::floor(right) - std::floor(x),
                    std::floor(bottom) - std::floor(y));
    cairo_fill(m_context);
  }
  void horizontal(double y, FXColor colour) {
    fill(m_layout.plot().x, y, m_layout.plot().right(), std::floor(y) + 1.0, colour);
  }

  void band() {
    if (const std::optional<ChartArea> area = m_layout.band())
      fill(area->x, area->y, area->right(), area->bottom(), ChartColours::BAND, ChartColours::BAND_OPACITY);
  }

  void grid() {
    const ChartArea& plot = m_layout.plot();
    for (const ChartTick& tick : m_layout.valueTicks())
      horizontal(tick.position, ChartColours::GRID);
    for (const ChartTick& tick : m_layout.timeTicks())
      fill(tick.position, plot.y, std::floor(tick.position) + 1.0, plot.bottom(), ChartColours::GRID);
    horizontal(plot.bottom(), ChartColours::AXIS);
  }

  /// Strokes the path in a width and a pattern of such widths.
  void stroke(double usualWidth, FXColor colour, const std::vector<double>& pattern) {
    const double width = usualWidth * m_zoom;
    std::vector<double> lengths = pattern;
    for (double& length : lengths)
      length *= width;
    setColour(colour);
    cairo_set_line_width(m_context, width);
    cairo_set_line_join(m_context, CAIRO_LINE_JOIN_ROUND);
    cairo_set_dash(m_context, lengths.data(), static_cast<int>(lengths.size()), 0.0);
    cairo_stroke(m_context);
  }

  void level(double x, double right, double y, FXColor colour) {
    const double row = std::floor(y) + 0.5; // between two rows it would be pale
    cairo_move_to(m_context, x, row);
    cairo_line_to(m_context, right, row);
    stroke(ChartStrokes::LEVEL_WIDTH, colour, levelPattern());
  }
  void levels() {
    const ChartArea& plot = m_layout.plot();
    for (std::size_t i = 0; i < m_model.levels.size(); ++i)
      if (const std::optional<double> y = m_layout.levelPosition(i))
        level(plot.x, plot.right(), *y, m_model.levels[i].colour);
  }

  void line(const std::vector<ChartPixel>& points, const ChartSeries& series) {
    for (const ChartPixel& point : points)
      cairo_line_to(m_context, point.x, point.y);
    if (points.size() == 1)
      disc(points[0], ChartStrokes::LINE_WIDTH * m_zoom * 1.5, series.colour);
    else
      stroke(ChartStrokes::LINE_WIDTH, series.colour, strokePattern(series.style));
  }
  void disc(const ChartPixel& centre, double radius, FXColor colour) {
    setColour(colour);
    cairo_new_path(m_context);
    cairo_arc(m_context, centre.x, centre.y, radius, 0.0, 2.0 * std::numbers::pi);
    cairo_fill(m_context);
  }

  /// Purchases are filled and sales hollow, so that they differ in more than colour.
  void marker(const ChartPixel& tip, bool up) {
    const double size = ChartStrokes::MARKER_SIZE * m_zoom;
    const FXColor colour = up ? ChartColours::PURCHASE : ChartColours::SALE;
    cairo_move_to(m_context, tip.x, tip.y);
    cairo_rel_line_to(m_context, -size / 2, up ? size : -size);
    cairo_rel_line_to(m_context, size, 0.0);
    cairo_close_path(m_context);
    setColour(up ? colour : ChartColours::BACKGROUND);
    cairo_fill_preserve(m_context);
    stroke(ChartStrokes::MARKER_WIDTH, colour, {});
  }

  void sample(const ChartKey& key) {
    const double middle = key.sample.y + key.sample.height / 2;
    const double centre = key.sample.x + key.sample.width / 2;
    const double half = ChartStrokes::MARKER_SIZE * m_zoom / 2;
    switch (key.kind) {
    case ChartKey::SERIES:
      line({{key.sample.x, middle}, {key.sample.right(), middle}}, m_model.series[key.index]);
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

  cairo_t* m_context;
  const ChartModel& m_model;
  const ChartLayout& m_layout;
  const ChartFont& m_font;
  const double m_zoom;
};

} // namespace

void paintChart(cairo_t* context, const ChartModel& model, const ChartLayout& layout, const ChartFont& font) {
  Painter(context, model, layout, font).paint();
}

void paintReading(cairo_t* context, const ChartModel& model, const ChartLayout& layout,
                  const ChartReading& reading, const ChartFont& font) {
  Painter(context, model, layout, font).paintReading(reading);
}

} // namespace Tallymoor
