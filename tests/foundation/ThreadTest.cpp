#include "foundation/Thread.h"
#include "foundation/Exception.h"
#include <chrono>
#include <csignal>
#include <functional>
#include <gtest/gtest.h>
#include <new>

namespace Tallymoor {
namespace {

constexpr std::uint32_t NEVER = 3600u * 1000u;

/// Counts its passes. Tests wait for counts, never for time.
class CountingThread : public Thread {
public:
  explicit CountingThread(std::uint32_t period, std::uint32_t startDelay = 0, bool deleteWhenDone = false)
      : Thread(period, deleteWhenDone, startDelay) {}
  ~CountingThread() override {
    stop();
    join();
    if (onDeath)
      onDeath();
  }

  void waitForPasses(int wanted) {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return m_passes >= wanted; });
  }
  int passes() {
    const std::lock_guard lock(m_mutex);
    return m_passes;
  }
  using Thread::setPeriod;
  using Thread::stopRequested;

  std::function<void(int pass)> work;
  std::function<void()> onDeath;

protected:
  void threadFunction() override {
    int pass = 0;
    {
      const std::lock_guard lock(m_mutex);
      pass = ++m_passes;
      m_changed.notify_all();
    }
    if (work)
      work(pass);
  }

private:
  std::mutex m_mutex;
  std::condition_variable m_changed;
  int m_passes = 0;
};

/// Blocks a pass until the test opens it.
class Gate {
public:
  void open() {
    const std::lock_guard lock(m_mutex);
    m_open = true;
    m_changed.notify_all();
  }
  void wait() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_open; });
  }

private:
  std::mutex m_mutex;
  std::condition_variable m_changed;
  bool m_open = false;
};

/// A thread in its first pass, which lasts until the test ends it.
class ThreadInItsFirstPass : public CountingThread {
public:
  explicit ThreadInItsFirstPass(std::uint32_t period) : CountingThread(period) {
    work = [this](int pass) {
      if (pass == 1)
        m_gate.wait();
    };
    start();
    waitForPasses(1);
  }
  ~ThreadInItsFirstPass() override {
    letGo();
    stop();
    join();
  }
  void letGo() { m_gate.open(); }

private:
  Gate m_gate;
};

TEST(ThreadTest, IsNotRunningBeforeItsStart) {
  CountingThread thread(NEVER);
  EXPECT_FALSE(thread.isRunning());
  thread.stop();
  thread.wakeUp(); // Has no effect before start().
  EXPECT_FALSE(thread.isRunning());
  EXPECT_EQ(thread.passes(), 0);
}

/// The signals blocked by the calling thread.
sigset_t blockedHere() {
  sigset_t blocked;
  pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
  return blocked;
}

TEST(ThreadTest, AnUnforeseenExceptionDoesNotEndTheLoopEither) {
  CountingThread thread(1);
  thread.work = [](int pass) {
    if (pass == 1)
      throw std::bad_alloc();
    throw pass;
  };
  thread.start();
  thread.waitForPasses(3);
  thread.stop();
  thread.join();
}

TEST(ThreadTest, SignalsThatEndTheProgramAreLeftToTheMainThread) {
  CountingThread thread(0);
  sigset_t blocked;
  sigemptyset(&blocked);
  thread.work = [&blocked](int) { blocked = blockedHere(); };
  thread.start();
  thread.join();
  const sigset_t mine = blockedHere();
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
    EXPECT_EQ(1, sigismember(&blocked, number)) << number;
    EXPECT_EQ(0, sigismember(&mine, number)) << number;
  }
}

TEST(ThreadTest, StopBeforeTheFirstPassEndsItWithNone) {
  CountingThread thread(NEVER, NEVER);
  thread.start();
  EXPECT_TRUE(thread.isRunning());
  thread.stop(); // Interrupts the start delay.
  thread.join();
  EXPECT_FALSE(thread.isRunning());
  EXPECT_EQ(thread.passes(), 0);
}

TEST(ThreadTest, AWakeUpEndsTheStartDelay) {
  CountingThread thread(NEVER, NEVER);
  thread.start();
  thread.wakeUp();
  thread.waitForPasses(1);
  thread.stop();
  thread.join();
  EXPECT_EQ(thread.passes(), 1) << "one wake, one pass";
}

TEST(ThreadTest, AStopRightAfterTheStartIsNeverLost) {
  for (int i = 0; i < 200; ++i) {
    CountingThread thread(NEVER, NEVER);
    thread.start();
    thread.stop();
    thread.join();
    EXPECT_EQ(thread.passes(), 0);
  }
}

TEST(ThreadTest, PeriodZeroMakesOnePass) {
  CountingThread thread(0);
  thread.start();
  thread.join();
  EXPECT_EQ(thread.passes(), 1);
  EXPECT_FALSE(thread.isRunning());
}

TEST(ThreadTest, WakeUpRestartsAFinishedThread) {
  CountingThread thread(0);
  thread.start();
  thread.join();
  thread.wakeUp();
  thread.join();
  EXPECT_EQ(thread.passes(), 2);
}

TEST(ThreadTest, WakeUpMakesAPassAtOnce) {
  CountingThread thread(NEVER);
  thread.start();
  for (int pass = 1; pass <= 5; ++pass) {
    thread.waitForPasses(pass);
    thread.wakeUp();
  }
  thread.waitForPasses(6);
}

TEST(ThreadTest, AWakeDuringAPassBringsAnother) {
  ThreadInItsFirstPass thread(NEVER);
  thread.wakeUp();
  thread.wakeUp();
  thread.letGo();
  thread.waitForPasses(2);
}

TEST(ThreadTest, AWakeDuringTheOnlyPassBringsAnother) {
  ThreadInItsFirstPass thread(0);
  thread.wakeUp();
  thread.letGo();
  thread.join();
  EXPECT_EQ(thread.passes(), 2);
}

TEST(ThreadTest, PassesComeWithThePeriod) {
  CountingThread thread(1);
  thread.start();
  thread.waitForPasses(4);
}

TEST(ThreadTest, AnExceptionDoesNotEndTheLoop) {
  CountingThread thread(1);
  thread.work = [](int) { throw HTTPException(u"no network"); };
  thread.start();
  thread.waitForPasses(3);
  EXPECT_TRUE(thread.isRunning());
}

TEST(ThreadTest, StartOnARunningThreadDoesNothing) {
  ThreadInItsFirstPass thread(NEVER);
  thread.start();
  thread.letGo();
  thread.stop();
  thread.join();
  EXPECT_EQ(thread.passes(), 1);
}

TEST(ThreadTest, StartOnAStoppingThreadStartsAgainAfterTheEnd) {
  ThreadInItsFirstPass thread(NEVER);
  thread.stop();
  EXPECT_TRUE(thread.stopRequested());
  thread.start();
  thread.letGo();
  thread.waitForPasses(2);
  EXPECT_TRUE(thread.isRunning());
  EXPECT_FALSE(thread.stopRequested());
}

TEST(ThreadTest, AStopAfterThatStartTakesEffect) {
  ThreadInItsFirstPass thread(NEVER);
  thread.stop();
  thread.start();
  thread.stop();
  thread.letGo();
  thread.join();
  EXPECT_EQ(thread.passes(), 1);
}

TEST(ThreadTest, WakeUpOnAStoppingThreadDoesNothing) {
  ThreadInItsFirstPass thread(NEVER);
  thread.stop();
  thread.wakeUp();
  thread.letGo();
  thread.join();
  EXPECT_EQ(thread.passes(), 1);
}

TEST(ThreadTest, StopIsIdempotentAndTheThreadCanStartAgain) {
  CountingThread thread(NEVER);
  for (int round = 1; round <= 3; ++round) {
    thread.start();
    thread.waitForPasses(round);
    thread.stop();
    thread.stop();
    thread.join();
    thread.stop();
    EXPECT_FALSE(thread.isRunning());
    EXPECT_FALSE(thread.stopRequested());
  }
  EXPECT_EQ(thread.passes(), 3);
}

TEST(ThreadTest, AShorterPeriodAppliesToTheCurrentWait) {
  CountingThread thread(NEVER);
  thread.start();
  thread.waitForPasses(1);
  thread.setPeriod(1);
  thread.waitForPasses(3);
}

TEST(ThreadTest, DeletesItselfWhenAskedTo) {
  Gate dead;
  auto* thread = new CountingThread(0, 0, true);
  thread->onDeath = [&] { dead.open(); };
  thread->start();
  dead.wait();
}

TEST(ThreadTest, CanBeControlledFromManyThreads) {
  CountingThread thread(1);
  const auto drive = [&] {
    for (int i = 0; i < 200; ++i) {
      thread.start();
      thread.wakeUp();
      thread.isRunning();
      thread.stop();
    }
  };
  std::thread a(drive), b(drive);
  a.join();
  b.join();
  thread.stop();
  thread.join();
  EXPECT_FALSE(thread.isRunning());
  thread.start();
  thread.waitForPasses(thread.passes() + 1);
}

TEST(ThreadTest, SleepLastsAtLeastAsLongAsAsked) {
  const auto begin = std::chrono::steady_clock::now();
  Thread::sleep(3);
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(3));
}

} // namespace
} // namespace Tallymoor
