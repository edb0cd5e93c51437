#pragma once

namespace Tallymoor {

/// Start of the file version record in an image; the four numbers follow, separated by points. Readable with
/// strings(1) and what(1). The update check of released versions searches for it, so it must not change.
#define TALLYMOOR_VERSION_MARK "@(#)Brindlecove file version "

/// Defines the version record of an image. Use it once per image, at namespace scope of one of its sources:
/// TALLYMOOR_VERSION_RECORD("1.3.1.510");
#define TALLYMOOR_VERSION_RECORD(numbers)                                                                    \
  extern "C" {                                                                                               \
  __attribute__((used, section(".tallymoor_version"))) extern const char tallymoorVersionRecord[] =          \
      TALLYMOOR_VERSION_MARK numbers "\n";                                                                   \
  }                                                                                                          \
  static_assert(true)

} // namespace Tallymoor
