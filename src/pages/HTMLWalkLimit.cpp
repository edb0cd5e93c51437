#include "pages/HTMLWalkLimit.h"
#include "foundation/Exception.h"

namespace Tallymoor {

void HTMLWalkLimit::spend(std::size_t units) {
  if (units > m_left)
    throw HTMLException(u"HTMLTable::fillFrom - too many tags to walk over");
  m_left -= units;
}

} // namespace Tallymoor
