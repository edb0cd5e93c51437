#include "market/HistoryFetcher.h"
#include "foundation/BackgroundStretch.h"
#include "foundation/Exception.h"
#include "market/Connection.h"
#include "market/FetchQueue.h"
#include "market/FetchStatus.h"
#include "market/NetworkFailure.h"
#include "market/PriceHistory.h"
#include "market/PriceUpdater.h"
#include <algorithm>
#include <utility>

namespace Tallymoor {

HistoryFetcher::HistoryFetcher(Connection& connection, PriceHistory& history, PriceUpdater& updater)
    : Thread(0, false, 0), m_connection(connection), m_history(history), m_updater(updater) {}

HistoryFetcher::~HistoryFetcher() {
  stopAndJoin();
}

bool HistoryFetcher::request(const HistoryNeed& need) {
  if (!m_history.isMissing(need))
    return false;
  const auto [place, isNew] = m_chains.try_emplace(need.code);
  if (isNew)
    m_order.push_back(need.code);
  std::deque<HistoryNeed>& needs = place->second.needs;
  start();
  if (std::find(needs.begin(), needs.end(), need) == needs.end()) {
    needs.push_back(need);
    ++m_changeStamp;
    wakeUp(); // one that is about to end makes another pass
    if (m_queue)
      m_queue->interruptWait(); // there may be room for another fetch
  }
  return true;
}

void HistoryFetcher::cancel() {
  const BigMutexLock lock;
  stopAndJoin();
  ++m_changeStamp;
  m_queue.reset();
  m_underWay.clear();
  m_order.clear();
  for (const auto& [code, chain] : std::exchange(m_chains, {}))
    m_updater.tellHistoryArrived(code);
}

void HistoryFetcher::threadFunction() {
  const std::stop_token stop = passToken();
  const auto queue = std::make_shared<FetchQueue>();
  const std::stop_callback stopFetches(stop, [&queue] { queue->stop(); });
  inBackgroundStretch(stop, [&]() REQUIRES(bigMutex()) {
    m_queue = queue;
    m_underWay.clear(); // of a pass that failed
  });
  for (;;) {
    bool goesOn = false;
    inBackgroundStretch(stop, [&]() REQUIRES(bigMutex()) { goesOn = beginFetches(stop); });
    if (!goesOn)
      return;
    queue->applyNext(FetchQueue::UNTIL_IT_ENDS);
  }
}

/// While the network has failed, one request tries whether it is back. False if none is under way.
bool HistoryFetcher::beginFetches(const std::stop_token& stop) {
  while (m_underWay.size() < (m_history.hasNetworkFailed() ? 1 : FetchQueue::AT_ONCE)) {
    const std::optional<String> code = nextCode();
    if (!code)
      break;
    Chain& chain = m_chains[*code];
    if (const std::optional<DayFetch> fetch = nextFetch(chain))
      begin(*fetch, chain.needs.front(), stop);
    else
      drop(*code);
  }
  if (!m_underWay.empty())
    return true;
  m_queue.reset(); // a later request makes another pass
  return false;
}

std::optional<String> HistoryFetcher::nextCode() {
  const auto isFree = [this](const String& code) REQUIRES(bigMutex()) { return !m_underWay.contains(code); };
  const auto next = std::find_if(m_order.begin(), m_order.end(), isFree);
  return next == m_order.end() ? std::nullopt : std::optional(*next);
}

std::optional<DayFetch> HistoryFetcher::nextFetch(Chain& chain) {
  if (chain.next)
    return std::exchange(chain.next, std::nullopt);
  while (!chain.needs.empty()) {
    HistoryNeed& need = chain.needs.front();
    if (std::optional<DayFetch> fetch = m_history.nextFetch(need))
      return fetch;
    chain.needs.pop_front();
  }
  return std::nullopt;
}

void HistoryFetcher::drop(const String& code) {
  m_chains.erase(code);
  m_order.erase(std::find(m_order.begin(), m_order.end(), code));
}

void HistoryFetcher::begin(const DayFetch& fetch, const HistoryNeed& need, const std::stop_token& stop) {
  tellStatus(u"updating historical prices for " + need.code);
  m_queue->add([this, need, fetch, stop,
                source = m_connection.source(u"historicalPrice")](const std::stop_token& stopFetch) {
    HistoryPage page = source.historyPage(fetch.code, fetch.range, stopFetch);
    return [this, need, fetch, stop, page = std::move(page)] {
      inBackgroundStretch(stop, [&]() REQUIRES(bigMutex()) { keep(need, fetch, page); });
    };
  });
  m_underWay.insert(need.code);
}

/// A page for a need that has been dropped meanwhile is not kept: it would be blamed for another failure.
void HistoryFetcher::keep(const HistoryNeed& need, DayFetch fetch, const HistoryPage& page) {
  m_underWay.erase(need.code);
  Chain& chain = m_chains[need.code];
  if (chain.needs.empty() || chain.needs.front() != need)
    return;
  try {
    store(chain, std::move(fetch), page);
  } catch (const Exception& failure) {
    chain = {};
    tellStatus(u"HistoryFetcher::keep failed: " + failure.description());
  }
  m_updater.tellHistoryArrived(need.code);
}

void HistoryFetcher::store(Chain& chain, DayFetch fetch, const HistoryPage& page) {
  if (m_history.keepPage(fetch, page)) {
    chain.next = std::move(fetch);
  } else if (page.failure && chain.needs.front().kind == HistoryNeed::Kind::Forward) {
    // The user is asked first. If it is the network that failed, no other code is blamed for that.
    dropForward(chain);
    if (isFailureOfNetwork(page.failure))
      for (auto& [code, other] : m_chains)
        if (dropForward(other))
          m_updater.tellHistoryArrived(code);
  }
}

/// True if there was one.
bool HistoryFetcher::dropForward(Chain& chain) {
  if (!chain.needs.empty() && chain.needs.front().kind == HistoryNeed::Kind::Forward)
    chain.next.reset();
  return std::erase_if(chain.needs,
                       [](const HistoryNeed& need) { return need.kind == HistoryNeed::Kind::Forward; }) > 0;
}

} // namespace Tallymoor
