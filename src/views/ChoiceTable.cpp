#include "views/ChoiceTable.h"
#include "widgets/HandlerScope.h"
#include <algorithm>

namespace Tallymoor {

FXDEFMAP(ChoiceTable)
ChoiceTableMap[] = {
    FXMAPFUNC(SEL_CHANGED, Table::ID_TABLE, ChoiceTable::onChanged),
};

FXIMPLEMENT_ABSTRACT(ChoiceTable, Table, ChoiceTableMap, ARRAYNUMBER(ChoiceTableMap))

ChoiceTable::ChoiceTable(const String& name, FXComposite* parent, std::int32_t rowCompareType)
    : Table(name, parent, true, nullptr, rowCompareType) {}

const Row* ChoiceTable::chosenRow() const {
  return rowAt(std::max(getCurrentRow(), 0));
}

String ChoiceTable::chosenKey() const {
  const Row* row = chosenRow();
  return row ? row->key() : String();
}

void ChoiceTable::choose(const String& key) {
  if (hasRow(key) && getNumColumns() > 0)
    setCurrentItem(getRow(key), 0);
  selectCurrentRow();
}

void ChoiceTable::selectCurrentRow() {
  if (getCurrentRow() < 0 && rowAt(0))
    setCurrentItem(0, 0);
  if (rowAt(getCurrentRow()))
    selectRow(getCurrentRow());
  if (m_choiceChanged)
    m_choiceChanged();
}

long ChoiceTable::onChanged(FXObject*, FXSelector, void*) {
  return guardedHandler(u"ChoiceTable::onChanged failed.", [this] { selectCurrentRow(); });
}

} // namespace Tallymoor
