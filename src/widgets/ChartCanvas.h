#pragma once
#include "widgets/ChartLayout.h"
#include "widgets/ChartModel.h"
#include <vector>

namespace Tallymoor {

/// A picture in memory with smooth lines, which the toolkit's device contexts don't draw. Needs no display.
/// What is outside the picture is cut off.
class ChartCanvas {
public:
  ChartCanvas(int width, int height, FXColor background);

  int width() const { return m_width; }
  int height() const { return m_height; }
  /// Row by row from the top.
  const std::vector<FXColor>& pixels() const { return m_pixels; }
  FXColor at(int x, int y) const { return m_pixels[place(x, y)]; }

  /// Opacity from 0 to 1.
  void fill(const ChartArea& area, FXColor colour, double opacity = 1.0);
  /// One pixel wide, along the pixels.
  void horizontal(double x, double y, double width, FXColor colour);
  void vertical(double x, double y, double height, FXColor colour);
  /// Joined lines of this width, drawn and left out by turns in the lengths of the pattern; an empty pattern
  /// draws it all. A single point is drawn as a dot.
  void line(const std::vector<ChartPixel>& points, double width, FXColor colour,
            const std::vector<double>& pattern = {});
  /// A triangle as high and wide as the size with its tip at the place, which it points up or down at.
  void triangle(const ChartPixel& tip, double size, bool up, FXColor outline, FXColor inside);

private:
  /// Whole pixels; right and bottom are the first ones outside.
  struct Pixels {
    int left, top, right, bottom;
  };
  Pixels around(const std::vector<ChartPixel>& points, double reach) const;
  std::size_t place(int x, int y) const { return std::size_t(y) * std::size_t(m_width) + std::size_t(x); }
  void blend(int x, int y, FXColor colour, double opacity);
  void cover(const ChartPixel& from, const ChartPixel& to, double radius);
  void coverDashes(const std::vector<ChartPixel>& points, double radius, const std::vector<double>& pattern);
  void clearCoverage(const Pixels& part);
  void paintCovered(const Pixels& part, FXColor colour);

  int m_width;
  int m_height;
  std::vector<FXColor> m_pixels;
  std::vector<float> m_coverage; ///< of the line being drawn: parts that overlap are not painted twice
};

} // namespace Tallymoor
