#pragma once
#include "foundation/String.h"
#include "foundation/Thread.h"
#include <cstdint>
#include <vector>

namespace Tallymoor {

/// Where adverts come from, and how often.
struct AdvertSettings {
  String base;                   ///< the advert service's address
  std::uint32_t period = 120000; ///< milliseconds
  bool wanted = true;

  /// Those of the build and of the user's settings ("Operation", "ShowAdverts"), unless a test has set
  /// others.
  static AdvertSettings current();
  /// For tests, before a window is made: current gives these from now on. Not owned; null gives the build's
  /// and the user's again.
  static void setForTest(const AdvertSettings* settings);
};

/// One fetched advert on its way to the display; an empty picture is none. Guarded by the big mutex.
struct PendingAdvert {
  std::vector<std::uint8_t> image; ///< a sound GIF
  String url;
};

/// The background thread that fetches an advert every two minutes, as long as none is waiting to be shown
/// and the user is online. The network is used without a lock. Failures are not reported: the next pass
/// tries again.
class AdvertThread : public Thread {
public:
  /// Starts at once, unless adverts are not wanted. What it fetches goes into the pending advert, which
  /// outlives the thread.
  AdvertThread(const AdvertSettings& settings, PendingAdvert& pending);
  /// As stopAndJoin.
  ~AdvertThread() override;

  /// The user has gone offline: what is being fetched is aborted.
  void connectionIsGone() { abortPass(); }
  /// One pass on the calling thread, which must not hold the big mutex. Throws Exception.
  void runPass();

protected:
  void threadFunction() override;

private:
  bool mayFetch();
  PendingAdvert fetch() const;

  const AdvertSettings m_settings;
  PendingAdvert& m_pending;
};

} // namespace Tallymoor
