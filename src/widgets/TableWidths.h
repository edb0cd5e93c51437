#pragma once
#include "widgets/WidestText.h"
#include <fx.h>
#include <vector>

namespace Tallymoor {

class CellGrid;
class Column;
class Row;
class TableItem;

/// Keeps the columns of a table, and the header of its rows, as wide as their widest text. Each text is
/// measured once, since measuring takes longer than all else when a few rows change.
class TableWidths {
public:
  explicit TableWidths(CellGrid& grid) : m_grid(grid) {}

  // For a table that is rebuilt: texts are not measured before fitAll.
  void clear() { m_columns.clear(); }
  void fitAll(const std::vector<Column*>& columns, const std::vector<Row*>& rows);

  // For one that is changed in place; after the changes, fitChanged sets the widths.
  void rowAdded(Row& row) { m_keys.add(keyWidth(row)); }
  void rowRemoved(Row& row, const std::vector<Column*>& columns);
  void setText(TableItem& item, const Column& column, const FXString& text);
  void fitChanged(const std::vector<Column*>& columns, const std::vector<Row*>& rows);
  /// The same, but only if some of the texts replaced NOT_YET_KNOWN: other prices don't move the columns.
  void fitFiguresThatCame(const std::vector<Column*>& columns, const std::vector<Row*>& rows);

private:
  struct ColumnTexts {
    FXint titleWidth;
    WidestText widest; ///< of the title and the cells
  };

  void measureKeys(const std::vector<Row*>& rows);
  void measureCells(const Column& column, const std::vector<Row*>& rows);
  FXint keyWidth(Row& row) const;
  FXint cellWidth(const TableItem& item) const;
  ColumnTexts& textsOf(const Column& column);
  void setWidths(const std::vector<Column*>& columns);

  CellGrid& m_grid;
  std::vector<ColumnTexts> m_columns; ///< by position in the toolkit's table
  WidestText m_keys;
  bool m_figuresCame = false;
};

} // namespace Tallymoor
