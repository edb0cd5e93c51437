#pragma once
#include "foundation/String.h"
#include "widgets/PacedWakeUp.h"
#include "widgets/StaleMarks.h"

namespace Tallymoor {

class CellGrid;

/// Decides when a table is filled or shown again: at once, or, because both delete rows, when the outermost
/// handler has returned and no cell is edited. Rows that other threads mark are refreshed on the GUI thread
/// while nothing of that is waiting.
class TableUpdates {
public:
  /// What a table does when its time has come.
  class Work {
  public:
    /// Declares the columns and rows again, and shows them.
    virtual void fillTable() = 0;
    /// Shows the declared columns and rows.
    virtual void showTable() = 0;
    virtual void refreshMarked(const StaleMarks::Taken& marks) = 0;
    /// The table has been refreshed, or prices came while the records under it have changed.
    virtual void refreshed() = 0;

  protected:
    ~Work() = default;
  };

  /// Both outlive it.
  TableUpdates(CellGrid& grid, Work& work);
  ~TableUpdates();
  TableUpdates(const TableUpdates&) = delete;
  TableUpdates& operator=(const TableUpdates&) = delete;

  // Now, or when that is safe.
  void fill() { ask(Task::FILL); }
  void show() { ask(m_recordsChanged ? Task::FILL : Task::SHOW); }
  bool isFilling() const { return m_filling; }

  /// Until the next filling, nothing is read from the records.
  void recordsChanged() { m_recordsChanged = true; }
  bool haveRecordsChanged() const { return m_recordsChanged; }

  // From any thread.
  void markStale(const String& key);
  void markAllStale();
  void markRoundFinished();

private:
  enum class Task { NOTHING, SHOW, FILL };

  void ask(Task task);
  void perform();
  void refreshMarked();

  CellGrid& m_grid;
  Work& m_work;
  Task m_task = Task::NOTHING; ///< waits for the end of the handler or of the edit
  bool m_performed = false;    ///< the first task never waits
  bool m_performing = false;
  bool m_filling = false;
  bool m_recordsChanged = false;
  StaleMarks m_marks;
  PacedWakeUp m_wakeUp;
};

} // namespace Tallymoor
