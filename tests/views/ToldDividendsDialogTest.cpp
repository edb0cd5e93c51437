#include "views/ToldDividendsDialog.h"
#include "ViewsTest.h"
#include "market/ToldDividends.h"
#include "views/ToldDividendWarning.h"
#include "views/ToldDividendsTable.h"

namespace Tallymoor {
namespace {

using testing::ElementsAre;

/// "Trading" holds 100 AAA.AX from 2 February on, 200 after the split of the 16th, and 50 more from the 20th.
/// A source has told of dividends of 6 January, 12 February, the 18th and the 25th.
class ToldDividendsDialogTest : public ViewsTest {
protected:
  ToldDividendsDialogTest() {
    ToldDividends told(profile().dataFolder() + TOLD_DIVIDENDS_FILE);
    told.add({{u"AAA.AX",
               {{Date(2026, 1, 6), 0.1},
                {Date(2026, 2, 12), 0.25},
                {Date(2026, 2, 18), 0.0125},
                {Date(2026, 2, 25), 0.3}}},
              {u"ZZZ.AX", {{Date(2026, 2, 12), 1.0}}}});
  }

  void SetUp() override {
    ViewsTest::SetUp();
    addTrading();
    showTree();
  }

  static std::vector<std::string> rows(ToldDividendsTable& table) {
    std::vector<std::string> texts;
    for (FXint row = 0; Row* known = table.rowAt(row); ++row) {
      std::string text = known->key().toUTF8();
      for (const auto& column : table.columns())
        text += "|" + (*column)(*known).toUTF8();
      texts.push_back(text);
    }
    return texts;
  }
  void show(const std::function<void(FXWindow& dialog, ToldDividendsTable& table)>& steps) {
    ToldDividendsDialog dialog(&mainWindow(), root());
    whenModal("Told dividends", [&](FXWindow& window) {
      letEventsPass();
      steps(window, *dialog.table());
      press(window, "Close");
    });
    EXPECT_EQ(1u, dialog.execute());
  }
  std::size_t numDividends() { return portfolios()[u"Trading"]->portfolio().dividends().size(); }
};

TEST_F(ToldDividendsDialogTest, ListsThoseOfHeldStocksWithTheSharesOfTheDayBefore) {
  show([](FXWindow&, ToldDividendsTable& table) {
    EXPECT_THAT(rows(table), ElementsAre("25/02/2026|AAA.AX|0.30|250.00|$75.00|Trading",
                                         "18/02/2026|AAA.AX|0.0125|200.00|$2.50|Trading",
                                         "12/02/2026|AAA.AX|0.25|100.00|$25.00|Trading"));
  });
}

TEST_F(ToldDividendsDialogTest, ARecordedOneIsNotListed) {
  for (const Date& day : {Date(2026, 2, 25), Date(2026, 2, 28), Date(2026, 3, 1)})
    portfolios()[u"Trading"]->receiveDividend({u"AAA.AX", day, 100, 0.25, 100, 0, 0, String(), 0});
  show([](FXWindow& dialog, ToldDividendsTable& table) {
    EXPECT_TRUE(rows(table).empty()) << "within sixty days after each";
    EXPECT_FALSE(button(dialog, "Record...").isEnabled());
    EXPECT_FALSE(button(dialog, "Refuse").isEnabled());
  });
}

TEST_F(ToldDividendsDialogTest, ARecordedOneIsTakenForOneToldDividendAlone) {
  portfolios()[u"Trading"]->receiveDividend(
      {u"AAA.AX", Date(2026, 2, 14), 100, 0.25, 100, 0, 0, String(), 0});
  show([](FXWindow&, ToldDividendsTable& table) {
    EXPECT_THAT(rows(table), ElementsAre("25/02/2026|AAA.AX|0.30|250.00|$75.00|Trading",
                                         "18/02/2026|AAA.AX|0.0125|200.00|$2.50|Trading"))
        << "the nearest of those before it";
  });
}

TEST_F(ToldDividendsDialogTest, SharesThatWereSoldSinceCount) {
  portfolios()[u"Trading"]->sellShares(u"AAA.AX", {Date(2026, 2, 17), 60, 5.5, 0.0, String()}, true);
  portfolios()[u"Trading"]->sellShares(u"AAA.AX", {Date(2026, 2, 24), 40, 5.5, 0.0, String()}, true);
  show([](FXWindow&, ToldDividendsTable& table) {
    EXPECT_THAT(rows(table), ElementsAre("25/02/2026|AAA.AX|0.30|150.00|$45.00|Trading",
                                         "18/02/2026|AAA.AX|0.0125|140.00|$1.75|Trading",
                                         "12/02/2026|AAA.AX|0.25|100.00|$25.00|Trading"));
  });
}

TEST_F(ToldDividendsDialogTest, TheFormIsFilledInAndRecordsIt) {
  show([this](FXWindow& dialog, ToldDividendsTable& table) {
    whenModal("Receive a dividend", [this](FXWindow& form) {
      EXPECT_EQ("250.00", std::string(field(form, "On Shares Held").getText().text()));
      EXPECT_EQ("0.300000", std::string(field(form, "Dividend Rate").getText().text()));
      EXPECT_EQ("25/02/2026", std::string(field(form, "Date Received").getText().text()));
      EXPECT_EQ("75.00", std::string(field(form, "Value").getText().text()));
      type(field(form, "Date Received"), "2/3/2026");
      press(form, "OK");
    });
    press(dialog, "Record...");
    letEventsPass();
    EXPECT_THAT(rows(table), ElementsAre("18/02/2026|AAA.AX|0.0125|200.00|$2.50|Trading",
                                         "12/02/2026|AAA.AX|0.25|100.00|$25.00|Trading"));
  });
  ASSERT_EQ(numDividends(), 1u);
  const XMLDividendEvent& recorded = portfolios()[u"Trading"]->portfolio().dividends()[0];
  EXPECT_EQ(recorded.received(), Date(2026, 3, 2));
  EXPECT_DOUBLE_EQ(recorded.rate(), 0.3);
}

TEST_F(ToldDividendsDialogTest, ACancelledFormRecordsNothing) {
  show([this](FXWindow& dialog, ToldDividendsTable& table) {
    whenModal("Receive a dividend", [this](FXWindow& form) { press(form, "Cancel"); });
    press(dialog, "Record...");
    EXPECT_EQ(rows(table).size(), 3u);
  });
  EXPECT_EQ(numDividends(), 0u);
}

TEST_F(ToldDividendsDialogTest, ARefusedOneIsNotOfferedAgain) {
  const std::string question = "Do you want to refuse the dividend of AAA.AX of 25/02/2026?\n"
                               "It is not offered again in any portfolio.";
  show([&](FXWindow& dialog, ToldDividendsTable& table) {
    answer(question, "No");
    press(dialog, "Refuse");
    EXPECT_EQ(rows(table).size(), 3u);
    answer(question, "Yes");
    press(dialog, "Refuse");
    letEventsPass();
    EXPECT_EQ(rows(table).size(), 2u);
  });
  const auto waiting = ToldDividends(profile().dataFolder() + TOLD_DIVIDENDS_FILE).waiting();
  EXPECT_FALSE(waiting.at(u"AAA.AX").contains(Date(2026, 2, 25)));
}

TEST_F(ToldDividendsDialogTest, TheWindowTellsOfThemAfterARoundOfPrices) {
  ToldDividendWarning warning(&app(), [this] { return Portfolios{portfolios()[u"Trading"].get()}; });
  runPass();
  ASSERT_EQ(window().warnings.size(), 1u);
  EXPECT_EQ(window().warnings[0].text,
            u"Your sources of prices tell of 3 dividends that are not recorded: see Tools, Told Dividends.");
  for (const Date& day : {Date(2026, 2, 25), Date(2026, 2, 28), Date(2026, 3, 1)})
    portfolios()[u"Trading"]->receiveDividend({u"AAA.AX", day, 100, 0.25, 100, 0, 0, String(), 0});
  warning.tell();
  EXPECT_TRUE(window().warningsOver.contains(window().warnings[0].key));
}

} // namespace
} // namespace Tallymoor
