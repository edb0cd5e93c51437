#pragma once
#include <fx.h>

namespace Tallymoor {

/// The picture of an advert, which is a link: a click, Return or the space bar sends its target
/// SEL_LEFTBUTTONPRESS. The tab key comes to it, and a dotted frame then shows that it has the keyboard.
class AdvertLink : public FXImageFrame {
  FXDECLARE(AdvertLink)
public:
  AdvertLink(FXComposite* parent, FXObject* target, FXSelector selector);

  bool canFocus() const override { return true; }

  long onKeyPress(FXObject*, FXSelector, void*);
  long onFocusChange(FXObject*, FXSelector, void*);
  long onPaint(FXObject*, FXSelector, void*);

protected:
  AdvertLink() {}
};

} // namespace Tallymoor
