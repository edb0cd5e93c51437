#include "widgets/Table.h"
#include "widgets/TableItem.h"
#include "widgets/ToolkitText.h"

// A rebuild of the toolkit's table that keeps what stays: rows come and go, and only texts that differ are
// set.

namespace Tallymoor {

/// Nothing when the table is to be made anew.
std::optional<RowChanges> Table::changesInPlace(const std::vector<Column*>& columnsBefore) const {
  if (!m_keepsRows || !m_served || m_sortFunction || m_sortReversed || columnsBefore != m_visibleColumns ||
      getNumRows() != static_cast<FXint>(m_placedRows.size()))
    return std::nullopt;
  return RowChanges::between(m_placedRows, m_rows.all());
}

void Table::buildInPlace(const RowChanges& changes) {
  killSelection();
  FXTable::setCurrentItem(-1, -1);
  for (const RowChanges::Run& run : changes.removed)
    removePlaces(run);
  for (const RowChanges::Run& run : changes.added)
    insertRows(run.first, run.count);
  m_placedRows = m_rows.all();
  std::vector<Row*> added;
  for (std::size_t i = 0; i < m_placedRows.size(); ++i) {
    Row& row = *m_placedRows[i];
    if (row.m_index < 0)
      added.push_back(&row);
    row.m_index = static_cast<FXint>(i);
  }
  for (const Row* row : added) {
    setRowText(row->m_index, toFox(row->key()));
    fitRow(*row);
    resetCells(*row);
  }
  for (Row* row : m_placedRows)
    renewCells(*row);
  fitInPlace();
  update();
}

void Table::removePlaces(const RowChanges::Run& run) {
  for (FXint index = run.first; index < run.first + run.count; ++index) {
    m_widestKey.go(getRowHeaderFont()->getTextWidth(getRowText(index)));
    for (const Column* column : m_visibleColumns)
      m_widestTexts[static_cast<std::size_t>(column->index())].go(
          getFont()->getTextWidth(itemAt(index, column->index())->label()));
  }
  removeRows(run.first, run.count);
}

void Table::forgetRow(const Row& row) {
  for (const std::unique_ptr<Column>& column : m_columns)
    column->forget(row);
}

/// In a cell that can be edited a typed text may stand, which is no result.
void Table::renewCells(Row& row) {
  for (Column* column : m_visibleColumns)
    if (needsRenewal(*column, row) && (column->renew(row) || column->editable()))
      showText(*itemAt(row.m_index, column->index()), *column, toFox((*column)(row)));
  row.m_payloadChanged = false;
}

bool Table::needsRenewal(const Column& column, const Row& row) const {
  return row.m_payloadChanged || !column.followsPayloadAlone();
}

void Table::showText(TableItem& item, const Column& column, const FXString& text) {
  if (item.label() == text)
    return;
  WidestText& widest = m_widestTexts[static_cast<std::size_t>(column.index())];
  // A typed text stands in the place of one that is not known any more.
  widest.go(column.editable() ? widest.width() : getFont()->getTextWidth(item.label()));
  widest.come(getFont()->getTextWidth(text));
  item.setText(text);
}

/// Measures only where the widest text has gone.
void Table::fitInPlace() {
  if (m_widestKey.isKnown())
    setRowHeaderWidth(m_widestKey.width() + EXTRA_WIDTH);
  else
    fitRows();
  for (const Column* column : m_visibleColumns) {
    if (!m_widestTexts[static_cast<std::size_t>(column->index())].isKnown())
      measureColumn(*column);
    fitColumn(*column);
  }
}

} // namespace Tallymoor
