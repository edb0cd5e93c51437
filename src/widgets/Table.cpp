#include "widgets/Table.h"
#include "foundation/BigMutex.h"
#include "foundation/Exception.h"
#include "foundation/RunTimeSettings.h"
#include "widgets/ColumnMenu.h"
#include "widgets/FlagScope.h"
#include "widgets/HandlerScope.h"
#include "widgets/ToolkitText.h"
#include "xml/CountryOfResidence.h"
#include <utility>

namespace Tallymoor {

FXDEFMAP(Table)
tableMap[] = {
    FXMAPFUNC(SEL_COMMAND, Table::ID_SELECT_COLUMNS, Table::onSelectColumns),
    FXMAPFUNC(SEL_COMMAND, Table::ID_REMOVE_COLUMN, Table::onRemoveColumn),
    FXMAPFUNC(SEL_COMMAND, Table::ID_RESET_COLUMNS, Table::onResetColumns),
};

FXIMPLEMENT_ABSTRACT(Table, CellGrid, tableMap, ARRAYNUMBER(tableMap))

namespace {

constexpr FXint TOTALS_OFFSET = 6;

} // namespace

Table::Watcher::~Watcher() = default;

void Table::Watcher::pricesCameUnderRows() {}

Table::Table(const String& name, FXComposite* parent, bool fillsParent, Watcher* watcher,
             std::int32_t rowCompareType)
    : CellGrid(parent, fillsParent), m_name(name), m_contents(name, rowCompareType),
      m_cells(*this, m_contents), m_watcher(watcher), m_updates(*this, *this) {}

// What is declared

void Table::clear() {
  m_inputRow = nullptr;
  m_inputColumn = nullptr;
  m_cells.clear();
}

void Table::releaseRows() {
  m_inputRow = nullptr;
  m_inputColumn = nullptr;
  m_contents.releaseRows();
}

Column& Table::addColumn(std::unique_ptr<Column> column) {
  column->m_table = this;
  return m_contents.addColumn(std::move(column));
}

Row& Table::addRow(std::unique_ptr<Row> row) {
  row->m_table = this;
  return m_contents.addRow(std::move(row));
}

Column& Table::getColumn(Column::Function function) const {
  if (Column* column = m_contents.findColumn(function))
    return *column;
  throw Exception(u"Table::getColumn - no column for that function");
}

FXint Table::getRow(const String& key) const {
  const std::vector<Row*> found = m_contents.rows().withKey(key);
  if (found.empty())
    throw Exception(u"Table::getRow - no row for: " + key);
  return found.front()->index();
}

FXint Table::columnLeft(const Column& column) const {
  FXint left = TOTALS_OFFSET;
  for (FXint before = 0; before < column.index(); ++before)
    left += getColumnWidth(before);
  return left;
}

bool Table::dateShown(const Date& date) {
  if (Date::hasFixedDate() && date > Date())
    return false;
  if (!hideLastFYTransactions)
    return true;
  return date >= CountryOfResidence::Instance().financialYearOf(Date());
}

// What is shown

void Table::rebuild() {
  if (m_updates.isFilling() && !m_cells.isShowing())
    showTable();
  else
    m_updates.show();
}

void Table::showTable() {
  m_cells.show();
  if (m_watcher)
    m_watcher->tableChanged(true);
}

void Table::refreshRow(Row& row) {
  if (!hasChangedRecords())
    m_cells.refreshRow(row);
}

void Table::refreshColumn(Column::Function function) {
  if (!hasChangedRecords() && hasColumn(function))
    m_cells.refreshColumn(getColumn(function));
}

void Table::refreshed() {
  if (m_watcher && hasChangedRecords())
    m_watcher->pricesCameUnderRows();
  else if (m_watcher)
    m_watcher->tableChanged(false);
}

// Order and choice of columns

void Table::clickColumn(const TableClick& click) {
  sortBy(click.column->function());
}

void Table::clickCorner() {
  sortBy(nullptr);
}

void Table::sortBy(Column::Function function) {
  m_contents.sortBy(function);
  updateTable();
}

void Table::columnPopup(const TableClick& click) {
  m_inputColumn = click.column;
  ColumnMenu(*this, m_contents).open(click);
}

long Table::onRemoveColumn(FXObject*, FXSelector, void*) {
  return guardedHandler(u"Table::onRemoveColumn failed.", [this] {
    if (m_inputColumn && ColumnMenu(*this, m_contents).hide(*m_inputColumn))
      updateTable();
  });
}

long Table::onSelectColumns(FXObject*, FXSelector, void*) {
  return guardedHandler(u"Table::onSelectColumns failed.", [this] {
    if (ColumnMenu(*this, m_contents).choose())
      updateTable();
  });
}

long Table::onResetColumns(FXObject*, FXSelector, void*) {
  return guardedHandler(u"Table::onResetColumns failed.", [this] {
    if (ColumnMenu(*this, m_contents).reset())
      updateTable();
  });
}

// Editing

void Table::cellEdited(Column&, Row&) {}

String Table::shownText(const Column& column, const Row& row) const {
  return fromFox(getItemText(row.index(), column.index()));
}

void Table::startInput(FXint row, FXint column) {
  BigMutexLock lock;
  Row* const editedRow = rowAt(row);
  Column* const editedColumn = columnAt(column);
  if (!editedRow || !editedColumn) {
    FXTable::startInput(row, column);
    return;
  }
  if (!editedColumn->editable())
    return;
  FXTable::startInput(row, column);
  m_inputRow = editedRow;
  m_inputColumn = editedColumn;
}

void Table::cancelInput() {
  BigMutexLock lock;
  const HandlerScope scope;
  // The toolkit also calls this from every change of the table's size, and in the middle of acceptInput.
  const bool underWay = isEditing() && !m_cells.isShowing() && !m_acceptingInput;
  FXTable::cancelInput();
  if (!underWay)
    return;
  m_inputRow = nullptr;
  m_inputColumn = nullptr;
  rebuild();
}

void Table::acceptInput(FXbool notify) {
  if (!isEditing() || m_acceptingInput) {
    FXTable::acceptInput(notify);
    return;
  }
  guardedHandler(u"Table::acceptInput failed", [&] {
    Row* const row = std::exchange(m_inputRow, nullptr);
    Column* const column = std::exchange(m_inputColumn, nullptr);
    {
      const FlagScope accepting(m_acceptingInput);
      FXTable::acceptInput(notify);
    }
    // Asked for first: the text that was typed must go even when it can't be taken. The handler is done
    // before it.
    rebuild();
    if (row && column)
      cellEdited(*column, *row);
  });
}

} // namespace Tallymoor
