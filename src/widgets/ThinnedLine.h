#pragma once
#include "widgets/ChartGeometry.h"
#include <vector>

namespace Tallymoor {

/// A line of which at most four points are kept for each pixel column: where it enters and leaves it, and its
/// least and greatest value. Decades of days then cost no more to draw than the width.
class ThinnedLine {
public:
  /// Points come from left to right.
  void add(const ChartPixel& pixel);
  std::vector<ChartPixel> points();

private:
  void endColumn();
  void keep(const ChartPixel& pixel);

  std::vector<ChartPixel> m_kept;
  bool m_hasColumn = false;
  ChartPixel m_first{}, m_least{}, m_greatest{}, m_last{}; ///< of the present column
};

} // namespace Tallymoor
