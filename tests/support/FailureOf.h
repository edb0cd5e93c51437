#pragma once
#include "foundation/String.h"
#include <gtest/gtest.h>
#include <typeinfo>

namespace Tallymoor {

/// Returns the message of the exception thrown by the work, which must be of exactly this class. Returns "no
/// failure" if nothing is thrown.
template <class Failure, class Work>
String failureOf(const Work& work) {
  try {
    work();
  } catch (const Failure& failure) {
    EXPECT_EQ(typeid(failure), typeid(Failure));
    return failure.message();
  }
  return u"no failure";
}

} // namespace Tallymoor
