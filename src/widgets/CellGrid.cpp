#include "widgets/CellGrid.h"
#include "foundation/KeptTexts.h"
#include "widgets/BesideCells.h"
#include "widgets/Column.h"
#include "widgets/ContextMenu.h"
#include "widgets/HandlerScope.h"
#include "widgets/MeasuredFont.h"
#include "widgets/Row.h"
#include "widgets/TableHeader.h"
#include "widgets/TableItem.h"
#include "widgets/ToolkitText.h"
#include <algorithm>
#include <fxkeys.h>

namespace Tallymoor {

FXDEFMAP(CellGrid)
cellGridMap[] = {
    FXMAPFUNC(SEL_RIGHTBUTTONRELEASE, CellGrid::ID_SELECT_COLUMN_INDEX, CellGrid::onRightClickColumns),
    FXMAPFUNC(SEL_RIGHTBUTTONRELEASE, CellGrid::ID_SELECT_ROW_INDEX, CellGrid::onRightClickRows),
    FXMAPFUNC(SEL_RIGHTBUTTONRELEASE, CellGrid::ID_TABLE, CellGrid::onRightClick),
    FXMAPFUNC(SEL_LEFTBUTTONRELEASE, CellGrid::ID_TABLE, CellGrid::onLeftClick),
    FXMAPFUNC(SEL_COMMAND, CellGrid::ID_SELECT_COLUMN_INDEX, CellGrid::onLeftClickColumns),
    FXMAPFUNC(SEL_COMMAND, CellGrid::ID_SELECT_ROW_INDEX, CellGrid::onLeftClickRows),
    FXMAPFUNC(SEL_COMMAND, CellGrid::ID_SELECT_ALL, CellGrid::onLeftClickCorner),
    FXMAPFUNC(SEL_COMMAND, CellGrid::ID_CUT_SEL, CellGrid::onSwallow),
    FXMAPFUNC(SEL_COMMAND, CellGrid::ID_PASTE_SEL, CellGrid::onSwallow),
    FXMAPFUNC(SEL_COMMAND, CellGrid::ID_DELETE_SEL, CellGrid::onSwallow),
    FXMAPFUNC(SEL_DOUBLECLICKED, CellGrid::ID_TABLE, CellGrid::onDoubleClick),
    FXMAPFUNC(SEL_MOUSEWHEEL, 0, CellGrid::onMouseWheel),
    FXMAPFUNC(SEL_PAINT, 0, CellGrid::onPaint),
    FXMAPFUNC(SEL_KEYPRESS, 0, CellGrid::onKeyPress),
    FXMAPFUNC(SEL_FOCUSIN, 0, CellGrid::onFocusIn),
};

const FXMetaClass CellGrid::metaClass("CellGrid", nullptr, &FXTable::metaClass, cellGridMap,
                                      ARRAYNUMBER(cellGridMap), sizeof(CellGrid::FXMapEntry));

namespace {

constexpr FXint CELL_MARGIN = 3;
constexpr FXint GRID_WIDTH = 2; ///< what each row and column counts for in a table as large as its contents
constexpr FXuint HEADER_STYLE = HEADER_TRACKING | HEADER_BUTTON | HEADER_RESIZE | FRAME_RAISED | FRAME_THICK;

FXuint layoutOptions(bool fillsParent) {
  if (fillsParent)
    return LAYOUT_FILL_X | LAYOUT_FILL_Y;
  return LAYOUT_FIX_WIDTH | LAYOUT_FIX_HEIGHT | HSCROLLER_NEVER | VSCROLLER_NEVER;
}

/// The area that the table stands in and that could scroll in its place.
FXScrollArea* outerScrollArea(const FXWindow& window) {
  for (FXWindow* outer = window.getParent(); outer; outer = outer->getParent())
    if (auto* area = dynamic_cast<FXScrollArea*>(outer))
      return area;
  return nullptr;
}

} // namespace

CellGrid::CellGrid(FXComposite* parent, bool fillsParent)
    : FXTable(parent, nullptr, ID_TABLE, layoutOptions(fillsParent)), m_fillsParent(fillsParent) {
  setTarget(this);
  buildHeaders();
  setMarginLeft(CELL_MARGIN);
  setMarginRight(CELL_MARGIN);
}

void CellGrid::buildHeaders() {
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

FXTableItem* CellGrid::createItem(const FXString& text, FXIcon* icon, void* data) {
  return new TableItem(text, icon, data);
}

TableItem* CellGrid::itemAt(FXint row, FXint column) const {
  return static_cast<TableItem*>(getItem(row, column));
}

void CellGrid::fitToContents() {
  if (m_fillsParent)
    return;
  FXint width = getRowHeaderWidth() + GRID_WIDTH * getNumColumns() - GRID_WIDTH;
  for (FXint column = 0; column < getNumColumns(); ++column)
    width += getColumnWidth(column);
  FXint height = colHeader->getDefaultHeight() + GRID_WIDTH * getNumRows();
  for (FXint row = 0; row < getNumRows(); ++row)
    height += getRowHeight(row);
  resize(width, height);
  recalc();
}

/// Whatever message the toolkit's own code is working on, rows and cells stay until it is done.
long CellGrid::handle(FXObject* sender, FXSelector selector, void* data) {
  const HandlerScope scope;
  const auto* entry = static_cast<const FXMapEntry*>(static_cast<const void*>(metaClass.search(selector)));
  return entry ? (this->*entry->func)(sender, selector, data) : FXTable::handle(sender, selector, data);
}

// Without rows

void CellGrid::setEmptyText(const String& text) {
  m_emptyText = text;
  update();
}

long CellGrid::onPaint(FXObject* sender, FXSelector selector, void* data) {
  FXTable::onPaint(sender, selector, data);
  if (shownEmptyText().empty())
    return 1;
  FXDCWindow dc(this, static_cast<FXEvent*>(data));
  drawEmptyText(dc);
  return 1;
}

/// In the middle, line by line.
void CellGrid::drawEmptyText(FXDC& dc) const {
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

// Clicks

long CellGrid::onRightClickColumns(FXObject*, FXSelector, void* data) {
  const FXEvent event = *static_cast<FXEvent*>(data);
  return guardedHandler(u"Table::onRightClickColumns failed.", [&] {
    Column* const column = columnAt(getColumnHeader()->getItemAt(event.win_x));
    columnPopup({event.root_x, event.root_y, nullptr, column});
  });
}

long CellGrid::onRightClickRows(FXObject*, FXSelector, void* data) {
  const FXEvent event = *static_cast<FXEvent*>(data);
  return guardedHandler(u"Table::onRightClickRows failed.", [&] {
    openRowPopup(rowAt(getRowHeader()->getItemAt(event.win_y)), event.root_x, event.root_y);
  });
}

/// Makes the row current, too, so that the keys go on from there; the toolkit would only select it.
long CellGrid::onLeftClickRows(FXObject* sender, FXSelector selector, void* data) {
  guardedHandler(u"Table::onLeftClickRows failed.", [&] {
    const auto row = static_cast<FXint>(reinterpret_cast<FXival>(data));
    if (rowAt(row) && getNumColumns() > 0)
      setCurrentItem(row, std::max(getCurrentColumn(), 0), TRUE);
  });
  return FXTable::handle(sender, selector, data);
}

void CellGrid::openRowPopup(Row* row, FXint screenX, FXint screenY) {
  if (!row)
    return;
  if (getNumColumns() > 0)
    selectRow(row->index(), TRUE);
  rowPopup({screenX, screenY, row, nullptr});
}

long CellGrid::onKeyPress(FXObject* sender, FXSelector selector, void* data) {
  const FXEvent& event = *static_cast<FXEvent*>(data);
  auto& header = static_cast<TableHeader&>(*colHeader);
  if (getFocus() == colHeader)
    return header.handle(sender, selector, data);
  if (isMenuKey(event))
    return openPopupOfCurrentRow();
  if (editor)
    return FXTable::onKeyPress(sender, selector, data);
  if (event.code == KEY_Tab || event.code == KEY_ISO_Left_Tab)
    return 0; // for the window around the table: the arrows walk through the cells
  if (event.code == KEY_Escape)
    return 0; // likewise: a dialog is closed by it
  ensureCurrentCell();
  const bool up = event.code == KEY_Up || event.code == KEY_KP_Up;
  if (up && getCurrentRow() <= 0 && getNumColumns() > 0) {
    header.takeKeyboard(std::max(0, getCurrentColumn()));
    return 1;
  }
  return FXTable::onKeyPress(sender, selector, data);
}

long CellGrid::onFocusIn(FXObject* sender, FXSelector selector, void* data) {
  const long handled = FXTable::onFocusIn(sender, selector, data);
  ensureCurrentCell();
  return handled;
}

void CellGrid::takeKeyboard() {
  if (editor)
    acceptInput(TRUE);
  if (FXWindow* part = getFocus())
    part->killFocus();
  setFocus();
}

/// Not while a cell is edited: the toolkit ends that when another cell becomes the current one.
void CellGrid::ensureCurrentCell() {
  if (!editor && getCurrentRow() < 0 && getNumRows() > 0 && getNumColumns() > 0)
    setCurrentItem(0, 0);
}

long CellGrid::openPopupOfCurrentRow() {
  return guardedHandler(u"Table::onRightClickRows failed.", [this] {
    Row* const row = rowAt(getCurrentRow());
    if (!row)
      return;
    makePositionVisible(row->index(), getCurrentColumn());
    const FXHeader* const header = getRowHeader();
    FXint x = 0, y = 0;
    header->translateCoordinatesTo(x, y, getRoot(), header->getWidth() / 2,
                                   header->getItemOffset(row->index()) + header->getItemSize(row->index()));
    openRowPopup(row, x, y);
  });
}

void CellGrid::openColumnPopup(FXint index) {
  guardedHandler(u"Table::onRightClickColumns failed.", [&] {
    FXint x = 0, y = 0;
    colHeader->translateCoordinatesTo(x, y, getRoot(),
                                      colHeader->getItemOffset(index) + colHeader->getItemSize(index) / 2,
                                      colHeader->getHeight());
    columnPopup({x, y, nullptr, columnAt(index)});
  });
}

long CellGrid::onRightClick(FXObject*, FXSelector, void* data) {
  const FXEvent event = *static_cast<FXEvent*>(data);
  return guardedHandler(u"Table::onRightClick failed.", [&] {
    rightClickCell({event.root_x, event.root_y, rowAt(rowAtY(event.win_y)), columnAt(colAtX(event.win_x))});
  });
}

/// Not handled, so that a second click begins to edit the cell. A second click beside the cells ends here:
/// the toolkit would edit the current cell.
long CellGrid::onLeftClick(FXObject*, FXSelector, void* data) {
  const FXEvent& event = *static_cast<FXEvent*>(data);
  bool hitsCurrentCell = false;
  guardedHandler(kept::CLICK_ON_CELL, [&] {
    hitsCurrentCell = rowAtY(event.win_y) == getCurrentRow() && colAtX(event.win_x) == getCurrentColumn();
  });
  return event.click_count > 1 && !hitsCurrentCell ? 1 : 0;
}

/// Comes when the mouse button goes up where it went down, so dragging off a header does not sort.
long CellGrid::onLeftClickColumns(FXObject*, FXSelector, void* data) {
  const auto index = static_cast<FXint>(reinterpret_cast<FXival>(data));
  return guardedHandler(u"Table::onLeftClickColumns failed.", [&] {
    if (Column* const column = columnAt(index))
      clickColumn({0, 0, nullptr, column});
  });
}

/// Ctrl+A comes here as well, from the table itself; neither selects the whole table.
long CellGrid::onLeftClickCorner(FXObject* sender, FXSelector, void*) {
  return guardedHandler(u"Table::onLeftClickColumns failed.", [&] {
    if (sender == getCornerButton())
      clickCorner();
  });
}

/// Return comes here as well. Not handled where the cell can be typed into: the toolkit then begins that.
long CellGrid::onDoubleClick(FXObject*, FXSelector, void*) {
  const Column* const column = columnAt(getCurrentColumn());
  Row* const row = rowAt(getCurrentRow());
  if (!row || !column || column->editable())
    return 0;
  return guardedHandler(u"Table::onDoubleClick failed.", [&] { editRow(*row); });
}

long CellGrid::onSwallow(FXObject*, FXSelector, void*) {
  return 1;
}

/// A table that has nothing to scroll leaves the wheel to the area around it.
long CellGrid::onMouseWheel(FXObject* sender, FXSelector selector, void* data) {
  FXScrollArea* const outer = outerScrollArea(*this);
  const bool scrolls = m_fillsParent && getContentHeight() > getViewportHeight();
  if (outer && !scrolls)
    return outer->handle(sender, selector, data);
  return onVMouseWheel(sender, selector, data);
}

void CellGrid::rightClickCell(const TableClick&) {}

void CellGrid::rowPopup(const TableClick&) {}

void CellGrid::editRow(Row&) {}

} // namespace Tallymoor
