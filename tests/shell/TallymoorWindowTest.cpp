#include "ShellTest.h"
#include "foundation/FileOperations.h"
#include "support/windows/OnDisplay.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/SharesHeldTable.h"
#include "views/SharesHeldTreeItem.h"
#include "views/TotalCapTreeItem.h"
#include "widgets/GuiWakeUp.h"
#include "widgets/InvestmentTree.h"
#include "xml/CountryOfResidence.h"
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <fxkeys.h>
#include <set>
#include <thread>
#include <unistd.h>

namespace Tallymoor {
namespace {

const std::string HEAD = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                         "<!DOCTYPE Portfolios SYSTEM \"Tallymoor Records.dtd\">\n";

/// Records a button's text whenever the event loop runs timers.
class ButtonDiary : public FXObject {
public:
  struct Entry {
    std::string text, tip, help;
    bool operator==(const Entry&) const = default;
    friend void PrintTo(const Entry& entry, std::ostream* out) {
      *out << entry.text << ", " << entry.tip << ", " << entry.help;
    }
  };

  ButtonDiary(FXApp& app, FXButton& button) : m_app(app), m_button(button) { waitAgain(); }
  ~ButtonDiary() override { m_app.removeTimeout(this, 0); }

  long handle(FXObject*, FXSelector, void*) override {
    const Entry now{m_button.getText().text(), m_button.getTipText().text(), m_button.getHelpText().text()};
    if (m_entries.empty() || m_entries.back() != now) {
      m_entries.push_back(now);
      m_icons.push_back(m_button.getIcon());
    }
    waitAgain();
    return 1;
  }
  /// Looks again at the next event.
  void lookSoon() { m_app.addTimeout(this, 0, 0); }
  const std::vector<Entry>& entries() const { return m_entries; }
  const std::vector<FXIcon*>& icons() const { return m_icons; }

private:
  void waitAgain() { m_app.addTimeout(this, 0, 1); }

  FXApp& m_app;
  FXButton& m_button;
  std::vector<Entry> m_entries;
  std::vector<FXIcon*> m_icons;
};

class TallymoorWindowTest : public ShellTest {
protected:
  void makePortfolio(const std::string& name) {
    whenModal("New Portfolio", [this, name](FXWindow& dialog) {
      type(*find<FXTextField>(dialog), name);
      press(dialog, "OK");
    });
    press(tallymoor(), "New Portfolio");
  }

  /// Selects the portfolio in the list and confirms.
  void choose(const std::string& portfolio) {
    whenModal("Choose Portfolio", [this, portfolio](FXWindow& dialog) {
      press(dialog, portfolio);
      press(dialog, "OK");
    });
  }

  SharesHeldTable& heldTable(const String& portfolio) {
    return *tallymoor().totalCapital()->portfolioNode(portfolio)->sharesHeldItem()->table();
  }
};

/// Notes what the window shows while the start is under way, at its wizard.
class StartingWindowTest : public ShellTest {
protected:
  void useWizard(FXWindow& wizard) override {
    MainWindow& window = MainWindow::Instance();
    m_wasShown = window.shown();
    m_status = normalStatus();
    press(wizard, "Cancel");
  }
  static std::string normalStatus() {
    return MainWindow::Instance().statusBar()->getStatusLine()->getNormalText().text();
  }

  bool m_wasShown = false;
  std::string m_status;
};

TEST_F(StartingWindowTest, ItIsShownWhileItLoadsAndReadyOnlyWhenItHas) {
  EXPECT_TRUE(m_wasShown);
  EXPECT_EQ("Loading your portfolios...", m_status);
  EXPECT_EQ("Ready.", normalStatus());
}

TEST_F(TallymoorWindowTest, FirstStartOpens800By600At100And100) {
  EXPECT_EQ(800, tallymoor().getWidth());
  EXPECT_EQ(600, tallymoor().getHeight());
  EXPECT_EQ(100, tallymoor().getX());
  EXPECT_EQ(100, tallymoor().getY());
}

TEST_F(TallymoorWindowTest, FirstRunShowsAnEmptyTreeWithoutAnyMessage) {
  EXPECT_TRUE(boxes().empty());
  EXPECT_FALSE(tallymoor().store().loadFailed());
  ASSERT_NE(nullptr, tallymoor().totalCapital());
  EXPECT_TRUE(tallymoor().totalCapital()->portfolioNodes().empty());
  EXPECT_TRUE(tallymoor().portfolioTree()->isSound());
}

TEST_F(TallymoorWindowTest, TitleIsTheProgramsName) {
  EXPECT_EQ("Tallymoor", title(tallymoor()));
}

TEST_F(TallymoorWindowTest, SmallerThanTheMinimumSnapsBack) {
  tallymoor().resize(50, 50);
  letEventsPass();
  EXPECT_EQ(400, tallymoor().getHeight());
  FXWindow& online = *tallymoor().onlineButton();
  EXPECT_GE(tallymoor().getWidth(), online.getWidth() + button(tallymoor(), "Buy Shares").getWidth());
  EXPECT_LT(tallymoor().getWidth(), 800);
}

TEST_F(TallymoorWindowTest, SizeAndPlaceAreRemembered) {
  tallymoor().position(130, 140, 900, 650);
  letEventsPass();
  const Settings& settings = Settings::Instance();
  EXPECT_EQ(900u, settings.readUnsigned(u"Gui Settings", u"MainWidth"));
  EXPECT_EQ(650u, settings.readUnsigned(u"Gui Settings", u"MainHeight"));
  EXPECT_EQ(130u, settings.readUnsigned(u"Gui Settings", u"MainX"));
  EXPECT_EQ(140u, settings.readUnsigned(u"Gui Settings", u"MainY"));
}

/// A size reported by the window manager before the toolkit knows it.
TEST_F(TallymoorWindowTest, TheSizeOfTheEventIsHeldAndRemembered) {
  const auto sizeByServer = [this](unsigned width, unsigned height) {
    resizeOnDisplay(tallymoor(), width, height);
    letEventsPass();
  };
  const Settings& settings = Settings::Instance();
  sizeByServer(950, 650);
  sizeByServer(900, 620);
  EXPECT_EQ(900u, settings.readUnsigned(u"Gui Settings", u"MainWidth"));
  EXPECT_EQ(620u, settings.readUnsigned(u"Gui Settings", u"MainHeight"));
  sizeByServer(50, 60);
  EXPECT_GT(tallymoor().getWidth(), 300);
  EXPECT_EQ(400, tallymoor().getHeight());
  EXPECT_EQ(static_cast<unsigned>(tallymoor().getWidth()),
            settings.readUnsigned(u"Gui Settings", u"MainWidth"));
  EXPECT_EQ(400u, settings.readUnsigned(u"Gui Settings", u"MainHeight"));
}

TEST_F(TallymoorWindowTest, EscapeLeavesTheWindowWhereItIs) {
  tallymoor().setFocus();
  key(tallymoor(), KEY_Escape);
  letEventsPass();
  EXPECT_FALSE(tallymoor().isMinimized());
  EXPECT_TRUE(tallymoor().shown());
}

/// A stored position on a screen that does not exist.
class WindowOffTheScreenTest : public TallymoorWindowTest {
protected:
  WindowOffTheScreenTest() {
    Settings::Instance().writeUnsigned(u"Gui Settings", u"MainX", 30000);
    Settings::Instance().writeUnsigned(u"Gui Settings", u"MainY", 20000);
    Settings::Instance().writeUnsigned(u"Gui Settings", u"MainWidth", 9000);
    Settings::Instance().writeUnsigned(u"Gui Settings", u"MainHeight", 450);
  }
};

TEST_F(WindowOffTheScreenTest, IsBroughtBackWhole) {
  const FXWindow& screen = *tallymoor().getRoot();
  EXPECT_EQ(0, tallymoor().getX());
  EXPECT_EQ(screen.getHeight() - 450, tallymoor().getY());
  EXPECT_EQ(screen.getWidth(), tallymoor().getWidth());
  EXPECT_EQ(450, tallymoor().getHeight());
}

/// A stored size larger than the screen.
class WindowLargerThanTheScreenTest : public TallymoorWindowTest {
protected:
  WindowLargerThanTheScreenTest() {
    Settings::Instance().writeUnsigned(u"Gui Settings", u"MainHeight", 9000);
  }
};

TEST_F(WindowLargerThanTheScreenTest, LeavesRoomForItsTitle) {
  EXPECT_GT(tallymoor().getY(), 15);
  EXPECT_EQ(tallymoor().getRoot()->getHeight(), tallymoor().getY() + tallymoor().getHeight());
}

TEST_F(TallymoorWindowTest, NegativePlaceLeavesTheRememberedOneAlone) {
  tallymoor().position(130, 140, 900, 650);
  letEventsPass();
  tallymoor().move(-50, -60);
  letEventsPass();
  EXPECT_EQ(130u, Settings::Instance().readUnsigned(u"Gui Settings", u"MainX"));
  EXPECT_EQ(140u, Settings::Instance().readUnsigned(u"Gui Settings", u"MainY"));
}

TEST_F(TallymoorWindowTest, ThePlaceInACornerOfTheScreenIsRemembered) {
  tallymoor().position(0, 0, 900, 650);
  letEventsPass();
  EXPECT_EQ(0u, Settings::Instance().readUnsigned(u"Gui Settings", u"MainX", 1));
  EXPECT_EQ(0u, Settings::Instance().readUnsigned(u"Gui Settings", u"MainY", 1));
}

TEST_F(TallymoorWindowTest, NewPortfolioStandsInTreeRecordsAndFile) {
  makePortfolio("Trading");
  ASSERT_NE(nullptr, tallymoor().totalCapital()->portfolioNode(u"Trading"));
  command(TallymoorWindow::ID_SAVE);
  EXPECT_EQ(HEAD +
                "<Portfolios><SharePortfolio><String>Trading</String><HeldShares/><SoldShares/><Dividends/>"
                "<CashReserve/><String/></SharePortfolio></Portfolios>",
            TestProfile::readFile(recordsPath()));
}

TEST_F(TallymoorWindowTest, APurchaseGoesFromTheFormToTheTableTheFileAndTheCapitalRecord) {
  makePortfolio("Trading");
  market().addListing(u"ABC.AX", u"Abercorn", u"Australia");
  market().setCurrentPrice(u"ABC.AX", 12.34);
  market().setHistory(u"ABC.AX", Date(2026, 2, 2), Date(2026, 3, 2), 12.0);
  choose("Trading");
  whenModal("Buy Shares", [this](FXWindow& dialog) {
    type(field(dialog, "Stock code"), "ABC.AX");
    press(dialog, "Search for stock code");
  });
  whenModal("Stock Search", [this](FXWindow& search) { press(search, "OK"); });
  whenModal("Buy Shares", [this](FXWindow& dialog) {
    EXPECT_EQ("Abercorn in Australia", std::string(field(dialog, "Stock name").getText().text()));
    EXPECT_EQ(12.34, String(field(dialog, "Share price").getText().text()).toDouble());
    type(field(dialog, "Number bought"), "100");
    type(field(dialog, "Brokerage paid"), "50");
    press(dialog, "OK");
  });
  press(tallymoor(), "Buy Shares");

  SharesHeldTable& table = heldTable(u"Trading");
  ASSERT_TRUE(table.hasRow(u"ABC.AX"));
  EXPECT_EQ("100.00", std::string(table.getItemText(0, 1).text()));
  EXPECT_EQ("12.34", std::string(table.getItemText(0, 2).text()));

  leave();
  EXPECT_EQ(
      HEAD +
          "<Portfolios><SharePortfolio><String>Trading</String><HeldShares><HeldShare><String>ABC.AX</String>"
          "<BuyEvent><Date>3/3/2026</Date><Constant>100.00</Constant><Constant>12.3400</Constant>"
          "<Constant>50.00</Constant><String/></BuyEvent><Constant/><Constant/><Constant/></HeldShare>"
          "</HeldShares><SoldShares/><Dividends/><CashReserve><CashEvent><Date>3/3/2026</Date>"
          "<Constant>1284.00</Constant><Constant>2</Constant><String>BUY 100.00 of ABC.AX @ 12.3400</String>"
          "</CashEvent></CashReserve><String/></SharePortfolio></Portfolios>",
      TestProfile::readFile(recordsPath()));
  EXPECT_NE(std::string::npos,
            TestProfile::readFile(profile().dataFolder() + u"TradingCapRecord.xml")
                .find("<ShareVal Standing=\"open\"><String>ABC.AX</String><Constant>100.00</Constant>"));
  EXPECT_TRUE(TestProfile::fileExists(profile().cacheFolder() + u"PriceCache.ABC.AX.xml"));
}

TEST_F(TallymoorWindowTest, CancellingTheChoiceOfAPortfolioOpensNoForm) {
  makePortfolio("Trading");
  whenModal("Choose Portfolio", [this](FXWindow& dialog) {
    EXPECT_TRUE(shows(dialog, "Select the portfolio to register a share purchase for."));
    press(dialog, "Cancel");
  });
  command(TallymoorWindow::ID_BUY);
}

TEST_F(TallymoorWindowTest, ChoiceOfAPortfolioIsAskedWithNoneTooAndListsNothing) {
  whenModal("Choose Portfolio", [this](FXWindow& dialog) {
    EXPECT_TRUE(findAll<FXCheckButton>(dialog).empty());
    press(dialog, "Cancel");
  });
  command(TallymoorWindow::ID_BUY);
}

TEST_F(TallymoorWindowTest, APortfolioThatIsNotInTheRecordsCannotBeChosen) {
  makePortfolio("Trading");
  tallymoor().store().records().subElement(u"SharePortfolios").subElement(u"Name").setValue(u"Other");
  choose("Trading");
  answer("TallymoorWindow::onBuy failed. Exception : Failed to find the chosen portfolio", "OK");
  command(TallymoorWindow::ID_BUY);
}

TEST_F(TallymoorWindowTest, SaveWritesTheSplitterWidth) {
  find<FXSplitter>(tallymoor())->setSplit(0, 233);
  command(TallymoorWindow::ID_SAVE);
  EXPECT_EQ(233u, Settings::Instance().readUnsigned(u"Gui Settings", u"X Splitter Portfolios"));
}

TEST_F(TallymoorWindowTest, LeavingDeletesTheWarningsOfTheRun) {
  Settings::Instance().writeInt(u"Warnings", u"Trading CRW", 1);
  leave();
  EXPECT_FALSE(Settings::Instance().hasEntry(u"Warnings", u"Trading CRW"));
}

TEST_F(TallymoorWindowTest, LeavingTwiceSavesOnce) {
  makePortfolio("Trading");
  leave();
  const std::string saved = TestProfile::readFile(recordsPath());
  TestProfile::writeFile(recordsPath(), "changed since");
  leave();
  EXPECT_EQ("changed since", TestProfile::readFile(recordsPath()));
  EXPECT_NE(std::string::npos, saved.find("Trading"));
}

TEST_F(TallymoorWindowTest, AFailureThatEndsTheProgramIsToldAndTheRecordsAreSaved) {
  makePortfolio("Trading");
  whenModal("Tallymoor has to end because of a failure. It saves your records now; the state before\nstays "
            "beside them, in \"Portfolios.xml.bak\".\n Exception : out of luck",
            [this](FXWindow& box) { press(box, "OK"); });
  tallymoor().endAfterFailure(Exception(u"out of luck"));
  EXPECT_NE(std::string::npos, TestProfile::readFile(recordsPath()).find("<String>Trading</String>"));
}

TEST_F(TallymoorWindowTest, LeavingAsksAgainWhenTheRecordsCannotBeSaved) {
  makePortfolio("Trading");
  tallymoor().store().records().subElement(u"SharePortfolios").subElement(u"Name").setValue(u"A&B");
  const std::string failure =
      "XMLException occurred while saving your data. \nYou should load a previous data file.";
  const std::string question =
      "Your records could not be saved, and leaving now loses the changes since the last "
      "save.\nDo you want to try to save them again?";
  whenModal(failure, [this](FXWindow& box) { press(box, "OK"); });
  whenModal(question, [this](FXWindow& box) {
    tallymoor().store().records().subElement(u"SharePortfolios").subElement(u"Name").setValue(u"Trading");
    press(box, "Yes");
  });
  leave();
  EXPECT_NE(std::string::npos, TestProfile::readFile(recordsPath()).find("<String>Trading</String>"));
}

ssize_t writeToFullDisk(int, const void*, size_t) {
  errno = ENOSPC;
  return -1;
}

TEST_F(TallymoorWindowTest, AFullDiskIsToldOnceAndNothingIsLostUntilThereIsRoom) {
  makePortfolio("Trading");
  for (const String code : {u"ABC.AX", u"DEF.AX", u"GHI.AX"})
    TallymoorInternet::Instance().setCachedPrice(code, Date(2026, 3, 2), 2.5);
  FileOperations::current().write = writeToFullDisk;
  // An unexpected second box would fail the test.
  whenModal("Exception occurred while saving your data. \nYou should load a previous data file.",
            [this](FXWindow& box) {
              std::string text;
              for (const std::string& label : labels(box))
                text += label + " ";
              std::replace(text.begin(), text.end(), '\n', ' '); // A long text is wrapped.
              EXPECT_NE(std::string::npos, text.find("No space left on device")) << text;
              EXPECT_NE(std::string::npos, text.find("What you entered is still in Tallymoor.")) << text;
              press(box, "OK");
            });
  command(TallymoorWindow::ID_SAVE);
  FileOperations::current() = FileOperations::system();
  command(TallymoorWindow::ID_SAVE);
  EXPECT_NE(std::string::npos, TestProfile::readFile(recordsPath()).find("<String>Trading</String>"));
  for (const char* code : {"ABC.AX", "DEF.AX", "GHI.AX"})
    EXPECT_TRUE(TestProfile::fileExists(profile().cacheFolder() + u"PriceCache." + String(code) + u".xml"));
}

/// The records are written, the prices fail.
ssize_t writeNoPrices(int file, const void* bytes, size_t count) {
  const std::string path = std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(file));
  return path.find("/Cache/") == std::string::npos ? ::write(file, bytes, count)
                                                   : writeToFullDisk(file, bytes, count);
}

TEST_F(TallymoorWindowTest, PricesThatDoNotFitAreToldInOneBoxForAllCodes) {
  makePortfolio("Trading");
  for (const String code : {u"ABC.AX", u"DEF.AX", u"GHI.AX"})
    TallymoorInternet::Instance().setCachedPrice(code, Date(2026, 3, 2), 2.5);
  FileOperations::current().write = writeNoPrices;
  whenModal("TallymoorWindow::onSave failed. Exception : replaceFile - cannot write",
            [this](FXWindow& box) { press(box, "OK"); });
  command(TallymoorWindow::ID_SAVE);
  FileOperations::current() = FileOperations::system();
  EXPECT_NE(std::string::npos, TestProfile::readFile(recordsPath()).find("<String>Trading</String>"));
}

/// A folder in place of a code's file.
TEST_F(TallymoorWindowTest, APriceCacheThatCannotBeWrittenIsToldAndTheRecordsAreSaved) {
  makePortfolio("Trading");
  TallymoorInternet::Instance().setCachedPrice(u"ABC.AX", Date(2026, 3, 2), 2.5);
  std::filesystem::create_directory((profile().cacheFolder() + u"PriceCache.ABC.AX.xml").toUTF8());
  whenModal("TallymoorWindow::onSave failed. ", [this](FXWindow& box) { press(box, "OK"); });
  command(TallymoorWindow::ID_SAVE);
  EXPECT_NE(std::string::npos, TestProfile::readFile(recordsPath()).find("<String>Trading</String>"));
}

TEST_F(TallymoorWindowTest, AboutShowsTheVersion) {
  whenModal("About Tallymoor", [this](FXWindow& dialog) {
    EXPECT_TRUE(shows(dialog, "Brindlecove Tallymoor Version 1.3.1 (Build 510)"));
    press(dialog, "OK");
  });
  command(TallymoorWindow::ID_ABOUT);
}

TEST_F(TallymoorWindowTest, OnlineButtonGoesOfflineAndBack) {
  market().addListing(u"TST.AX", u"Testament Tools", u"Australia");
  FXButton& online = *tallymoor().onlineButton();
  tallymoor().updateStatus();
  EXPECT_EQ("Online", std::string(online.getTipText().text()));
  EXPECT_EQ("Press to disconnect", std::string(online.getHelpText().text()));
  command(TallymoorWindow::ID_STATUS);
  EXPECT_FALSE(TallymoorInternet::Instance().isOnline());
  EXPECT_EQ("Offline", std::string(online.getTipText().text()));
  EXPECT_EQ("Press to reconnect", std::string(online.getHelpText().text()));
  command(TallymoorWindow::ID_STATUS);
  EXPECT_TRUE(TallymoorInternet::Instance().isOnline());
  EXPECT_EQ("Online", std::string(online.getTipText().text()));
  EXPECT_EQ(String("test"), market().requested(MarketFixture::Page::Search).at(0));
}

TEST_F(TallymoorWindowTest, ReconnectingWithoutAnAnswerStaysOffline) {
  TallymoorInternet::Instance().goOffline();
  command(TallymoorWindow::ID_STATUS);
  EXPECT_FALSE(TallymoorInternet::Instance().isOnline());
  EXPECT_EQ("Offline", std::string(tallymoor().onlineButton()->getTipText().text()));
  EXPECT_TRUE(boxes().empty());
}

TEST_F(TallymoorWindowTest, ReconnectingShowsThatItTriesAndThatItFailed) {
  using Entry = ButtonDiary::Entry;
  FXButton& online = *tallymoor().onlineButton();
  command(TallymoorWindow::ID_STATUS); // Goes offline.
  FXIcon* const offlineIcon = online.getIcon();
  ButtonDiary diary(app(), online);
  runUntil([&] { return !diary.entries().empty(); });
  diary.lookSoon();
  // The diary looks again after at least a millisecond, so the answer must not come earlier.
  market().stall(MarketFixture::Page::Search);
  std::thread answering([this] {
    market().awaitRequests(MarketFixture::Page::Search, 1);
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    market().release(MarketFixture::Page::Search);
  });
  command(TallymoorWindow::ID_STATUS);
  answering.join();
  runUntil([&] { return diary.entries().size() >= 4; });
  const Entry offline{"offline", "Offline", "Press to reconnect"};
  EXPECT_EQ((std::vector<Entry>{offline,
                                {"trying", "Offline", "Press to reconnect"},
                                {"Failed", "Failedto connect", "Failed to reconnect to the network"},
                                offline}),
            diary.entries());
  ASSERT_EQ(4u, diary.icons().size());
  EXPECT_NE(offlineIcon, diary.icons().at(1));
  EXPECT_EQ(offlineIcon, diary.icons().at(3));
}

TEST_F(TallymoorWindowTest, FailureInsideTheAboutBoxNamesTheCommand) {
  GuiWakeUp failure(&app(), [] { throw Exception(u"test"); });
  whenModal("About Tallymoor", [&failure](FXWindow&) { failure.wake(); });
  answerKind(BoxKind::Error, "TallymoorWindow::onAbout failed. Exception : test", "OK");
  command(TallymoorWindow::ID_ABOUT);
}

TEST_F(TallymoorWindowTest, RefreshingPricesFetchesThemNow) {
  market().setCurrentPrice(u"ABC.AX", 2.5);
  PriceUpdater& updater = TallymoorInternet::Instance().priceUpdater();
  updater.addCode(u"ABC.AX");
  updater.start();
  market().awaitRequests(MarketFixture::Page::Quote, 1);
  command(TallymoorWindow::ID_REFRESH_PRICES); // The next pass would start after ten minutes.
  market().awaitRequests(MarketFixture::Page::Quote, 2);
  EXPECT_EQ(String("ABC.AX"), market().requested(MarketFixture::Page::Quote).at(1));
}

/// Checks that the window handles every menu entry and tool bar button.
TEST_F(TallymoorWindowTest, NoEntryDoesNothing) {
  std::set<std::string> entries;
  for (FXWindow* child = tallymoor().getRoot()->getFirst(); child; child = child->getNext())
    if (auto* pane = dynamic_cast<FXMenuPane*>(child))
      for (FXMenuCommand* entry : findAll<FXMenuCommand>(*pane)) {
        EXPECT_EQ(&tallymoor(), entry->getTarget());
        EXPECT_NE(0u, entry->getSelector());
        entries.insert(entry->getText().text());
      }
  EXPECT_TRUE(entries.count("Save..."));
  EXPECT_TRUE(entries.count("Exit"));
  EXPECT_TRUE(entries.count("Minimise"));
}

class SecondStartTest : public TallymoorWindowTest {
protected:
  SecondStartTest() {
    TestProfile::writeFile(recordsPath(),
                           HEAD + "<Portfolios><SharePortfolio><String>Trading</String><HeldShares/>"
                                  "<SoldShares/><Dividends/><CashReserve/><String>^AORD</String>"
                                  "</SharePortfolio></Portfolios>");
    market().setCurrentPrice(u"^AORD", 8000.0);
    market().setHistory(u"^AORD", Date(2026, 1, 1), Date(2026, 3, 2), 8000.0);
  }
};

TEST_F(SecondStartTest, ShowsWhatWasSaved) {
  EXPECT_NE(nullptr, tallymoor().totalCapital()->portfolioNode(u"Trading"));
  EXPECT_TRUE(boxes().empty());
}

class CorruptRecordsTest : public TallymoorWindowTest {
protected:
  CorruptRecordsTest() {
    TestProfile::writeFile(recordsPath(), "<Portfolios><SharePort");
    whenModal("BEFORE EXITING, please backup \"Portfolios.xml\"\n",
              [this](FXWindow& box) { press(box, "OK"); });
  }
};

TEST_F(CorruptRecordsTest, LeavingWithNoLeavesTheFileByteForByte) {
  EXPECT_TRUE(tallymoor().store().loadFailed());
  EXPECT_TRUE(tallymoor().totalCapital()->portfolioNodes().empty());
  whenModal("Since there was a problem when you opened your\n", [this](FXWindow& box) { press(box, "No"); });
  leave();
  EXPECT_EQ("<Portfolios><SharePort", TestProfile::readFile(recordsPath()));
}

class FirstStartTest : public TallymoorWindowTest {
protected:
  FirstStartTest() {
    Settings::Instance().deleteEntry(u"Config", u"Country");
    CountryOfResidence::destroyInstance();
    whenModal("Country of Residence", [this](FXWindow& dialog) {
      EXPECT_TRUE(shows(dialog, "What is your country of residence for tax purposes?"));
      press(dialog, "United States");
      press(dialog, "OK");
    });
  }
  ~FirstStartTest() override { CountryOfResidence::destroyInstance(); }
};

TEST_F(FirstStartTest, AsksForTheCountryBeforeAnyDataExists) {
  EXPECT_EQ(String("United States"), Settings::Instance().readString(u"Config", u"Country"));
  EXPECT_EQ(String("United States"), CountryOfResidence::Instance().country());
}

class BrokenLocatorsTest : public TallymoorWindowTest {
protected:
  BrokenLocatorsTest() {
    TestProfile::writeFile(profile().configFolder() + u"CodeSearchLocators.xml",
                           "<CodeSearchLocators active=\"gone\" version=\"1\"/>");
    whenModal("TallymoorInternet::TallymoorInternet - failed to find a code search locator",
              [this](FXWindow& box) { press(box, "OK"); });
  }
  bool opensWizard() override { return false; }
};

TEST_F(BrokenLocatorsTest, StartIsReportedAndTheWindowStaysOpen) {
  ASSERT_EQ(1u, boxes().size());
  EXPECT_EQ("Failure during startup. You may need to restart.\n HTMLException : "
            "TallymoorInternet::TallymoorInternet - "
            "failed to find a code search locator",
            boxes()[0]);
  EXPECT_TRUE(tallymoor().store().loadFailed());
  EXPECT_TRUE(tallymoor().shown());
  whenModal("Since there was a problem when you opened your\n", [this](FXWindow& box) { press(box, "No"); });
  leave();
}

TEST_F(BrokenLocatorsTest, CommandsThatCannotWorkSayWhatIsMissing) {
  answer("TallymoorWindow::onNewPortfolio failed. Exception : There was a failure during startup. Please "
         "restart Tallymoor",
         "OK");
  command(TallymoorWindow::ID_NEW_PORTFOLIO);
  answer("TallymoorWindow::onImport failed. Exception : There was a failure during startup. Please restart "
         "Tallymoor",
         "OK");
  command(TallymoorWindow::ID_IMPORT);
  const std::string missing =
      "HTMLException : TallymoorInternet::TallymoorInternet - failed to find a code search locator";
  answer("TallymoorWindow::onChangeStatus failed. " + missing, "OK");
  command(TallymoorWindow::ID_STATUS);
  answer("TallymoorWindow::onRefreshPrices failed. " + missing, "OK");
  command(TallymoorWindow::ID_REFRESH_PRICES);
}

} // namespace
} // namespace Tallymoor
