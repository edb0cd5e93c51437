#include "widgets/ChartPicture.h"
#include "foundation/Exception.h"
#include <cstring>

namespace Tallymoor {

void checkDrawing(cairo_status_t status) {
  if (status != CAIRO_STATUS_SUCCESS)
    throw Exception(u"A chart can't be drawn: " + String::fromUTF8(cairo_status_to_string(status)));
}

ChartPicture::ChartPicture(const ChartModel& model, const ChartLayout& layout, int width, int height,
                           const ChartFont& font)
    : m_surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height)) {
  const CairoContext context(cairo_create(m_surface.get()));
  paintChart(context.get(), model, layout, font);
  checkDrawing(cairo_status(context.get()));
  cairo_surface_flush(m_surface.get());
}

FXColor ChartPicture::at(int x, int y) const {
  const std::ptrdiff_t stride = cairo_image_surface_get_stride(m_surface.get());
  FXuint pixel = 0;
  const auto pixelSize = static_cast<std::ptrdiff_t>(sizeof pixel);
  std::memcpy(&pixel, cairo_image_surface_get_data(m_surface.get()) + y * stride + x * pixelSize,
              sizeof pixel);
  return FXRGB((pixel >> 16) & 0xFF, (pixel >> 8) & 0xFF, pixel & 0xFF);
}

} // namespace Tallymoor
