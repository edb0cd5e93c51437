#include "foundation/BigMutex.h"
#include <gtest/gtest.h>
#include <thread>

namespace Tallymoor {
namespace {

/// Takes and releases the big mutex on another thread. Returns only if no other thread holds it.
void passThroughOnAnotherThread() {
  std::thread([] { const BigMutexLock lock; }).join();
}

TEST(BigMutexTest, IsRecursiveAndKnowsItsHolder) {
  EXPECT_FALSE(bigMutex().heldByThisThread());
  {
    const BigMutexLock outer;
    {
      const BigMutexLock inner;
      EXPECT_TRUE(bigMutex().heldByThisThread());
    }
    EXPECT_TRUE(bigMutex().heldByThisThread());
    bool heldThere = true;
    std::thread([&] { heldThere = bigMutex().heldByThisThread(); }).join();
    EXPECT_FALSE(heldThere);
  }
  EXPECT_FALSE(bigMutex().heldByThisThread());
}

TEST(BigMutexTest, IsReleasedCompletelyAtAnyDepth) {
  const BigMutexLock first;
  const BigMutexLock second;
  const BigMutexLock third;
  {
    const BigMutexRelease release;
    EXPECT_FALSE(bigMutex().heldByThisThread());
    passThroughOnAnotherThread();
  }
  EXPECT_TRUE(bigMutex().heldByThisThread());
}

TEST(BigMutexTest, TheDepthIsRestored) {
  bigMutex().lock();
  bigMutex().lock();
  { const BigMutexRelease release; }
  bigMutex().unlock();
  EXPECT_TRUE(bigMutex().heldByThisThread());
  bigMutex().unlock();
  EXPECT_FALSE(bigMutex().heldByThisThread());
  passThroughOnAnotherThread();
}

TEST(BigMutexTest, ReleasingAFreeMutexDoesNothing) {
  {
    const BigMutexRelease release;
    EXPECT_FALSE(bigMutex().heldByThisThread());
  }
  EXPECT_FALSE(bigMutex().heldByThisThread());
}

TEST(BigMutexTest, ReleasesNest) {
  const BigMutexLock lock;
  {
    const BigMutexRelease outer;
    const BigMutexLock inside;
    const BigMutexRelease inner;
    passThroughOnAnotherThread();
  }
  EXPECT_TRUE(bigMutex().heldByThisThread());
}

TEST(BigMutexTest, ProtectsDataOfSeveralThreads) {
  int counter = 0;
  const auto count = [&] {
    for (int i = 0; i < 2000; ++i) {
      const BigMutexLock outer;
      const BigMutexLock inner;
      ++counter;
      const BigMutexRelease release;
    }
  };
  std::thread a(count), b(count);
  a.join();
  b.join();
  EXPECT_EQ(counter, 4000);
}

} // namespace
} // namespace Tallymoor
