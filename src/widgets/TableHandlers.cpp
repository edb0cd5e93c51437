#include "foundation/BigMutex.h"
#include "foundation/UserInteraction.h"
#include "widgets/ContextMenu.h"
#include "widgets/FlagScope.h"
#include "widgets/HandlerScope.h"
#include "widgets/ListChoiceDialog.h"
#include "widgets/Table.h"
#include "widgets/TableHeader.h"
#include "widgets/ToolkitText.h"
#include <algorithm>
#include <fxkeys.h>
#include <utility>

// What the user does with a table: clicks, column commands and editing. Table.cpp holds what it shows.

namespace Tallymoor {

FXDEFMAP(Table)
tableMap[] = {
    FXMAPFUNC(SEL_RIGHTBUTTONRELEASE, Table::ID_SELECT_COLUMN_INDEX, Table::onRightClickColumns),
    FXMAPFUNC(SEL_RIGHTBUTTONRELEASE, Table::ID_SELECT_ROW_INDEX, Table::onRightClickRows),
    FXMAPFUNC(SEL_RIGHTBUTTONRELEASE, Table::ID_TABLE, Table::onRightClick),
    FXMAPFUNC(SEL_LEFTBUTTONRELEASE, Table::ID_TABLE, Table::onLeftClick),
    FXMAPFUNC(SEL_COMMAND, Table::ID_SELECT_COLUMN_INDEX, Table::onLeftClickColumns),
    FXMAPFUNC(SEL_COMMAND, Table::ID_SELECT_ROW_INDEX, Table::onLeftClickRows),
    FXMAPFUNC(SEL_COMMAND, Table::ID_SELECT_ALL, Table::onLeftClickCorner),
    FXMAPFUNC(SEL_COMMAND, Table::ID_CUT_SEL, Table::onSwallow),
    FXMAPFUNC(SEL_COMMAND, Table::ID_PASTE_SEL, Table::onSwallow),
    FXMAPFUNC(SEL_COMMAND, Table::ID_DELETE_SEL, Table::onSwallow),
    FXMAPFUNC(SEL_COMMAND, Table::ID_SELECT_COLUMNS, Table::onSelectColumns),
    FXMAPFUNC(SEL_COMMAND, Table::ID_REMOVE_COLUMN, Table::onRemoveColumn),
    FXMAPFUNC(SEL_COMMAND, Table::ID_RESET_COLUMNS, Table::onResetColumns),
    FXMAPFUNC(SEL_DOUBLECLICKED, Table::ID_TABLE, Table::onDoubleClick),
    FXMAPFUNC(SEL_MOUSEWHEEL, 0, Table::onMouseWheel),
    FXMAPFUNC(SEL_PAINT, 0, Table::onPaint),
    FXMAPFUNC(SEL_KEYPRESS, 0, Table::onKeyPress),
    FXMAPFUNC(SEL_FOCUSIN, 0, Table::onFocusIn),
};

const FXMetaClass Table::metaClass("Table", nullptr, &FXTable::metaClass, tableMap, ARRAYNUMBER(tableMap),
                                   sizeof(Table::FXMapEntry));

namespace {

/// The area that the table stands in and that could scroll in its place.
FXScrollArea* outerScrollArea(const FXWindow& window) {
  for (FXWindow* outer = window.getParent(); outer; outer = outer->getParent())
    if (auto* area = dynamic_cast<FXScrollArea*>(outer))
      return area;
  return nullptr;
}

} // namespace

/// Whatever message the toolkit's own code is working on, rows and cells stay until it is done.
long Table::handle(FXObject* sender, FXSelector selector, void* data) {
  const HandlerScope scope;
  const auto* entry = static_cast<const FXMapEntry*>(static_cast<const void*>(metaClass.search(selector)));
  return entry ? (this->*entry->func)(sender, selector, data) : FXTable::handle(sender, selector, data);
}

// Clicks

long Table::onRightClickColumns(FXObject*, FXSelector, void* data) {
  const FXEvent event = *static_cast<FXEvent*>(data);
  return guardedHandler(u"Table::onRightClickColumns failed.", [&] {
    Column* const column = columnAt(getColumnHeader()->getItemAt(event.win_x));
    columnPopup({event.root_x, event.root_y, nullptr, column});
  });
}

long Table::onRightClickRows(FXObject*, FXSelector, void* data) {
  const FXEvent event = *static_cast<FXEvent*>(data);
  return guardedHandler(u"Table::onRightClickRows failed.", [&] {
    openRowPopup(rowAt(getRowHeader()->getItemAt(event.win_y)), event.root_x, event.root_y);
  });
}

// The keys go on from the row whose head was clicked; the toolkit would only select it.
long Table::onLeftClickRows(FXObject* sender, FXSelector selector, void* data) {
  guardedHandler(u"Table::onLeftClickRows failed.", [&] {
    const auto row = static_cast<FXint>(reinterpret_cast<FXival>(data));
    if (rowAt(row) && getNumColumns() > 0)
      setCurrentItem(row, std::max(getCurrentColumn(), 0), TRUE);
  });
  return FXTable::handle(sender, selector, data);
}

void Table::openRowPopup(Row* row, FXint screenX, FXint screenY) {
  if (!row)
    return;
  if (getNumColumns() > 0)
    selectRow(row->index(), TRUE);
  rowPopup({screenX, screenY, row, nullptr});
}

long Table::onKeyPress(FXObject* sender, FXSelector selector, void* data) {
  const FXEvent& event = *static_cast<FXEvent*>(data);
  if (getFocus() == colHeader)
    return columnHeader()->handle(sender, selector, data);
  if (isMenuKey(event))
    return openPopupOfCurrentRow();
  if (editor)
    return FXTable::onKeyPress(sender, selector, data);
  if (event.code == KEY_Tab || event.code == KEY_ISO_Left_Tab)
    return 0; // for who holds the table: the cells are walked with the arrows
  haveCurrentCell();
  const bool up = event.code == KEY_Up || event.code == KEY_KP_Up;
  if (up && getCurrentRow() <= 0 && getNumColumns() > 0) {
    columnHeader()->takeKeyboard(std::max(0, getCurrentColumn()));
    return 1;
  }
  return FXTable::onKeyPress(sender, selector, data);
}

long Table::onFocusIn(FXObject* sender, FXSelector selector, void* data) {
  const long handled = FXTable::onFocusIn(sender, selector, data);
  haveCurrentCell();
  return handled;
}

void Table::takeKeyboard() {
  if (editor)
    acceptInput(TRUE);
  if (FXWindow* part = getFocus())
    part->killFocus();
  setFocus();
}

/// Not while a cell is edited: the toolkit would end that when another cell becomes the current one.
void Table::haveCurrentCell() {
  if (!editor && getCurrentRow() < 0 && getNumRows() > 0 && getNumColumns() > 0)
    setCurrentItem(0, 0);
}

long Table::openPopupOfCurrentRow() {
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

void Table::openColumnPopup(FXint index) {
  guardedHandler(u"Table::onRightClickColumns failed.", [&] {
    FXint x = 0, y = 0;
    colHeader->translateCoordinatesTo(x, y, getRoot(),
                                      colHeader->getItemOffset(index) + colHeader->getItemSize(index) / 2,
                                      colHeader->getHeight());
    columnPopup({x, y, nullptr, columnAt(index)});
  });
}

long Table::onRightClick(FXObject*, FXSelector, void* data) {
  const FXEvent event = *static_cast<FXEvent*>(data);
  return guardedHandler(u"Table::onRightClick failed.", [&] {
    rightClickCell({event.root_x, event.root_y, rowAt(rowAtY(event.win_y)), columnAt(colAtX(event.win_x))});
  });
}

/// Not handled: a second click then begins to edit the cell. One beside the cells, of which the last current
/// one knows nothing, ends here.
long Table::onLeftClick(FXObject*, FXSelector, void* data) {
  const FXEvent& event = *static_cast<FXEvent*>(data);
  bool hitsCurrentCell = false;
  guardedHandler(u"TallymoorWindow::onAbout failed.", [&] {
    hitsCurrentCell = rowAtY(event.win_y) == getCurrentRow() && colAtX(event.win_x) == getCurrentColumn();
  });
  return event.click_count > 1 && !hitsCurrentCell ? 1 : 0;
}

/// Comes when the header's button goes up where it went down: who drags off a header does not sort.
long Table::onLeftClickColumns(FXObject*, FXSelector, void* data) {
  const auto index = static_cast<FXint>(reinterpret_cast<FXival>(data));
  return guardedHandler(u"Table::onLeftClickColumns failed.", [&] {
    if (Column* const column = columnAt(index))
      clickColumn({0, 0, nullptr, column});
  });
}

/// Ctrl+A comes here as well, from the table itself; neither selects the whole table.
long Table::onLeftClickCorner(FXObject* sender, FXSelector, void*) {
  return guardedHandler(u"Table::onLeftClickColumns failed.", [&] {
    if (sender == getCornerButton())
      clickCorner();
  });
}

/// Return comes here as well. Not handled where the cell can be typed into: the toolkit then begins that.
long Table::onDoubleClick(FXObject*, FXSelector, void*) {
  const Column* const column = columnAt(getCurrentColumn());
  Row* const row = rowAt(getCurrentRow());
  if (!row || !column || column->editable())
    return 0;
  return guardedHandler(u"Table::onDoubleClick failed.", [&] { editRow(*row); });
}

long Table::onSwallow(FXObject*, FXSelector, void*) {
  return 1;
}

/// A table that has nothing to scroll leaves the wheel to the area around it.
long Table::onMouseWheel(FXObject* sender, FXSelector selector, void* data) {
  FXScrollArea* const outer = outerScrollArea(*this);
  const bool scrolls = m_fillsParent && getContentHeight() > getViewportHeight();
  if (outer && !scrolls)
    return outer->handle(sender, selector, data);
  return onVMouseWheel(sender, selector, data);
}

void Table::rightClickCell(const TableClick&) {}

void Table::leftClickCell(const TableClick&) {}

void Table::rowPopup(const TableClick&) {}

void Table::editRow(Row&) {}

void Table::clickColumn(const TableClick& click) {
  sortBy(click.column->function());
}

void Table::clickCorner() {
  sortBy(nullptr);
}

void Table::sortBy(Column::Function function) {
  if (function == m_sortFunction)
    m_sortReversed = !m_sortReversed;
  m_sortFunction = function;
  updateTable();
}

// The user's choice of columns

void Table::columnPopup(const TableClick& click) {
  m_inputColumn = click.column;
  ContextMenu menu(this, this);
  if (click.column && m_visibleColumns.size() > 1)
    menu.addCommand(u"Remove column \"" + click.column->title() + u"\"", ID_REMOVE_COLUMN);
  menu.addCommand(u"Select columns...", ID_SELECT_COLUMNS);
  menu.addCommand(u"Reset columns to defaults", ID_RESET_COLUMNS);
  menu.run(click.screenX, click.screenY);
}

long Table::onRemoveColumn(FXObject*, FXSelector, void*) {
  return guardedHandler(u"Table::onRemoveColumn failed.", [this] {
    const Column* const column = m_inputColumn;
    if (!column || m_visibleColumns.size() <= 1)
      return;
    if (!UserInteraction::Instance().question(u"Do you want to hide column \"" + column->title() + u"\"?"))
      return;
    m_choice.setVisible(*column, false);
    updateTable();
  });
}

long Table::onSelectColumns(FXObject*, FXSelector, void*) {
  return guardedHandler(u"Table::onSelectColumns failed.", [this] {
    ListChoiceDialog dialog(this, u"Choose Columns", u"Select the columns you wish to view on this table.",
                            true);
    for (const std::unique_ptr<Column>& column : m_columns)
      dialog.addListEntry(column->title(), column.get(), column->index() >= 0);
    if (!dialog.execute())
      return;
    const std::vector<void*>& chosen = dialog.chosenData();
    for (const std::unique_ptr<Column>& column : m_columns)
      m_choice.setVisible(*column, std::find(chosen.begin(), chosen.end(), column.get()) != chosen.end());
    updateTable();
  });
}

long Table::onResetColumns(FXObject*, FXSelector, void*) {
  return guardedHandler(u"Table::onResetColumns failed.", [this] {
    if (!UserInteraction::Instance().question(u"Do you want to reset columns to default?"))
      return;
    for (const std::unique_ptr<Column>& column : m_columns)
      m_choice.setVisible(*column, column->defaultVisible());
    updateTable();
  });
}

// Editing

void Table::cellEdited(Column&, Row&) {}

String Table::shownText(const Column& column, const Row& row) const {
  return fromFox(getItemText(row.index(), column.index()));
}

void Table::startInput(FXint row, FXint column) {
  BigMutexLock lock;
  Row* const editedRow = rowAt(row);
  Column* const editedColumn = columnAt(column);
  if (!editedRow || !editedColumn) {
    FXTable::startInput(row, column);
    return;
  }
  if (!editedColumn->editable())
    return;
  FXTable::startInput(row, column);
  m_inputRow = editedRow;
  m_inputColumn = editedColumn;
}

void Table::cancelInput() {
  BigMutexLock lock;
  const HandlerScope scope;
  // The toolkit also calls this from every change of the table's size, and in the middle of acceptInput.
  const bool underWay = editor && !m_building && !m_acceptingInput;
  FXTable::cancelInput();
  if (!underWay)
    return;
  m_inputRow = nullptr;
  m_inputColumn = nullptr;
  rebuild();
}

void Table::acceptInput(FXbool notify) {
  if (!editor || m_acceptingInput) {
    FXTable::acceptInput(notify);
    return;
  }
  guardedHandler(u"Table::acceptInput failed", [&] {
    Row* const row = std::exchange(m_inputRow, nullptr);
    Column* const column = std::exchange(m_inputColumn, nullptr);
    {
      const FlagScope accepting(m_acceptingInput);
      FXTable::acceptInput(notify);
    }
    // Asked for first: the text that was typed must go even when it can't be taken. The handler is done
    // before it.
    rebuild();
    if (row && column)
      cellEdited(*column, *row);
  });
}

} // namespace Tallymoor
