#include "market/HostQueues.h"
#include "market/RetryAfter.h"
#include "market/URL.h"
#include <algorithm>
#include <utility>

namespace Tallymoor {

namespace {

constexpr std::chrono::minutes MINUTE{1};
constexpr std::chrono::hours UNTIL_A_CHANGE{1};
constexpr unsigned TOO_MANY_REQUESTS = 429;
constexpr unsigned SERVER_FAILURE = 500;
constexpr unsigned UNAVAILABLE = 503;

Mutex programMutex;
std::shared_ptr<HostQueues> queuesOfProgram GUARDED_BY(programMutex) = std::make_shared<HostQueues>();

bool isHere(const String& host) {
  return host.startsWith(u"127.") || host.startsWith(u"localhost:") || host.startsWith(u"[::1]:");
}

String statusText(unsigned status) {
  return u"it answered with status " + String::fromLong(status);
}

} // namespace

HostQueues::Turn::~Turn() {
  m_queues.end(m_host);
}

void HostQueues::Turn::answered(const HTTPAnswer& answer) {
  const MutexLock lock(m_queues.m_mutex);
  Host& host = m_queues.hostNamed(m_host);
  const std::optional<std::chrono::seconds> wait = retryAfter(answer);
  if (answer.status == TOO_MANY_REQUESTS || (answer.status == UNAVAILABLE && wait)) {
    const auto rest = std::min<Time::duration>(wait.value_or(REST), LONGEST_REST);
    host.restsUntil = std::max(host.restsUntil, m_queues.m_clock() + rest);
    host.hasAskedForRest = true;
    host.reason = statusText(answer.status);
  } else if (answer.status >= SERVER_FAILURE) {
    m_queues.countFailure(host, statusText(answer.status));
  } else {
    host.failures = 0;
  }
}

void HostQueues::Turn::failed(const String& reason) {
  const MutexLock lock(m_queues.m_mutex);
  m_queues.countFailure(m_queues.hostNamed(m_host), reason);
}

std::shared_ptr<HostQueues> HostQueues::ofProgram() {
  const MutexLock lock(programMutex);
  return queuesOfProgram;
}

void HostQueues::startAgain() {
  const MutexLock lock(programMutex);
  queuesOfProgram = std::make_shared<HostQueues>();
}

String HostQueues::hostOf(const URL& url) {
  return url.host() + u":" + String::fromLong(url.port());
}

HostQueues::HostQueues(Clock clock) : m_clock(std::move(clock)) {}

HostQueues::Host& HostQueues::hostNamed(const String& name) {
  const auto [host, isNew] = m_hosts.try_emplace(name);
  if (isNew)
    host->second.limits.atOnce = isHere(name) ? AT_ONCE_HERE : AT_ONCE_ELSEWHERE;
  return host->second;
}

void HostQueues::setLimits(const String& host, const HostLimits& limits) {
  const MutexLock lock(m_mutex);
  HostLimits& known = hostNamed(host).limits;
  if (known == limits)
    return;
  known = limits;
  changed();
}

HostQueues::Turn HostQueues::waitForTurn(const String& name, const std::stop_token& stop) {
  MutexLock lock(m_mutex);
  Host& host = hostNamed(name);
  const std::uint64_t ticket = m_tickets++;
  host.waiting.push_back(ticket);
  try {
    for (;;) {
      checkRest(name, host);
      const Time::duration wait = untilAllowed(host);
      if (host.waiting.front() == ticket && !isFull(host) && wait <= Time::duration::zero())
        break;
      if (stop.stop_requested())
        throw HTTPException(u"HostQueues::waitForTurn - stopped.");
      const auto isChanged = [this, seen = m_changes]() REQUIRES(m_mutex) { return m_changes != seen; };
      m_changed.wait_for(lock, stop, wait > Time::duration::zero() ? wait : UNTIL_A_CHANGE, isChanged);
    }
  } catch (...) {
    leave(host, ticket);
    throw;
  }
  leave(host, ticket);
  ++host.underWay;
  if (host.limits.perMinute != 0)
    host.begun.push_back(m_clock());
  return Turn(*this, name);
}

void HostQueues::checkRest(const String& name, const Host& host) const {
  const Time::duration rest = host.restsUntil - m_clock();
  if (rest <= Time::duration::zero())
    return;
  const String text = name + u" is not asked for " +
                      String::fromLong(std::chrono::ceil<std::chrono::seconds>(rest).count()) +
                      u" s, since " + host.reason;
  throw HostResting(u"HostQueues::waitForTurn - " + text, text, host.hasAskedForRest ? TOO_MANY_REQUESTS : 0);
}

HostQueues::Time::duration HostQueues::untilAllowed(Host& host) const {
  if (host.limits.perMinute == 0)
    return {};
  const Time now = m_clock();
  while (!host.begun.empty() && host.begun.front() + MINUTE <= now)
    host.begun.pop_front();
  return host.begun.size() < host.limits.perMinute ? Time::duration::zero()
                                                   : host.begun.front() + MINUTE - now;
}

/// After failures a single request tries whether the host answers again.
bool HostQueues::isFull(const Host& host) {
  return host.underWay >= (host.failures >= FAILURES_BEFORE_REST ? 1 : host.limits.atOnce);
}

void HostQueues::leave(Host& host, std::uint64_t ticket) {
  std::erase(host.waiting, ticket);
  changed();
}

void HostQueues::countFailure(Host& host, const String& reason) {
  if (++host.failures < FAILURES_BEFORE_REST)
    return;
  host.restsUntil = std::max(host.restsUntil, m_clock() + REST);
  host.hasAskedForRest = false;
  host.reason = reason;
}

void HostQueues::end(const String& name) {
  const MutexLock lock(m_mutex);
  --hostNamed(name).underWay;
  changed();
}

void HostQueues::forgetFailures() {
  const MutexLock lock(m_mutex);
  for (auto& [name, host] : m_hosts) {
    host.failures = 0;
    if (!host.hasAskedForRest)
      host.restsUntil = {};
  }
  changed();
}

void HostQueues::timeChanged() {
  const MutexLock lock(m_mutex);
  changed();
}

void HostQueues::changed() {
  ++m_changes;
  m_changed.notify_all();
}

} // namespace Tallymoor
