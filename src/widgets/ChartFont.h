#pragma once
#include "widgets/ChartGeometry.h"
#include <cairo.h>
#include <fx.h>
#include <memory>
#include <string>

struct _PangoLayout;

namespace Tallymoor {

/// The font of a chart's texts, measured and drawn by Pango. Needs no display.
class ChartFont {
public:
  /// Letters on a screen stand on whole pixels; in a document, which may be shown at any size, they do not.
  enum class Target { SCREEN, DOCUMENT };

  ChartFont(const std::string& family, double pixels, Target target);
  /// A font of the toolkit, which has been made on the display.
  ChartFont(const FXFont& font, Target target);

  double lineHeight() const { return m_lineHeight; }
  /// Refers to this font.
  ChartMetrics metrics() const;

  enum class Weight { NORMAL, BOLD };
  /// In the context's present colour.
  void draw(cairo_t* context, const ChartText& text, Weight weight = Weight::NORMAL) const;

private:
  struct Release {
    void operator()(_PangoLayout* layout) const;
  };
  using Layout = std::unique_ptr<_PangoLayout, Release>;

  static Layout makeLayout(const std::string& family, double pixels, Target target, Weight weight);

  Layout m_normal;
  Layout m_bold;
  double m_lineHeight;
};

} // namespace Tallymoor
