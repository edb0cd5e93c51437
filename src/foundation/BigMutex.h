#pragma once
#include <atomic>
#include <mutex>
#include <thread>

namespace Tallymoor {

/// The one lock of the program: whoever touches records, the price cache, settings or a widget holds it.
/// Recursive, since a modal loop inside a handler enters handlers again, and it knows its depth, so that it
/// can be given up whole. Order of locks: this one first, then a Thread's own.
class BigMutex {
public:
  /// Waits until no other thread holds it. Scopes are better: see below.
  void lock();
  /// Gives one level up; only on the thread that holds it.
  void unlock();
  bool heldByThisThread() const;

private:
  friend class BigMutexRelease;
  /// Gives up every level that this thread holds and returns their number.
  unsigned releaseAll();
  void acquire(unsigned depth);

  std::recursive_mutex m_mutex;
  unsigned m_depth = 0; ///< guarded by m_mutex
  std::atomic<std::thread::id> m_owner{};
};

/// The big mutex of this process (MainWindow::mutex is the same one).
BigMutex& bigMutex();

/// Holds the big mutex for a scope: the head of every message handler and of each stretch of a background
/// pass.
class BigMutexLock {
public:
  BigMutexLock() { bigMutex().lock(); }
  ~BigMutexLock() { bigMutex().unlock(); }
  BigMutexLock(const BigMutexLock&) = delete;
  BigMutexLock& operator=(const BigMutexLock&) = delete;
};

/// Gives the big mutex up for a scope, whatever the depth, and takes it again at the end: around the joining
/// of a thread, and around dialogs that let the price updater go on. Does nothing when this thread doesn't
/// hold it.
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
