#include "shell/WindowCommands.h"
#include "books/UnreadableDates.h"
#include "entry/StartupWizard.h"
#include "foundation/Platform.h"
#include "market/RestingStatus.h"
#include "market/TallymoorInternet.h"
#include "session/Backups.h"
#include "session/RecordsReading.h"
#include "shell/AboutDialog.h"
#include "shell/AdvertStrip.h"
#include "shell/CellEdits.h"
#include "shell/OnlineHelp.h"
#include "shell/OptionsDialog.h"
#include "shell/TallymoorWindow.h"
#include "shell/TransferDialogs.h"
#include "updates/UpdateCheck.h"
#include "views/BackupsDialog.h"
#include "views/HistoryDialog.h"
#include "views/PricesDialog.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/ToldDividendsDialog.h"
#include "views/TotalCapTreeItem.h"
#include "views/WatchlistRootTreeItem.h"
#include "widgets/HandlerScope.h"
#include "widgets/InvestmentTree.h"
#include "widgets/ListChoiceDialog.h"
#include "xml/PortfolioRecords.h"
#include <memory>
#include <utility>

namespace Tallymoor {

namespace {

using Window = TallymoorWindow;

constexpr CommandTable::MenuLine SEPARATOR{};

std::vector<CommandTable::Menu> menus() {
  return {
      {"&File",
       {{Window::ID_NEW_PORTFOLIO},
        {Window::ID_NEW_WATCHLIST},
        SEPARATOR,
        {Window::ID_WIZARD},
        SEPARATOR,
        {Window::ID_SAVE},
        {Window::ID_IMPORT},
        {Window::ID_EXPORT},
        {Window::ID_BACKUPS},
        SEPARATOR,
        {FXTopWindow::ID_MINIMIZE},
        SEPARATOR,
        {MainWindow::ID_SHUTDOWN}}},
      {"&Edit", {{Window::ID_UNDO}, {Window::ID_REDO}, SEPARATOR, {Window::ID_HISTORY}}},
      {"&Portfolios",
       {{Window::ID_NEW_PORTFOLIO, "&New Portfolio..."},
        {Window::ID_BUY},
        {Window::ID_SELL},
        {Window::ID_DIVIDENDS},
        {Window::ID_INTEREST},
        {Window::ID_DEPOSIT_CASH},
        {Window::ID_WITHDRAW_CASH}}},
      {"&Reports",
       {{Window::ID_REPORT_LAST_MONTH},
        {Window::ID_REPORT_LAST_FQ},
        {Window::ID_REPORT_LAST_CQ},
        {Window::ID_REPORT_LAST_FY},
        {Window::ID_REPORT_LAST_CY},
        // A period of one's own is the tool bar's.
        {Window::ID_REPORT_LAST_CY, "Custom &Report..."}}},
      {"&Tools",
       {{Window::ID_CHECK_UPDATES},
        {Window::ID_REFRESH_PRICES},
        {Window::ID_PRICES},
        {Window::ID_TOLD_DIVIDENDS},
        SEPARATOR,
        {Window::ID_SETTINGS}}},
      {"&Help\tCtrl+H", {{Window::ID_FAQ}, {Window::ID_FEEDBACK}, SEPARATOR, {Window::ID_ABOUT}}},
  };
}

std::vector<CommandTable::BarButton> barButtons() {
  return {{Window::ID_NEW_PORTFOLIO},    {Window::ID_NEW_WATCHLIST},
          {Window::ID_BUY, 3},           {Window::ID_SELL},
          {Window::ID_DIVIDENDS, 2},     {Window::ID_INTEREST},
          {Window::ID_DEPOSIT_CASH, 2},  {Window::ID_WITHDRAW_CASH},
          {Window::ID_REPORT_CUSTOM, 3}, {Window::ID_REFRESH_PRICES, 3}};
}

void openHelp() {
  MainWindow::setStatusText(u"launching web browser...");
  const String page = helpPage();
  if (!Platform::Instance().openDocument(page))
    MainWindow::information(u"Failed to open the browser for you.\nOnline help is at\n" + page);
}

void writeFeedback() {
  MainWindow::setStatusText(u"launching email...");
  if (!Platform::Instance().openDocument(feedbackLink()))
    MainWindow::information(u"Failed to start an email for you.\nEmail your feedback to " + FEEDBACK_ADDRESS);
}

} // namespace

WindowCommands::WindowCommands(TallymoorWindow& window, const WindowIcons& icons)
    : m_window(window), m_reports(window), m_table(window, rows(icons)) {}

std::vector<std::unique_ptr<FXMenuPane>> WindowCommands::makeMenus(FXMenuBar& bar) const {
  std::vector<std::unique_ptr<FXMenuPane>> panes;
  for (const CommandTable::Menu& menu : menus())
    panes.push_back(m_table.makeMenu(bar, menu));
  return panes;
}

void WindowCommands::addButtons(FXToolBar& bar) const {
  m_table.addButtons(bar, barButtons());
}

WindowCommands::Rows WindowCommands::rows(const WindowIcons& icons) {
  Rows all;
  for (const Rows& rows :
       {fileRows(icons), editRows(), portfolioRows(icons),
        m_reports.commands(icons.report.get(), [this] { return hasPortfolio(); }), otherRows(icons),
        m_window.viewDateController().commands(icons, [this] { return isLoaded(); })})
    all.insert(all.end(), rows.begin(), rows.end());
  return all;
}

WindowCommands::Rows WindowCommands::fileRows(const WindowIcons& icons) {
  const auto loaded = [this] { return isLoaded(); };
  return {
      {Window::ID_NEW_PORTFOLIO, "New &Portfolio...", "Ctrl+P", "New Portfolio\tCreates a new portfolio",
       icons.newPortfolio.get(), u"onNewPortfolio", [this] { newPortfolio(); }, loaded},
      {Window::ID_NEW_WATCHLIST, "New &Watchlist...", "Ctrl+W", "New Watchlist\tCreates new watchlist",
       icons.newWatchlist.get(), u"onNewWatchlist", [this] { newWatchlist(); }, loaded},
      {Window::ID_WIZARD, "New Portfolio &Wizard...", "", "", nullptr, u"onWizard", [this] { runWizard(); },
       loaded},
      {Window::ID_SAVE, "&Save...", "Ctrl+S", "", nullptr, u"onSave", [this] { m_window.save(); }},
      {Window::ID_IMPORT, "&Import...", "", "", nullptr, u"onImport", [this] { importPortfolios(); }, loaded},
      {Window::ID_EXPORT, "&Export...", "", "", nullptr, u"onExport",
       [this] { exportPortfolios(&m_window, m_window.store().records()); }},
      {Window::ID_BACKUPS, "&Backups...", "", "", nullptr, u"onBackups", [this] { showBackups(); }, loaded},
      {FXTopWindow::ID_MINIMIZE, "&Minimise"},
      {MainWindow::ID_SHUTDOWN, "E&xit", "Alt-F4"},
  };
}

WindowCommands::Rows WindowCommands::editRows() {
  return {{Window::ID_UNDO, "&Undo", "Ctrl+Z", "", nullptr, u"onUndo",
           [this] { goOver(&TotalCapTreeItem::undo); },
           [this] { return isLoaded() && changes().toUndo() != nullptr; },
           [this] { return sentenceOf(changes().toUndo()); }},
          {Window::ID_REDO, "&Redo", "Ctrl+Shift+Z", "", nullptr, u"onRedo",
           [this] { goOver(&TotalCapTreeItem::redo); },
           [this] { return isLoaded() && changes().toRedo() != nullptr; },
           [this] { return sentenceOf(changes().toRedo()); }},
          {Window::ID_HISTORY, "&History...", "", "", nullptr, u"onHistory", [this] { showHistory(); },
           [this] { return isLoaded(); }}};
}

WindowCommands::Rows WindowCommands::portfolioRows(const WindowIcons& icons) {
  const auto open = [this] { return hasPortfolio(); };
  const auto registering = [this](const char16_t* prompt,
                                  const std::function<void(SharePortfolioTreeItem&)>& operation) {
    return [=, this] { registerFor(prompt, operation); };
  };
  return {
      {Window::ID_BUY, "&Buy Shares...", "Ctrl+B", "Buy Shares\tRegister the purchase of shares",
       icons.buy.get(), u"onBuy",
       registering(u"Select the portfolio to register a share purchase for.",
                   [](SharePortfolioTreeItem& node) { node.buyShares(String()); }),
       open},
      {Window::ID_SELL, "&Sell Shares...", "Ctrl+L", "Sell Shares\tRegister the sale of shares",
       icons.sell.get(), u"onSell",
       registering(u"Select the portfolio to register a share sale from.",
                   [](SharePortfolioTreeItem& node) { node.sellShares(String()); }),
       open},
      {Window::ID_DIVIDENDS, "Receive a &Dividend...", "Ctrl+D",
       "Receive a Dividend\tRegister the receipt of a dividend", icons.dividend.get(), u"onDividends",
       registering(u"Select the portfolio to receive a dividend from.",
                   &SharePortfolioTreeItem::receiveDividend),
       open},
      {Window::ID_INTEREST, "Receive &Interest...", "Ctrl+I", "Receive Interest\tRegister interest received",
       icons.interest.get(), u"onInterest",
       registering(u"Select the portfolio to receive interest for.",
                   &SharePortfolioTreeItem::receiveInterest),
       open},
      {Window::ID_DEPOSIT_CASH, "Deposit &Cash...", "", "Deposit Cash\tRegister cash deposit",
       icons.deposit.get(), u"onDepositCash",
       registering(u"Select the portfolio to deposit cash into.", &SharePortfolioTreeItem::depositCash),
       open},
      {Window::ID_WITHDRAW_CASH, "&Withdraw Cash...", "", "Withdraw Cash\tRegister cash withdrawal",
       icons.withdraw.get(), u"onWithdrawCash",
       registering(u"Select the portfolio to withdraw cash from.", &SharePortfolioTreeItem::withdrawCash),
       open},
  };
}

WindowCommands::Rows WindowCommands::otherRows(const WindowIcons& icons) {
  const auto loaded = [this] { return isLoaded(); };
  const auto about = [this, icon = icons.big.get()] { AboutDialog(&m_window, icon).execute(); };
  return {
      {Window::ID_CHECK_UPDATES, "Check For &Updates...", "Ctrl+U", "", nullptr, u"onCheckUpdates",
       [this] { checkForUpdates(m_window.programUpdater()); }},
      {Window::ID_REFRESH_PRICES, "Refresh &Prices", "Ctrl+R",
       "Price Update\tGet the latest prices for held and watched shares", icons.priceUpdate.get(),
       u"onRefreshPrices", [this] { refreshPrices(); }, loaded},
      {Window::ID_PRICES, "P&rices...", "", "", nullptr, u"onPrices", [this] { showPrices(); }, loaded},
      {Window::ID_TOLD_DIVIDENDS, "Told &Dividends...", "", "", nullptr, u"onToldDividends",
       [this] { showToldDividends(); }, loaded},
      {Window::ID_SETTINGS, "&Options...", "Ctrl+O", "", nullptr, u"onSettings", [this] { showOptions(); }},
      {Window::ID_FAQ, "&Online Help...", "Ctrl+F", "", nullptr, u"onFAQ", openHelp},
      {Window::ID_FEEDBACK, "Feedback or Suggestion?", "", "", nullptr, u"onFeedback", writeFeedback},
      {Window::ID_ABOUT, "&About...", "Ctrl+A", "", nullptr, u"onAbout", about},
      {Window::ID_ABOUT_TRAY, "", "", "", nullptr, u"onAbout", about},
      {Window::ID_RESTORE, "", "", "", nullptr, u"onRestore",
       [this] { m_window.trayController().bringToFront(); }},
      {Window::ID_AD1, "", "", "", nullptr, u"onClickAd1",
       [this] { openAdvert(m_window.adverts()->advertUrl1()); }},
      {Window::ID_AD2, "", "", "", nullptr, u"onClickAd2",
       [this] { openAdvert(m_window.adverts()->advertUrl2()); }},
      m_window.onlineController().command(),
  };
}

bool WindowCommands::isLoaded() const {
  return m_window.totalCapital() != nullptr;
}

bool WindowCommands::hasPortfolio() const {
  return isLoaded() && !m_window.store().portfolios().empty();
}

const RecordChanges& WindowCommands::changes() const {
  return m_window.store().changes();
}

String WindowCommands::sentenceOf(const Journal::Entry* change) {
  constexpr std::size_t LONGEST = 60;
  if (!change || change->sentence.size() <= LONGEST)
    return change ? change->sentence : String();
  return change->sentence.substr(0, LONGEST) + u"...";
}

void WindowCommands::goOver(void (TotalCapTreeItem::*operation)()) {
  finishEdits(*m_window.tabBook());
  (m_window.loadedTree().*operation)();
  HandlerScope::whenDone(&m_window.trayController(), [this] { m_window.trayController().updateTip(); });
}

void WindowCommands::showHistory() {
  finishEdits(*m_window.tabBook());
  HistoryDialog dialog(&m_window, m_window.store().changes().history());
  dialog.execute();
  const auto number = dialog.wantedBack();
  if (!number)
    return;
  m_window.loadedTree().goBackTo(*number);
  HandlerScope::whenDone(&m_window.trayController(), [this] { m_window.trayController().updateTip(); });
}

void WindowCommands::newPortfolio() {
  m_window.loadedTree().newSharePortfolio();
  m_window.tabBook()->setCurrent(WindowTabs::PORTFOLIOS);
}

void WindowCommands::newWatchlist() {
  m_window.loadedWatchlists().onNew();
  m_window.tabBook()->setCurrent(WindowTabs::WATCHLISTS);
  // A new list is shown first, and then stays in sight.
  HandlerScope::whenDone(m_window.tabBook(), [this] { m_window.onTabBook(nullptr, 0, nullptr); });
}

// The refresh and the save wait until the new portfolio has its node.
void WindowCommands::runWizard() {
  TotalCapTreeItem& totalCapital = m_window.loadedTree();
  StartupWizard wizard(&m_window, m_window.store().records());
  if (wizard.execute())
    totalCapital.openPortfolio(wizard.takePortfolio());
  HandlerScope::whenDone(&m_window, [this] {
    m_window.refreshViews(true);
    m_window.saveAll();
  });
}

void WindowCommands::importPortfolios() {
  TotalCapTreeItem& totalCapital = m_window.loadedTree();
  const String file = chooseImportFile(&m_window);
  if (file.empty())
    return;
  const auto imported = m_window.session().readImport(file);
  if (!imported)
    return;
  const std::vector<String> names = imported->names();
  if (names.empty())
    MainWindow::information(u"No portfolios were imported.");
  else
    totalCapital.takePortfolios(imported->take(), [this, names] {
      m_window.refreshViews(true);
      MainWindow::information(importSummary(names));
    });
}

void WindowCommands::showBackups() {
  BackupsDialog dialog(&m_window);
  if (!dialog.execute() || !dialog.chosen())
    return;
  const auto records = std::make_shared<XMLPortfolios>();
  readRecordsDocument(*records, dialog.chosen()->path);
  cleanRecordNames(*records);
  setAsideUnreadableDates(*records);
  m_window.loadedTree().replaceAll(u"Return to the records of " +
                                       dialog.chosen()->day.toString(DATE_DISPLAY_LOCAL),
                                   records, [this] { m_window.refreshViews(true); });
}

void WindowCommands::registerFor(const String& prompt,
                                 const std::function<void(SharePortfolioTreeItem&)>& operation) {
  if (SharePortfolioTreeItem* portfolio = choosePortfolio(prompt))
    operation(*portfolio);
}

SharePortfolioTreeItem* WindowCommands::choosePortfolio(const String& prompt) {
  ListChoiceDialog dialog(&m_window, u"Choose Portfolio", prompt, false);
  const String likely = likelyPortfolio();
  for (const auto& [name, portfolio] : m_window.store().portfolios())
    dialog.addListEntry(name, nullptr, name == likely);
  if (!dialog.execute())
    return nullptr;
  SharePortfolioTreeItem* node = m_window.loadedTree().portfolioNode(dialog.chosenTexts().front());
  if (!node)
    throw Exception(u"Failed to find the chosen portfolio");
  return node;
}

/// The only one, or else that of the selected node; empty where neither says one, or the tree is out of
/// sight.
String WindowCommands::likelyPortfolio() const {
  const OpenPortfolios& portfolios = m_window.store().portfolios();
  if (portfolios.size() == 1)
    return portfolios.begin()->first;
  if (m_window.tabBook()->getCurrent() == WindowTabs::WATCHLISTS)
    return String();
  for (TreeViewItem* node = m_window.portfolioTree()->shownItem(); node; node = node->parentItem())
    if (const auto* portfolio = dynamic_cast<SharePortfolioTreeItem*>(node))
      return portfolio->portfolio().name();
  return String();
}

void WindowCommands::refreshPrices() {
  TallymoorInternet::Instance().forgetFailures();
  TallymoorInternet::Instance().priceUpdater().wakeUp();
  m_window.refreshViews(false); // days that are provisional, whose prices may be known now
}

void WindowCommands::showPrices() {
  PricesDialog(&m_window, listOf(m_window.store().portfolios())).execute();
  MainWindow::setNormalStatusText(restingStatusText()); // it says whether prices are made up
  m_window.refreshViews(false); // by the prices that were typed or accepted, or come from other sources
}

void WindowCommands::showToldDividends() {
  ToldDividendsDialog(&m_window, *m_window.totalCapital()).execute();
}

void WindowCommands::showOptions() {
  OptionsDialog dialog(&m_window, m_window.store().portfolios());
  dialog.execute();
  m_window.refreshViews(true); // also after Cancel: the caches and capital records may have been dropped
}

} // namespace Tallymoor
