#include "entry/WatchStockDialog.h"
#include "entry/StockSearch.h"
#include "widgets/FormTextField.h"
#include "widgets/HandlerScope.h"
#include "widgets/ToolkitText.h"

namespace Tallymoor {

FXDEFMAP(WatchStockDialog)
WatchStockDialogMap[] = {
    FXMAPFUNC(SEL_COMMAND, WatchStockDialog::ID_SEARCH_CODE, WatchStockDialog::onSearchCode),
    FXMAPFUNC(SEL_CHANGED, WatchStockDialog::ID_CODE, WatchStockDialog::onCodeTyped),
};

FXIMPLEMENT(WatchStockDialog, GetStringDialog, WatchStockDialogMap, ARRAYNUMBER(WatchStockDialogMap))

WatchStockDialog::WatchStockDialog(FXWindow* owner, Filter filter)
    : GetStringDialog(owner, u"Add Stock to Watch", u"Enter the stock code to watch.", String(),
                      std::move(filter)),
      m_icons(std::make_unique<FormIcons>(getApp())) {
  new FXButton(row(), "\tSearch for stock code\tSearch for stock code", m_icons->search(), this,
               ID_SEARCH_CODE, FRAME_RAISED | FRAME_THICK | LAYOUT_CENTER_Y | LAYOUT_FILL_Y, 0, 0, 0, 0, 3, 3,
               0, 0);
  m_name = new FXLabel(contents(), FXString(), nullptr, JUSTIFY_LEFT | LAYOUT_FILL_X);
  field()->setTarget(this);
  field()->setSelector(ID_CODE);
}

long WatchStockDialog::onSearchCode(FXObject*, FXSelector, void*) {
  return guardedHandler(u"WatchStockDialog::onSearchCode failed.", [this] {
    if (const auto found = searchForStock(this, field()->text().trimmed())) {
      field()->setText(found->code);
      m_name->setText(labelText(found->name));
    }
  });
}

long WatchStockDialog::onCodeTyped(FXObject*, FXSelector, void*) {
  m_name->setText(FXString());
  return 1;
}

} // namespace Tallymoor
