#include "widgets/Table.h"
#include "foundation/Exception.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/UserInteraction.h"
#include "widgets/BesideCells.h"
#include "widgets/Colours.h"
#include "widgets/FlagScope.h"
#include "widgets/HandlerScope.h"
#include "widgets/MeasuredFont.h"
#include "widgets/TableHeader.h"
#include "widgets/TableItem.h"
#include "widgets/ToolkitText.h"
#include "xml/CountryOfResidence.h"
#include <algorithm>
#include <utility>

namespace Tallymoor {

namespace {

constexpr FXint ROW_EXTRA_HEIGHT = 6;
constexpr FXint CELL_MARGIN = 3;
constexpr FXint GRID_WIDTH = 2; ///< what each row and column counts for in a table as large as its contents
constexpr FXint TOTALS_OFFSET = 6;
constexpr FXuint HEADER_STYLE = HEADER_TRACKING | HEADER_BUTTON | HEADER_RESIZE | FRAME_RAISED | FRAME_THICK;

FXuint layoutOptions(bool fillsParent) {
  if (fillsParent)
    return LAYOUT_FILL_X | LAYOUT_FILL_Y;
  return LAYOUT_FIX_WIDTH | LAYOUT_FIX_HEIGHT | HSCROLLER_NEVER | VSCROLLER_NEVER;
}

} // namespace

Table::Watcher::~Watcher() = default;

void Table::Watcher::pricesCameUnderRows() {}

Table::Table(const String& name, FXComposite* parent, bool fillsParent, Watcher* watcher,
             std::int32_t rowCompareType)
    : FXTable(parent, nullptr, ID_TABLE, layoutOptions(fillsParent)), m_name(name), m_choice(name),
      m_rows(rowCompareType), m_fillsParent(fillsParent), m_watcher(watcher),
      m_wakeUp(getApp(), [this] { refreshMarked(); }) {
  setTarget(this);
  buildHeaders();
  setMarginLeft(CELL_MARGIN);
  setMarginRight(CELL_MARGIN);
}

Table::~Table() {
  HandlerScope::forget(this);
}

void Table::buildHeaders() {
  delete colHeader;
  colHeader = new TableHeader(this, ID_SELECT_COLUMN_INDEX);
  delete rowHeader;
  rowHeader = new BesideCells<FXHeader>(this, this, static_cast<FXSelector>(ID_SELECT_ROW_INDEX),
                                        HEADER_VERTICAL | HEADER_STYLE | LAYOUT_FIX_WIDTH);
  delete cornerButton;
  cornerButton = new BesideCells<FXButton>(
      this, FXString(), nullptr, this, static_cast<FXSelector>(ID_SELECT_ALL), FRAME_RAISED | FRAME_THICK);
  FXFont* normal = measuredFont(getApp()->getNormalFont());
  setFont(normal);
  setColumnHeaderFont(normal);
  setRowHeaderFont(normal);
  setColumnHeaderMode(0);
  setRowHeaderMode(LAYOUT_FIX_WIDTH);
}

TableHeader* Table::columnHeader() const {
  return static_cast<TableHeader*>(colHeader);
}

FXTableItem* Table::createItem(const FXString& text, FXIcon* icon, void* data) {
  return new TableItem(text, icon, data);
}

// What is declared

void Table::clear() {
  const FlagScope building(m_building);
  keepCurrentCell();
  m_inputRow = nullptr;
  m_inputColumn = nullptr;
  m_visibleColumns.clear();
  m_placedRows.clear();
  m_rows.clear();
  m_columns.clear();
  m_keepsRows = false;
  setTableSize(0, 0);
}

void Table::releaseRows() {
  m_inputRow = nullptr;
  m_inputColumn = nullptr;
  for (const std::unique_ptr<Column>& column : m_columns) {
    m_choice.declare(*column);
    column->outdate();
  }
  m_rows.release();
  m_keepsRows = true;
}

void Table::keepRow(Row& row, bool payloadChanged) {
  m_rows.keep(row);
  if (!payloadChanged)
    return;
  row.m_payloadChanged = true;
  for (const std::unique_ptr<Column>& column : m_columns)
    if (column->followsPayloadAlone())
      column->forget(row);
}

Column& Table::addColumn(std::unique_ptr<Column> column) {
  column->m_table = this;
  m_choice.declare(*column);
  m_columns.push_back(std::move(column));
  return *m_columns.back();
}

Row& Table::addRow(std::unique_ptr<Row> row) {
  row->m_table = this;
  return m_rows.add(std::move(row));
}

Column& Table::getColumn(Column::Function function) const {
  for (const std::unique_ptr<Column>& column : m_columns)
    if (column->function() == function)
      return *column;
  throw Exception(u"Table::getColumn - no column for that function");
}

bool Table::hasColumn(Column::Function function) const {
  return std::any_of(m_columns.begin(), m_columns.end(),
                     [function](const auto& column) { return column->function() == function; });
}

Column* Table::columnAt(FXint index) const {
  return index >= 0 && index < static_cast<FXint>(m_visibleColumns.size()) ? m_visibleColumns[index]
                                                                           : nullptr;
}

FXint Table::getRow(const String& key) const {
  const std::vector<Row*> found = m_rows.withKey(key);
  if (found.empty())
    throw Exception(u"Table::getRow - no row for: " + key);
  return found.front()->index();
}

bool Table::hasRow(const String& key) const {
  return !m_rows.withKey(key).empty();
}

Row* Table::rowAt(FXint index) const {
  return index >= 0 && index < static_cast<FXint>(m_placedRows.size()) ? m_placedRows[index] : nullptr;
}

const CellResult& Table::cell(Column::Function function, Row& row) const {
  return getColumn(function).result(row);
}

double Table::sumColumn(Column::Function function) const {
  Column& column = getColumn(function);
  double sum = 0.0;
  for (Row* row : m_rows.all()) {
    if (!row->countsInTotals())
      continue;
    try {
      sum += column.result(*row).amount();
    } catch (...) {
      // The cell shows "error"; the total is that of the others.
    }
  }
  return sum;
}

FXint Table::columnLeft(const Column& column) const {
  FXint left = TOTALS_OFFSET;
  for (FXint before = 0; before < column.index(); ++before)
    left += getColumnWidth(before);
  return left;
}

FXint Table::columnWidth(const Column& column) const {
  return column.index() < 0 ? 0 : getColumnWidth(column.index());
}

bool Table::dateShown(const Date& date) {
  if (Date::hasFixedDate() && date > Date())
    return false;
  if (!hideLastFYTransactions)
    return true;
  return date >= CountryOfResidence::Instance().financialYearOf(Date());
}

// Rebuilding

void Table::updateTable() {
  wish(Wish::FILL);
}

void Table::rebuild() {
  if (m_filling && !m_building)
    build();
  else
    wish(m_recordsChanged ? Wish::FILL : Wish::REBUILD);
}

void Table::fillTable() {
  rebuild();
}

void Table::wish(Wish wish) {
  m_wish = std::max(m_wish, wish);
  if (editor)
    return; // the end of the edit serves it
  if (m_served)
    HandlerScope::whenDone(
        this, [this] { serveWish(); }, getShell());
  else
    serveWish();
}

void Table::serveWish() {
  if (editor || m_wish == Wish::NOTHING)
    return;
  const HandlerScope scope;
  m_served = true;
  if (std::exchange(m_wish, Wish::NOTHING) == Wish::FILL) {
    m_recordsChanged = false;
    const FlagScope filling(m_filling);
    fillTable();
  } else {
    build();
  }
  if (!m_marks.empty())
    m_wakeUp.wake(); // a price that came meanwhile had to wait
}

void Table::build() {
  {
    const FlagScope building(m_building);
    keepCurrentCell();
    const std::vector<Row*> leaving = m_rows.leaving();
    const std::vector<Column*> columnsBefore = m_visibleColumns;
    chooseVisibleColumns();
    if (const auto changes = changesInPlace(columnsBefore))
      buildInPlace(*changes);
    else
      buildAnew();
    m_keepsRows = false;
    for (const Row* row : leaving)
      forgetRow(*row);
    m_rows.dropLeaving();
    if (!m_fillsParent)
      fitWidget();
    restoreCurrentCell();
  }
  if (m_watcher)
    m_watcher->tableChanged(true);
}

void Table::buildAnew() {
  setUpToolkitTable();
  const std::vector<Row*> ordered = rowsInOrder();
  for (Row* row : ordered)
    place(*row);
  fitRows();
  fitColumns();
}

void Table::chooseVisibleColumns() {
  m_visibleColumns.clear();
  bool sorts = false;
  for (const std::unique_ptr<Column>& column : m_columns) {
    column->m_index = -1;
    column->m_cache.reserve(m_rows.size());
    if (!m_choice.isVisible(*column))
      continue;
    column->m_index = static_cast<FXint>(m_visibleColumns.size());
    m_visibleColumns.push_back(column.get());
    sorts = sorts || column->function() == m_sortFunction;
  }
  if (sorts || !m_sortFunction)
    return;
  m_sortFunction = nullptr;
  m_sortReversed = false; // nobody has asked for the keys the other way round
}

void Table::setUpToolkitTable() {
  m_placedRows.clear();
  for (Row* row : m_rows.all())
    row->m_index = -1; // cells are computed before their row has its new place
  setEditable(std::any_of(m_visibleColumns.begin(), m_visibleColumns.end(),
                          [](const Column* column) { return column->editable(); }));
  // Rows that begin with their final height need not be moved one by one.
  setDefRowHeight(getFont()->getFontHeight() + ROW_EXTRA_HEIGHT);
  setTableSize(static_cast<FXint>(m_rows.size()), static_cast<FXint>(m_visibleColumns.size()));
  for (Column* column : m_visibleColumns) {
    setColumnText(column->index(), toFox(column->title()));
    colHeader->setItemData(column->index(), column);
  }
}

FXint Table::sortColumn() const {
  for (const Column* column : m_visibleColumns)
    if (column->function() == m_sortFunction)
      return column->index();
  return -1;
}

std::vector<Row*> Table::rowsInOrder() {
  Column* sorting = columnAt(sortColumn());
  if (sorting)
    sorting->m_cache.clear();
  std::vector<Row*> ordered = sorting ? m_rows.sortedBy(*sorting) : m_rows.all();
  if (m_sortReversed)
    std::reverse(ordered.begin(), ordered.end());
  return ordered;
}

void Table::place(Row& row) {
  row.m_index = static_cast<FXint>(m_placedRows.size());
  m_placedRows.push_back(&row);
  setRowText(row.m_index, toFox(row.key()));
  refreshRow(row);
}

void Table::refreshRow(Row& row) {
  if (m_recordsChanged)
    return;
  for (const std::unique_ptr<Column>& column : m_columns)
    column->forget(row);
  if (row.m_index < 0)
    return;
  row.m_payloadChanged = false;
  resetCells(row);
  for (Column* column : m_visibleColumns)
    itemAt(row.m_index, column->index())->setText(toFox((*column)(row)));
  repaintRow(row);
}

void Table::refreshColumn(Column::Function function) {
  if (m_recordsChanged || !hasColumn(function))
    return;
  Column& column = getColumn(function);
  for (Row* row : m_rows.all()) {
    column.forget(*row);
    if (row->m_index < 0 || column.index() < 0)
      continue;
    itemAt(row->m_index, column.index())->setText(toFox(column(*row)));
    repaintRow(*row);
  }
}

void Table::resetCells(const Row& row) {
  for (const Column* column : m_visibleColumns) {
    if (!getItem(row.m_index, column->index()))
      setItem(row.m_index, column->index(), createItem(FXString(), nullptr, nullptr));
    TableItem* item = itemAt(row.m_index, column->index());
    item->setJustify(column->justify());
    if (!column->editable())
      continue;
    item->setColour(editableTint());
    item->setDefaultColour(editableTint());
  }
}

TableItem* Table::itemAt(FXint row, FXint column) const {
  return static_cast<TableItem*>(getItem(row, column));
}

std::vector<TableItem*> Table::itemsOf(const Row& row) const {
  std::vector<TableItem*> items;
  for (const Column* column : m_visibleColumns)
    items.push_back(itemAt(row.m_index, column->index()));
  return items;
}

void Table::repaintRow(const Row& row) const {
  if (!m_building && !m_visibleColumns.empty())
    updateRange(row.m_index, row.m_index, 0, getNumColumns() - 1);
}

void Table::fitRows() {
  m_widestKey.begin();
  for (const Row* row : m_placedRows)
    fitRow(*row);
  setRowHeaderWidth(m_widestKey.width() + EXTRA_WIDTH);
}

void Table::fitRow(const Row& row) {
  const FXString text = getRowText(row.index());
  const FXint height = getFont()->getTextHeight(text) + ROW_EXTRA_HEIGHT;
  if (height != getRowHeight(row.index()))
    setRowHeight(row.index(), height);
  m_widestKey.come(getRowHeaderFont()->getTextWidth(text));
}

void Table::fitColumns() {
  m_widestTexts.resize(m_visibleColumns.size());
  for (const Column* column : m_visibleColumns) {
    measureColumn(*column);
    fitColumn(*column);
  }
}

void Table::fitColumn(const Column& column) {
  setColumnWidth(column.index(),
                 m_widestTexts[static_cast<std::size_t>(column.index())].width() + EXTRA_WIDTH);
  setColumnJustify(column.index(), 0);
}

void Table::measureColumn(const Column& column) {
  const FXint index = column.index();
  WidestText& widest = m_widestTexts[static_cast<std::size_t>(index)];
  widest.begin();
  widest.come(getColumnHeaderFont()->getTextWidth(getColumnText(index)));
  for (const Row* row : m_placedRows)
    widest.come(getFont()->getTextWidth(itemAt(row->index(), index)->label()));
}

void Table::fitWidget() {
  FXint width = getRowHeaderWidth() + GRID_WIDTH * getNumColumns() - GRID_WIDTH;
  for (FXint column = 0; column < getNumColumns(); ++column)
    width += getColumnWidth(column);
  FXint height = colHeader->getDefaultHeight() + GRID_WIDTH * getNumRows();
  for (FXint row = 0; row < getNumRows(); ++row)
    height += getRowHeight(row);
  resize(width, height);
  recalc();
}

void Table::keepCurrentCell() {
  const Row* row = rowAt(getCurrentRow());
  const Column* column = columnAt(getCurrentColumn());
  if (row && column)
    m_keptCell = {row->key(), column->function()};
}

void Table::restoreCurrentCell() {
  const CurrentCell kept = std::exchange(m_keptCell, CurrentCell());
  if (!kept.column || !hasColumn(kept.column) || !hasRow(kept.rowKey))
    return;
  const FXint column = getColumn(kept.column).index();
  if (column >= 0)
    setCurrentItem(getRow(kept.rowKey), column);
}

// Without rows

void Table::setEmptyText(const String& text) {
  m_emptyText = text;
  update();
}

long Table::onPaint(FXObject* sender, FXSelector selector, void* data) {
  FXTable::onPaint(sender, selector, data);
  if (shownEmptyText().empty())
    return 1;
  FXDCWindow dc(this, static_cast<FXEvent*>(data));
  drawEmptyText(dc);
  return 1;
}

/// In the middle, line by line.
void Table::drawEmptyText(FXDC& dc) const {
  const FXString text = toFox(m_emptyText);
  const FXint top = getColumnHeaderHeight();
  const FXint lineHeight = font->getFontHeight();
  const FXint lines = text.contains('\n') + 1;
  FXint y = top + std::max(0, (height - top - lines * lineHeight) / 2) + font->getFontAscent();
  dc.setFont(font);
  dc.setForeground(getTextColor());
  for (FXint line = 0; line < lines; ++line, y += lineHeight) {
    const FXString shown = text.section('\n', line);
    const FXint x = std::max(0, (width - font->getTextWidth(shown)) / 2);
    dc.drawText(x, y, shown);
  }
}

// Prices from another thread

void Table::markStale(const String& key) {
  m_marks.markKey(key);
  m_wakeUp.wake();
}

void Table::markAllStale() {
  m_marks.markAll();
  m_wakeUp.wake();
}

void Table::markRoundFinished() {
  m_marks.markRoundFinished();
  m_wakeUp.wake();
}

void Table::refreshMarked() {
  // Nothing may be asked of the user because a price came.
  const BackgroundPassScope pass;
  if (isWorking() || m_wish == Wish::FILL || m_marks.empty())
    return; // the end of the rebuild wakes again
  try {
    withUnforeseenFailures([&] { followMarks(); });
  } catch (const Exception& exception) {
    UserInteraction::Instance().setStatusText(exception.description());
  }
}

/// Marks of rows over changed records wait for the end of the rebuild, too.
void Table::followMarks() {
  if (!m_recordsChanged)
    refreshRows(m_marks.take());
  if (m_watcher && m_recordsChanged)
    m_watcher->pricesCameUnderRows();
  else if (m_watcher)
    m_watcher->tableChanged(false);
}

void Table::refreshRows(const StaleMarks::Taken& marks) {
  if (marks.all) {
    for (Row* row : m_rows.all())
      refreshRow(*row);
    return;
  }
  for (const String& key : marks.keys)
    for (Row* row : m_rows.withKey(key))
      refreshRow(*row);
}

} // namespace Tallymoor
