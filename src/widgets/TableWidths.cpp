#include "widgets/TableWidths.h"
#include "foundation/NotYetKnown.h"
#include "widgets/CellGrid.h"
#include "widgets/Column.h"
#include "widgets/Row.h"
#include "widgets/TableItem.h"
#include "widgets/ToolkitText.h"

namespace Tallymoor {

namespace {

constexpr FXint EXTRA_WIDTH = 20; ///< around the widest text

} // namespace

void TableWidths::fitAll(const std::vector<Column*>& columns, const std::vector<Row*>& rows) {
  measureKeys(rows);
  m_columns.clear();
  for (const Column* column : columns) {
    const FXString title = m_grid.getColumnText(column->index());
    m_columns.push_back({m_grid.getColumnHeaderFont()->getTextWidth(title), {}});
    measureCells(*column, rows);
  }
  setWidths(columns);
}

/// Where the widest text has gone, all others are compared, but not measured again.
void TableWidths::fitChanged(const std::vector<Column*>& columns, const std::vector<Row*>& rows) {
  if (!m_keys.isKnown())
    measureKeys(rows);
  for (const Column* column : columns)
    if (!textsOf(*column).widest.isKnown())
      measureCells(*column, rows);
  setWidths(columns);
}

void TableWidths::rowRemoved(Row& row, const std::vector<Column*>& columns) {
  m_keys.remove(keyWidth(row));
  for (const Column* column : columns)
    textsOf(*column).widest.remove(cellWidth(*m_grid.itemAt(row.index(), column->index())));
}

void TableWidths::setText(TableItem& item, const Column& column, const FXString& text) {
  if (m_columns.empty())
    item.setText(text);
  if (item.label() == text)
    return;
  WidestText& widest = textsOf(column).widest;
  // In an editable cell a typed text may stand, in place of one that still counts.
  widest.remove(column.editable() ? widest.width() : cellWidth(item));
  m_figuresCame = m_figuresCame || item.label() == toFox(NOT_YET_KNOWN);
  item.setText(text);
  widest.add(cellWidth(item));
}

void TableWidths::fitFiguresThatCame(const std::vector<Column*>& columns, const std::vector<Row*>& rows) {
  if (m_figuresCame)
    fitChanged(columns, rows);
}

void TableWidths::measureKeys(const std::vector<Row*>& rows) {
  m_keys.begin();
  for (Row* row : rows)
    m_keys.add(keyWidth(*row));
}

void TableWidths::measureCells(const Column& column, const std::vector<Row*>& rows) {
  ColumnTexts& texts = textsOf(column);
  texts.widest.begin();
  texts.widest.add(texts.titleWidth);
  for (const Row* row : rows)
    texts.widest.add(cellWidth(*m_grid.itemAt(row->index(), column.index())));
}

FXint TableWidths::keyWidth(Row& row) const {
  if (row.m_keyWidth < 0)
    row.m_keyWidth = m_grid.getRowHeaderFont()->getTextWidth(m_grid.getRowText(row.index()));
  return row.m_keyWidth;
}

FXint TableWidths::cellWidth(const TableItem& item) const {
  return item.textWidth(*m_grid.getFont());
}

TableWidths::ColumnTexts& TableWidths::textsOf(const Column& column) {
  return m_columns[static_cast<std::size_t>(column.index())];
}

void TableWidths::setWidths(const std::vector<Column*>& columns) {
  m_figuresCame = false;
  m_grid.setRowHeaderWidth(m_keys.width() + EXTRA_WIDTH);
  for (const Column* column : columns) {
    m_grid.setColumnWidth(column->index(), textsOf(*column).widest.width() + EXTRA_WIDTH);
    m_grid.setColumnJustify(column->index(), 0);
  }
}

} // namespace Tallymoor
