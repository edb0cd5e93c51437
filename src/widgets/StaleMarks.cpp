#include "widgets/StaleMarks.h"
#include <utility>

namespace Tallymoor {

void StaleMarks::markKey(const String& key) {
  const std::lock_guard lock(m_mutex);
  m_marks.keys.insert(key);
}

void StaleMarks::markAll() {
  const std::lock_guard lock(m_mutex);
  m_marks.all = true;
}

void StaleMarks::markRoundFinished() {
  const std::lock_guard lock(m_mutex);
  m_marks.roundFinished = true;
}

bool StaleMarks::empty() const {
  const std::lock_guard lock(m_mutex);
  return m_marks.empty();
}

StaleMarks::Taken StaleMarks::take() {
  const std::lock_guard lock(m_mutex);
  return std::exchange(m_marks, Taken());
}

} // namespace Tallymoor
