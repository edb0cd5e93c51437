#pragma once
#include "foundation/BigMutex.h"
#include "market/DataSource.h"
#include "market/FetchQueue.h"
#include "market/HistoryPage.h"
#include <chrono>
#include <cstddef>
#include <deque>
#include <vector>

namespace Tallymoor {

class PriceHistory;
class Progress;

/// Fetches the past prices that somebody is going to ask for day by day: of many codes at once, page by page
/// forward in each, up to a failure. What is kept, failures included, is what those questions would have
/// brought one after the other: so a failure of the network ends all, and no other code is blamed for it.
///
/// GUI thread, under the big mutex; the fetches are made without it.
class HistoryCompletion {
public:
  /// Of needs of one code the first comes first. The history is not owned.
  HistoryCompletion(PriceHistory& history, DataSource source, const std::vector<HistoryNeed>& needs);

  /// Tells the progress, if there is one, of each page that is fetched, and lets events pass meanwhile. False
  /// when the user, or the end of the program, wanted it to end: then the first request under way counts as
  /// failed, so that the next look at the record does not begin with it again, and nothing more is kept.
  bool run(Progress* progress) REQUIRES(bigMutex());

private:
  /// The requests for a code, of which one is under way.
  struct Chain {
    std::vector<HistoryNeed> needs;
    std::size_t next = 0; ///< the need that is not known to be met
    DayFetch fetch = {};
  };

  void beginChains() REQUIRES(bigMutex());
  void begin(Chain& chain) REQUIRES(bigMutex());
  void request(Chain& chain);
  void keep(Chain& chain, const HistoryPage& page) REQUIRES(bigMutex());
  void letEventsPass();
  bool isCancelled();

  PriceHistory& m_history;
  const DataSource m_source;
  Progress* m_progress = nullptr;
  bool m_cancelled = false;
  bool m_networkFailed = false;
  std::chrono::steady_clock::time_point m_eventsPassed{};
  std::vector<Chain> m_chains;
  std::size_t m_begun = 0;             ///< of the chains
  std::deque<const Chain*> m_underWay; ///< in the order of asking
  FetchQueue m_queue;                  ///< ends first, since it refers to the others
};

} // namespace Tallymoor
