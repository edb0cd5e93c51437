#pragma once
#include "foundation/BigMutex.h"
#include "foundation/EndingSignals.h"
#include "foundation/UserInteraction.h"
#include <chrono>
#include <future>
#include <stop_token>

namespace Tallymoor {

/// True once the user, or the system, wants what the GUI thread is doing to end.
inline bool isStopWanted() {
  return UserInteraction::exists() && UserInteraction::Instance().isStopWanted();
}

/// The result of a fetch for which the GUI thread waits: it is made on a thread of its own, and ends with a
/// failure when the user or the system wants that. The fetch takes a stop token and uses copies alone.
template <class Fetch>
auto watchedFetch(const Fetch& fetch) {
  constexpr std::chrono::milliseconds BETWEEN_LOOKS{50};
  std::stop_source stop;
  auto result = [&] {
    const EndingSignalsBlocked blocked;
    return std::async(std::launch::async, fetch, stop.get_token());
  }();
  do {
    if (isStopWanted())
      stop.request_stop();
  } while (result.wait_for(BETWEEN_LOOKS) != std::future_status::ready);
  return result.get();
}

} // namespace Tallymoor
