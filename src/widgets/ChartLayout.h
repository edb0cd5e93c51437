#pragma once
#include "widgets/ChartDays.h"
#include "widgets/ChartGeometry.h"
#include "widgets/ChartLegend.h"
#include "widgets/ChartReading.h"
#include "widgets/ChartValueAxis.h"
#include <optional>
#include <vector>

namespace Tallymoor {

/// Where everything of a chart stands on a rectangle of this size, with the origin at its upper left: pure
/// geometry, whatever it is drawn on. Texts never overlap and are never cut; where there is no room for them
/// they are left out: title and legend first, then the axes' texts.
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
  /// As ChartDays::beside.
  Date dayBeside(const Date& day, int steps) const { return m_days.beside(day, steps); }
  /// The last day with values. Not in an empty chart.
  const Date& lastDay() const { return m_days.last(); }
  ChartReading reading(const Date& day) const;
  /// As placeBox.
  ChartBox boxOf(const ChartReading& reading) const;

private:
  double placeTitle(double top);
  void placeEmptyText(double top);
  double placeLegendBelow(double top);
  void placePlot(double top);
  const ChartMarker* markerAt(double x) const;

  const ChartModel& m_model;
  const double m_width;
  const double m_height;
  const ChartMetrics m_metrics;
  const ChartDays m_days;
  std::optional<ValueAxis> m_values; ///< in a chart that is not empty

  std::optional<ChartText> m_title;
  std::vector<ChartText> m_emptyText;
  std::vector<ChartKey> m_legend;
  ChartArea m_plot;
  std::vector<ChartTick> m_valueTicks;
  std::vector<ChartTick> m_timeTicks;
};

} // namespace Tallymoor
