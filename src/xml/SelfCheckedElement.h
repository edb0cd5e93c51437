#pragma once
#include "xml/XMLElement.h"

namespace Tallymoor {

/// An element that is only ever read, and refuses at its own end tag to be without a registered attribute or
/// a required sub-element. Locator documents and service replies are made of these.
class XMLSelfCheckedElement : public XMLElement {
public:
  using XMLElement::XMLElement;

protected:
  void endTagRead() override;
};

} // namespace Tallymoor
