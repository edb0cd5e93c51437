#pragma once
#include "xml/SelfCheckedElement.h"

namespace Tallymoor {

/// How often sources with a daily limit were asked. Root "PriceRequests": any number of "Counted".
class XMLPriceRequests : public XMLElement {
public:
  XMLPriceRequests();
};

/// The requests of a day: attributes "source", "day", as d/m/yyyy, and "requests".
class XMLCountedRequests : public XMLSelfCheckedElement {
public:
  XMLCountedRequests();
};

} // namespace Tallymoor
