#include "shell/LogOutController.h"
#include "foundation/RunTimeSettings.h"
#include "shell/TallymoorWindow.h"

namespace Tallymoor {

LogOutController::LogOutController(TallymoorWindow& window)
    : m_window(window),
      m_client(
          window.getApp(),
          {[this] { return save(); }, [this] { m_window.store().keepBackup(false); },
           [this] { m_window.handle(&m_window, FXSEL(SEL_COMMAND, MainWindow::ID_SHUTDOWN), nullptr); }}) {}

// The desktop waits for the answer, and may take the display away right after it: so nothing is asked here,
// no dialog is cancelled for a log-out that may yet be called off, and no half-read or emptied records are
// written.
std::optional<bool> LogOutController::save() {
  if (m_window.isShuttingDown())
    return std::nullopt; // the records are saved on the way out
  if (!m_window.loadEnded())
    return true; // nothing was entered yet
  const bool busy = m_window.isBusy();
  BigMutexLock lock;
  if (m_window.store().loadFailed())
    return nothingToLose();
  if (m_window.store().isChangedOnDisk()) {
    m_window.warn(u"Your records were not saved, since another program has changed those on disk. Use File, "
                  u"Save.",
                  u"End of the Session", PortfolioSession::UNSAVED_RECORDS, 2);
    return false;
  }
  const bool saved = saveUnasked(busy);
  m_window.store().keepBackup(saved);
  return saved;
}

/// After a failed load the records on disk are overwritten only when the user says so.
bool LogOutController::nothingToLose() {
  if (m_window.store().portfolios().empty())
    return true;
  m_window.warn(u"Your portfolios were not saved, since the ones on disk could not be loaded and are not "
                u"overwritten unasked. Use File, Save.",
                u"End of the Session", PortfolioSession::UNSAVED_RECORDS, 2);
  return false;
}

/// Under a handler or a dialog, which may be in the middle of a capital record's day, the records alone.
bool LogOutController::saveUnasked(bool recordsOnly) {
  {
    const BackgroundPassScope noBoxes;
    if (recordsOnly)
      m_window.store().saveRecords();
    else
      m_window.saveAll();
  }
  if (m_window.store().lastSaveSucceeded())
    m_window.warningOver(PortfolioSession::UNSAVED_RECORDS);
  else
    m_window.warn(u"Your records could not be saved.", u"End of the Session",
                  PortfolioSession::UNSAVED_RECORDS, 2);
  return m_window.store().lastSaveSucceeded();
}

} // namespace Tallymoor
