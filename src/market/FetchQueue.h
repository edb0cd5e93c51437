#pragma once
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>
#include <thread>
#include <vector>

namespace Tallymoor {

/// Fetches on threads of its own, several at once, without any lock of the program. A source that takes 60 ms
/// to answer gives 16 pages a second one after the other, and six times as many so.
///
/// The results are taken on the owner's thread in the order of the queue, whichever answer came first, so
/// that what is made of them does not depend on the network.
///
/// All operations but stop are for the owner's thread.
class FetchQueue {
public:
  /// Does something with the result of a fetch, on the owner's thread; may add further fetches.
  using Apply = std::function<void()>;
  /// Called on a worker: uses copies alone, and ends soon after a stop. What it throws comes out of
  /// applyNext.
  using Fetch = std::function<Apply(const std::stop_token& stop)>;

  /// As many as one source may be asked for at the same time.
  static constexpr std::size_t AT_ONCE = 6;

  explicit FetchQueue(std::size_t atOnce = AT_ONCE);
  /// As stop; waits for the fetches under way.
  ~FetchQueue();
  FetchQueue(const FetchQueue&) = delete;
  FetchQueue& operator=(const FetchQueue&) = delete;

  /// Behind all others.
  void add(Fetch fetch);
  bool isEmpty() const;
  /// Takes the first fetch out of the queue and applies its result. False when that isn't there within the
  /// patience.
  bool applyNext(std::chrono::milliseconds patience);
  /// Drops what has not begun, and ends what is under way. Those results still come out, as failures for the
  /// most part. Any thread.
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
  std::shared_ptr<Item> nextToBegin() const;

  const std::size_t m_atOnce;
  mutable std::mutex m_mutex;            ///< guards the items
  std::condition_variable_any m_changed; ///< an item more, or done
  Items m_items;
  std::stop_source m_stop;
  std::vector<std::jthread> m_workers; ///< the last to be made and the first to go
};

} // namespace Tallymoor
