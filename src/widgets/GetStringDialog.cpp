#include "widgets/GetStringDialog.h"
#include "widgets/FormTextField.h"
#include "widgets/MainWindow.h"

namespace Tallymoor {

FXDEFMAP(GetStringDialog)
GetStringDialogMap[] = {
    FXMAPFUNC(SEL_COMMAND, FXDialogBox::ID_ACCEPT, GetStringDialog::onOK),
};

FXIMPLEMENT(GetStringDialog, Dialog, GetStringDialogMap, ARRAYNUMBER(GetStringDialogMap))

GetStringDialog::GetStringDialog(FXWindow* owner, const String& title, const String& heading,
                                 const String& initialText, Filter filter)
    : Dialog(owner, title, heading),
      m_row(new FXHorizontalFrame(contents(), LAYOUT_FILL_X, 0, 0, 0, 0, 0, 0, 0, 0)),
      m_field(new FormTextField(m_row, 40, nullptr, 0, TEXTFIELD_NORMAL | LAYOUT_FILL_X)),
      m_filter(std::move(filter)), m_text(initialText) {
  m_field->setText(initialText);
  setFirstFocus(m_field);
  m_field->selectAll();
}

void GetStringDialog::hideText() {
  m_field->setTextStyle(m_field->getTextStyle() | TEXTFIELD_PASSWD);
}

bool GetStringDialog::validate() {
  if (!m_filter) {
    m_text = m_field->text();
    return true;
  }
  const String kept = m_filter(m_field->text());
  m_field->setText(kept);
  if (kept.empty()) {
    MainWindow::error(u"You must enter a value.");
    return false;
  }
  m_text = kept;
  return true;
}

long GetStringDialog::onOK(FXObject* sender, FXSelector selector, void* data) {
  return acceptIfValid(u"GetStringDialog::onOK failed.", sender, selector, data);
}

} // namespace Tallymoor
