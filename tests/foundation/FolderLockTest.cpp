#include "foundation/FolderLock.h"
#include "support/FileMode.h"
#include "support/TestProfile.h"
#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <optional>
#include <sys/wait.h>
#include <unistd.h>

namespace Tallymoor {
namespace {

class FolderLockTest : public testing::Test {
protected:
  FolderLockTest() {
    std::filesystem::create_directories(folder.toUTF8());
    std::filesystem::create_directories(other.toUTF8());
  }

  TestProfile profile;
  const String folder = profile.path("folder");
  const String other = profile.path("other");
};

TEST_F(FolderLockTest, ASecondProgramIsRefusedAndAnotherFolderIsFree) {
  std::optional<FolderLock> first(FolderLock::onFileIn(folder));
  EXPECT_FALSE(first->isHeldByAnother());
  EXPECT_TRUE(FolderLock::onFileIn(folder).isHeldByAnother());
  EXPECT_TRUE(FolderLock::onFileIn(folder).isHeldByAnother()) << "asking takes nothing away";
  EXPECT_FALSE(FolderLock::onFileIn(other).isHeldByAnother());
  first.reset();
  EXPECT_FALSE(FolderLock::onFileIn(folder).isHeldByAnother());
}

TEST_F(FolderLockTest, LockingTheFolderItselfCreatesNoFile) {
  const FolderLock first = FolderLock::on(folder);
  EXPECT_FALSE(first.isHeldByAnother());
  EXPECT_TRUE(FolderLock::on(folder).isHeldByAnother());
  EXPECT_FALSE(FolderLock::on(other).isHeldByAnother());
  EXPECT_TRUE(std::filesystem::is_empty(folder.toUTF8()));
}

TEST_F(FolderLockTest, ItSaysWhichProcessOfWhichMachineHoldsIt) {
  char host[200] = {};
  ASSERT_EQ(::gethostname(host, sizeof host - 1), 0);
  const std::string expected = "process " + std::to_string(::getpid()) + " on " + host;
  TestProfile::writeFile(folder + u"/running.lock",
                         "process 4711 of a longer name that was there before, on x");
  std::optional<FolderLock> first(FolderLock::onFileIn(folder));
  EXPECT_EQ(expected, TestProfile::readFile(folder + u"/running.lock"));
  EXPECT_EQ(expected, FolderLock::onFileIn(folder).holder().toUTF8());
  for (const char* strange : {"", "\x1b[2J", "something else"}) {
    TestProfile::writeFile(folder + u"/running.lock", strange);
    const FolderLock second = FolderLock::onFileIn(folder);
    EXPECT_TRUE(second.isHeldByAnother());
    EXPECT_TRUE(second.holder().empty()) << strange;
  }
}

TEST_F(FolderLockTest, TheLockFileIsPrivate) {
  const NoUmask umask;
  const FolderLock lock = FolderLock::onFileIn(folder);
  EXPECT_EQ(modeOf(folder + u"/running.lock"), 0600u);
}

TEST_F(FolderLockTest, AKilledProgramReleasesTheLock) {
  int ready[2];
  ASSERT_EQ(::pipe(ready), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    const FolderLock lock = FolderLock::onFileIn(folder);
    if (::write(ready[1], "x", 1) == 1)
      ::pause();
    ::_exit(1);
  }
  char byte = 0;
  ASSERT_EQ(::read(ready[0], &byte, 1), 1);
  EXPECT_TRUE(FolderLock::onFileIn(folder).isHeldByAnother());
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  EXPECT_FALSE(FolderLock::onFileIn(folder).isHeldByAnother());
  ::close(ready[0]);
  ::close(ready[1]);
}

TEST_F(FolderLockTest, AChildProcessDoesNotInheritTheLock) {
  std::optional<FolderLock> lock(FolderLock::onFileIn(folder));
  int hold[2];
  ASSERT_EQ(::pipe(hold), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    ::dup2(hold[0], STDIN_FILENO);
    ::close(hold[1]);
    ::execl("/bin/cat", "cat", static_cast<char*>(nullptr));
    ::_exit(127);
  }
  // The lock ends with its last descriptor. The child's descriptors are closed by exec.
  lock.reset();
  for (int tries = 0; tries < 1000 && FolderLock::onFileIn(folder).isHeldByAnother(); ++tries)
    ::usleep(10000);
  EXPECT_FALSE(FolderLock::onFileIn(folder).isHeldByAnother());
  EXPECT_EQ(::kill(child, 0), 0) << "the program still runs";
  ::close(hold[0]);
  ::close(hold[1]);
  ::waitpid(child, nullptr, 0);
}

TEST_F(FolderLockTest, AFolderThatCannotBeLockedIsFree) {
  EXPECT_FALSE(FolderLock::onFileIn(profile.path("none")).isHeldByAnother());
  EXPECT_FALSE(FolderLock::on(profile.path("none")).isHeldByAnother());
}

} // namespace
} // namespace Tallymoor
