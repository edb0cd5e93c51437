#include "widgets/PacedWakeUp.h"
#include <utility>

namespace Tallymoor {

FXDEFMAP(PacedWakeUp)
pacedWakeUpMap[] = {
    FXMAPFUNC(SEL_TIMEOUT, PacedWakeUp::ID_RESTED, PacedWakeUp::onRested),
};

FXIMPLEMENT_ABSTRACT(PacedWakeUp, FXObject, pacedWakeUpMap, ARRAYNUMBER(pacedWakeUpMap))

namespace {

FXuint restMilliseconds = 300;

} // namespace

PacedWakeUp::PacedWakeUp(FXApp* app, std::function<void()> onWake)
    : m_app(app), m_onWake(std::move(onWake)), m_wakeUp(app, [this] { run(); }) {}

PacedWakeUp::~PacedWakeUp() {
  m_app->removeTimeout(this, ID_RESTED);
}

void PacedWakeUp::setRest(FXuint milliseconds) {
  restMilliseconds = milliseconds;
}

/// The rest begins when the handler has returned: a slow one leaves the window as much time as a quick one.
void PacedWakeUp::run() {
  if (m_resting) {
    m_wokenMeanwhile = true;
    return;
  }
  const std::weak_ptr<bool> alive = m_alive;
  const std::function<void()> onWake = m_onWake;
  onWake();
  if (alive.expired() || restMilliseconds == 0)
    return;
  m_resting = true;
  m_app->addTimeout(this, ID_RESTED, restMilliseconds);
}

long PacedWakeUp::onRested(FXObject*, FXSelector, void*) {
  m_resting = false;
  if (std::exchange(m_wokenMeanwhile, false))
    run();
  return 1;
}

} // namespace Tallymoor
