#pragma once
#include "foundation/String.h"
#include <gtest/gtest.h>
#include <typeinfo>

namespace Tallymoor {

/// The message of the failure that the work throws, which must be of exactly this class: callers tell
/// failures apart by it. "no failure" when the work throws nothing.
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
