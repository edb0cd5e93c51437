// The commands of the window's menus and tool bars.
#include "foundation/Platform.h"
#include "foundation/Settings.h"
#include "foundation/Thread.h"
#include "foundation/UserInteraction.h"
#include "market/TallymoorInternet.h"
#include "shell/AboutDialog.h"
#include "shell/AdvertStrip.h"
#include "shell/OnlineHelp.h"
#include "shell/OptionsDialog.h"
#include "shell/TallymoorWindow.h"
#include "updates/ProgramUpdater.h"
#include "updates/UpdateCheck.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/TotalCapTreeItem.h"
#include "views/WatchlistRootTreeItem.h"
#include "widgets/HandlerScope.h"
#include "widgets/InvestmentTree.h"
#include "widgets/ListChoiceDialog.h"
#include "widgets/TabWalk.h"
#include "widgets/ToolkitText.h"
#include "xml/Leaves.h"
#include <algorithm>

namespace Tallymoor {

namespace {

constexpr int MINIMUM_HEIGHT = 400;
constexpr int PORTFOLIO_TAB = 0;
constexpr int WATCHLIST_TAB = 1;
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

XMLElement* TallymoorWindow::choosePortfolio(const String& prompt) {
  ListChoiceDialog dialog(this, u"Choose Portfolio", prompt, false);
  const String likely = likelyPortfolio();
  for (const auto& [name, portfolio] : store().portfolios())
    dialog.addListEntry(name, nullptr, name == likely);
  if (!dialog.execute())
    return nullptr;
  const String chosen = dialog.chosenTexts().front();
  XMLElement& records = store().records();
  for (std::size_t i = 0; i < records.numSubElements(u"SharePortfolios"); ++i)
    if (textValue(records.subElement(u"SharePortfolios", i), u"Name") == chosen)
      return &records.subElement(u"SharePortfolios", i);
  throw Exception(u"Failed to find the chosen portfolio");
}

/// The only one, or else that of the selected node; empty where neither says one, or the tree is out of
/// sight.
String TallymoorWindow::likelyPortfolio() {
  if (store().portfolios().size() == 1)
    return store().portfolios().begin()->first;
  if (m_tabBook->getCurrent() == WATCHLIST_TAB)
    return String();
  for (TreeViewItem* node = m_portfolios.tree->shownItem(); node; node = node->parentItem())
    if (const auto* portfolio = dynamic_cast<SharePortfolioTreeItem*>(node))
      return portfolio->portfolio().name();
  return String();
}

/// The tree that a start which failed has not come to.
TotalCapTreeItem& TallymoorWindow::loadedTree() const {
  if (!m_totalCapital)
    throw Exception(STARTUP_FAILURE);
  return *m_totalCapital;
}

SharePortfolioTreeItem& TallymoorWindow::nodeOf(const XMLElement& portfolio) const {
  SharePortfolioTreeItem* node = loadedTree().portfolioNode(textValue(portfolio, u"Name"));
  if (!node)
    throw Exception(u"Failed to find the chosen portfolio");
  return *node;
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

long TallymoorWindow::onNewPortfolio(FXObject*, FXSelector, void*) {
  return guardedHandler(u"TallymoorWindow::onNewPortfolio failed.", [this] {
    loadedTree().newSharePortfolio();
    m_tabBook->setCurrent(PORTFOLIO_TAB);
  });
}

long TallymoorWindow::onNewWatchlist(FXObject*, FXSelector, void*) {
  return guardedHandler(u"TallymoorWindow::onNewWatchlist failed.", [this] {
    if (!m_watchlistRoot)
      throw Exception(STARTUP_FAILURE);
    m_watchlistRoot->onNew();
    m_tabBook->setCurrent(WATCHLIST_TAB);
  });
}

long TallymoorWindow::registerFor(const String& context, const String& prompt,
                                  const std::function<void(SharePortfolioTreeItem&)>& operation) {
  return guardedHandler(context, [&] {
    if (const XMLElement* portfolio = choosePortfolio(prompt))
      operation(nodeOf(*portfolio));
  });
}

long TallymoorWindow::onBuy(FXObject*, FXSelector, void*) {
  return registerFor(u"TallymoorWindow::onBuy failed.",
                     u"Select the portfolio to register a share purchase for.",
                     [](SharePortfolioTreeItem& node) { node.buyShares(String()); });
}

long TallymoorWindow::onSell(FXObject*, FXSelector, void*) {
  return registerFor(u"TallymoorWindow::onSell failed.",
                     u"Select the portfolio to register a share sale from.",
                     [](SharePortfolioTreeItem& node) { node.sellShares(String()); });
}

long TallymoorWindow::onDividends(FXObject*, FXSelector, void*) {
  return registerFor(u"TallymoorWindow::onDividends failed.",
                     u"Select the portfolio to receive a dividend from.",
                     &SharePortfolioTreeItem::receiveDividend);
}

long TallymoorWindow::onInterest(FXObject*, FXSelector, void*) {
  return registerFor(u"TallymoorWindow::onInterest failed.", u"Select the portfolio to receive interest for.",
                     &SharePortfolioTreeItem::receiveInterest);
}

long TallymoorWindow::onDepositCash(FXObject*, FXSelector, void*) {
  return registerFor(u"TallymoorWindow::onDepositCash failed.", u"Select the portfolio to deposit cash into.",
                     &SharePortfolioTreeItem::depositCash);
}

long TallymoorWindow::onWithdrawCash(FXObject*, FXSelector, void*) {
  return registerFor(u"TallymoorWindow::onWithdrawCash failed.",
                     u"Select the portfolio to withdraw cash from.", &SharePortfolioTreeItem::withdrawCash);
}

long TallymoorWindow::onCheckUpdates(FXObject*, FXSelector, void*) {
  return guardedHandler(u"TallymoorWindow::onCheckUpdates failed.",
                        [this] { checkForUpdates(*m_programUpdater); });
}

long TallymoorWindow::onRefreshPrices(FXObject*, FXSelector, void*) {
  return guardedHandler(u"TallymoorWindow::onRefreshPrices failed.", [this] {
    TallymoorInternet::Instance().forgetFailures();
    TallymoorInternet::Instance().priceUpdater().wakeUp();
    refreshViews(false); // days that are provisional, whose prices may be known now
  });
}

long TallymoorWindow::onSettings(FXObject*, FXSelector, void*) {
  return guardedHandler(u"TallymoorWindow::onSettings failed.", [this] {
    OptionsDialog dialog(this, store().portfolios());
    dialog.execute();
    // Also after Cancel: the caches and capital records may have been dropped.
    refreshViews(true);
    updateTrayTip();
  });
}

long TallymoorWindow::onFAQ(FXObject*, FXSelector, void*) {
  return guardedHandler(u"TallymoorWindow::onFAQ failed.", [] {
    setStatusText(u"launching web browser...");
    const String page = helpPage();
    if (!Platform::Instance().openDocument(page))
      information(u"Failed to open the browser for you.\nOnline help is at\n" + page);
  });
}

long TallymoorWindow::onFeedback(FXObject*, FXSelector, void*) {
  return guardedHandler(u"TallymoorWindow::onFeedback failed.", [] {
    setStatusText(u"launching email...");
    if (!Platform::Instance().openDocument(feedbackLink()))
      information(u"Failed to start an email for you.\nEmail your feedback to " + FEEDBACK_ADDRESS);
  });
}

long TallymoorWindow::onAbout(FXObject*, FXSelector, void*) {
  return guardedHandler(u"TallymoorWindow::onAbout failed.", [this] {
    AboutDialog dialog(this, m_icons.big.get());
    dialog.execute();
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

long TallymoorWindow::onChangeStatus(FXObject*, FXSelector, void*) {
  return guardedHandler(u"TallymoorWindow::onChangeStatus failed.", [this] {
    if (m_changingOnlineState)
      return; // a second press while the first one lets events pass
    if (TallymoorInternet::Instance().isOnline())
      goOfflineByUser();
    else
      reconnectByUser();
  });
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
