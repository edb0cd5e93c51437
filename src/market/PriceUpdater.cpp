#include "market/PriceUpdater.h"
#include "foundation/Amounts.h"
#include "foundation/BigMutex.h"
#include "foundation/Exception.h"
#include "foundation/Platform.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/UserInteraction.h"
#include "market/TallymoorInternet.h"
#include <algorithm>
#include <exception>
#include <limits>
#include <optional>

namespace Tallymoor {

namespace {

constexpr std::uint32_t MINUTE = 60000;
constexpr std::uint32_t HOUR = 60 * MINUTE;
constexpr std::uint32_t LONGEST_WAIT = std::numeric_limits<std::uint32_t>::max();

/// So many units in milliseconds, at least one unit and no more than 32 bits hold.
std::uint32_t clampedWait(std::uint32_t count, std::uint32_t unit) {
  return std::clamp<std::uint32_t>(count, 1, LONGEST_WAIT / unit) * unit;
}

void tellStatus(const String& text) {
  if (UserInteraction::exists())
    UserInteraction::Instance().setStatusText(text);
}

void tellFailure(const String& reason) {
  tellStatus(u"PriceUpdater::threadFunction failed: " + reason);
}

/// Does the work and gives the reason of its failure, if it fails.
template <class Work>
std::optional<String> failureOf(Work work) {
  try {
    work();
  } catch (const Exception& exception) {
    return exception.message();
  } catch (const std::exception& exception) {
    return String(exception.what());
  }
  return std::nullopt;
}

} // namespace

PriceUpdater::PricesObserver::~PricesObserver() = default;

void PriceUpdater::PricesObserver::pricesUpdateFinished() {}

bool PriceUpdater::PricesObserver::wantsHistory(const String&) const {
  return false;
}

void PriceUpdater::PricesObserver::historicalPriceChanged(const String&, const Date&, double) {}

PriceUpdater::PriceUpdater(TallymoorInternet& gateway, std::uint32_t startDelay)
    : Thread(passPeriod(), false, startDelay), m_gateway(gateway) {
  scheduleHistoricalCheck();
}

PriceUpdater::~PriceUpdater() {
  stopAndJoin();
}

std::uint32_t PriceUpdater::passPeriod() {
  return clampedWait(currentPriceUpdateMins, MINUTE);
}

void PriceUpdater::start() {
  const BigMutexLock lock;
  if (!Date::hasFixedDate())
    Thread::start();
}

void PriceUpdater::wakeUp() {
  const BigMutexLock lock;
  if (!Date::hasFixedDate())
    Thread::wakeUp();
}

void PriceUpdater::addCode(const String& code) {
  const BigMutexLock lock;
  if (!m_gateway.isBadCode(code))
    m_prices.emplace(code, 0.0);
}

void PriceUpdater::removeCode(const String& code) {
  const BigMutexLock lock;
  m_prices.erase(code);
}

bool PriceUpdater::hasCode(const String& code) const {
  const BigMutexLock lock;
  return m_prices.contains(code);
}

double PriceUpdater::getCurrentPrice(const String& code) const {
  const BigMutexLock lock;
  const auto known = m_prices.find(code);
  if (known == m_prices.end())
    throw Exception(u"PriceUpdater::getCurrentPrice - dont' have this code: " + code);
  return known->second;
}

void PriceUpdater::setCurrentPrice(const String& code, double price) {
  const BigMutexLock lock;
  const auto known = m_prices.find(code);
  if (known != m_prices.end())
    known->second = price;
}

double PriceUpdater::getLatestPrice(const String& code) {
  const BigMutexLock lock;
  double price = hasCode(code) ? getCurrentPrice(code) : 0.0;
  if (showsAsZero(price))
    price = m_gateway.historicalPrice(code, Date(), true);
  if (showsAsZero(price))
    throw Exception(u"PriceUpdater::getLatestPrice - could not get price for " + code);
  return price;
}

void PriceUpdater::addObserver(PricesObserver* observer, Rank rank) {
  const BigMutexLock lock;
  if (isObserving(observer))
    return;
  const auto behindItsRank =
      std::upper_bound(m_registrations.begin(), m_registrations.end(), rank,
                       [](Rank wanted, const Registration& r) { return wanted < r.rank; });
  m_registrations.insert(behindItsRank, Registration{observer, rank});
}

void PriceUpdater::removeObserver(PricesObserver* observer) {
  const BigMutexLock lock;
  std::erase_if(m_registrations, [observer](const Registration& r) { return r.observer == observer; });
}

void PriceUpdater::tellRecords(const String& code, const Date& date, double close) {
  const BackgroundPassScope scope;
  // By place, since an observer may remove itself.
  for (std::size_t i = 0; i < m_registrations.size(); ++i)
    if (m_registrations[i].rank == Rank::Records)
      m_registrations[i].observer->historicalPriceChanged(code, date, close);
}

bool PriceUpdater::isObserving(const PricesObserver* observer) const {
  return std::any_of(m_registrations.begin(), m_registrations.end(),
                     [observer](const Registration& r) { return r.observer == observer; });
}

void PriceUpdater::threadFunction() {
  runPass();
}

void PriceUpdater::runPass() {
  bool goOn = false;
  const std::optional<String> failure = failureOf([&] { goOn = walkCodes(); });
  if (failure ? stopRequested() : !goOn)
    return;
  if (failure)
    tellFailure(*failure);
  setPeriod(passPeriod());
}

/// Does a piece of work under the big mutex with the background flag set. False, with nothing done, when the
/// thread has been told to stop; that is looked at again under the mutex, since the GUI thread may have held
/// it for a while.
template <class Work>
bool PriceUpdater::inStretch(Work work) {
  if (stopRequested())
    return false;
  const BackgroundPassScope scope;
  if (stopRequested())
    return false;
  work();
  return true;
}

bool PriceUpdater::walkCodes() {
  std::vector<String> codes;
  Observers observers;
  const bool copied = inStretch([&] {
    for (const auto& [code, price] : m_prices)
      codes.push_back(code);
    for (const Registration& registration : m_registrations)
      observers.push_back(registration.observer);
  });
  if (!copied)
    return false;
  const bool historicalDue = historicalCheckIsDue();
  PassFailures failures;
  for (const String& code : codes) {
    if (!attempt(code, failures, [&] { return updateCurrentPrice(code, observers); }))
      return false;
    // A source that has just answered may also have what was missing.
    const bool wanted = historicalDue || (!failures.codes.contains(code) && isHistoryWanted(code, observers));
    if (wanted && !attempt(code, failures, [&] { return refreshRecentCloses(code, observers); }))
      return false;
  }
  if (!tellObservers(observers, [](PricesObserver& observer) { observer.pricesUpdateFinished(); }))
    return false;
  if (!failures.codes.empty())
    tellFailure(failures.text());
  return true;
}

String PriceUpdater::PassFailures::text() const {
  if (codes.size() == 1)
    return first;
  return first + u" (and " + String::fromLong(static_cast<std::int64_t>(codes.size()) - 1) + u" more)";
}

/// Does a step of a pass for one code. A failure is the code's own and is kept for the end of the pass, but
/// for want of a connection, without which the other codes have no chance either. False when the thread has
/// been told to stop.
template <class Step>
bool PriceUpdater::attempt(const String& code, PassFailures& failures, Step step) {
  bool goOn = false;
  const std::optional<String> reason = failureOf([&] { goOn = step(); });
  if (!reason)
    return goOn;
  if (stopRequested())
    return false;
  if (!m_gateway.isOnline())
    throw Exception(*reason);
  if (failures.codes.empty())
    failures.first = code + u": " + *reason;
  failures.codes.insert(code);
  return true;
}

/// Each call is a stretch of its own, so that the GUI thread gets its turn; an observer that took itself away
/// in one of those turns is passed over.
template <class Tell>
bool PriceUpdater::tellObservers(const Observers& observers, Tell tell) {
  for (PricesObserver* observer : observers) {
    const bool goOn = inStretch([&] {
      if (isObserving(observer))
        tell(*observer);
    });
    if (!goOn)
      return false;
  }
  return true;
}

bool PriceUpdater::updateCurrentPrice(const String& code, const Observers& observers) {
  if (stopRequested())
    return false;
  tellStatus(u"updating current price for " + code);
  const double fetched = m_gateway.currentPrice(code, false, true, passToken());
  // What the user has typed for the day stays.
  const double price = m_gateway.priceTypedToday(code).value_or(fetched);
  if (showsAsZero(price))
    return true;
  return inStretch([&] { setCurrentPrice(code, price); }) &&
         tellObservers(observers,
                       [&](PricesObserver& observer) { observer.currentPriceUpdated(code, price); });
}

bool PriceUpdater::refreshRecentCloses(const String& code, const Observers& observers) {
  if (stopRequested())
    return false;
  if (m_gateway.isBadCode(code))
    return true;
  tellStatus(u"updating recent historical prices for " + code);
  const TallymoorInternet::RecentHistory recent = m_gateway.fetchRecentHistory(code, passToken());
  // One stretch for all of it: what the observers hear must be what they find in the cache.
  bool goOn = true;
  return inStretch([&] {
           if (m_gateway.isBadCode(code))
             return;
           goOn = tellChanges(code, m_gateway.storeHistory(code, recent), observers);
         }) &&
         goOn;
}

bool PriceUpdater::tellChanges(const String& code, const SharePriceCache::Closes& changed,
                               const Observers& observers) {
  const std::map<Date, double> byDay(changed.begin(), changed.end());
  return std::all_of(byDay.rbegin(), byDay.rend(), [&](const auto& item) {
    return tellObservers(observers, [&](PricesObserver& observer) {
      observer.historicalPriceChanged(code, item.first, item.second);
    });
  });
}

/// False also when the thread has been told to stop.
bool PriceUpdater::isHistoryWanted(const String& code, const Observers& observers) {
  bool wanted = false;
  tellObservers(observers, [&](const PricesObserver& observer) { wanted |= observer.wantsHistory(code); });
  return wanted;
}

/// Compares elapsed times, which holds when the tick wraps around.
bool PriceUpdater::historicalCheckIsDue() {
  if (Platform::Instance().tickCount() - m_lastHistoricalCheck <= m_historicalInterval)
    return false;
  scheduleHistoricalCheck();
  return true;
}

void PriceUpdater::scheduleHistoricalCheck() {
  m_lastHistoricalCheck = Platform::Instance().tickCount();
  m_historicalInterval = clampedWait(historicalPriceUpdateHours, HOUR);
}

} // namespace Tallymoor
