#include "widgets/StaleMarks.h"
#include "support/StringPrinting.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <thread>

namespace Tallymoor {
namespace {

TEST(StaleMarksTest, TakingReturnsAndClearsTheMarks) {
  StaleMarks marks;
  EXPECT_TRUE(marks.empty());
  marks.markKey(u"B");
  marks.markKey(u"A");
  marks.markKey(u"B");
  EXPECT_FALSE(marks.empty());
  const StaleMarks::Taken taken = marks.take();
  EXPECT_THAT(taken.keys, testing::ElementsAre(String(u"A"), String(u"B")));
  EXPECT_FALSE(taken.all);
  EXPECT_FALSE(taken.roundFinished);
  EXPECT_TRUE(marks.empty());
  EXPECT_TRUE(marks.take().empty());
}

TEST(StaleMarksTest, AllRowsAndTheEndOfARoundAreMarksOfTheirOwn) {
  StaleMarks marks;
  marks.markAll();
  EXPECT_TRUE(marks.take().all);
  marks.markRoundFinished();
  const StaleMarks::Taken taken = marks.take();
  EXPECT_TRUE(taken.roundFinished);
  EXPECT_FALSE(taken.all);
}

TEST(StaleMarksTest, NoMarkOfAnotherThreadIsLost) {
  StaleMarks marks;
  std::thread other([&] {
    for (int number = 0; number < 1000; ++number)
      marks.markKey(String::fromLong(number));
  });
  std::set<String> seen;
  while (seen.size() < 1000) {
    const StaleMarks::Taken taken = marks.take();
    seen.insert(taken.keys.begin(), taken.keys.end());
  }
  other.join();
  EXPECT_TRUE(marks.empty());
}

} // namespace
} // namespace Tallymoor
