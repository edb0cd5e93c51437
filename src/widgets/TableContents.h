#pragma once
#include "widgets/Column.h"
#include "widgets/ColumnChoice.h"
#include "widgets/Row.h"
#include "widgets/RowList.h"
#include <cstdint>
#include <fx.h>
#include <memory>
#include <vector>

namespace Tallymoor {

/// What a table declares: its columns, which of them the user sees, its rows, and their order. Opens no
/// window.
class TableContents {
public:
  /// The name is that of the table's section in the settings.
  TableContents(const String& tableName, std::int32_t rowCompareType)
      : m_choice(tableName), m_rows(rowCompareType) {}

  void clear();
  /// Begins a new declaration that keeps the columns, and each row that keepRow names.
  void releaseRows();
  bool keepsRows() const { return m_keepsRows; }
  void keepRow(Row& row, bool payloadChanged);
  Column& addColumn(std::unique_ptr<Column> column);
  Row& addRow(std::unique_ptr<Row> row) { return m_rows.add(std::move(row)); }

  /// Null if there is none.
  Column* findColumn(Column::Function function) const;
  /// The visible column at this position; null if there is none.
  Column* columnAt(FXint index) const;
  const std::vector<std::unique_ptr<Column>>& columns() const { return m_columns; }
  const std::vector<Column*>& visibleColumns() const { return m_visibleColumns; }
  const RowList& rows() const { return m_rows; }

  /// Sum over all rows; rows whose cell fails, is a text or a date add nothing.
  double sum(Column& column) const;
  /// Drops what was computed for the row.
  void forgetRow(const Row& row) const;

  void setVisible(const Column& column, bool visible) { m_choice.setVisible(column, visible); }

  /// Sorts by the column, null for row keys; by the same again reverses the order.
  void sortBy(Column::Function function);
  /// Position of the visible column that rows are sorted by; -1 for the order of row keys.
  FXint sortColumn() const;
  bool sortReversed() const { return m_sortReversed; }
  bool isInOrderOfKeys() const { return !m_sortFunction && !m_sortReversed; }
  std::vector<Row*> rowsInOrder();

  /// The declaration is complete: the columns get their positions, and rows that were not kept leave.
  void beginShowing();
  /// Destroys the rows that have left.
  void endShowing();

private:
  bool isChoiceKnown() const;
  void chooseVisibleColumns();

  ColumnChoice m_choice;
  std::vector<std::unique_ptr<Column>> m_columns; ///< in order of declaration
  std::vector<Column*> m_visibleColumns;          ///< by position in the toolkit's table
  std::uint64_t m_choiceStamp = 0;                ///< of the settings when the visible columns were chosen
  RowList m_rows;
  std::vector<Row*> m_leaving;
  bool m_keepsRows = false; ///< in a declaration that began with releaseRows
  /// What rows are sorted by, null for row keys: a position would not survive the hiding of another column.
  Column::Function m_sortFunction = nullptr;
  bool m_sortReversed = false;
};

} // namespace Tallymoor
