#include "widgets/TableItem.h"

namespace Tallymoor {

FXIMPLEMENT(TableItem, FXTableItem, nullptr, 0)

void TableItem::drawBackground(const FXTable* table, FXDC& dc, FXint x, FXint y, FXint w, FXint h) const {
  if (isSelected() || m_colour == NO_COLOUR) {
    FXTableItem::drawBackground(table, dc, x, y, w, h);
    return;
  }
  dc.setForeground(m_colour);
  dc.fillRectangle(x, y, w, h);
}

} // namespace Tallymoor
