#pragma once
#include "widgets/ChartModel.h"
#include "widgets/ChartScale.h"
#include <functional>
#include <optional>
#include <vector>

namespace Tallymoor {

/// How large texts are where the chart is drawn.
struct ChartMetrics {
  std::function<double(const String&)> textWidth;
  double lineHeight;

  /// Estimated for a common sans-serif font of this size, rather too wide than too narrow: for drawings whose
  /// reader chooses the font.
  static ChartMetrics estimated(double fontSize);
};

struct ChartPixel {
  double x;
  double y;
};

struct ChartArea {
  double x = 0.0;
  double y = 0.0;
  double width = 0.0;
  double height = 0.0;

  double right() const { return x + width; }
  double bottom() const { return y + height; }
};

/// One line of text by the left end of its top.
struct ChartText {
  double x;
  double y;
  String text;
};

/// A grid line across the axis, with a text where there is room for one.
struct ChartTick {
  double position; ///< x of a time, y of a value
  std::optional<ChartText> label;
};

/// One entry of the legend: a sample of what is drawn, and its name behind it.
struct ChartKey {
  enum Kind { SERIES, LEVEL, PURCHASES, SALES };
  Kind kind;
  std::size_t index; ///< of the series or level
  ChartArea sample;
  ChartText name;
};

/// The values of one day.
struct ChartReading {
  struct Value {
    std::size_t series;
    double value;
    double y;
  };
  Date day;
  double x;
  std::vector<Value> values; ///< of the series that have one on the day
  std::vector<String> notes; ///< texts of the day's markers
};

/// A box that tells a reading: the day, then a line a value or note.
struct ChartBox {
  struct Line {
    std::optional<std::size_t> series; ///< whose value it tells
    ChartText text;
  };
  ChartArea area;
  std::vector<Line> lines;
};

/// Where everything of a chart stands on a rectangle of this size, with the origin at its upper left: pure
/// geometry, for the display and for SVG alike. Texts never overlap and are never cut; where there is no room
/// for them they are left out: title and legend first, then the axes' texts. A line has at most four points
/// for each pixel column, so that decades of days cost no more to draw than the width.
///
/// Refers to the model, which must outlive it and not change.
class ChartLayout {
public:
  ChartLayout(const ChartModel& model, double width, double height, const ChartMetrics& metrics);

  double width() const { return m_width; }
  double height() const { return m_height; }
  /// True when no series has a point: then there is nothing but the title and the text that says so.
  bool isEmpty() const { return m_days.empty(); }
  const std::optional<ChartText>& title() const { return m_title; }
  const std::vector<ChartText>& emptyText() const { return m_emptyText; }
  const std::vector<ChartKey>& legend() const { return m_legend; }
  const ChartArea& plot() const { return m_plot; }
  const std::vector<ChartTick>& valueTicks() const { return m_valueTicks; }
  const std::vector<ChartTick>& timeTicks() const { return m_timeTicks; }

  /// What is to be drawn of a series, from left to right.
  std::vector<ChartPixel> line(std::size_t series) const;
  ChartPixel markerPosition(const ChartMarker& marker) const;
  /// Nothing for a level so far from the values that it is told in the legend alone.
  std::optional<double> levelPosition(std::size_t level) const;
  /// The area between two levels, as much of it as lies on the plot.
  std::optional<ChartArea> band() const;

  double xOf(const Date& day) const;
  double yOf(double value) const;

  /// The day with values that is nearest to an x, or that of a marker close by. Nothing in an empty chart or
  /// outside the plot.
  std::optional<Date> dayAt(double x) const;
  /// The day with values so many such days later; the last or first one where the days end there.
  Date dayBeside(const Date& day, int steps) const;
  /// The last day with values. Not in an empty chart.
  const Date& lastDay() const { return m_days.back(); }
  ChartReading reading(const Date& day) const;
  /// Beside the day's line, inside the rectangle.
  ChartBox boxOf(const ChartReading& reading) const;

private:
  void collectDays();
  void findAxisEnds();
  void addSeriesDays(bool straight);
  void addDays(const std::vector<Date>& days);
  void findValueRange();
  void placeTitle();
  void placeEmptyText();
  void placeLegend();
  void addKey(ChartKey::Kind kind, std::size_t index, const String& name);
  void placePlot();
  void placeValueTicks();
  void placeTimeTicks();
  std::vector<ChartTick> timeTicksFor(const TimeStep& step) const;
  std::vector<ChartTick> ticksAtTheEnds() const;
  bool labelsFit(const std::vector<ChartTick>& ticks) const;
  ChartTick timeTick(const Date& day, const String& label) const;
  const ChartMarker* markerAt(double x) const;
  double boxTop(const ChartReading& reading, double boxHeight) const;
  String valueLabel(double value) const;
  String keyNameOf(const ChartLevel& level) const;

  const ChartModel& m_model;
  const double m_width;
  const double m_height;
  const ChartMetrics m_metrics;
  const double m_gap; ///< between texts and what is beside them
  double m_top;       ///< below what has been placed so far

  std::vector<Date> m_days; ///< all with values, rising
  Date m_axisStart;
  Date m_axisEnd;
  double m_low = 0.0;
  double m_high = 0.0;
  ValueScale m_scale;
  bool m_shortLabels = false;
  bool m_hasValueLabels = true;

  std::optional<ChartText> m_title;
  std::vector<ChartText> m_emptyText;
  std::vector<ChartKey> m_legend;
  ChartArea m_plot;
  std::vector<ChartTick> m_valueTicks;
  std::vector<ChartTick> m_timeTicks;
};

} // namespace Tallymoor
