#pragma once
#include "foundation/String.h"
#include "widgets/Column.h"
#include "widgets/RowChanges.h"
#include "widgets/StaleMarks.h"
#include "widgets/TableWidths.h"
#include <fx.h>
#include <optional>
#include <vector>

namespace Tallymoor {

class CellGrid;
class Row;
class TableContents;

/// Shows what a table declares in the toolkit's table: the places of the rows, the texts and tints of the
/// cells, the current cell. A few rows that come or go are changed in place; otherwise all is rebuilt.
class TableCells {
public:
  TableCells(CellGrid& grid, TableContents& contents) : m_grid(grid), m_contents(contents), m_widths(grid) {}

  void show();
  /// Shows neither columns nor rows.
  void clear();
  /// While the toolkit's table is being changed, which cancels an edit.
  bool isShowing() const { return m_showing; }

  /// The row at this position; null if there is none.
  Row* rowAt(FXint index) const;
  /// Computes the row's cells again. Only forgets what was computed when the row has no place yet.
  void refreshRow(Row& row);
  void refreshColumn(Column& column);
  void refreshMarked(const StaleMarks::Taken& marks);

  // Both do nothing while the row has no place.
  void setColour(const Row& row, FXColor colour);
  /// Back to the tint that each cell has by itself.
  void resetColour(const Row& row);

private:
  struct CurrentCell {
    String rowKey;
    Column::Function column = nullptr;
  };

  void rebuild();
  void setUpGrid();
  void place(Row& row, FXint index);
  void showInPlace(const RowChanges& changes);
  std::optional<RowChanges> changesInPlace(const std::vector<Column*>& columnsBefore) const;
  void addPlaces(const RowChanges& changes);
  void removePlaces(const RowChanges::Run& run);
  void renewCells(Row& row);
  void showCell(Row& row, Column& column);
  void makeCells(const Row& row);
  void repaintRow(const Row& row) const;
  void keepCurrentCell();
  void restoreCurrentCell();

  CellGrid& m_grid;
  TableContents& m_contents;
  TableWidths m_widths;
  std::vector<Row*> m_placedRows; ///< by position in the toolkit's table
  CurrentCell m_keptCell;         ///< the current cell from before the change
  bool m_showing = false;
};

} // namespace Tallymoor
