#include "desktop/TrayPicture.h"
#include <algorithm>
#include <fx.h>

namespace Tallymoor {

TrayPicture TrayPicture::of(const FXIcon& icon) {
  TrayPicture picture;
  if (!icon.getData())
    return picture;
  picture.width = icon.getWidth();
  picture.height = icon.getHeight();
  picture.argb.reserve(static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height) *
                       4);
  for (FXint y = 0; y < picture.height; ++y)
    for (FXint x = 0; x < picture.width; ++x) {
      const FXColor pixel = icon.getPixel(x, y);
      picture.argb.insert(picture.argb.end(), {static_cast<std::uint8_t>(FXALPHAVAL(pixel)),
                                               static_cast<std::uint8_t>(FXREDVAL(pixel)),
                                               static_cast<std::uint8_t>(FXGREENVAL(pixel)),
                                               static_cast<std::uint8_t>(FXBLUEVAL(pixel))});
    }
  return picture;
}

std::vector<std::uint8_t> TrayPicture::rgba() const {
  std::vector<std::uint8_t> bytes = argb;
  for (auto pixel = bytes.begin(); pixel != bytes.end(); pixel += 4)
    std::rotate(pixel, pixel + 1, pixel + 4);
  return bytes;
}

} // namespace Tallymoor
