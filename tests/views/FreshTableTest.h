#pragma once
#include "ViewsTest.h"
#include "widgets/HandlerScope.h"

namespace Tallymoor {

/// Tables keep what has not changed. They must show the same as a table that is made anew. "Trading" is
/// shown.
class FreshTableTest : public ViewsTest {
protected:
  SharePortfolioUser& user() { return node(u"Trading").portfolio(); }
  /// Like a form's command.
  template <class Change>
  void change(Change made) {
    {
      const HandlerScope scope;
      node(u"Trading").transactionMade();
      made();
    }
    letEventsPass();
  }
  template <class ShownTable>
  void expectAsMadeAnew(ShownTable& shown, const std::string& when) {
    ShownTable* fresh = withHistory([this] {
      auto* made = new ShownTable(user(), node(u"Trading"), mainWindow().contentFrame(), nullptr);
      made->create();
      return made;
    });
    EXPECT_EQ(rowKeys(*fresh), rowKeys(shown)) << when;
    ASSERT_EQ(fresh->getNumRows(), shown.getNumRows()) << when;
    for (FXint row = 0; row < shown.getNumRows(); ++row)
      expectSameRow(*fresh, shown, row, when + ", row " + std::to_string(row));
    for (FXint column = 0; column < shown.getNumColumns(); ++column)
      EXPECT_EQ(fresh->getColumnWidth(column), shown.getColumnWidth(column)) << when << ", column " << column;
    EXPECT_EQ(fresh->getRowHeaderWidth(), shown.getRowHeaderWidth()) << when;
    for (const auto& column : shown.columns())
      EXPECT_DOUBLE_EQ(fresh->sumColumn(column->function()), shown.sumColumn(column->function())) << when;
    delete fresh;
  }
  static void expectSameRow(Table& fresh, Table& shown, FXint row, const std::string& when) {
    EXPECT_EQ(rowTexts(fresh, row), rowTexts(shown, row)) << when;
    EXPECT_EQ(fresh.getRowHeight(row), shown.getRowHeight(row)) << when;
    EXPECT_EQ(row, shown.rowAt(row)->index()) << when;
    for (FXint column = 0; column < shown.getNumColumns(); ++column)
      EXPECT_EQ(fresh.itemAt(row, column)->colour(), shown.itemAt(row, column)->colour()) << when;
  }
};

} // namespace Tallymoor
