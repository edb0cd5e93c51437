#include "widgets/Row.h"
#include "widgets/Table.h"
#include "widgets/TableItem.h"

namespace Tallymoor {

void Row::setColour(FXColor colour) {
  if (m_index < 0)
    return;
  for (TableItem* item : m_table->itemsOf(*this))
    item->setColour(colour);
  m_table->repaintRow(*this);
}

void Row::clearColour() {
  setColour(TableItem::NO_COLOUR);
}

void Row::resetColour() {
  if (m_index < 0)
    return;
  for (TableItem* item : m_table->itemsOf(*this))
    item->setColour(item->defaultColour());
  m_table->repaintRow(*this);
}

} // namespace Tallymoor
