#include "market/HistoryCompletion.h"
#include "foundation/LengthyFunctions.h"
#include "market/FetchQuestions.h"
#include "market/NetworkFailure.h"
#include "market/PriceHistory.h"
#include "market/WatchedFetch.h"
#include <map>
#include <utility>

namespace Tallymoor {

namespace {

constexpr std::chrono::milliseconds BETWEEN_EVENTS{60};

} // namespace

HistoryCompletion::HistoryCompletion(PriceHistory& history, DataSource source,
                                     const std::vector<HistoryNeed>& needs)
    : m_history(history), m_source(std::move(source)) {
  std::map<String, std::size_t> places;
  for (const HistoryNeed& need : needs) {
    const auto [place, isNew] = places.try_emplace(need.code, m_chains.size());
    if (isNew)
      m_chains.emplace_back();
    m_chains[place->second].needs.push_back(need);
  }
}

bool HistoryCompletion::run(Progress* progress) {
  m_progress = progress;
  const WaitCursor wait;
  beginChains();
  while (!isCancelled() && !m_networkFailed && !m_queue.isEmpty()) {
    m_queue.applyNext(BETWEEN_EVENTS);
    letEventsPass();
  }
  if (!m_cancelled)
    return true;
  if (!m_underWay.empty())
    m_history.noteCancelled(m_underWay.front()->fetch);
  return false;
}

/// While the network has failed, one request tries whether it is back.
void HistoryCompletion::beginChains() {
  while (m_begun < m_chains.size() && !isCancelled() && (m_underWay.empty() || !m_history.hasNetworkFailed()))
    begin(m_chains[m_begun++]);
}

/// At most every 60 ms, and only after Cancel was checked: a key that the dialog does not get, because it
/// lacks the focus, is lost when events are processed.
void HistoryCompletion::letEventsPass() {
  const auto now = std::chrono::steady_clock::now();
  if (!m_progress || now - m_eventsPassed < BETWEEN_EVENTS || isCancelled())
    return;
  m_eventsPassed = now;
  m_progress->setText(String());
}

/// Has the next missing day of the chain fetched, if there is one.
void HistoryCompletion::begin(Chain& chain) {
  for (; chain.next < chain.needs.size(); ++chain.next) {
    HistoryNeed& need = chain.needs[chain.next];
    const std::optional<DayFetch> fetch = m_history.nextFetch(need);
    if (!fetch)
      continue;
    if (need.kind == HistoryNeed::Kind::Forward)
      need.first = fetch->day; // those before need no other look
    FetchQuestions::showStatus(u"updating historical price for " + need.code + u" for days " +
                               (fetch->upTo ? u"up to " : u"from ") +
                               fetch->day.toString(DATE_DISPLAY_LOCAL));
    if (m_progress && !isCancelled())
      m_progress->setText(u"Retrieving historical prices for " + need.code);
    if (isCancelled())
      return;
    chain.fetch = *fetch;
    return request(chain);
  }
}

void HistoryCompletion::request(Chain& chain) {
  m_underWay.push_back(&chain);
  m_queue.add(
      [this, &chain, code = chain.fetch.code, range = chain.fetch.range](const std::stop_token& stop) {
        HistoryPage page = m_source.historyPage(code, range, stop);
        return [this, &chain, page = std::move(page)]() REQUIRES(bigMutex()) { keep(chain, page); };
      });
}

void HistoryCompletion::keep(Chain& chain, const HistoryPage& page) {
  m_underWay.pop_front();
  const bool goesOn = m_history.keepPage(chain.fetch, page);
  m_networkFailed = isFailureOfNetwork(page.failure);
  // After a failure the user is asked first, and may call the code delisted.
  if (!page.failure && goesOn)
    request(chain);
  else if (!page.failure)
    begin(chain);
  if (!m_networkFailed)
    beginChains();
}

/// Once it was seen it holds: a stop is taken back when events pass.
bool HistoryCompletion::isCancelled() {
  m_cancelled = m_cancelled || (m_progress && m_progress->isCancelled()) || isStopWanted();
  return m_cancelled;
}

} // namespace Tallymoor
