#pragma once
#include <fx.h>
#include <utility>

// The toolkit's icons of its message boxes.
namespace FX {
extern const unsigned char infoicon[];
extern const unsigned char questionicon[];
extern const unsigned char warningicon[];
extern const unsigned char erroricon[];
} // namespace FX

namespace Tallymoor {

enum class BoxKind { None, Information, Question, Warning, Error };

namespace BoxKinds {

inline FXIcon* iconIn(FXWindow& window) {
  if (auto* label = dynamic_cast<FXLabel*>(&window); label && label->getIcon())
    return label->getIcon();
  for (FXWindow* child = window.getFirst(); child; child = child->getNext())
    if (FXIcon* icon = iconIn(*child))
      return icon;
  return nullptr;
}

/// Compares colours only; ignores the background behind transparent pixels.
inline bool samePicture(FXIcon& left, FXIcon& right) {
  constexpr FXColor COLOURS = 0x00FFFFFF;
  if (left.getWidth() != right.getWidth() || left.getHeight() != right.getHeight())
    return false;
  left.restore();
  right.restore();
  for (FXint y = 0; y < left.getHeight(); ++y)
    for (FXint x = 0; x < left.getWidth(); ++x)
      if ((left.getPixel(x, y) & COLOURS) != (right.getPixel(x, y) & COLOURS))
        return false;
  return true;
}

} // namespace BoxKinds

/// The kind of a message box, by its icon.
inline BoxKind boxKind(FXWindow& box) {
  FXIcon* shown = BoxKinds::iconIn(box);
  if (!shown)
    return BoxKind::None;
  const std::pair<BoxKind, const unsigned char*> pictures[] = {{BoxKind::Information, infoicon},
                                                               {BoxKind::Question, questionicon},
                                                               {BoxKind::Warning, warningicon},
                                                               {BoxKind::Error, erroricon}};
  for (const auto& [kind, data] : pictures) {
    FXGIFIcon picture(box.getApp(), data, 0, IMAGE_ALPHAGUESS);
    picture.create();
    if (BoxKinds::samePicture(*shown, picture))
      return kind;
  }
  return BoxKind::None;
}

} // namespace Tallymoor
