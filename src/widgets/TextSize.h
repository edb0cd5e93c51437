#pragma once
#include <fx.h>
#include <memory>

namespace Tallymoor {

// How large the program's texts are. GUI thread only.

/// The size of all texts in percent of the usual one, from 100 to 200: the user's "TextSize" in the section
/// "Gui Settings", or when there is none, what the desktop asks of all programs.
FXuint textPercent(FXApp& app);

/// What the desktop's resolution for texts ("Xft.dpi") comes to; 100 where it has none.
FXuint desktopTextPercent(const char* dotsPerInch);

/// A font of the program: so many points at the usual size of text. Made on the display if there is one.
std::unique_ptr<FXFont> programFont(FXApp& app, FXuint points, FXuint weight);

/// A length that leaves room for text: so many pixels at the usual size of text, more with larger ones.
FXint scaledToText(FXint pixels);

} // namespace Tallymoor
