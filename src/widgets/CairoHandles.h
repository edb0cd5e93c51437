#pragma once
#include <cairo.h>
#include <memory>

namespace Tallymoor {

struct CairoRelease {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
  void operator()(cairo_t* context) const { cairo_destroy(context); }
};

using CairoSurface = std::unique_ptr<cairo_surface_t, CairoRelease>;
using CairoContext = std::unique_ptr<cairo_t, CairoRelease>;

} // namespace Tallymoor
