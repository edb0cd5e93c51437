#pragma once
#include "widgets/ChartLayout.h"
#include "widgets/ChartModel.h"
#include <cmath>
#include <limits>

namespace Tallymoor::ChartSamples {

inline constexpr double LINE_HEIGHT = 15.0;

/// Every character is 7 wide.
inline ChartMetrics metrics(double zoom = 1.0) {
  return {[zoom](const String& text) { return 7.0 * zoom * double(text.size()); }, LINE_HEIGHT * zoom};
}

/// One day per value.
inline ChartSeries series(const String& name, const Date& first, const std::vector<double>& values) {
  ChartSeries series{name, ChartColours::BLUE, ChartStyle::LINE, {}};
  for (std::size_t i = 0; i < values.size(); ++i)
    series.points.push_back({first.plusDays(int(i)), values[i]});
  return series;
}

inline ChartModel model(const Date& first, const std::vector<double>& values) {
  ChartModel model;
  model.title = u"Capital of Trading";
  model.series.push_back(series(u"Capital", first, values));
  return model;
}

/// Rising and falling values for the days up to 3 March 2026.
inline std::vector<double> waves(std::size_t days, double base = 50000.0) {
  std::vector<double> values;
  for (std::size_t i = 0; i < days; ++i)
    values.push_back(base * (1.0 + 0.0002 * double(i)) + 0.05 * base * std::sin(double(i) * 0.37) +
                     0.02 * base * std::cos(double(i) * 1.9));
  return values;
}

inline ChartModel longModel(int days) {
  return model(Date(2026, 3, 3).plusDays(1 - days), waves(std::size_t(days)));
}

/// A stock with everything that a chart can show.
inline ChartModel priceModel() {
  const Date first(2025, 3, 3);
  ChartModel model = ChartSamples::model(first, waves(366, 12.0));
  model.title = u"AAA.AX";
  model.unit = ChartUnit::PRICE;
  model.series[0].name = u"Price";
  model.series.push_back({u"LR",
                          ChartColours::PURPLE,
                          ChartStyle::DOTS,
                          {{Date(2025, 9, 5), 11.0}, {Date(2026, 3, 3), 13.0}},
                          true});
  model.markers = {{Date(2025, 4, 1), 12.0, true, u"Bought 100 at 12.00"},
                   {Date(2025, 12, 1), 12.5, false, u"Sold 50 at 12.50"}};
  model.levels = {{u"Min", 11.0, ChartColours::VERMILLION}, {u"Max", 13.5, ChartColours::GREEN}};
  return model;
}

inline constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
inline constexpr double INFINITE = std::numeric_limits<double>::infinity();

} // namespace Tallymoor::ChartSamples
