#include "shell/ViewDateController.h"
#include "foundation/UserInteraction.h"
#include "market/RestingStatus.h"
#include "market/TallymoorInternet.h"
#include "shell/CellEdits.h"
#include "shell/TallymoorWindow.h"
#include "shell/ViewDateRow.h"

namespace Tallymoor {

namespace {

constexpr int WEEK = 7;

} // namespace

std::vector<Command> ViewDateController::commands(const WindowIcons& icons,
                                                  const std::function<bool()>& isLoaded) {
  using Window = TallymoorWindow;
  const auto back = [this](int days) { return [this, days] { move(-days); }; };
  const auto forward = [this](int days) {
    return [this, days] {
      if (isMoved())
        move(days);
    };
  };
  return {
      {Window::ID_FORWARD, "", "", "Forward a day\tMove the view date for your capital forward a day",
       icons.forwardDay.get(), u"onForwardViewDate", forward(1), isMoved},
      {Window::ID_FFORWARD, "", "", "Forward a week\tMove the view date for your capital forward a week",
       icons.forwardWeek.get(), u"onFForwardViewDate", forward(WEEK), isMoved},
      {Window::ID_BACK, "", "", "Back a day\tMove the view date for your capital back a day",
       icons.backDay.get(), u"onBackViewDate", back(1), isLoaded},
      {Window::ID_BBACK, "", "", "Back a week\tMove the view date for your capital back a week",
       icons.backWeek.get(), u"onBBackViewDate", back(WEEK), isLoaded},
  };
}

void ViewDateController::buildRow(FXComposite* parent, const CommandTable& commands) {
  m_row = new ViewDateRow(parent, m_window, *this, commands);
}

// The updater takes "today" from the view date, so it must not run from before the date is set until it is
// gone.
void ViewDateController::set(const Date& date) {
  m_window.loadedTree();
  finishEdits(*m_window.tabBook()); // what is typed belongs to the day that it was typed on
  TallymoorInternet::Instance().pauseUpdates();
  Date::setFixedDate(date);
  show();
}

void ViewDateController::reset() {
  m_window.loadedTree();
  finishEdits(*m_window.tabBook());
  Date::clearFixedDate();
  show();
  TallymoorInternet::Instance().resumeUpdates();
}

void ViewDateController::show() {
  if (isMoved())
    m_row->showPast();
  else
    m_row->showToday();
  MainWindow::setNormalStatusText(restingStatusText());
  const WaitCursor wait;
  m_window.refreshViews(true);
}

void ViewDateController::move(int days) {
  const Date moved = Date().plusDays(days);
  if (moved >= Date::realToday())
    reset();
  else
    set(moved);
}

} // namespace Tallymoor
