#include "TableFixture.h"

namespace Tallymoor {
namespace {

using testing::ElementsAre;

class TableSortTest : public TableFixture {
protected:
  void hide(const String& title) {
    Settings::Instance().writeUnsigned(u"Visible Columns Sample Table", title, 0);
    table().updateTable();
  }
};

TEST_F(TableSortTest, ClickOnAHeaderSortsAndASecondClickReverses) {
  clickHeader(0);
  EXPECT_EQ(0, table().sortColumn());
  EXPECT_THAT(table().column(0), ElementsAre("10.00", "20.00", "300.00"));
  EXPECT_THAT(table().keys(), ElementsAre("CCC.AX", "BBB.AX", "AAA.AX"));
  clickHeader(0);
  EXPECT_TRUE(table().sortReversed());
  EXPECT_THAT(table().column(0), ElementsAre("300.00", "20.00", "10.00"));
}

TEST_F(TableSortTest, ClickOnAnotherColumnKeepsTheDirection) {
  clickHeader(0);
  clickHeader(0);
  clickHeader(3);
  EXPECT_EQ(3, table().sortColumn());
  EXPECT_TRUE(table().sortReversed());
  EXPECT_THAT(table().column(3), ElementsAre("third", "second", "first"));
}

TEST_F(TableSortTest, CornerGoesBackToKeysInTheLastDirectionAndThenReverses) {
  clickHeader(0);
  clickHeader(0);
  clickCorner();
  EXPECT_EQ(-1, table().sortColumn());
  EXPECT_TRUE(table().sortReversed());
  EXPECT_THAT(table().keys(), ElementsAre("CCC.AX", "BBB.AX", "AAA.AX"));
  clickCorner();
  EXPECT_FALSE(table().sortReversed());
  EXPECT_THAT(table().keys(), ElementsAre("AAA.AX", "BBB.AX", "CCC.AX"));
}

TEST_F(TableSortTest, AmountsSortByTheirValue) {
  clickHeader(2);
  EXPECT_THAT(table().column(2), ElementsAre("$25.00", "$370.35", "$1,000.00"));
}

TEST_F(TableSortTest, RowsWithEqualTextsStayInTheOrderOfTheirKeysAndReverseAsAWhole) {
  for (SampleShare& share : table().shares)
    share.note = u"same";
  table().updateTable();
  clickHeader(3);
  EXPECT_THAT(table().keys(), ElementsAre("AAA.AX", "BBB.AX", "CCC.AX"));
  clickHeader(3);
  EXPECT_THAT(table().keys(), ElementsAre("CCC.AX", "BBB.AX", "AAA.AX"));
}

TEST_F(TableSortTest, FailingCellsSortAsZero) {
  share(u"BBB.AX").broken = true;
  table().updateTable();
  clickHeader(2);
  EXPECT_THAT(table().column(2), ElementsAre("error", "$25.00", "$370.35"));
}

TEST_F(TableSortTest, FollowsItsColumnWhenAnotherIsHidden) {
  clickHeader(2);
  hide(u"Number");
  EXPECT_EQ(1, table().sortColumn());
  EXPECT_THAT(table().column(1), ElementsAre("$25.00", "$370.35", "$1,000.00"));
}

TEST_F(TableSortTest, EndsWhenItsOwnColumnIsHidden) {
  clickHeader(2);
  hide(u"Value");
  EXPECT_EQ(-1, table().sortColumn());
  EXPECT_THAT(table().keys(), ElementsAre("AAA.AX", "BBB.AX", "CCC.AX"));
  Settings::Instance().writeUnsigned(u"Visible Columns Sample Table", u"Value", 1);
  table().updateTable();
  EXPECT_EQ(-1, table().sortColumn());
}

TEST_F(TableSortTest, ReversedSortThatEndsLeavesTheKeysInTheirOrder) {
  clickHeader(2);
  clickHeader(2);
  hide(u"Value");
  EXPECT_FALSE(table().sortReversed());
  EXPECT_THAT(table().keys(), ElementsAre("AAA.AX", "BBB.AX", "CCC.AX"));
  clickCorner();
  hide(u"Number"); // Ends no sort.
  EXPECT_THAT(table().keys(), ElementsAre("CCC.AX", "BBB.AX", "AAA.AX"));
}

TEST_F(TableSortTest, EndsWhenItsColumnIsDeclaredNoMore) {
  clickHeader(3);
  table().withNote = false;
  table().updateTable();
  EXPECT_EQ(-1, table().sortColumn());
}

TEST_F(TableSortTest, DragOffTheHeaderDoesNotSort) {
  FXHeader& header = *table().getColumnHeader();
  mouse(header, SEL_LEFTBUTTONPRESS, middle(header, 0), 5, LEFTBUTTON);
  mouse(header, SEL_MOTION, middle(header, 0), 300, 0);
  mouse(header, SEL_LEFTBUTTONRELEASE, middle(header, 0), 300, LEFTBUTTON);
  EXPECT_EQ(-1, table().sortColumn());
  EXPECT_EQ(1, table().fills);
}

TEST_F(TableSortTest, ClickBesideTheColumnsDoesNothing) {
  FXHeader& header = *table().getColumnHeader();
  leftClick(header, header.getTotalSize() + 20, 5);
  EXPECT_EQ(-1, table().sortColumn());
  EXPECT_EQ(1, table().fills);
}

TEST_F(TableSortTest, HeaderClickSelectsNoColumnAndCornerNotTheTable) {
  clickHeader(1);
  EXPECT_FALSE(table().isItemSelected(0, 1));
  clickCorner();
  EXPECT_FALSE(table().isItemSelected(0, 0));
}

TEST_F(TableSortTest, SelectAllByKeyNeitherSelectsNorSorts) {
  clickHeader(0);
  table().setFocus();
  key(mainWindow(), KEY_a, CONTROLMASK);
  EXPECT_EQ(0, table().sortColumn());
  EXPECT_FALSE(table().isItemSelected(0, 0));
}

TEST_F(TableSortTest, FailuresAreReportedWithTheHandlersWords) {
  table().onColumnClick = [](const TableClick&) { throw Exception(u"a"); };
  answer("Table::onLeftClickColumns failed. Exception : a", "OK");
  clickHeader(0);
  table().onCornerClick = [](const TableClick&) { throw Exception(u"b"); };
  answer("Table::onLeftClickColumns failed. Exception : b", "OK");
  clickCorner();
  EXPECT_EQ(2u, boxes().size());
}

} // namespace
} // namespace Tallymoor
