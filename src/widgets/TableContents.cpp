#include "widgets/TableContents.h"
#include "foundation/NotYetKnown.h"
#include "foundation/Settings.h"
#include <algorithm>
#include <utility>

namespace Tallymoor {

void TableContents::clear() {
  m_visibleColumns.clear();
  m_leaving.clear();
  m_rows.clear();
  m_columns.clear();
  m_choiceStamp = 0;
  m_keepsRows = false;
}

void TableContents::releaseRows() {
  for (const std::unique_ptr<Column>& column : m_columns) {
    if (!isChoiceKnown())
      m_choice.declare(*column);
    column->outdate();
  }
  m_rows.release();
  m_keepsRows = true;
}

void TableContents::keepRow(Row& row, bool payloadChanged) {
  m_rows.keep(row);
  if (!payloadChanged && !row.hasFailed())
    return;
  row.m_payloadChanged = true;
  row.m_hasFailed = false;
  for (const std::unique_ptr<Column>& column : m_columns)
    if (column->followsPayloadAlone())
      column->forget(row);
}

Column& TableContents::addColumn(std::unique_ptr<Column> column) {
  m_choice.declare(*column);
  m_choiceStamp = 0;
  m_columns.push_back(std::move(column));
  return *m_columns.back();
}

Column* TableContents::findColumn(Column::Function function) const {
  const auto found = std::find_if(m_columns.begin(), m_columns.end(),
                                  [function](const auto& column) { return column->function() == function; });
  return found == m_columns.end() ? nullptr : found->get();
}

Column* TableContents::columnAt(FXint index) const {
  return index >= 0 && index < static_cast<FXint>(m_visibleColumns.size()) ? m_visibleColumns[index]
                                                                           : nullptr;
}

double TableContents::sum(Column& column) const {
  double sum = 0.0;
  for (Row* row : m_rows.all()) {
    if (!row->countsInTotals())
      continue;
    try {
      sum += column.result(*row).amount();
    } catch (const NotYetKnown&) {
      throw;
    } catch (...) {
      // The cell shows "error"; the total is that of the others.
    }
  }
  return sum;
}

void TableContents::forgetRow(const Row& row) const {
  for (const std::unique_ptr<Column>& column : m_columns)
    column->forget(row);
}

// Order

void TableContents::sortBy(Column::Function function) {
  if (function == m_sortFunction)
    m_sortReversed = !m_sortReversed;
  m_sortFunction = function;
}

FXint TableContents::sortColumn() const {
  const Column* column = m_sortFunction ? findColumn(m_sortFunction) : nullptr;
  return column ? column->index() : -1;
}

std::vector<Row*> TableContents::rowsInOrder() {
  Column* sorting = columnAt(sortColumn());
  if (sorting)
    sorting->m_cache.clear();
  std::vector<Row*> ordered = sorting ? m_rows.sortedBy(*sorting) : m_rows.all();
  if (m_sortReversed)
    std::reverse(ordered.begin(), ordered.end());
  return ordered;
}

// Showing

void TableContents::beginShowing() {
  m_leaving = m_rows.leaving();
  for (const std::unique_ptr<Column>& column : m_columns)
    column->m_cache.reserve(m_rows.size());
  if (!isChoiceKnown())
    chooseVisibleColumns();
}

void TableContents::endShowing() {
  m_keepsRows = false;
  for (const Row* row : std::exchange(m_leaving, {}))
    forgetRow(*row);
  m_rows.dropLeaving();
}

/// Reading it takes longer than a change of few rows.
bool TableContents::isChoiceKnown() const {
  return m_choiceStamp == Settings::Instance().changeStamp();
}

void TableContents::chooseVisibleColumns() {
  m_choiceStamp = Settings::Instance().changeStamp();
  m_visibleColumns.clear();
  for (const std::unique_ptr<Column>& column : m_columns) {
    column->m_index = -1;
    if (!m_choice.isVisible(*column))
      continue;
    column->m_index = static_cast<FXint>(m_visibleColumns.size());
    m_visibleColumns.push_back(column.get());
  }
  if (!m_sortFunction || sortColumn() >= 0)
    return;
  m_sortFunction = nullptr;
  m_sortReversed = false; // the reversal was of the column
}

} // namespace Tallymoor
