#pragma once
#include <chrono>
#include <cstddef>
#include <stop_token>
#include <string>
#include <vector>

namespace Tallymoor {

/// What a command wrote and how it ended.
struct CommandOutput {
  enum class End { Ended, NotStarted, OutOfTime, TooMuch, Stopped };
  End end = End::NotStarted;
  int status = 0;     ///< of a command that ended: its exit status, or 128 and the number of the signal
  std::string text;   ///< from its standard output
  std::string errors; ///< the start of its standard error; of a command that was not started, the reason
};

/// Runs a command without a shell, in a session of its own, with no input and none of our open files, and
/// waits for it. When its time is over, it writes more than the limit, or a stop is requested, it is killed
/// with all processes of its session's group. Any thread.
CommandOutput outputOfCommand(const std::vector<std::string>& words, std::chrono::milliseconds time,
                              std::size_t mostBytes, const std::stop_token& stop);

} // namespace Tallymoor
