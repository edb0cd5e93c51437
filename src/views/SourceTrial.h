#pragma once
#include "market/PriceStatus.h"
#include "widgets/GuiWakeUp.h"
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace Tallymoor {

/// Runs the requests of a trial on a thread of its own, so that the window answers meanwhile. GUI thread.
class SourceTrial {
public:
  /// Called on the GUI thread, under the big mutex.
  using Done = std::function<void(const PriceStatus::Trial&)>;

  SourceTrial(FX::FXApp* app, Done done);
  /// Ends a trial that is under way, and waits for that.
  ~SourceTrial() = default;
  SourceTrial(const SourceTrial&) = delete;
  SourceTrial& operator=(const SourceTrial&) = delete;

  /// Only one is under way at a time: does nothing while isUnderWay.
  void start(const PriceStatus::TrialFetch& fetch);
  bool isUnderWay() const { return m_isUnderWay; }

private:
  void tell();

  const Done m_done;
  bool m_isUnderWay = false;
  std::mutex m_mutex; ///< guards the result
  std::optional<PriceStatus::Trial> m_result;
  GuiWakeUp m_wakeUp;
  std::jthread m_thread; ///< last, so that it ends first
};

} // namespace Tallymoor
