#pragma once
#include "foundation/String.h"
#include <mutex>
#include <set>

namespace Tallymoor {

/// What of a table needs a refresh, noted by any thread and taken whole by the GUI thread.
class StaleMarks {
public:
  struct Taken {
    std::set<String> keys; ///< of rows
    bool all = false;
    bool roundFinished = false;
    bool empty() const { return keys.empty() && !all && !roundFinished; }
  };

  void markKey(const String& key);
  void markAll();
  void markRoundFinished();
  bool empty() const;
  /// Gives what was marked and forgets it.
  Taken take();

private:
  mutable std::mutex m_mutex;
  Taken m_marks; ///< guarded by m_mutex
};

} // namespace Tallymoor
