#include "widgets/MessageBox.h"
#include "widgets/MainWindow.h"
#include "widgets/ModalDialogs.h"
#include "widgets/ToolkitText.h"

namespace Tallymoor {

FXuint showMessageBox(MessageBox box, FXuint buttons, const String& text) {
  MainWindow& window = MainWindow::Instance();
  if (!window.mayOpenDialog()) {
    MainWindow::setStatusText(text);
    return MBOX_CLICKED_CANCEL;
  }
  String caption;
  window.applicationTitle(caption);
  return box(ownerOfNextWindow(), buttons, caption.toUTF8().c_str(), messageBoxText(text).text());
}

} // namespace Tallymoor
