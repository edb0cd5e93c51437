#pragma once
#include "foundation/RunTimeSettings.h"
#include <stop_token>

namespace Tallymoor {

/// Does a step of a background pass under the big mutex with inBackgroundPass set, unless the pass has been
/// told to stop. This is checked again under the mutex, which the GUI thread may have held for a while.
template <class Work>
void inBackgroundStretch(const std::stop_token& stop, Work work) {
  if (stop.stop_requested())
    return;
  const BackgroundPassScope scope;
  if (!stop.stop_requested())
    work();
}

} // namespace Tallymoor
