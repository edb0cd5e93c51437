#pragma once
#include "views/WatchlistTreeItem.h"

namespace Tallymoor {

class SharePortfolioUser;

/// The watchlist that each portfolio has by itself: what it held on the date shown, and its comparison index.
class WatchHeldSharesTreeItem : public WatchlistTreeItem {
  FXDECLARE_ABSTRACT(WatchHeldSharesTreeItem)
public:
  WatchHeldSharesTreeItem(WatchlistRootTreeItem& root, const SharePortfolioUser& portfolio);

  /// What is held follows the date shown. A portfolio that is gone leaves the table as it was, until the root
  /// takes the node away.
  void update() override;
  /// There is nothing to change.
  FXint onRightClick(FXint x, FXint y) override;
};

/// The codes of such a list, each once.
std::vector<String> codesHeld(const SharePortfolioUser& portfolio);

} // namespace Tallymoor
