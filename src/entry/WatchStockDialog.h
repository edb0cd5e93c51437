#pragma once
#include "entry/FormIcons.h"
#include "widgets/GetStringDialog.h"
#include <memory>

namespace Tallymoor {

/// Asks for the code of a stock to watch, with the stock search beside it.
class WatchStockDialog : public GetStringDialog {
  FXDECLARE(WatchStockDialog)
public:
  enum { ID_SEARCH_CODE = GetStringDialog::ID_LAST, ID_CODE, ID_LAST };

  /// The filter makes a code of what was typed; an empty one is refused.
  WatchStockDialog(FXWindow* owner, Filter filter);

  long onSearchCode(FXObject*, FXSelector, void*);
  /// A code that is typed has not been searched for: the name goes.
  long onCodeTyped(FXObject*, FXSelector, void*);

protected:
  WatchStockDialog() {}

private:
  std::unique_ptr<FormIcons> m_icons;
  FXLabel* m_name = nullptr; ///< of the stock that was found
};

} // namespace Tallymoor
