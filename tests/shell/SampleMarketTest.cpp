#include "ShellTest.h"
#include "books/SharePortfolioUser.h"
#include "shell/TrayTip.h"
#include "support/TestPriceService.h"
#include "views/SourcesDialog.h"
#include "views/SourcesTable.h"

namespace Tallymoor {
namespace {

/// "Savings" holds 100 ABC.AX since 2 February, in the sample market, where its price is always 10.00.
class SampleMarketTest : public ShellTest {
protected:
  SampleMarketTest() {
    TestProfile::writeFile(
        recordsPath(),
        "<Portfolios><SharePortfolio><String>Savings</String><HeldShares><HeldShare><String>ABC.AX</String>"
        "<BuyEvent><Date>2/2/2026</Date><Constant>100.00</Constant><Constant>10.0000</Constant>"
        "<Constant>0.00</Constant><String/></BuyEvent><Constant/><Constant/><Constant/></HeldShare>"
        "</HeldShares><SoldShares/><Dividends/><CashReserve/><String/></SharePortfolio></Portfolios>");
    market().setHistory(u"ABC.AX", Date(2026, 1, 2), Date(2026, 3, 3), 10.0);
    market().setCurrentPrice(u"ABC.AX", 10.0);
    pretendSampleMarket(profile());
  }

  void SetUp() override {
    ShellTest::SetUp();
    TallymoorInternet::Instance().pauseUpdates();
  }

  std::string normalStatus() { return tallymoor().statusBar()->getStatusLine()->getNormalText().text(); }
  double sharesOn(const Date& day) {
    BigMutexLock lock;
    Date::setFixedDate(day);
    const double value = tallymoor().store().portfolios().at(u"Savings")->sharesValueToday();
    Date::clearFixedDate();
    return value;
  }
  /// A folder in which the stock is worth 9.00.
  void addFolder() {
    const String folder = profile().path("prices");
    std::string rows = "Day,Close\n";
    for (const char* month : {"2026-01-", "2026-02-", "2026-03-"})
      for (int day = 10; day <= 28; ++day)
        rows += month + std::to_string(day) + ",9.00\n";
    TestProfile::writeFile(folder + u"/ABC.AX.csv", rows);
    TallymoorInternet::Instance().priceStatus().sources().addFolder(u"My files", folder);
  }
};

TEST_F(SampleMarketTest, ItsPricesAreLabelledAsMadeUp) {
  EXPECT_EQ("Ready. The prices are made up: they are those of the sample market.", normalStatus());
  TallymoorInternet::Instance().priceUpdater().runPass();
  letEventsPass();
  BigMutexLock lock;
  EXPECT_EQ(String(u"Total Capital today: 0.00% (made-up prices)"),
            trayTip(*tallymoor().totalCapital(), String()));
}

TEST_F(SampleMarketTest, NoDayKeepsAMadeUpPriceOnceThereAreRealOnes) {
  EXPECT_DOUBLE_EQ(sharesOn(Date(2026, 2, 10)), 1000);
  addFolder();
  whenModal("Prices", [this](FXWindow& prices) {
    whenModal("Sources of prices", [this](FXWindow& dialog) {
      dynamic_cast<SourcesDialog&>(dialog).table()->chooseSource(u"My files");
      letEventsPass();
      whenModal("Prices come from the sample market now", [this](FXWindow& box) { press(box, "Yes"); });
      press(dialog, "Switch on");
      TallymoorInternet::Instance().pauseUpdates();
      press(dialog, "Close");
    });
    press(prices, "Sources...");
    press(prices, "Close");
  });
  command(TallymoorWindow::ID_PRICES);
  letEventsPass();
  EXPECT_DOUBLE_EQ(sharesOn(Date(2026, 2, 10)), 900);
  EXPECT_EQ("Ready.", normalStatus());
}

} // namespace
} // namespace Tallymoor
