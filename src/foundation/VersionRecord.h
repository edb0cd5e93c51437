#pragma once

namespace Tallymoor {

/// What a file version record in an image begins with; the four numbers follow, joined by points. It can be
/// seen with strings(1) or what(1). Update checks of released programs look for it: it must stay as it is.
#define TALLYMOOR_VERSION_MARK "@(#)Brindlecove file version "

/// Puts a version record into the image that this stands in, once an image, at namespace scope of one of its
/// own sources: TALLYMOOR_VERSION_RECORD("1.3.1.510");
#define TALLYMOOR_VERSION_RECORD(numbers)                                                                    \
  extern "C" {                                                                                               \
  __attribute__((used, section(".tallymoor_version"))) extern const char tallymoorVersionRecord[] =          \
      TALLYMOOR_VERSION_MARK numbers "\n";                                                                   \
  }                                                                                                          \
  static_assert(true)

} // namespace Tallymoor
