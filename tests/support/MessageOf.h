#pragma once
#include "foundation/Exception.h"

namespace Tallymoor {

/// The message of the Exception that the work throws; "(nothing thrown)" when it throws none.
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
