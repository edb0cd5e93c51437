#include "shell/WindowPlace.h"
#include "foundation/Settings.h"
#include "widgets/TextSize.h"
#include <algorithm>

namespace Tallymoor {

namespace {

constexpr FXint TITLE_BAR_HEIGHT = 24; ///< room for what the window manager puts above the window
constexpr FXint MINIMUM_HEIGHT = 400;
const String SECTION = u"Gui Settings";

} // namespace

void WindowPlace::restore() {
  const auto read = [](const char16_t* key, int standard) {
    return static_cast<FXint>(
        Settings::Instance().readUnsigned(SECTION, key, static_cast<std::uint32_t>(standard)));
  };
  m_window.position(read(u"MainX", 100), read(u"MainY", 100), read(u"MainWidth", scaledToText(800)),
                    read(u"MainHeight", scaledToText(600)));
}

// A first start on a small screen, or a larger screen that is gone, would leave a part of it out of reach.
void WindowPlace::keepOnScreen() {
  const FXint screenWidth = m_window.getRoot()->getWidth(), screenHeight = m_window.getRoot()->getHeight();
  const FXint width = std::min(m_window.getWidth(), screenWidth);
  const FXint height = std::min(m_window.getHeight(), screenHeight - TITLE_BAR_HEIGHT);
  m_window.position(std::clamp(m_window.getX(), 0, screenWidth - width),
                    std::clamp(m_window.getY(), TITLE_BAR_HEIGHT, screenHeight - height), width, height);
}

FXSize WindowPlace::heldToMinimum(const FXSize& size, FXint leastWidth) {
  if (size.w <= 0 || size.h <= 0)
    return size;
  const FXint width = std::max<FXint>(size.w, leastWidth);
  const FXint height = std::max<FXint>(size.h, MINIMUM_HEIGHT);
  if (width != size.w || height != size.h)
    m_window.resize(width, height);
  return FXSize(static_cast<FXshort>(width), static_cast<FXshort>(height));
}

void WindowPlace::remember(const FXPoint& place, const FXSize& size) {
  const auto write = [](const char16_t* key, FXint value, FXint least) {
    if (value >= least)
      Settings::Instance().writeUnsigned(SECTION, key, static_cast<std::uint32_t>(value));
  };
  write(u"MainWidth", size.w, 1);
  write(u"MainHeight", size.h, 1);
  write(u"MainX", place.x, 0);
  write(u"MainY", place.y, 0);
}

} // namespace Tallymoor
