#include "shell/CommandButton.h"

namespace Tallymoor {

FXDEFMAP(CommandButton)
CommandButtonMap[] = {FXMAPFUNC(SEL_PAINT, 0, CommandButton::onPaint)};

FXIMPLEMENT(CommandButton, FXButton, CommandButtonMap, ARRAYNUMBER(CommandButtonMap))

namespace {

/// A third of a colour over the background; what is transparent stays so.
FXColor paled(FXColor colour, FXColor background) {
  const auto mixed = [](FXuchar part, FXuchar ground) { return (part + 2 * ground) / 3; };
  return FXRGBA(mixed(FXREDVAL(colour), FXREDVAL(background)),
                mixed(FXGREENVAL(colour), FXGREENVAL(background)),
                mixed(FXBLUEVAL(colour), FXBLUEVAL(background)), FXALPHAVAL(colour));
}

std::unique_ptr<FXIcon> paleCopy(const FXIcon& icon) {
  auto copy =
      std::make_unique<FXIcon>(icon.getApp(), nullptr, 0, IMAGE_OWNED, icon.getWidth(), icon.getHeight());
  const FXColor background = icon.getApp()->getBaseColor();
  for (FXint i = 0; i < icon.getWidth() * icon.getHeight(); ++i)
    copy->getData()[i] = paled(icon.getData()[i], background);
  return copy;
}

} // namespace

CommandButton::CommandButton(FXComposite* parent, const FXString& text, FXIcon* icon, FXObject* target,
                             FXSelector command)
    : FXButton(parent, text, icon, target, command, BUTTON_TOOLBAR | FRAME_RAISED, 0, 0, 0, 0, 3, 3, 4, 4),
      m_pale(paleCopy(*icon)) {}

void CommandButton::create() {
  m_pale->create();
  FXButton::create();
}

long CommandButton::onPaint(FXObject* sender, FXSelector selector, void* data) {
  if (isEnabled())
    return FXButton::onPaint(sender, selector, data);
  FXIcon* const own = icon;
  icon = m_pale.get();
  flags |= FLAG_ENABLED;
  const long painted = FXButton::onPaint(sender, selector, data);
  flags &= ~FLAG_ENABLED;
  icon = own;
  return painted;
}

} // namespace Tallymoor
