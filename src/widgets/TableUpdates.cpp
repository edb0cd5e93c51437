#include "widgets/TableUpdates.h"
#include "foundation/Exception.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/UserInteraction.h"
#include "widgets/CellGrid.h"
#include "widgets/FlagScope.h"
#include "widgets/HandlerScope.h"
#include <algorithm>
#include <utility>

namespace Tallymoor {

TableUpdates::TableUpdates(CellGrid& grid, Work& work)
    : m_grid(grid), m_work(work), m_wakeUp(grid.getApp(), [this] { refreshMarked(); }) {}

TableUpdates::~TableUpdates() {
  HandlerScope::forget(this);
}

void TableUpdates::ask(Task task) {
  m_task = std::max(m_task, task);
  if (m_grid.isEditing())
    return; // the end of the edit asks again
  if (m_performed)
    HandlerScope::whenDone(
        this, [this] { perform(); }, m_grid.getShell());
  else
    perform();
}

void TableUpdates::perform() {
  if (m_grid.isEditing() || m_task == Task::NOTHING)
    return;
  const HandlerScope scope;
  const FlagScope performing(m_performing);
  m_performed = true;
  if (std::exchange(m_task, Task::NOTHING) == Task::FILL || m_recordsChanged) {
    m_recordsChanged = false;
    const FlagScope filling(m_filling);
    m_work.fillTable();
  } else {
    m_work.showTable();
  }
  if (!m_marks.empty())
    m_wakeUp.wake(); // a price that came meanwhile had to wait
}

void TableUpdates::markStale(const String& key) {
  m_marks.markKey(key);
  m_wakeUp.wake();
}

void TableUpdates::markAllStale() {
  m_marks.markAll();
  m_wakeUp.wake();
}

void TableUpdates::markRoundFinished() {
  m_marks.markRoundFinished();
  m_wakeUp.wake();
}

void TableUpdates::refreshMarked() {
  // Nothing may be asked of the user because a price came.
  const BackgroundPassScope pass;
  if (m_performing || m_task == Task::FILL || m_marks.empty())
    return; // the end of the task wakes again
  try {
    withUnforeseenFailures([&] {
      // Marks of rows over changed records wait for the filling, too.
      if (!m_recordsChanged)
        m_work.refreshMarked(m_marks.take());
      m_work.refreshed();
    });
  } catch (const Exception& exception) {
    UserInteraction::Instance().setStatusText(exception.description());
  }
}

} // namespace Tallymoor
