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
  const unsigned char* row =
      cairo_image_surface_get_data(m_surface.get()) + y * cairo_image_surface_get_stride(m_surface.get());
  FXuint pixel = 0;
  std::memcpy(&pixel, row + x * int(sizeof pixel), sizeof pixel);
  return FXRGB((pixel >> 16) & 0xFF, (pixel >> 8) & 0xFF, pixel & 0xFF);
}

} // namespace Tallymoor
