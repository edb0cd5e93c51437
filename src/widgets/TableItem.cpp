#include "widgets/TableItem.h"

namespace Tallymoor {

FXIMPLEMENT(TableItem, FXTableItem, nullptr, 0)

FXint TableItem::textWidth(const FXFont& font) const {
  if (m_textWidth < 0)
    m_textWidth = label().empty() ? 0 : font.getTextWidth(label());
  return m_textWidth;
}

void TableItem::setText(const FXString& text) {
  m_textWidth = -1;
  FXTableItem::setText(text);
}

void TableItem::drawBackground(const FXTable* table, FXDC& dc, FXint x, FXint y, FXint w, FXint h) const {
  if (isSelected() || m_colour == NO_COLOUR) {
    FXTableItem::drawBackground(table, dc, x, y, w, h);
    return;
  }
  // The grid's lines are the first of each cell, and stay.
  const FXint left = table->isVertGridShown() ? 1 : 0;
  const FXint top = table->isHorzGridShown() ? 1 : 0;
  dc.setForeground(m_colour);
  dc.fillRectangle(x + left, y + top, w - left, h - top);
}

} // namespace Tallymoor
