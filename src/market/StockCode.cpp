#include "market/StockCode.h"

namespace Tallymoor {

StockCode::StockCode(const String& code) {
  const std::size_t point = code.find(u'.');
  m_base = code.substr(0, point);
  if (point != String::npos)
    m_suffix = code.substr(point + 1);
}

String StockCode::text() const {
  return m_suffix.empty() ? m_base : m_base + u'.' + m_suffix;
}

} // namespace Tallymoor
