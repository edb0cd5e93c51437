#include "market/TallymoorInternet.h"
#include "foundation/Amounts.h"
#include "foundation/BigMutex.h"
#include "foundation/Constants.h"
#include "foundation/Exception.h"
#include "foundation/NotYetKnown.h"
#include "foundation/Platform.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/UserInteraction.h"
#include "market/DataSource.h"
#include "market/HTTPClient.h"
#include "market/HostQueues.h"
#include "market/LocatorSet.h"
#include "market/PriceStatus.h"
#include "market/SourceList.h"
#include "market/WatchedFetch.h"
#include <atomic>
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
  if (!gateway)
    return true;
  gateway->m_fetcher.stopAndJoin();
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
  std::unique_ptr<const LocatorSet> fresh = Connection::readLocators();
  const BigMutexLock lock;
  Instance().m_connection.setLocators(std::move(fresh));
  Instance().forgetFailures();
}

TallymoorInternet::TallymoorInternet(const Options& options)
    : m_connection(options.makeClient),
      m_history(cacheDirectory(Platform::Instance(), APP_NAME),
                dataDirectory(Platform::Instance(), APP_NAME) + PRICE_DECISIONS_FILE, m_connection,
                m_questions,
                [this](const String& code, const Date& day, double close) {
                  m_updater.tellRecords(code, day, close);
                }),
      m_toldDividends(dataDirectory(Platform::Instance(), APP_NAME) + TOLD_DIVIDENDS_FILE),
      m_updater(m_connection, m_history, options.updaterStartDelay),
      m_fetcher(m_connection, m_history, m_updater),
      m_status(std::make_unique<PriceStatus>(m_connection, m_history, m_updater, m_fetcher)) {
  try {
    m_connection.goOnline();
  } catch (const Exception&) {
    // A machine without a connection starts offline.
  }
  m_connection.setLocators(Connection::readLocators());
  m_updater.addObserver(this, PriceUpdater::Rank::Cache);
  // Last of all: from here on the thread may use any member.
  if (options.startUpdater)
    resumeUpdates();
}

TallymoorInternet::~TallymoorInternet() {
  m_fetcher.stopAndJoin();
  m_updater.stopAndJoin();
}

// --- Current prices and searches

/// For use with or without the big mutex.
DataSource TallymoorInternet::dataSource(const String& operation) const {
  const BigMutexLock lock;
  return m_connection.source(operation);
}

double TallymoorInternet::currentPrice(const String& code, bool useUpdater, bool silent) {
  for (;;) {
    if (const std::optional<double> known = beginCurrentPrice(code, useUpdater))
      return *known;
    const DataSource source = dataSource(u"currentPrice");
    try {
      return admitted(code,
                      silent ? source.currentPrice(code) : watchedFetch([&](const std::stop_token& stop) {
                        return source.currentPrice(code, stop);
                      }));
    } catch (const HTTPException& failure) {
      if (silent || isStopWanted() || !m_questions.wantsQuoteAgain(code, failure))
        throw;
      HostQueues::ofProgram()->forgetFailures();
    }
  }
}

double TallymoorInternet::admitted(const String& code, const AnsweredPrice& price) {
  const BigMutexLock lock;
  return m_history.admittedPrice(code, price);
}

std::optional<double> TallymoorInternet::beginCurrentPrice(const String& code, bool useUpdater) {
  const BigMutexLock lock;
  m_history.cache().share(code);
  if (!useUpdater || !m_updater.hasCode(code))
    return std::nullopt;
  // Exactly 0.0 is the mark of a code whose price has not been fetched yet.
  const double price = m_updater.getCurrentPrice(code);
  return price == 0.0 ? std::nullopt : std::optional(price);
}

std::vector<CodeSearchResult> TallymoorInternet::stockSearch(const String& text, bool isShare, bool usOnly) {
  const BigMutexLock lock;
  for (;;) {
    const DataSource source = dataSource(u"stockSearch");
    FetchQuestions::showStatus(u"searching for stock codes matching " + text);
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
      HostQueues::ofProgram()->forgetFailures();
    } catch (const Exception&) {
      return results;
    }
  }
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

// --- Past prices

double TallymoorInternet::historicalPrice(const String& code, const Date& date, bool upTo) {
  const BigMutexLock lock;
  return m_history.closeOf(code, date, upTo);
}

HistoryRange TallymoorInternet::recentRange() const {
  const BigMutexLock lock;
  return m_connection.recentPage();
}

void TallymoorInternet::forgetFailures() {
  const BigMutexLock lock;
  m_connection.sources().log().forgetFailures();
  HostQueues::ofProgram()->forgetFailures();
  m_history.forgetFailures();
  m_questions.forget();
  m_updater.names().forget();
}

double TallymoorInternet::getCachedPrice(const String& code, const Date& date, int column) {
  const BigMutexLock lock;
  return m_history.cachedPrice(code, date, column);
}

bool TallymoorInternet::hasCachedPrice(const String& code, const Date& date) {
  return cachedClose(code, date).has_value();
}

std::optional<double> TallymoorInternet::cachedClose(const String& code, const Date& date) {
  const BigMutexLock lock;
  return m_history.cachedClose(code, date);
}

std::optional<KnownClose> TallymoorInternet::closeOn(const String& code, const Date& day) {
  const BigMutexLock lock;
  return m_history.cache().closeOn(code, day);
}

std::optional<KnownClose> TallymoorInternet::lastCloseBefore(const String& code, const Date& day) {
  const BigMutexLock lock;
  return m_history.cache().lastCloseBefore(code, day);
}

std::optional<KnownClose> TallymoorInternet::lastTradedClose(const String& code, const Date& day) {
  const BigMutexLock lock;
  return m_history.cache().lastTradedClose(code, day);
}

bool TallymoorInternet::hasAnsweredFor(const String& code, const Date& day) {
  const BigMutexLock lock;
  return m_history.hasAnsweredFor(code, day);
}

SharePriceCache::Rows TallymoorInternet::cachedRows(const String& code, const Date& first, const Date& last) {
  const BigMutexLock lock;
  return m_history.cachedRows(code, first, last);
}

bool TallymoorInternet::requestHistory(const HistoryNeed& need) {
  const BigMutexLock lock;
  return m_fetcher.request(need);
}

void TallymoorInternet::requireHistory(const HistoryNeed& need) {
  if (requestHistory(need))
    throw NotYetKnown(u"TallymoorInternet::requireHistory - the prices of " + need.code +
                      u" are being fetched");
}

void TallymoorInternet::requirePrice(const String& code, const Date& day) {
  const BigMutexLock lock;
  const bool isLive = !Date::hasFixedDate() && day == Date();
  if (isLive && m_updater.hasCode(code) && !showsAsZero(m_updater.getCurrentPrice(code)))
    return;
  m_history.offerAnotherTry(code, day);
  requireHistory({code, day, day, HistoryNeed::Kind::UpTo});
}

bool TallymoorInternet::completeHistory(const std::vector<HistoryNeed>& needs, Progress* progress) {
  const BigMutexLock lock;
  return m_history.completeHistory(needs, progress);
}

bool TallymoorInternet::isToBeFetched(const String& code, const Date& day) {
  const BigMutexLock lock;
  return m_history.isMissing({code, day, day});
}

bool TallymoorInternet::hasCachedHistory(const String& code) {
  const BigMutexLock lock;
  return !m_history.cache().shareOrEmpty(code).values.empty();
}

std::uint64_t TallymoorInternet::changeStamp() const {
  const BigMutexLock lock;
  return m_history.changeStamp() + m_updater.changeStamp() + m_fetcher.changeStamp();
}

void TallymoorInternet::setCachedPrice(const String& code, const Date& date, double close) {
  const BigMutexLock lock;
  if (m_history.setTypedPrice(code, date, close) && !Date::hasFixedDate() && date == Date())
    m_updater.setCurrentPrice(code, close);
}

void TallymoorInternet::setCachedRange(const String& code, const Date& date, double high, double low) {
  const BigMutexLock lock;
  m_history.cache().setTypedRange(code, date, high, low);
}

void TallymoorInternet::removeTypedPrice(const String& code, const Date& date) {
  const BigMutexLock lock;
  const SharePriceCache::Closes removed = m_history.removeTypedPrice(code, date);
  if (removed.empty())
    return;
  m_history.completeHistory(
      {{code, removed.front().first, removed.back().first, HistoryNeed::Kind::Backward}}, nullptr);
  if (date != Date::realToday() || !m_updater.hasCode(code))
    return;
  m_updater.setCurrentPrice(code, 0.0); // until the next one comes
  if (m_connection.isOnline())
    m_updater.wakeUp();
}

void TallymoorInternet::currentPriceUpdated(const String& code, double price) {
  const BigMutexLock lock;
  m_history.cache().noteCurrentPrice(code, Date(), price);
}

// --- Doubtful prices

std::map<String, PriceQuarantine::Prices> TallymoorInternet::doubtfulPrices() {
  const BigMutexLock lock;
  return m_history.quarantine().waiting();
}

void TallymoorInternet::setDoubtWatcher(std::function<void()> watcher) {
  const BigMutexLock lock;
  m_history.quarantine().changed = std::move(watcher);
}

void TallymoorInternet::acceptDoubtful(const String& code, bool fromNowOn) {
  const BigMutexLock lock;
  PriceQuarantine& quarantine = m_history.quarantine();
  const auto waiting = quarantine.waiting().find(code);
  if (waiting == quarantine.waiting().end())
    return;
  // Stored first: the decision may not be writable.
  const PriceQuarantine::Prices prices = waiting->second;
  m_history.keepAccepted(code, prices);
  if (const auto ofToday = prices.find(Date::realToday()); ofToday != prices.end() && m_updater.hasCode(code))
    m_updater.setCurrentPrice(code, ofToday->second.value.close);
  if (fromNowOn)
    quarantine.acceptFromNowOn(code);
  else
    quarantine.accept(code);
}

void TallymoorInternet::refuseDoubtful(const String& code) {
  const BigMutexLock lock;
  m_history.quarantine().refuse(code);
}

// --- Dividends and splits

std::map<String, ToldDividends::OfCode> TallymoorInternet::toldDividends() {
  const BigMutexLock lock;
  m_toldDividends.add(m_connection.sources().log().dividends());
  return m_toldDividends.waiting();
}

void TallymoorInternet::settleToldDividend(const String& code, const Date& day) {
  const BigMutexLock lock;
  m_toldDividends.settle(code, day);
}

std::optional<double> TallymoorInternet::toldSplit(const String& code, const Date& first, const Date& last) {
  const BigMutexLock lock;
  return m_connection.sources().log().splitBetween(code, first, last);
}

std::vector<std::pair<String, Date>> TallymoorInternet::toldSplitDays() {
  const BigMutexLock lock;
  return m_connection.sources().log().splitDays();
}

// --- Delisted codes

bool TallymoorInternet::isBadCode(const String& code) {
  const BigMutexLock lock;
  return m_history.isBad(code);
}

void TallymoorInternet::markBadCode(const String& code) {
  const BigMutexLock lock;
  m_history.cache().setBad(code, true);
}

void TallymoorInternet::clearBadCode(const String& code) {
  const BigMutexLock lock;
  m_history.clearBad(code);
}

std::vector<String> TallymoorInternet::badCodes() {
  const BigMutexLock lock;
  return m_history.cache().badCodes();
}

// --- Online, offline, and the updater

bool TallymoorInternet::isOnline() const {
  const BigMutexLock lock;
  return m_connection.isOnline();
}

void TallymoorInternet::goOffline() {
  const BigMutexLock lock;
  m_updater.stopAndJoin();
  m_connection.goOffline(); // first, so that observers don't ask for the same again
  m_fetcher.cancel();
}

bool TallymoorInternet::reconnect() {
  const BigMutexLock lock;
  goOffline();
  try {
    m_connection.goOnline();
    forgetFailures();
    if (!dataSourceAnswers())
      goOffline();
    // Also after a fruitless search: its passes then tell in the status line that there is no connection.
    m_updater.start();
  } catch (const Exception&) {
    goOffline();
  }
  return isOnline();
}

/// Sources other than the locators tell their failures themselves, and not all of them search.
bool TallymoorInternet::dataSourceAnswers() {
  const BackgroundPassScope askNothing;
  if (!m_connection.sources().isLocatorsAlone())
    return true;
  return !stockSearch(u"test", true, false).empty();
}

void TallymoorInternet::pauseUpdates() {
  const BigMutexLock lock;
  m_fetcher.cancel();
  m_updater.stopAndJoin();
}

void TallymoorInternet::resumeUpdates() {
  const BigMutexLock lock;
  if (m_connection.isOnline())
    m_updater.start();
}

// --- The cache as a whole

void TallymoorInternet::save() {
  const BigMutexLock lock;
  toldDividends(); // keeps those that nobody has asked for yet
  m_history.cache().save();
}

void TallymoorInternet::save(const String& code) {
  const BigMutexLock lock;
  m_history.cache().save(code);
}

void TallymoorInternet::clear() {
  const BigMutexLock lock;
  m_history.clear();
  forgetFailures();
}

} // namespace Tallymoor
