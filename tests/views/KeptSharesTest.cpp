// The table of all shares held computes only the rows of shares whose figures may have changed. Here
// everything changes on which they depend.
#include "FreshTableTest.h"
#include "books/Trade.h"
#include "market/StockNames.h"
#include "views/HeldShareCells.h"
#include <random>

using namespace Tallymoor;

namespace {

class KeptSharesTest : public FreshTableTest {
protected:
  void SetUp() override {
    ViewsTest::SetUp();
    SharePortfolioUser& trading = addTrading();
    trading.creditCash(Date(2026, 2, 1), 50000.0, CASH_EVENT_DEPOSIT, u"DEPOSIT more");
    // Years of closes, so that there are automatic limits.
    market().setHistory(u"BBB.AX", Date(2025, 1, 6), Date(2026, 3, 2),
                        [](const Date& day) { return 4.0 + 0.01 * day.daysSince(Date(2026, 3, 3)) / 7; });
    market().setDay(u"BBB.AX", Date(2026, 3, 3), 3.8);
    trading.buyShares(u"BBB.AX", {Date(2026, 2, 2), 1000, 3.9, 10.0, String()});
    trading.setMinMax(*trading.findHeldShare(u"BBB.AX"), 1.0, 9.0);
    showTree();
    leftClick(held(u"Trading"));
  }
  ~KeptSharesTest() override { autoMinMaxPrices = false; }

  static constexpr FXColor MARK = FXRGB(1, 2, 3);

  SharesHeldTable& table() { return *held(u"Trading").table(); }
  TallymoorInternet& gateway() { return TallymoorInternet::Instance(); }
  /// As after any command.
  void update() {
    {
      const HandlerScope scope;
      tree().updateItems();
    }
    settle();
  }

  /// All that is seen of the table, with its colours and totals.
  std::vector<std::string> seen() {
    std::vector<std::string> texts;
    for (FXint row = 0; row < table().getNumRows(); ++row) {
      for (const std::string& text : rowTexts(table(), row))
        texts.push_back(text);
      texts.push_back(std::to_string(cellColour(table(), row, u"Number")));
    }
    for (const Column::Function function :
         {&HeldShareCells::purchaseValue, &HeldShareCells::currentValue, &HeldShareCells::dayGain,
          &HeldShareCells::grossGain, &HeldShareCells::portfolioPercent, &HeldShareCells::dayPercent})
      texts.push_back(total(held(u"Trading"), function));
    return texts;
  }
  void expectAllAsMadeAnew(const std::string& when) {
    expectAsMadeAnew(table(), when);
    SharesHeldTable fresh(user(), node(u"Trading"), mainWindow().contentFrame(), nullptr);
    for (const int days : {1, 7, 40})
      EXPECT_DOUBLE_EQ(fresh.percentGainSince(Date().plusDays(-days)),
                       table().percentGainSince(Date().plusDays(-days)))
          << when;
    EXPECT_EQ(String::toPercent(fresh.percentGainSince(Date().plusDays(-1))).toUTF8(),
              total(held(u"Trading"), &HeldShareCells::dayPercent))
        << when;
  }
  /// The change must be seen, so that the comparison says something.
  template <class Change>
  void expectFollows(const std::string& what, Change made) {
    const std::vector<std::string> before = seen();
    made();
    update();
    EXPECT_NE(before, seen()) << what;
    expectAllAsMadeAnew(what);
  }
};

TEST_F(KeptSharesTest, ATransactionComputesOnlyTheRowOfItsShare) {
  const auto buyOne = [this] { user().buyShares(u"BBB.AX", {Date(), 10, 3.8, 10.0, String()}); };
  change(buyOne); // stores limits and names that were not known
  ASSERT_EQ(2, table().getNumRows());
  // A row that is computed gets the tint of its limits again.
  table().rowAt(0)->setColour(MARK);
  table().rowAt(1)->setColour(MARK);
  change(buyOne);
  EXPECT_EQ("1020.00", cellText(table(), 1, u"Number"));
  EXPECT_EQ(MARK, cellColour(table(), 0, u"Number"));
  EXPECT_NE(MARK, cellColour(table(), 1, u"Number"));
}

TEST_F(KeptSharesTest, FollowTransactions) {
  expectFollows("a purchase", [&] { user().buyShares(u"BBB.AX", {Date(), 10, 3.8, 10.0, String()}); });
  expectFollows("a sale", [&] {
    user().sellShares(u"AAA.AX", {Date(2026, 3, 2), 30, 6.0, 10.0, u""}, true);
  });
  expectFollows("a split", [&] { user().recordAdjustment(u"BBB.AX", Date(2026, 2, 10), 3, false); });
  expectFollows("a deposit", [&] { user().creditCash(Date(), 900.0, CASH_EVENT_DEPOSIT, u"DEPOSIT"); });
  expectFollows("another share", [&] { buy(user(), u"CCC.AX", 10, 3.0); });
  expectFollows("a share less", [&] { user().removeHeldShare(u"BBB.AX"); });
}

TEST_F(KeptSharesTest, FollowPricesThatNoTableIsToldOf) {
  expectFollows("the close of yesterday",
                [&] { gateway().setCachedPrice(u"AAA.AX", Date(2026, 3, 2), 7.0); });
  expectFollows("that of a week ago", [&] { gateway().setCachedPrice(u"BBB.AX", Date(2026, 2, 27), 3.6); });
  expectFollows("today's close", [&] { gateway().setCachedPrice(u"BBB.AX", Date(2026, 3, 3), 3.5); });
  expectFollows("a close of the weeks behind the automatic limits",
                [&] { gateway().setCachedPrice(u"BBB.AX", Date(2025, 12, 12), 30.0); });
  expectFollows("a current price", [&] { gateway().priceUpdater().setCurrentPrice(u"AAA.AX", 6.2); });
  expectFollows("all prices fetched again", [&] {
    market().setDay(u"BBB.AX", Date(2026, 3, 2), 3.9);
    gateway().clear();
  });
}

TEST_F(KeptSharesTest, FollowAPassOfPrices) {
  market().setCurrentPrice(u"AAA.AX", 6.9);
  market().setCurrentPrice(u"BBB.AX", 3.6);
  expectFollows("a pass", [&] { runPass(); });
}

TEST_F(KeptSharesTest, FollowLimitsAndNames) {
  expectFollows("limits that are left",
                [&] { user().setMinMax(*user().findHeldShare(u"AAA.AX"), 7.0, 9.0); });
  expectFollows("automatic limits", [&] { autoMinMaxPrices = true; });
  expectFollows("one's own limits again", [&] { autoMinMaxPrices = false; });
  expectFollows("a name", [&] { StockNames::remember(u"AAA.AX", u"Alpha Mining"); });
}

TEST_F(KeptSharesTest, FollowTheDay) {
  expectFollows("a view date", [&] { Date::setFixedDate(Date(2026, 2, 25)); });
  expectFollows("another view date", [&] { Date::setFixedDate(Date(2026, 2, 10)); });
  expectFollows("today", [&] { Date::clearFixedDate(); });
  market().setDay(u"AAA.AX", Date(2026, 3, 4), 6.6);
  market().setDay(u"BBB.AX", Date(2026, 3, 4), 3.7);
  expectFollows("the next day", [&] { profile().setToday(Date(2026, 3, 4)); });
}

/// Without prices of its own a stock has that of a transaction, until the source answers.
TEST_F(KeptSharesTest, FollowWhatStandsInForAPrice) {
  gateway().goOffline();
  expectFollows("a share without a price", [&] {
    user().buyShares(u"DDD.AX", {Date(2026, 2, 2), 100, 5.0, 0.0, String()});
  });
  expectFollows("a sale", [&] { user().sellShares(u"DDD.AX", {Date(2026, 3, 2), 10, 6.0, 0.0, u""}, true); });
  EXPECT_EQ("6.00", cellText(table(), 2, u"Price Now"));
  expectFollows("another price of the sale", [&] {
    XMLSellEvent& sale = user().findSoldShare(u"DDD.AX")->sales()[0];
    user().editSellEvent(sale, {Date(2026, 2, 2), Date(2026, 3, 2), 10, 5.0, 7.0, 0.0, 0.0, String()});
  });
  EXPECT_EQ("7.00", cellText(table(), 2, u"Price Now"));
  EXPECT_EQ("$630.00 *", cellText(table(), 2, u"Current Value"));
  expectFollows("a price in the record alone",
                [&] { user().capitalRecord().currentPriceUpdated(u"DDD.AX", 7.0); });
  EXPECT_EQ("$630.00", cellText(table(), 2, u"Current Value"));
  market().setHistory(u"DDD.AX", Date(2026, 1, 20), Date(2026, 3, 3), 8.0);
  market().addListing(u"TEST.AX", u"Test", u"ASX");
  expectFollows("the source", [&] { gateway().reconnect(); });
  EXPECT_EQ("8.00", cellText(table(), 2, u"Price Now"));
}

TEST_F(KeptSharesTest, FollowAnythingInAnyOrder) {
  std::mt19937 random(2718); // The same changes in each run.
  const auto upTo = [&random](std::size_t most) { return random() % most; };
  const std::array<String, 2> codes{u"AAA.AX", u"BBB.AX"};
  for (int step = 0; step < 60; ++step) {
    const String& code = codes.at(upTo(2));
    const Date day = Date(2026, 2, 20).plusDays(static_cast<int>(upTo(12)));
    // Not so far apart that a split would be suspected.
    const double amount = (code == codes[0] ? 6.0 : 4.0) * (0.9 + static_cast<double>(upTo(200)) / 1000);
    switch (upTo(8)) {
    case 0:
      change([&] { user().buyShares(code, {day, 5, amount, 1.0, String()}); });
      break;
    case 1:
      change([&] { user().sellShares(code, {day, 1, amount, 1.0, String()}, true); });
      break;
    case 2:
      gateway().setCachedPrice(code, day, amount);
      break;
    case 3:
      market().setCurrentPrice(code, amount);
      runPass();
      break;
    case 4:
      user().setMinMax(*user().findHeldShare(code), amount, 2.0 * amount);
      break;
    case 5:
      change([&] { user().creditCash(day, 100.0 * amount, CASH_EVENT_DEPOSIT, u"DEPOSIT"); });
      break;
    case 6:
      change([&] { user().receiveDividend({code, day, 100, 0.01 * amount, 0, 0, 0, String(), 0}); });
      break;
    default:
      autoMinMaxPrices = !autoMinMaxPrices;
      break;
    }
    update();
    expectAllAsMadeAnew("step " + std::to_string(step));
  }
}

} // namespace
