#pragma once
#include <array>
#include <csignal>
#include <cstddef>

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

/// Notes for its life that an ending signal has come, and passes it on to the handler that was set before.
/// The toolkit only tells of one when its loop has its turn: this is for work that keeps it waiting. One at a
/// time.
class EndingSignalsNoted {
public:
  EndingSignalsNoted();
  ~EndingSignalsNoted();
  EndingSignalsNoted(const EndingSignalsNoted&) = delete;
  EndingSignalsNoted& operator=(const EndingSignalsNoted&) = delete;

  /// True from the signal on until forget is called: when the end has begun.
  static bool hasCome();
  static void forget();

private:
  static constexpr std::size_t COUNT = 3;
  std::array<struct sigaction, COUNT> m_before{};
};

} // namespace Tallymoor
