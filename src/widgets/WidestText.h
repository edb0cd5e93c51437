#pragma once
#include <algorithm>
#include <fx.h>

namespace Tallymoor {

/// The width of the widest of many texts that are added, changed and removed. When the widest is removed, the
/// next one is found only by adding all again.
class WidestText {
public:
  FXint width() const { return m_width; }
  /// False when all texts must be added again, after begin.
  bool isKnown() const { return m_known; }
  void begin() { *this = WidestText(); }
  void add(FXint width) { m_width = std::max(m_width, width); }
  void remove(FXint width) { m_known = m_known && width < m_width; }

private:
  FXint m_width = 0;
  bool m_known = true;
};

} // namespace Tallymoor
