#pragma once
#include "foundation/String.h"
#include "widgets/TableClick.h"
#include <fx.h>

namespace Tallymoor {

class Column;
class Row;
class TableItem;

/// The toolkit's table as this program uses it: tinted cells, headers that the keyboard reaches, and a text
/// in place of missing rows. Turns the mouse and the keys into a few operations, which a Table overrides. GUI
/// thread only, under the big mutex.
class CellGrid : public FXTable {
  FXDECLARE_ABSTRACT(CellGrid)
public:
  enum {
    ID_TABLE = FXTable::ID_LAST + 1, ///< the table's messages to itself; 88 with this toolkit
    ID_LAST
  };

  /// fillsParent: the table fills its parent and scrolls; otherwise it is as large as its contents.
  CellGrid(FXComposite* parent, bool fillsParent);

  /// The visible column at this position; null if there is none.
  virtual Column* columnAt(FXint index) const = 0;
  /// The row at this position; null if there is none.
  virtual Row* rowAt(FXint index) const = 0;
  /// Null for a cell that has shown nothing yet.
  TableItem* itemAt(FXint row, FXint column) const;
  bool isEditing() const { return editor != nullptr; }

  /// What is shown while there are no rows: what the user can do about it. Empty for nothing.
  void setEmptyText(const String& text);
  /// The same while it is in sight; empty when there are rows.
  String shownEmptyText() const { return getNumRows() == 0 ? m_emptyText : String(); }

  /// Gives the keyboard to the cells; an edit under way ends with what was typed.
  void takeKeyboard();
  /// The popup of the column's commands, below the title of the column at this position.
  void openColumnPopup(FXint index);

  /// Takes the size of the contents, unless the table fills its parent.
  void fitToContents();
  FXTableItem* createItem(const FXString& text, FXIcon* icon, void* data) override;

  long onRightClickColumns(FXObject* sender, FXSelector selector, void* data);
  long onRightClickRows(FXObject* sender, FXSelector selector, void* data);
  long onRightClick(FXObject* sender, FXSelector selector, void* data);
  long onLeftClick(FXObject* sender, FXSelector selector, void* data);
  long onLeftClickColumns(FXObject* sender, FXSelector selector, void* data);
  long onLeftClickRows(FXObject* sender, FXSelector selector, void* data);
  long onLeftClickCorner(FXObject* sender, FXSelector selector, void* data);
  long onSwallow(FXObject* sender, FXSelector selector, void* data);
  long onMouseWheel(FXObject* sender, FXSelector selector, void* data);
  /// A double click or Return: where the cell can be typed into, that begins; otherwise the row is edited.
  long onDoubleClick(FXObject* sender, FXSelector selector, void* data);
  long onPaint(FXObject* sender, FXSelector selector, void* data);
  /// The menu key opens the popup of the current row, the up arrow in the first row leads to the column
  /// header, and the tab key leaves the table.
  long onKeyPress(FXObject* sender, FXSelector selector, void* data);
  /// Makes a cell the current one, so that the keys have an effect.
  long onFocusIn(FXObject* sender, FXSelector selector, void* data);

protected:
  /// A click on the title of a column.
  virtual void clickColumn(const TableClick& click) = 0;
  /// A click on the corner between the two headers.
  virtual void clickCorner() = 0;
  /// A right click on the title of a column.
  virtual void columnPopup(const TableClick& click) = 0;
  /// A right click on a row's header, or the menu key in the row; nothing here.
  virtual void rowPopup(const TableClick& click);
  /// A right click in the body; nothing here.
  virtual void rightClickCell(const TableClick& click);
  /// A double click on the row, or Return, where the cell itself can't be typed into; nothing here.
  virtual void editRow(Row& row);

private:
  void buildHeaders();
  void drawEmptyText(FXDC& dc) const;
  void openRowPopup(Row* row, FXint screenX, FXint screenY);
  long openPopupOfCurrentRow();
  void ensureCurrentCell();

  bool m_fillsParent;
  String m_emptyText;
};

} // namespace Tallymoor
