#pragma once
#include <fx.h>

namespace Tallymoor {

/// The colour that lies over white with this opacity (0 to 255): an opaque tint for rows, cells and headings.
FXColor makeColour(FXuint red, FXuint green, FXuint blue, FXuint alpha);

/// The toolkit's colour of that name. A name that it does not know gives opaque black, since its own answer
/// would be invisible text.
FXColor namedColour(const char* name);

/// Background of cells that the user may edit.
FXColor editableTint();
/// Backgrounds of rows whose price fell below or rose above its limit, and of rows worth buying.
FXColor belowLimitTint();
FXColor aboveLimitTint();
FXColor buySignalTint();

} // namespace Tallymoor
