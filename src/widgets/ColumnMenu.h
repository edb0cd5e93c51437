#pragma once
#include "widgets/TableClick.h"
#include <fx.h>

namespace Tallymoor {

class TableContents;

/// The commands by which the user chooses the columns of a table.
class ColumnMenu {
public:
  ColumnMenu(FXWindow& table, TableContents& contents) : m_table(table), m_contents(contents) {}

  /// Opens the menu, whose commands go to the table.
  void open(const TableClick& click);

  // The commands. Each says whether the choice may have changed.
  bool hide(const Column& column);
  bool choose();
  bool reset();

private:
  FXWindow& m_table;
  TableContents& m_contents;
};

} // namespace Tallymoor
