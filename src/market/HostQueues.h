#pragma once
#include "foundation/Mutex.h"
#include "foundation/String.h"
#include "market/HTTPAnswer.h"
#include "market/TransferFailure.h"
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <stop_token>

namespace Tallymoor {

class URL;

/// How often a host may be asked.
struct HostLimits {
  std::size_t atOnce = 2;
  std::size_t perMinute = 0; ///< 0 for any number
  bool operator==(const HostLimits&) const = default;
};

/// A host is not asked now, and when it will be. The code is 429 if the host itself has asked for the rest.
class HostResting : public TransferFailure {
public:
  using TransferFailure::TransferFailure;
};

/// The requests of all hosts wait here for their turn, first come, first served: each host has a number of
/// requests at once and a minute. A host rests after status 429, or 503 with a time, for as long as its
/// Retry-After says, and for a minute after five failures in a row; then a single request tries whether it
/// answers again. Other hosts go on meanwhile.
///
/// Any thread.
class HostQueues {
public:
  using Time = std::chrono::steady_clock::time_point;
  using Clock = std::function<Time()>;

  /// Of a service on this machine, such as the sample service, and of any other host until setLimits.
  static constexpr std::size_t AT_ONCE_HERE = 6;
  static constexpr std::size_t AT_ONCE_ELSEWHERE = 2;
  static constexpr unsigned FAILURES_BEFORE_REST = 5;
  static constexpr std::chrono::seconds REST{60};
  static constexpr std::chrono::hours LONGEST_REST{24};

  explicit HostQueues(Clock clock = std::chrono::steady_clock::now);

  /// Those that all clients of the gateway share.
  static std::shared_ptr<HostQueues> ofProgram();
  /// New ones for a new gateway, which know nothing of any host.
  static void startAgain();
  /// The name and port by which a host is known here.
  static String hostOf(const URL& url);

  /// A request under way. A turn that ends without an outcome, because it was stopped, counts for nothing.
  class Turn {
  public:
    ~Turn();
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
    void answered(const HTTPAnswer& answer);
    void failed(const String& reason);

  private:
    friend class HostQueues;
    Turn(HostQueues& queues, const String& host) : m_queues(queues), m_host(host) {}
    HostQueues& m_queues;
    const String m_host;
  };

  void setLimits(const String& host, const HostLimits& limits);
  /// Waits until a request to the host may begin. Throws HostResting, and HTTPException after a stop.
  Turn waitForTurn(const String& host, const std::stop_token& stop);
  /// The user wants another try: rests end that no host has asked for.
  void forgetFailures();
  /// The clock of a test has moved.
  void timeChanged();

private:
  struct Host {
    HostLimits limits;
    std::deque<std::uint64_t> waiting; ///< tickets
    std::size_t underWay = 0;
    std::deque<Time> begun; ///< of the last minute, if the number is limited
    unsigned failures = 0;  ///< in a row
    Time restsUntil{};
    bool hasAskedForRest = false;
    String reason; ///< of the rest
  };

  Host& hostNamed(const String& name) REQUIRES(m_mutex);
  void checkRest(const String& name, const Host& host) const REQUIRES(m_mutex);
  /// How long until the host may be asked, as far as time decides; zero if it may be asked now.
  Time::duration untilAllowed(Host& host) const REQUIRES(m_mutex);
  static bool isFull(const Host& host);
  void leave(Host& host, std::uint64_t ticket) REQUIRES(m_mutex);
  void countFailure(Host& host, const String& reason) REQUIRES(m_mutex);
  void end(const String& name);
  void changed() REQUIRES(m_mutex);

  const Clock m_clock;
  Mutex m_mutex;
  std::condition_variable_any m_changed;
  std::uint64_t m_changes GUARDED_BY(m_mutex) = 0;
  std::uint64_t m_tickets GUARDED_BY(m_mutex) = 0;
  std::map<String, Host> m_hosts GUARDED_BY(m_mutex);
};

} // namespace Tallymoor
