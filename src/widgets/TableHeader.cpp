#include "widgets/TableHeader.h"
#include "foundation/UserInteraction.h"
#include "widgets/CellGrid.h"
#include "widgets/Column.h"
#include "widgets/ContextMenu.h"
#include "widgets/TextSize.h"
#include "widgets/ToolkitText.h"
#include <algorithm>
#include <fxkeys.h>

namespace Tallymoor {

FXDEFMAP(TableHeader)
tableHeaderMap[] = {
    FXMAPFUNC(SEL_MOTION, 0, TableHeader::onMotion),
    FXMAPFUNC(SEL_PAINT, 0, TableHeader::onPaint),
    FXMAPFUNC(SEL_FOCUSIN, 0, TableHeader::onFocusIn),
    FXMAPFUNC(SEL_FOCUSOUT, 0, TableHeader::onFocusOut),
    FXMAPFUNC(SEL_KEYPRESS, 0, TableHeader::onKeyPress),
    FXMAPFUNC(SEL_FOCUS_SELF, 0, TableHeader::onFocusSelf),
};

FXIMPLEMENT(TableHeader, FXHeader, tableHeaderMap, ARRAYNUMBER(tableHeaderMap))

namespace {

constexpr FXuint STYLE = HEADER_TRACKING | HEADER_BUTTON | HEADER_RESIZE | FRAME_RAISED | FRAME_THICK;
constexpr FXint HEIGHT = 20;
constexpr FXint PADDING = 2;
constexpr FXint MARK_WIDTH = 2; ///< of the frame around the title that has the keyboard

} // namespace

TableHeader::TableHeader(CellGrid* table, FXSelector identifier)
    : FXHeader(table, table, identifier, STYLE | LAYOUT_FIX_HEIGHT, 0, 0, 0, scaledToText(HEIGHT), PADDING,
               PADDING, PADDING, PADDING),
      m_table(table) {}

long TableHeader::onMotion(FXObject* sender, FXSelector selector, void* data) {
  const FXEvent* event = static_cast<FXEvent*>(data);
  const Column* column = m_table->columnAt(getItemAt(event->win_x));
  setHelpText(column ? toFox(column->toolTip()) : FXString());
  return FXHeader::onMotion(sender, selector, data);
}

// With the keyboard

void TableHeader::takeKeyboard(FXint column) {
  m_place = std::clamp(column, CORNER, getNumItems() - 1);
  setFocus();
  moveTo(m_place);
}

long TableHeader::onFocusSelf(FXObject*, FXSelector, void*) {
  m_table->takeKeyboard();
  return 1;
}

long TableHeader::onFocusIn(FXObject* sender, FXSelector selector, void* data) {
  FXHeader::onFocusIn(sender, selector, data);
  showPlace();
  return 1;
}

long TableHeader::onFocusOut(FXObject* sender, FXSelector selector, void* data) {
  FXHeader::onFocusOut(sender, selector, data);
  showPlace();
  return 1;
}

/// Other keys go on to the window around the table: the tab key leaves the table from here, too.
long TableHeader::onKeyPress(FXObject*, FXSelector, void* data) {
  const FXEvent event = *static_cast<FXEvent*>(data);
  m_place = std::min(m_place, getNumItems() - 1); // columns may have gone
  if (isMenuKey(event)) {
    if (m_place != CORNER)
      m_table->openColumnPopup(m_place);
    return 1;
  }
  switch (event.code) {
  case KEY_Left:
  case KEY_KP_Left:
    moveTo(m_place - 1);
    return 1;
  case KEY_Right:
  case KEY_KP_Right:
    moveTo(m_place + 1);
    return 1;
  case KEY_Home:
  case KEY_KP_Home:
    moveTo(0);
    return 1;
  case KEY_End:
  case KEY_KP_End:
    moveTo(getNumItems() - 1);
    return 1;
  case KEY_Up:
  case KEY_KP_Up:
    return 1;
  case KEY_Down:
  case KEY_KP_Down:
  case KEY_Escape:
    backToCells();
    return 1;
  case KEY_space:
  case KEY_KP_Space:
  case KEY_Return:
  case KEY_KP_Enter:
    press();
    return 1;
  default:
    return 0;
  }
}

void TableHeader::moveTo(FXint place) {
  m_place = std::clamp(place, CORNER, getNumItems() - 1);
  if (m_place != CORNER)
    makeVisible(m_place);
  const Column* column = m_table->columnAt(m_place);
  if (column && !column->toolTip().empty())
    UserInteraction::Instance().setStatusText(column->toolTip());
  showPlace();
}

/// Sends what the mouse sends.
void TableHeader::press() {
  if (m_place == CORNER)
    m_table->handle(m_table->getCornerButton(), FXSEL(SEL_COMMAND, FXTable::ID_SELECT_ALL), nullptr);
  else
    m_table->handle(this, FXSEL(SEL_COMMAND, getSelector()),
                    reinterpret_cast<void*>(static_cast<FXival>(m_place)));
  showPlace();
}

void TableHeader::backToCells() {
  killFocus();
  if (m_table->getNumRows() > 0 && m_table->getNumColumns() > 0)
    m_table->setCurrentItem(std::max(0, m_table->getCurrentRow()), std::max(0, m_place));
}

void TableHeader::makeVisible(FXint column) {
  const FXint left = getItemOffset(column);
  const FXint tooFar = left + getItemSize(column) - getWidth();
  const FXint shift = left < 0 || getItemSize(column) > getWidth() ? left : std::max(0, tooFar);
  if (shift != 0)
    m_table->setPosition(m_table->getXPosition() - shift, m_table->getYPosition());
}

void TableHeader::showPlace() {
  const bool atCorner = hasFocus() && m_place == CORNER;
  m_table->getCornerButton()->setBackColor(atCorner ? getApp()->getSelbackColor() : getApp()->getBaseColor());
  update();
}

long TableHeader::onPaint(FXObject* sender, FXSelector selector, void* data) {
  FXHeader::onPaint(sender, selector, data);
  if (!hasFocus() || m_place == CORNER || m_place >= getNumItems())
    return 1;
  FXDCWindow dc(this, static_cast<FXEvent*>(data));
  dc.setForeground(getApp()->getSelbackColor());
  for (FXint inset = 1; inset <= MARK_WIDTH; ++inset)
    dc.drawRectangle(getItemOffset(m_place) + inset, inset, getItemSize(m_place) - 2 * inset - 1,
                     getHeight() - 2 * inset - 1);
  return 1;
}

} // namespace Tallymoor
