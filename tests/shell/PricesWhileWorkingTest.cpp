#include "ShellTest.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/SharesHeldTable.h"
#include "views/SharesHeldTreeItem.h"
#include "views/TotalCapTreeItem.h"
#include "widgets/InvestmentTree.h"

namespace Tallymoor {
namespace {

const std::vector<String> CODES = {u"ABC.AX", u"CBR.AX", u"GRV.AX"};
constexpr int NUMBER_COLUMN = 1;
constexpr int PRICE_COLUMN = 3;

std::string heldShare(const String& code) {
  return "<HeldShare><String>" + code.toUTF8() +
         "</String><BuyEvent><Date>2/2/2026</Date><Constant>100.00</Constant><Constant>10.0000</Constant>"
         "<Constant>0.00</Constant><String/></BuyEvent><Constant/><Constant/><Constant/></HeldShare>";
}

/// Prices arrive on the updater's thread while the user opens nodes, sorts tables and fills in forms. Meant
/// for the thread sanitizer.
class PricesWhileWorkingTest : public ShellTest {
protected:
  PricesWhileWorkingTest() {
    std::string shares;
    for (const String& code : CODES) {
      shares += heldShare(code);
      market().setHistory(code, Date(2026, 1, 2), Date(2026, 3, 2), 10.0);
      market().setCurrentPrice(code, 10.0);
    }
    TestProfile::writeFile(recordsPath(), "<Portfolios><SharePortfolio><String>Trading</String><HeldShares>" +
                                              shares +
                                              "</HeldShares><SoldShares/><Dividends/><CashReserve/><String/>"
                                              "</SharePortfolio></Portfolios>");
  }

  SharePortfolioTreeItem& node() { return *tallymoor().totalCapital()->portfolioNode(u"Trading"); }
  SharesHeldTable& table() { return *node().sharesHeldItem()->table(); }

  void setPrices(double price) {
    for (const String& code : CODES)
      market().setCurrentPrice(code, price);
  }

  bool allRowsShow(const std::string& price) {
    BigMutexLock lock;
    for (const String& code : CODES)
      if (table().getItemText(table().getRow(code), PRICE_COLUMN) != price.c_str())
        return false;
    return true;
  }

  /// Which don't come.
  void requestPastPrices() {
    const std::size_t before = market().requested(MarketFixture::Page::History).size();
    market().stall(MarketFixture::Page::History);
    const Date today;
    TallymoorInternet::Instance().requestHistory({u"XYZ.AX", today.plusDays(-30), today});
    market().awaitRequests(MarketFixture::Page::History, before + 1);
  }
  /// Some typical user actions.
  void work(int round) {
    const auto asAHandler = [this](auto step) {
      {
        BigMutexLock lock;
        step();
      }
      letEventsPass();
    };
    asAHandler([this] { tallymoor().totalCapital()->activate(); });
    asAHandler([this] { node().activate(); });
    asAHandler([this] { node().sharesHeldItem()->activate(); });
    asAHandler([this] { table().updateTable(); });
    whenModal("Choose Portfolio", [this](FXWindow& dialog) { press(dialog, "Cancel"); });
    command(TallymoorWindow::ID_BUY);
    if (round % 3 == 0)
      command(TallymoorWindow::ID_SAVE);
  }
};

TEST_F(PricesWhileWorkingTest, RowsFollowThePricesWhileTheUserWorks) {
  ASSERT_EQ(CODES.size(), table().numRows());
  PriceUpdater& updater = TallymoorInternet::Instance().priceUpdater();
  updater.start();
  for (int round = 1; round <= 8; ++round) {
    setPrices(10.0 + round);
    updater.wakeUp();
    work(round);
    const std::string shown = String::fromDouble(10.0 + round, 2).toUTF8();
    ASSERT_TRUE(runUntil([&] {
      updater.wakeUp();
      return allRowsShow(shown);
    })) << "round "
        << round;
    BigMutexLock lock;
    EXPECT_EQ("100.00", std::string(table().getItemText(0, NUMBER_COLUMN).text()));
    EXPECT_EQ(300 * (10.0 + round), node().portfolio().capitalToday());
  }
  leave();
}

TEST_F(PricesWhileWorkingTest, LeavingDuringAPassEndsIt) {
  market().stall(MarketFixture::Page::Quote);
  TallymoorInternet::Instance().priceUpdater().start();
  market().awaitRequests(MarketFixture::Page::Quote, 1);
  leave();
  EXPECT_FALSE(TallymoorInternet::exists());
}

TEST_F(PricesWhileWorkingTest, LeavingWhilePastPricesAreFetchedEndsThat) {
  requestPastPrices();
  leave();
  EXPECT_FALSE(TallymoorInternet::exists());
}

TEST_F(PricesWhileWorkingTest, GoingOfflineWhilePastPricesAreFetchedEndsThat) {
  requestPastPrices();
  command(TallymoorWindow::ID_STATUS);
  EXPECT_FALSE(TallymoorInternet::Instance().isOnline());
  EXPECT_FALSE(TallymoorInternet::Instance().historyFetcher().isRunning());
}

TEST_F(PricesWhileWorkingTest, GoingOfflineDuringAPassEndsIt) {
  market().stall(MarketFixture::Page::Quote);
  TallymoorInternet::Instance().priceUpdater().start();
  market().awaitRequests(MarketFixture::Page::Quote, 1);
  command(TallymoorWindow::ID_STATUS);
  EXPECT_FALSE(TallymoorInternet::Instance().isOnline());
  EXPECT_FALSE(TallymoorInternet::Instance().priceUpdater().isRunning());
}

} // namespace
} // namespace Tallymoor
