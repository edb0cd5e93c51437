#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <algorithm>
#include <cmath>
#include <functional>
#include <fx.h>
#include <vector>

namespace Tallymoor {

// What a chart shows, as plain values. Values that are not finite are left out wherever it is drawn.

struct ChartPoint {
  Date day;
  double value;

  bool isFinite() const { return std::isfinite(value); }
};

/// How a line is drawn, so that lines can be told apart without their colours too.
enum class ChartStyle { LINE, DASHES, DOTS };

struct ChartSeries {
  String name;
  FXColor colour;
  ChartStyle style;
  std::vector<ChartPoint> points; ///< in the order of their days, each day once
  /// A line between its points that has a value on every day; the others have values on their own days only.
  bool straight = false;

  bool hasValues() const {
    return std::any_of(points.begin(), points.end(), std::mem_fn(&ChartPoint::isFinite));
  }
};

/// A purchase (up) or a sale.
struct ChartMarker {
  Date day;
  double value;
  bool up;
  String text; ///< what the reader is told of it, as in "Bought 100 at $5.00"
};

/// A horizontal line: a limit. Two levels bound a band, which is tinted.
struct ChartLevel {
  String name;
  double value;
  FXColor colour;
};

enum class ChartUnit { MONEY, PRICE, PERCENT };

struct ChartModel {
  String title;
  ChartUnit unit = ChartUnit::MONEY;
  std::vector<ChartSeries> series;
  std::vector<ChartMarker> markers;
  std::vector<ChartLevel> levels;
  String emptyText = u"There is nothing to show yet."; ///< shown where no series has a point
};

/// Colours that can be told apart by the colour-blind as well.
namespace ChartColours {
inline constexpr FXColor BLUE = FXRGB(0, 114, 178);
inline constexpr FXColor VERMILLION = FXRGB(213, 94, 0);
inline constexpr FXColor GREEN = FXRGB(0, 158, 115);
inline constexpr FXColor PURPLE = FXRGB(163, 73, 132);
} // namespace ChartColours

} // namespace Tallymoor
