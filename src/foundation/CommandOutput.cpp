#include "foundation/CommandOutput.h"
#include "foundation/OpenFile.h"
#include "foundation/SpawnSettings.h"
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Tallymoor {

namespace {

using End = CommandOutput::End;

constexpr std::size_t MOST_ERRORS = 500;
constexpr int BETWEEN_LOOKS = 10; ///< milliseconds

struct Pipe {
  OpenFile read;
  OpenFile write;
};

Pipe openPipe() {
  std::array<int, 2> ends{-1, -1};
  if (::pipe2(ends.data(), O_CLOEXEC) == 0)
    ::fcntl(ends[0], F_SETFL, O_NONBLOCK);
  return {OpenFile(ends[0]), OpenFile(ends[1])};
}

/// Takes what is there now; closes the pipe at its end.
void drain(OpenFile& pipe, std::string& text, std::size_t limit) {
  constexpr std::size_t PIECE = 65536;
  std::array<char, PIECE> buffer{};
  while (pipe.get() >= 0 && text.size() <= limit) {
    const ssize_t got = ::read(pipe.get(), buffer.data(), buffer.size());
    if (got > 0)
      text.append(buffer.data(), static_cast<std::size_t>(got));
    else if (got < 0 && errno == EINTR)
      continue;
    else if (got < 0 && errno == EAGAIN)
      return;
    else
      pipe.close();
  }
}

/// True if the child has ended. It stays to be waited for, so that its number is not used for another.
bool hasEnded(pid_t child) {
  siginfo_t info{};
  return ::waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOHANG | WNOWAIT) != 0 ||
         info.si_pid != 0;
}

/// The exit status of the child, whose group is killed.
int endGroup(pid_t child) {
  constexpr int SIGNALLED = 128;
  ::kill(-child, SIGKILL);
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : SIGNALLED + WTERMSIG(status);
}

} // namespace

CommandOutput outputOfCommand(const std::vector<std::string>& words, std::chrono::milliseconds time,
                              std::size_t mostBytes, const std::stop_token& stop) {
  const auto deadline = std::chrono::steady_clock::now() + time;
  CommandOutput output;
  Pipe text = openPipe();
  Pipe errors = openPipe();
  SpawnSettings settings;
  settings.redirect(text.write.get(), errors.write.get());
  pid_t child = 0;
  if (const int failure = settings.start(child, words); failure != 0) {
    output.errors = std::strerror(failure);
    return output;
  }
  text.write.close();
  errors.write.close();
  for (bool isRunning = true; isRunning;) {
    isRunning = !hasEnded(child);
    std::array<pollfd, 2> waited{pollfd{text.read.get(), POLLIN, 0}, pollfd{errors.read.get(), POLLIN, 0}};
    if (isRunning)
      ::poll(waited.data(), waited.size(), BETWEEN_LOOKS);
    drain(text.read, output.text, mostBytes);
    drain(errors.read, output.errors, MOST_ERRORS);
    output.errors.resize(std::min(output.errors.size(), MOST_ERRORS)); // and the rest is passed over
    output.end = output.text.size() > mostBytes                ? End::TooMuch
                 : stop.stop_requested()                       ? End::Stopped
                 : !isRunning                                  ? End::Ended
                 : std::chrono::steady_clock::now() > deadline ? End::OutOfTime
                                                               : End::NotStarted;
    isRunning = output.end == End::NotStarted;
  }
  output.status = endGroup(child);
  return output;
}

} // namespace Tallymoor
