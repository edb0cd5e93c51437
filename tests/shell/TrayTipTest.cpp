#include "shell/TrayTip.h"
#include "ShellTest.h"
#include "foundation/RunTimeSettings.h"

namespace Tallymoor {
namespace {

std::string portfolioText(const std::string& name, const std::string& code, const std::string& index) {
  return "<SharePortfolio><String>" + name + "</String><HeldShares><HeldShare><String>" + code +
         "</String><BuyEvent><Date>2/2/2026</Date><Constant>100.00</Constant><Constant>10.0000</Constant>"
         "<Constant>0.00</Constant><String/></BuyEvent><Constant/><Constant/><Constant/></HeldShare>"
         "</HeldShares><SoldShares/><Dividends/><CashReserve/><String>" +
         index + "</String></SharePortfolio>";
}

/// "Savings" holds 100 GRV.AX. "Trading" holds 100 ABC.AX and is compared with ^AORD. All prices were 10.00
/// yesterday, the index 8000.
class TrayTipTest : public ShellTest {
protected:
  TrayTipTest() {
    TestProfile::writeFile(recordsPath(), "<Portfolios>" + portfolioText("Savings", "GRV.AX", "") +
                                              portfolioText("Trading", "ABC.AX", "^AORD") + "</Portfolios>");
    for (const char16_t* code : {u"ABC.AX", u"GRV.AX"})
      market().setHistory(code, Date(2026, 1, 2), Date(2026, 3, 2), 10.0);
    market().setHistory(u"^AORD", Date(2026, 1, 2), Date(2026, 3, 2), 8000.0);
    market().setCurrentPrice(u"ABC.AX", 10.5);
    market().setCurrentPrice(u"GRV.AX", 9.0);
    market().setCurrentPrice(u"^AORD", 8080.0);
  }
  ~TrayTipTest() override { trayFormat = String(); }

  void SetUp() override {
    ShellTest::SetUp();
    TallymoorInternet::Instance().priceUpdater().runPass();
    letEventsPass();
  }

  /// When the prices of the index have come.
  std::optional<String> tip(const String& format) {
    std::optional<String> shown;
    do {
      BigMutexLock lock;
      shown = trayTip(*tallymoor().totalCapital(), format);
    } while (awaitBackgroundWork());
    return shown;
  }
};

TEST_F(TrayTipTest, TheTotalIsWeightedByCapital) {
  // (1050 * 5% - 900 * 10%) / 1950.
  EXPECT_EQ(String(u"Total Capital today: -1.92%"), tip(String()));
  EXPECT_EQ(String(u"Total Capital today: -1.92%"), tip(u"Total Capital"));
}

TEST_F(TrayTipTest, APortfolioIsShownWithItsIndex) {
  EXPECT_EQ(String(u"Trading : +5.00% (1.00%)"), tip(u"Trading"));
}

TEST_F(TrayTipTest, ALossHasItsOwnSignAndAPortfolioWithoutAnIndexHasNone) {
  EXPECT_EQ(String(u"Savings : -10.00% (n/a)"), tip(u"Savings"));
}

TEST_F(TrayTipTest, ADeletedPortfolioShowsTheTotal) {
  EXPECT_EQ(String(u"Total Capital today: -1.92%"), tip(u"Sold long ago"));
}

TEST_F(TrayTipTest, IsNotShownUnderAViewDate) {
  Date::setFixedDate(Date(2026, 2, 20));
  EXPECT_EQ(std::nullopt, tip(String()));
  Date::clearFixedDate();
  EXPECT_NE(std::nullopt, tip(String()));
}

TEST_F(TrayTipTest, IsNotShownAfterMidnightUntilTodayIsComputed) {
  profile().setToday(Date(2026, 3, 4));
  EXPECT_EQ(std::nullopt, tip(String()));
  EXPECT_EQ(std::nullopt, tip(u"Trading"));
  BigMutexLock lock;
  tallymoor().refreshViews(false);
  EXPECT_NE(std::nullopt, tip(String()));
}

class TrayTipWithoutPortfoliosTest : public ShellTest {};

TEST_F(TrayTipWithoutPortfoliosTest, IsZeroPercent) {
  BigMutexLock lock;
  EXPECT_EQ(String(u"Total Capital today: 0.00%"), trayTip(*tallymoor().totalCapital(), String()));
}

} // namespace
} // namespace Tallymoor
