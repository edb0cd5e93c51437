#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include "widgets/CellGrid.h"
#include "widgets/Column.h"
#include "widgets/Row.h"
#include "widgets/TableCells.h"
#include "widgets/TableClick.h"
#include "widgets/TableContents.h"
#include "widgets/TableUpdates.h"
#include <cstdint>
#include <fx.h>
#include <memory>
#include <vector>

namespace Tallymoor {

/// A list of figures. Nothing is stored in it: a subclass declares columns, each with a function that
/// computes a cell, and rows, each with a key and a payload; every figure is computed from the records when
/// its row is refreshed. The user's choice of columns is kept in the settings, and the rows sort by the text
/// of any column.
///
/// It is a face over what it declares (TableContents), what of that is shown (TableCells, in a CellGrid), and
/// when that is done again (TableUpdates): rows are deleted then, never under a running handler or an edit.
///
/// GUI thread only, under the big mutex; only the three mark operations may be called from any thread.
class Table : public CellGrid, private TableUpdates::Work {
  FXDECLARE_ABSTRACT(Table)
public:
  /// Learns of every change of a table.
  class Watcher {
  public:
    virtual ~Watcher();
    /// True after the table was rebuilt as a whole, false after rows were refreshed or a round of prices has
    /// ended.
    virtual void tableChanged(bool rebuilt) = 0;
    /// Prices came, or a round of them has ended, while the records under the rows have changed: the rows
    /// keep what they show until the table is filled again. For figures that are read from the records and
    /// not from the rows; nothing here.
    virtual void pricesCameUnderRows();
  };

  /// A subclass numbers its own commands from ID_LAST, 92 with this toolkit.
  enum { ID_SELECT_COLUMNS = CellGrid::ID_LAST, ID_REMOVE_COLUMN, ID_RESET_COLUMNS, ID_LAST };

  /// The name is that of the table's section in the settings. fillsParent: the table fills its parent and
  /// scrolls; otherwise it is as large as its contents. The watcher is not owned and may be null.
  Table(const String& name, FXComposite* parent, bool fillsParent, Watcher* watcher,
        std::int32_t rowCompareType = COMPARE_TEXT);

  const String& name() const { return m_name; }

  /// Declares the columns and rows again from the records and shows them, now or when that is safe. To be
  /// called after a change of the records.
  void updateTable() { m_updates.fill(); }
  /// Shows the declared columns and rows again, now or when that is safe. Within fillTable always at once.
  void rebuild();
  /// Computes the row's cells again. Does nothing while the records have changed under the table, and only
  /// forgets what was computed when the row has no place yet.
  void refreshRow(Row& row);
  /// Computes one column again in all rows, for figures that depend on the other rows. Does nothing where the
  /// table has no such column.
  void refreshColumn(Column::Function function);
  /// The records under the rows have changed: until the table is filled again, rows keep what they show and
  /// no cell function is called.
  void recordsChanged() { m_updates.recordsChanged(); }
  bool hasChangedRecords() const { return m_updates.haveRecordsChanged(); }

  /// Drops all columns and rows.
  void clear();
  /// For a column that is hidden by default, the settings are told so at once, unless the user has made a
  /// choice.
  Column& addColumn(std::unique_ptr<Column> column);
  Row& addRow(std::unique_ptr<Row> row);

  /// Throws Exception "Table::getColumn - no column for that function".
  Column& getColumn(Column::Function function) const;
  bool hasColumn(Column::Function function) const { return m_contents.findColumn(function) != nullptr; }
  Column* columnAt(FXint index) const override { return m_contents.columnAt(index); }
  const std::vector<std::unique_ptr<Column>>& columns() const { return m_contents.columns(); }
  const std::vector<Column*>& visibleColumns() const { return m_contents.visibleColumns(); }

  /// Position of the first row with that key. Throws Exception "Table::getRow - no row for: " and the key.
  FXint getRow(const String& key) const;
  bool hasRow(const String& key) const { return !m_contents.rows().withKey(key).empty(); }
  Row* rowAt(FXint index) const override { return m_cells.rowAt(index); }
  /// All rows in the order of their keys, equal ones in that of their insertion.
  std::vector<Row*> rows() const { return m_contents.rows().all(); }
  std::size_t numRows() const { return m_contents.rows().size(); }

  /// The row's result in the column with that function, shown or hidden. Throws what the cell function threw.
  /// The reference holds until the row's next refresh.
  const CellResult& cell(Column::Function function, Row& row) const {
    return getColumn(function).result(row);
  }
  /// Sum over all rows; rows whose cell fails, is a text or a date add nothing.
  double sumColumn(Column::Function function) const { return m_contents.sum(getColumn(function)); }

  /// Where a total below the column begins, counted from the right edge of the row header.
  FXint columnLeft(const Column& column) const;
  /// 0 for a hidden column.
  FXint columnWidth(const Column& column) const {
    return column.index() < 0 ? 0 : getColumnWidth(column.index());
  }

  /// Position of the visible column that rows are sorted by; -1 for the order of row keys.
  FXint sortColumn() const { return m_contents.sortColumn(); }
  bool sortReversed() const { return m_contents.sortReversed(); }

  /// Whether an event of that day gets a row, by the view date and the option to hide earlier financial
  /// years.
  static bool dateShown(const Date& date);

  // From any thread: the rows with that key, or all rows, need a refresh; a round of prices has ended. The
  // GUI thread is woken, refreshes the rows under the big mutex and tells the watcher once. An open editor
  // stays.
  void markStale(const String& key) { m_updates.markStale(key); }
  void markAllStale() { m_updates.markAllStale(); }
  void markRoundFinished() { m_updates.markRoundFinished(); }

  void startInput(FXint row, FXint column) override;
  void cancelInput() override;
  void acceptInput(FXbool notify = FALSE) override;

  long onSelectColumns(FXObject* sender, FXSelector selector, void* data);
  long onRemoveColumn(FXObject* sender, FXSelector selector, void* data);
  long onResetColumns(FXObject* sender, FXSelector selector, void* data);

protected:
  /// What updateTable runs when it is safe: clear, addColumn for each column, addRow for each row, and last
  /// rebuild. Here only rebuild. A subclass's constructor ends with updateTable, whose first run never waits.
  void fillTable() override { rebuild(); }
  /// Begins a fillTable that keeps what it can, in the place of clear: the columns stay, and so does each row
  /// that is kept. All other rows go with the rebuild. The cells of all rows are computed again nevertheless,
  /// except those of an unchanged payload in columns that follow it alone.
  void releaseRows();
  /// In the place of addRow, for a row from before.
  void keepRow(Row& row, bool payloadChanged = true) { m_contents.keepRow(row, payloadChanged); }
  /// Back to the order of row keys, or its reversal.
  void clickCorner() override;
  /// Sorts by the column, or reverses the order.
  void clickColumn(const TableClick& click) override;
  /// Opens the menu of the column commands.
  void columnPopup(const TableClick& click) override;
  /// The user has typed a text into this cell; it is the toolkit's text of the cell. The table is rebuilt
  /// afterwards.
  virtual void cellEdited(Column& column, Row& row);

  /// The row under edit, or the one whose popup was opened; null when there is none. Valid until the handler
  /// that opened it returns.
  Row* inputRow() const { return m_inputRow; }
  /// To be called before a row's popup or form opens.
  void setInputRow(Row* row) { m_inputRow = row; }
  /// The column under edit, or the one whose popup was opened.
  Column* inputColumn() const { return m_inputColumn; }
  /// The cell's text as the toolkit has it: what the user has typed, inside cellEdited.
  String shownText(const Column& column, const Row& row) const;

private:
  friend class Row;

  void showTable() override;
  void refreshMarked(const StaleMarks::Taken& marks) override { m_cells.refreshMarked(marks); }
  void refreshed() override;
  void sortBy(Column::Function function);

  String m_name;
  TableContents m_contents;
  TableCells m_cells;
  Row* m_inputRow = nullptr;
  Column* m_inputColumn = nullptr;
  bool m_acceptingInput = false;
  Watcher* m_watcher;
  TableUpdates m_updates;
};

} // namespace Tallymoor
