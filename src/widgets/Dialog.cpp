#include "widgets/Dialog.h"
#include "foundation/KeptTexts.h"
#include "widgets/Colours.h"
#include "widgets/HandlerScope.h"
#include "widgets/MainWindow.h"
#include "widgets/ModalDialogs.h"
#include "widgets/TextSize.h"
#include "widgets/ToolkitText.h"
#include <algorithm>

namespace Tallymoor {

FXDEFMAP(Dialog)
DialogMap[] = {
    FXMAPFUNC(SEL_COMMAND, FXDialogBox::ID_ACCEPT, Dialog::onOK),
    FXMAPFUNC(SEL_KEYPRESS, 0, Dialog::onKeyPress),
};

FXIMPLEMENT(Dialog, FXDialogBox, DialogMap, ARRAYNUMBER(DialogMap))

Dialog::Dialog(FXWindow* owner, const String& title, const String& description)
    : FXDialogBox(owner, toFox(title), DECOR_TITLE | DECOR_BORDER | DECOR_CLOSE, 0, 0, 0, 0, 4, 4, 4, 4) {
  auto* outer = new FXVerticalFrame(this, LAYOUT_FILL_X | LAYOUT_FILL_Y, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
  buildHeading(outer, description.empty() ? title : description);
  auto* inner = new FXVerticalFrame(outer, LAYOUT_FILL_X | LAYOUT_FILL_Y, 0, 0, 0, 0, 10, 10, 10, 10, 10, 10);
  m_contents = new FXVerticalFrame(inner, LAYOUT_FILL_X | LAYOUT_FILL_Y, 0, 0, 0, 0, 10, 10, 10, 10);
  buildButtons(inner);
  getAccelTable()->addAccel(parseAccel("Esc"), this, FXSEL(SEL_COMMAND, ID_CANCEL));
}

void Dialog::buildHeading(FXComposite* parent, const String& description) {
  const FXColor white = FXRGB(255, 255, 255);
  FXFont* font = MainWindow::Instance().boldFont();
  // A line of text and another's height around it; a description of several lines has that margin too.
  const auto lines = 1 + std::count(description.begin(), description.end(), u'\n');
  const FXint height = font->getFontHeight() * static_cast<FXint>(lines + 1);
  auto* heading =
      new FXHorizontalFrame(parent, LAYOUT_FILL_X | LAYOUT_FIX_HEIGHT, 0, 0, 0, height, 10, 10, 0, 0);
  heading->setBackColor(white);
  auto* label =
      new FXLabel(heading, labelText(description), nullptr, JUSTIFY_LEFT | LAYOUT_FILL_X | LAYOUT_FILL_Y);
  label->setBackColor(white);
  label->setTextColor(namedColour(kept::BLACK));
  label->setFont(font);
}

void Dialog::buildButtons(FXComposite* parent) {
  constexpr FXuint OPTIONS =
      FRAME_RAISED | FRAME_THICK | LAYOUT_FIX_WIDTH | LAYOUT_FIX_HEIGHT | BUTTON_DEFAULT;
  m_buttons = new FXHorizontalFrame(parent, LAYOUT_RIGHT, 0, 0, 0, 0, 10, 10, 10, 10);
  const FXint width = scaledToText(95), height = scaledToText(31);
  m_cancel =
      new FXButton(m_buttons, "Cancel", nullptr, this, ID_CANCEL, OPTIONS, 0, 0, width, height, 4, 4, 2, 2);
  m_ok = new FXButton(m_buttons, "OK", nullptr, this, ID_ACCEPT, OPTIONS | BUTTON_INITIAL, 0, 0, width,
                      height, 4, 4, 2, 2);
  m_ok->setDefault();
  m_firstFocus = m_ok;
}

void Dialog::create() {
  FXDialogBox::create();
  m_firstFocus->setFocus();
  if (auto* text = dynamic_cast<FXTextField*>(m_firstFocus))
    text->selectAll(); // typing replaces what stands there
}

bool Dialog::validate() {
  return true;
}

FXuint Dialog::execute(FXuint placement) {
  return runModal(*this, placement, [this](FXuint where) { return FXDialogBox::execute(where); });
}

long Dialog::onOK(FXObject* sender, FXSelector selector, void* data) {
  return acceptIfValid(u"Dialog::onOK failed.", sender, selector, data);
}

long Dialog::onKeyPress(FXObject* sender, FXSelector selector, void* data) {
  return keyInDialog(*this, *static_cast<FXEvent*>(data), ID_ACCEPT,
                     [&] { return FXDialogBox::onKeyPress(sender, selector, data); });
}

long Dialog::acceptIfValid(const String& context, FXObject* sender, FXSelector selector, void* data) {
  return guardedHandler(context, [&] {
    if (validate())
      FXDialogBox::onCmdAccept(sender, selector, data);
  });
}

} // namespace Tallymoor
