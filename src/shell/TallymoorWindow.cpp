#include "shell/TallymoorWindow.h"
#include "foundation/Constants.h"
#include "foundation/Settings.h"
#include "foundation/UnforeseenFailure.h"
#include "foundation/UserInteraction.h"
#include "market/PriceStatus.h"
#include "market/RestingStatus.h"
#include "market/TallymoorInternet.h"
#include "shell/AdvertStrip.h"
#include "shell/WarningStrip.h"
#include "updates/ProgramUpdater.h"
#include "updates/UpdateCheck.h"
#include "views/NodeIcons.h"
#include "views/PriceOriginDialog.h"
#include "views/TotalCapTreeItem.h"
#include "views/WatchlistRootTreeItem.h"
#include "widgets/HandlerScope.h"
#include "widgets/InvestmentTree.h"
#include "widgets/ProgressDialog.h"
#include "widgets/TabWalk.h"

namespace Tallymoor {

FXDEFMAP(TallymoorWindow)
tallymoorWindowMap[] = {
    FXMAPFUNC(SEL_CONFIGURE, MainWindow::ID_MAINWINDOW, TallymoorWindow::onResize),
    FXMAPFUNC(SEL_KEYPRESS, 0, TallymoorWindow::onKeyPress),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_TABBOOK, TallymoorWindow::onTabBook),
    // The commands of the table.
    FXMAPFUNCS(SEL_COMMAND, TallymoorWindow::ID_ABOUT_TRAY, TallymoorWindow::ID_RESTORE,
               TallymoorWindow::onTableCommand),
    FXMAPFUNCS(SEL_COMMAND, TallymoorWindow::ID_NEW_PORTFOLIO, TallymoorWindow::ID_ABOUT,
               TallymoorWindow::onTableCommand),
    FXMAPFUNCS(SEL_UPDATE, TallymoorWindow::ID_NEW_PORTFOLIO, TallymoorWindow::ID_ABOUT,
               TallymoorWindow::onTableUpdate),
    FXMAPFUNCS(SEL_LEFTBUTTONPRESS, TallymoorWindow::ID_AD1, TallymoorWindow::ID_AD2,
               TallymoorWindow::onTableCommand),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_STATUS, TallymoorWindow::onTableCommand),
    FXMAPFUNCS(SEL_COMMAND, TallymoorWindow::ID_FORWARD, TallymoorWindow::ID_BBACK,
               TallymoorWindow::onTableCommand),
    FXMAPFUNCS(SEL_UPDATE, TallymoorWindow::ID_FORWARD, TallymoorWindow::ID_BBACK,
               TallymoorWindow::onTableUpdate),
};

FXIMPLEMENT_ABSTRACT(TallymoorWindow, MainWindow, tallymoorWindowMap, ARRAYNUMBER(tallymoorWindowMap))

namespace {

/// Which of the window's lengthy functions runs.
enum LengthyWork { LOAD, UNLOAD };

constexpr const char16_t* LOADING = u"Loading your portfolios...";

/// What was told once may be told again.
void forgetWarnings() {
  Settings::Instance().deleteSection(u"Warnings");
}

} // namespace

TallymoorWindow::TallymoorWindow(FXApp* app, WindowIcons& icons)
    : MainWindow(app, icons.big.get(), icons.mini.get()), m_icons(icons),
      m_session(UserInteraction::Instance()), m_place(*this), m_viewDate(*this), m_online(*this, icons),
      m_idleLoading(*this), m_selfSaving(*this), m_commands(*this, icons) {
  new FXToolTip(app, TOOLTIP_VARIABLE);
  m_place.restore();
  m_menus = m_commands.makeMenus(*menuBar());
  buildToolBars();
  m_tabs.emplace(contentFrame(), boldFont(), this, ID_TABBOOK);
  m_warnings = new WarningStrip(panelFrame());
  m_adverts = new AdvertStrip(panelFrame(), this, ID_AD1, ID_AD2);
  m_trayController = std::make_unique<TrayController>(*this, *icons.tray);
  m_programUpdater = std::make_unique<ProgramUpdater>();
  m_logOut = std::make_unique<LogOutController>(*this);
  store().whenOthersTaken([this](std::shared_ptr<XMLPortfolios> others) { showOthers(std::move(others)); });
}

// Views first, then the portfolios that they show, then the records.
TallymoorWindow::~TallymoorWindow() {
  BigMutexLock lock;
  m_idleLoading.stop();
  m_selfSaving.stop();
  m_logOut.reset();
  m_programUpdater->stopAndJoin();
  m_advertThread.reset();
  Date::clearFixedDate();
  if (TallymoorInternet::exists())
    TallymoorInternet::Instance().priceUpdater().removeObserver(this);
  closeViews();
  store().clear();
  m_menus.clear();
  m_trayController.reset();
}

void TallymoorWindow::applicationTitle(String& title) const {
  title = APP_NAME;
}

void TallymoorWindow::buildToolBars() {
  m_toolBarRow = new FXHorizontalFrame(contentFrame(), LAYOUT_FILL_X, 0, 0, 0, 0, 2, 2, 2, 2, 6, 0);
  m_commands.addButtons(
      *new FXToolBar(m_toolBarRow, FRAME_NONE | PACK_UNIFORM_HEIGHT, 0, 0, 0, 0, 2, 2, 2, 2, 2, 0));
  m_viewDate.buildRow(m_toolBarRow, m_commands.table());
  m_online.buildButton(m_toolBarRow, m_commands.table().at(ID_STATUS));
}

void TallymoorWindow::create() {
  BigMutexLock lock;
  m_icons.create();
  m_place.keepOnScreen();
  m_online.fitButton();
  MainWindow::create();
  m_logOut->client().connect();
  loadUnderProgress();
}

void TallymoorWindow::loadUnderProgress() {
  setNormalStatusText(LOADING);
  setStatusText(LOADING); // the other one is shown when the toolkit is idle, which it is not before the end
  ProgressDialog dialog(this, u"Tallymoor startup", u"Please wait while caches and portfolio are loaded.", 5,
                        ProgressDialog::PERCENT_BAR, m_icons.banner.get());
  try {
    withUnforeseenFailures([&] { dialog.run(*this, LOAD); });
    m_idleLoading.begin();
  } catch (const Exception& exception) {
    store().setLoadFailed();
    reportException(u"Failure during startup. You may need to restart.\n", exception);
    setNormalStatusText(restingStatusText());
  }
  m_loadEnded = true;
}

void TallymoorWindow::portfoliosLoaded() {
  m_trayController->updateTip();
  m_tabs->portfoliosLoaded();
  setNormalStatusText(restingStatusText());
}

void TallymoorWindow::runLengthyFunction(Progress& progress, int argument) {
  if (argument == LOAD)
    load(progress);
  else
    unload(progress);
}

void TallymoorWindow::load(Progress& progress) {
  progress.setTotal(4);
  forgetWarnings(); // of a run that did not come to its end
  m_session.load(progress);
  TallymoorInternet::Instance().priceUpdater().addObserver(this);
  progress.setTotal(static_cast<unsigned>(store().portfolios().size()) + 4);
  buildNodes(progress);
  if (store().portfolios().empty() && !store().loadFailed())
    runFirstWizard(progress);
  progress.step(1, u"showing Total Capital");
  if (!m_tabs->showFirst())
    throw Exception(STARTUP_FAILURE);
  m_trayController->followPrices();
  m_doubtWarnings.emplace(getApp());
  m_dividendWarning.emplace(getApp(), [this] { return listOf(store().portfolios()); });
  m_dividendWarning->tell(); // of those of before
  m_advertThread = std::make_unique<AdvertThread>(AdvertSettings::current(), m_adverts->pending());
  tellInstallerFailure();
}

void TallymoorWindow::buildNodes(Progress& progress) {
  const NodeIcons nodeIcons{m_icons.portfolio.get(), m_icons.sharesHeld.get(),  m_icons.sharesSold.get(),
                            m_icons.dividends.get(), m_icons.cashReserve.get(), m_icons.watchHeld.get(),
                            m_icons.watchlist.get()};
  m_totalCapital =
      new TotalCapTreeItem(portfolioTree(), store().portfolios(), store().records(), nodeIcons, &progress);
  m_watchlistRoot = std::make_unique<WatchlistRootTreeItem>(m_totalCapital, watchlistTree(), nodeIcons,
                                                            [this] { m_commands.table().run(ID_BUY); });
}

/// The progress of the start is out of the way meanwhile.
void TallymoorWindow::runFirstWizard(Progress& progress) {
  auto* dialog = dynamic_cast<FXWindow*>(&progress);
  if (dialog)
    dialog->hide();
  if (store().isFirstRun())
    askForPriceOrigin();
  m_commands.table().run(ID_WIZARD);
  if (dialog)
    dialog->show();
}

/// Where prices come from documents of another kind, the profile has been prepared for the user.
void TallymoorWindow::askForPriceOrigin() {
  if (TallymoorInternet::Instance().priceStatus().isSampleMarket())
    PriceOriginDialog(this).execute();
}

void TallymoorWindow::shutdown() {
  if (m_shutdownDone)
    return;
  {
    ProgressDialog dialog(this, u"Tallymoor shutdown", u"Please wait while caches and portfolio are saved.",
                          4, ProgressDialog::PERCENT_BAR, m_icons.banner.get());
    dialog.run(*this, UNLOAD);
    dialog.finish();
  }
  getApp()->handle(this, FXSEL(SEL_COMMAND, FXApp::ID_QUIT), nullptr); // writes the settings, too
  m_shutdownDone = true;
}

void TallymoorWindow::endAfterFailure(const Exception& exception) {
  reportException(u"Tallymoor has to end because of a failure. It saves your records now; the state before\n"
                  u"stays beside them, in \"Portfolios.xml.bak\".\n",
                  exception);
  onShutdown(this, 0, nullptr);
  if (!m_shutdownDone)
    saveAll();
}

/// A save may be part of a handler, or of the end, where no node is left.
void TallymoorWindow::showOthers(std::shared_ptr<XMLPortfolios> others) {
  if (!m_totalCapital)
    return;
  if (others)
    m_totalCapital->replaceAll(PortfolioStore::OTHERS_TAKEN, std::move(others),
                               [this] { refreshViews(true); });
  else
    m_totalCapital->reloadPortfolios();
}

void TallymoorWindow::unload(Progress& progress) {
  if (TallymoorInternet::exists())
    TallymoorInternet::Instance().priceUpdater().removeObserver(this);
  m_idleLoading.stop();
  m_selfSaving.stop();
  progress.step(1, u"waiting for update threads");
  m_programUpdater->stopAndJoin();
  m_advertThread.reset();
  progress.step(1, u"saving portfolio records");
  forgetWarnings();
  saveUntilDoneOrGivenUp();
  closeViews();
  store().clear();
  progress.step(1, u"writing share price cache, waiting for background tasks");
  TallymoorInternet::shutdown();
  progress.step(1, u"shutting down");
}

// The records in memory are all that there is of what was typed since the last save, so a full disk or a
// missing folder must not end them unasked.
void TallymoorWindow::saveUntilDoneOrGivenUp() {
  saveAll();
  while (!store().lastSaveSucceeded() &&
         question(u"Your records could not be saved, and leaving now loses the changes since the last save.\n"
                  u"Do you want to try to save them again?"))
    saveAll();
}

void TallymoorWindow::closeViews() {
  m_trayController->stopFollowing();
  m_dividendWarning.reset();
  m_doubtWarnings.reset();
  m_watchlistRoot.reset(); // its lists show portfolios
  m_totalCapital = nullptr;
  portfolioTree()->clearItems();
}

void TallymoorWindow::saveAll() {
  m_commands.table().run(ID_SAVE);
}

void TallymoorWindow::save() {
  m_tabs->rememberWidths();
  m_session.save();
}

TotalCapTreeItem& TallymoorWindow::loadedTree() const {
  if (!m_totalCapital)
    throw Exception(STARTUP_FAILURE);
  return *m_totalCapital;
}

WatchlistRootTreeItem& TallymoorWindow::loadedWatchlists() const {
  if (!m_watchlistRoot)
    throw Exception(STARTUP_FAILURE);
  return *m_watchlistRoot;
}

bool TallymoorWindow::isBusy() const {
  return bigMutex().heldByThisThread() || getApp()->getModality() != MODAL_FOR_NONE;
}

bool TallymoorWindow::isOffScreen() const {
  const FXPoint place = placeOnScreen();
  return place.x < 0 && place.y < 0;
}

void TallymoorWindow::refreshViews(bool repaintTrees) {
  m_tabs->refreshViews(repaintTrees);
  m_trayController->updateTip();
}

void TallymoorWindow::updateStatus() {
  m_adverts->showPending();
  m_online.updateButton();
}

void TallymoorWindow::currentPriceUpdated(const String&, double) {}

void TallymoorWindow::pricesUpdateFinished() {
  setStatusText(u"Prices are up to date.");
}

long TallymoorWindow::onKeyPress(FXObject* sender, FXSelector selector, void* data) {
  const FXEvent event = *static_cast<FXEvent*>(data);
  FXWindow* const before = widgetWithKeyboard(*this);
  const long handled = MainWindow::onKeyPress(sender, selector, data);
  if (!isTab(event) || widgetWithKeyboard(*this) != before)
    return handled;
  return walkWithTab(*this, isBackTab(event)) ? 1 : handled;
}

long TallymoorWindow::onTabBook(FXObject*, FXSelector, void*) {
  return guardedHandler(u"TallymoorWindow::onTabBook.", [this] { m_tabs->tabOpened(); });
}

long TallymoorWindow::onTableCommand(FXObject*, FXSelector selector, void*) {
  return m_commands.table().run(FXSELID(selector));
}

long TallymoorWindow::onTableUpdate(FXObject* sender, FXSelector selector, void*) {
  return m_commands.table().update(FXSELID(selector), *sender);
}

/// Comes before the toolkit takes over the size that the event tells.
long TallymoorWindow::onResize(FXObject* sender, FXSelector selector, void* data) {
  const FXRectangle told = static_cast<FXEvent*>(data)->rect;
  guardedHandler(u"TallymoorWindow::onResize failed.", [this, &told] {
    const FXint leastWidth = m_toolBarRow->getDefaultWidth() + 2 * contentFrame()->getPadLeft();
    const FXSize size = m_place.heldToMinimum(FXSize(told.w, told.h), leastWidth);
    if (shown() && !isMinimized()) // where it is otherwise is no place of the user's choice
      m_place.remember(placeOnScreen(), size);
  });
  return MainWindow::onConfigure(sender, selector, data);
}

} // namespace Tallymoor
