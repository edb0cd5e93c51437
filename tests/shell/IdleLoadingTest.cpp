#include "ShellTest.h"
#include "foundation/BigMutex.h"
#include "shell/TrayTip.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/TotalCapTreeItem.h"
#include "widgets/InvestmentTree.h"
#include <gmock/gmock.h>

namespace Tallymoor {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

std::string portfolioText(const std::string& name, const std::string& code) {
  return "<SharePortfolio><String>" + name + "</String><HeldShares><HeldShare><String>" + code +
         "</String><BuyEvent><Date>2/2/2026</Date><Constant>100.00</Constant><Constant>10.0000</Constant>"
         "<Constant>0.00</Constant><String/></BuyEvent><Constant/><Constant/><Constant/></HeldShare>"
         "</HeldShares><SoldShares/><Dividends/><CashReserve/><String/></SharePortfolio>";
}

/// Notes what the status line shows when the load begins.
class NotingWindow : public TallymoorWindow {
public:
  using TallymoorWindow::TallymoorWindow;
  void runLengthyFunction(Progress& progress, int argument) override {
    if (statusAtLoad.empty())
      statusAtLoad = statusBar()->getStatusLine()->getText().text();
    TallymoorWindow::runLengthyFunction(progress, argument);
  }
  std::string statusAtLoad;
};

/// The end of the start, when the window can be used and the records are brought up to date. "Mining" holds
/// 100 MIN.AX at 5.00, "Trading" 100 ABC.AX at 10.00; both at 10.00 when they were bought.
class IdleLoadingTest : public ShellTest {
protected:
  IdleLoadingTest() {
    TestProfile::writeFile(recordsPath(), "<Portfolios>" + portfolioText("Mining", "MIN.AX") +
                                              portfolioText("Trading", "ABC.AX") + "</Portfolios>");
    market().setHistory(u"ABC.AX", Date(2026, 1, 2), Date(2026, 3, 3), 10.0);
    market().setHistory(u"MIN.AX", Date(2026, 1, 2), Date(2026, 2, 13), 10.0);
    market().setHistory(u"MIN.AX", Date(2026, 2, 16), Date(2026, 3, 3), 5.0);
  }

  /// Without the rest of the start, which each test goes through by itself.
  void SetUp() override {
    m_lock.emplace(); // it stands still under a handler
    WindowTest::SetUp();
  }
  std::unique_ptr<TallymoorWindow> makeTallymoor(FXApp* app, WindowIcons& icons) override {
    return std::make_unique<NotingWindow>(app, icons);
  }
  void TearDown() override {
    m_lock.reset();
    ShellTest::TearDown();
  }
  void letItGoOn() { m_lock.reset(); }
  void letItLoad() {
    letItGoOn();
    EXPECT_TRUE(runUntil([this] { return tallymoor().isReady(); }));
  }
  SharePortfolioTreeItem& node(const String& name) {
    return *tallymoor().totalCapital()->portfolioNode(name);
  }
  std::string status() { return tallymoor().statusBar()->getStatusLine()->getNormalText().text(); }
  std::vector<std::string> shown() { return labels(*tallymoor().totalCapital()->madePage()); }
  void awaitSplit(const std::string& code, const std::string& button) {
    whenModal("Possible share split", [this, code, button](FXWindow& dialog) {
      EXPECT_THAT(labels(dialog), Contains(testing::HasSubstr("with code " + code)));
      m_asked.push_back(code);
      press(dialog, button);
    });
  }

  std::vector<std::string> m_asked;

private:
  std::optional<BigMutexLock> m_lock;
};

TEST_F(IdleLoadingTest, TheWindowIsUsableBeforeAndReadyAfterwards) {
  EXPECT_EQ("Loading your portfolios...", dynamic_cast<NotingWindow&>(tallymoor()).statusAtLoad);
  EXPECT_TRUE(tallymoor().loadEnded());
  EXPECT_FALSE(tallymoor().isReady());
  EXPECT_EQ("Loading your portfolios...", status());
  EXPECT_EQ(tallymoor().totalCapital(), tallymoor().portfolioTree()->shownItem());
  ASSERT_EQ(2u, tallymoor().totalCapital()->portfolioNodes().size());
  EXPECT_THAT(shown(), Contains("Capital in Mining"));
  EXPECT_THAT(shown(), Not(Contains(testing::HasSubstr("$"))));
  awaitSplit("MIN.AX", "Cancel");
  letItLoad();
  EXPECT_EQ("Ready.", status());
  EXPECT_THAT(shown(), testing::IsSupersetOf({"$500.00", "$1,000.00", "$1,500.00"}));
  EXPECT_THAT(m_asked, ElementsAre("MIN.AX"));
}

TEST_F(IdleLoadingTest, AQuestionWaitsUntilADialogIsClosed) {
  EXPECT_FALSE(tallymoor().isReady());
  whenModal("About Tallymoor", [this](FXWindow& dialog) {
    letEventsPass();
    EXPECT_THAT(m_asked, IsEmpty());
    EXPECT_FALSE(tallymoor().isReady());
    press(dialog, "OK");
  });
  awaitSplit("MIN.AX", "Cancel");
  letItGoOn();
  command(TallymoorWindow::ID_ABOUT);
  letItLoad();
  EXPECT_THAT(m_asked, ElementsAre("MIN.AX"));
}

TEST_F(IdleLoadingTest, LeavingMeanwhileKeepsTheRecords) {
  letItGoOn();
  leave();
  EXPECT_EQ(nullptr, tallymoor().portfolioTree()->firstRoot());
  letEventsPass();
  EXPECT_THAT(boxes(), IsEmpty());
  EXPECT_THAT(m_asked, IsEmpty());
  const std::string after = TestProfile::readFile(recordsPath());
  EXPECT_THAT(after, testing::HasSubstr("MIN.AX"));
  EXPECT_THAT(after, testing::HasSubstr("ABC.AX"));
}

TEST_F(IdleLoadingTest, TheTrayShowsNoGainBefore) {
  awaitSplit("MIN.AX", "Cancel");
  letItLoad();
  leave();
  deleteWindow();
  gateway().restart();
  // The second start of the day finds records of today.
  const std::unique_ptr<MainWindow> next = makeWindow(&app());
  auto& window = dynamic_cast<TallymoorWindow&>(*next);
  {
    const BigMutexLock lock;
    window.create();
    EXPECT_EQ(std::nullopt, trayTip(*window.totalCapital(), String()));
  }
  awaitReady(window);
  const BigMutexLock lock;
  EXPECT_NE(std::nullopt, trayTip(*window.totalCapital(), String()));
}

TEST_F(IdleLoadingTest, AViewDateMeanwhileIsThatOfAllFigures) {
  tallymoor().setViewDate(Date(2026, 2, 13));
  letItLoad();
  EXPECT_EQ("You are looking at 13/02/2026, not at today.", status());
  EXPECT_THAT(shown(), testing::IsSupersetOf({"$1,000.00", "$2,000.00"})) << "before the price has halved";
}

/// Both portfolios hold stock whose price has halved.
class QuestionsOfTheStartTest : public IdleLoadingTest {
protected:
  QuestionsOfTheStartTest() { market().setHistory(u"ABC.AX", Date(2026, 2, 16), Date(2026, 3, 3), 5.0); }
};

TEST_F(QuestionsOfTheStartTest, ComeInTheOrderOfTheTree) {
  awaitSplit("MIN.AX", "OK");
  awaitSplit("ABC.AX", "Cancel");
  letItLoad();
  EXPECT_THAT(m_asked, ElementsAre("MIN.AX", "ABC.AX"));
  EXPECT_EQ(200.0, node(u"Mining").portfolio().numHeld(u"MIN.AX"));
  EXPECT_EQ(100.0, node(u"Trading").portfolio().numHeld(u"ABC.AX"));
}

TEST_F(QuestionsOfTheStartTest, BeginWithThePortfolioThatIsOpened) {
  awaitSplit("ABC.AX", "Cancel");
  node(u"Trading").activate();
  EXPECT_THAT(m_asked, ElementsAre("ABC.AX"));
  awaitSplit("MIN.AX", "Cancel");
  letItLoad();
  EXPECT_THAT(m_asked, ElementsAre("ABC.AX", "MIN.AX"));
}

} // namespace
} // namespace Tallymoor
