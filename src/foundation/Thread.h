#pragma once
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <stop_token>
#include <thread>

namespace Tallymoor {

/// The one shape of a background thread: wait for a first delay, make a pass, wait a period or until woken,
/// and so on until told to stop. stop, wake and the timed wait share one lock and a predicate, so no wake-up
/// is lost. What a pass fetches takes its stop token, so that a stop ends it at once.
///
/// Start, stop and wakeUp may be called from any thread; join must be called, with the big mutex released,
/// before the derived object dies.
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
  /// Asks the pass under way to end. The thread goes on, with its next pass after the period.
  void abortPass();
  /// Makes a pass happen now; a finished thread is started anew.
  void wakeUp();
  /// Waits for the end of a thread that was told to stop, or that makes one pass. On the thread
  /// itself, where only an object that deletes itself calls it, it waits for nothing.
  void join();
  /// Both, with the big mutex given up meanwhile.
  void stopAndJoin();
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
  /// Stops when the pass under way is to end: by stop, or by abortPass.
  std::stop_token passToken() const;
  void setPeriod(std::uint32_t milliseconds);

private:
  using Lock = std::unique_lock<std::mutex>;

  void run(const std::stop_token& stop);
  void startLocked();
  void passes(Lock& lock, const std::stop_token& stop);
  void makePass(Lock& lock);
  void waitPeriod(Lock& lock, const std::stop_token& stop);

  mutable std::mutex m_mutex;            ///< guards all that follows
  std::condition_variable_any m_changed; ///< woken, or another period, or the end
  std::uint32_t m_period;
  std::uint32_t m_startDelay;
  const bool m_deleteWhenDone;
  bool m_running = false; ///< from the start until the end of its last pass
  bool m_woken = false;
  std::stop_token m_stop;  ///< of the run under way
  std::stop_source m_pass; ///< of the pass under way
  std::jthread m_thread;
};

} // namespace Tallymoor
