#pragma once
#include "foundation/String.h"
#include <fx.h>

namespace Tallymoor {

class InvestmentTree;

/// The two tabs of the main window, each with a tree and behind a splitter the pages of its nodes. The
/// widgets are the toolkit's. GUI thread, under the big mutex.
class WindowTabs {
public:
  enum { PORTFOLIOS, WATCHLISTS };

  /// The selector is told when the user opens the other tab.
  WindowTabs(FXComposite* parent, FXFont* labelFont, FXObject* target, FXSelector selector);

  FXTabBook* book() const { return m_book; }
  InvestmentTree* portfolioTree() const { return m_portfolios.tree; }
  InvestmentTree* watchlistTree() const { return m_watchlists.tree; }

  /// Every node recomputes and repaints its view.
  void refreshViews(bool repaintTrees);
  /// After the user has opened a tab.
  void tabOpened();
  /// Shows the first portfolio node; the page of the first watchlist is made when its tab is opened. False if
  /// a tree is not sound.
  bool showFirst();
  /// What stands in a watchlist in sight may depend on all of them.
  void portfoliosLoaded();
  /// Writes the widths of the trees to the settings.
  void rememberWidths() const;

private:
  struct Tab {
    FXSplitter* splitter = nullptr;
    InvestmentTree* tree = nullptr;
    String widthKey;
  };

  Tab buildTab(const char* label, FXFont* labelFont, FXColor treeColour, const String& widthKey);

  FXTabBook* m_book;
  Tab m_portfolios;
  Tab m_watchlists;
};

} // namespace Tallymoor
