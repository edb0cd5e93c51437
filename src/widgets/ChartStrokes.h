#pragma once
#include "widgets/ChartModel.h"
#include <vector>

namespace Tallymoor {

// How lines are drawn, on the display and in SVG alike.

/// Lengths drawn and left out by turns, in widths of the line; none for an unbroken line.
const std::vector<double>& strokePattern(ChartStyle style);
/// Of a level: unlike any series.
const std::vector<double>& levelPattern();

namespace ChartStrokes {
// At the usual size of texts.
inline constexpr double LINE_WIDTH = 1.8;
inline constexpr double LEVEL_WIDTH = 1.2;
inline constexpr double MARKER_SIZE = 9.0;
inline constexpr double MARKER_WIDTH = 1.5; ///< of its outline
} // namespace ChartStrokes

namespace ChartColours {
inline constexpr FXColor GRID = FXRGB(228, 228, 228);
inline constexpr FXColor AXIS = FXRGB(150, 150, 150);
inline constexpr FXColor TEXT = FXRGB(60, 60, 60);
inline constexpr FXColor BACKGROUND = FXRGB(255, 255, 255);
inline constexpr FXColor PURCHASE = FXRGB(0, 125, 90);
inline constexpr FXColor SALE = FXRGB(213, 94, 0);
inline constexpr FXColor BAND = FXRGB(230, 159, 0);
inline constexpr double BAND_OPACITY = 0.08;
} // namespace ChartColours

} // namespace Tallymoor
