#pragma once
#include "foundation/String.h"
#include <cstdint>
#include <string>

namespace Tallymoor {

/// Where updates come from, how they are trusted, and when the background thread looks for them.
struct UpdateSettings {
  /// The service's address up to the query key; "filename=" and a name follow. It is asked only when it is
  /// https, or plain http on this machine.
  String queryBase;
  /// The Ed25519 key that updates must be signed for: 64 hexadecimal digits. Empty: no program files are
  /// taken, and documents from this machine alone.
  std::string publicKey;
  std::uint32_t startDelay = 30000; ///< milliseconds before the first look
  std::uint32_t period = 10800000;  ///< milliseconds between looks: three hours

  /// True for a service on this machine, for trying: nothing else can answer in its place.
  bool isServiceLocal() const;
  /// True if nothing on the way to the service can answer in its place.
  bool isServiceSafe() const;

  /// What the build was configured with (TALLYMOOR_UPDATE_SERVICE and TALLYMOOR_UPDATE_KEY).
  static UpdateSettings ofThisBuild();
  /// What is in force: that of the build, unless a test has set another.
  static UpdateSettings current();
  /// For tests, while no other thread looks for updates.
  static void setCurrent(const UpdateSettings& settings);
};

} // namespace Tallymoor
