#include "foundation/FaultReport.h"
#include "support/StringPrinting.h"
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Tallymoor {
namespace {

constexpr std::size_t PAGE = 4096;

/// Exit status and standard error of a child process.
struct Ending {
  int status = 0;
  std::string told;
};

template <class Work>
Ending endingOf(const Work& work) {
  int pipe[2];
  EXPECT_EQ(::pipe2(pipe, O_CLOEXEC), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    const rlimit noCore{};
    ::setrlimit(RLIMIT_CORE, &noCore);
    ::dup2(pipe[1], STDERR_FILENO);
    std::signal(SIGSEGV, SIG_DFL); // Removes a sanitizer's handler.
    std::signal(SIGFPE, SIG_DFL);
    work();
    ::_exit(0);
  }
  ::close(pipe[1]);
  Ending ending;
  char byte = 0;
  while (::read(pipe[0], &byte, 1) == 1)
    ending.told.push_back(byte);
  ::close(pipe[0]);
  EXPECT_EQ(::waitpid(child, &ending.status, 0), child);
  return ending;
}

TEST(FaultReportTest, CodeAndAddressHaveEightCapitalDigits) {
  EXPECT_EQ(faultText(0xC0000005u, 0x401abc), u"C Exception number 0xC0000005 was thrown from 0x00401ABC");
  EXPECT_EQ(faultText(0, 0), u"C Exception number 0x00000000 was thrown from 0x00000000");
  EXPECT_EQ(faultText(11, 0xFFFFFFFFu), u"C Exception number 0x0000000B was thrown from 0xFFFFFFFF");
}

TEST(FaultReportTest, ALongAddressShowsItsLowerDigits) {
  EXPECT_EQ(faultText(11, static_cast<std::uintptr_t>(0x7f0012345678u)),
            u"C Exception number 0x0000000B was thrown from 0x12345678");
}

TEST(FaultReportTest, AFaultIsPrintedAndEndsTheProcess) {
  void* page = ::mmap(nullptr, PAGE, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  ASSERT_NE(page, MAP_FAILED);
  const Ending ending = endingOf([page] {
    reportFaults();
    *static_cast<volatile char*>(page) = 1;
  });
  EXPECT_EQ(ending.told, faultText(SIGSEGV, reinterpret_cast<std::uintptr_t>(page)).toUTF8() + "\n");
  ASSERT_TRUE(WIFSIGNALED(ending.status));
  EXPECT_EQ(WTERMSIG(ending.status), SIGSEGV);
  ::munmap(page, PAGE);
}

TEST(FaultReportTest, AFaultSignalThatWasSentHasNoAddress) {
  const Ending ending = endingOf([] {
    reportFaults();
    ::raise(SIGFPE);
  });
  EXPECT_EQ(ending.told, "C Exception number 0x00000008 was thrown from 0x00000000\n");
  ASSERT_TRUE(WIFSIGNALED(ending.status));
  EXPECT_EQ(WTERMSIG(ending.status), SIGFPE);
}

TEST(FaultReportTest, AForeignHandlerIsKept) {
  const Ending ending = endingOf([] {
    std::signal(SIGSEGV, [](int) { ::_exit(5); });
    reportFaults();
    ::raise(SIGSEGV);
  });
  EXPECT_EQ(ending.told, "");
  ASSERT_TRUE(WIFEXITED(ending.status));
  EXPECT_EQ(WEXITSTATUS(ending.status), 5);
}

} // namespace
} // namespace Tallymoor
