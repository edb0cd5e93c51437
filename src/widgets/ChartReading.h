#pragma once
#include "widgets/ChartGeometry.h"
#include "widgets/ChartModel.h"
#include <optional>
#include <vector>

namespace Tallymoor {

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

/// The series' value on the day: its point's, or that of the straight line between the points around it.
std::optional<double> valueOn(const ChartSeries& series, const Date& day);

/// A box that tells a reading: the day, then a line a value or note.
struct ChartBox {
  struct Line {
    std::optional<std::size_t> series; ///< whose value it tells
    ChartText text;
  };
  ChartArea area;
  std::vector<Line> lines;
};

/// Beside the day's line, inside a chart of this size; at the top of the plot, or at its bottom when the
/// values would lie behind it there.
ChartBox placeBox(const ChartModel& model, const ChartReading& reading, const ChartArea& plot,
                  const ChartArea& chart, const ChartMetrics& metrics);

} // namespace Tallymoor
