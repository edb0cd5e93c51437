#include "RecordingPlatform.h"
#include "ShellTest.h"
#include "market/TallymoorInternet.h"
#include "shell/ViewDateRow.h"
#include "support/windows/RealKeys.h"
#include "widgets/InvestmentTree.h"
#include <array>
#include <filesystem>
#include <set>

namespace Tallymoor {
namespace {

/// Uses the menus, tool bars and keys of the real window with a portfolio "Trading" one by one.
class MenusTest : public ShellTest {
protected:
  MenusTest() {
    TestProfile::writeFile(
        recordsPath(),
        "<Portfolios><SharePortfolio><String>Trading</String><HeldShares/><SoldShares/><Dividends/>"
        "<CashReserve><CashEvent><Date>2/3/2026</Date><Constant>100.00</Constant><Constant>4</Constant>"
        "<String>DEPOSIT </String></CashEvent></CashReserve><String/></SharePortfolio></Portfolios>");
  }

  /// The menu panes of the menu bar.
  static std::vector<FXMenuPane*> panes(FXWindow& window) {
    std::vector<FXMenuPane*> found;
    for (FXMenuTitle* title : findAll<FXMenuTitle>(window))
      found.push_back(dynamic_cast<FXMenuPane*>(title->getMenu()));
    return found;
  }
  /// An entry's text with its mnemonic, "-" for a separator.
  static std::string written(FXWindow& entry) {
    const auto* command = dynamic_cast<FXMenuCommand*>(&entry);
    if (!command)
      return "-";
    const std::string keys = command->getAccelText().text();
    return std::string(command->getText().text()) + (keys.empty() ? "" : "\t" + keys);
  }
  static std::vector<std::string> entriesOf(FXMenuPane& pane) {
    std::vector<std::string> entries;
    for (FXWindow* entry = pane.getFirst(); entry; entry = entry->getNext())
      entries.push_back(written(*entry));
    return entries;
  }
  FXToolBar& commandBar() {
    for (FXToolBar* bar : findAll<FXToolBar>(tallymoor()))
      if (!dynamic_cast<FXMenuBar*>(bar))
        return *bar;
    throw std::runtime_error("there is no tool bar");
  }
  void pressEntry(const std::string& text) {
    FXMenuCommand* entry = menuEntry(text);
    ASSERT_TRUE(entry) << text;
    press(*entry);
  }
  /// Checks that the press opens a window with this title, and cancels it.
  template <class Press>
  void expectOpens(const std::string& title, Press pressIt) {
    bool opened = false;
    whenModal(title, [&](FXWindow& dialog) {
      opened = true;
      press(dialog, "Cancel");
    });
    pressIt();
    EXPECT_TRUE(opened) << title;
  }
};

TEST_F(MenusTest, TheMenusHoldTheirEntriesInOrder) {
  const std::vector<std::vector<std::string>> expected = {
      {"New Portfolio...\tCtrl+P", "New Watchlist...\tCtrl+W", "-", "New Portfolio Wizard...", "-",
       "Save...\tCtrl+S", "Import...", "Export...", "Backups...", "-", "Minimise", "-", "Exit\tAlt-F4"},
      {"Undo\tCtrl+Z", "Redo\tCtrl+Shift+Z", "-", "History..."},
      {"New Portfolio...\tCtrl+P", "Buy Shares...\tCtrl+B", "Sell Shares...\tCtrl+L",
       "Receive a Dividend...\tCtrl+D", "Receive Interest...\tCtrl+I", "Deposit Cash...", "Withdraw Cash..."},
      {"Report for last month...", "Report for last financial quarter...",
       "Report for last calendar quarter...", "Report for last financial year...",
       "Report for last calendar year...", "Custom Report..."},
      {"Check For Updates...\tCtrl+U", "Refresh Prices\tCtrl+R", "Prices...", "Told Dividends...", "-",
       "Options...\tCtrl+O"},
      {"Online Help...\tCtrl+F", "Feedback or Suggestion?", "-", "About...\tCtrl+A"}};
  const auto menus = panes(tallymoor());
  ASSERT_EQ(expected.size(), menus.size());
  for (std::size_t i = 0; i < menus.size(); ++i)
    EXPECT_EQ(expected[i], entriesOf(*menus[i]));
}

TEST_F(MenusTest, TheTitlesOfTheMenusHaveTheirKeys) {
  std::vector<std::string> titles;
  for (FXMenuTitle* title : findAll<FXMenuTitle>(tallymoor()))
    titles.push_back(title->getText().text());
  EXPECT_EQ((std::vector<std::string>{"File", "Edit", "Portfolios", "Reports", "Tools", "Help"}), titles);
}

TEST_F(MenusTest, EntriesThatOpenAWindowOpenTheirs) {
  const std::array<std::array<std::string, 2>, 14> opening = {
      {{"New Portfolio...", "New Portfolio"},
       {"New Watchlist...", "Add New Watchlist"},
       {"New Portfolio Wizard...", "Tallymoor - Getting Started"},
       {"Import...", "Import portfolios from:"},
       {"Export...", "Export portfolios to:"},
       {"Buy Shares...", "Choose Portfolio"},
       {"Sell Shares...", "Choose Portfolio"},
       {"Receive a Dividend...", "Choose Portfolio"},
       {"Receive Interest...", "Choose Portfolio"},
       {"Deposit Cash...", "Choose Portfolio"},
       {"Withdraw Cash...", "Choose Portfolio"},
       {"Prices...", "Prices"},
       {"Options...", "Tallymoor Options"},
       {"About...", "About Tallymoor"}}};
  for (const auto& [entry, title] : opening) {
    if (entry == "About..." || entry == "Prices...") {
      whenModal(title,
                [this, &entry](FXWindow& dialog) { press(dialog, entry == "About..." ? "OK" : "Close"); });
      pressEntry(entry);
      continue;
    }
    expectOpens(title, [&] { pressEntry(entry); });
  }
}

TEST_F(MenusTest, EntriesThatActDoSo) {
  const RecordingPlatform& platform = RecordingPlatform::install(profile(), {});
  std::filesystem::remove(recordsPath().toUTF8());
  pressEntry("Save...");
  EXPECT_TRUE(TestProfile::fileExists(recordsPath()));

  pressEntry("Online Help...");
  pressEntry("Feedback or Suggestion?");
  ASSERT_EQ(2u, platform.opened().size());
  EXPECT_TRUE(platform.opened()[1].starts_with(u"mailto:"));

  whenModal("TallymoorWindow::onCheckUpdates failed.", [this](FXWindow& box) { press(box, "OK"); });
  pressEntry("Check For Updates..."); // This test has no service.
  EXPECT_EQ(1u, boxes().size());

  PriceUpdater& updater = TallymoorInternet::Instance().priceUpdater();
  market().setCurrentPrice(u"ABC.AX", 2.5);
  updater.addCode(u"ABC.AX");
  updater.start();
  market().awaitRequests(MarketFixture::Page::Quote, 1);
  pressEntry("Refresh Prices");
  market().awaitRequests(MarketFixture::Page::Quote, 2);
  press(tallymoor(), "Price Update"); // The tool bar button.
  market().awaitRequests(MarketFixture::Page::Quote, 3);

  // Minimising needs a window manager and is tested in the tray's tests.
  EXPECT_EQ(FXSelector(FXTopWindow::ID_MINIMIZE), menuEntry("Minimise")->getSelector());
}

TEST_F(MenusTest, ExitSavesAndEndsTheProgram) {
  std::filesystem::remove(recordsPath().toUTF8());
  pressEntry("Exit");
  EXPECT_TRUE(TestProfile::fileExists(recordsPath()));
  EXPECT_TRUE(tallymoor().isShuttingDown());
}

TEST_F(MenusTest, ButtonsOfTheToolBarStandInOrderAndOpenTheirWindows) {
  const std::array<std::array<std::string, 2>, 9> opening = {{{"New Portfolio", "New Portfolio"},
                                                              {"New Watchlist", "Add New Watchlist"},
                                                              {"Buy Shares", "Choose Portfolio"},
                                                              {"Sell Shares", "Choose Portfolio"},
                                                              {"Receive a Dividend", "Choose Portfolio"},
                                                              {"Receive Interest", "Choose Portfolio"},
                                                              {"Deposit Cash", "Choose Portfolio"},
                                                              {"Withdraw Cash", "Choose Portfolio"},
                                                              {"Report", "Custom Report"}}};
  std::vector<std::string> tips, expected;
  for (FXButton* button : findAll<FXButton>(commandBar()))
    tips.push_back(button->getTipText().text());
  for (const auto& [tip, title] : opening) {
    expected.push_back(tip);
    expectOpens(title, [&] { press(tallymoor(), tip); });
  }
  expected.push_back("Price Update");
  EXPECT_EQ(expected, tips);
}

TEST_F(MenusTest, TheTabKeyComesRoundToEveryButtonOfTheWindow) {
  tallymoor().setFocus();
  runUntil([this] { return tallymoor().hasFocus(); });
  for (const FXuint tabKey : {FXuint(KEY_Tab), FXuint(KEY_ISO_Left_Tab)}) {
    const FXuint state = tabKey == KEY_Tab ? 0 : SHIFTMASK;
    tallymoor().portfolioTree()->setFocus();
    RealKeys keys(app());
    std::set<FXWindow*> stops;
    for (int i = 0; i < 60; ++i) {
      stops.insert(&focusedWidget(tallymoor()));
      keys.press(tallymoor(), tabKey, state);
    }
    for (FXButton* button : findAll<FXButton>(commandBar()))
      EXPECT_TRUE(stops.contains(button)) << button->getTipText().text();
    EXPECT_TRUE(stops.contains(tallymoor().onlineButton()));
    EXPECT_TRUE(stops.contains(tallymoor().viewDateRow()->field()));
    EXPECT_TRUE(stops.contains(tallymoor().portfolioTree()));
  }
}

TEST_F(MenusTest, HelpTextsOfTheToolBarSayWhatAButtonDoes) {
  const std::array<std::string, 10> expected = {"Creates a new portfolio",
                                                "Creates new watchlist",
                                                "Register the purchase of shares",
                                                "Register the sale of shares",
                                                "Register the receipt of a dividend",
                                                "Register interest received",
                                                "Register cash deposit",
                                                "Register cash withdrawal",
                                                "Generate a report",
                                                "Get the latest prices for held and watched shares"};
  const auto buttons = findAll<FXButton>(commandBar());
  ASSERT_EQ(expected.size(), buttons.size());
  for (std::size_t i = 0; i < buttons.size(); ++i)
    EXPECT_EQ(expected[i], buttons[i]->getHelpText().text());
}

} // namespace
} // namespace Tallymoor
