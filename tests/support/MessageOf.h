#pragma once
#include "foundation/Exception.h"

namespace Tallymoor {

/// Returns the message of the Exception thrown by the work, or "(nothing thrown)".
template <typename Work>
String messageOf(const Work& work) {
  try {
    work();
  } catch (const Exception& failure) {
    return failure.message();
  }
  return u"(nothing thrown)";
}

} // namespace Tallymoor
