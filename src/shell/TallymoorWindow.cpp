#include "shell/TallymoorWindow.h"
#include "desktop/SessionClient.h"
#include "foundation/Constants.h"
#include "foundation/Settings.h"
#include "foundation/UserInteraction.h"
#include "market/TallymoorInternet.h"
#include "shell/AdvertStrip.h"
#include "shell/ViewDateRow.h"
#include "shell/WarningStrip.h"
#include "updates/ProgramUpdater.h"
#include "views/NodeIcons.h"
#include "views/PriceWatch.h"
#include "views/TotalCapTreeItem.h"
#include "views/WatchlistRootTreeItem.h"
#include "widgets/Colours.h"
#include "widgets/InvestmentTree.h"
#include "widgets/PageSwitcher.h"
#include "widgets/TextSize.h"
#include "widgets/ToolkitText.h"
#include <algorithm>

namespace Tallymoor {

namespace {

constexpr int TREE_WIDTH = 150;
constexpr FXint SEPARATOR_WIDTH = 2;
constexpr FXint TITLE_BAR_HEIGHT = 24; ///< room for what the window manager puts above the window

/// "DarkOliveGreen4", laid over white.
FXColor portfolioTreeColour() {
  return makeColour(110, 139, 61, 100);
}

/// "SteelBlue", the same.
FXColor watchlistTreeColour() {
  return makeColour(70, 130, 180, 100);
}

FXDEFMAP(TallymoorWindow)
tallymoorWindowMap[] = {
    FXMAPFUNC(SEL_CONFIGURE, MainWindow::ID_MAINWINDOW, TallymoorWindow::onResize),
    FXMAPFUNC(SEL_KEYPRESS, 0, TallymoorWindow::onKeyPress),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_ABOUT_TRAY, TallymoorWindow::onAbout),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_RESTORE, TallymoorWindow::onRestore),
    FXMAPFUNC(SEL_TIMEOUT, TallymoorWindow::ID_HIDE_AFTER_BALLOON, TallymoorWindow::onHideAfterBalloon),
    FXMAPFUNC(SEL_TIMEOUT, TallymoorWindow::ID_TRAY_GONE, TallymoorWindow::onTrayGone),
    FXMAPFUNC(SEL_TIMEOUT, TallymoorWindow::ID_TRAY_MENU, TallymoorWindow::onTrayMenu),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_TABBOOK, TallymoorWindow::onTabBook),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_NEW_PORTFOLIO, TallymoorWindow::onNewPortfolio),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_NEW_WATCHLIST, TallymoorWindow::onNewWatchlist),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_SAVE, TallymoorWindow::onSave),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_WIZARD, TallymoorWindow::onWizard),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_IMPORT, TallymoorWindow::onImport),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_EXPORT, TallymoorWindow::onExport),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_BUY, TallymoorWindow::onBuy),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_SELL, TallymoorWindow::onSell),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_DIVIDENDS, TallymoorWindow::onDividends),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_INTEREST, TallymoorWindow::onInterest),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_DEPOSIT_CASH, TallymoorWindow::onDepositCash),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_WITHDRAW_CASH, TallymoorWindow::onWithdrawCash),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_REPORT_LAST_MONTH, TallymoorWindow::onReportLastMonth),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_REPORT_LAST_FQ, TallymoorWindow::onReportLastFQ),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_REPORT_LAST_CQ, TallymoorWindow::onReportLastCQ),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_REPORT_LAST_FY, TallymoorWindow::onReportLastFY),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_REPORT_LAST_CY, TallymoorWindow::onReportLastCY),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_REPORT_CUSTOM, TallymoorWindow::onReportCustom),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_CHECK_UPDATES, TallymoorWindow::onCheckUpdates),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_REFRESH_PRICES, TallymoorWindow::onRefreshPrices),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_SETTINGS, TallymoorWindow::onSettings),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_FAQ, TallymoorWindow::onFAQ),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_FEEDBACK, TallymoorWindow::onFeedback),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_ABOUT, TallymoorWindow::onAbout),
    FXMAPFUNC(SEL_LEFTBUTTONPRESS, TallymoorWindow::ID_AD1, TallymoorWindow::onClickAd1),
    FXMAPFUNC(SEL_LEFTBUTTONPRESS, TallymoorWindow::ID_AD2, TallymoorWindow::onClickAd2),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_STATUS, TallymoorWindow::onChangeStatus),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_FORWARD, TallymoorWindow::onForwardViewDate),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_FFORWARD, TallymoorWindow::onFForwardViewDate),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_BACK, TallymoorWindow::onBackViewDate),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_BBACK, TallymoorWindow::onBBackViewDate),
};

} // namespace

FXIMPLEMENT_ABSTRACT(TallymoorWindow, MainWindow, tallymoorWindowMap, ARRAYNUMBER(tallymoorWindowMap))

TallymoorWindow::TallymoorWindow(FXApp* app, WindowIcons& icons)
    : MainWindow(app, icons.big.get(), icons.mini.get()), m_icons(icons),
      m_session(UserInteraction::Instance()) {
  new FXToolTip(app, TOOLTIP_VARIABLE);
  restorePlace();
  buildMenus();
  buildToolBars();
  buildTabs();
  m_warnings = new WarningStrip(panelFrame());
  m_adverts = new AdvertStrip(panelFrame(), this, ID_AD1, ID_AD2);
  buildTray();
  m_programUpdater = std::make_unique<ProgramUpdater>();
  buildSessionClient();
}

// Views first, then the portfolios that they show, then the records.
TallymoorWindow::~TallymoorWindow() {
  BigMutexLock lock;
  m_sessionClient.reset();
  m_programUpdater->stopAndJoin();
  m_advertThread.reset();
  Date::clearFixedDate();
  if (TallymoorInternet::exists())
    TallymoorInternet::Instance().priceUpdater().removeObserver(this);
  closeViews();
  store().clear();
  m_menus.clear();
  m_tray.reset();
  for (const FXSelector timer : {ID_HIDE_AFTER_BALLOON, ID_TRAY_GONE, ID_TRAY_MENU})
    getApp()->removeTimeout(this, timer);
}

void TallymoorWindow::applicationTitle(String& title) const {
  title = APP_NAME;
}

void TallymoorWindow::restorePlace() {
  const Settings& settings = Settings::Instance();
  const String section = u"Gui Settings";
  position(static_cast<FXint>(settings.readUnsigned(section, u"MainX", 100)),
           static_cast<FXint>(settings.readUnsigned(section, u"MainY", 100)),
           static_cast<FXint>(settings.readUnsigned(section, u"MainWidth", scaledToText(800))),
           static_cast<FXint>(settings.readUnsigned(section, u"MainHeight", scaledToText(600))));
}

// A first start on a small screen, or a larger screen that is gone, would leave a part of it out of reach.
void TallymoorWindow::keepOnScreen() {
  const FXint screenWidth = getRoot()->getWidth(), screenHeight = getRoot()->getHeight();
  const FXint width = std::min(getWidth(), screenWidth);
  const FXint height = std::min(getHeight(), screenHeight - TITLE_BAR_HEIGHT);
  position(std::clamp(getX(), 0, screenWidth - width),
           std::clamp(getY(), TITLE_BAR_HEIGHT, screenHeight - height), width, height);
}

FXMenuPane* TallymoorWindow::addMenu(const char* title) {
  m_menus.push_back(std::make_unique<FXMenuPane>(this));
  new FXMenuTitle(menuBar(), title, nullptr, m_menus.back().get());
  return m_menus.back().get();
}

void TallymoorWindow::addEntry(FXMenuPane* menu, const char* label, FXSelector command) {
  new FXMenuCommand(menu, label, nullptr, this, command);
}

void TallymoorWindow::buildMenus() {
  FXMenuPane* file = addMenu("&File");
  addEntry(file, "New &Portfolio...\tCtrl+P", ID_NEW_PORTFOLIO);
  addEntry(file, "New &Watchlist...\tCtrl+W", ID_NEW_WATCHLIST);
  new FXMenuSeparator(file);
  addEntry(file, "New Portfolio &Wizard...", ID_WIZARD);
  new FXMenuSeparator(file);
  addEntry(file, "&Save...\tCtrl+S", ID_SAVE);
  addEntry(file, "&Import...", ID_IMPORT);
  addEntry(file, "&Export...", ID_EXPORT);
  new FXMenuSeparator(file);
  addEntry(file, "&Minimise", FXTopWindow::ID_MINIMIZE);
  new FXMenuSeparator(file);
  addEntry(file, "E&xit\tAlt-F4", ID_SHUTDOWN);

  FXMenuPane* portfolios = addMenu("&Portfolios");
  addEntry(portfolios, "&New Portfolio...\tCtrl+P", ID_NEW_PORTFOLIO);
  addEntry(portfolios, "&Buy Shares...\tCtrl+B", ID_BUY);
  addEntry(portfolios, "&Sell Shares...\tCtrl+L", ID_SELL);
  addEntry(portfolios, "Receive a &Dividend...\tCtrl+D", ID_DIVIDENDS);
  addEntry(portfolios, "Receive &Interest...\tCtrl+I", ID_INTEREST);
  addEntry(portfolios, "Deposit &Cash...", ID_DEPOSIT_CASH);
  addEntry(portfolios, "&Withdraw Cash...", ID_WITHDRAW_CASH);

  FXMenuPane* reports = addMenu("&Reports");
  addEntry(reports, "Report for last &month...", ID_REPORT_LAST_MONTH);
  addEntry(reports, "Report for last &financial quarter...", ID_REPORT_LAST_FQ);
  addEntry(reports, "Report for last &calendar quarter...", ID_REPORT_LAST_CQ);
  addEntry(reports, "Report for last financial &year...", ID_REPORT_LAST_FY);
  addEntry(reports, "Report for last ca&lendar year...", ID_REPORT_LAST_CY);
  addEntry(reports, "Custom &Report...", ID_REPORT_LAST_CY); // a period of one's own is the tool bar's

  FXMenuPane* tools = addMenu("&Tools");
  addEntry(tools, "Check For &Updates...\tCtrl+U", ID_CHECK_UPDATES);
  addEntry(tools, "Refresh &Prices\tCtrl+R", ID_REFRESH_PRICES);
  new FXMenuSeparator(tools);
  addEntry(tools, "&Options...\tCtrl+O", ID_SETTINGS);

  FXMenuPane* help = addMenu("&Help\tCtrl+H");
  addEntry(help, "&Online Help...\tCtrl+F", ID_FAQ);
  addEntry(help, "Feedback or Suggestion?", ID_FEEDBACK);
  new FXMenuSeparator(help);
  addEntry(help, "&About...\tCtrl+A", ID_ABOUT);
}

void TallymoorWindow::buildToolBars() {
  m_toolBarRow = new FXHorizontalFrame(contentFrame(), LAYOUT_FILL_X, 0, 0, 0, 0, 2, 2, 2, 2, 6, 0);
  buildCommandBar(m_toolBarRow);
  m_viewDateRow = new ViewDateRow(m_toolBarRow, *this, m_icons);
  buildOnlineBar(m_toolBarRow);
}

void TallymoorWindow::buildCommandBar(FXComposite* parent) {
  auto* bar = new FXToolBar(parent, FRAME_NONE | PACK_UNIFORM_HEIGHT, 0, 0, 0, 0, 2, 2, 2, 2, 2, 0);
  const auto button = [this, bar](const char* tip, const std::unique_ptr<FXIcon>& icon, FXSelector command) {
    new FXButton(bar, tip, icon.get(), this, command, BUTTON_TOOLBAR | FRAME_RAISED, 0, 0, 0, 0, 3, 3, 4, 4);
  };
  const auto gap = [bar](int separators) {
    for (int i = 0; i < separators; ++i)
      new FXFrame(bar, LAYOUT_FIX_WIDTH, 0, 0, SEPARATOR_WIDTH);
  };
  button("\tNew Portfolio\tCreates a new portfolio", m_icons.newPortfolio, ID_NEW_PORTFOLIO);
  button("\tNew Watchlist\tCreates new watchlist", m_icons.newWatchlist, ID_NEW_WATCHLIST);
  gap(3);
  button("\tBuy Shares\tRegister the purchase of shares", m_icons.buy, ID_BUY);
  button("\tSell Shares\tRegister the sale of shares", m_icons.sell, ID_SELL);
  gap(2);
  button("\tReceive a Dividend\tRegister the receipt of a dividend", m_icons.dividend, ID_DIVIDENDS);
  button("\tReceive Interest\tRegister interest received", m_icons.interest, ID_INTEREST);
  gap(2);
  button("\tDeposit Cash\tRegister cash deposit", m_icons.deposit, ID_DEPOSIT_CASH);
  button("\tWithdraw Cash\tRegister cash withdrawal", m_icons.withdraw, ID_WITHDRAW_CASH);
  gap(3);
  button("\tReport\tGenerate a report", m_icons.report, ID_REPORT_CUSTOM);
  gap(3);
  button("\tPrice Update\tGet the latest prices for held and watched shares", m_icons.priceUpdate,
         ID_REFRESH_PRICES);
}

void TallymoorWindow::buildOnlineBar(FXComposite* parent) {
  auto* bar = new FXToolBar(parent, LAYOUT_RIGHT | FRAME_NONE, 0, 0, 0, 0, 2, 2, 2, 2);
  m_onlineButton = new FXButton(bar, "\tOnline\tPress to go offline", m_icons.online.get(), this, ID_STATUS,
                                BUTTON_TOOLBAR | FRAME_RAISED | ICON_BEFORE_TEXT | LAYOUT_FIX_WIDTH, 0, 0, 0,
                                0, 4, 4, 4, 4);
}

void TallymoorWindow::buildTabs() {
  m_tabBook = new FXTabBook(contentFrame(), this, ID_TABBOOK, LAYOUT_FILL_X | LAYOUT_FILL_Y);
  m_portfolios = buildTab("  Portfolios  ", portfolioTreeColour(), u"X Splitter Portfolios");
  m_watchlists = buildTab("  Watchlists  ", watchlistTreeColour(), u"X Splitter Watchlists");
}

TallymoorWindow::Tab TallymoorWindow::buildTab(const char* label, FXColor treeColour,
                                               const String& widthKey) {
  Tab tab;
  tab.widthKey = widthKey;
  (new FXTabItem(m_tabBook, label))->setFont(boldFont());
  tab.splitter = new FXSplitter(m_tabBook, SPLITTER_HORIZONTAL | SPLITTER_TRACKING | FRAME_RAISED |
                                               LAYOUT_FILL_X | LAYOUT_FILL_Y);
  const auto half = [&tab] {
    return new FXVerticalFrame(tab.splitter, FRAME_SUNKEN | LAYOUT_FILL_X | LAYOUT_FILL_Y, 0, 0, 0, 0, 0, 0,
                               0, 0, 0, 0);
  };
  tab.tree = new InvestmentTree(half(), treeColour, FXRGB(0, 0, 0));
  tab.tree->setSwitcher(new PageSwitcher(half(), LAYOUT_FILL_X | LAYOUT_FILL_Y));
  tab.splitter->setSplit(0, static_cast<FXint>(Settings::Instance().readUnsigned(u"Gui Settings", widthKey,
                                                                                 scaledToText(TREE_WIDTH))));
  return tab;
}

void TallymoorWindow::create() {
  BigMutexLock lock;
  m_icons.create();
  keepOnScreen();
  m_onlineButton->setWidth(normalFont()->getTextWidth("offline") + m_icons.online->getWidth() + 24);
  MainWindow::create();
  m_sessionClient->connect();
  loadUnderProgress();
}

} // namespace Tallymoor
