#include "entry/StockSearch.h"
#include "entry/StockSearchDialog.h"
#include "foundation/BigMutex.h"
#include "widgets/MainWindow.h"

namespace Tallymoor {

std::optional<FoundStock> searchForStock(FXWindow* owner, const String& text) {
  if (text.empty()) {
    MainWindow::information(u"You must enter a code to search for.");
    return std::nullopt;
  }
  StockSearchDialog dialog(owner, text, true, false);
  bool accepted = false;
  {
    // The user may take his time; prices go on meanwhile.
    BigMutexRelease release;
    accepted = dialog.execute() != 0;
  }
  if (!accepted || dialog.code().empty())
    return std::nullopt;
  return FoundStock{dialog.code(), dialog.name()};
}

} // namespace Tallymoor
