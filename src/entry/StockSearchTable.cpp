#include "entry/StockSearchTable.h"

namespace Tallymoor {

FXDEFMAP(StockSearchTable)
StockSearchTableMap[] = {
    FXMAPFUNC(SEL_CHANGED, Table::ID_TABLE, StockSearchTable::onChanged),
    FXMAPFUNC(SEL_LEFTBUTTONRELEASE, Table::ID_TABLE, StockSearchTable::onReleased),
    FXMAPFUNC(SEL_DOUBLECLICKED, Table::ID_TABLE, StockSearchTable::onDoubleClicked),
};

FXIMPLEMENT_ABSTRACT(StockSearchTable, Table, StockSearchTableMap, ARRAYNUMBER(StockSearchTableMap))

namespace {

CellResult nameCell(Row& row) {
  return CellResult(row.payload<CodeSearchResult>().name);
}

CellResult marketCell(Row& row) {
  return CellResult(row.payload<CodeSearchResult>().market);
}

} // namespace

StockSearchTable::StockSearchTable(FXComposite* parent, std::vector<CodeSearchResult>& results,
                                   FXObject* chooser, FXSelector selector)
    : Table(u"Share Search Table", parent, true, nullptr), m_results(results), m_chooser(chooser),
      m_selector(selector) {
  updateTable();
}

void StockSearchTable::fillTable() {
  clear();
  addColumn(std::make_unique<Column>(u"Name", nameCell, COMPARE_TEXT, true, FXTableItem::LEFT));
  addColumn(std::make_unique<Column>(u"Market", marketCell, COMPARE_TEXT, true, FXTableItem::LEFT));
  for (CodeSearchResult& result : m_results)
    if (!result.name.empty())
      addRow(std::make_unique<Row>(result.code, &result));
  rebuild();
  selectCurrentRow();
}

void StockSearchTable::selectBest(const String& text) {
  const Row* row = bestRow(text);
  if (!row || getNumColumns() == 0)
    return;
  setCurrentItem(row->index(), 0);
  selectCurrentRow();
  makePositionVisible(row->index(), 0);
}

Row* StockSearchTable::bestRow(const String& text) const {
  const String wanted = text.toUpper();
  Row* containing = nullptr;
  for (FXint i = 0; Row* row = rowAt(i); ++i) {
    const String name = row->payload<CodeSearchResult>().name.toUpper();
    if (name == wanted)
      return row;
    if (!containing && name.contains(wanted))
      containing = row;
  }
  return containing ? containing : rowAt(0);
}

const CodeSearchResult* StockSearchTable::selected() const {
  for (FXint i = 0; Row* row = rowAt(i); ++i)
    if (isRowSelected(i))
      return &row->payload<CodeSearchResult>();
  return nullptr;
}

void StockSearchTable::selectCurrentRow() {
  if (rowAt(getCurrentRow()))
    selectRow(getCurrentRow());
}

long StockSearchTable::onChanged(FXObject*, FXSelector, void*) {
  selectCurrentRow();
  return 1;
}

long StockSearchTable::onReleased(FXObject* sender, FXSelector selector, void* data) {
  // The press has selected the one cell under the mouse.
  selectCurrentRow();
  return Table::onLeftClick(sender, selector, data);
}

long StockSearchTable::onDoubleClicked(FXObject*, FXSelector, void*) {
  if (selected())
    m_chooser->handle(this, FXSEL(SEL_COMMAND, m_selector), nullptr);
  return 1;
}

} // namespace Tallymoor
