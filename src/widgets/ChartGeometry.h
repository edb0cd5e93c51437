#pragma once
#include "foundation/String.h"
#include <functional>
#include <optional>

namespace Tallymoor {

/// How large texts are where the chart is drawn.
struct ChartMetrics {
  std::function<double(const String&)> textWidth;
  double lineHeight;

  /// Between texts and what is beside them.
  double gap() const { return lineHeight * 0.4; }
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

} // namespace Tallymoor
