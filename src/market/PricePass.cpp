#include "market/PricePass.h"
#include "foundation/Amounts.h"
#include "foundation/BackgroundStretch.h"
#include "foundation/Exception.h"
#include "market/Connection.h"
#include "market/FetchStatus.h"
#include "market/NetworkFailure.h"
#include "market/PriceHistory.h"
#include "market/PriceUpdater.h"
#include <algorithm>
#include <map>
#include <utility>

namespace Tallymoor {

namespace {

/// Does the work; null, or what it threw.
template <class Work>
std::exception_ptr failureOf(Work work) {
  try {
    work();
  } catch (...) {
    return std::current_exception();
  }
  return nullptr;
}

/// Empty if it is neither an Exception nor a standard exception.
std::optional<String> reasonOf(const std::exception_ptr& failure) {
  try {
    std::rethrow_exception(failure);
  } catch (const Exception& exception) {
    return exception.message();
  } catch (const std::exception& exception) {
    return String(exception.what());
  } catch (...) {
    return std::nullopt;
  }
}

} // namespace

PricePass::PricePass(Connection& connection, PriceHistory& history, PriceUpdater& updater,
                     std::stop_token stop)
    : m_connection(connection), m_history(history), m_updater(updater), m_stop(std::move(stop)) {}

void PricePass::run(const Scope& scope) {
  m_isHistoryDue = scope.isHistoryDue;
  m_networkFailed = scope.hasNetworkFailed;
  const std::stop_callback stopFetches(m_stop, [this] { m_fetches.stop(); });
  inBackgroundStretch(m_stop, [&]() REQUIRES(bigMutex()) {
    m_codes = m_updater.takeCodes(scope.newAlone);
    m_observers = m_updater.observers();
  });
  while (!m_stop.stop_requested() && (m_begun < m_codes.size() || !m_underWay.empty())) {
    beginFetches();
    if (m_underWay.empty())
      continue;
    tellStatus(u"updating current price for " + m_underWay.front());
    m_fetches.applyNext(FetchQueue::UNTIL_IT_ENDS);
  }
  tellObservers([](PricesObserver& observer) { observer.pricesUpdateFinished(); });
}

/// Also looks whether the program is online still, without which what has been fetched is not wanted either.
void PricePass::beginFetches() {
  std::shared_ptr<const DataSource> source;
  inBackgroundStretch(m_stop, [&]() REQUIRES(bigMutex()) {
    source = std::make_shared<const DataSource>(m_connection.source(u"currentPrice"));
  });
  while (source && m_begun < m_codes.size() &&
         m_underWay.size() < (m_networkFailed ? 1 : FetchQueue::AT_ONCE))
    begin(source, m_codes[m_begun++]);
}

void PricePass::begin(const std::shared_ptr<const DataSource>& source, const String& code) {
  m_underWay.push_back(code);
  m_fetches.add([this, source, request = requestFor(code)](const std::stop_token& stop) {
    Answer answer = fetch(*source, request, stop);
    return [this, request, answer = std::move(answer)] { keep(request, answer); };
  });
}

PricePass::Request PricePass::requestFor(const String& code) {
  Request request;
  request.code = code;
  request.failure = failureOf([&] {
    request.history = askForHistory(code);
    inBackgroundStretch(m_stop, [&]() REQUIRES(bigMutex()) {
      m_history.cache().share(code); // fails for an unreadable cache file
      request.recent = m_connection.recentPage();
      request.wantsName = m_updater.names().isWanted(code);
    });
  });
  return request;
}

/// For an observer only after the price has come, since then the source may also have the missing closes.
PricePass::AskForHistory PricePass::askForHistory(const String& code) {
  bool isBad = false;
  inBackgroundStretch(m_stop, [&]() REQUIRES(bigMutex()) { isBad = m_history.isBad(code); });
  if (isBad)
    return AskForHistory::Never;
  if (m_isHistoryDue)
    return AskForHistory::Always;
  bool wanted = false;
  tellObservers([&](const PricesObserver& observer) { wanted |= observer.wantsHistory(code); });
  return wanted ? AskForHistory::AfterPrice : AskForHistory::Never;
}

/// On a thread of the queue.
PricePass::Answer PricePass::fetch(const DataSource& source, const Request& request,
                                   const std::stop_token& stop) {
  Answer answer;
  answer.priceFailure = request.failure
                            ? request.failure
                            : failureOf([&] { answer.price = source.currentPrice(request.code, stop); });
  if (request.wantsName && !answer.priceFailure) {
    // A failure is not reported; results from before it are used.
    failureOf([&] {
      source.search(request.code, !request.code.startsWith(u"^"), false, answer.names, stop,
                    DataSource::SearchFor::NameOfCode);
    });
  }
  answer.hasHistory = request.history == AskForHistory::Always || source.hasNewHistory(request.code) ||
                      (request.history == AskForHistory::AfterPrice && !answer.priceFailure);
  if (answer.hasHistory)
    answer.historyFailure =
        failureOf([&] { answer.history = source.history(request.code, request.recent, stop); });
  return answer;
}

void PricePass::keep(const Request& request, const Answer& answer) {
  m_underWay.pop_front();
  m_networkFailed = isFailureOfNetwork(answer.priceFailure) || isFailureOfNetwork(answer.historyFailure);
  attempt(request.code, [&] { keepPrice(request, answer); });
  if (answer.hasHistory)
    attempt(request.code, [&] { keepHistory(request, answer); });
}

void PricePass::keepPrice(const Request& request, const Answer& answer) {
  if (answer.priceFailure)
    std::rethrow_exception(answer.priceFailure);
  const String& code = request.code;
  double price = 0.0;
  inBackgroundStretch(m_stop, [&]() REQUIRES(bigMutex()) {
    if (request.wantsName)
      m_updater.names().keep(code, answer.names);
    // What the user has typed for the day stays.
    const std::optional<double> typed = m_history.cache().typedPrice(code, Date::realToday());
    price = typed ? *typed : m_history.admittedPrice(code, answer.price);
    if (!showsAsZero(price))
      m_updater.setCurrentPrice(code, price);
  });
  if (!showsAsZero(price))
    tellObservers([&](PricesObserver& observer) { observer.currentPriceUpdated(code, price); });
}

void PricePass::keepHistory(const Request& request, const Answer& answer) {
  const String& code = request.code;
  tellStatus(u"updating recent historical prices for " + code);
  if (answer.historyFailure)
    std::rethrow_exception(answer.historyFailure);
  // One stretch for all of it: what the observers hear must be what they find in the cache.
  inBackgroundStretch(m_stop, [&]() REQUIRES(bigMutex()) {
    if (m_history.isBad(code))
      return;
    const SharePriceCache::Closes changed = m_history.keepRecent(code, request.recent, answer.history);
    const std::map<Date, double> byDay(changed.begin(), changed.end());
    for (auto close = byDay.rbegin(); close != byDay.rend(); ++close)
      tellObservers([&](PricesObserver& observer) {
        observer.historicalPriceChanged(code, close->first, close->second);
      });
  });
}

/// Does a step of a pass for one code. A failure is the code's own and is kept for the end of the pass, but
/// for want of a connection, without which the other codes have no chance either.
template <class Step>
void PricePass::attempt(const String& code, Step step) {
  const std::exception_ptr failure = failureOf(step);
  if (!failure || m_stop.stop_requested())
    return;
  const std::optional<String> reason = reasonOf(failure);
  if (!reason)
    std::rethrow_exception(failure);
  bool isOnline = true;
  inBackgroundStretch(m_stop, [&]() REQUIRES(bigMutex()) { isOnline = m_connection.isOnline(); });
  if (!isOnline)
    throw Exception(*reason);
  if (m_failed.empty())
    m_firstFailure = code + u": " + *reason;
  m_failed.insert(code);
}

/// Each call is a stretch of its own, so that the GUI thread gets its turn; an observer that took itself away
/// in one of those turns is passed over.
template <class Tell>
void PricePass::tellObservers(Tell tell) {
  for (PricesObserver* observer : m_observers)
    inBackgroundStretch(m_stop, [&]() REQUIRES(bigMutex()) {
      if (m_updater.isObserving(observer))
        tell(*observer);
    });
}

String PricePass::failureText() const {
  if (m_failed.size() <= 1)
    return m_firstFailure;
  return m_firstFailure + u" (and " + String::fromLong(static_cast<std::int64_t>(m_failed.size()) - 1) +
         u" more)";
}

} // namespace Tallymoor
