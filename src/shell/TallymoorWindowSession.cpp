// The window's side of the desktop's session: what is saved when the user logs out.
#include "desktop/SessionClient.h"
#include "foundation/RunTimeSettings.h"
#include "shell/TallymoorWindow.h"

namespace Tallymoor {

void TallymoorWindow::buildSessionClient() {
  m_sessionClient = std::make_unique<SessionClient>(
      getApp(),
      SessionClient::Hooks{[this] { return saveForSession(); }, [this] { store().keepBackup(false); },
                           [this] { handle(this, FXSEL(SEL_COMMAND, ID_SHUTDOWN), nullptr); }});
}

// The desktop waits for the answer, and may take the display away right after it: so nothing is asked here,
// no dialog is cancelled for a log-out that may yet be called off, and no half-read or emptied records are
// written.
std::optional<bool> TallymoorWindow::saveForSession() {
  if (isShuttingDown())
    return std::nullopt; // the records are saved on the way out
  if (!m_loadEnded)
    return true; // nothing was entered yet
  const bool busy = bigMutex().heldByThisThread() || getApp()->getModality() != MODAL_FOR_NONE;
  BigMutexLock lock;
  if (store().loadFailed())
    return nothingToLose();
  const bool saved = saveUnasked(busy);
  store().keepBackup(saved);
  return saved;
}

/// After a failed load the records on disk are overwritten only when the user says so.
bool TallymoorWindow::nothingToLose() {
  if (store().portfolios().empty())
    return true;
  warn(u"Your portfolios were not saved, since the ones on disk could not be loaded and are not "
       u"overwritten unasked. Use File, Save.",
       u"End of the Session", PortfolioSession::UNSAVED_RECORDS, 2);
  return false;
}

/// Under a handler or a dialog, which may be in the middle of a capital record's day, the records alone.
bool TallymoorWindow::saveUnasked(bool recordsOnly) {
  {
    const BackgroundPassScope noBoxes;
    if (recordsOnly)
      store().saveRecords();
    else
      saveAll();
  }
  if (store().lastSaveSucceeded())
    warningOver(PortfolioSession::UNSAVED_RECORDS);
  else
    warn(u"Your records could not be saved.", u"End of the Session", PortfolioSession::UNSAVED_RECORDS, 2);
  return store().lastSaveSucceeded();
}

} // namespace Tallymoor
