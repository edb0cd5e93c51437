#pragma once
#include "foundation/Exception.h"

namespace Tallymoor {

/// What the standard library or another library threw where nobody had foreseen it.
class UnforeseenFailure : public Exception {
public:
  using Exception::Exception;
  void typeName(String& text) const override;
};

/// For a catch clause of everything: the exception under way, in words for the user. Not for one that is an
/// Exception already.
UnforeseenFailure unforeseenFailure();

/// Runs the work. Whatever it throws comes out as an Exception, one from outside that family as
/// UnforeseenFailure, so that one catch clause serves both.
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
