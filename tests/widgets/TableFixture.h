#pragma once
#include "SampleTable.h"
#include "foundation/Settings.h"
#include "support/windows/WindowTest.h"
#include <fxkeys.h>
#include <gmock/gmock.h>
#include <stdexcept>

namespace Tallymoor {

/// A sample table of three shares in a real main window, with simulated mouse input.
class TableFixture : public WindowTest {
protected:
  void SetUp() override {
    WindowTest::SetUp();
    makeTable();
  }

  void makeTable(bool fillsParent = true, const String& name = u"Sample Table",
                 CompareType rowCompare = COMPARE_TEXT) {
    delete m_table;
    m_table = new SampleTable(mainWindow().contentFrame(), fillsParent, &m_watcher, name, rowCompare);
    m_table->shares = {{u"CCC.AX", 10, 2.5, Date(2005, 3, 1), u"first"},
                       {u"AAA.AX", 300, 1.2345, Date(2006, 1, 2), u"third"},
                       {u"BBB.AX", 20, 50, Date(2004, 12, 31), u"second"}};
    m_table->updateTable();
    showTable();
  }
  void showTable() {
    m_table->create();
    mainWindow().contentFrame()->recalc();
    letEventsPass();
  }

  SampleTable& table() { return *m_table; }
  NotingWatcher& watcher() { return m_watcher; }
  SampleShare& share(const String& code) {
    for (SampleShare& share : m_table->shares)
      if (share.code == code)
        return share;
    throw std::runtime_error("no such share");
  }
  Row& row(const String& code) { return *m_table->rowAt(m_table->getRow(code)); }

  /// The centre of a column header, a row header and a cell.
  static FXint middle(const FXHeader& header, FXint index) {
    return header.getItemOffset(index) + header.getItemSize(index) / 2;
  }

  void mouse(FXWindow& window, FXuint type, FXint x, FXint y, FXint button, FXint count = 1) {
    FXEvent event{};
    event.type = type;
    event.win_x = event.last_x = event.click_x = x;
    event.win_y = event.last_y = event.click_y = y;
    window.translateCoordinatesTo(event.root_x, event.root_y, app().getRootWindow(), x, y);
    event.click_count = count;
    event.code = button;
    window.handle(&app(), FXSEL(type, 0), &event);
  }
  void leftClick(FXWindow& window, FXint x, FXint y) {
    mouse(window, SEL_LEFTBUTTONPRESS, x, y, LEFTBUTTON);
    mouse(window, SEL_LEFTBUTTONRELEASE, x, y, LEFTBUTTON);
  }
  void doubleClick(FXint row, FXint column) { doubleClickAt(cellX(column), cellY(row)); }
  void doubleClickAt(FXint x, FXint y) {
    for (const FXint count : {1, 2}) {
      mouse(table(), SEL_LEFTBUTTONPRESS, x, y, LEFTBUTTON, count);
      mouse(table(), SEL_LEFTBUTTONRELEASE, x, y, LEFTBUTTON, count);
    }
    letEventsPass();
  }
  void rightClick(FXWindow& window, FXint x, FXint y) {
    mouse(window, SEL_RIGHTBUTTONPRESS, x, y, RIGHTBUTTON);
    mouse(window, SEL_RIGHTBUTTONRELEASE, x, y, RIGHTBUTTON);
  }
  void clickHeader(FXint column) {
    leftClick(*table().getColumnHeader(), middle(*table().getColumnHeader(), column), 5);
  }
  void rightClickHeader(FXint column) {
    rightClick(*table().getColumnHeader(), middle(*table().getColumnHeader(), column), 5);
  }
  void rightClickRow(FXint row) {
    rightClick(*table().getRowHeader(), 5, middle(*table().getRowHeader(), row));
  }
  void clickCorner() { leftClick(*table().getCornerButton(), 3, 3); }
  FXint cellX(FXint column) {
    return table().getRowHeaderWidth() + middle(*table().getColumnHeader(), column);
  }
  FXint cellY(FXint row) { return table().getColumnHeaderHeight() + middle(*table().getRowHeader(), row); }

  void command(FXSelector identifier) { table().handle(&app(), FXSEL(SEL_COMMAND, identifier), nullptr); }

  /// Opens the cell's editor by key.
  FXTextField& edit(FXint row, FXint column) {
    table().setFocus();
    table().setCurrentItem(row, column, FALSE);
    key(mainWindow(), KEY_F2);
    auto* field = dynamic_cast<FXTextField*>(table().openEditor());
    if (!field)
      throw std::runtime_error("no editor opened");
    return *field;
  }

private:
  NotingWatcher m_watcher;
  SampleTable* m_table = nullptr; ///< Owned by its window.
};

} // namespace Tallymoor
