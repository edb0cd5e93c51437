#include "foundation/UserInteraction.h"
#include "foundation/RunTimeSettings.h"
#include <atomic>

namespace Tallymoor {

namespace {

std::atomic<UserInteraction*> current = nullptr;

} // namespace

UserInteraction::~UserInteraction() = default;

bool UserInteraction::isStopWanted() {
  return false;
}

UserInteraction& UserInteraction::Instance() {
  UserInteraction* interaction = current.load();
  if (!interaction)
    throw Exception(u"MainWindow::Instance - no MainWindow yet!");
  return *interaction;
}

bool UserInteraction::exists() {
  return current.load() != nullptr;
}

void UserInteraction::setInstance(UserInteraction* interaction) {
  current.store(interaction);
}

WaitCursor::WaitCursor(bool wanted) : m_shown(wanted && !inBackgroundPass && UserInteraction::exists()) {
  if (m_shown)
    UserInteraction::Instance().beginWait();
}

WaitCursor::~WaitCursor() {
  end();
}

void WaitCursor::end() {
  if (!m_shown)
    return;
  m_shown = false;
  if (UserInteraction* interaction = current.load())
    interaction->endWait();
}

} // namespace Tallymoor
