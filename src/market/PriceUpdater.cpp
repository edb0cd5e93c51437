#include "market/PriceUpdater.h"
#include "foundation/Amounts.h"
#include "foundation/BigMutex.h"
#include "foundation/Exception.h"
#include "foundation/KeptTexts.h"
#include "foundation/Platform.h"
#include "foundation/RunTimeSettings.h"
#include "market/FetchStatus.h"
#include "market/PriceHistory.h"
#include "market/PricePass.h"
#include <algorithm>
#include <exception>
#include <limits>
#include <utility>

namespace Tallymoor {

namespace {

constexpr std::uint32_t MINUTE = 60000;
constexpr std::uint32_t HOUR = 60 * MINUTE;
constexpr std::uint32_t LONGEST_WAIT = std::numeric_limits<std::uint32_t>::max();

/// The number of units in milliseconds: at least one unit, and limited to 32 bits.
std::uint32_t clampedWait(std::uint32_t count, std::uint32_t unit) {
  return std::clamp<std::uint32_t>(count, 1, LONGEST_WAIT / unit) * unit;
}

} // namespace

PriceUpdater::PriceUpdater(Connection& connection, PriceHistory& history, std::uint32_t startDelay)
    : Thread(passPeriod(), false, startDelay), m_connection(connection), m_history(history) {
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
  if (Date::hasFixedDate())
    return;
  m_isAllDue = true;
  Thread::start();
}

void PriceUpdater::wakeUp() {
  const BigMutexLock lock;
  if (Date::hasFixedDate())
    return;
  m_isAllDue = true;
  Thread::wakeUp();
}

void PriceUpdater::addCode(const String& code) {
  const BigMutexLock lock;
  if (m_history.isBad(code) || !m_prices.emplace(code, 0.0).second)
    return;
  m_newCodes.insert(code);
  if (!m_isAllDue && isRunning())
    Thread::wakeUp();
}

void PriceUpdater::removeCode(const String& code) {
  const BigMutexLock lock;
  m_changeStamp += m_prices.erase(code);
  m_newCodes.erase(code);
}

bool PriceUpdater::hasCode(const String& code) const {
  const BigMutexLock lock;
  return m_prices.contains(code);
}

std::vector<String> PriceUpdater::codes() const {
  const BigMutexLock lock;
  std::vector<String> codes;
  for (const auto& [code, price] : m_prices)
    codes.push_back(code);
  return codes;
}

std::vector<String> PriceUpdater::takeCodes(bool newAlone) {
  const std::set<String> added = std::exchange(m_newCodes, {});
  return newAlone ? std::vector<String>(added.begin(), added.end()) : codes();
}

double PriceUpdater::getCurrentPrice(const String& code) const {
  const BigMutexLock lock;
  const auto known = m_prices.find(code);
  if (known == m_prices.end())
    throw Exception(kept::UNKNOWN_CODE + code);
  return known->second;
}

void PriceUpdater::setCurrentPrice(const String& code, double price) {
  const BigMutexLock lock;
  const auto known = m_prices.find(code);
  if (known == m_prices.end() || known->second == price)
    return;
  known->second = price;
  ++m_changeStamp;
}

std::uint64_t PriceUpdater::changeStamp() const {
  const BigMutexLock lock;
  return m_changeStamp;
}

double PriceUpdater::getLatestPrice(const String& code) {
  const BigMutexLock lock;
  double price = hasCode(code) ? getCurrentPrice(code) : 0.0;
  if (showsAsZero(price))
    price = m_history.closeOf(code, Date(), true);
  if (showsAsZero(price))
    throw Exception(u"PriceUpdater::getLatestPrice - could not get price for " + code);
  return price;
}

void PriceUpdater::addObserver(PricesObserver* observer, Rank rank) {
  const BigMutexLock lock;
  m_observers.add(observer, rank);
}

void PriceUpdater::removeObserver(PricesObserver* observer) {
  const BigMutexLock lock;
  m_observers.remove(observer);
}

bool PriceUpdater::isObserving(const PricesObserver* observer) const {
  const BigMutexLock lock;
  return m_observers.contains(observer);
}

std::vector<PriceUpdater::PricesObserver*> PriceUpdater::observers() const {
  const BigMutexLock lock;
  return m_observers.all();
}

void PriceUpdater::tellRecords(const String& code, const Date& date, double close) {
  const BackgroundPassScope scope;
  m_observers.tellRecords(code, date, close);
}

void PriceUpdater::tellPricesForgotten() {
  const BackgroundPassScope scope;
  m_observers.tellPricesForgotten();
}

void PriceUpdater::tellHistoryArrived(const String& code) {
  const BackgroundPassScope scope;
  m_observers.tellHistoryArrived(code);
}

void PriceUpdater::threadFunction() {
  runPass(takeNewAlone());
}

void PriceUpdater::runPass() {
  runPass(false);
}

/// True for a wake-up by new codes. At the end of the period there are none.
bool PriceUpdater::takeNewAlone() {
  const BigMutexLock lock;
  return !std::exchange(m_isAllDue, false) && !m_newCodes.empty();
}

void PriceUpdater::runPass(bool newAlone) {
  const std::stop_token stop = passToken();
  if (stop.stop_requested())
    return;
  PricePass pass(m_connection, m_history, *this, stop);
  String failure;
  try {
    pass.run({newAlone, !newAlone && historicalCheckIsDue(), m_networkFailed});
    failure = pass.failureText();
  } catch (const Exception& exception) {
    failure = exception.message();
  } catch (const std::exception& exception) {
    failure = String(exception.what());
  }
  m_networkFailed = pass.hasNetworkFailed();
  if (stop.stop_requested())
    return;
  if (!failure.empty())
    tellStatus(u"PriceUpdater::threadFunction failed: " + failure);
  const std::uint32_t now = Platform::Instance().tickCount();
  if (!newAlone)
    m_allDone = now;
  // A pass over new codes does not put off the next one over all.
  setPeriod(passPeriod() - std::min(now - m_allDone, passPeriod() - 1));
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
