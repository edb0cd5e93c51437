// What the window shows and does for its commands: tabs, size, online state.
#include "foundation/Settings.h"
#include "foundation/Thread.h"
#include "foundation/UserInteraction.h"
#include "market/TallymoorInternet.h"
#include "shell/AdvertStrip.h"
#include "shell/TallymoorWindow.h"
#include "shell/WindowCommands.h"
#include "updates/ProgramUpdater.h"
#include "views/TotalCapTreeItem.h"
#include "views/WatchlistRootTreeItem.h"
#include "widgets/HandlerScope.h"
#include "widgets/InvestmentTree.h"
#include "widgets/TabWalk.h"
#include "widgets/ToolkitText.h"
#include <algorithm>

namespace Tallymoor {

namespace {

constexpr int MINIMUM_HEIGHT = 400;
constexpr std::uint32_t FAILURE_SHOWN_FOR = 1000; ///< milliseconds

} // namespace

long TallymoorWindow::onKeyPress(FXObject* sender, FXSelector selector, void* data) {
  const FXEvent event = *static_cast<FXEvent*>(data);
  FXWindow* const before = widgetWithKeyboard(*this);
  const long handled = MainWindow::onKeyPress(sender, selector, data);
  if (!isTab(event) || widgetWithKeyboard(*this) != before)
    return handled;
  return walkWithTab(*this, isBackTab(event)) ? 1 : handled;
}

/// The tree that a start which failed has not come to.
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

void TallymoorWindow::refreshViews(bool repaintTrees) {
  for (InvestmentTree* tree : {m_portfolios.tree, m_watchlists.tree}) {
    tree->updateItems();
    if (repaintTrees)
      tree->update();
  }
  updateTrayTip();
}

long TallymoorWindow::onTabBook(FXObject*, FXSelector, void*) {
  return guardedHandler(u"TallymoorWindow::onTabBook.", [this] {
    // What was bought and sold meanwhile stands in the lists as well.
    if (m_tabBook->getCurrent() == WATCHLIST_TAB)
      m_watchlists.tree->updateItems();
    m_portfolios.tree->update();
    m_watchlists.tree->update();
    m_tabBook->update();
  });
}

long TallymoorWindow::onClickAd1(FXObject*, FXSelector, void*) {
  return guardedHandler(u"TallymoorWindow::onClickAd1 failed.",
                        [this] { openAdvert(m_adverts->advertUrl1()); });
}

long TallymoorWindow::onClickAd2(FXObject*, FXSelector, void*) {
  return guardedHandler(u"TallymoorWindow::onClickAd2 failed.",
                        [this] { openAdvert(m_adverts->advertUrl2()); });
}

long TallymoorWindow::onTableCommand(FXObject*, FXSelector selector, void*) {
  return m_commands->table().run(FXSELID(selector));
}

long TallymoorWindow::onTableUpdate(FXObject* sender, FXSelector selector, void*) {
  return m_commands->table().update(FXSELID(selector), *sender);
}

void TallymoorWindow::changeOnlineState() {
  if (m_changingOnlineState)
    return; // a second press while the first one lets events pass
  if (TallymoorInternet::Instance().isOnline())
    goOfflineByUser();
  else
    reconnectByUser();
}

void TallymoorWindow::goOfflineByUser() {
  WaitCursor wait;
  TallymoorInternet::Instance().goOffline();
  showOnlineState();
}

void TallymoorWindow::reconnectByUser() {
  m_changingOnlineState = true;
  struct Done {
    bool& flag;
    ~Done() { flag = false; }
  } done{m_changingOnlineState};
  WaitCursor wait;
  setStatusText(u"Reconnecting to internet and testing connection...");
  m_onlineButton->setText("trying");
  m_onlineButton->setIcon(m_icons.trying.get());
  getApp()->runWhileEvents();
  const bool connected = TallymoorInternet::Instance().reconnect();
  if (connected) {
    m_programUpdater->connectionIsBack();
    refreshViews(false); // what was computed with other prices than those of their days
  }
  if (!connected) {
    m_onlineButton->setText("Failed");
    m_onlineButton->setTipText("Failedto connect");
    m_onlineButton->setHelpText("Failed to reconnect to the network");
    getApp()->runWhileEvents();
    Thread::sleep(FAILURE_SHOWN_FOR);
  }
  m_shownOnline.reset();
  showOnlineState();
}

void TallymoorWindow::updateStatus() {
  m_adverts->showPending();
  if (!m_changingOnlineState)
    showOnlineState();
}

void TallymoorWindow::showOnlineState() {
  const bool online = TallymoorInternet::exists() && TallymoorInternet::Instance().isOnline();
  if (m_shownOnline == online)
    return;
  m_shownOnline = online;
  m_onlineButton->setText(online ? "online" : "offline");
  m_onlineButton->setTipText(online ? "Online" : "Offline");
  m_onlineButton->setHelpText(online ? "Press to disconnect" : "Press to reconnect");
  m_onlineButton->setIcon(online ? m_icons.online.get() : m_icons.offline.get());
  if (!online)
    abortBackgroundFetches();
}

/// Who has gone offline wants no request to go on, whatever it is for.
void TallymoorWindow::abortBackgroundFetches() {
  if (m_programUpdater)
    m_programUpdater->connectionIsGone();
  if (m_advertThread)
    m_advertThread->connectionIsGone();
}

/// Comes before the toolkit takes over the size that the event tells.
long TallymoorWindow::onResize(FXObject* sender, FXSelector selector, void* data) {
  const FXRectangle told = static_cast<FXEvent*>(data)->rect;
  guardedHandler(u"TallymoorWindow::onResize failed.", [this, &told] {
    const FXSize size = heldToMinimum(FXSize(told.w, told.h));
    if (!shown() || isMinimized())
      return; // where it is then is no place of the user's choice
    const FXPoint place = placeOnScreen();
    Settings& settings = Settings::Instance();
    const auto remember = [&settings](const char16_t* key, FXint value, FXint least) {
      if (value >= least)
        settings.writeUnsigned(u"Gui Settings", key, static_cast<std::uint32_t>(value));
    };
    remember(u"MainWidth", size.w, 1);
    remember(u"MainHeight", size.h, 1);
    remember(u"MainX", place.x, 0);
    remember(u"MainY", place.y, 0);
  });
  return MainWindow::onConfigure(sender, selector, data);
}

FXSize TallymoorWindow::heldToMinimum(const FXSize& size) {
  if (size.w <= 0 || size.h <= 0)
    return size;
  const FXint width =
      std::max<FXint>(size.w, m_toolBarRow->getDefaultWidth() + 2 * contentFrame()->getPadLeft());
  const FXint height = std::max<FXint>(size.h, MINIMUM_HEIGHT);
  if (width != size.w || height != size.h)
    resize(width, height);
  return FXSize(static_cast<FXshort>(width), static_cast<FXshort>(height));
}

void TallymoorWindow::currentPriceUpdated(const String&, double) {}

void TallymoorWindow::pricesUpdateFinished() {
  setStatusText(u"Prices are up to date.");
}

} // namespace Tallymoor
