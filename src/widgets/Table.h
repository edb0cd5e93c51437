#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include "widgets/Column.h"
#include "widgets/ColumnChoice.h"
#include "widgets/GuiWakeUp.h"
#include "widgets/Row.h"
#include "widgets/RowChanges.h"
#include "widgets/RowList.h"
#include "widgets/StaleMarks.h"
#include "widgets/TableClick.h"
#include "widgets/WidestText.h"
#include <cstdint>
#include <fx.h>
#include <memory>
#include <optional>
#include <vector>

namespace Tallymoor {

class TableHeader;
class TableItem;

/// A list of figures. Nothing is stored in it: a subclass declares columns, each with a function that
/// computes a cell, and rows, each with a key and a payload; every figure is computed from the records when
/// its row is refreshed. The user's choice of columns is kept in the settings, and the rows sort by the text
/// of any column.
///
/// Rebuilding deletes rows, so it never happens under a running handler or an open editor: updateTable and
/// rebuild then only note the wish, which is served when the outermost handler has returned or the editor has
/// closed.
///
/// GUI thread only, under the big mutex; only the three mark operations may be called from any thread.
class Table : public FXTable {
  FXDECLARE_ABSTRACT(Table)
public:
  /// Told of every change of a table.
  class Watcher {
  public:
    virtual ~Watcher();
    /// True after the table was rebuilt as a whole, false after rows were refreshed or a round of prices has
    /// ended.
    virtual void tableChanged(bool rebuilt) = 0;
    /// Prices came, or a round of them has ended, while the records under the rows have changed: the rows
    /// keep what they show until the table is filled anew. For figures that are read from the records and not
    /// from the rows; nothing here.
    virtual void pricesCameUnderRows();
  };

  /// 88 to 91 with this toolkit; a subclass numbers its own commands from ID_LAST, 92.
  enum {
    ID_TABLE = FXTable::ID_LAST + 1, ///< the table's messages to itself
    ID_SELECT_COLUMNS,
    ID_REMOVE_COLUMN,
    ID_RESET_COLUMNS,
    ID_LAST
  };

  /// The name is that of the table's section in the settings. fillsParent: the table fills its parent and
  /// scrolls; otherwise it is as large as its contents. The watcher is not owned and may be null.
  Table(const String& name, FXComposite* parent, bool fillsParent, Watcher* watcher,
        std::int32_t rowCompareType = COMPARE_TEXT);
  ~Table() override;

  const String& name() const { return m_name; }
  Watcher* watcher() const { return m_watcher; }

  /// Declares the columns and rows anew from the records and shows them, now or when that is safe. Who
  /// changed the records calls this.
  void updateTable();
  /// Shows the declared columns and rows anew, now or when that is safe. Within fillTable always at once.
  void rebuild();
  /// Computes the row's cells anew. Does nothing while the records have changed under the table, and only
  /// forgets what was computed when the row has no place yet.
  void refreshRow(Row& row);
  /// Computes one column anew in all rows, for figures that depend on the other rows. Does nothing where the
  /// table has no such column.
  void refreshColumn(Column::Function function);
  /// The records under the rows have changed: until the table is filled anew, rows keep what they show and no
  /// cell function is called.
  void recordsChanged() { m_recordsChanged = true; }
  bool hasChangedRecords() const { return m_recordsChanged; }

  /// Drops all columns and rows.
  void clear();
  /// For a column that is hidden by default, the settings are told so at once, unless the user has made a
  /// choice.
  Column& addColumn(std::unique_ptr<Column> column);
  Row& addRow(std::unique_ptr<Row> row);

  /// Throws Exception "Table::getColumn - no column for that function".
  Column& getColumn(Column::Function function) const;
  bool hasColumn(Column::Function function) const;
  /// The visible column at this position of the toolkit's table, or null.
  Column* columnAt(FXint index) const;
  const std::vector<std::unique_ptr<Column>>& columns() const { return m_columns; }
  const std::vector<Column*>& visibleColumns() const { return m_visibleColumns; }

  /// Position of the first row with that key. Throws Exception "Table::getRow - no row for: " and the key.
  FXint getRow(const String& key) const;
  bool hasRow(const String& key) const;
  /// The row at this position of the toolkit's table, or null.
  Row* rowAt(FXint index) const;
  /// All rows in the order of their keys, equal ones in that of their insertion.
  std::vector<Row*> rows() const { return m_rows.all(); }
  std::size_t numRows() const { return m_rows.size(); }

  /// The row's result in the column with that function, shown or hidden. Throws what the cell function threw.
  /// The reference holds until the row's next refresh.
  const CellResult& cell(Column::Function function, Row& row) const;
  /// Sum over all rows; rows whose cell fails, is a text or a date add nothing.
  double sumColumn(Column::Function function) const;

  /// Where a total below the column begins, counted from the right edge of the row header.
  FXint columnLeft(const Column& column) const;
  /// 0 for a hidden column.
  FXint columnWidth(const Column& column) const;

  /// Position of the visible column that rows are sorted by; -1 for the order of row keys.
  FXint sortColumn() const;
  bool sortReversed() const { return m_sortReversed; }

  /// Whether an event of that day gets a row, by the view date and the option to hide earlier financial
  /// years.
  static bool dateShown(const Date& date);

  /// From any thread: the rows with that key, or all rows, need a refresh; a round of prices has ended. The
  /// GUI thread is woken, refreshes the rows under the big mutex and tells the watcher once. An open editor
  /// stays.
  void markStale(const String& key);
  void markAllStale();
  void markRoundFinished();

  /// What stands in the place of the rows while there are none: what the user can do about it. Empty for
  /// nothing.
  void setEmptyText(const String& text);
  /// The same while it is in sight; empty when there are rows.
  String shownEmptyText() const { return m_placedRows.empty() ? m_emptyText : String(); }

  /// Gives the keyboard to the cells; an edit under way ends with what was typed.
  void takeKeyboard();

  void startInput(FXint row, FXint column) override;
  void cancelInput() override;
  void acceptInput(FXbool notify = FALSE) override;

  long onRightClickColumns(FXObject* sender, FXSelector selector, void* data);
  long onRightClickRows(FXObject* sender, FXSelector selector, void* data);
  long onRightClick(FXObject* sender, FXSelector selector, void* data);
  long onLeftClick(FXObject* sender, FXSelector selector, void* data);
  long onLeftClickColumns(FXObject* sender, FXSelector selector, void* data);
  long onLeftClickRows(FXObject* sender, FXSelector selector, void* data);
  long onLeftClickCorner(FXObject* sender, FXSelector selector, void* data);
  long onSwallow(FXObject* sender, FXSelector selector, void* data);
  long onSelectColumns(FXObject* sender, FXSelector selector, void* data);
  long onRemoveColumn(FXObject* sender, FXSelector selector, void* data);
  long onResetColumns(FXObject* sender, FXSelector selector, void* data);
  long onMouseWheel(FXObject* sender, FXSelector selector, void* data);
  /// A double click or Return: where the cell can be typed into, that begins; otherwise the row is edited.
  long onDoubleClick(FXObject* sender, FXSelector selector, void* data);
  long onPaint(FXObject* sender, FXSelector selector, void* data);
  /// The menu key opens the popup of the current row, the up arrow in the first row leads to the column
  /// header, and the tab key leaves the table.
  long onKeyPress(FXObject* sender, FXSelector selector, void* data);
  /// Who comes by the keyboard finds a current cell.
  long onFocusIn(FXObject* sender, FXSelector selector, void* data);

  /// The popup of the column's commands, below the title of the column at this position.
  void openColumnPopup(FXint index);

protected:
  /// What updateTable runs when it is safe: clear, addColumn for each column, addRow for each row, and last
  /// rebuild. Here only rebuild. A subclass's constructor ends with updateTable, whose first run is never put
  /// off.
  virtual void fillTable();
  /// Begins a fillTable that keeps what it can, in the place of clear: the columns stay, and so does each row
  /// that is kept. All other rows go with the rebuild. The cells of all rows are computed anew all the same,
  /// but for those of an unchanged payload in columns that follow it alone.
  void releaseRows();
  /// In the place of addRow, for a row from before.
  void keepRow(Row& row, bool payloadChanged = true);
  /// Back to the order of row keys, or its reversal.
  virtual void clickCorner();
  /// A right click in the body; nothing here.
  virtual void rightClickCell(const TableClick& click);
  /// Spare; nothing calls it.
  virtual void leftClickCell(const TableClick& click);
  /// Opens the menu of the column commands.
  virtual void columnPopup(const TableClick& click);
  /// Opens the menu of the row's commands, after setInputRow for them; nothing here.
  virtual void rowPopup(const TableClick& click);
  /// A double click on the row, or Return, where the cell itself can't be typed into: opens what the row is
  /// edited with, after setInputRow for it; nothing here.
  virtual void editRow(Row& row);
  /// Sorts by the column, or reverses the order.
  virtual void clickColumn(const TableClick& click);
  /// The user has typed a text into this cell; it is the toolkit's text of the cell. The table is rebuilt
  /// afterwards.
  virtual void cellEdited(Column& column, Row& row);

  FXTableItem* createItem(const FXString& text, FXIcon* icon, void* data) override;

  /// The row under edit, or the one whose popup was opened; null when there is none. Valid until the handler
  /// that opened it returns.
  Row* inputRow() const { return m_inputRow; }
  void setInputRow(Row* row) { m_inputRow = row; }
  /// The column under edit, or the one whose popup was opened.
  Column* inputColumn() const { return m_inputColumn; }
  void setInputColumn(Column* column) { m_inputColumn = column; }
  /// The cell's text as the toolkit has it: what the user has typed, inside cellEdited.
  String shownText(const Column& column, const Row& row) const;

private:
  friend class Column;
  friend class Row;

  static constexpr FXint EXTRA_WIDTH = 20; ///< of columns and of the row header, around the widest text

  enum class Wish { NOTHING, REBUILD, FILL };
  struct CurrentCell {
    String rowKey;
    Column::Function column = nullptr;
  };

  void buildHeaders();
  TableHeader* columnHeader() const;
  void wish(Wish wish);
  void serveWish();
  bool isWorking() const { return m_filling || m_building; }

  void build();
  void buildAnew();
  void buildInPlace(const RowChanges& changes);
  std::optional<RowChanges> changesInPlace(const std::vector<Column*>& columnsBefore) const;
  void removePlaces(const RowChanges::Run& run);
  void forgetRow(const Row& row);
  bool needsRenewal(const Column& column, const Row& row) const;
  void renewCells(Row& row);
  void showText(TableItem& item, const Column& column, const FXString& text);
  void fitInPlace();
  void chooseVisibleColumns();
  void setUpToolkitTable();
  std::vector<Row*> rowsInOrder();
  void place(Row& row);
  void fitRows();
  void fitRow(const Row& row);
  void fitColumns();
  void fitColumn(const Column& column);
  void measureColumn(const Column& column);
  void fitWidget();
  void keepCurrentCell();
  void restoreCurrentCell();

  TableItem* itemAt(FXint row, FXint column) const;
  /// The row's cells; none while the row has no place in the toolkit's table.
  std::vector<TableItem*> itemsOf(const Row& row) const;
  void resetCells(const Row& row);
  void repaintRow(const Row& row) const;
  void sortBy(Column::Function function);
  void drawEmptyText(FXDC& dc) const;
  void openRowPopup(Row* row, FXint screenX, FXint screenY);
  long openPopupOfCurrentRow();
  void haveCurrentCell();
  void refreshMarked();
  void followMarks();
  void refreshRows(const StaleMarks::Taken& marks);

  String m_name;
  String m_emptyText;
  ColumnChoice m_choice;
  std::vector<std::unique_ptr<Column>> m_columns; ///< in order of declaration
  std::vector<Column*> m_visibleColumns;          ///< by position in the toolkit's table
  RowList m_rows;
  std::vector<Row*> m_placedRows;        ///< by position in the toolkit's table
  CurrentCell m_keptCell;                ///< the current cell from before the rebuild
  std::vector<WidestText> m_widestTexts; ///< of the visible columns, with their titles
  WidestText m_widestKey;
  Row* m_inputRow = nullptr;
  Column* m_inputColumn = nullptr;
  bool m_fillsParent;
  /// What rows are sorted by, null for row keys: a position would not survive the hiding of another column.
  Column::Function m_sortFunction = nullptr;
  bool m_sortReversed = false;
  Watcher* m_watcher;

  Wish m_wish = Wish::NOTHING; ///< waits for the end of the handler or of the editor
  bool m_served = false;       ///< was filled or rebuilt at least once
  bool m_filling = false;
  bool m_keepsRows = false; ///< in a filling that began with releaseRows
  bool m_building = false;
  bool m_acceptingInput = false;
  bool m_recordsChanged = false;

  StaleMarks m_marks;
  GuiWakeUp m_wakeUp;
};

} // namespace Tallymoor
