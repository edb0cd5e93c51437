#pragma once
#include <cstdint>
#include <vector>

namespace FX {
class FXIcon;
}

namespace Tallymoor {

/// A picture as it travels over the session bus: 4 bytes a pixel, row by row from the top.
struct TrayPicture {
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::vector<std::uint8_t> argb; ///< alpha, red, green, blue

  /// Empty when the icon has not kept its pixels.
  static TrayPicture of(const FX::FXIcon& icon);
  /// The same bytes with alpha behind the colours.
  std::vector<std::uint8_t> rgba() const;
};

} // namespace Tallymoor
