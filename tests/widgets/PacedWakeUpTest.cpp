#include "widgets/PacedWakeUp.h"
#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <thread>

namespace Tallymoor {
namespace {

constexpr FXuint AN_HOUR = 3600 * 1000;

/// Needs no display: signals and timers are served by the application's loop alone. No rest ends by itself.
class PacedWakeUpTest : public ::testing::Test {
protected:
  PacedWakeUpTest() {
    static char name[] = "wake";
    char* arguments[] = {name, nullptr};
    int count = 1;
    m_app.init(count, arguments, FALSE);
    PacedWakeUp::setRest(AN_HOUR);
  }

  /// The loop serves one input a turn.
  void serve() {
    for (int turn = 0; turn < 10; ++turn)
      m_app.runOneEvent(FALSE);
  }
  void wakeOften(PacedWakeUp& wakeUp) {
    for (int price = 0; price < 300; ++price) {
      wakeUp.wake();
      serve();
    }
  }

  FXApp m_app{"Tallymoor", "Brindlecove"};
};

TEST_F(PacedWakeUpTest, HundredsOfCallsRunTheHandlerOnceAndOnceMoreAfterTheRest) {
  int calls = 0;
  PacedWakeUp wakeUp(&m_app, [&] { ++calls; });
  wakeOften(wakeUp);
  EXPECT_EQ(1, calls);
  wakeUp.onRested(nullptr, 0, nullptr);
  EXPECT_EQ(2, calls) << "the last call is followed by a run";
  wakeOften(wakeUp);
  EXPECT_EQ(2, calls) << "that run has its rest, too";
}

TEST_F(PacedWakeUpTest, ARestInWhichNobodyCalledRunsNothing) {
  int calls = 0;
  PacedWakeUp wakeUp(&m_app, [&] { ++calls; });
  wakeUp.wake();
  serve();
  wakeUp.onRested(nullptr, 0, nullptr);
  EXPECT_EQ(1, calls);
  wakeUp.wake();
  serve();
  EXPECT_EQ(2, calls) << "it is over";
}

TEST_F(PacedWakeUpTest, TheRestEndsByItself) {
  PacedWakeUp::setRest(1);
  int calls = 0;
  PacedWakeUp wakeUp(&m_app, [&] { ++calls; });
  while (calls < 3) {
    wakeUp.wake();
    m_app.runOneEvent(FALSE);
  }
  EXPECT_EQ(3, calls);
}

TEST_F(PacedWakeUpTest, WithoutARestEachCallIsServed) {
  PacedWakeUp::setRest(0);
  int calls = 0;
  PacedWakeUp wakeUp(&m_app, [&] { ++calls; });
  wakeOften(wakeUp);
  EXPECT_EQ(300, calls);
}

TEST_F(PacedWakeUpTest, CallsFromOtherThreadsAreServedHere) {
  std::thread::id handler;
  PacedWakeUp wakeUp(&m_app, [&] { handler = std::this_thread::get_id(); });
  std::thread([&] { wakeUp.wake(); }).join();
  serve();
  EXPECT_EQ(std::this_thread::get_id(), handler);
}

TEST_F(PacedWakeUpTest, TheHandlerMayEndIt) {
  int calls = 0;
  std::unique_ptr<PacedWakeUp> wakeUp;
  wakeUp = std::make_unique<PacedWakeUp>(&m_app, [&] {
    ++calls;
    wakeUp.reset();
  });
  wakeUp->wake();
  serve();
  EXPECT_EQ(1, calls);
  EXPECT_EQ(nullptr, wakeUp);
}

TEST_F(PacedWakeUpTest, AHandlerThatThrewIsNotResting) {
  int calls = 0;
  PacedWakeUp wakeUp(&m_app, [&] {
    if (++calls == 1)
      throw std::runtime_error("first");
  });
  wakeUp.wake();
  EXPECT_THROW(serve(), std::runtime_error);
  wakeUp.wake();
  serve();
  EXPECT_EQ(2, calls);
}

} // namespace
} // namespace Tallymoor
