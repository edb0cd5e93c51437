#pragma once
#include <functional>

namespace Tallymoor {

/// Writes files on a thread of its own, so that the GUI thread needn't wait for the disk. One piece of work
/// at a time: whoever writes, renames or removes one of its files calls finish() first.
///
/// Under the big mutex, or before there are threads. The work may not take the big mutex.
class BackgroundWriting {
public:
  /// Begins the work, after the end of the last. It may not throw, and uses copies alone.
  static void begin(std::function<void()> work);
  /// Waits for the end of what was begun.
  static void finish();
};

} // namespace Tallymoor
