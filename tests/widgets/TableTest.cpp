#include "TableFixture.h"
#include "foundation/RunTimeSettings.h"
#include "widgets/Colours.h"
#include "widgets/TableHeader.h"
#include "xml/CountryOfResidence.h"

namespace Tallymoor {
namespace {

using testing::ElementsAre;

class TableTest : public TableFixture {
protected:
  static std::string messageOf(const std::function<void()>& work) {
    try {
      work();
    } catch (const Exception& exception) {
      return exception.message().toUTF8();
    }
    return "nothing was thrown";
  }
};

CellResult undeclared(Row&) {
  return CellResult(0);
}

TEST_F(TableTest, ShowsWhatItsFunctionsComputeInTheOrderOfItsKeys) {
  EXPECT_THAT(table().titles(), ElementsAre("Number", "Price", "Value", "Note"));
  EXPECT_THAT(table().keys(), ElementsAre("AAA.AX", "BBB.AX", "CCC.AX"));
  EXPECT_THAT(table().column(0), ElementsAre("300.00", "20.00", "10.00"));
  EXPECT_THAT(table().column(1), ElementsAre("1.2345", "50.00", "2.50"));
  EXPECT_THAT(table().column(2), ElementsAre("$370.35", "$1,000.00", "$25.00"));
  EXPECT_THAT(table().column(3), ElementsAre("third", "second", "first"));
  EXPECT_EQ(-1, table().sortColumn());
  EXPECT_FALSE(table().sortReversed());
}

TEST_F(TableTest, ComputesEachShownCellOnceThoughOthersReadIt) {
  table().computed = 0;
  table().updateTable();
  EXPECT_EQ(3, table().computed);
}

TEST_F(TableTest, CellsAreAlignedAsTheirColumnSaysAndHeadersAreCentred) {
  EXPECT_EQ(static_cast<FXuint>(FXTableItem::RIGHT), table().getItem(0, 0)->getJustify());
  EXPECT_EQ(static_cast<FXuint>(FXTableItem::LEFT), table().getItem(0, 3)->getJustify());
  for (FXint column = 0; column < 4; ++column)
    EXPECT_EQ(0u, table().getColumnHeader()->getItemJustify(column));
}

TEST_F(TableTest, EditableCellsAreTinted) {
  EXPECT_EQ(FXRGB(235, 235, 235), table().item(0, 1).colour());
  EXPECT_EQ(FXRGB(235, 235, 235), table().item(0, 1).defaultColour());
  EXPECT_EQ(TableItem::NO_COLOUR, table().item(0, 0).colour());
  EXPECT_TRUE(table().isEditable());
}

TEST_F(TableTest, WithNoEditableColumnShownNothingCanBeEdited) {
  Settings::Instance().writeUnsigned(u"Visible Columns Sample Table", u"Price", 0);
  table().updateTable();
  EXPECT_FALSE(table().isEditable());
}

TEST_F(TableTest, IsItsOwnTargetWithItsOwnIdentifiers) {
  EXPECT_EQ(&table(), table().getTarget());
  EXPECT_EQ(88u, static_cast<FXuint>(Table::ID_TABLE));
  EXPECT_EQ(92u, static_cast<FXuint>(Table::ID_LAST));
  EXPECT_EQ(Table::ID_TABLE + 0u, table().getSelector());
  EXPECT_EQ(61u, static_cast<FXuint>(Table::ID_SELECT_COLUMN_INDEX));
  EXPECT_EQ(62u, static_cast<FXuint>(Table::ID_SELECT_ROW_INDEX));
  EXPECT_EQ(66u, static_cast<FXuint>(Table::ID_SELECT_ALL));
  EXPECT_TRUE(dynamic_cast<TableHeader*>(table().getColumnHeader()));
}

TEST_F(TableTest, HiddenColumnStillAnswersCellAndSum) {
  Settings::Instance().writeUnsigned(u"Visible Columns Sample Table", u"Value", 0);
  table().updateTable();
  EXPECT_THAT(table().titles(), ElementsAre("Number", "Price", "Note"));
  EXPECT_EQ(-1, table().getColumn(SampleTable::value).index());
  EXPECT_DOUBLE_EQ(1000.0, table().cell(SampleTable::value, row(u"BBB.AX")).value());
  EXPECT_DOUBLE_EQ(300 * 1.2345 + 1000 + 25, table().sumColumn(SampleTable::value));
  EXPECT_EQ(0, table().columnWidth(table().getColumn(SampleTable::value)));
}

TEST_F(TableTest, SumsAddNumbersOnlyAndSkipRowsThatFail) {
  EXPECT_DOUBLE_EQ(330.0, table().sumColumn(SampleTable::number));
  EXPECT_DOUBLE_EQ(0.0, table().sumColumn(SampleTable::note));
  EXPECT_DOUBLE_EQ(0.0, table().sumColumn(SampleTable::bought));
  share(u"BBB.AX").broken = true;
  table().updateTable();
  EXPECT_DOUBLE_EQ(300 * 1.2345 + 25, table().sumColumn(SampleTable::value));
}

TEST_F(TableTest, FailingCellReadsErrorAndTheOthersAreFilled) {
  share(u"BBB.AX").broken = true;
  table().updateTable();
  EXPECT_THAT(table().column(2), ElementsAre("$370.35", "error", "$25.00"));
  EXPECT_THAT(table().column(3), ElementsAre("third", "second", "first"));
}

TEST_F(TableTest, FailureIsRememberedUntilTheRowIsRefreshed) {
  share(u"BBB.AX").broken = true;
  table().updateTable();
  share(u"BBB.AX").broken = false;
  EXPECT_EQ("no price", messageOf([&] { table().cell(SampleTable::value, row(u"BBB.AX")); }));
  table().refreshRow(row(u"BBB.AX"));
  EXPECT_DOUBLE_EQ(1000.0, table().cell(SampleTable::value, row(u"BBB.AX")).value());
  EXPECT_EQ("$1,000.00", table().column(2)[1]);
}

TEST_F(TableTest, WithoutRowsItSaysWhatCanBeDone) {
  const auto bodyPixels = [this] {
    letEventsPass();
    app().repaint();
    FXImage picture(&app(), nullptr, IMAGE_OWNED, table().getWidth(), table().getHeight());
    picture.create();
    FXDCWindow(&picture).drawArea(&table(), 0, 0, picture.getWidth(), picture.getHeight(), 0, 0);
    picture.restore();
    std::vector<FXColor> pixels;
    for (FXint y = table().getColumnHeaderHeight(); y < picture.getHeight(); ++y)
      for (FXint x = 0; x < picture.getWidth(); ++x)
        pixels.push_back(picture.getPixel(x, y));
    return pixels;
  };
  table().setEmptyText(u"Nothing here.\nAdd a share.");
  EXPECT_EQ(String(), table().shownEmptyText());
  table().shares.clear();
  table().updateTable();
  EXPECT_EQ(String(u"Nothing here.\nAdd a share."), table().shownEmptyText());
  const std::vector<FXColor> with = bodyPixels();
  table().setEmptyText(String());
  const std::vector<FXColor> without = bodyPixels();
  ASSERT_EQ(with.size(), without.size());
  std::size_t changed = 0;
  for (std::size_t i = 0; i < with.size(); ++i)
    changed += with[i] != without[i];
  EXPECT_GT(changed, 100u) << "the text is drawn";
  EXPECT_LT(changed, with.size() / 10);
}

TEST_F(TableTest, LooksUpColumnsAndRows) {
  EXPECT_TRUE(table().hasColumn(SampleTable::bought));
  EXPECT_FALSE(table().hasColumn(undeclared));
  EXPECT_EQ(2, table().getColumn(SampleTable::value).index());
  EXPECT_EQ(&table().getColumn(SampleTable::value), table().columnAt(2));
  EXPECT_EQ(nullptr, table().columnAt(4));
  EXPECT_EQ(nullptr, table().columnAt(-1));
  EXPECT_EQ(1, table().getRow(u"BBB.AX"));
  EXPECT_TRUE(table().hasRow(u"AAA.AX"));
  EXPECT_FALSE(table().hasRow(u"aaa.ax"));
  EXPECT_EQ(nullptr, table().rowAt(3));
  EXPECT_EQ(nullptr, table().rowAt(-1));
  EXPECT_EQ("Table::getColumn - no column for that function",
            messageOf([&] { table().getColumn(undeclared); }));
  EXPECT_EQ("Table::getRow - no row for: ZZZ.AX", messageOf([&] { table().getRow(u"ZZZ.AX"); }));
}

TEST_F(TableTest, EqualKeysKeepTheirOrderOfInsertion) {
  table().shares.push_back({u"BBB.AX", 7, 1, Date(2006, 1, 1), u"again"});
  table().updateTable();
  EXPECT_THAT(table().keys(), ElementsAre("AAA.AX", "BBB.AX", "BBB.AX", "CCC.AX"));
  EXPECT_THAT(table().column(3), ElementsAre("third", "second", "again", "first"));
  EXPECT_EQ(1, table().getRow(u"BBB.AX"));
}

TEST_F(TableTest, RowsCanBeOrderedByDatesAndAreFoundByTheirText) {
  makeTable(true, u"Dated Table", COMPARE_NEWEST_FIRST);
  const auto local = [](int year, int month, int day) {
    return Date(year, month, day).toString(DATE_DISPLAY_LOCAL);
  };
  table().shares = {{local(2005, 1, 1)}, {u"someday"}, {local(2006, 1, 1)}, {u"never"}};
  table().updateTable();
  EXPECT_THAT(table().keys(),
              ElementsAre(local(2006, 1, 1).toUTF8(), local(2005, 1, 1).toUTF8(), "someday", "never"));
  EXPECT_EQ(3, table().getRow(u"never"));
  EXPECT_EQ("Table::getRow - no row for: at some time", messageOf([&] { table().getRow(u"at some time"); }));
}

TEST_F(TableTest, FillingAgainTakesUpNewRecords) {
  table().shares.push_back({u"ABC.AX", 1, 1, Date(2006, 1, 1), u"new"});
  table().shares.pop_front();
  table().updateTable();
  EXPECT_THAT(table().keys(), ElementsAre("AAA.AX", "ABC.AX", "BBB.AX"));
  table().clear();
  EXPECT_EQ(0, table().getNumRows());
  EXPECT_EQ(0, table().getNumColumns());
  EXPECT_EQ(0u, table().numRows());
}

TEST_F(TableTest, TellsItsWatcherAfterARebuildOnly) {
  watcher().told.clear();
  table().updateTable();
  EXPECT_THAT(watcher().told, ElementsAre(true));
  table().refreshRow(row(u"AAA.AX"));
  EXPECT_THAT(watcher().told, ElementsAre(true));
}

TEST_F(TableTest, RefreshingARowComputesNoOther) {
  table().computed = 0;
  share(u"BBB.AX").price = 60;
  share(u"CCC.AX").price = 3;
  table().refreshRow(row(u"BBB.AX"));
  EXPECT_EQ(1, table().computed);
  EXPECT_THAT(table().column(1), ElementsAre("1.2345", "60.00", "2.50"));
  EXPECT_THAT(table().column(2), ElementsAre("$370.35", "$1,200.00", "$25.00"));
}

TEST_F(TableTest, TintsOfARowGoBackToThoseOfItsCells) {
  Row& painted = row(u"BBB.AX");
  painted.setColour(belowLimitTint());
  for (FXint column = 0; column < 4; ++column)
    EXPECT_EQ(FXRGB(255, 175, 175), table().item(1, column).colour());
  EXPECT_EQ(TableItem::NO_COLOUR, table().item(0, 0).colour());
  painted.resetColour();
  EXPECT_EQ(TableItem::NO_COLOUR, table().item(1, 0).colour());
  EXPECT_EQ(editableTint(), table().item(1, 1).colour());
  painted.clearColour();
  EXPECT_EQ(TableItem::NO_COLOUR, table().item(1, 1).colour());
  EXPECT_EQ(editableTint(), table().item(1, 1).defaultColour());
}

TEST_F(TableTest, CellFunctionsMayPaintWhileARowHasNoPlaceYet) {
  table().declareMore = [](Table& filled) {
    filled.addColumn(std::make_unique<Column>(
        u"Painter",
        [](Row& row) {
          row.setColour(aboveLimitTint());
          return CellResult(String(row.index() < 0 ? u"unplaced" : u"placed"));
        },
        COMPARE_TEXT));
  };
  table().updateTable();
  clickHeader(4); // Sorting computes the column before any row is placed.
  EXPECT_THAT(table().column(4), ElementsAre("placed", "placed", "placed"));
  EXPECT_EQ(aboveLimitTint(), table().item(0, 0).colour());
  table().rebuild();
  EXPECT_EQ(aboveLimitTint(), table().item(2, 0).colour());
}

// Widths and heights

TEST_F(TableTest, ColumnsAndRowsAreAsLargeAsTheirTextsNeed) {
  FXFont& font = *table().getFont();
  EXPECT_EQ(font.getTextWidth("Number") + 20, table().getColumnWidth(0));
  EXPECT_EQ(font.getTextWidth("$1,000.00") + 20, table().getColumnWidth(2));
  EXPECT_EQ(std::max(font.getTextWidth("AAA.AX"), font.getTextWidth("CCC.AX")) + 20,
            table().getRowHeaderWidth());
  EXPECT_EQ(font.getTextHeight("AAA.AX") + 6, table().getRowHeight(0));
  EXPECT_EQ(3, table().getMarginLeft());
  EXPECT_EQ(3, table().getMarginRight());
  EXPECT_GE(table().getColumnHeaderHeight(), font.getTextHeight("Number"));
}

TEST_F(TableTest, TotalsStandUnderTheirColumns) {
  EXPECT_EQ(6, table().columnLeft(*table().columnAt(0)));
  EXPECT_EQ(table().getColumnWidth(0) + table().getColumnWidth(1) + 6,
            table().columnLeft(*table().columnAt(2)));
  EXPECT_EQ(table().getColumnWidth(2), table().columnWidth(*table().columnAt(2)));
}

TEST_F(TableTest, TableOfItsOwnSizeHoldsItsContentsExactly) {
  makeTable(false, u"Small Table");
  FXint width = table().getRowHeaderWidth() + 2 * 4 - 2;
  for (FXint column = 0; column < 4; ++column)
    width += table().getColumnWidth(column);
  const FXint height = table().getColumnHeaderHeight() + 3 * table().getRowHeight(0) + 2 * 3;
  EXPECT_EQ(width, table().getWidth());
  EXPECT_EQ(height, table().getHeight());
  EXPECT_GE(table().getWidth(), table().getContentWidth());
  EXPECT_GE(table().getHeight(), table().getContentHeight());
}

TEST_F(TableTest, TableOfItsOwnSizeWithoutRowsIsAsHighAsItsHeader) {
  makeTable(false, u"Small Table");
  table().shares.clear();
  table().updateTable();
  letEventsPass();
  EXPECT_EQ(table().getColumnHeaderHeight(), table().getHeight());
  EXPECT_FALSE(table().verticalScrollBar()->shown());
  EXPECT_FALSE(table().horizontalScrollBar()->shown());
}

TEST_F(TableTest, TableThatFillsItsParentDoes) {
  EXPECT_EQ(mainWindow().contentFrame()->getWidth(), table().getWidth());
  EXPECT_EQ(mainWindow().contentFrame()->getHeight(), table().getHeight());
}

TEST_F(TableTest, CurrentCellStaysWithItsRowAndColumnAcrossRebuilds) {
  table().setCurrentItem(1, 2, FALSE);
  table().shares.push_back({u"ABB.AX", 1, 1, Date(2006, 1, 1), u"new"});
  table().updateTable();
  EXPECT_EQ(2, table().getCurrentRow());
  EXPECT_EQ(2, table().getCurrentColumn());
}

// The wheel

TEST_F(TableTest, WheelGoesToTheAreaAroundATableThatHasNothingToScroll) {
  class Area : public FXScrollWindow {
  public:
    explicit Area(FXComposite* parent) : FXScrollWindow(parent, LAYOUT_FILL_X | LAYOUT_FILL_Y) {}
    long handle(FXObject* sender, FXSelector selector, void* data) override {
      wheels += FXSELTYPE(selector) == SEL_MOUSEWHEEL;
      return FXScrollWindow::handle(sender, selector, data);
    }
    int wheels = 0;
  };
  auto* area = new Area(mainWindow().contentFrame());
  auto* inner = new SampleTable(area, false);
  inner->updateTable();
  area->create();
  FXEvent event{};
  event.code = 120;
  inner->handle(&app(), FXSEL(SEL_MOUSEWHEEL, 0), &event);
  EXPECT_EQ(1, area->wheels);
  table().handle(&app(), FXSEL(SEL_MOUSEWHEEL, 0), &event);
  EXPECT_EQ(1, area->wheels);
}

// The view date and the financial year

class TableDateTest : public TableTest {
protected:
  void SetUp() override {
    TableTest::SetUp();
    profile().writeFile(
        profile().configFolder() + u"CountryConfig.xml",
        "<?xml version=\"1.0\"?>\n<CountryOptions version=\"1\"><CountryOption Name=\"Australia\" "
        "FinYearStart=\"1/7/2000\"/></CountryOptions>\n");
    Settings::Instance().writeString(u"Config", u"Country", u"Australia");
    CountryOfResidence::destroyInstance();
  }
  void TearDown() override {
    hideLastFYTransactions = false;
    CountryOfResidence::destroyInstance();
    TableTest::TearDown();
  }
};

TEST_F(TableDateTest, EveryDayIsShownUnlessSomethingHidesIt) {
  EXPECT_TRUE(Table::dateShown(Date(1990, 1, 1)));
  EXPECT_TRUE(Table::dateShown(Date(2026, 3, 4))); // Tomorrow: no view date is set.
}

TEST_F(TableDateTest, DaysAfterTheViewDateAreHidden) {
  Date::setFixedDate(Date(2025, 12, 1));
  EXPECT_TRUE(Table::dateShown(Date(2025, 12, 1)));
  EXPECT_FALSE(Table::dateShown(Date(2025, 12, 2)));
}

TEST_F(TableDateTest, EarlierFinancialYearsCanBeHidden) {
  hideLastFYTransactions = true;
  EXPECT_FALSE(Table::dateShown(Date(2025, 6, 30)));
  EXPECT_TRUE(Table::dateShown(Date(2025, 7, 1)));
  Date::setFixedDate(Date(2025, 6, 1)); // The current year is then that of the view date.
  EXPECT_TRUE(Table::dateShown(Date(2024, 7, 1)));
  EXPECT_FALSE(Table::dateShown(Date(2024, 6, 30)));
  EXPECT_FALSE(Table::dateShown(Date(2025, 6, 2)));
}

} // namespace
} // namespace Tallymoor
