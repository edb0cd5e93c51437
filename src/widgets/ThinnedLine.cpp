#include "widgets/ThinnedLine.h"
#include <cmath>

namespace Tallymoor {

void ThinnedLine::add(const ChartPixel& pixel) {
  if (m_hasColumn && std::floor(pixel.x) != std::floor(m_last.x))
    endColumn();
  if (!m_hasColumn)
    m_first = m_least = m_greatest = pixel;
  m_hasColumn = true;
  m_last = pixel;
  if (pixel.y < m_least.y)
    m_least = pixel;
  if (pixel.y > m_greatest.y)
    m_greatest = pixel;
}

std::vector<ChartPixel> ThinnedLine::points() {
  endColumn();
  return std::move(m_kept);
}

void ThinnedLine::endColumn() {
  if (!m_hasColumn)
    return;
  m_hasColumn = false;
  m_kept.push_back(m_first);
  const bool leastFirst = m_least.x < m_greatest.x;
  keep(leastFirst ? m_least : m_greatest);
  keep(leastFirst ? m_greatest : m_least);
  keep(m_last);
}

void ThinnedLine::keep(const ChartPixel& pixel) {
  if (pixel.x > m_kept.back().x)
    m_kept.push_back(pixel);
}

} // namespace Tallymoor
