#include "widgets/Colours.h"

namespace Tallymoor {

namespace {

FXuint overWhite(FXuint channel, FXuint alpha) {
  return ((255 - alpha) * 255 + channel * alpha + 127) / 255;
}

} // namespace

FXColor makeColour(FXuint red, FXuint green, FXuint blue, FXuint alpha) {
  return FXRGB(overWhite(red, alpha), overWhite(green, alpha), overWhite(blue, alpha));
}

FXColor namedColour(const char* name) {
  const FXColor known = fxcolorfromname(name);
  return known == 0 ? FXRGB(0, 0, 0) : known;
}

FXColor editableTint() {
  return makeColour(0, 0, 0, 20);
}

FXColor belowLimitTint() {
  return makeColour(255, 0, 0, 80);
}

FXColor aboveLimitTint() {
  return makeColour(0, 255, 0, 80);
}

FXColor buySignalTint() {
  return makeColour(0, 0, 255, 40);
}

} // namespace Tallymoor
