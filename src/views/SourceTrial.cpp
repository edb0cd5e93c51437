#include "views/SourceTrial.h"
#include "foundation/EndingSignals.h"
#include "widgets/HandlerScope.h"

namespace Tallymoor {

SourceTrial::SourceTrial(FX::FXApp* app, Done done)
    : m_done(std::move(done)), m_wakeUp(app, [this] { tell(); }) {}

void SourceTrial::start(const PriceStatus::TrialFetch& fetch) {
  if (m_isUnderWay)
    return;
  m_isUnderWay = true;
  const EndingSignalsBlocked blocked;
  m_thread = std::jthread([this, fetch](const std::stop_token& stop) {
    PriceStatus::Trial trial = fetch(stop);
    const std::lock_guard lock(m_mutex);
    m_result = std::move(trial);
    m_wakeUp.wake();
  });
}

void SourceTrial::tell() {
  guardedHandler(u"SourceTrial::tell failed.", [this] {
    std::optional<PriceStatus::Trial> result;
    {
      const std::lock_guard lock(m_mutex);
      result.swap(m_result);
    }
    if (!result)
      return;
    m_isUnderWay = false;
    m_done(*result);
  });
}

} // namespace Tallymoor
