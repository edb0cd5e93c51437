#pragma once
#include <csignal>

namespace Tallymoor {

/// Blocks the signals that end the program for a scope. A thread that is made in it is born so and never
/// takes one: they are left to the main thread, where the toolkit waits for them. Taken by another thread,
/// one would lie there until the next event.
class EndingSignalsBlocked {
public:
  EndingSignalsBlocked();
  ~EndingSignalsBlocked();
  EndingSignalsBlocked(const EndingSignalsBlocked&) = delete;
  EndingSignalsBlocked& operator=(const EndingSignalsBlocked&) = delete;

private:
  sigset_t m_before;
};

} // namespace Tallymoor
