#pragma once
#include "widgets/CairoHandles.h"
#include "widgets/ChartPainter.h"

namespace Tallymoor {

/// A chart as a picture in memory. Needs no display.
class ChartPicture {
public:
  /// Throws Exception when it is too large.
  ChartPicture(const ChartModel& model, const ChartLayout& layout, int width, int height,
               const ChartFont& font);

  int width() const { return cairo_image_surface_get_width(m_surface.get()); }
  int height() const { return cairo_image_surface_get_height(m_surface.get()); }
  FXColor at(int x, int y) const;
  cairo_surface_t* surface() const { return m_surface.get(); }

private:
  CairoSurface m_surface;
};

/// Throws Exception with cairo's reason if drawing has failed.
void checkDrawing(cairo_status_t status);

} // namespace Tallymoor
