#pragma once
#include "xml/SelfCheckedElement.h"

namespace Tallymoor {

/// What the user has decided on doubtful prices. Root "PriceDecisions": any number of "Refused" and
/// "Trusted".
class XMLPriceDecisions : public XMLElement {
public:
  XMLPriceDecisions();
};

/// A price that is not to be asked about again: attributes "code", "day", as d/m/yyyy, and "close".
class XMLRefusedPrice : public XMLSelfCheckedElement {
public:
  XMLRefusedPrice();
};

/// A code whose prices are not doubted for a reason: attributes "code" and "reason".
class XMLTrustedCode : public XMLSelfCheckedElement {
public:
  XMLTrustedCode();
};

} // namespace Tallymoor
