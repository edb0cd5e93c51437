#include "views/PriceHistoryDialog.h"
#include "ViewsTest.h"
#include "market/SharePriceCache.h"
#include "views/PriceHistoryTable.h"
#include "views/PricesDialog.h"
#include "views/PricesTable.h"
#include "widgets/ChartView.h"

namespace Tallymoor {
namespace {

using testing::ElementsAre;

/// AAA.AX on Tuesday, 3 March 2026: 10.00 from 25 to 27 February, 11.00 on Monday.
class PriceHistoryDialogTest : public ViewsTest {
protected:
  PriceHistoryDialogTest() {
    gateway().priceUpdater().addCode(u"AAA.AX");
    market().setHistory(u"AAA.AX", Date(2026, 2, 25), m_friday, 10.0);
    market().setDay(u"AAA.AX", m_monday, 11.0, 11.5, 10.5, 700);
    gateway().historicalPrice(u"AAA.AX", m_monday, true);
  }

  static TallymoorInternet& gateway() { return TallymoorInternet::Instance(); }
  static std::vector<std::string> rows(PriceHistoryTable& table) {
    std::vector<std::string> texts;
    for (FXint row = 0; Row* known = table.rowAt(row); ++row) {
      std::string text = known->key().toUTF8();
      for (const auto& column : table.columns())
        text += "|" + (*column)(*known).toUTF8();
      texts.push_back(text);
    }
    return texts;
  }
  void show(const std::function<void(FXWindow& dialog, PriceHistoryTable& table)>& steps) {
    PriceHistoryDialog dialog(&mainWindow(), u"AAA.AX", {});
    whenModal("Stored prices of AAA.AX", [&](FXWindow& window) {
      letEventsPass();
      steps(window, *dialog.table());
      press(window, "Close");
    });
    EXPECT_EQ(1u, dialog.execute());
  }
  /// What a later start of the program would read.
  double storedClose(const Date& day) {
    SharePriceCache cache(profile().cacheFolder());
    const auto close = cache.closeOn(u"AAA.AX", day);
    return close ? close->close : 0.0;
  }
  void typeClose(PriceHistoryTable& table, FXint row, const std::string& text) {
    typeInto(table, row, u"Close", text);
    letEventsPass();
  }

  const Date m_friday{2026, 2, 27};
  const Date m_monday{2026, 3, 2};
};

TEST_F(PriceHistoryDialogTest, ListsTheStoredDaysNewestFirst) {
  show([](FXWindow& dialog, PriceHistoryTable& table) {
    EXPECT_THAT(rows(table), ElementsAre("02/03/2026|11.00|11.50|10.50|700|fetched",
                                         "27/02/2026|10.00|10.50|9.50|1000|fetched",
                                         "26/02/2026|10.00|10.50|9.50|1000|fetched",
                                         "25/02/2026|10.00|10.50|9.50|1000|fetched"));
    EXPECT_FALSE(button(dialog, "Delete what was typed...").isEnabled());
  });
}

TEST_F(PriceHistoryDialogTest, ATypedCloseCountsAtOnceAndIsWritten) {
  SharePortfolioUser& user = addPortfolio(u"Trading", 5000.0);
  user.buyShares(u"AAA.AX", {m_friday, 100, 10.0, 0.0, String()});
  showTree();
  ASSERT_DOUBLE_EQ(user.capitalRecord().capitalOn(Date(2026, 3, 1)), 5000.0);
  show([this](FXWindow&, PriceHistoryTable& table) {
    typeClose(table, 1, "10.50");
    EXPECT_EQ(rows(table)[1], "27/02/2026|10.50|10.50|9.50||typed");
    EXPECT_DOUBLE_EQ(gateway().getCachedPrice(u"AAA.AX", Date(2026, 3, 1), 0), 10.5) << "Sunday follows";
    EXPECT_DOUBLE_EQ(storedClose(m_friday), 10.5);
  });
  EXPECT_DOUBLE_EQ(user.capitalRecord().capitalOn(m_friday), 5050.0);
  EXPECT_DOUBLE_EQ(user.capitalRecord().capitalOn(Date(2026, 3, 1)), 5050.0);
  EXPECT_DOUBLE_EQ(user.capitalRecord().capitalOn(m_monday), 5100.0) << "another day";
}

TEST_F(PriceHistoryDialogTest, ALaterFetchLeavesATypedCloseAlone) {
  show([this](FXWindow&, PriceHistoryTable& table) { typeClose(table, 1, "10.50"); });
  market().setHistory(u"AAA.AX", Date(2026, 2, 25), m_friday, 10.05);
  gateway().completeHistory({{u"AAA.AX", Date(2026, 2, 25), Date(2026, 2, 25), HistoryNeed::Kind::Refresh}},
                            nullptr);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(u"AAA.AX", m_friday, 0), 10.5);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(u"AAA.AX", Date(2026, 2, 26), 0), 10.05);
}

TEST_F(PriceHistoryDialogTest, RefusesWhatIsNoPrice) {
  show([this](FXWindow&, PriceHistoryTable& table) {
    for (const char* text : {"", "abc", "0", "-3"}) {
      answer("The price of AAA.AX on 02/03/2026 must be a number above zero.\nThe old price stays.", "OK");
      typeClose(table, 0, text);
      EXPECT_EQ(rows(table)[0], "02/03/2026|11.00|11.50|10.50|700|fetched") << text;
    }
  });
}

TEST_F(PriceHistoryDialogTest, AsksAboutACloseFarFromTheDayBefore) {
  const std::string question = "1100.00 on 02/03/2026 is far from 10.00, the price of 27/02/2026.\n"
                               "Do you want to record it all the same?";
  show([&](FXWindow&, PriceHistoryTable& table) {
    answer(question, "No");
    typeClose(table, 0, "1100");
    EXPECT_EQ(rows(table)[0], "02/03/2026|11.00|11.50|10.50|700|fetched");
    answer(question, "Yes");
    typeClose(table, 0, "1100");
    EXPECT_EQ(rows(table)[0], "02/03/2026|1100.00|11.50|10.50||typed");
  });
}

TEST_F(PriceHistoryDialogTest, AnUnchangedCloseStaysThatOfTheSource) {
  show([this](FXWindow&, PriceHistoryTable& table) {
    typeClose(table, 0, "11.00");
    EXPECT_EQ(rows(table)[0], "02/03/2026|11.00|11.50|10.50|700|fetched");
  });
}

TEST_F(PriceHistoryDialogTest, ADayIsAddedAndDeletedAgain) {
  const Date before(2026, 2, 24);
  show([&](FXWindow& dialog, PriceHistoryTable& table) {
    whenModal("Type a price", [this](FXWindow& form) {
      type(field(form, "Price"), "9.75");
      type(field(form, "Date"), "24/2/2026");
      press(form, "OK");
    });
    press(dialog, "Add a day...");
    letEventsPass();
    ASSERT_EQ(rows(table).back(), "24/02/2026|9.75||||typed");
    EXPECT_DOUBLE_EQ(storedClose(before), 9.75);
    table.choose(before);
    letEventsPass();
    answer("Do you want to delete the price that you typed for 24/02/2026?\n"
           "The sources are asked for the price of that day again.",
           "Yes");
    press(dialog, "Delete what was typed...");
    letEventsPass();
    EXPECT_EQ(rows(table).back(), "25/02/2026|10.00|10.50|9.50|1000|fetched");
    EXPECT_DOUBLE_EQ(storedClose(before), 0.0);
  });
}

TEST_F(PriceHistoryDialogTest, TheSourceCountsAgainWhenACorrectionIsDeleted) {
  SharePortfolioUser& user = addPortfolio(u"Trading", 5000.0);
  user.buyShares(u"AAA.AX", {m_friday, 100, 10.0, 0.0, String()});
  showTree();
  show([this](FXWindow& dialog, PriceHistoryTable& table) {
    typeClose(table, 1, "10.50");
    table.choose(m_friday);
    letEventsPass();
    answer("Do you want to delete the price that you typed for 27/02/2026?\n"
           "The sources are asked for the price of that day again.",
           "Yes");
    press(dialog, "Delete what was typed...");
    letEventsPass();
    EXPECT_EQ(rows(table)[1], "27/02/2026|10.00|10.50|9.50|1000|fetched");
    EXPECT_DOUBLE_EQ(gateway().getCachedPrice(u"AAA.AX", Date(2026, 3, 1), 0), 10.0);
    EXPECT_DOUBLE_EQ(storedClose(m_friday), 10.0);
  });
  EXPECT_DOUBLE_EQ(user.capitalRecord().capitalOn(m_friday), 5000.0);
}

TEST_F(PriceHistoryDialogTest, TheWindowOfPricesOpensIt) {
  PricesDialog dialog(&mainWindow());
  whenModal("Prices", [&](FXWindow& window) {
    whenModal("Stored prices of AAA.AX", [this](FXWindow& history) {
      typeClose(*find<PriceHistoryTable>(history), 0, "12.00");
      EXPECT_DOUBLE_EQ(find<ChartView>(history)->model().series.at(0).points.back().value, 12.0);
      press(history, "Close");
    });
    press(window, "History...");
    letEventsPass();
    EXPECT_EQ((*dialog.table()->columns()[1])(*dialog.table()->rowAt(0)), String(u"12.00"));
    press(window, "Close");
  });
  EXPECT_EQ(1u, dialog.execute());
}

TEST_F(PriceHistoryDialogTest, AHighAndALowAreCorrected) {
  show([this](FXWindow&, PriceHistoryTable& table) {
    typeInto(table, 0, u"High", "11.25");
    letEventsPass();
    EXPECT_EQ(rows(table)[0], "02/03/2026|11.00|11.25|10.50|700|typed");
    typeInto(table, 0, u"Low", "");
    letEventsPass();
    EXPECT_EQ(rows(table)[0], "02/03/2026|11.00|11.25||700|typed");
    EXPECT_DOUBLE_EQ(storedClose(m_monday), 11.0);
  });
  SharePriceCache stored(profile().cacheFolder());
  EXPECT_DOUBLE_EQ(stored.share(u"AAA.AX").find(m_monday)->high, 11.25);
}

TEST_F(PriceHistoryDialogTest, AHighBelowTheCloseIsRefused) {
  const std::string refusal = "The close of AAA.AX on 02/03/2026 is 11.00: the high must be a number\n"
                              "that is not below it, and the low one that is not above it.\n"
                              "The old ones stay.";
  show([&](FXWindow&, PriceHistoryTable& table) {
    for (const auto& [column, text] : {std::pair{u"High", "10.75"}, std::pair{u"High", "abc"},
                                       std::pair{u"Low", "11.25"}, std::pair{u"Low", "-1"}}) {
      answer(refusal, "OK");
      typeInto(table, 0, column, text);
      letEventsPass();
      EXPECT_EQ(rows(table)[0], "02/03/2026|11.00|11.50|10.50|700|fetched") << text;
    }
  });
}

TEST_F(PriceHistoryDialogTest, EscapeClosesTheWindowUnlessAPriceIsBeingTyped) {
  PriceHistoryDialog dialog(&mainWindow(), u"AAA.AX", {});
  whenModal("Stored prices of AAA.AX", [&](FXWindow& window) {
    dialog.table()->setFocus();
    dialog.table()->startInput(0, 0);
    key(window, KEY_Escape);
    EXPECT_TRUE(window.shown());
    key(window, KEY_Escape);
  });
  EXPECT_EQ(0u, dialog.execute());
}

TEST_F(PriceHistoryDialogTest, AFailedWriteIsTold) {
  TestProfile::writeFile(profile().cacheFolder() + u"PriceCache.BAD.AX.xml", "no document");
  EXPECT_NO_THROW(gateway().setCachedPrice(u"BAD.AX", m_monday, 4));
  EXPECT_THROW(gateway().save(u"BAD.AX"), Exception);
}

} // namespace
} // namespace Tallymoor
