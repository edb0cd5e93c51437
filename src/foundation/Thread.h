#pragma once
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

namespace Tallymoor {

/// The one shape of a background thread: wait for a first delay, make a pass, wait a period or until woken,
/// and so on until told to stop. stop, wake and the timed wait share one lock and a predicate, so no wake-up
/// is lost. Start, stop and wakeUp may be called from any thread; join must be called, with the big mutex
/// released, before the derived object dies.
class Thread {
public:
  /// Milliseconds; a period of 0 means one pass only.
  Thread(std::uint32_t period, bool deleteWhenDone, std::uint32_t startDelay);
  virtual ~Thread();
  Thread(const Thread&) = delete;
  Thread& operator=(const Thread&) = delete;

  /// Does nothing on a running thread; on a stopping one it starts again after the end.
  void start();
  /// Asks the loop to end, the start delay included; does not wait.
  void stop();
  /// Makes a pass happen now; a finished thread is started anew.
  void wakeUp();
  /// Waits for the end of a thread that was told to stop, or that makes one pass. On the thread
  /// itself, where only an object that deletes itself calls it, it waits for nothing.
  void join();
  bool isRunning() const;
  /// Milliseconds from one pass to the next, as set now.
  std::uint32_t period() const;

  static void sleep(std::uint32_t milliseconds);

protected:
  /// One pass of work. An exception from it, of whatever class, is dropped; the next pass comes after the
  /// period.
  virtual void threadFunction();
  /// The stop check of a pass.
  bool stopRequested() const;
  void setPeriod(std::uint32_t milliseconds);

private:
  void run();
  void startLocked();
  void waitStartDelay(std::unique_lock<std::mutex>& lock);
  void passes(std::unique_lock<std::mutex>& lock);
  void waitPeriod(std::unique_lock<std::mutex>& lock);

  std::mutex m_joinMutex; ///< held while somebody joins, so that a second joiner waits too
  mutable std::mutex m_stateMutex;
  std::condition_variable m_wake;
  std::uint32_t m_period;
  std::uint32_t m_startDelay;
  const bool m_deleteWhenDone;
  bool m_finished = true;
  bool m_started = false; ///< has been started at least once; a wake starts no thread that was never started
  bool m_stopRequested = false;
  bool m_restart = false;
  bool m_woken = false;
  std::thread m_thread;
};

} // namespace Tallymoor
