#pragma once
#include <array>
#include <csignal>
#include <cstddef>

namespace Tallymoor {

/// Blocks the termination signals for a scope. A thread started in this scope inherits the mask, so that only
/// the main thread, where the toolkit waits for these signals, receives them. On another thread a signal
/// would be handled only at the next event.
class EndingSignalsBlocked {
public:
  EndingSignalsBlocked();
  ~EndingSignalsBlocked();
  EndingSignalsBlocked(const EndingSignalsBlocked&) = delete;
  EndingSignalsBlocked& operator=(const EndingSignalsBlocked&) = delete;

private:
  sigset_t m_before;
};

/// Records for its lifetime that a termination signal has arrived, then calls the previous handler. The
/// toolkit reports a signal only from its event loop; this class serves work that blocks the loop. Only one
/// object may exist at a time.
class EndingSignalsNoted {
public:
  EndingSignalsNoted();
  ~EndingSignalsNoted();
  EndingSignalsNoted(const EndingSignalsNoted&) = delete;
  EndingSignalsNoted& operator=(const EndingSignalsNoted&) = delete;

  /// True from the arrival of a signal until forget() is called.
  static bool hasCome();
  static void forget();

private:
  static constexpr std::size_t COUNT = 3;
  std::array<struct sigaction, COUNT> m_before{};
};

} // namespace Tallymoor
