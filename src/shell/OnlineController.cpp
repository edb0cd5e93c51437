#include "shell/OnlineController.h"
#include "foundation/KeptTexts.h"
#include "foundation/Thread.h"
#include "foundation/UserInteraction.h"
#include "market/TallymoorInternet.h"
#include "shell/AdvertThread.h"
#include "shell/TallymoorWindow.h"
#include "updates/ProgramUpdater.h"

namespace Tallymoor {

namespace {

constexpr std::uint32_t FAILURE_SHOWN_FOR = 1000; ///< milliseconds
constexpr FXint ROOM_AROUND_TEXT = 24;

} // namespace

Command OnlineController::command() {
  return {TallymoorWindow::ID_STATUS,
          "",
          "",
          "Online\tPress to go offline",
          m_icons.online.get(),
          u"onChangeStatus",
          [this] { change(); }};
}

void OnlineController::buildButton(FXComposite* parent, const Command& command) {
  auto* bar = new FXToolBar(parent, LAYOUT_RIGHT | FRAME_NONE, 0, 0, 0, 0, 2, 2, 2, 2);
  m_button = new FXButton(bar, FXString("\t") + command.tip, command.icon, &m_window, command.id,
                          BUTTON_TOOLBAR | FRAME_RAISED | ICON_BEFORE_TEXT | LAYOUT_FIX_WIDTH, 0, 0, 0, 0, 4,
                          4, 4, 4);
}

void OnlineController::fitButton() {
  m_button->setWidth(m_window.normalFont()->getTextWidth("offline") + m_icons.online->getWidth() +
                     ROOM_AROUND_TEXT);
}

void OnlineController::change() {
  if (m_changing)
    return; // a second press while the first one lets events pass
  if (TallymoorInternet::Instance().isOnline())
    goOffline();
  else
    reconnect();
}

void OnlineController::goOffline() {
  const WaitCursor wait;
  TallymoorInternet::Instance().goOffline();
  show();
}

void OnlineController::reconnect() {
  m_changing = true;
  struct Done {
    bool& flag;
    ~Done() { flag = false; }
  } done{m_changing};
  const WaitCursor wait;
  MainWindow::setStatusText(u"Reconnecting to internet and testing connection...");
  m_button->setText("trying");
  m_button->setIcon(m_icons.trying.get());
  m_window.getApp()->runWhileEvents();
  if (TallymoorInternet::Instance().reconnect()) {
    m_window.programUpdater().connectionIsBack();
    m_window.refreshViews(false); // what was computed with other prices than those of their days
  } else {
    showFailure();
  }
  m_shown.reset();
  show();
}

void OnlineController::showFailure() {
  m_button->setText("Failed");
  m_button->setTipText(kept::FAILED_TO_CONNECT);
  m_button->setHelpText("Failed to reconnect to the network");
  m_window.getApp()->runWhileEvents();
  Thread::sleep(FAILURE_SHOWN_FOR);
}

void OnlineController::updateButton() {
  if (!m_changing)
    show();
}

void OnlineController::show() {
  const bool online = TallymoorInternet::exists() && TallymoorInternet::Instance().isOnline();
  if (m_shown == online)
    return;
  m_shown = online;
  m_button->setText(online ? "online" : "offline");
  m_button->setTipText(online ? "Online" : "Offline");
  m_button->setHelpText(online ? "Press to disconnect" : "Press to reconnect");
  m_button->setIcon(online ? m_icons.online.get() : m_icons.offline.get());
  if (!online)
    abortBackgroundFetches();
}

/// While the user is offline, no request goes on.
void OnlineController::abortBackgroundFetches() {
  m_window.programUpdater().connectionIsGone();
  if (AdvertThread* thread = m_window.advertThread())
    thread->connectionIsGone();
}

} // namespace Tallymoor
