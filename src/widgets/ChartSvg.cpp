#include "widgets/ChartSvg.h"
#include "widgets/ChartLayout.h"
#include "widgets/ChartStrokes.h"
#include <cmath>

namespace Tallymoor {

namespace {

using namespace ChartStrokes;

constexpr double FONT_SIZE = 12.0;
constexpr double BASELINE = 0.95; ///< below the top of a text, in font sizes

String number(double value) {
  String text = String::fromDouble(value, 1);
  return text.ends_with(u".0") ? text.substr(0, text.size() - 2) : text;
}

/// Characters that XML can't hold are left out.
String escaped(const String& text) {
  String safe;
  for (const char16_t unit : text)
    switch (unit) {
    case u'<':
      safe += u"&lt;";
      break;
    case u'>':
      safe += u"&gt;";
      break;
    case u'&':
      safe += u"&amp;";
      break;
    case u'"':
      safe += u"&quot;";
      break;
    default:
      if (unit >= 0x20 && unit != 0x7F && unit < 0xFFFE)
        safe += unit;
    }
  return safe;
}

String hexColour(FXColor colour) {
  constexpr const char16_t* DIGITS = u"0123456789abcdef";
  String text = u"#";
  for (const FXuint channel : {FXREDVAL(colour), FXGREENVAL(colour), FXBLUEVAL(colour)}) {
    text += DIGITS[channel / 16];
    text += DIGITS[channel % 16];
  }
  return text;
}

/// Writes the elements of one chart.
class SvgWriter {
public:
  SvgWriter(const ChartModel& model, int width, int height)
      : m_model(model), m_width(width), m_height(height),
        m_layout(model, width, height, ChartMetrics::estimated(FONT_SIZE)) {}

  String write() {
    begin();
    if (m_layout.title())
      text(*m_layout.title(), u" font-weight=\"bold\"");
    for (const ChartText& line : m_layout.emptyText())
      text(line);
    if (!m_layout.isEmpty()) {
      band();
      grid();
      levels();
      for (std::size_t i = 0; i < m_model.series.size(); ++i)
        series(i);
      for (const ChartMarker& marker : m_model.markers)
        if (std::isfinite(marker.value))
          this->marker(m_layout.markerPosition(marker), marker.up, marker.text);
      for (const ChartKey& key : m_layout.legend())
        legend(key);
    }
    m_text += u"</svg>\n";
    return m_text;
  }

private:
  void begin() {
    const String size = number(m_width) + u" " + number(m_height);
    m_text = u"<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " + size + u"\" width=\"" +
             number(m_width) + u"\" height=\"" + number(m_height) +
             u"\" style=\"max-width:100%;height:auto\" role=\"img\" font-family=\"sans-serif\" font-size=\"" +
             number(FONT_SIZE) + u"\" fill=\"" + hexColour(ChartColours::TEXT) + u"\">\n";
    m_text += u"<title>" + escaped(m_model.title) + u"</title>\n";
    m_text += u"<rect width=\"" + number(m_width) + u"\" height=\"" + number(m_height) + u"\" fill=\"" +
              hexColour(ChartColours::BACKGROUND) + u"\"/>\n";
  }

  void text(const ChartText& line, const String& attributes = String()) {
    m_text += u"<text x=\"" + number(line.x) + u"\" y=\"" + number(line.y + FONT_SIZE * BASELINE) + u"\"" +
              attributes + u">" + escaped(line.text) + u"</text>\n";
  }

  void straight(double x1, double y1, double x2, double y2, const String& attributes) {
    m_text += u"<line x1=\"" + number(x1) + u"\" y1=\"" + number(y1) + u"\" x2=\"" + number(x2) +
              u"\" y2=\"" + number(y2) + u"\"" + attributes + u"/>\n";
  }

  static String stroke(FXColor colour, double width, const std::vector<double>& pattern = {}) {
    String text =
        u" fill=\"none\" stroke=\"" + hexColour(colour) + u"\" stroke-width=\"" + number(width) + u"\"";
    if (!pattern.empty()) {
      text += u" stroke-dasharray=\"";
      for (std::size_t i = 0; i < pattern.size(); ++i)
        text += (i > 0 ? u" " : u"") + number(pattern[i] * width);
      text += u"\"";
    }
    return text;
  }

  void band() {
    if (const std::optional<ChartArea> area = m_layout.band())
      m_text += u"<rect x=\"" + number(area->x) + u"\" y=\"" + number(area->y) + u"\" width=\"" +
                number(area->width) + u"\" height=\"" + number(area->height) + u"\" fill=\"" +
                hexColour(ChartColours::BAND) + u"\" fill-opacity=\"" +
                String::fromDouble(ChartColours::BAND_OPACITY, 2) + u"\"/>\n";
  }

  void grid() {
    const ChartArea& plot = m_layout.plot();
    const String gridStroke = stroke(ChartColours::GRID, 1.0);
    for (const ChartTick& tick : m_layout.valueTicks()) {
      straight(plot.x, tick.position, plot.right(), tick.position, gridStroke);
      if (tick.label)
        text(*tick.label);
    }
    for (const ChartTick& tick : m_layout.timeTicks()) {
      straight(tick.position, plot.y, tick.position, plot.bottom(), gridStroke);
      if (tick.label)
        text(*tick.label);
    }
    straight(plot.x, plot.bottom(), plot.right(), plot.bottom(), stroke(ChartColours::AXIS, 1.0));
  }

  void levels() {
    const ChartArea& plot = m_layout.plot();
    for (std::size_t i = 0; i < m_model.levels.size(); ++i)
      if (const std::optional<double> y = m_layout.levelPosition(i))
        straight(plot.x, *y, plot.right(), *y, stroke(m_model.levels[i].colour, LEVEL_WIDTH, levelPattern()));
  }

  void series(std::size_t index) {
    const ChartSeries& series = m_model.series[index];
    const std::vector<ChartPixel> points = m_layout.line(index);
    if (points.size() == 1) {
      m_text += u"<circle cx=\"" + number(points[0].x) + u"\" cy=\"" + number(points[0].y) +
                u"\" r=\"3\" fill=\"" + hexColour(series.colour) + u"\"/>\n";
      return;
    }
    if (points.empty())
      return;
    m_text += u"<polyline stroke-linejoin=\"round\"" +
              stroke(series.colour, LINE_WIDTH, strokePattern(series.style)) + u" points=\"";
    for (std::size_t i = 0; i < points.size(); ++i)
      m_text += (i > 0 ? u" " : u"") + number(points[i].x) + u"," + number(points[i].y);
    m_text += u"\"/>\n";
  }

  /// Purchases are filled and sales hollow, so that they differ in more than colour.
  void marker(const ChartPixel& tip, bool up, const String& title) {
    const double base = tip.y + (up ? MARKER_SIZE : -MARKER_SIZE);
    const String colour = hexColour(up ? ChartColours::PURCHASE : ChartColours::SALE);
    m_text += u"<path d=\"M" + number(tip.x) + u" " + number(tip.y) + u"L" + number(tip.x - MARKER_SIZE / 2) +
              u" " + number(base) + u"L" + number(tip.x + MARKER_SIZE / 2) + u" " + number(base) +
              u"Z\" fill=\"" + (up ? colour : u"#ffffff") + u"\" stroke=\"" + colour + u"\" stroke-width=\"" +
              number(MARKER_WIDTH) + u"\">";
    if (!title.empty())
      m_text += u"<title>" + escaped(title) + u"</title>";
    m_text += u"</path>\n";
  }

  void legend(const ChartKey& key) {
    const double middle = key.sample.y + key.sample.height / 2;
    switch (key.kind) {
    case ChartKey::SERIES: {
      const ChartSeries& series = m_model.series[key.index];
      straight(key.sample.x, middle, key.sample.right(), middle,
               stroke(series.colour, LINE_WIDTH, strokePattern(series.style)));
      break;
    }
    case ChartKey::LEVEL:
      straight(key.sample.x, middle, key.sample.right(), middle,
               stroke(m_model.levels[key.index].colour, LEVEL_WIDTH, levelPattern()));
      break;
    case ChartKey::PURCHASES:
      marker({key.sample.x + key.sample.width / 2, middle - MARKER_SIZE / 2}, true, String());
      break;
    case ChartKey::SALES:
      marker({key.sample.x + key.sample.width / 2, middle + MARKER_SIZE / 2}, false, String());
      break;
    }
    text(key.name);
  }

  const ChartModel& m_model;
  const double m_width;
  const double m_height;
  const ChartLayout m_layout;
  String m_text;
};

} // namespace

String chartSvg(const ChartModel& model, int width, int height) {
  return SvgWriter(model, width, height).write();
}

} // namespace Tallymoor
