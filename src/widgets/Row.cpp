#include "widgets/Row.h"
#include "widgets/Table.h"
#include "widgets/TableItem.h"

namespace Tallymoor {

void Row::setColour(FXColor colour) {
  if (m_table)
    m_table->m_cells.setColour(*this, colour);
}

void Row::clearColour() {
  setColour(TableItem::NO_COLOUR);
}

void Row::resetColour() {
  if (m_table)
    m_table->m_cells.resetColour(*this);
}

} // namespace Tallymoor
