#pragma once
#include "desktop/SystemTray.h"
#include "foundation/Date.h"
#include "foundation/LengthyFunctions.h"
#include "market/PriceUpdater.h"
#include "session/PortfolioSession.h"
#include "shell/WindowIcons.h"
#include "widgets/MainWindow.h"
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace Tallymoor {

class AdvertStrip;
class AdvertThread;
class InvestmentTree;
class ProgramUpdater;
class PriceWatch;
class SessionClient;
class TotalCapTreeItem;
class ViewDateRow;
class WarningStrip;
class WatchlistRootTreeItem;
class WindowCommands;

/// The program's window: menus, tool bars, the tabs with their trees, the online button. It owns the records,
/// the portfolios and the nodes, loads them when it is created and saves them when the user leaves.
class TallymoorWindow : public MainWindow,
                        public HasLengthyFunctions,
                        public SystemTray::Watcher,
                        public PriceUpdater::PricesObserver {
  FXDECLARE_ABSTRACT(TallymoorWindow)
public:
  // The names and their order are those of the whole program; what has no command yet has no number here.
  enum {
    ID_ABOUT_TRAY = MainWindow::ID_LAST,
    ID_RESTORE,
    ID_TABBOOK,
    ID_NEW_PORTFOLIO,
    ID_NEW_WATCHLIST,
    ID_SAVE,
    ID_WIZARD,
    ID_IMPORT,
    ID_EXPORT,
    ID_BUY,
    ID_SELL,
    ID_DIVIDENDS,
    ID_INTEREST,
    ID_DEPOSIT_CASH,
    ID_WITHDRAW_CASH,
    ID_REPORT_LAST_MONTH,
    ID_REPORT_LAST_FQ,
    ID_REPORT_LAST_CQ,
    ID_REPORT_LAST_FY,
    ID_REPORT_LAST_CY,
    ID_REPORT_CUSTOM,
    ID_CHECK_UPDATES,
    ID_REFRESH_PRICES,
    ID_SETTINGS,
    ID_FAQ,
    ID_FEEDBACK,
    ID_ABOUT,
    ID_AD1,
    ID_AD2,
    ID_STATUS,
    ID_DATE_FIELD, ///< of the field itself, which sends no command
    ID_FORWARD,
    ID_FFORWARD,
    ID_BACK,
    ID_BBACK,
    ID_NO_COMMAND, ///< of a button that does nothing for now
    // Timers.
    ID_HIDE_AFTER_BALLOON,
    ID_TRAY_GONE,
    ID_TRAY_MENU,
    ID_LAST
  };

  /// Of the tab book.
  enum { PORTFOLIO_TAB, WATCHLIST_TAB };

  /// Told when a start leaves no sound tree, and afterwards by each command that needs one.
  static constexpr const char16_t* STARTUP_FAILURE =
      u"There was a failure during startup. Please restart Tallymoor";

  /// The icons outlive the window.
  TallymoorWindow(FXApp* app, WindowIcons& icons);
  ~TallymoorWindow() override;

  /// Shows the window, then loads caches and records under a progress dialog.
  void create() override;

  PortfolioSession& session() { return m_session; }
  PortfolioStore& store() { return m_session.store(); }
  TotalCapTreeItem* totalCapital() const { return m_totalCapital; }
  InvestmentTree* portfolioTree() const { return m_portfolios.tree; }
  InvestmentTree* watchlistTree() const { return m_watchlists.tree; }
  FXTabBook* tabBook() const { return m_tabBook; }
  FXButton* onlineButton() const { return m_onlineButton; }
  ViewDateRow* viewDateRow() const { return m_viewDateRow; }
  WarningStrip* warnings() const { return m_warnings; }
  AdvertStrip* adverts() const { return m_adverts; }
  SystemTray& tray() const { return *m_tray; }
  SessionClient& sessionClient() const { return *m_sessionClient; }

  void applicationTitle(String& title) const override;
  void saveAll() override;
  void shutdown() override;
  /// For an exception that nobody caught, once the toolkit's loop has ended because of it: tells of it, saves
  /// the records and lets everything go, as on Exit.
  void endAfterFailure(const Exception& exception);
  void minimiseToTray() override;
  void updateStatus() override;
  void warnOnce(const String& text, const String& caption, const String& key, int level) override;
  void warningOver(const String& key) override;
  /// As warnOnce, and every time.
  void warn(const String& text, const String& caption, const String& key, int level);

  // What the tray tells.
  void onLeftClick() override;
  void onRightClick() override;
  void onDoubleClick() override;
  void onMouseMove() override;
  void onCommand(unsigned identifier) override;
  std::vector<SystemTray::MenuEntry> menuEntries() const override;
  void onPlaceChanged() override;
  void onBalloonNotShown(const String& text, const String& title, int level) override;
  /// Shows the day's result in the tip of the tray.
  void updateTrayTip();

  // What commands work with.
  /// Throw Exception STARTUP_FAILURE after a start that has not come to them.
  TotalCapTreeItem& loadedTree() const;
  WatchlistRootTreeItem& loadedWatchlists() const;
  ProgramUpdater& programUpdater() const { return *m_programUpdater; }
  /// Saves everything. Throws Exception.
  void save();
  /// Out of the tray, and above other windows.
  void bringToFront();
  /// Goes offline, or tries to get online.
  void changeOnlineState();
  /// Every node recomputes and repaints its view.
  void refreshViews(bool repaintTrees);

  /// The day at which the capital is shown: today unless it was moved.
  static Date viewDate() { return Date(); }
  static bool viewDateMoved() { return Date::hasFixedDate(); }
  /// Shows everything as of this day, which lies before today. No prices are fetched until today is shown
  /// again. Throws Exception.
  void setViewDate(const Date& date);
  /// Back to today.
  void resetViewDate();
  /// Counts from the day shown; today is as far as it goes.
  void moveViewDate(int days);

  /// The load and the end of the data, under their progress dialogs.
  void runLengthyFunction(Progress& progress, int argument) override;
  /// On the updater's thread.
  void currentPriceUpdated(const String& code, double price) override;
  void pricesUpdateFinished() override;

  /// The tab key comes round to every part of the window: the toolkit's own walk ends at the tabs.
  long onKeyPress(FXObject*, FXSelector, void*);
  long onHideAfterBalloon(FXObject*, FXSelector, void*);
  long onTrayGone(FXObject*, FXSelector, void*);
  long onTrayMenu(FXObject*, FXSelector, void*);
  long onTabBook(FXObject*, FXSelector, void*);
  /// What widgets of a command send: see CommandTable.
  long onTableCommand(FXObject*, FXSelector, void*);
  long onTableUpdate(FXObject*, FXSelector, void*);
  long onClickAd1(FXObject*, FXSelector, void*);
  long onClickAd2(FXObject*, FXSelector, void*);
  long onResize(FXObject*, FXSelector, void*);

private:
  /// A tab: a tree, and behind the splitter the pages of its nodes.
  struct Tab {
    FXSplitter* splitter = nullptr;
    InvestmentTree* tree = nullptr;
    String widthKey; ///< where the width of the tree is kept
  };

  void restorePlace();
  void keepOnScreen();
  void buildToolBars();
  void buildOnlineBar(FXComposite* parent);
  void buildCommandBar(FXComposite* parent);
  void buildTabs();
  Tab buildTab(const char* label, FXColor treeColour, const String& widthKey);

  void buildTray();
  void followPricesInTray();
  bool isOffScreen() const;
  void hideBehindIcon();
  void bringIntoSight();
  bool busyWithAnotherWindow() const;
  void showTrayMenu(FXint x, FXint y);

  void buildSessionClient();
  std::optional<bool> saveForSession();
  bool nothingToLose();
  bool saveUnasked(bool recordsOnly);

  void loadUnderProgress();
  void load(Progress& progress);
  void runFirstWizard(Progress& progress);
  void loadGateway();
  void unload(Progress& progress);
  void saveUntilDoneOrGivenUp();
  void closeViews();

  void rememberSplitters();
  void showOnlineState();
  void goOfflineByUser();
  void abortBackgroundFetches();
  void reconnectByUser();
  /// Takes the window back to the least size; gives the size that it then has.
  FXSize heldToMinimum(const FXSize& size);
  void showViewDate();

  WindowIcons& m_icons;
  std::vector<std::unique_ptr<FXMenuPane>> m_menus; ///< must go before the window does
  PortfolioSession m_session;
  std::unique_ptr<WindowCommands> m_commands;
  FXHorizontalFrame* m_toolBarRow = nullptr;
  FXButton* m_onlineButton = nullptr;
  ViewDateRow* m_viewDateRow = nullptr;
  WarningStrip* m_warnings = nullptr;
  /// The key of what a balloon told, and whether its cause has gone.
  struct ToldByBalloon {
    String key;
    bool over = false;
  };
  /// By the text.
  std::map<String, ToldByBalloon> m_toldByBalloon;
  AdvertStrip* m_adverts = nullptr;
  std::unique_ptr<AdvertThread> m_advertThread;
  FXTabBook* m_tabBook = nullptr;
  Tab m_portfolios;
  Tab m_watchlists;
  TotalCapTreeItem* m_totalCapital = nullptr;
  std::unique_ptr<WatchlistRootTreeItem> m_watchlistRoot;
  std::unique_ptr<SystemTray> m_tray;
  std::unique_ptr<PriceWatch> m_trayPrices;
  std::unique_ptr<ProgramUpdater> m_programUpdater;
  std::unique_ptr<SessionClient> m_sessionClient;
  std::optional<bool> m_shownOnline; ///< what the online button shows
  bool m_changingOnlineState = false;
  bool m_loadEnded = false;
  bool m_shutdownDone = false;
};

} // namespace Tallymoor
