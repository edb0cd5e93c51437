#include "xml/SelfCheckedElement.h"

namespace Tallymoor {

void XMLSelfCheckedElement::endTagRead() {
  checkAttributes();
  checkSubElements();
}

} // namespace Tallymoor
