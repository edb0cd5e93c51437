#include "shell/IdleLoading.h"
#include "shell/TallymoorWindow.h"
#include "views/TotalCapTreeItem.h"
#include "views/WatchlistRootTreeItem.h"
#include "widgets/HandlerScope.h"
#include <chrono>

namespace Tallymoor {

FXDEFMAP(IdleLoading)
idleLoadingMap[] = {
    FXMAPFUNC(SEL_CHORE, IdleLoading::ID_IDLE, IdleLoading::onIdle),
    FXMAPFUNC(SEL_TIMEOUT, IdleLoading::ID_LATER, IdleLoading::onIdle),
};

FXIMPLEMENT_ABSTRACT(IdleLoading, FXObject, idleLoadingMap, ARRAYNUMBER(idleLoadingMap))

namespace {

/// After so long no other piece is begun before the waiting events have been handled.
constexpr std::chrono::milliseconds SHORT_WHILE(20);
constexpr FXuint RETRY = 100; ///< milliseconds between looks at whether the user is done

} // namespace

IdleLoading::IdleLoading(TallymoorWindow& window) : m_window(window), m_app(window.getApp()) {}

IdleLoading::~IdleLoading() {
  stop();
}

void IdleLoading::begin() {
  m_underWay = true;
  m_app->addChore(this, ID_IDLE);
}

void IdleLoading::stop() {
  m_underWay = false;
  m_app->removeChore(this, ID_IDLE);
  m_app->removeTimeout(this, ID_LATER);
}

long IdleLoading::onIdle(FXObject*, FXSelector, void*) {
  if (!m_window.isIdle()) {
    m_app->addTimeout(this, ID_LATER, RETRY);
    return 1;
  }
  guardedHandler(u"Failure while your portfolios are loaded.", [this] { work(); });
  if (m_underWay)
    m_app->addChore(this, ID_IDLE);
  return 1;
}

void IdleLoading::work() {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point begun = Clock::now();
  while (doNextPiece())
    if (Clock::now() - begun >= SHORT_WHILE)
      return;
  m_underWay = false;
  m_window.portfoliosLoaded();
}

bool IdleLoading::doNextPiece() {
  return m_window.loadedTree().bringNextUpToDate() || m_window.loadedWatchlists().checkNextLimit();
}

} // namespace Tallymoor
