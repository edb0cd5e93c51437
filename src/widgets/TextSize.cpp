#include "widgets/TextSize.h"
#include "foundation/KeptTexts.h"
#include "foundation/Settings.h"
#include "widgets/MeasuredFont.h"
#include <X11/Xlib.h>
#include <algorithm>
#include <cstdlib>

namespace Tallymoor {

namespace {

constexpr FXuint USUAL = 100;
constexpr FXuint LARGEST = 200;
constexpr double USUAL_DOTS_PER_INCH = 96.0;
constexpr FXuint DECIPOINTS = 10;
/// Of the normal font, at the usual size and with the toolkit's usual resolution.
constexpr FXint USUAL_FONT_HEIGHT = 15;

} // namespace

FXuint desktopTextPercent(const char* dotsPerInch) {
  const double dots = dotsPerInch ? std::strtod(dotsPerInch, nullptr) : 0.0;
  if (!(dots > USUAL_DOTS_PER_INCH))
    return USUAL;
  return static_cast<FXuint>(std::min<double>(LARGEST, dots * USUAL / USUAL_DOTS_PER_INCH + 0.5));
}

FXuint textPercent(FXApp& app) {
  const FXuint chosen = Settings::Instance().readUnsigned(u"Gui Settings", u"TextSize", 0);
  if (chosen != 0)
    return std::clamp(chosen, USUAL, LARGEST);
  auto* display = static_cast<Display*>(app.getDisplay());
  return display ? desktopTextPercent(XGetDefault(display, "Xft", "dpi")) : USUAL;
}

std::unique_ptr<FXFont> programFont(FXApp& app, FXuint points, FXuint weight) {
  // No system has a face of this name; the toolkit then takes its own choice.
  FXFont usual(&app, kept::FACE, points, weight);
  FXFontDesc description{};
  usual.getFontDesc(description);
  description.size = static_cast<FXushort>(points * DECIPOINTS * textPercent(app) / USUAL);
  auto font = std::make_unique<FXFont>(&app, description);
  measuredFont(font.get());
  return font;
}

FXint scaledToText(FXint pixels) {
  FXFont* normal = measuredFont(FXApp::instance()->getNormalFont());
  return pixels * std::max(USUAL_FONT_HEIGHT, normal->getFontHeight()) / USUAL_FONT_HEIGHT;
}

} // namespace Tallymoor
