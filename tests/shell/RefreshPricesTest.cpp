#include "ShellTest.h"
#include "views/PerformanceView.h"
#include "views/PortfolioPerformanceTable.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/SharesHeldTable.h"
#include "views/SharesHeldTreeItem.h"
#include "views/TotalCapTreeItem.h"
#include "widgets/InvestmentTree.h"
#include <algorithm>

namespace Tallymoor {
namespace {

const String CODE = u"ABC.AX";
const std::string PROBLEM =
    "There was a problem accessing the internet for code\nABC.AX between 17/02/2026 and "
    "03/03/2026. \nThe price source answered with status 503.\nDo you want to retry?";

/// A start on 3 March 2026 after some days, while the price source is down. Prices are known up to 25
/// February.
class RefreshPricesTest : public ShellTest {
protected:
  RefreshPricesTest() {
    TestProfile::writeFile(
        recordsPath(),
        "<Portfolios><SharePortfolio><String>Trading</String><HeldShares><HeldShare><String>ABC.AX</String>"
        "<BuyEvent><Date>2/2/2026</Date><Constant>100.00</Constant><Constant>40.0000</Constant>"
        "<Constant>0.00</Constant><String/></BuyEvent><Constant/><Constant/><Constant/></HeldShare>"
        "</HeldShares><SoldShares/><Dividends/><CashReserve/><String/></SharePortfolio></Portfolios>");
    market().setHistory(CODE, Date(2026, 1, 1), Date(2026, 2, 25), 10.0);
    TallymoorInternet::Instance().historicalPrice(CODE, Date(2026, 2, 25), true);
    market().refuse(MarketFixture::Page::History, 503);
    market().refuse(MarketFixture::Page::Quote, 503);
  }
  void SetUp() override {
    ShellTest::SetUp();
    letEventsPass();
  }
  std::unique_ptr<MainWindow> makeWindow(FXApp* app) override {
    answer(PROBLEM, "No");
    return ShellTest::makeWindow(app);
  }
  void mendTheSource() {
    market().refuse(MarketFixture::Page::History, 200);
    market().refuse(MarketFixture::Page::Quote, 200);
    market().setHistory(CODE, Date(2026, 2, 26), Date(2026, 3, 2), 11.0);
    market().setCurrentPrice(CODE, 12.0);
  }

  SharePortfolioTreeItem& node() { return *tallymoor().totalCapital()->portfolioNode(u"Trading"); }
  /// Capital today and at the end of February, from the visible page's performance table.
  std::vector<std::string> capital() {
    BigMutexLock lock;
    PortfolioPerformanceTable& table = tallymoor().totalCapital()->performance()->table();
    return {table.getItemText(0, 0).text(), table.getItemText(1, 0).text()};
  }
  using Texts = std::vector<std::string>;
  std::size_t problems() {
    return static_cast<std::size_t>(std::count(boxes().begin(), boxes().end(), PROBLEM));
  }
};

TEST_F(RefreshPricesTest, AfterAnAnswerOfNoNothingIsAskedUntilARefresh) {
  EXPECT_EQ(1u, problems());
  const auto want = [](const Date& day) {
    BigMutexLock lock;
    EXPECT_ANY_THROW(TallymoorInternet::Instance().historicalPrice(CODE, day, false));
  };
  for (int i = 0; i < 3; ++i) {
    tallymoor().totalCapital()->activate();
    tallymoor().totalCapital()->performance()->table().updateTable();
    node().update();
    letEventsPass();
    want(Date(2026, 2, 27));
  }
  EXPECT_EQ(1u, problems());
  answer(PROBLEM, "No");
  command(TallymoorWindow::ID_REFRESH_PRICES);
  letEventsPass();
  EXPECT_EQ(1u, problems()) << "the page in sight stands on known closes";
  node().sharesHeldItem()->activate(); // Its week's gain needs a close.
  letEventsPass();
  EXPECT_EQ(2u, problems());
  want(Date(2026, 2, 27));
  want(Date(2026, 2, 26));
  EXPECT_EQ(2u, problems());
}

TEST_F(RefreshPricesTest, ProvisionalDaysAreComputedAgainAndShown) {
  EXPECT_EQ((Texts{"$1,000.00 *", "$1,000.00 *"}), capital());
  mendTheSource();
  letEventsPass();
  EXPECT_EQ((Texts{"$1,000.00 *", "$1,000.00 *"}), capital()) << "not requested yet";
  command(TallymoorWindow::ID_REFRESH_PRICES);
  letEventsPass();
  EXPECT_EQ("$1,100.00", capital()[1]) << "without any pass of the updater";
  TallymoorInternet::Instance().priceUpdater().start();
  EXPECT_TRUE(runUntil([this] { return capital()[0] == "$1,200.00"; })) << capital()[0];
  EXPECT_EQ(1u, problems());
}

TEST_F(RefreshPricesTest, APassOfTheUpdaterDoesTheSame) {
  mendTheSource();
  TallymoorInternet::Instance().priceUpdater().runPass();
  EXPECT_TRUE(runUntil([this] {
    return capital() == (Texts{"$1,200.00", "$1,100.00"});
  })) << capital()[0]
      << ' ' << capital()[1];
  EXPECT_EQ(1u, problems());
}

TEST_F(RefreshPricesTest, ASplitAmongTheDaysAwayIsAskedAtTheRefresh) {
  market().refuse(MarketFixture::Page::History, 200);
  market().setHistory(CODE, Date(2026, 2, 26), Date(2026, 3, 3), 5.0);
  whenModal("Possible share split", [this](FXWindow& dialog) { press(dialog, "OK"); });
  command(TallymoorWindow::ID_REFRESH_PRICES);
  letEventsPass();
  EXPECT_EQ("$1,000.00", capital()[1]);
  EXPECT_EQ(200.0, node().portfolio().numHeld(CODE));
}

} // namespace
} // namespace Tallymoor
