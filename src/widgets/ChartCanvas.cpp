#include "widgets/ChartCanvas.h"
#include <algorithm>
#include <cmath>

namespace Tallymoor {

namespace {

constexpr double OUTLINE = 1.6; ///< width of a triangle's lines

constexpr int OPAQUE = 256;

FXuint mixed(FXuint under, FXuint over, int opacity) {
  return (under * FXuint(OPAQUE - opacity) + over * FXuint(opacity) + OPAQUE / 2) / OPAQUE;
}

/// As std::floor, which is a call of a library on common processors.
int floorToInt(double value) {
  const int towardsZero = int(value);
  return value < towardsZero ? towardsZero - 1 : towardsZero;
}

/// A line between two points, and how much of a pixel it covers when it is drawn with a round pen.
class Stroke {
public:
  Stroke(const ChartPixel& from, const ChartPixel& to, double radius)
      : m_from(from), m_dx(to.x - from.x), m_dy(to.y - from.y), m_radius(radius),
        m_outside((radius + 0.5) * (radius + 0.5)),
        m_inside(radius > 0.5 ? (radius - 0.5) * (radius - 0.5) : -1.0) {
    const double square = m_dx * m_dx + m_dy * m_dy;
    m_perLength = square > 0.0 ? 1.0 / square : 0.0;
  }

  double coverage(int column, int row) const {
    const double x = column + 0.5 - m_from.x;
    const double y = row + 0.5 - m_from.y;
    const double part = std::clamp((x * m_dx + y * m_dy) * m_perLength, 0.0, 1.0);
    const double offX = x - part * m_dx;
    const double offY = y - part * m_dy;
    const double square = offX * offX + offY * offY;
    if (square >= m_outside)
      return 0.0;
    return square <= m_inside ? 1.0 : m_radius + 0.5 - std::sqrt(square);
  }

private:
  ChartPixel m_from;
  double m_dx;
  double m_dy;
  double m_radius;
  double m_outside; ///< squares of the distances beyond which nothing and up to which all is covered
  double m_inside;
  double m_perLength;
};

ChartPixel between(const ChartPixel& from, const ChartPixel& to, double part) {
  return {from.x + (to.x - from.x) * part, from.y + (to.y - from.y) * part};
}

} // namespace

ChartCanvas::ChartCanvas(int width, int height, FXColor background)
    : m_width(std::max(1, width)), m_height(std::max(1, height)),
      m_pixels(std::size_t(m_width) * std::size_t(m_height), background), m_coverage(m_pixels.size()) {}

void ChartCanvas::blend(int x, int y, FXColor colour, double opacity) {
  const int part = int(opacity * OPAQUE + 0.5);
  if (x < 0 || y < 0 || x >= m_width || y >= m_height || part <= 0)
    return;
  FXColor& pixel = m_pixels[place(x, y)];
  pixel = part >= OPAQUE ? colour
                         : FXRGB(mixed(FXREDVAL(pixel), FXREDVAL(colour), part),
                                 mixed(FXGREENVAL(pixel), FXGREENVAL(colour), part),
                                 mixed(FXBLUEVAL(pixel), FXBLUEVAL(colour), part));
}

void ChartCanvas::fill(const ChartArea& area, FXColor colour, double opacity) {
  const int right = std::min(m_width, floorToInt(area.right()));
  const int bottom = std::min(m_height, floorToInt(area.bottom()));
  for (int y = std::max(0, floorToInt(area.y)); y < bottom; ++y)
    for (int x = std::max(0, floorToInt(area.x)); x < right; ++x)
      blend(x, y, colour, opacity);
}

void ChartCanvas::horizontal(double x, double y, double width, FXColor colour) {
  fill({x, std::floor(y), width, 1.0}, colour);
}

void ChartCanvas::vertical(double x, double y, double height, FXColor colour) {
  fill({std::floor(x), y, 1.0, height}, colour);
}

ChartCanvas::Pixels ChartCanvas::around(const std::vector<ChartPixel>& points, double reach) const {
  const auto [left, right] = std::minmax_element(
      points.begin(), points.end(), [](const ChartPixel& a, const ChartPixel& b) { return a.x < b.x; });
  const auto [top, bottom] = std::minmax_element(
      points.begin(), points.end(), [](const ChartPixel& a, const ChartPixel& b) { return a.y < b.y; });
  const auto bounded = [](double value, int most) { return int(std::clamp(value, 0.0, double(most))); };
  return {bounded(left->x - reach, m_width), bounded(top->y - reach, m_height),
          bounded(right->x + reach + 1.0, m_width), bounded(bottom->y + reach + 1.0, m_height)};
}

void ChartCanvas::line(const std::vector<ChartPixel>& points, double width, FXColor colour,
                       const std::vector<double>& pattern) {
  if (points.empty())
    return;
  const double radius = points.size() == 1 ? width * 1.5 : width / 2;
  // A unit more than a line reaches, since its ends are looked at that far.
  const Pixels part = around(points, 2 * radius + 3.0);
  clearCoverage(part);
  if (points.size() == 1)
    cover(points[0], points[0], radius);
  else if (!pattern.empty())
    coverDashes(points, radius, pattern);
  else
    for (std::size_t i = 1; i < points.size(); ++i)
      cover(points[i - 1], points[i], radius);
  paintCovered(part, colour);
}

void ChartCanvas::coverDashes(const std::vector<ChartPixel>& points, double radius,
                              const std::vector<double>& pattern) {
  std::size_t piece = 0;
  double left = pattern[0];
  for (std::size_t i = 1; i < points.size(); ++i) {
    const ChartPixel& from = points[i - 1];
    const ChartPixel& to = points[i];
    const double length = std::hypot(to.x - from.x, to.y - from.y);
    double done = 0.0;
    while (length - done > 1e-9) {
      const double end = std::min(length, done + left);
      if (piece % 2 == 0)
        cover(between(from, to, done / length), between(from, to, end / length), radius);
      left -= end - done;
      done = end;
      if (left <= 1e-9) {
        piece = (piece + 1) % pattern.size();
        left = pattern[piece];
      }
    }
  }
}

/// Goes along the longer side, so that few pixels off the line are looked at.
void ChartCanvas::cover(const ChartPixel& from, const ChartPixel& to, double radius) {
  const Stroke stroke(from, to, radius);
  const double dx = to.x - from.x;
  const double dy = to.y - from.y;
  const double reach = radius + 0.5;
  const bool flat = std::abs(dx) >= std::abs(dy);
  const double start = flat ? std::min(from.x, to.x) : std::min(from.y, to.y);
  const double end = flat ? std::max(from.x, to.x) : std::max(from.y, to.y);
  const double slope = flat ? (dx != 0.0 ? dy / dx : 0.0) : dx / dy;
  const double across = reach * std::sqrt(1.0 + slope * slope);
  const int last = std::min(flat ? m_width : m_height, floorToInt(end + reach) + 1);
  for (int along = std::max(0, floorToInt(start - reach)); along < last; ++along) {
    const double at = std::clamp(along + 0.5, start, end);
    const double middle = flat ? from.y + (at - from.x) * slope : from.x + (at - from.y) * slope;
    const int lastAcross = std::min(flat ? m_height : m_width, floorToInt(middle + across) + 1);
    for (int other = std::max(0, floorToInt(middle - across)); other < lastAcross; ++other) {
      const int x = flat ? along : other;
      const int y = flat ? other : along;
      float& pixel = m_coverage[place(x, y)];
      pixel = std::max(pixel, float(stroke.coverage(x, y)));
    }
  }
}

void ChartCanvas::clearCoverage(const Pixels& part) {
  for (int y = part.top; y < part.bottom; ++y)
    std::fill(m_coverage.begin() + std::ptrdiff_t(place(part.left, y)),
              m_coverage.begin() + std::ptrdiff_t(place(part.left, y)) + (part.right - part.left), 0.0F);
}

void ChartCanvas::paintCovered(const Pixels& part, FXColor colour) {
  for (int y = part.top; y < part.bottom; ++y)
    for (int x = part.left; x < part.right; ++x)
      if (const float covered = m_coverage[place(x, y)]; covered > 0.0F)
        blend(x, y, colour, covered);
}

void ChartCanvas::triangle(const ChartPixel& tip, double size, bool up, FXColor outline, FXColor inside) {
  const double base = tip.y + (up ? size : -size);
  const ChartPixel left{tip.x - size / 2, base};
  const ChartPixel right{tip.x + size / 2, base};
  for (double row = std::floor(std::min(tip.y, base)); row < std::max(tip.y, base); ++row) {
    const double half = std::clamp(std::abs(row + 0.5 - tip.y) / size, 0.0, 1.0) * size / 2;
    fill({std::round(tip.x - half), row, std::round(2 * half), 1.0}, inside);
  }
  line({tip, left, right, tip}, OUTLINE, outline);
}

} // namespace Tallymoor
