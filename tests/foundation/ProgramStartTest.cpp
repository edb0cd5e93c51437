#include "foundation/ProgramStart.h"
#include "foundation/EndingSignals.h"
#include "support/TestProfile.h"
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace Tallymoor {
namespace {

class ProgramStartTest : public testing::Test {
protected:
  /// A script that writes its arguments to a pipe. The test reads the pipe to its end, so it needs no waiting
  /// time.
  std::string script(const std::string& body) {
    const String path = profile.path("bin/program");
    TestProfile::writeFile(path, "#!/bin/sh\n" + body);
    ::chmod(path.toUTF8().c_str(), 0755);
    ::chmod(profile.path("bin").toUTF8().c_str(), 0755);
    return path.toUTF8();
  }
  std::string pipePath() {
    const std::string path = profile.folder() + "/pipe";
    EXPECT_EQ(::mkfifo(path.c_str(), 0600), 0);
    return path;
  }
  static std::string readToEnd(const std::string& path) {
    const int file = ::open(path.c_str(), O_RDONLY);
    std::string text;
    char c = 0;
    while (::read(file, &c, 1) == 1)
      text.push_back(c);
    ::close(file);
    return text;
  }

  TestProfile profile;
};

TEST_F(ProgramStartTest, ArgumentsReachTheProgramWithoutAShell) {
  const std::string pipe = pipePath();
  ASSERT_TRUE(startProgram(script("printf '%s|' \"$@\" > " + pipe + "\n"), {"a b", "$(id)", ";x"}));
  EXPECT_EQ(readToEnd(pipe), "a b|$(id)|;x|");
}

/// Bit mask of the signals that a thread of this process blocks. Empty if the thread has ended.
std::optional<std::uint64_t> blockedSignals(const std::filesystem::path& task) {
  std::ifstream status(task / "status");
  for (std::string line; std::getline(status, line);)
    if (line.starts_with("SigBlk:"))
      return std::stoull(line.substr(7), nullptr, 16);
  return std::nullopt;
}

TEST_F(ProgramStartTest, TheWaitingThreadBlocksTerminationSignals) {
  const std::string pipe = pipePath();
  ASSERT_TRUE(startProgram(script("printf x > " + pipe + "\n"), {})); // Runs until the pipe is read.
  int waiting = 0;
  for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
    const auto blocked = blockedSignals(task.path());
    if (!blocked || task.path().filename() == std::to_string(::getpid()))
      continue;
    ++waiting;
    for (const int number : {SIGTERM, SIGINT, SIGHUP})
      EXPECT_TRUE(*blocked >> (number - 1) & 1) << number;
  }
  EXPECT_GE(waiting, 1);
  EXPECT_EQ(readToEnd(pipe), "x");
}

TEST_F(ProgramStartTest, AProgramGetsANewSessionAndNoOpenFiles) {
  const std::string pipe = pipePath();
  constexpr int INHERITABLE = 50;
  ASSERT_EQ(::dup2(STDOUT_FILENO, INHERITABLE), INHERITABLE);
  const auto before = std::signal(SIGPIPE, SIG_IGN);
  const EndingSignalsBlocked blocked;
  ASSERT_TRUE(startProgram(
      script("exec > " + pipe +
             "\nset -- $(cat /proc/$$/stat)\n"
             "[ $1 = $6 ] && printf 'own session, '\n"
             "[ -e /proc/$$/fd/50 ] || printf 'own files, '\n"
             "grep -q '^SigBlk:.0*$' /proc/self/status && printf 'nothing blocked, '\n"
             "grep -q '^SigIgn:.*[02468ace]...$' /proc/self/status && printf 'no broken pipe ignored'\n"),
      {}));
  EXPECT_EQ(readToEnd(pipe), "own session, own files, nothing blocked, no broken pipe ignored");
  std::signal(SIGPIPE, before);
  ::close(INHERITABLE);
}

TEST_F(ProgramStartTest, ReportsAFailedStart) {
  EXPECT_FALSE(startProgram(profile.folder() + "/none", {}));
  EXPECT_FALSE(startProgram("no-such-program-anywhere", {}));
  TestProfile::writeFile(profile.path("plain"), "text");
  EXPECT_FALSE(startProgram(profile.folder() + "/plain", {}));
}

TEST_F(ProgramStartTest, TrustsOnlyProgramsThatOthersCannotWriteTo) {
  const std::string program = script("exit 0\n");
  EXPECT_TRUE(isTrustedProgram(program));
  ASSERT_EQ(::chmod(program.c_str(), 0775), 0);
  EXPECT_FALSE(isTrustedProgram(program));
  ASSERT_EQ(::chmod(program.c_str(), 0755), 0);
  ASSERT_EQ(::chmod((profile.folder() + "/bin").c_str(), 0777), 0);
  EXPECT_FALSE(isTrustedProgram(program));
  EXPECT_FALSE(isTrustedProgram(profile.folder() + "/bin"));
  EXPECT_FALSE(isTrustedProgram(profile.folder() + "/none"));
}

} // namespace
} // namespace Tallymoor
