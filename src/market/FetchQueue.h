#pragma once
#include "foundation/Mutex.h"
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <stop_token>
#include <thread>
#include <vector>

namespace Tallymoor {

/// Runs several fetches at once on its own threads, without the big mutex. A source that answers in 60 ms
/// gives 16 pages a second if asked one by one, and about 100 by six requests at once.
///
/// The owner's thread takes the results in the order in which the fetches were added, whichever answer came
/// first. So the outcome does not depend on the network.
///
/// Only the owner's thread may call the operations, except stop and interruptWait.
class FetchQueue {
public:
  /// Uses the result of a fetch on the owner's thread. May add further fetches.
  using Apply = std::function<void()>;
  /// Runs on a worker thread. Must use copies only, and must end soon after a stop. applyNext rethrows its
  /// exceptions.
  using Fetch = std::function<Apply(const std::stop_token& stop)>;

  /// The most fetches at the same time. A host may get fewer (HostQueues).
  static constexpr std::size_t AT_ONCE = 6;
  /// The patience of a thread that has nothing else to do; each fetch ends by itself long before.
  static constexpr std::chrono::hours UNTIL_IT_ENDS{24};

  explicit FetchQueue(std::size_t atOnce = AT_ONCE);
  /// Calls stop and waits for the running fetches.
  ~FetchQueue();
  FetchQueue(const FetchQueue&) = delete;
  FetchQueue& operator=(const FetchQueue&) = delete;

  /// Adds a fetch at the end of the queue.
  void add(Fetch fetch);
  bool isEmpty() const;
  /// Removes the first fetch from the queue and applies its result. False if the result is not there within
  /// the given time, or interruptWait is called.
  bool applyNext(std::chrono::milliseconds patience);
  /// Ends the current or next wait of applyNext. Any thread.
  void interruptWait();
  /// Drops the fetches that have not begun and ends the running ones, whose results can still be applied and
  /// are mostly failures. Any thread.
  void stop();

private:
  enum class State { Waiting, UnderWay, Done };
  struct Item {
    Fetch fetch;
    Apply apply;
    State state = State::Waiting;
  };
  using Items = std::deque<std::shared_ptr<Item>>;

  void work(const std::stop_token& stop);
  std::shared_ptr<Item> nextToBegin() const REQUIRES(m_mutex);

  const std::size_t m_atOnce;
  mutable Mutex m_mutex;
  std::condition_variable_any m_changed; ///< an item more or done, or interrupted
  Items m_items GUARDED_BY(m_mutex);
  bool m_interrupted GUARDED_BY(m_mutex) = false;
  std::stop_source m_stop;
  std::vector<std::jthread> m_workers GUARDED_BY(m_mutex); ///< the last to be made and the first to go
};

} // namespace Tallymoor
