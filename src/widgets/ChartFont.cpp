#include "widgets/ChartFont.h"
#include "widgets/ToolkitText.h"
#include <algorithm>
#include <cmath>
#include <pango/pangocairo.h>

namespace Tallymoor {

namespace {

struct PangoRelease {
  void operator()(PangoContext* context) const { g_object_unref(context); }
  void operator()(PangoFontDescription* description) const { pango_font_description_free(description); }
  void operator()(cairo_font_options_t* options) const { cairo_font_options_destroy(options); }
};

void placeBetweenPixels(PangoContext* context) {
  const std::unique_ptr<cairo_font_options_t, PangoRelease> options(cairo_font_options_create());
  cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
  pango_cairo_context_set_font_options(context, options.get());
  pango_context_set_round_glyph_positions(context, FALSE);
}

PangoRectangle sizeOf(PangoLayout* layout, const String& text) {
  const std::string utf8 = text.toUTF8();
  pango_layout_set_text(layout, utf8.c_str(), int(utf8.size()));
  PangoRectangle size;
  pango_layout_get_extents(layout, nullptr, &size);
  return size;
}

/// "DejaVu Sans [PfEd]" is the toolkit's name of the family and its maker.
std::string familyOf(const FXFont& font) {
  return font.getActualName().before('[').trim().text();
}

/// As the toolkit reckons: its resolution is a setting of its own.
double pixelsOf(const FXFont& font) {
  constexpr FXuint USUAL_RESOLUTION = 100;
  constexpr double DECIPOINTS_IN_INCH = 720.0;
  const FXuint resolution = font.getApp()->reg().readUnsignedEntry("SETTINGS", "screenres", USUAL_RESOLUTION);
  return font.getSize() * std::clamp(resolution, 50U, 200U) / DECIPOINTS_IN_INCH;
}

} // namespace

void ChartFont::Release::operator()(_PangoLayout* layout) const {
  g_object_unref(layout);
}

ChartFont::Layout ChartFont::makeLayout(const std::string& family, double pixels, Target target,
                                        Weight weight) {
  const std::unique_ptr<PangoContext, PangoRelease> context(
      pango_font_map_create_context(pango_cairo_font_map_get_default()));
  if (target == Target::DOCUMENT)
    placeBetweenPixels(context.get());
  const std::unique_ptr<PangoFontDescription, PangoRelease> description(pango_font_description_new());
  pango_font_description_set_family(description.get(), family.c_str());
  pango_font_description_set_absolute_size(description.get(), pixels * PANGO_SCALE);
  if (weight == Weight::BOLD)
    pango_font_description_set_weight(description.get(), PANGO_WEIGHT_BOLD);
  Layout layout(pango_layout_new(context.get()));
  pango_layout_set_font_description(layout.get(), description.get());
  pango_layout_set_single_paragraph_mode(layout.get(), TRUE);
  return layout;
}

ChartFont::ChartFont(const std::string& family, double pixels, Target target)
    : m_normal(makeLayout(family, pixels, target, Weight::NORMAL)),
      m_bold(makeLayout(family, pixels, target, Weight::BOLD)),
      m_lineHeight(std::ceil(pango_units_to_double(sizeOf(m_normal.get(), u"0").height))) {}

ChartFont::ChartFont(const FXFont& font, Target target) : ChartFont(familyOf(font), pixelsOf(font), target) {}

ChartMetrics ChartFont::metrics() const {
  return {[layout = m_normal.get()](const String& text) {
            return pango_units_to_double(sizeOf(layout, text).width);
          },
          m_lineHeight};
}

void ChartFont::draw(cairo_t* context, const ChartText& text, Weight weight) const {
  PangoLayout* layout = weight == Weight::BOLD ? m_bold.get() : m_normal.get();
  sizeOf(layout, text.text);
  cairo_move_to(context, std::floor(text.x), std::floor(text.y));
  // As outlines in SVG: a page may hold several charts, whose definitions of letters would have the same
  // names.
  if (cairo_surface_get_type(cairo_get_target(context)) == CAIRO_SURFACE_TYPE_SVG) {
    pango_cairo_layout_path(context, layout);
    cairo_fill(context);
  } else {
    pango_cairo_show_layout(context, layout);
  }
}

} // namespace Tallymoor
