#include "shell/TallymoorWindow.h"
#include "desktop/SessionClient.h"
#include "foundation/Constants.h"
#include "foundation/Settings.h"
#include "foundation/UserInteraction.h"
#include "market/TallymoorInternet.h"
#include "shell/AdvertStrip.h"
#include "shell/ViewDateRow.h"
#include "shell/WarningStrip.h"
#include "shell/WindowCommands.h"
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
    FXMAPFUNC(SEL_TIMEOUT, TallymoorWindow::ID_HIDE_AFTER_BALLOON, TallymoorWindow::onHideAfterBalloon),
    FXMAPFUNC(SEL_TIMEOUT, TallymoorWindow::ID_TRAY_GONE, TallymoorWindow::onTrayGone),
    FXMAPFUNC(SEL_TIMEOUT, TallymoorWindow::ID_TRAY_MENU, TallymoorWindow::onTrayMenu),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_TABBOOK, TallymoorWindow::onTabBook),
    FXMAPFUNC(SEL_LEFTBUTTONPRESS, TallymoorWindow::ID_AD1, TallymoorWindow::onClickAd1),
    FXMAPFUNC(SEL_LEFTBUTTONPRESS, TallymoorWindow::ID_AD2, TallymoorWindow::onClickAd2),
    // The commands of the table.
    FXMAPFUNCS(SEL_COMMAND, TallymoorWindow::ID_ABOUT_TRAY, TallymoorWindow::ID_RESTORE,
               TallymoorWindow::onTableCommand),
    FXMAPFUNCS(SEL_COMMAND, TallymoorWindow::ID_NEW_PORTFOLIO, TallymoorWindow::ID_ABOUT,
               TallymoorWindow::onTableCommand),
    FXMAPFUNCS(SEL_UPDATE, TallymoorWindow::ID_NEW_PORTFOLIO, TallymoorWindow::ID_ABOUT,
               TallymoorWindow::onTableUpdate),
    FXMAPFUNC(SEL_COMMAND, TallymoorWindow::ID_STATUS, TallymoorWindow::onTableCommand),
    FXMAPFUNCS(SEL_COMMAND, TallymoorWindow::ID_FORWARD, TallymoorWindow::ID_BBACK,
               TallymoorWindow::onTableCommand),
    FXMAPFUNCS(SEL_UPDATE, TallymoorWindow::ID_FORWARD, TallymoorWindow::ID_BBACK,
               TallymoorWindow::onTableUpdate),
};

} // namespace

FXIMPLEMENT_ABSTRACT(TallymoorWindow, MainWindow, tallymoorWindowMap, ARRAYNUMBER(tallymoorWindowMap))

TallymoorWindow::TallymoorWindow(FXApp* app, WindowIcons& icons)
    : MainWindow(app, icons.big.get(), icons.mini.get()), m_icons(icons),
      m_session(UserInteraction::Instance()), m_commands(std::make_unique<WindowCommands>(*this, icons)) {
  new FXToolTip(app, TOOLTIP_VARIABLE);
  restorePlace();
  m_menus = m_commands->makeMenus(*menuBar());
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

void TallymoorWindow::buildToolBars() {
  m_toolBarRow = new FXHorizontalFrame(contentFrame(), LAYOUT_FILL_X, 0, 0, 0, 0, 2, 2, 2, 2, 6, 0);
  buildCommandBar(m_toolBarRow);
  m_viewDateRow = new ViewDateRow(m_toolBarRow, *this, m_commands->table());
  buildOnlineBar(m_toolBarRow);
}

void TallymoorWindow::buildCommandBar(FXComposite* parent) {
  m_commands->addButtons(
      *new FXToolBar(parent, FRAME_NONE | PACK_UNIFORM_HEIGHT, 0, 0, 0, 0, 2, 2, 2, 2, 2, 0));
}

void TallymoorWindow::buildOnlineBar(FXComposite* parent) {
  auto* bar = new FXToolBar(parent, LAYOUT_RIGHT | FRAME_NONE, 0, 0, 0, 0, 2, 2, 2, 2);
  m_onlineButton = new FXButton(
      bar, FXString("\t") + m_commands->table().at(ID_STATUS).tip, m_icons.online.get(), this, ID_STATUS,
      BUTTON_TOOLBAR | FRAME_RAISED | ICON_BEFORE_TEXT | LAYOUT_FIX_WIDTH, 0, 0, 0, 0, 4, 4, 4, 4);
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
