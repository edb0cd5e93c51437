#include "entry/StockSearchDialog.h"
#include "entry/StockSearchTable.h"
#include "foundation/Exception.h"
#include "market/StockNames.h"
#include "market/TallymoorInternet.h"
#include "support/GatewayScope.h"
#include "support/MarketFixture.h"
#include "support/windows/WindowTest.h"
#include "widgets/HandlerScope.h"
#include <fxkeys.h>

namespace Tallymoor {
namespace {

class StockSearchDialogTest : public WindowTest {
protected:
  StockSearchDialogTest() {
    m_market.addListing(u"ABC.AX", u"Old BHP Mining", u"Australia");
    m_market.addListing(u"BHP.AX", u"bhp", u"Australia");
    m_market.addListing(u"BHPX.SI", u"BHP Far East", u"Singapore");
  }
  MarketFixture m_market;
  GatewayScope m_gateway;
};

TEST_F(StockSearchDialogTest, ShowsARowForEachResult) {
  StockSearchDialog dialog(&mainWindow(), u"bhp", true, false);
  EXPECT_EQ("Stock Search", title(dialog));
  EXPECT_TRUE(shows(dialog, "Select the stock row you require."));
  ASSERT_NE(nullptr, dialog.table());
  EXPECT_EQ(String(u"Share Search Table"), dialog.table()->name());
  EXPECT_EQ(3, dialog.table()->getNumRows());
  ASSERT_EQ(2, dialog.table()->getNumColumns());
  EXPECT_STREQ("Name", dialog.table()->getColumnText(0).text());
  EXPECT_STREQ("Market", dialog.table()->getColumnText(1).text());
  const FXint row = dialog.table()->getRow(u"BHPX.SI");
  EXPECT_STREQ("BHP Far East", dialog.table()->getItemText(row, 0).text());
  EXPECT_STREQ("Singapore", dialog.table()->getItemText(row, 1).text());
}

TEST_F(StockSearchDialogTest, ReturnsTheRowWithExactlyThisName) {
  StockSearchDialog dialog(&mainWindow(), u"BHP", true, false);
  whenModal("Stock Search", [&](FXWindow& form) { press(form, "OK"); });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(String(u"BHP.AX"), dialog.code());
  EXPECT_EQ(String(u"bhp in Australia"), dialog.name());
}

TEST_F(StockSearchDialogTest, TheNameOfTheChosenCodeIsRemembered) {
  m_market.addListing(u"XYZ.AX", u"Xylo Zinc", u"Australia");
  StockSearchDialog dialog(&mainWindow(), u"XYZ", true, false);
  EXPECT_EQ(String(), StockNames::nameOf(u"XYZ.AX"));
  whenModal("Stock Search", [&](FXWindow& form) { press(form, "OK"); });
  dialog.execute();
  EXPECT_EQ(String(u"Xylo Zinc"), StockNames::nameOf(u"XYZ.AX"));
}

TEST_F(StockSearchDialogTest, OtherwiseSelectsTheFirstRowContainingTheText) {
  StockSearchDialog dialog(&mainWindow(), u"far", true, false);
  ASSERT_NE(nullptr, dialog.table()->selected());
  EXPECT_EQ(String(u"BHPX.SI"), dialog.table()->selected()->code);
  StockSearchDialog wide(&mainWindow(), u"b", true, false);
  EXPECT_EQ(String(u"ABC.AX"), wide.table()->selected()->code);
}

TEST_F(StockSearchDialogTest, OtherwiseSelectsTheFirstRow) {
  StockSearchDialog dialog(&mainWindow(), u".ax", true, false); // Matches a code, but no name.
  EXPECT_EQ(2, dialog.table()->getNumRows());
  EXPECT_EQ(String(u"ABC.AX"), dialog.table()->selected()->code);
}

TEST_F(StockSearchDialogTest, AClickOnAHeaderSortsEvenInADialogOpenedByAHandler) {
  StockSearchDialog dialog(&mainWindow(), u"bhp", true, false);
  std::string before, after;
  whenModal("Stock Search", [&](FXWindow& form) {
    const auto firstMarket = [&] { return std::string(dialog.table()->getItemText(2, 1).text()); };
    before = firstMarket();
    FXHeader& header = *dialog.table()->getColumnHeader();
    for (int click = 0; click < 2; ++click) // By market, then in reverse.
      header.getTarget()->handle(&header, FXSEL(SEL_COMMAND, header.getSelector()),
                                 reinterpret_cast<void*>(FXival(1)));
    after = firstMarket();
    press(form, "Cancel");
  });
  guardedHandler(u"test", [&] { dialog.execute(); });
  EXPECT_EQ("Singapore", before);
  EXPECT_EQ("Australia", after);
}

TEST_F(StockSearchDialogTest, NothingFoundHasNoTableAndNoCode) {
  StockSearchDialog dialog(&mainWindow(), u"unheard of", true, false);
  EXPECT_EQ(nullptr, dialog.table());
  whenModal("Stock Search", [&](FXWindow& form) {
    EXPECT_TRUE(shows(form, "No stock matches were found - check the code."));
    press(form, "OK");
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(String(), dialog.code());
  EXPECT_EQ(String(), dialog.name());
}

TEST_F(StockSearchDialogTest, ResultsWithoutNamesGiveATableOfNoRowsAndNoCode) {
  m_market.addListing(u"QQQ.AX", String(), u"Australia");
  StockSearchDialog dialog(&mainWindow(), u"QQQ", true, false);
  ASSERT_NE(nullptr, dialog.table());
  EXPECT_EQ(0, dialog.table()->getNumRows());
  whenModal("Stock Search", [&](FXWindow& form) {
    answer("You must select the row you want.", "OK");
    press(form, "OK");
    EXPECT_TRUE(form.shown());
    press(form, "Cancel");
  });
  EXPECT_EQ(0u, dialog.execute());
  EXPECT_EQ(String(), dialog.code());
}

TEST_F(StockSearchDialogTest, NoSelectedRowIsRefused) {
  StockSearchDialog dialog(&mainWindow(), u"bhp", true, false);
  dialog.table()->killSelection();
  answer("You must select the row you want.", "OK");
  EXPECT_FALSE(dialog.validate());
}

TEST_F(StockSearchDialogTest, KeysMoveTheSelectedRow) {
  StockSearchDialog dialog(&mainWindow(), u"b", true, false);
  whenModal("Stock Search", [&](FXWindow& form) {
    key(form, KEY_Down);
    EXPECT_FALSE(dialog.table()->isRowSelected(0));
    EXPECT_TRUE(dialog.table()->isRowSelected(1));
    press(form, "OK");
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(String(u"BHP.AX"), dialog.code());
}

TEST_F(StockSearchDialogTest, AClickSelectsTheWholeRow) {
  StockSearchDialog dialog(&mainWindow(), u"b", true, false);
  whenModal("Stock Search", [&](FXWindow& form) {
    StockSearchTable& table = *dialog.table();
    FXEvent event{};
    event.code = LEFTBUTTON;
    event.click_count = 1;
    event.click_button = LEFTBUTTON;
    event.win_x = event.click_x = table.getRowHeaderWidth() + 10;
    event.win_y = event.click_y =
        table.getColumnHeaderHeight() + 2 * table.getRowHeight(0) + table.getRowHeight(1) / 2;
    table.handle(&app(), FXSEL(SEL_LEFTBUTTONPRESS, 0), &event);
    table.handle(&app(), FXSEL(SEL_LEFTBUTTONRELEASE, 0), &event);
    EXPECT_TRUE(table.isRowSelected(2));
    EXPECT_FALSE(table.isRowSelected(0));
    press(form, "OK");
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(String(u"BHPX.SI"), dialog.code());
}

TEST_F(StockSearchDialogTest, ADoubleClickAcceptsTheRowUnderIt) {
  StockSearchDialog dialog(&mainWindow(), u"b", true, false);
  const auto doubleClick = [&](FXint y) {
    StockSearchTable& table = *dialog.table();
    FXEvent event{};
    event.code = event.click_button = LEFTBUTTON;
    event.win_x = event.click_x = table.getRowHeaderWidth() + 10;
    event.win_y = event.click_y = y;
    for (const FXint count : {1, 2}) {
      event.click_count = count;
      table.handle(&app(), FXSEL(SEL_LEFTBUTTONPRESS, 0), &event);
      table.handle(&app(), FXSEL(SEL_LEFTBUTTONRELEASE, 0), &event);
    }
  };
  whenModal("Stock Search", [&](FXWindow& form) {
    StockSearchTable& table = *dialog.table();
    const FXint height = table.getRowHeight(0);
    doubleClick(table.getColumnHeaderHeight() + table.getNumRows() * height + 3);
    EXPECT_TRUE(form.shown()) << "there is no row";
    doubleClick(table.getColumnHeaderHeight() + 2 * height + height / 2);
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(String(u"BHPX.SI"), dialog.code());
}

TEST_F(StockSearchDialogTest, EnterInTheTableAccepts) {
  StockSearchDialog dialog(&mainWindow(), u"bhp", true, false);
  whenModal("Stock Search", [&](FXWindow& form) { key(form, KEY_Return); });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(String(u"BHP.AX"), dialog.code());
}

TEST_F(StockSearchDialogTest, TheListKeepsWithinItsMaximumSize) {
  for (int i = 0; i < 60; ++i)
    m_market.addListing(u"N" + String::fromLong(i) + u".AX",
                        u"Northern Star of the " + String::fromLong(i) +
                            u" Long Names, "
                            u"Holdings and Trusts Limited",
                        u"Australia");
  StockSearchDialog dialog(&mainWindow(), u"Northern", true, false);
  EXPECT_EQ(60, dialog.table()->getNumRows());
  EXPECT_EQ(400, dialog.table()->getParent()->getWidth());
  EXPECT_LE(dialog.table()->getParent()->getHeight(), 400);
  StockSearchDialog small(&mainWindow(), u"far", true, false);
  const FXint rows = small.table()->getColumnHeaderHeight() + small.table()->getRowHeight(0);
  EXPECT_EQ(rows + 15, small.table()->getParent()->getHeight());
  EXPECT_LT(small.table()->getParent()->getWidth(), 400);
}

TEST_F(StockSearchDialogTest, AFewResultsNeedNoScrollBars) {
  StockSearchDialog dialog(&mainWindow(), u"b", true, false);
  whenModal("Stock Search", [&](FXWindow& form) {
    letEventsPass();
    EXPECT_FALSE(dialog.table()->horizontalScrollBar()->shown());
    EXPECT_FALSE(dialog.table()->verticalScrollBar()->shown());
    press(form, "Cancel");
  });
  dialog.execute();
}

TEST_F(StockSearchDialogTest, TheConstructorThrowsWhenOffline) {
  TallymoorInternet::Instance().goOffline();
  try {
    StockSearchDialog dialog(&mainWindow(), u"bhp", true, false);
    FAIL() << "offline there is nothing to search";
  } catch (const HTTPException& exception) {
    EXPECT_EQ(String(u"TallymoorInternet::stockSearch - internet offline."), exception.message());
  }
}

} // namespace
} // namespace Tallymoor
