#include "foundation/Thread.h"
#include "foundation/BigMutex.h"
#include "foundation/EndingSignals.h"
#include <chrono>
#include <memory>

namespace Tallymoor {

Thread::Thread(std::uint32_t period, bool deleteWhenDone, std::uint32_t startDelay)
    : m_period(period), m_startDelay(startDelay), m_deleteWhenDone(deleteWhenDone) {}

Thread::~Thread() {
  stop();
  join();
  if (m_thread.get_id() == std::this_thread::get_id())
    m_thread.detach(); // The thread deletes this object at its end.
}

void Thread::start() {
  const std::lock_guard lock(m_mutex);
  startLocked();
}

void Thread::startLocked() {
  if (m_running && !m_thread.get_stop_token().stop_requested())
    return;
  // The previous run needs this lock to end, so the new thread joins it instead of this one.
  const auto previous = std::make_shared<std::jthread>(std::move(m_thread));
  try {
    const EndingSignalsBlocked blocked;
    m_thread = std::jthread([this, previous](const std::stop_token& stop) {
      *previous = std::jthread();
      run(stop);
    });
  } catch (...) {
    m_thread = std::move(*previous);
    throw;
  }
  m_running = true;
  m_woken = false;
}

void Thread::stop() {
  const std::lock_guard lock(m_mutex);
  if (!m_running)
    return;
  m_thread.request_stop();
  m_pass.request_stop();
}

void Thread::abortPass() {
  const std::lock_guard lock(m_mutex);
  m_pass.request_stop();
}

void Thread::wakeUp() {
  const std::lock_guard lock(m_mutex);
  if (m_running && m_thread.get_stop_token().stop_requested())
    return;
  if (m_thread.joinable()) // Not joinable if never started.
    startLocked();
  m_woken = true;
  m_changed.notify_all();
}

void Thread::join() {
  std::unique_lock lock(m_mutex);
  if (m_thread.get_id() != std::this_thread::get_id())
    m_changed.wait(lock, [this] { return !m_running; });
}

void Thread::stopAndJoin() {
  stop();
  const BigMutexRelease release;
  join();
}

bool Thread::isRunning() const {
  const std::lock_guard lock(m_mutex);
  return m_running;
}

void Thread::sleep(std::uint32_t milliseconds) {
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

void Thread::threadFunction() {}

bool Thread::stopRequested() const {
  const std::lock_guard lock(m_mutex);
  return m_stop.stop_requested();
}

std::stop_token Thread::passToken() const {
  const std::lock_guard lock(m_mutex);
  return m_pass.get_token();
}

std::uint32_t Thread::period() const {
  const std::lock_guard lock(m_mutex);
  return m_period;
}

void Thread::setPeriod(std::uint32_t milliseconds) {
  const std::lock_guard lock(m_mutex);
  m_period = milliseconds;
  m_changed.notify_all();
}

void Thread::run(const std::stop_token& stop) {
  Lock lock(m_mutex);
  m_stop = stop;
  m_changed.wait_for(lock, stop, std::chrono::milliseconds(m_startDelay), [this] { return m_woken; });
  passes(lock, stop);
  m_stop = {};
  m_pass = std::stop_source();
  // Restarted meanwhile: the state belongs to the new run.
  if (m_thread.get_stop_token() != stop)
    return;
  m_running = false;
  m_changed.notify_all();
  lock.unlock();
  if (m_deleteWhenDone)
    delete this;
}

void Thread::passes(Lock& lock, const std::stop_token& stop) {
  while (!stop.stop_requested()) {
    makePass(lock);
    if (m_period == 0 && !m_woken)
      return;
    waitPeriod(lock, stop);
  }
}

void Thread::makePass(Lock& lock) {
  m_woken = false;
  m_pass = std::stop_source();
  lock.unlock();
  try {
    threadFunction();
  } catch (...) {
    // A pass must not end the program. It reports its own failures.
  }
  lock.lock();
}

void Thread::waitPeriod(Lock& lock, const std::stop_token& stop) {
  const auto begin = std::chrono::steady_clock::now();
  const auto isOver = [&] {
    return std::chrono::steady_clock::now() >= begin + std::chrono::milliseconds(m_period);
  };
  while (!m_woken && !stop.stop_requested() && !isOver()) {
    const std::uint32_t period = m_period; // Copied, because setPeriod may change it during the wait.
    m_changed.wait_until(lock, stop, begin + std::chrono::milliseconds(period),
                         [&] { return m_woken || m_period != period; });
  }
}

} // namespace Tallymoor
