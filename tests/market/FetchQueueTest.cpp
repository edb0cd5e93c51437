#include "market/FetchQueue.h"
#include "market/GatewayTest.h"
#include <gmock/gmock.h>

namespace Tallymoor {
namespace {

using testing::ElementsAre;

constexpr std::chrono::seconds LONG{60};

class FetchQueueTest : public testing::Test {
protected:
  /// A fetch that waits until the test releases it or until a stop.
  FetchQueue::Fetch numbered(int number) {
    return [this, number](const std::stop_token& stop) {
      const std::stop_callback wake(stop, [this] { m_signpost.notify(); });
      ++m_underWay;
      m_signpost.notify();
      m_signpost.await([&] { return m_released >= number || stop.stop_requested(); });
      --m_underWay;
      m_signpost.notify();
      return [this, number, stopped = stop.stop_requested()] { m_applied.push_back(stopped ? -1 : number); };
    };
  }
  void release(int number) {
    m_released = number;
    m_signpost.notify();
  }
  void awaitUnderWay(int count) {
    m_signpost.await([this, count] { return m_underWay == count; });
  }

  Signpost m_signpost;
  std::atomic<int> m_underWay = 0;
  std::atomic<int> m_released = 0;
  std::vector<int> m_applied;
};

TEST_F(FetchQueueTest, LimitsTheNumberOfParallelFetches) {
  FetchQueue queue(3);
  for (int i = 1; i <= 5; ++i)
    queue.add(numbered(100));
  awaitUnderWay(3);
  EXPECT_FALSE(queue.applyNext(std::chrono::milliseconds(1)));
  EXPECT_EQ(m_underWay, 3);
  release(100);
  while (queue.applyNext(LONG)) {
  }
  EXPECT_EQ(m_applied.size(), 5u);
  EXPECT_TRUE(queue.isEmpty());
}

TEST_F(FetchQueueTest, ResultsAreInTheOrderOfTheQueue) {
  FetchQueue queue(2);
  queue.add(numbered(2)); // Waits longer than the next one.
  queue.add(numbered(1));
  awaitUnderWay(2);
  release(1);
  awaitUnderWay(1);
  EXPECT_FALSE(queue.applyNext(std::chrono::milliseconds(1)));
  EXPECT_TRUE(m_applied.empty());
  release(2);
  EXPECT_TRUE(queue.applyNext(LONG));
  EXPECT_TRUE(queue.applyNext(LONG));
  EXPECT_THAT(m_applied, ElementsAre(2, 1));
}

TEST_F(FetchQueueTest, AResultMayAddFetches) {
  release(9);
  FetchQueue queue;
  queue.add([this, &queue](const std::stop_token&) { return [this, &queue] { queue.add(numbered(3)); }; });
  queue.add(numbered(2));
  while (queue.applyNext(LONG)) {
  }
  EXPECT_THAT(m_applied, ElementsAre(2, 3));
}

TEST_F(FetchQueueTest, AStopAbortsRunningFetchesAndDropsTheRest) {
  FetchQueue queue(2);
  for (int i = 1; i <= 5; ++i)
    queue.add(numbered(i));
  awaitUnderWay(2);
  queue.stop();
  queue.add(numbered(6));
  while (queue.applyNext(LONG)) {
  }
  EXPECT_THAT(m_applied, ElementsAre(-1, -1));
}

TEST_F(FetchQueueTest, DestroyingTheQueueAbortsRunningFetches) {
  {
    FetchQueue queue;
    queue.add(numbered(1));
    awaitUnderWay(1);
  }
  EXPECT_EQ(m_underWay, 0);
  EXPECT_TRUE(m_applied.empty());
}

TEST_F(FetchQueueTest, AnExceptionOfAFetchIsThrownInPlaceOfItsResult) {
  FetchQueue queue;
  queue.add([](const std::stop_token&) -> FetchQueue::Apply { throw HTTPException(u"no network"); });
  EXPECT_THROW(queue.applyNext(LONG), HTTPException);
  EXPECT_TRUE(queue.isEmpty());
}

} // namespace
} // namespace Tallymoor
