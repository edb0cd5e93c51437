#include "TableFixture.h"
#include "foundation/RunTimeSettings.h"
#include <thread>

namespace Tallymoor {
namespace {

using testing::ElementsAre;

class TableEditTest : public TableFixture {
protected:
  void SetUp() override {
    TableFixture::SetUp();
    table().onCellEdited = [this](Column& column, Row& row, const String& text) {
      m_edited.push_back((row.key() + u"/" + column.title() + u"=" + text).toUTF8());
    };
  }

  std::vector<std::string> m_edited;
};

TEST_F(TableEditTest, KeyOpensTheEditorOfAnEditableCellOnly) {
  FXTextField& field = edit(1, 1);
  EXPECT_STREQ("50.00", field.getText().text());
  EXPECT_EQ(&row(u"BBB.AX"), table().inputRow());
  EXPECT_EQ(&table().getColumn(SampleTable::price), table().inputColumn());
  key(mainWindow(), KEY_Escape);
  EXPECT_THROW(edit(1, 0), std::runtime_error);
  EXPECT_EQ(nullptr, table().inputRow());
}

TEST_F(TableEditTest, CallThatPassesTheToolkitsGuardsDoesNotOpenAnUneditableCell) {
  table().startInput(1, 0);
  EXPECT_EQ(nullptr, table().openEditor());
}

TEST_F(TableEditTest, SecondClickOpensTheEditor) {
  for (const int count : {1, 2}) {
    FXEvent event{};
    event.win_x = event.click_x = cellX(1);
    event.win_y = event.click_y = cellY(0);
    event.click_count = count;
    event.code = LEFTBUTTON;
    event.type = SEL_LEFTBUTTONPRESS;
    table().handle(&app(), FXSEL(SEL_LEFTBUTTONPRESS, 0), &event);
    event.type = SEL_LEFTBUTTONRELEASE;
    table().handle(&app(), FXSEL(SEL_LEFTBUTTONRELEASE, 0), &event);
  }
  EXPECT_NE(nullptr, table().openEditor());
  EXPECT_EQ(&row(u"AAA.AX"), table().inputRow());
}

TEST_F(TableEditTest, ReturnHandsTheTextOverAndRebuilds) {
  type(edit(1, 1), "77");
  watcher().told.clear();
  key(mainWindow(), KEY_Return);
  EXPECT_THAT(m_edited, ElementsAre("BBB.AX/Price=77"));
  EXPECT_EQ(nullptr, table().openEditor());
  EXPECT_EQ(nullptr, table().inputRow());
  EXPECT_EQ(nullptr, table().inputColumn());
  EXPECT_EQ("50.00", table().column(1)[1]) << "the record did not take the text, so it goes";
  EXPECT_THAT(watcher().told, ElementsAre(true));
}

TEST_F(TableEditTest, TextThatTheRecordTakesIsShownInTheColumnsForm) {
  table().onCellEdited = [this](Column&, Row& edited, const String& text) {
    edited.payload<SampleShare>().price = text.toDouble();
  };
  type(edit(2, 1), "3.5");
  key(mainWindow(), KEY_Return);
  EXPECT_EQ("3.50", table().column(1)[2]);
  EXPECT_EQ("$35.00", table().column(2)[2]);
}

TEST_F(TableEditTest, EscapeLeavesTheCellAsItWas) {
  type(edit(1, 1), "77");
  watcher().told.clear();
  key(mainWindow(), KEY_Escape);
  EXPECT_TRUE(m_edited.empty());
  EXPECT_EQ(nullptr, table().openEditor());
  EXPECT_EQ(nullptr, table().inputRow());
  EXPECT_EQ("50.00", table().column(1)[1]);
  EXPECT_THAT(watcher().told, ElementsAre(true));
}

TEST_F(TableEditTest, CancellingAndAcceptingWithoutAnEditorDoNothing) {
  watcher().told.clear();
  table().cancelInput();
  table().acceptInput(TRUE);
  EXPECT_TRUE(watcher().told.empty());
}

TEST_F(TableEditTest, ClickElsewhereInTheTableHandsTheTextOver) {
  type(edit(1, 1), "77");
  leftClick(table(), cellX(0), cellY(2));
  EXPECT_THAT(m_edited, ElementsAre("BBB.AX/Price=77"));
}

TEST_F(TableEditTest, RebuildingWaitsForTheEndOfTheEdit) {
  type(edit(1, 1), "77");
  const int fills = table().fills;
  table().shares.pop_front();
  table().updateTable();
  EXPECT_EQ(fills, table().fills);
  EXPECT_NE(nullptr, table().openEditor());
  key(mainWindow(), KEY_Return);
  EXPECT_THAT(m_edited, ElementsAre("BBB.AX/Price=77"));
  EXPECT_EQ(fills + 1, table().fills);
  EXPECT_THAT(table().keys(), ElementsAre("AAA.AX", "BBB.AX"));
}

TEST_F(TableEditTest, RecordsMayShrinkWhileTheEditIsTaken) {
  table().onCellEdited = [this](Column&, Row& edited, const String&) {
    table().shares.clear();
    table().updateTable();
    EXPECT_EQ(String(u"BBB.AX"), edited.key()) << "the row stays until the handler is done";
  };
  type(edit(1, 1), "77");
  leftClick(table(), cellX(0), cellY(2));
  EXPECT_EQ(0, table().getNumRows());
}

TEST_F(TableEditTest, FailureIsReportedAndTheTypedTextGoes) {
  table().onCellEdited = [](Column&, Row&, const String&) { throw Exception(u"no such limit"); };
  answer("Table::acceptInput failed Exception : no such limit", "OK");
  type(edit(1, 1), "77");
  key(mainWindow(), KEY_Return);
  EXPECT_EQ(1u, boxes().size());
  EXPECT_EQ("50.00", table().column(1)[1]);
}

TEST_F(TableEditTest, CutPasteAndDeleteChangeNoCell) {
  table().setCurrentItem(1, 1, FALSE);
  table().selectRange(1, 1, 1, 1, FALSE);
  for (const FXSelector identifier : {Table::ID_CUT_SEL, Table::ID_PASTE_SEL, Table::ID_DELETE_SEL})
    command(identifier);
  table().setFocus();
  key(mainWindow(), KEY_x, CONTROLMASK);
  key(mainWindow(), KEY_v, CONTROLMASK);
  EXPECT_THAT(table().column(1), ElementsAre("1.2345", "50.00", "2.50"));
  EXPECT_TRUE(m_edited.empty());
}

// Prices from another thread

class TablePriceTest : public TableEditTest {
protected:
  /// Marks under the big mutex without touching a widget, like the price updater.
  void markFromAnotherThread(const std::function<void()>& mark) {
    std::thread([&] {
      BigMutexLock lock;
      mark();
    }).join();
  }
};

TEST_F(TablePriceTest, MarkedRowIsRefreshedOnTheGuiThreadAndTheWatcherTold) {
  share(u"BBB.AX").price = 60;
  share(u"CCC.AX").price = 3;
  watcher().told.clear();
  markFromAnotherThread([&] { table().markStale(u"BBB.AX"); });
  EXPECT_EQ("50.00", table().column(1)[1]);
  EXPECT_TRUE(runUntil([&] { return !watcher().told.empty(); }));
  EXPECT_THAT(table().column(1), ElementsAre("1.2345", "60.00", "2.50"));
  EXPECT_THAT(watcher().told, ElementsAre(false));
}

TEST_F(TablePriceTest, MarksOfARoundCostOneCallOfTheWatcher) {
  watcher().told.clear();
  markFromAnotherThread([&] {
    table().markStale(u"AAA.AX");
    table().markStale(u"CCC.AX");
    table().markRoundFinished();
  });
  EXPECT_TRUE(runUntil([&] { return !watcher().told.empty(); }));
  letEventsPass();
  EXPECT_THAT(watcher().told, ElementsAre(false));
}

TEST_F(TablePriceTest, UnknownKeyAndEndOfARoundTellTheWatcherAndComputeNothing) {
  table().computed = 0;
  watcher().told.clear();
  markFromAnotherThread([&] { table().markStale(u"ZZZ.AX"); });
  EXPECT_TRUE(runUntil([&] { return watcher().told.size() == 1; }));
  markFromAnotherThread([&] { table().markRoundFinished(); });
  EXPECT_TRUE(runUntil([&] { return watcher().told.size() == 2; }));
  EXPECT_EQ(0, table().computed);
}

TEST_F(TablePriceTest, WholeTableCanBeMarked) {
  for (SampleShare& share : table().shares)
    share.price = 9;
  watcher().told.clear();
  markFromAnotherThread([&] { table().markAllStale(); });
  EXPECT_TRUE(runUntil([&] { return !watcher().told.empty(); }));
  EXPECT_THAT(table().column(1), ElementsAre("9.00", "9.00", "9.00"));
  EXPECT_EQ(1, table().fills);
}

TEST_F(TablePriceTest, OpenEditorStays) {
  FXTextField& field = edit(1, 1);
  type(field, "77");
  share(u"BBB.AX").price = 60;
  watcher().told.clear();
  markFromAnotherThread([&] { table().markStale(u"BBB.AX"); });
  EXPECT_TRUE(runUntil([&] { return !watcher().told.empty(); }));
  EXPECT_EQ(&field, table().openEditor());
  EXPECT_STREQ("77", field.getText().text());
  key(mainWindow(), KEY_Return);
  EXPECT_THAT(m_edited, ElementsAre("BBB.AX/Price=77"));
  EXPECT_EQ("60.00", table().column(1)[1]);
}

TEST_F(TablePriceTest, NothingIsAskedOfTheUserBecauseAPriceCame) {
  bool inPass = false, locked = false;
  watcher().then = [&](bool) {
    inPass = inBackgroundPass;
    locked = bigMutex().heldByThisThread();
  };
  watcher().told.clear();
  table().markRoundFinished();
  EXPECT_TRUE(runUntil([&] { return !watcher().told.empty(); }));
  EXPECT_TRUE(inPass);
  EXPECT_TRUE(locked);
  EXPECT_FALSE(inBackgroundPass);
}

TEST_F(TablePriceTest, FailingWatcherOpensNoBox) {
  watcher().then = [](bool) { throw Exception(u"no totals"); };
  watcher().told.clear();
  table().markRoundFinished();
  EXPECT_TRUE(runUntil([&] { return !watcher().told.empty(); }));
  letEventsPass();
  EXPECT_TRUE(boxes().empty());
  watcher().then = nullptr;
}

TEST_F(TablePriceTest, RowsOfChangedRecordsKeepWhatTheyShowUntilTheTableIsFilledAnew) {
  Row& bbb = row(u"BBB.AX");
  table().recordsChanged();
  share(u"BBB.AX").price = 60;
  table().computed = 0;
  table().refreshRow(bbb);
  watcher().told.clear();
  table().markStale(u"BBB.AX");
  letEventsPass();
  EXPECT_EQ(0, table().computed);
  EXPECT_TRUE(watcher().told.empty());
  EXPECT_EQ("50.00", table().column(1)[1]);
  EXPECT_DOUBLE_EQ(300 * 1.2345 + 1000 + 25, table().sumColumn(SampleTable::value))
      << "from what was computed before";
  EXPECT_DOUBLE_EQ(0.0, table().sumColumn(SampleTable::bought));
  const int fills = table().fills;
  table().rebuild(); // Rows of changed records must be rebuilt, not refreshed.
  EXPECT_EQ(fills + 1, table().fills);
  EXPECT_EQ("60.00", table().column(1)[1]);
  EXPECT_TRUE(runUntil([&] { return watcher().told.size() == 2; }));
  EXPECT_THAT(watcher().told, ElementsAre(true, false)) << "the mark was not lost";
}

TEST_F(TablePriceTest, ADestroyedTableGetsNoNotifications) {
  auto* other = new SampleTable(mainWindow().contentFrame());
  other->updateTable();
  other->markAllStale();
  delete other;
  letEventsPass();
}

} // namespace
} // namespace Tallymoor
