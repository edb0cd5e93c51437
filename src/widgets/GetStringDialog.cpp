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

namespace {

/// In any script the file names made of such a name stay below the 255 bytes that file systems take.
constexpr std::size_t longestName = 60;

bool isHighSurrogate(char16_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}

String shortened(const String& name) {
  if (name.size() <= longestName)
    return name;
  const bool splitsPair = isHighSurrogate(name[longestName - 1]);
  return name.substr(0, splitsPair ? longestName - 1 : longestName);
}

} // namespace

String cleanName(const String& text) {
  constexpr std::u16string_view dropped = u"&<>\"'/\\";
  String name;
  char16_t last = u' ';
  for (char16_t unit : String::fromUTF8(text.toUTF8())) { // without halves of pairs
    const bool control = unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit >= 0xFFFE;
    const bool secondBlank = unit == u' ' && last == u' ';
    if (control || secondBlank || dropped.find(unit) != std::u16string_view::npos)
      continue;
    name += unit;
    last = unit;
  }
  return shortened(name).trimmed();
}

} // namespace Tallymoor
