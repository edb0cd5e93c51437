#include "widgets/FormNotes.h"
#include <algorithm>
#include <fxkeys.h>

namespace Tallymoor {

FXDEFMAP(FormNotes)
FormNotesMap[] = {
    FXMAPFUNC(SEL_KEYPRESS, 0, FormNotes::onKeyPress),
};

FXIMPLEMENT(FormNotes, FXText, FormNotesMap, ARRAYNUMBER(FormNotesMap))

FormNotes::FormNotes(FXComposite* parent, FXuint options) : FXText(parent, nullptr, 0, options) {}

FXint FormNotes::getDefaultWidth() {
  constexpr FXint LEAST_WIDTH = 400;
  return getVisibleColumns() > 0 ? FXText::getDefaultWidth()
                                 : std::max(LEAST_WIDTH, FXText::getDefaultWidth());
}

long FormNotes::onKeyPress(FXObject* sender, FXSelector selector, void* data) {
  const auto code = static_cast<FXEvent*>(data)->code;
  if (code == KEY_Tab || code == KEY_ISO_Left_Tab)
    return 0;
  if (!isEditable() && (code == KEY_Return || code == KEY_KP_Enter))
    return 0;
  return FXText::onKeyPress(sender, selector, data);
}

} // namespace Tallymoor
