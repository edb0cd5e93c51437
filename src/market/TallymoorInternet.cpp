#include "market/TallymoorInternet.h"
#include "foundation/Amounts.h"
#include "foundation/BigMutex.h"
#include "foundation/Constants.h"
#include "foundation/Exception.h"
#include "foundation/Platform.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/UserInteraction.h"
#include "market/DataSource.h"
#include "market/HTTPClient.h"
#include "market/LocatorSet.h"
#include "market/StockNames.h"
#include "market/WatchedFetch.h"
#include <algorithm>
#include <atomic>
#include <iterator>
#include <set>
#include <utility>

namespace Tallymoor {

namespace {

std::atomic<TallymoorInternet*> currentGateway = nullptr; ///< changed under the big mutex alone
std::atomic<bool> inShutdownMode = false;

/// Guarded by the big mutex.
TallymoorInternet::Options& nextOptions() {
  static TallymoorInternet::Options options;
  return options;
}

std::unique_ptr<const LocatorSet> readLocators() {
  return std::make_unique<const LocatorSet>(configDirectory(Platform::Instance(), APP_NAME));
}

void showStatus(const String& text) {
  if (FetchQuestions::mayAsk())
    UserInteraction::Instance().setStatusText(text);
}

/// Codes whose names the source was asked for in this run. Guarded by the big mutex.
std::set<String>& codesAskedForNames() {
  static std::set<String> codes;
  return codes;
}

bool wantsName(const String& code) {
  const BigMutexLock lock;
  return StockNames::nameOf(code).empty() && codesAskedForNames().insert(code).second;
}

/// The records know codes alone: the name of one that was never searched for is asked for once a run. A
/// failure is no reason to tell anybody, and a name of another code is none.
void learnName(const DataSource& source, const String& code, const std::stop_token& stop) {
  if (!wantsName(code))
    return;
  std::vector<CodeSearchResult> found;
  try {
    source.search(code, !code.startsWith(u"^"), false, found, stop);
  } catch (const Exception&) {
    // What came before the failure counts.
  }
  const BigMutexLock lock;
  for (const CodeSearchResult& stock : found)
    if (stock.code == code)
      return StockNames::remember(code, stock.name);
}

String local(const Date& date) {
  return date.toString(DATE_DISPLAY_LOCAL);
}

} // namespace

TallymoorInternet& TallymoorInternet::Instance() {
  if (TallymoorInternet* gateway = currentGateway)
    return *gateway;
  const BigMutexLock lock;
  if (inShutdownMode)
    throw Exception(u"in shutdown mode");
  if (!currentGateway)
    currentGateway = new TallymoorInternet(nextOptions());
  return *currentGateway;
}

bool TallymoorInternet::exists() {
  return currentGateway != nullptr;
}

bool TallymoorInternet::shutdown() {
  const BigMutexLock lock;
  // Before the mutex is given up: nobody may find the gateway, or build a new one, while its thread ends.
  inShutdownMode = true;
  const std::unique_ptr<TallymoorInternet> gateway(currentGateway.exchange(nullptr));
  codesAskedForNames().clear();
  if (!gateway)
    return true;
  gateway->m_updater.stopAndJoin();
  try {
    gateway->save();
  } catch (const Exception&) {
    return false;
  }
  return true;
}

void TallymoorInternet::shutdownForNextTest() {
  const BigMutexLock lock;
  shutdown();
  nextOptions() = Options();
  inShutdownMode = false;
}

void TallymoorInternet::setOptions(Options options) {
  const BigMutexLock lock;
  nextOptions() = std::move(options);
}

void TallymoorInternet::reset() {
  std::unique_ptr<const LocatorSet> fresh = readLocators();
  const BigMutexLock lock;
  Instance().m_locators.swap(fresh);
  Instance().forgetFailures();
}

TallymoorInternet::TallymoorInternet(const Options& options)
    : m_makeClient(options.makeClient ? options.makeClient : ClientFactory(createHTTPClient)),
      m_cache(cacheDirectory(Platform::Instance(), APP_NAME)), m_updater(*this, options.updaterStartDelay) {
  try {
    goOnline();
  } catch (const Exception&) {
    // A machine without a connection starts offline.
  }
  m_locators = readLocators();
  m_updater.addObserver(this, PriceUpdater::Rank::Cache);
  // Last of all: from here on the thread may use any member.
  if (options.startUpdater)
    resumeUpdates();
}

TallymoorInternet::~TallymoorInternet() {
  m_updater.stopAndJoin();
}

// --- Prices

DataSource TallymoorInternet::dataSource(const String& operation) const {
  const BigMutexLock lock;
  if (!m_client)
    throw HTTPException(u"TallymoorInternet::" + operation + u" - internet offline.");
  return DataSource(m_client, *m_locators);
}

double TallymoorInternet::currentPrice(const String& code, bool useUpdater, bool silent,
                                       const std::stop_token& stop) {
  for (;;) {
    if (const std::optional<double> known = beginCurrentPrice(code, useUpdater))
      return *known;
    const DataSource source = dataSource(u"currentPrice");
    try {
      if (!silent)
        return watchedFetch(
            [&](const std::stop_token& stopped) { return source.currentPrice(code, stopped); });
      const double price = source.currentPrice(code, stop);
      learnName(source, code, stop);
      return price;
    } catch (const HTTPException& failure) {
      if (silent || isStopWanted() || !m_questions.wantsQuoteAgain(code, failure))
        throw;
    }
  }
}

std::optional<double> TallymoorInternet::beginCurrentPrice(const String& code, bool useUpdater) {
  const BigMutexLock lock;
  m_cache.share(code);
  if (!useUpdater || !m_updater.hasCode(code))
    return std::nullopt;
  // Exactly 0.0 is the mark of a code whose price has not been fetched yet.
  const double price = m_updater.getCurrentPrice(code);
  return price == 0.0 ? std::nullopt : std::optional(price);
}

double TallymoorInternet::historicalPrice(const String& code, const Date& date, bool upTo) {
  return closeOf(code, date, upTo, CacheUse::Answer);
}

double TallymoorInternet::refreshHistoricalPrice(const String& code, const Date& date, bool upTo) {
  return closeOf(code, date, upTo, CacheUse::Skip);
}

double TallymoorInternet::closeOf(const String& code, const Date& date, bool upTo, CacheUse use) {
  const BigMutexLock lock;
  for (;; use = CacheUse::Answer) {
    const CachedShare& known = m_cache.share(code);
    const ShareValue* row = use == CacheUse::Answer ? known.find(date) : nullptr;
    if (row)
      return row->close;
    if (known.isBad)
      throw Exception(u"TallymoorInternet::historicalPrice - code does not exist(cached): " + code);
    const HistoryRange request = rangeAround(date, upTo);
    const HistoryFailures::Failure* failure =
        use == CacheUse::Skip ? nullptr : m_failures.failureOf(code, date, request);
    if (!failure && (use == CacheUse::Skip || !m_failures.isAbsent(code, date))) {
      fetchDayVisibly(code, date, upTo);
      failure = m_failures.failureOn(code, date);
    }
    if (!failure)
      return getCachedPrice(code, date, 0);
    if (!wantsAnotherTry(code, *failure))
      std::rethrow_exception(failure->what);
    m_failures.forget(code);
  }
}

HistoryRange TallymoorInternet::rangeAround(const Date& date, bool upTo) const {
  return HistoryRange::around(date, upTo, m_locators->historicalPrices().maxEntries());
}

bool TallymoorInternet::isKnownToFail(const String& code, const Date& date) const {
  return m_failures.failureOn(code, date) || m_failures.isAbsent(code, date);
}

void TallymoorInternet::fetchDayVisibly(const String& code, const Date& date, bool upTo) {
  dataSource(u"historicalPrice"); // fails offline, with nothing shown
  showStatus(u"updating historical price for " + code + u" for days " + (upTo ? u"up to " : u"from ") +
             local(date));
  const WaitCursor wait;
  fetchDay(code, date, upTo);
}

/// Afterwards the day is cached, or it is known to fail.
void TallymoorInternet::fetchDay(const String& code, const Date& date, bool upTo) {
  m_failures.forgetFailuresOn(code, date);
  const std::optional<Date> firstRow = fetchRange(code, date, upTo);
  // With nothing at or before the day in a range from it on, the last close lies before the range, if any.
  if (!upTo && !m_failures.failureOn(code, date) && !hasCachedPrice(code, date))
    fetchRange(code, firstRow ? firstRow->plusDays(-1) : date, true);
  if (!hasCachedPrice(code, date) && !m_failures.failureOn(code, date))
    m_failures.noteAbsent(code, {date, date});
}

/// The first day that the source has in the range; notes where it failed or has nothing.
std::optional<Date> TallymoorInternet::fetchRange(const String& code, const Date& date, bool upTo) {
  const DataSource source = dataSource(u"historicalPrice");
  const HistoryRange range = rangeAround(date, upTo);
  if (isStopWanted())
    throw HTTPException(u"TallymoorInternet::historicalPrice - cancelled.");
  try {
    const DataSource::Rows rows =
        watchedFetch([&](const std::stop_token& stop) { return source.history(code, range, stop); });
    keepHistory(code, rows, range);
    if (!rows.empty())
      return rows.begin()->first;
    m_failures.noteAbsent(code, range);
  } catch (const Exception&) {
    m_failures.noteFailure(code, range, std::current_exception());
    if (isStopWanted())
      m_questions.dontAsk(code);
  }
  return std::nullopt;
}

/// False also when nothing may be asked.
bool TallymoorInternet::wantsAnotherTry(const String& code, const HistoryFailures::Failure& failure) {
  switch (m_questions.afterHistory(code, failure)) {
  case FetchQuestions::Answer::Retry:
    return true;
  case FetchQuestions::Answer::Delisted:
    markBadCode(code);
    return false;
  default:
    return false;
  }
}

TallymoorInternet::RecentHistory TallymoorInternet::fetchRecentHistory(const String& code,
                                                                       const std::stop_token& stop) const {
  std::optional<DataSource> source;
  RecentHistory recent;
  {
    const BigMutexLock lock;
    source = dataSource(u"historicalPrice");
    recent.range = recentRange();
  }
  recent.rows = source->history(code, recent.range, stop);
  return recent;
}

HistoryRange TallymoorInternet::recentRange() const {
  const BigMutexLock lock;
  return rangeAround(Date(), true);
}

SharePriceCache::Closes TallymoorInternet::storeHistory(const String& code, const RecentHistory& recent) {
  const BigMutexLock lock;
  m_failures.forgetFailuresOn(code, recent.range.end);
  return keepHistory(code, recent.rows, recent.range);
}

void TallymoorInternet::forgetFailures() {
  const BigMutexLock lock;
  m_failures.forget();
  m_questions.forget();
  m_refreshes.clear();
  codesAskedForNames().clear();
}

/// The days whose close is new or another one, without those that show as zero.
SharePriceCache::Closes TallymoorInternet::keepHistory(const String& code,
                                                       const SharePriceCache::Rows& fetched,
                                                       const HistoryRange& range) {
  if (!hasAnsweredFor(code, range.start) || !hasAnsweredFor(code, range.end))
    m_answered[code].push_back(range);
  SharePriceCache::Closes changed = m_cache.merge(code, fetched, range);
  std::erase_if(changed, [](const auto& item) { return showsAsZero(item.second); });
  for (const auto& [day, close] : changed)
    m_updater.tellRecords(code, day, close);
  return changed;
}

double TallymoorInternet::getCachedPrice(const String& code, const Date& date, int column) {
  const BigMutexLock lock;
  const ShareValue* row = m_cache.share(code).find(date);
  if (!row)
    throw Exception(u"TallymoorInternet::getCachedPrice - dont have cached price for code " + code + u" at " +
                    local(date));
  switch (column) {
  case 1:
    return row->high;
  case 2:
    return row->low;
  default:
    return row->close;
  }
}

bool TallymoorInternet::hasCachedPrice(const String& code, const Date& date) {
  return cachedClose(code, date).has_value();
}

std::optional<double> TallymoorInternet::cachedClose(const String& code, const Date& date) {
  const BigMutexLock lock;
  const ShareValue* row = m_cache.shareOrEmpty(code).find(date);
  return row ? std::optional(row->close) : std::nullopt;
}

std::optional<KnownClose> TallymoorInternet::closeOn(const String& code, const Date& day) {
  const BigMutexLock lock;
  return m_cache.closeOn(code, day);
}

std::optional<KnownClose> TallymoorInternet::lastCloseBefore(const String& code, const Date& day) {
  const BigMutexLock lock;
  return m_cache.lastCloseBefore(code, day);
}

bool TallymoorInternet::hasAnsweredFor(const String& code, const Date& day) {
  const BigMutexLock lock;
  const std::vector<HistoryRange>& ranges = m_answered[code];
  return isBadCode(code) || std::any_of(ranges.begin(), ranges.end(), [&day](const HistoryRange& range) {
           return range.start <= day && day <= range.end;
         });
}

void TallymoorInternet::refreshClosesFrom(const String& code, const Date& first) {
  const BigMutexLock lock;
  if (!m_client || isBadCode(code) || m_cache.shareOrEmpty(code).unreadable)
    return;
  const Date now = Date::realToday();
  const auto [tried, isNew] = m_refreshes.try_emplace({code, first}, now);
  if (!isNew && std::exchange(tried->second, now) == now)
    return;
  showStatus(u"updating recent historical prices for " + code);
  const WaitCursor wait;
  const BackgroundPassScope askNothing;
  try {
    refreshHistoricalPrice(code, first, false);
  } catch (const Exception&) {
    // The closes stay as they are, and as open as they were.
  }
}

SharePriceCache::Rows TallymoorInternet::cachedRows(const String& code, const Date& first, const Date& last) {
  const BigMutexLock lock;
  const SharePriceCache::Rows& rows = m_cache.shareOrEmpty(code).values;
  return SharePriceCache::Rows(rows.lower_bound(first), rows.upper_bound(last));
}

void TallymoorInternet::completeHistory(const String& code, const Date& first, const Date& last) {
  const BigMutexLock lock;
  const CachedShare& known = m_cache.shareOrEmpty(code);
  // The next request for a price reports an unreadable file, so its failure is not used up here.
  if (!m_client || known.isBad || known.unreadable || !lastMissingDay(code, first, last))
    return;
  showStatus(u"updating historical prices for " + code);
  const WaitCursor wait;
  try {
    fetchMissingDays(code, first, last);
  } catch (const HTTPException&) {
    // Cancelled: the days stay missing, as those before a stock was listed do.
  }
}

/// Page by page back in time, until all are there or one is unavailable.
void TallymoorInternet::fetchMissingDays(const String& code, const Date& first, const Date& last) {
  constexpr int MOST_PAGES = 100;
  for (int page = 0; page < MOST_PAGES; ++page) {
    const std::optional<Date> missing = lastMissingDay(code, first, last);
    if (!missing)
      return;
    fetchDay(code, *missing, true);
    if (isKnownToFail(code, *missing)) {
      m_failures.endCompletionAt(code, *missing);
      return;
    }
  }
}

std::optional<Date> TallymoorInternet::lastMissingDay(const String& code, const Date& first,
                                                      const Date& last) {
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

bool TallymoorInternet::hasCachedHistory(const String& code) {
  const BigMutexLock lock;
  return !m_cache.shareOrEmpty(code).values.empty();
}

std::vector<CodeSearchResult> TallymoorInternet::stockSearch(const String& text, bool isShare, bool usOnly) {
  const BigMutexLock lock;
  for (;;) {
    const DataSource source = dataSource(u"stockSearch");
    showStatus(u"searching for stock codes matching " + text);
    WaitCursor wait;
    std::vector<CodeSearchResult> results;
    try {
      watchedFetch([&](const std::stop_token& stop) { source.search(text, isShare, usOnly, results, stop); });
      return results;
    } catch (const HTTPException&) {
      wait.end();
      if (!wantsRetry(u"There was a problem accessing the internet to search for\n" + text +
                      u". \nDo you want to retry?"))
        throw;
    } catch (const Exception&) {
      return results;
    }
  }
}

void TallymoorInternet::setCachedPrice(const String& code, const Date& date, double close) {
  const BigMutexLock lock;
  const SharePriceCache::Closes changed = m_cache.setTypedPrice(code, date, close);
  for (const auto& [day, price] : changed)
    m_updater.tellRecords(code, day, price);
  if (!changed.empty() && !Date::hasFixedDate() && date == Date())
    m_updater.setCurrentPrice(code, close);
}

std::optional<double> TallymoorInternet::priceTypedToday(const String& code) {
  const BigMutexLock lock;
  return m_cache.typedPrice(code, Date::realToday());
}

void TallymoorInternet::currentPriceUpdated(const String& code, double price) {
  const BigMutexLock lock;
  m_cache.noteCurrentPrice(code, Date(), price);
}

/// After a failed search. Who wants no other try is offered to go offline.
bool TallymoorInternet::wantsRetry(const String& question) {
  if (!FetchQuestions::mayAsk() || isStopWanted())
    return false;
  UserInteraction& user = UserInteraction::Instance();
  if (user.question(question))
    return true;
  if (user.question(u"If you are having problems with Internet access\n"
                    u"you should place Tallymoor into offline mode to speed operation.\n"
                    u"Put Tallymoor into offline mode now?"))
    goOffline();
  return false;
}

// --- Delisted codes

bool TallymoorInternet::isBadCode(const String& code) {
  const BigMutexLock lock;
  return m_cache.shareOrEmpty(code).isBad;
}

void TallymoorInternet::markBadCode(const String& code) {
  const BigMutexLock lock;
  m_cache.setBad(code, true);
}

void TallymoorInternet::clearBadCode(const String& code) {
  const BigMutexLock lock;
  m_cache.setBad(code, false);
  m_failures.forget(code);
  m_refreshes.clear();
}

std::vector<String> TallymoorInternet::badCodes() {
  const BigMutexLock lock;
  return m_cache.badCodes();
}

// --- Online, offline, and the updater

bool TallymoorInternet::isOnline() const {
  const BigMutexLock lock;
  return m_client != nullptr;
}

void TallymoorInternet::goOnline() {
  std::shared_ptr<HTTPClient> client = m_makeClient();
  client->goOnline();
  const BigMutexLock lock;
  m_client = std::move(client);
  forgetFailures();
}

void TallymoorInternet::goOffline() {
  const BigMutexLock lock;
  m_updater.stopAndJoin();
  m_client.reset();
}

bool TallymoorInternet::reconnect() {
  const BigMutexLock lock;
  goOffline();
  try {
    goOnline();
    if (!dataSourceAnswers())
      goOffline();
    // Also after a fruitless search: its passes then tell in the status line that there is no connection.
    m_updater.start();
  } catch (const Exception&) {
    goOffline();
  }
  return isOnline();
}

bool TallymoorInternet::dataSourceAnswers() {
  const BackgroundPassScope askNothing;
  return !stockSearch(u"test", true, false).empty();
}

void TallymoorInternet::pauseUpdates() {
  const BigMutexLock lock;
  m_updater.stopAndJoin();
}

void TallymoorInternet::resumeUpdates() {
  const BigMutexLock lock;
  if (m_client)
    m_updater.start();
}

// --- The cache as a whole

void TallymoorInternet::save() {
  const BigMutexLock lock;
  m_cache.save();
}

void TallymoorInternet::clear() {
  const BigMutexLock lock;
  m_cache.clear();
  m_answered.clear();
  forgetFailures();
}

} // namespace Tallymoor
