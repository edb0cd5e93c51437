#include "widgets/GuiWakeUp.h"
#include <atomic>
#include <fx.h>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace Tallymoor {
namespace {

/// Needs no display: the application's loop alone handles signals.
class GuiWakeUpTest : public ::testing::Test {
protected:
  GuiWakeUpTest() {
    static char name[] = "wake";
    char* arguments[] = {name, nullptr};
    int count = 1;
    m_app.init(count, arguments, FALSE);
  }

  /// The loop handles one input per turn.
  void serve() {
    for (int turn = 0; turn < 10; ++turn)
      m_app.runOneEvent(FALSE);
  }

  FXApp m_app{"Tallymoor", "Brindlecove"};
};

TEST_F(GuiWakeUpTest, HandlerRunsOnTheGuiThread) {
  std::thread::id handler;
  GuiWakeUp wakeUp(&m_app, [&] { handler = std::this_thread::get_id(); });
  std::thread([&] { wakeUp.wake(); }).join();
  EXPECT_EQ(std::thread::id(), handler);
  serve();
  EXPECT_EQ(std::this_thread::get_id(), handler);
}

TEST_F(GuiWakeUpTest, CallsCoalesce) {
  int calls = 0;
  GuiWakeUp wakeUp(&m_app, [&] { ++calls; });
  std::thread([&] {
    for (int call = 0; call < 100000; ++call)
      wakeUp.wake();
  }).join();
  serve();
  EXPECT_EQ(1, calls);
  wakeUp.wake();
  serve();
  EXPECT_EQ(2, calls);
}

TEST_F(GuiWakeUpTest, EachReceiverGetsOnlyItsOwnCalls) {
  int first = 0, second = 0;
  GuiWakeUp one(&m_app, [&] { ++first; });
  GuiWakeUp two(&m_app, [&] { ++second; });
  two.wake();
  serve();
  EXPECT_EQ(0, first);
  EXPECT_EQ(1, second);
}

TEST_F(GuiWakeUpTest, APendingWakeUpOfADestroyedReceiverIsDropped) {
  int calls = 0;
  auto dead = std::make_unique<GuiWakeUp>(&m_app, [&] { ++calls; });
  GuiWakeUp other(&m_app, [&] { ++calls; });
  dead->wake();
  dead.reset();
  serve();
  EXPECT_EQ(0, calls);
}

TEST_F(GuiWakeUpTest, HandlerMayDeleteItselfAndOthers) {
  int calls = 0;
  std::unique_ptr<GuiWakeUp> one, two;
  one = std::make_unique<GuiWakeUp>(&m_app, [&] {
    ++calls;
    two.reset();
    one.reset();
  });
  two = std::make_unique<GuiWakeUp>(&m_app, [&] { ++calls; });
  one->wake();
  two->wake();
  serve();
  EXPECT_EQ(1, calls);
  EXPECT_FALSE(one);
}

TEST_F(GuiWakeUpTest, HandlerThatWakesItselfIsServedAgainLater) {
  int calls = 0;
  std::unique_ptr<GuiWakeUp> wakeUp;
  wakeUp = std::make_unique<GuiWakeUp>(&m_app, [&] {
    if (++calls < 3)
      wakeUp->wake();
  });
  wakeUp->wake();
  serve();
  EXPECT_EQ(3, calls);
}

TEST_F(GuiWakeUpTest, ThousandsOfReceiversShareOneSignal) {
  int calls = 0;
  std::vector<std::unique_ptr<GuiWakeUp>> many;
  for (int number = 0; number < 3000; ++number)
    many.push_back(std::make_unique<GuiWakeUp>(&m_app, [&] { ++calls; }));
  many.back()->wake();
  many.front()->wake();
  serve();
  EXPECT_EQ(2, calls);
}

} // namespace
} // namespace Tallymoor
