#include "widgets/ChartPicture.h"
#include "widgets/ChartPainter.h"
#include <algorithm>
#include <memory>

namespace Tallymoor {

namespace {

/// From cairo's order of the colours to the toolkit's.
FXColor colourOf(FXColor pixel) {
  return FXRGB((pixel >> 16) & 0xFF, (pixel >> 8) & 0xFF, pixel & 0xFF);
}

} // namespace

ChartPicture::ChartPicture(const ChartModel& model, const ChartLayout& layout, int width, int height,
                           double lineHeight)
    : m_width(width), m_pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {
  constexpr int BYTES = sizeof(FXColor);
  const std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface(
      cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(m_pixels.data()),
                                          CAIRO_FORMAT_RGB24, width, height, width * BYTES),
      cairo_surface_destroy);
  const std::unique_ptr<cairo_t, decltype(&cairo_destroy)> context(cairo_create(surface.get()),
                                                                   cairo_destroy);
  paintChart(context.get(), model, layout, lineHeight);
  cairo_surface_flush(surface.get());
  std::transform(m_pixels.begin(), m_pixels.end(), m_pixels.begin(), colourOf);
}

} // namespace Tallymoor
