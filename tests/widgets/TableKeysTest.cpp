#include "TableFixture.h"

namespace Tallymoor {
namespace {

using testing::ElementsAre;

/// A table used by keyboard only.
class TableKeysTest : public TableFixture {
protected:
  void SetUp() override {
    TableFixture::SetUp();
    mainWindow().setFocus();
    table().setFocus();
    runUntil([this] { return table().hasFocus(); });
  }
  void keys(const std::vector<FXuint>& codes) {
    for (const FXuint code : codes)
      key(mainWindow(), code);
    letEventsPass();
  }
  std::vector<std::string> order() {
    std::vector<std::string> codes;
    for (FXint row = 0; row < table().getNumRows(); ++row)
      codes.emplace_back(table().getRowText(row).text());
    return codes;
  }
  bool headerHasKeyboard() { return table().getFocus() == table().getColumnHeader(); }
};

TEST_F(TableKeysTest, TheFirstCellHasTheFocus) {
  makeTable();
  EXPECT_EQ(-1, table().getCurrentRow());
  table().setFocus();
  EXPECT_EQ(0, table().getCurrentRow());
  EXPECT_EQ(0, table().getCurrentColumn());
}

TEST_F(TableKeysTest, ColumnsAreSortedByFromTheHeader) {
  keys({KEY_Down, KEY_Up});
  EXPECT_FALSE(headerHasKeyboard());
  keys({KEY_Up});
  EXPECT_TRUE(headerHasKeyboard());
  keys({KEY_Return});
  EXPECT_EQ(0, table().sortColumn());
  EXPECT_THAT(order(), ElementsAre("CCC.AX", "BBB.AX", "AAA.AX"));
  keys({KEY_Right, KEY_space});
  EXPECT_EQ(1, table().sortColumn());
  keys({KEY_space});
  EXPECT_TRUE(table().sortReversed());
  EXPECT_TRUE(headerHasKeyboard());
}

TEST_F(TableKeysTest, BeforeTheFirstColumnIsTheCorner) {
  keys({KEY_Up, KEY_End, KEY_Return});
  EXPECT_EQ(table().getNumColumns() - 1, table().sortColumn());
  keys({KEY_Home, KEY_Left});
  EXPECT_EQ(app().getSelbackColor(), table().getCornerButton()->getBackColor());
  keys({KEY_Return});
  EXPECT_EQ(-1, table().sortColumn());
  EXPECT_THAT(order(), ElementsAre("AAA.AX", "BBB.AX", "CCC.AX"));
  keys({KEY_Return});
  EXPECT_THAT(order(), ElementsAre("CCC.AX", "BBB.AX", "AAA.AX"));
  keys({KEY_Right});
  EXPECT_EQ(app().getBaseColor(), table().getCornerButton()->getBackColor());
}

TEST_F(TableKeysTest, AClickBesideTheCellsLeavesTheKeyboardInThem) {
  auto* field = new FXTextField(mainWindow().contentFrame(), 10);
  field->create();
  showTable();
  table().setCurrentItem(0, 1);
  const std::pair<const char*, std::function<void()>> clicks[] = {
      {"column header", [this] { clickHeader(0); }},
      {"row header", [this] { leftClick(*table().getRowHeader(), 5, middle(*table().getRowHeader(), 1)); }},
      {"corner", [this] { clickCorner(); }}};
  for (FXWindow* from : {static_cast<FXWindow*>(&table()), static_cast<FXWindow*>(field)})
    for (const auto& [where, click] : clicks) {
      SCOPED_TRACE(where);
      from->setFocus();
      click();
      EXPECT_TRUE(table().hasFocus());
      EXPECT_EQ(nullptr, table().getFocus());
      table().setCurrentItem(0, 1);
      keys({KEY_Down});
      EXPECT_EQ(1, table().getCurrentRow());
      keys({KEY_F2});
      EXPECT_TRUE(table().openEditor());
      keys({KEY_Escape});
    }
}

TEST_F(TableKeysTest, AClickBesideTheCellsEndsAnEditWithWhatWasTyped) {
  std::vector<String> typed;
  table().onCellEdited = [&](Column&, Row&, const String& text) { typed.push_back(text); };
  edit(0, 1).setText("7.5");
  clickHeader(0);
  letEventsPass();
  EXPECT_THAT(typed, ElementsAre(String(u"7.5")));
  EXPECT_FALSE(table().openEditor());
  EXPECT_EQ(0, table().sortColumn());
}

TEST_F(TableKeysTest, TheKeysGoOnFromTheRowWhoseHeadWasClicked) {
  std::vector<String> edited;
  table().onEditRow = [&](Row& row) { edited.push_back(row.key()); };
  table().setCurrentItem(0, 0);
  leftClick(*table().getRowHeader(), 5, middle(*table().getRowHeader(), 2));
  EXPECT_EQ(2, table().getCurrentRow());
  EXPECT_TRUE(table().isRowSelected(2));
  keys({KEY_Return});
  EXPECT_THAT(edited, ElementsAre(String(u"CCC.AX")));
}

TEST_F(TableKeysTest, ReturnEditsTheRowWhereTheCellItselfIsNotTypedInto) {
  std::vector<String> edited;
  table().onEditRow = [&](Row& row) { edited.push_back(row.key()); };
  table().setCurrentItem(1, 0);
  keys({KEY_Return});
  EXPECT_THAT(edited, ElementsAre(String(u"BBB.AX")));
  EXPECT_FALSE(table().openEditor());
  table().setCurrentItem(2, 1); // The price.
  keys({KEY_Return});
  EXPECT_EQ(1u, edited.size());
  EXPECT_TRUE(table().openEditor());
}

TEST_F(TableKeysTest, ReturnEditsTheRowOfATableThatIsNotTypedInto) {
  std::vector<String> edited;
  table().onEditRow = [&](Row& row) { edited.push_back(row.key()); };
  Settings::Instance().writeUnsigned(u"Visible Columns Sample Table", u"Price", 0);
  table().updateTable();
  ASSERT_FALSE(table().isEditable());
  table().setCurrentItem(1, 0);
  keys({KEY_Return, KEY_KP_Enter});
  EXPECT_THAT(edited, ElementsAre(String(u"BBB.AX"), String(u"BBB.AX")));
}

TEST_F(TableKeysTest, ADoubleClickEditsTheRowAndOnAnEditableCellTheCell) {
  std::vector<String> edited;
  table().onEditRow = [&](Row& row) { edited.push_back(row.key()); };
  doubleClick(0, 0);
  EXPECT_THAT(edited, ElementsAre(String(u"AAA.AX")));
  doubleClick(0, 1);
  EXPECT_EQ(1u, edited.size());
  EXPECT_TRUE(table().openEditor());
}

TEST_F(TableKeysTest, ADoubleClickBesideTheCellsOpensNothing) {
  std::vector<String> edited;
  table().onEditRow = [&](Row& row) { edited.push_back(row.key()); };
  const FXint lastRow = table().getNumRows() - 1, lastColumn = table().getNumColumns() - 1;
  const FXint below = cellY(lastRow) + 3 * table().getRowHeight(lastRow);
  const FXint beside = cellX(lastColumn) + 3 * table().getColumnWidth(lastColumn);
  ASSERT_LT(below, table().getHeight());
  ASSERT_LT(beside, table().getWidth());
  for (const FXint column : {0, 1}) {
    table().setCurrentItem(0, column);
    doubleClickAt(cellX(column), below);
    doubleClickAt(beside, cellY(0));
    doubleClickAt(beside, below);
  }
  EXPECT_TRUE(edited.empty());
  EXPECT_FALSE(table().openEditor());
  key(mainWindow(), KEY_Return);
  EXPECT_TRUE(table().openEditor()) << "the key means the current cell, wherever the mouse is";
}

TEST_F(TableKeysTest, TheMenuKeyOpensTheColumnsPopupBelowItsTitle) {
  for (const auto& [code, state] : {std::pair<FXuint, FXuint>{KEY_Menu, 0}, {KEY_F10, SHIFTMASK}}) {
    whenModal("Select columns...", [&](FXWindow& menu) {
      EXPECT_TRUE(findButton(menu, "Remove column \"Price\""));
      FXint x = 0, y = 0;
      FXHeader& header = *table().getColumnHeader();
      header.translateCoordinatesFrom(x, y, header.getRoot(), menu.getX(), menu.getY());
      EXPECT_EQ(1, header.getItemAt(x));
      EXPECT_EQ(header.getHeight(), y);
      dynamic_cast<FXPopup&>(menu).popdown();
    });
    table().setCurrentItem(0, 1);
    keys({KEY_Up});
    key(mainWindow(), code, state);
    keys({KEY_Escape});
    EXPECT_FALSE(headerHasKeyboard());
  }
  keys({KEY_Up, KEY_Home, KEY_Left});
  key(mainWindow(), KEY_Menu); // The corner has no popup.
}

TEST_F(TableKeysTest, DownLeadsBackToTheColumnThatWasReached) {
  keys({KEY_Up, KEY_Right, KEY_Right, KEY_Up, KEY_Down});
  EXPECT_FALSE(headerHasKeyboard());
  EXPECT_EQ(0, table().getCurrentRow());
  EXPECT_EQ(2, table().getCurrentColumn());
  keys({KEY_Down});
  EXPECT_EQ(1, table().getCurrentRow());
}

TEST_F(TableKeysTest, AHiddenLastColumnLeavesTheHeaderOnTheOneBefore) {
  keys({KEY_Up, KEY_End});
  whenModal("Select columns...", [&](FXWindow& menu) { press(menu, "Remove column \"Note\""); });
  answer("Do you want to hide column \"Note\"?", "Yes");
  key(mainWindow(), KEY_Menu);
  keys({KEY_Return});
  EXPECT_EQ(table().getNumColumns() - 1, table().sortColumn());
}

TEST_F(TableKeysTest, AnEmptyTableHasItsHeader) {
  table().shares.clear();
  table().updateTable();
  keys({KEY_Up});
  EXPECT_TRUE(headerHasKeyboard());
  keys({KEY_Right, KEY_Return, KEY_Down});
  EXPECT_EQ(1, table().sortColumn());
  EXPECT_FALSE(headerHasKeyboard());
}

TEST_F(TableKeysTest, TheTabKeyLeavesTheTableFromCellsAndHeader) {
  auto* field = new FXTextField(mainWindow().contentFrame(), 10);
  field->create();
  showTable();
  keys({KEY_Tab});
  EXPECT_TRUE(field->hasFocus());
  key(mainWindow(), KEY_ISO_Left_Tab, SHIFTMASK);
  EXPECT_TRUE(table().hasFocus());
  keys({KEY_Up});
  EXPECT_TRUE(headerHasKeyboard());
  keys({KEY_Tab});
  EXPECT_TRUE(field->hasFocus());
  EXPECT_FALSE(headerHasKeyboard());
}

TEST_F(TableKeysTest, AColumnOutOfSightScrollsIntoSight) {
  table().getColumnHeader()->setItemSize(1, 4000);
  table().recalc();
  letEventsPass();
  keys({KEY_Up, KEY_End});
  FXHeader& header = *table().getColumnHeader();
  const FXint last = header.getNumItems() - 1;
  EXPECT_GE(header.getItemOffset(last), 0);
  EXPECT_LE(header.getItemOffset(last) + header.getItemSize(last), header.getWidth());
  keys({KEY_Home});
  EXPECT_EQ(0, header.getItemOffset(0));
}

TEST_F(TableKeysTest, TheHelpOfTheColumnStandsInTheStatusLine) {
  keys({KEY_Up, KEY_Right});
  EXPECT_STREQ("What one share costs now", mainWindow().statusBar()->getStatusLine()->getText().text());
}

} // namespace
} // namespace Tallymoor
