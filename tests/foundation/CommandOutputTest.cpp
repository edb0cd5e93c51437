#include "foundation/CommandOutput.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

using End = CommandOutput::End;

constexpr std::chrono::minutes LONG{5};
constexpr std::size_t MUCH = 1000000;

CommandOutput shell(const std::string& script, std::chrono::milliseconds time = LONG,
                    const std::stop_token& stop = {}) {
  return outputOfCommand({"/bin/sh", "-c", script}, time, MUCH, stop);
}

TEST(CommandOutput, GivesOutputErrorsAndStatus) {
  const CommandOutput output = shell("echo out; echo err >&2; exit 7");
  EXPECT_EQ(output.end, End::Ended);
  EXPECT_EQ(output.text, "out\n");
  EXPECT_EQ(output.errors, "err\n");
  EXPECT_EQ(output.status, 7);
  EXPECT_EQ(shell("kill -TERM $$").status, 128 + 15);
}

TEST(CommandOutput, TakesAllOfALongOutputAndPassesOverLongErrors) {
  const CommandOutput output = shell("seq 1 100000; seq 1 100000 >&2");
  EXPECT_EQ(output.end, End::Ended);
  EXPECT_EQ(output.text.size(), 588895u);
  EXPECT_EQ(output.errors.size(), 500u);
}

TEST(CommandOutput, GivesNoInputAndNoneOfOurFiles) {
  EXPECT_EQ(shell("cat; ls /proc/self/fd | wc -l").text, "4\n") << "ls itself opens the folder";
}

TEST(CommandOutput, EndsACommandThatTakesTooLongWritesTooMuchOrIsNotWanted) {
  EXPECT_EQ(shell("sleep 600", std::chrono::milliseconds(50)).end, End::OutOfTime);
  EXPECT_EQ(shell("yes").end, End::TooMuch);
  std::stop_source stop;
  stop.request_stop();
  EXPECT_EQ(shell("sleep 600", LONG, stop.get_token()).end, End::Stopped);
}

TEST(CommandOutput, DoesNotWaitForWhatTheCommandLeavesBehind) {
  const CommandOutput output = shell("sleep 600 & echo done");
  EXPECT_EQ(output.end, End::Ended);
  EXPECT_EQ(output.text, "done\n");
}

TEST(CommandOutput, TellsWhyACommandCouldNotBeStarted) {
  const CommandOutput output = outputOfCommand({"/nowhere/at-all"}, LONG, MUCH, {});
  EXPECT_EQ(output.end, End::NotStarted);
  EXPECT_EQ(output.errors, "No such file or directory");
}

} // namespace
} // namespace Tallymoor
