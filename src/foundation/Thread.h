#pragma once
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <stop_token>
#include <thread>

namespace Tallymoor {

/// A background thread: waits for a start delay, then makes a pass after each period or wake-up until it is
/// stopped. stop, wakeUp and the timed wait share one lock and a predicate, so no wake-up is lost. Blocking
/// calls of a pass take its stop token, so that a stop ends them at once.
///
/// Any thread may call start, stop and wakeUp. The owner must call join, without holding the big mutex,
/// before the derived object is destroyed.
class Thread {
public:
  /// Times are in milliseconds. A period of 0 means a single pass.
  Thread(std::uint32_t period, bool deleteWhenDone, std::uint32_t startDelay);
  virtual ~Thread();
  Thread(const Thread&) = delete;
  Thread& operator=(const Thread&) = delete;

  /// Does nothing if the thread runs. If it is stopping, starts it again after its end.
  void start();
  /// Asks the loop to end, even during the start delay. Does not wait.
  void stop();
  /// Asks the current pass to end. The next pass follows after the period.
  void abortPass();
  /// Starts a pass now. Restarts a finished thread. Ignored before start() and while the thread is stopping.
  void wakeUp();
  /// Waits for the end of a stopped or single-pass thread. Returns at once if called on the thread itself,
  /// which only a self-deleting object does.
  void join();
  /// Calls stop and join with the big mutex released.
  void stopAndJoin();
  bool isRunning() const;
  /// Current time between passes, in milliseconds.
  std::uint32_t period() const;

  static void sleep(std::uint32_t milliseconds);

protected:
  /// Makes one pass. Exceptions are ignored; the next pass follows after the period.
  virtual void threadFunction();
  /// True after stop() for the current run.
  bool stopRequested() const;
  /// Token that stop and abortPass trigger.
  std::stop_token passToken() const;
  void setPeriod(std::uint32_t milliseconds);

private:
  using Lock = std::unique_lock<std::mutex>;

  void run(const std::stop_token& stop);
  void startLocked();
  void passes(Lock& lock, const std::stop_token& stop);
  void makePass(Lock& lock);
  void waitPeriod(Lock& lock, const std::stop_token& stop);

  mutable std::mutex m_mutex;            ///< Guards all following members.
  std::condition_variable_any m_changed; ///< Signalled on a wake-up, a new period and a stop.
  std::uint32_t m_period;
  std::uint32_t m_startDelay;
  const bool m_deleteWhenDone;
  bool m_running = false; ///< True from start() to the end of the last pass.
  bool m_woken = false;
  std::stop_token m_stop;  ///< Token of the current run.
  std::stop_source m_pass; ///< Source of the current pass.
  std::jthread m_thread;
};

} // namespace Tallymoor
