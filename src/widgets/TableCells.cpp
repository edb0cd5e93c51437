#include "widgets/TableCells.h"
#include "widgets/CellGrid.h"
#include "widgets/Colours.h"
#include "widgets/FlagScope.h"
#include "widgets/TableContents.h"
#include "widgets/TableItem.h"
#include "widgets/ToolkitText.h"
#include <algorithm>
#include <utility>

namespace Tallymoor {

namespace {

constexpr FXint ROW_EXTRA_HEIGHT = 6;

} // namespace

void TableCells::show() {
  const FlagScope showing(m_showing);
  keepCurrentCell();
  const std::vector<Column*> columnsBefore = m_contents.visibleColumns();
  m_contents.beginShowing();
  if (const auto changes = changesInPlace(columnsBefore))
    showInPlace(*changes);
  else
    rebuild();
  m_contents.endShowing();
  m_grid.fitToContents();
  restoreCurrentCell();
}

void TableCells::clear() {
  const FlagScope showing(m_showing);
  keepCurrentCell();
  m_placedRows.clear();
  m_contents.clear();
  m_grid.setTableSize(0, 0);
}

Row* TableCells::rowAt(FXint index) const {
  return index >= 0 && index < static_cast<FXint>(m_placedRows.size()) ? m_placedRows[index] : nullptr;
}

// Rebuilding

void TableCells::rebuild() {
  setUpGrid();
  for (Row* row : m_contents.rowsInOrder()) {
    m_placedRows.push_back(row);
    place(*row, static_cast<FXint>(m_placedRows.size()) - 1);
    refreshRow(*row);
  }
  m_widths.fitAll(m_contents.visibleColumns(), m_placedRows);
}

void TableCells::setUpGrid() {
  const std::vector<Column*>& columns = m_contents.visibleColumns();
  m_placedRows.clear();
  m_widths.clear();
  for (Row* row : m_contents.rows().all())
    row->m_index = -1; // cells are computed before their row has its new place
  m_grid.setEditable(
      std::any_of(columns.begin(), columns.end(), [](const Column* column) { return column->editable(); }));
  // Rows that begin with their final height need not be moved one by one.
  m_grid.setDefRowHeight(m_grid.getFont()->getFontHeight() + ROW_EXTRA_HEIGHT);
  m_grid.setTableSize(static_cast<FXint>(m_contents.rows().size()), static_cast<FXint>(columns.size()));
  for (Column* column : columns) {
    m_grid.setColumnText(column->index(), toFox(column->title()));
    m_grid.getColumnHeader()->setItemData(column->index(), column);
  }
}

void TableCells::place(Row& row, FXint index) {
  row.m_index = index;
  const FXString key = toFox(row.key());
  m_grid.setRowText(index, key);
  const FXint height = m_grid.getFont()->getTextHeight(key) + ROW_EXTRA_HEIGHT;
  if (height != m_grid.getRowHeight(index))
    m_grid.setRowHeight(index, height);
}

// In place

/// Nothing when the table is to be rebuilt.
std::optional<RowChanges> TableCells::changesInPlace(const std::vector<Column*>& columnsBefore) const {
  if (!m_contents.keepsRows() || !m_contents.isInOrderOfKeys() ||
      columnsBefore != m_contents.visibleColumns() ||
      m_grid.getNumRows() != static_cast<FXint>(m_placedRows.size()))
    return std::nullopt;
  return RowChanges::between(m_placedRows, m_contents.rows().all());
}

void TableCells::showInPlace(const RowChanges& changes) {
  m_grid.killSelection();
  m_grid.setCurrentItem(-1, -1);
  for (const RowChanges::Run& run : changes.removed)
    removePlaces(run);
  addPlaces(changes);
  for (Row* row : m_placedRows)
    renewCells(*row);
  m_widths.fitChanged(m_contents.visibleColumns(), m_placedRows);
  m_grid.update();
}

void TableCells::removePlaces(const RowChanges::Run& run) {
  for (FXint index = run.first; index < run.first + run.count; ++index)
    m_widths.rowRemoved(*m_placedRows[index], m_contents.visibleColumns());
  m_grid.removeRows(run.first, run.count);
}

void TableCells::addPlaces(const RowChanges& changes) {
  for (const RowChanges::Run& run : changes.added)
    m_grid.insertRows(run.first, run.count);
  m_placedRows = m_contents.rows().all();
  for (std::size_t i = 0; i < m_placedRows.size(); ++i) {
    Row& row = *m_placedRows[i];
    const auto index = static_cast<FXint>(i);
    if (std::exchange(row.m_index, index) >= 0)
      continue;
    place(row, index);
    m_widths.rowAdded(row);
    makeCells(row);
  }
}

void TableCells::renewCells(Row& row) {
  for (Column* column : m_contents.visibleColumns()) {
    const bool holds = !row.m_payloadChanged && column->followsPayloadAlone();
    // In a cell that can be edited a typed text may stand, which is no result.
    if (column->editable() || (!holds && column->renew(row)))
      showCell(row, *column);
  }
  row.m_payloadChanged = false;
}

// Cells

void TableCells::refreshRow(Row& row) {
  m_contents.forgetRow(row);
  if (row.m_index < 0)
    return;
  row.m_payloadChanged = false;
  row.m_hasFailed = false;
  makeCells(row);
  for (Column* column : m_contents.visibleColumns())
    showCell(row, *column);
  repaintRow(row);
}

void TableCells::refreshColumn(Column& column) {
  for (Row* row : m_contents.rows().all()) {
    column.forget(*row);
    if (row->m_index < 0 || column.index() < 0)
      continue;
    showCell(*row, column);
    repaintRow(*row);
  }
}

void TableCells::refreshMarked(const StaleMarks::Taken& marks) {
  if (marks.all)
    for (Row* row : m_contents.rows().all())
      refreshRow(*row);
  for (const String& key : marks.keys)
    for (Row* row : m_contents.rows().withKey(key))
      refreshRow(*row);
  m_widths.fitFiguresThatCame(m_contents.visibleColumns(), m_placedRows);
}

void TableCells::showCell(Row& row, Column& column) {
  m_widths.setText(*m_grid.itemAt(row.m_index, column.index()), column, toFox(column(row)));
}

void TableCells::makeCells(const Row& row) {
  for (const Column* column : m_contents.visibleColumns()) {
    if (!m_grid.itemAt(row.m_index, column->index()))
      m_grid.setItem(row.m_index, column->index(), m_grid.createItem(FXString(), nullptr, nullptr));
    TableItem* item = m_grid.itemAt(row.m_index, column->index());
    item->setJustify(column->justify());
    if (!column->editable())
      continue;
    item->setColour(editableTint());
    item->setDefaultColour(editableTint());
  }
}

void TableCells::setColour(const Row& row, FXColor colour) {
  if (row.m_index < 0)
    return;
  for (const Column* column : m_contents.visibleColumns())
    m_grid.itemAt(row.m_index, column->index())->setColour(colour);
  repaintRow(row);
}

void TableCells::resetColour(const Row& row) {
  if (row.m_index < 0)
    return;
  for (const Column* column : m_contents.visibleColumns()) {
    TableItem& item = *m_grid.itemAt(row.m_index, column->index());
    item.setColour(item.defaultColour());
  }
  repaintRow(row);
}

void TableCells::repaintRow(const Row& row) const {
  if (!m_showing && !m_contents.visibleColumns().empty())
    m_grid.updateRange(row.m_index, row.m_index, 0, m_grid.getNumColumns() - 1);
}

// The current cell

void TableCells::keepCurrentCell() {
  const Row* row = rowAt(m_grid.getCurrentRow());
  const Column* column = m_contents.columnAt(m_grid.getCurrentColumn());
  if (row && column)
    m_keptCell = {row->key(), column->function()};
}

void TableCells::restoreCurrentCell() {
  const CurrentCell kept = std::exchange(m_keptCell, CurrentCell());
  const Column* column = kept.column ? m_contents.findColumn(kept.column) : nullptr;
  const std::vector<Row*> rows = column ? m_contents.rows().withKey(kept.rowKey) : std::vector<Row*>();
  if (!rows.empty() && column->index() >= 0)
    m_grid.setCurrentItem(rows.front()->index(), column->index());
}

} // namespace Tallymoor
