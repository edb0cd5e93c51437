#pragma once
#include "foundation/ThreadSafety.h"
#include <atomic>
#include <mutex>
#include <thread>

namespace Tallymoor {

/// The program's single lock. It guards the records, the price cache, the settings and all widgets. It is
/// recursive because a modal loop inside a handler runs other handlers. It counts its depth so that
/// BigMutexRelease can release all levels. Lock order: this mutex first, then a Thread's own mutex.
class CAPABILITY("big mutex") BigMutex {
public:
  /// Blocks until the mutex is free. Prefer BigMutexLock.
  void lock() ACQUIRE();
  /// Releases one level. Call it only on the owning thread.
  void unlock() RELEASE();
  bool heldByThisThread() const;

private:
  friend class BigMutexRelease;
  /// Releases every level held by this thread and returns their number.
  unsigned releaseAll();
  void acquire(unsigned depth);

  std::recursive_mutex m_mutex;
  unsigned m_depth = 0; ///< Guarded by m_mutex.
  std::atomic<std::thread::id> m_owner{};
};

/// The big mutex of this process, also available as MainWindow::mutex.
BigMutex& bigMutex();

/// Holds the big mutex for a scope. Used by every message handler and every step of a background pass.
class SCOPED_CAPABILITY BigMutexLock {
public:
  BigMutexLock() ACQUIRE(bigMutex()) { bigMutex().lock(); }
  ~BigMutexLock() RELEASE() { bigMutex().unlock(); }
  BigMutexLock(const BigMutexLock&) = delete;
  BigMutexLock& operator=(const BigMutexLock&) = delete;
};

/// Releases all levels of the big mutex for a scope and takes them again at the end. Used when joining a
/// thread and around dialogs during which price updates continue. Does nothing if this thread doesn't hold
/// the mutex.
class BigMutexRelease {
public:
  BigMutexRelease();
  ~BigMutexRelease();
  BigMutexRelease(const BigMutexRelease&) = delete;
  BigMutexRelease& operator=(const BigMutexRelease&) = delete;

private:
  unsigned m_depth;
};

} // namespace Tallymoor
