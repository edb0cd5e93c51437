#pragma once
#include "foundation/Exception.h"

namespace Tallymoor {

/// Wraps an exception of the standard library or another library that was not expected.
class UnforeseenFailure : public Exception {
public:
  using Exception::Exception;
  void typeName(String& text) const override;
};

/// For a catch-all clause: describes the current exception for the user. Not for an Exception.
UnforeseenFailure unforeseenFailure();

/// Runs the work. Passes an Exception on and converts any other exception to UnforeseenFailure, so that
/// callers need only one catch clause.
template <class Work>
void withUnforeseenFailures(Work&& work) {
  try {
    work();
  } catch (const Exception&) {
    throw;
  } catch (...) {
    throw unforeseenFailure();
  }
}

} // namespace Tallymoor
