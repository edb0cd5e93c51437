#pragma once
#include "foundation/BigMutex.h"
#include "foundation/Thread.h"
#include "market/HistoryPage.h"
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <stop_token>

namespace Tallymoor {

class Connection;
class FetchQueue;
class PriceHistory;
class PriceUpdater;

/// The background thread that fetches past prices which nobody waits for: of several codes at once, and page
/// by page in each, until all days are there or one is unavailable. The pages are stored under the big mutex
/// in the order of the requests, and the observers are told of each (PricesObserver::historyArrived). The
/// thread runs while something is missing. It asks the user nothing; failures are remembered for the run.
class HistoryFetcher : public Thread {
public:
  /// What is referred to is not owned and outlives the fetcher.
  HistoryFetcher(Connection& connection, PriceHistory& history, PriceUpdater& updater);
  ~HistoryFetcher() override;

  /// Has the missing days fetched and returns at once. False if none is missing that may be fetched.
  bool request(const HistoryNeed& need) REQUIRES(bigMutex());
  /// Ends the fetches, and waits for that with the big mutex released. The requests are forgotten, of which
  /// the observers are told, too.
  void cancel();
  /// Another number after each new request and each cancel.
  std::uint64_t changeStamp() const REQUIRES(bigMutex()) { return m_changeStamp; }

protected:
  void threadFunction() override;

private:
  /// What is needed of a code, of which one page at a time is fetched.
  struct Chain {
    std::deque<HistoryNeed> needs;
    std::optional<DayFetch> next; ///< follows the last page of the first need
  };

  bool beginFetches(const std::stop_token& stop) REQUIRES(bigMutex());
  std::optional<String> nextCode() REQUIRES(bigMutex());
  std::optional<DayFetch> nextFetch(Chain& chain) REQUIRES(bigMutex());
  void drop(const String& code) REQUIRES(bigMutex());
  void begin(const DayFetch& fetch, const HistoryNeed& need, const std::stop_token& stop)
      REQUIRES(bigMutex());
  void keep(const HistoryNeed& need, DayFetch fetch, const HistoryPage& page) REQUIRES(bigMutex());
  void store(Chain& chain, DayFetch fetch, const HistoryPage& page) REQUIRES(bigMutex());
  static bool dropForward(Chain& chain);

  Connection& m_connection;
  PriceHistory& m_history;
  PriceUpdater& m_updater;
  std::map<String, Chain> m_chains GUARDED_BY(bigMutex());
  std::deque<String> m_order GUARDED_BY(bigMutex());  ///< the codes of the chains as they were asked for
  std::set<String> m_underWay GUARDED_BY(bigMutex()); ///< codes
  std::shared_ptr<FetchQueue> m_queue GUARDED_BY(bigMutex()); ///< of the pass under way
  std::uint64_t m_changeStamp GUARDED_BY(bigMutex()) = 0;
};

} // namespace Tallymoor
