#pragma once
#include <fx.h>

namespace Tallymoor {

/// The font, made on the display if there is one: until then the toolkit takes every character for one pixel.
FXFont* measuredFont(FXFont* font);

} // namespace Tallymoor
