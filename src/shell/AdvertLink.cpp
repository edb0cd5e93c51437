#include "shell/AdvertLink.h"
#include <fxkeys.h>

namespace Tallymoor {

FXDEFMAP(AdvertLink)
advertLinkMap[] = {
    FXMAPFUNC(SEL_KEYPRESS, 0, AdvertLink::onKeyPress),
    FXMAPFUNC(SEL_FOCUSIN, 0, AdvertLink::onFocusChange),
    FXMAPFUNC(SEL_FOCUSOUT, 0, AdvertLink::onFocusChange),
    FXMAPFUNC(SEL_PAINT, 0, AdvertLink::onPaint),
};

FXIMPLEMENT(AdvertLink, FXImageFrame, advertLinkMap, ARRAYNUMBER(advertLinkMap))

AdvertLink::AdvertLink(FXComposite* parent, FXObject* receiver, FXSelector selector)
    : FXImageFrame(parent, nullptr, FRAME_NONE | LAYOUT_CENTER_X | LAYOUT_CENTER_Y, 0, 0, 0, 0, 0, 0, 0, 0) {
  setTarget(receiver);
  setSelector(selector);
  enable();
  setDefaultCursor(getApp()->getDefaultCursor(DEF_HAND_CURSOR));
}

long AdvertLink::onKeyPress(FXObject* sender, FXSelector selector, void* data) {
  switch (static_cast<FXEvent*>(data)->code) {
  case KEY_Return:
  case KEY_KP_Enter:
  case KEY_space:
  case KEY_KP_Space:
    getTarget()->tryHandle(this, FXSEL(SEL_LEFTBUTTONPRESS, getSelector()), data);
    return 1;
  default:
    return FXImageFrame::onKeyPress(sender, selector, data);
  }
}

long AdvertLink::onFocusChange(FXObject* sender, FXSelector selector, void* data) {
  const bool comes = FXSELTYPE(selector) == SEL_FOCUSIN;
  const long handled = comes ? FXImageFrame::onFocusIn(sender, selector, data)
                             : FXImageFrame::onFocusOut(sender, selector, data);
  update();
  return handled;
}

long AdvertLink::onPaint(FXObject* sender, FXSelector selector, void* data) {
  FXImageFrame::onPaint(sender, selector, data);
  if (hasFocus()) {
    FXDCWindow dc(this, static_cast<FXEvent*>(data));
    dc.drawFocusRectangle(1, 1, getWidth() - 2, getHeight() - 2);
  }
  return 1;
}

} // namespace Tallymoor
