#pragma once
#include "foundation/ThreadSafety.h"
#include <mutex>

namespace Tallymoor {

/// A std::mutex of which the compiler knows what it guards (foundation/ThreadSafety.h).
class CAPABILITY("mutex") Mutex {
public:
  void lock() ACQUIRE() NO_THREAD_SAFETY_ANALYSIS { m_mutex.lock(); }
  void unlock() RELEASE() NO_THREAD_SAFETY_ANALYSIS { m_mutex.unlock(); }

private:
  std::mutex m_mutex;
};

/// Holds a Mutex for a scope. A std::condition_variable_any waits with it.
class SCOPED_CAPABILITY MutexLock {
public:
  explicit MutexLock(Mutex& mutex) ACQUIRE(mutex) : m_mutex(mutex) { m_mutex.lock(); }
  ~MutexLock() RELEASE() {
    if (m_isHeld)
      m_mutex.unlock();
  }
  MutexLock(const MutexLock&) = delete;
  MutexLock& operator=(const MutexLock&) = delete;

  void lock() ACQUIRE() {
    m_mutex.lock();
    m_isHeld = true;
  }
  void unlock() RELEASE() {
    m_isHeld = false;
    m_mutex.unlock();
  }

private:
  Mutex& m_mutex;
  bool m_isHeld = true;
};

} // namespace Tallymoor
