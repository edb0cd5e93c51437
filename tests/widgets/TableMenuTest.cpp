#include "TableFixture.h"
#include <fxkeys.h>

namespace Tallymoor {
namespace {

using testing::ElementsAre;

const String SECTION = u"Visible Columns Sample Table";

class TableMenuTest : public TableFixture {
protected:
  static std::vector<std::string> entries(FXWindow& menu) {
    std::vector<std::string> texts;
    for (const FXMenuCommand* entry : findAll<FXMenuCommand>(menu))
      texts.emplace_back(entry->getText().text());
    return texts;
  }
  void close(FXWindow& menu) { dynamic_cast<FXPopup&>(menu).popdown(); }
  static std::uint32_t setting(const String& title) {
    return Settings::Instance().readUnsigned(SECTION, title, 7);
  }
  void hideAllBut(const String& title) {
    for (const std::unique_ptr<Column>& column : table().columns())
      Settings::Instance().writeUnsigned(SECTION, column->title(), column->title() == title);
    table().updateTable();
  }
};

TEST_F(TableMenuTest, ColumnMenuOffersToRemoveTheColumnUnderTheMouse) {
  whenModal("Select columns...", [&](FXWindow& menu) {
    EXPECT_THAT(entries(menu),
                ElementsAre("Remove column \"Value\"", "Select columns...", "Reset columns to defaults"));
    close(menu);
  });
  rightClickHeader(2);
  EXPECT_EQ(&table().getColumn(SampleTable::value), table().inputColumn());
  EXPECT_EQ(-1, table().sortColumn());
}

TEST_F(TableMenuTest, ColumnMenuBesideTheColumnsOffersNoRemoval) {
  whenModal("Select columns...", [&](FXWindow& menu) {
    EXPECT_THAT(entries(menu), ElementsAre("Select columns...", "Reset columns to defaults"));
    close(menu);
  });
  FXHeader& header = *table().getColumnHeader();
  rightClick(header, header.getTotalSize() + 20, 5);
}

TEST_F(TableMenuTest, OnlyColumnCannotBeRemoved) {
  hideAllBut(u"Number");
  whenModal("Select columns...", [&](FXWindow& menu) {
    EXPECT_THAT(entries(menu), ElementsAre("Select columns...", "Reset columns to defaults"));
    close(menu);
  });
  rightClickHeader(0);
  command(Table::ID_REMOVE_COLUMN); // Asks no question.
  EXPECT_THAT(table().titles(), ElementsAre("Number"));
  EXPECT_EQ(1u, setting(u"Number"));
}

TEST_F(TableMenuTest, RemovingAsksAndHides) {
  whenModal("Select columns...", [&](FXWindow& menu) { press(menu, "Remove column \"Value\""); });
  answer("Do you want to hide column \"Value\"?", "Yes");
  rightClickHeader(2);
  EXPECT_THAT(table().titles(), ElementsAre("Number", "Price", "Note"));
  EXPECT_EQ(0u, setting(u"Value"));
}

TEST_F(TableMenuTest, RemovingCanBeDeclined) {
  whenModal("Select columns...", [&](FXWindow& menu) { press(menu, "Remove column \"Value\""); });
  answer("Do you want to hide column \"Value\"?", "No");
  rightClickHeader(2);
  EXPECT_EQ(4, table().getNumColumns());
  EXPECT_EQ(7u, setting(u"Value"));
}

TEST_F(TableMenuTest, TitlesWithAnAmpersandAreShownAsTheyAre) {
  table().valueTitle = u"S&P 500";
  table().updateTable();
  EXPECT_EQ("S&P 500", table().titles()[2]);
  whenModal("Select columns...", [&](FXWindow& menu) {
    EXPECT_EQ("Remove column \"S&P 500\"", entries(menu)[0]);
    press(menu, "Remove column \"S&P 500\"");
  });
  answer("Do you want to hide column \"S&P 500\"?", "No");
  rightClickHeader(2);
}

TEST_F(TableMenuTest, HiddenColumnStaysHiddenUntilTheColumnsAreReset) {
  Settings::Instance().writeUnsigned(SECTION, u"Price", 0);
  table().updateTable();
  EXPECT_THAT(table().titles(), ElementsAre("Number", "Value", "Note"));
  makeTable();
  EXPECT_THAT(table().titles(), ElementsAre("Number", "Value", "Note"));
  whenModal("Select columns...", [&](FXWindow& menu) { press(menu, "Reset columns to defaults"); });
  answer("Do you want to reset columns to default?", "Yes");
  rightClickHeader(0);
  EXPECT_THAT(table().titles(), ElementsAre("Number", "Price", "Value", "Note"));
  EXPECT_EQ(1u, setting(u"Price"));
  EXPECT_EQ(0u, setting(u"Bought"));
}

TEST_F(TableMenuTest, ResetCanBeDeclined) {
  Settings::Instance().writeUnsigned(SECTION, u"Price", 0);
  answer("Do you want to reset columns to default?", "No");
  command(Table::ID_RESET_COLUMNS);
  EXPECT_EQ(0u, setting(u"Price"));
}

TEST_F(TableMenuTest, DialogShowsEveryColumnAndKeepsTheChoice) {
  whenModal("Select columns...", [&](FXWindow& menu) { press(menu, "Select columns..."); });
  whenModal("Select the columns you wish to view on this table.", [&](FXWindow& dialog) {
    EXPECT_EQ("Choose Columns", title(dialog));
    std::vector<std::string> marks;
    for (const FXCheckButton* button : findAll<FXCheckButton>(dialog))
      marks.push_back(std::string(button->getText().text()) + (button->getCheck() ? "+" : "-"));
    EXPECT_THAT(marks, ElementsAre("Number+", "Price+", "Value+", "Bought-", "Note+"));
    for (FXCheckButton* button : findAll<FXCheckButton>(dialog))
      button->setCheck(button->getText() == "Bought" || button->getText() == "Note");
    press(dialog, "OK");
  });
  rightClickHeader(0);
  EXPECT_THAT(table().titles(), ElementsAre("Bought", "Note"));
  EXPECT_EQ(0u, setting(u"Number"));
  EXPECT_EQ(1u, setting(u"Bought"));
}

TEST_F(TableMenuTest, CancelledDialogChangesNothing) {
  whenModal("Choose Columns", [&](FXWindow& dialog) { press(dialog, "Cancel"); });
  command(Table::ID_SELECT_COLUMNS);
  EXPECT_EQ(4, table().getNumColumns());
  EXPECT_EQ(7u, setting(u"Number"));
}

TEST_F(TableMenuTest, RenamedTitleLosesTheChoice) {
  Settings::Instance().writeUnsigned(SECTION, u"Value", 0);
  table().valueTitle = u"Market Value";
  table().updateTable();
  EXPECT_THAT(table().titles(), ElementsAre("Number", "Price", "Market Value", "Note"));
}

TEST_F(TableMenuTest, ColumnHiddenByDefaultIsNotedOnceAndAChoiceIsKept) {
  EXPECT_EQ(0u, setting(u"Bought"));
  Settings::Instance().writeUnsigned(SECTION, u"Bought", 1);
  table().updateTable();
  EXPECT_EQ(1u, setting(u"Bought"));
  EXPECT_THAT(table().titles(), ElementsAre("Number", "Price", "Value", "Bought", "Note"));
  EXPECT_EQ(7u, setting(u"Number")) << "columns shown by default need no entry";
}

TEST_F(TableMenuTest, ChoiceFromBeforeTheMarkIsDroppedOnce) {
  const String section = u"Visible Columns Old Table";
  Settings::Instance().writeUnsigned(section, u"Number", 0);
  makeTable(true, u"Old Table");
  EXPECT_EQ("Number", table().titles()[0]);
  EXPECT_EQ(1u, Settings::Instance().readUnsigned(u"Upgrades", section, 0));
  Settings::Instance().writeUnsigned(section, u"Number", 0);
  makeTable(true, u"Old Table");
  EXPECT_EQ("Price", table().titles()[0]);
}

// Rows and cells

TEST_F(TableMenuTest, RowMenuOpensFromTheRowHeaderWithTheRowSelected) {
  Row* clicked = nullptr;
  table().onRowPopup = [&](const TableClick& click) {
    clicked = click.row;
    EXPECT_EQ(nullptr, click.column);
    EXPECT_NE(0, click.screenX);
  };
  rightClickRow(1);
  EXPECT_EQ(&row(u"BBB.AX"), clicked);
  EXPECT_TRUE(table().isItemSelected(1, 0));
  EXPECT_TRUE(table().isItemSelected(1, 3));
  EXPECT_FALSE(table().isItemSelected(0, 0));
  clicked = nullptr;
  rightClick(*table().getRowHeader(), 5, table().getRowHeader()->getTotalSize() + 20);
  EXPECT_EQ(nullptr, clicked);
}

TEST_F(TableMenuTest, RightClickInTheBodyTellsTheCellAndOpensNothing) {
  rightClick(table(), cellX(1), cellY(2));
  TableClick seen;
  table().onCellClick = [&](const TableClick& click) { seen = click; };
  rightClick(table(), cellX(1), cellY(2));
  EXPECT_EQ(&row(u"CCC.AX"), seen.row);
  EXPECT_EQ(table().columnAt(1), seen.column);
  rightClick(table(), cellX(3) + 400, cellY(2) + 200);
  EXPECT_EQ(nullptr, seen.row);
  EXPECT_EQ(nullptr, seen.column);
  EXPECT_TRUE(boxes().empty());
}

TEST_F(TableMenuTest, RowsStayUntilTheirMenuHasClosed) {
  table().onRowPopup = [&](const TableClick& click) {
    table().shares.clear();
    table().updateTable();
    EXPECT_EQ(3, table().getNumRows());
    EXPECT_EQ(String(u"AAA.AX"), click.row->key());
  };
  rightClickRow(0);
  EXPECT_EQ(0, table().getNumRows());
}

TEST_F(TableMenuTest, MenuKeyOpensTheMenuOfTheCurrentRow) {
  std::vector<const Row*> opened;
  FXint x = 0, y = 0;
  table().onRowPopup = [&](const TableClick& click) {
    opened.push_back(click.row);
    FXHeader& header = *table().getRowHeader();
    header.translateCoordinatesFrom(x, y, header.getRoot(), click.screenX, click.screenY);
  };
  FXEvent menuKey{};
  menuKey.code = KEY_Menu;
  table().killSelection();
  table().setCurrentItem(-1, -1);
  table().handle(&app(), FXSEL(SEL_KEYPRESS, 0), &menuKey); // Without a row there is no menu.
  EXPECT_THAT(opened, ElementsAre());
  table().setCurrentItem(1, 0);
  table().handle(&app(), FXSEL(SEL_KEYPRESS, 0), &menuKey);
  EXPECT_THAT(opened, ElementsAre(table().rowAt(1)));
  EXPECT_TRUE(table().isRowSelected(1));
  EXPECT_EQ(1, table().getRowHeader()->getItemAt(y - 1)); // It opens below the row.
  EXPECT_NE(1, table().getRowHeader()->getItemAt(y));
}

TEST_F(TableMenuTest, HelpOfTheColumnUnderTheMouseIsShown) {
  FXHeader& header = *table().getColumnHeader();
  mouse(header, SEL_MOTION, middle(header, 1), 5, 0);
  EXPECT_STREQ("What one share costs now", header.getHelpText().text());
  mouse(header, SEL_MOTION, middle(header, 0), 5, 0);
  EXPECT_STREQ("", header.getHelpText().text());
  mouse(header, SEL_MOTION, header.getTotalSize() + 20, 5, 0);
  EXPECT_STREQ("", header.getHelpText().text());
}

TEST_F(TableMenuTest, FailuresAreReportedWithTheHandlersWords) {
  const auto fail = [](const TableClick&) { throw Exception(u"bad"); };
  table().onColumnPopup = table().onRowPopup = table().onCellClick = fail;
  answer("Table::onRightClickColumns failed. Exception : bad", "OK");
  rightClickHeader(0);
  answer("Table::onRightClickRows failed. Exception : bad", "OK");
  rightClickRow(0);
  answer("Table::onRightClick failed. Exception : bad", "OK");
  rightClick(table(), cellX(0), cellY(0));
  EXPECT_EQ(3u, boxes().size());
}

TEST_F(TableMenuTest, FailureToFillIsReportedWithTheWordsOfTheCommand) {
  table().setInputRow(nullptr);
  whenModal("Select columns...", [&](FXWindow& menu) { close(menu); });
  rightClickHeader(0); // The column to remove.
  table().declareMore = [](Table&) { throw Exception(u"no records"); };
  answer("Do you want to hide column \"Number\"?", "Yes");
  answer("Table::onRemoveColumn failed. Exception : no records", "OK");
  command(Table::ID_REMOVE_COLUMN);
  answer("Do you want to reset columns to default?", "Yes");
  answer("Table::onResetColumns failed. Exception : no records", "OK");
  command(Table::ID_RESET_COLUMNS);
  whenModal("Choose Columns", [&](FXWindow& dialog) {
    for (FXCheckButton* button : findAll<FXCheckButton>(dialog))
      button->setCheck(TRUE);
    press(dialog, "OK");
  });
  answer("Table::onSelectColumns failed. Exception : no records", "OK");
  command(Table::ID_SELECT_COLUMNS);
}

} // namespace
} // namespace Tallymoor
