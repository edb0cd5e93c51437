#include "market/PriceHistory.h"
#include "foundation/Amounts.h"
#include "foundation/Exception.h"
#include "foundation/KeptTexts.h"
#include "market/Connection.h"
#include "market/FetchQuestions.h"
#include "market/HistoryCompletion.h"
#include "market/HostQueues.h"
#include "market/NetworkFailure.h"
#include "market/WatchedFetch.h"
#include <algorithm>
#include <iterator>

namespace Tallymoor {

namespace {

String local(const Date& date) {
  return date.toString(DATE_DISPLAY_LOCAL);
}

HTTPException cancelled() {
  return HTTPException(u"TallymoorInternet::historicalPrice - cancelled.");
}

} // namespace

PriceHistory::PriceHistory(const String& cacheDirectory, const String& decisionsFile,
                           const Connection& connection, FetchQuestions& questions, CloseChanged closeChanged)
    : m_cache(cacheDirectory), m_quarantine(decisionsFile), m_connection(connection), m_questions(questions),
      m_closeChanged(std::move(closeChanged)) {}

double PriceHistory::closeOf(const String& code, const Date& day, bool upTo) {
  for (;;) {
    const CachedShare& known = m_cache.share(code);
    if (const ShareValue* row = known.find(day))
      return row->close;
    if (known.isBad)
      throw Exception(u"TallymoorInternet::historicalPrice - code does not exist(cached): " + code);
    const HistoryRange request = m_connection.pageAround(day, upTo);
    const HistoryFailures::Failure* failure = m_failures.failureOf(code, day, request);
    if (!failure && !m_failures.isAbsent(code, day)) {
      fetchDayVisibly(code, day, upTo);
      failure = m_failures.failureOn(code, day);
    }
    if (!failure)
      return cachedPrice(code, day, 0);
    if (!wantsAnotherTry(code, *failure))
      std::rethrow_exception(failure->what);
  }
}

void PriceHistory::offerAnotherTry(const String& code, const Date& day) {
  const CachedShare& known = m_cache.shareOrEmpty(code);
  if (known.find(day) || known.isBad)
    return;
  if (const auto* failure = m_failures.failureOf(code, day, m_connection.pageAround(day, true)))
    wantsAnotherTry(code, *failure);
}

bool PriceHistory::isKnownToFail(const String& code, const Date& day) const {
  return m_failures.failureOn(code, day) || m_failures.isAbsent(code, day);
}

void PriceHistory::fetchDayVisibly(const String& code, const Date& day, bool upTo) {
  m_connection.source(u"historicalPrice"); // fails offline, with nothing shown
  FetchQuestions::showStatus(u"updating historical price for " + code + u" for days " +
                             (upTo ? u"up to " : u"from ") + local(day));
  const WaitCursor wait;
  fetchDay(code, day, upTo);
}

/// Afterwards the day is cached, or it is known to fail.
void PriceHistory::fetchDay(const String& code, const Date& day, bool upTo) {
  DayFetch fetch = beginFetch(code, day, upTo);
  HistoryPage page;
  do {
    const DataSource source = m_connection.source(u"historicalPrice");
    if (isStopWanted())
      throw cancelled();
    page = watchedFetch(
        [&](const std::stop_token& stop) { return source.historyPage(code, fetch.range, stop); });
    if (page.failure && isStopWanted())
      m_questions.dontAsk(code);
  } while (keepPage(fetch, page));
}

DayFetch PriceHistory::beginFetch(const String& code, const Date& day, bool upTo) {
  m_failures.forgetFailuresOn(code, day);
  return {code, day, upTo, m_connection.pageAround(day, upTo)};
}

bool PriceHistory::keepPage(DayFetch& fetch, const HistoryPage& page) {
  const auto& [code, day, upTo, range, isLast, endsCompletion] = fetch;
  m_networkFailed = isFailureOfNetwork(page.failure);
  if (page.failure)
    m_failures.noteFailure(code, range, page.failure);
  else if (page.rows.empty())
    m_failures.noteAbsent(code, range);
  if (!page.failure)
    keepRows(code, page.rows, range);
  if (endsCompletion && isKnownToFail(code, day))
    m_failures.endCompletionAt(code, day);
  if (m_cache.shareOrEmpty(code).find(day) || m_failures.failureOn(code, day))
    return false;
  if (!isLast) {
    // With nothing at or before the day in a range from it on, the last close lies before the range, if any.
    const Date before = page.rows.empty() ? day : page.rows.begin()->first.plusDays(-1);
    fetch.range = m_connection.pageAround(before, true);
    fetch.isLast = true;
    return true;
  }
  m_failures.noteAbsent(code, {day, day});
  return false;
}

void PriceHistory::noteCancelled(const DayFetch& fetch) {
  m_failures.noteFailure(fetch.code, fetch.range, std::make_exception_ptr(cancelled()));
  m_questions.dontAsk(fetch.code);
}

/// Forgets the failure then. False also when nothing may be asked.
bool PriceHistory::wantsAnotherTry(const String& code, const HistoryFailures::Failure& failure) {
  switch (m_questions.afterHistory(code, failure)) {
  case FetchQuestions::Answer::Retry:
    m_failures.forget(code);
    HostQueues::ofProgram()->forgetFailures();
    return true;
  case FetchQuestions::Answer::Delisted:
    m_cache.setBad(code, true);
    return false;
  default:
    return false;
  }
}

SharePriceCache::Closes PriceHistory::keepRecent(const String& code, const HistoryRange& range,
                                                 const DataSource::Rows& rows) {
  m_failures.forgetFailuresOn(code, range.end);
  return keepRows(code, rows, range);
}

/// The days whose close is new or another one, without those that show as zero.
SharePriceCache::Closes PriceHistory::keepRows(const String& code, const DataSource::Rows& rows,
                                               const HistoryRange& range) {
  if (!hasAnsweredFor(code, range.start) || !hasAnsweredFor(code, range.end))
    m_answered[code].push_back(range);
  SharePriceCache::Closes changed =
      m_cache.merge(code, m_quarantine.admit(code, m_cache.shareOrEmpty(code), rows), range);
  std::erase_if(changed, [](const auto& item) { return showsAsZero(item.second); });
  tell(code, changed);
  return changed;
}

double PriceHistory::admittedPrice(const String& code, const AnsweredPrice& price) {
  const Date today = Date::realToday();
  if (showsAsZero(price.price) || m_quarantine.admitCurrent(code, m_cache.shareOrEmpty(code), today, price))
    return price.price;
  const std::optional<KnownClose> last = m_cache.lastTradedClose(code, today);
  return last ? last->close : 0.0;
}

void PriceHistory::keepAccepted(const String& code, const PriceQuarantine::Prices& accepted) {
  SharePriceCache::Rows rows;
  for (const auto& [day, price] : accepted)
    if (price.value.origin != PriceOrigin::Current && day <= Date::realToday())
      rows.emplace(day, price.value);
  const SharePriceCache::Rows& known = m_cache.shareOrEmpty(code).values;
  if (!rows.empty()) {
    // The days behind them that were filled in follow.
    const Date end = std::max(rows.rbegin()->first, known.empty() ? Date(0u) : known.rbegin()->first);
    tell(code, m_cache.merge(code, rows, {rows.begin()->first, end}));
  }
  for (const auto& [day, price] : accepted)
    if (price.value.origin == PriceOrigin::Current)
      m_cache.noteCurrentPrice(code, day, price.value.close);
}

void PriceHistory::tell(const String& code, const SharePriceCache::Closes& changed) const {
  for (const auto& [day, close] : changed)
    m_closeChanged(code, day, close);
}

double PriceHistory::cachedPrice(const String& code, const Date& day, int column) {
  const ShareValue* row = m_cache.share(code).find(day);
  if (!row)
    throw Exception(kept::NO_CACHED_PRICE + code + u" at " + local(day));
  switch (column) {
  case 1:
    return row->high;
  case 2:
    return row->low;
  default:
    return row->close;
  }
}

std::optional<double> PriceHistory::cachedClose(const String& code, const Date& day) {
  const ShareValue* row = m_cache.shareOrEmpty(code).find(day);
  return row ? std::optional(row->close) : std::nullopt;
}

SharePriceCache::Rows PriceHistory::cachedRows(const String& code, const Date& first, const Date& last) {
  const SharePriceCache::Rows& rows = m_cache.shareOrEmpty(code).values;
  return SharePriceCache::Rows(rows.lower_bound(first), rows.upper_bound(last));
}

bool PriceHistory::hasAnsweredFor(const String& code, const Date& day) {
  const std::vector<HistoryRange>& ranges = m_answered[code];
  return isBad(code) || std::any_of(ranges.begin(), ranges.end(),
                                    [&day](const HistoryRange& range) { return range.contains(day); });
}

bool PriceHistory::setTypedPrice(const String& code, const Date& day, double close) {
  const SharePriceCache::Closes changed = m_cache.setTypedPrice(code, day, close);
  tell(code, changed);
  return !changed.empty();
}

SharePriceCache::Closes PriceHistory::removeTypedPrice(const String& code, const Date& day) {
  SharePriceCache::Closes removed = m_cache.removeTypedPrice(code, day);
  if (removed.empty())
    return removed;
  m_answered.erase(code);
  m_failures.forget(code);
  tell(code, removed);
  return removed;
}

// --- Ranges of days

bool PriceHistory::completeHistory(const std::vector<HistoryNeed>& needs, Progress* progress) {
  return !m_connection.isOnline() ||
         HistoryCompletion(*this, m_connection.source(u"historicalPrice"), needs).run(progress);
}

std::optional<DayFetch> PriceHistory::nextFetch(const HistoryNeed& need) {
  using Kind = HistoryNeed::Kind;
  const std::optional<Date> day = nextDay(need);
  if (!day)
    return std::nullopt;
  if (need.kind == Kind::Refresh)
    m_refreshes[{need.code, need.first}] = Date::realToday();
  DayFetch fetch = beginFetch(need.code, *day, need.kind == Kind::Backward || need.kind == Kind::UpTo);
  fetch.endsCompletion = need.kind == Kind::Backward;
  return fetch;
}

std::optional<Date> PriceHistory::nextDay(const HistoryNeed& need) {
  const CachedShare& known = m_cache.shareOrEmpty(need.code);
  // The next request for a price reports an unreadable file, so its failure is not used up here.
  if (!m_connection.isOnline() || known.isBad || known.unreadable)
    return std::nullopt;
  switch (need.kind) {
  case HistoryNeed::Kind::Backward:
    return lastMissingDay(need.code, need.first, need.last);
  case HistoryNeed::Kind::Refresh: {
    const auto tried = m_refreshes.find({need.code, need.first});
    const bool isTried = tried != m_refreshes.end() && tried->second == Date::realToday();
    return isTried ? std::nullopt : std::optional(need.first);
  }
  default:
    return firstMissingDay(need, need.kind == HistoryNeed::Kind::UpTo);
  }
}

/// As closeOf would ask for it.
std::optional<Date> PriceHistory::firstMissingDay(const HistoryNeed& need, bool upTo) {
  const SharePriceCache::Rows& rows = m_cache.shareOrEmpty(need.code).values;
  auto row = rows.lower_bound(need.first);
  for (Date day = need.first; day <= need.last; day.addDays(1)) {
    if (row != rows.end() && row->first == day)
      ++row;
    else if (!m_failures.isAbsent(need.code, day) &&
             !m_failures.failureOf(need.code, day, m_connection.pageAround(day, upTo)))
      return day;
  }
  return std::nullopt;
}

std::optional<Date> PriceHistory::lastMissingDay(const String& code, const Date& first, const Date& last) {
  const SharePriceCache::Rows& rows = m_cache.shareOrEmpty(code).values;
  auto row = rows.upper_bound(last);
  for (Date day = last; day >= first; day.addDays(-1)) {
    if (row != rows.begin() && std::prev(row)->first == day)
      --row;
    else if (m_failures.isBeyondCompletion(code, day))
      return std::nullopt;
    else if (!isKnownToFail(code, day))
      return day;
  }
  return std::nullopt;
}

void PriceHistory::forgetFailures() {
  m_failures.forget();
  m_refreshes.clear();
}

void PriceHistory::clearBad(const String& code) {
  m_cache.setBad(code, false);
  m_failures.forget(code);
  m_refreshes.clear();
}

void PriceHistory::forgetFetched(const std::function<void()>& then) {
  SharePriceCache::Forgotten forgotten = m_cache.forgetFetched();
  try {
    m_cache.save();
    then();
  } catch (...) {
    m_cache.putBack(std::move(forgotten));
    throw;
  }
  m_answered.clear();
  forgetFailures();
}

void PriceHistory::clear() {
  m_cache.clear();
  m_answered.clear();
}

} // namespace Tallymoor
