#include "foundation/BackgroundWriting.h"
#include "foundation/EndingSignals.h"
#include <future>
#include <utility>

namespace Tallymoor {

namespace {

/// Waits in its destructor, too: the program never ends within a save.
std::future<void>& running() {
  static std::future<void> work;
  return work;
}

} // namespace

void BackgroundWriting::begin(std::function<void()> work) {
  finish();
  const EndingSignalsBlocked blocked;
  running() = std::async(std::launch::async, std::move(work));
}

void BackgroundWriting::finish() {
  if (running().valid())
    running().get();
}

} // namespace Tallymoor
