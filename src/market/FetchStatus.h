#pragma once
#include "foundation/String.h"
#include "foundation/UserInteraction.h"

namespace Tallymoor {

/// Shows in the status line what a background pass does, if there is a window. Any thread.
inline void tellStatus(const String& text) {
  if (UserInteraction::exists())
    UserInteraction::Instance().setStatusText(text);
}

} // namespace Tallymoor
