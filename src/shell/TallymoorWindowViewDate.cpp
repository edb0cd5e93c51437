// The view date: the day at which the window shows all capital.
#include "foundation/RestingStatus.h"
#include "foundation/UserInteraction.h"
#include "market/TallymoorInternet.h"
#include "shell/TallymoorWindow.h"
#include "shell/ViewDateRow.h"
#include "widgets/Table.h"

namespace Tallymoor {

namespace {

/// What is being typed into a cell belongs to the day that it was typed on.
void finishEdits(FXWindow& window) {
  if (auto* table = dynamic_cast<Table*>(&window))
    table->acceptInput(TRUE);
  for (FXWindow* child = window.getFirst(); child; child = child->getNext())
    finishEdits(*child);
}

} // namespace

// The updater takes "today" from the view date, so it must not run from before the date is set until it is
// gone.
void TallymoorWindow::setViewDate(const Date& date) {
  loadedTree();
  finishEdits(*m_tabBook);
  TallymoorInternet::Instance().pauseUpdates();
  Date::setFixedDate(date);
  showViewDate();
}

void TallymoorWindow::resetViewDate() {
  loadedTree();
  finishEdits(*m_tabBook);
  Date::clearFixedDate();
  showViewDate();
  TallymoorInternet::Instance().resumeUpdates();
}

void TallymoorWindow::showViewDate() {
  if (viewDateMoved())
    m_viewDateRow->showPast();
  else
    m_viewDateRow->showToday();
  setNormalStatusText(restingStatusText());
  WaitCursor wait;
  refreshViews(true);
}

void TallymoorWindow::moveViewDate(int days) {
  const Date moved = viewDate().plusDays(days);
  if (moved >= Date::realToday())
    resetViewDate();
  else
    setViewDate(moved);
}

} // namespace Tallymoor
