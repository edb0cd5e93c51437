#pragma once
#include "foundation/Date.h"
#include "foundation/LengthyFunctions.h"
#include "market/PriceUpdater.h"
#include "session/PortfolioSession.h"
#include "shell/IdleLoading.h"
#include "shell/LogOutController.h"
#include "shell/OnlineController.h"
#include "shell/SelfSaving.h"
#include "shell/TrayController.h"
#include "shell/ViewDateController.h"
#include "shell/WindowCommands.h"
#include "shell/WindowIcons.h"
#include "shell/WindowPlace.h"
#include "shell/WindowTabs.h"
#include "views/DoubtWarnings.h"
#include "views/ToldDividendWarning.h"
#include "widgets/MainWindow.h"
#include <memory>
#include <optional>
#include <vector>

namespace Tallymoor {

class AdvertStrip;
class AdvertThread;
class InvestmentTree;
class ProgramUpdater;
class TotalCapTreeItem;
class WarningStrip;
class WatchlistRootTreeItem;

/// The program's window: it puts menus, tool bars, tabs and strips together and owns the session, the nodes
/// and the threads, which it starts when it is created and ends when the user leaves. What the user does in
/// it is the work of its commands and controllers.
class TallymoorWindow : public MainWindow, public HasLengthyFunctions, public PriceUpdater::PricesObserver {
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
    ID_PRICES,
    ID_TOLD_DIVIDENDS,
    ID_UNDO,
    ID_REDO,
    ID_BACKUPS,
    ID_HISTORY,
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
    ID_LAST
  };

  /// Shown when a start leaves no sound tree, and afterwards by each command that needs one.
  static constexpr const char16_t* STARTUP_FAILURE =
      u"There was a failure during startup. Please restart Tallymoor";

  /// The icons outlive the window.
  TallymoorWindow(FXApp* app, WindowIcons& icons);
  ~TallymoorWindow() override;

  /// Shows the window, then loads the records under a progress dialog. The portfolios are brought up to date
  /// afterwards, in idle time.
  void create() override;

  PortfolioSession& session() { return m_session; }
  PortfolioStore& store() { return m_session.store(); }
  ViewDateController& viewDateController() { return m_viewDate; }
  OnlineController& onlineController() { return m_online; }
  TrayController& trayController() { return *m_trayController; }
  WindowPlace& place() { return m_place; }
  TotalCapTreeItem* totalCapital() const { return m_totalCapital; }
  InvestmentTree* portfolioTree() const { return m_tabs->portfolioTree(); }
  InvestmentTree* watchlistTree() const { return m_tabs->watchlistTree(); }
  FXTabBook* tabBook() const { return m_tabs->book(); }
  FXButton* onlineButton() const { return m_online.button(); }
  ViewDateRow* viewDateRow() const { return m_viewDate.row(); }
  WarningStrip* warnings() const { return m_warnings; }
  AdvertStrip* adverts() const { return m_adverts; }
  SystemTray& tray() const { return m_trayController->tray(); }
  SessionClient& sessionClient() const { return m_logOut->client(); }
  ProgramUpdater& programUpdater() const { return *m_programUpdater; }
  /// Null until the start has come to it.
  AdvertThread* advertThread() const { return m_advertThread.get(); }

  void applicationTitle(String& title) const override;
  void saveAll() override;
  void shutdown() override;
  /// For an exception that nobody caught, once the toolkit's loop has ended because of it: tells of it, saves
  /// the records and lets everything go, as on Exit.
  void endAfterFailure(const Exception& exception);
  void minimiseToTray() override { m_trayController->minimise(); }
  void updateStatus() override;
  void warnOnce(const String& text, const String& caption, const String& key, int level) override {
    m_trayController->warnOnce(text, caption, key, level);
  }
  void warningOver(const String& key) override { m_trayController->warningOver(key); }
  /// As warnOnce, and every time.
  void warn(const String& text, const String& caption, const String& key, int level) {
    m_trayController->warn(text, caption, key, level);
  }

  /// Throw Exception STARTUP_FAILURE after a start that has not come to them.
  TotalCapTreeItem& loadedTree() const;
  WatchlistRootTreeItem& loadedWatchlists() const;
  /// True once the tree is there and the window answers, or the start has failed.
  bool loadEnded() const { return m_loadEnded; }
  /// True when the portfolios have been brought up to date as well.
  bool isReady() const { return m_loadEnded && !m_idleLoading.isUnderWay(); }
  /// The end of the idle loading.
  void portfoliosLoaded();
  /// A dialog or popup is open, or a handler lets events pass.
  bool isBusy() const;
  /// Whether work that nobody asked for may be done now.
  bool isIdle() const { return !isBusy() && !getApp()->getPopupWindow(); }
  /// A window dragged off the screen counts as minimised.
  bool isOffScreen() const;
  /// Saves everything. Throws Exception.
  void save();
  /// Every node recomputes and repaints its view.
  void refreshViews(bool repaintTrees);

  /// The day at which the capital is shown: see ViewDateController.
  static Date viewDate() { return Date(); }
  static bool viewDateMoved() { return ViewDateController::isMoved(); }
  void setViewDate(const Date& date) { m_viewDate.set(date); }
  void resetViewDate() { m_viewDate.reset(); }

  /// The load and the end of the data, under their progress dialogs.
  void runLengthyFunction(Progress& progress, int argument) override;
  /// On the updater's thread.
  void currentPriceUpdated(const String& code, double price) override;
  void pricesUpdateFinished() override;

  /// The tab key comes round to every part of the window: the toolkit's own walk ends at the tabs.
  long onKeyPress(FXObject*, FXSelector, void*);
  long onTabBook(FXObject*, FXSelector, void*);
  /// What widgets of a command send: see CommandTable.
  long onTableCommand(FXObject*, FXSelector, void*);
  long onTableUpdate(FXObject*, FXSelector, void*);
  long onResize(FXObject*, FXSelector, void*);

private:
  void buildToolBars();
  void loadUnderProgress();
  void load(Progress& progress);
  void buildNodes(Progress& progress);
  void runFirstWizard(Progress& progress);
  void askForPriceOrigin();
  void unload(Progress& progress);
  void saveUntilDoneOrGivenUp();
  void showOthers(std::shared_ptr<XMLPortfolios> others);
  void closeViews();

  WindowIcons& m_icons;
  PortfolioSession m_session;
  WindowPlace m_place;
  ViewDateController m_viewDate;
  OnlineController m_online;
  IdleLoading m_idleLoading;
  SelfSaving m_selfSaving;
  WindowCommands m_commands;
  std::vector<std::unique_ptr<FXMenuPane>> m_menus; ///< must go before the window does
  FXHorizontalFrame* m_toolBarRow = nullptr;
  std::optional<WindowTabs> m_tabs;
  WarningStrip* m_warnings = nullptr;
  AdvertStrip* m_adverts = nullptr;
  std::unique_ptr<AdvertThread> m_advertThread;
  TotalCapTreeItem* m_totalCapital = nullptr;
  std::unique_ptr<WatchlistRootTreeItem> m_watchlistRoot;
  std::optional<DoubtWarnings> m_doubtWarnings;
  std::optional<ToldDividendWarning> m_dividendWarning;
  std::unique_ptr<TrayController> m_trayController;
  std::unique_ptr<ProgramUpdater> m_programUpdater;
  std::unique_ptr<LogOutController> m_logOut;
  bool m_loadEnded = false;
  bool m_shutdownDone = false;
};

} // namespace Tallymoor
