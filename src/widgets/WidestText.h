#pragma once
#include <algorithm>
#include <fx.h>

namespace Tallymoor {

/// The width of the widest of many texts that come, change and go. Where the widest goes, nobody knows the
/// next one without measuring all again.
class WidestText {
public:
  FXint width() const { return m_width; }
  /// False when all texts must be measured again, from begin on.
  bool isKnown() const { return m_known; }
  void begin() { *this = WidestText(); }
  void come(FXint width) { m_width = std::max(m_width, width); }
  void go(FXint width) { m_known = m_known && width < m_width; }

private:
  FXint m_width = 0;
  bool m_known = true;
};

} // namespace Tallymoor
