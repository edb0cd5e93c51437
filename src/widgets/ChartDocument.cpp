#include "widgets/ChartDocument.h"
#include "widgets/ChartPicture.h"
#include "xml/Utf8Writer.h"
#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <filesystem>
#include <sstream>

namespace Tallymoor {

namespace {

constexpr double FONT_SIZE = 12.0;
constexpr double POINTS_IN_PIXEL = 0.75;

cairo_status_t append(void* document, const unsigned char* bytes, unsigned int count) {
  static_cast<std::string*>(document)->append(reinterpret_cast<const char*>(bytes), count);
  return CAIRO_STATUS_SUCCESS;
}

/// All that the chart says, for readers who don't see it.
String textsOf(const ChartLayout& layout) {
  String all;
  const auto add = [&all](const String& text) { all += (all.empty() ? u"" : u", ") + text; };
  for (const ChartText& line : layout.emptyText())
    add(line.text);
  for (const ChartKey& key : layout.legend())
    add(key.name.text);
  for (const auto* ticks : {&layout.valueTicks(), &layout.timeTicks()})
    for (const ChartTick& tick : *ticks)
      if (tick.label)
        add(tick.label->text);
  return all;
}

void writeElement(Utf8Writer& writer, std::string_view name, const String& text) {
  writer.raw("<");
  writer.raw(name);
  writer.raw(">");
  writer.escaped(text);
  writer.raw("</");
  writer.raw(name);
  writer.raw(">\n");
}

class Document {
public:
  Document(const ChartModel& model, int width, int height, const ChartFont& font)
      : m_model(model), m_width(width), m_height(height), m_font(font),
        m_layout(model, width, height, font.metrics()) {}

  std::string svg() const {
    std::string drawing;
    const CairoSurface surface(cairo_svg_surface_create_for_stream(append, &drawing, m_width, m_height));
    cairo_svg_surface_set_document_unit(surface.get(), CAIRO_SVG_UNIT_PX);
    draw(surface.get(), 1.0);
    return withTexts(drawing);
  }

  std::string pdf() const {
    std::string document;
    const CairoSurface surface(cairo_pdf_surface_create_for_stream(
        append, &document, m_width * POINTS_IN_PIXEL, m_height * POINTS_IN_PIXEL));
    cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_TITLE, m_model.title.toUTF8().c_str());
    draw(surface.get(), POINTS_IN_PIXEL);
    return document;
  }

  std::string png() const {
    std::string document;
    const ChartPicture picture(m_model, m_layout, m_width, m_height, m_font);
    checkDrawing(cairo_surface_write_to_png_stream(picture.surface(), append, &document));
    return document;
  }

private:
  /// cairo draws letters as outlines and gives an SVG no texts: they stand in front of the drawing.
  std::string withTexts(const std::string& drawing) const {
    const std::size_t begin = drawing.find('\n', drawing.find("<svg")) + 1;
    std::ostringstream stream;
    Utf8Writer writer(stream);
    writer.raw(std::string_view(drawing).substr(0, begin));
    writeElement(writer, "title", m_model.title);
    writeElement(writer, "desc", textsOf(m_layout));
    writer.raw(std::string_view(drawing).substr(begin));
    writer.flush();
    return stream.str();
  }

  void draw(cairo_surface_t* surface, double scale) const {
    const CairoContext context(cairo_create(surface));
    cairo_scale(context.get(), scale, scale);
    paintChart(context.get(), m_model, m_layout, m_font);
    cairo_show_page(context.get());
    checkDrawing(cairo_status(context.get()));
    cairo_surface_finish(surface);
    checkDrawing(cairo_surface_status(surface));
  }

  const ChartModel& m_model;
  const int m_width;
  const int m_height;
  const ChartFont& m_font;
  const ChartLayout m_layout;
};

} // namespace

std::optional<ChartFormat> chartFormatOf(const String& path) {
  const String extension =
      String::fromUTF8(std::filesystem::path(path.toUTF8()).extension().string()).toLower();
  if (extension == u".svg")
    return ChartFormat::SVG;
  if (extension == u".pdf")
    return ChartFormat::PDF;
  if (extension == u".png")
    return ChartFormat::PNG;
  return std::nullopt;
}

std::string chartDocument(const ChartModel& model, ChartFormat format, int width, int height,
                          const ChartFont& font) {
  const Document document(model, width, height, font);
  switch (format) {
  case ChartFormat::SVG:
    return document.svg();
  case ChartFormat::PDF:
    return document.pdf();
  case ChartFormat::PNG:
    break;
  }
  return document.png();
}

String chartSvg(const ChartModel& model, int width, int height) {
  const ChartFont font("sans-serif", FONT_SIZE, ChartFont::Target::DOCUMENT);
  const String document = String::fromUTF8(chartDocument(model, ChartFormat::SVG, width, height, font));
  const String begin = u"<svg";
  const std::size_t root = document.find(begin); // behind the declaration of a document of its own
  return begin + u" style=\"max-width:100%;height:auto\" role=\"img\"" + document.substr(root + begin.size());
}

} // namespace Tallymoor
