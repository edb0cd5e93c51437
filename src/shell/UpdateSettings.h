#pragma once
#include "foundation/String.h"
#include <cstdint>
#include <string>

namespace Tallymoor {

/// Where updates come from, how program files are trusted, and when the background thread looks for them.
struct UpdateSettings {
  /// The service's address up to the query key; "filename=" and a name follow.
  String queryBase;
  /// The Ed25519 key that program files must be signed for: 64 hexadecimal digits. Empty: none are taken.
  std::string publicKey;
  std::uint32_t startDelay = 30000; ///< milliseconds before the first look
  std::uint32_t period = 10800000;  ///< milliseconds between looks: three hours

  /// What the build was configured with (TALLYMOOR_UPDATE_SERVICE and TALLYMOOR_UPDATE_KEY).
  static UpdateSettings ofThisBuild();
  /// What is in force: that of the build, unless a test has set another.
  static UpdateSettings current();
  /// For tests, while no other thread looks for updates.
  static void setCurrent(const UpdateSettings& settings);
};

} // namespace Tallymoor
