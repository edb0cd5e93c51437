#include "foundation/Thread.h"
#include "foundation/EndingSignals.h"
#include <chrono>

namespace Tallymoor {

Thread::Thread(std::uint32_t period, bool deleteWhenDone, std::uint32_t startDelay)
    : m_period(period), m_startDelay(startDelay), m_deleteWhenDone(deleteWhenDone) {}

Thread::~Thread() {
  stop();
  join();
}

void Thread::start() {
  const std::lock_guard lock(m_stateMutex);
  startLocked();
}

void Thread::startLocked() {
  if (!m_finished) {
    m_restart = m_stopRequested;
    return;
  }
  if (m_thread.joinable())
    m_thread.join(); // it has left its last guarded stretch, so it is about to end
  // First of all, since it may fail; the loop waits for the lock that is held here.
  {
    const EndingSignalsBlocked blocked;
    m_thread = std::thread(&Thread::run, this);
  }
  m_finished = false;
  m_started = true;
  m_stopRequested = false;
  m_woken = false;
}

void Thread::stop() {
  const std::lock_guard lock(m_stateMutex);
  if (m_finished)
    return;
  m_stopRequested = true;
  m_restart = false;
  m_wake.notify_all();
}

void Thread::wakeUp() {
  const std::lock_guard lock(m_stateMutex);
  if (m_stopRequested)
    return;
  if (m_finished && m_started)
    startLocked();
  m_woken = true;
  m_wake.notify_all();
}

void Thread::join() {
  const std::lock_guard joining(m_joinMutex);
  std::thread ending;
  {
    const std::lock_guard lock(m_stateMutex);
    ending = std::move(m_thread);
  }
  if (ending.get_id() == std::this_thread::get_id())
    ending.detach(); // it deletes itself at its end
  else if (ending.joinable())
    ending.join();
}

bool Thread::isRunning() const {
  const std::lock_guard lock(m_stateMutex);
  return !m_finished;
}

void Thread::sleep(std::uint32_t milliseconds) {
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

void Thread::threadFunction() {}

bool Thread::stopRequested() const {
  const std::lock_guard lock(m_stateMutex);
  return m_stopRequested;
}

std::uint32_t Thread::period() const {
  const std::lock_guard lock(m_stateMutex);
  return m_period;
}

void Thread::setPeriod(std::uint32_t milliseconds) {
  const std::lock_guard lock(m_stateMutex);
  m_period = milliseconds;
  m_wake.notify_all();
}

void Thread::run() {
  std::unique_lock lock(m_stateMutex);
  waitStartDelay(lock);
  passes(lock);
  while (m_restart) {
    m_restart = false;
    m_stopRequested = false;
    waitStartDelay(lock);
    passes(lock);
  }
  m_finished = true;
  m_stopRequested = false;
  lock.unlock();
  if (m_deleteWhenDone)
    delete this;
}

void Thread::waitStartDelay(std::unique_lock<std::mutex>& lock) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(m_startDelay);
  m_wake.wait_until(lock, end, [this] { return m_stopRequested || m_woken; });
}

void Thread::passes(std::unique_lock<std::mutex>& lock) {
  while (!m_stopRequested) {
    m_woken = false;
    lock.unlock();
    try {
      threadFunction();
    } catch (...) {
      // A pass that wants its failure known has told of it; the next pass comes all the same, whatever this
      // one threw: it must not end the program.
    }
    lock.lock();
    if (m_period == 0 && !m_woken)
      return;
    waitPeriod(lock);
  }
}

void Thread::waitPeriod(std::unique_lock<std::mutex>& lock) {
  const auto begin = std::chrono::steady_clock::now();
  auto end = begin + std::chrono::milliseconds(m_period);
  while (!m_stopRequested && !m_woken && std::chrono::steady_clock::now() < end) {
    m_wake.wait_until(lock, end);
    end = begin + std::chrono::milliseconds(m_period); // the period may have been changed meanwhile
  }
}

} // namespace Tallymoor
