#include "views/ChangeTable.h"

namespace Tallymoor {

FXIMPLEMENT_ABSTRACT(ChangeTable, ChoiceTable, nullptr, 0)

namespace {

const ChangeDetail& detailOf(const Row& row) {
  return row.payload<ChangeDetail>();
}

CellResult fieldCell(Row& row) {
  return CellResult(detailOf(row).field);
}

CellResult beforeCell(Row& row) {
  return CellResult(detailOf(row).before);
}

CellResult afterCell(Row& row) {
  return CellResult(detailOf(row).after);
}

} // namespace

// Keys that are no numbers are equal as numbers, so that the rows stay in the order of the details.
ChangeTable::ChangeTable(FXComposite* parent) : ChoiceTable(u"Change Table", parent, COMPARE_NUMBER) {}

void ChangeTable::show(const std::vector<ChangeDetail>& details) {
  m_details.assign(details.begin(), details.end());
  updateTable();
}

void ChangeTable::fillTable() {
  clear();
  addColumn(std::make_unique<Column>(u"Field", fieldCell, COMPARE_TEXT, true, FXTableItem::LEFT));
  addColumn(std::make_unique<Column>(u"Before", beforeCell, COMPARE_TEXT, true, FXTableItem::LEFT));
  addColumn(std::make_unique<Column>(u"After", afterCell, COMPARE_TEXT, true, FXTableItem::LEFT));
  for (ChangeDetail& detail : m_details)
    addRow(std::make_unique<Row>(detail.entry, &detail));
  rebuild();
}

} // namespace Tallymoor
