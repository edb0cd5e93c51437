#include "widgets/MeasuredFont.h"

namespace Tallymoor {

FXFont* measuredFont(FXFont* font) {
  if (font->getApp()->getDisplay())
    font->create();
  return font;
}

} // namespace Tallymoor
