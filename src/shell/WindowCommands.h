#pragma once
#include "session/RecordChanges.h"
#include "shell/CommandTable.h"
#include "shell/ReportCommands.h"

namespace Tallymoor {

class SharePortfolioTreeItem;
class TallymoorWindow;
class TotalCapTreeItem;
class WindowIcons;

/// What the commands of the main window do, and where they stand in its menus and its tool bar. GUI thread
/// only.
class WindowCommands {
public:
  /// Window and icons outlive the commands. The window passes on what its widgets send for them.
  WindowCommands(TallymoorWindow& window, const WindowIcons& icons);

  const CommandTable& table() const { return m_table; }
  /// The panes must go before the window does.
  std::vector<std::unique_ptr<FXMenuPane>> makeMenus(FXMenuBar& bar) const;
  void addButtons(FXToolBar& bar) const;

private:
  using Rows = std::vector<Command>;

  Rows rows(const WindowIcons& icons);
  Rows fileRows(const WindowIcons& icons);
  Rows editRows();
  Rows portfolioRows(const WindowIcons& icons);
  Rows otherRows(const WindowIcons& icons);

  // When commands can be used.
  bool isLoaded() const;
  bool hasPortfolio() const;

  void newPortfolio();
  void newWatchlist();
  void runWizard();
  void importPortfolios();
  void showBackups();
  /// Asks for a portfolio and hands its node to the operation, unless the user cancelled.
  void registerFor(const String& prompt, const std::function<void(SharePortfolioTreeItem&)>& operation);
  /// Null when the user cancelled. Throws Exception "Failed to find the chosen portfolio".
  SharePortfolioTreeItem* choosePortfolio(const String& prompt);
  String likelyPortfolio() const;
  const RecordChanges& changes() const;
  /// The sentence of a change, shortened for a menu; empty for null.
  static String sentenceOf(const Journal::Entry* change);
  /// Undo or redo.
  void goOver(void (TotalCapTreeItem::*operation)());
  void showHistory();
  void refreshPrices();
  void showPrices();
  void showToldDividends();
  void showOptions();

  TallymoorWindow& m_window;
  ReportCommands m_reports;
  CommandTable m_table;
};

} // namespace Tallymoor
