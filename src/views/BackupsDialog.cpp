#include "views/BackupsDialog.h"
#include "views/BackupsTable.h"
#include "widgets/MainWindow.h"
#include "widgets/TextSize.h"
#include <algorithm>

namespace Tallymoor {

FXIMPLEMENT(BackupsDialog, Dialog, nullptr, 0)

namespace {

constexpr FXint WIDTH = 560;
constexpr FXint HEIGHT = 260;

} // namespace

BackupsDialog::BackupsDialog(FXWindow* owner)
    : Dialog(owner, u"Backups", u"Your records before the first change of a day.") {
  const FXint width = std::min(scaledToText(WIDTH), getRoot()->getWidth() * 9 / 10);
  auto* frame =
      new FXHorizontalFrame(contents(), FRAME_SUNKEN | FRAME_THICK | LAYOUT_FIX_WIDTH | LAYOUT_FIX_HEIGHT, 0,
                            0, width, scaledToText(HEIGHT), 0, 0, 0, 0);
  m_table = new BackupsTable(frame);
  okButton()->setText("&Put back...");
  cancelButton()->setText("&Close");
  setFirstFocus(m_table);
  m_table->setChoiceWatcher([this] { showChoice(); });
  showChoice();
}

const Backup* BackupsDialog::chosen() const {
  const Backup* const backup = m_table->chosen();
  return backup && backup->isReadable ? backup : nullptr;
}

void BackupsDialog::showChoice() {
  if (chosen())
    okButton()->enable();
  else
    okButton()->disable();
}

bool BackupsDialog::validate() {
  return chosen() &&
         MainWindow::question(u"Do you want to put back your records of " +
                              chosen()->day.toString(DATE_DISPLAY_LOCAL) +
                              u"?\nAll portfolios become as they were then. Edit, Undo takes it back.");
}

} // namespace Tallymoor
