#pragma once
#include "xml/XMLElement.h"

namespace Tallymoor {

/// What a parent's first sub-element of a reference name holds; empty when the record leaves it out.
inline String optionalText(const XMLElement& parent, std::u16string_view referenceName) {
  return parent.numSubElements(referenceName) > 0 ? parent.subElement(referenceName).value() : String();
}

} // namespace Tallymoor
