#pragma once
#include "widgets/ChartLayout.h"
#include <vector>

namespace Tallymoor {

/// A chart without its texts (see paintChart), as the pixels of a picture of the toolkit. Needs no display.
class ChartPicture {
public:
  /// Texts of this height stand in it.
  ChartPicture(const ChartModel& model, const ChartLayout& layout, int width, int height, double lineHeight);

  int width() const { return m_width; }
  /// Row by row from the top.
  const std::vector<FXColor>& pixels() const { return m_pixels; }
  FXColor at(int x, int y) const {
    return m_pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) +
                    static_cast<std::size_t>(x)];
  }

private:
  int m_width;
  std::vector<FXColor> m_pixels;
};

} // namespace Tallymoor
