#pragma once
#include "foundation/Exception.h"
#include <cstddef>

namespace Tallymoor {

/// Bounds what the walks over one table may cost together. Tags inside tags of their own name share what is
/// below them, so a page made of nested rows would otherwise take time, and room for the copied texts of its
/// cells, by the square of its length: hours and all memory for a page that the client still accepts.
class HTMLWalkLimit {
public:
  /// So many tags to step over, and units of text to copy and of attributes to read.
  explicit HTMLWalkLimit(std::size_t units) : m_left(units) {}

  /// Throws HTMLException when this is more than is left.
  void take(std::size_t units) {
    if (units > m_left)
      throw HTMLException(u"HTMLTable::fillFrom - too many tags to walk over");
    m_left -= units;
  }

private:
  std::size_t m_left;
};

} // namespace Tallymoor
