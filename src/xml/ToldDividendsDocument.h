#pragma once
#include "xml/SelfCheckedElement.h"

namespace Tallymoor {

/// The dividends that sources have told. Root "ToldDividends": any number of "Told".
class XMLToldDividends : public XMLElement {
public:
  XMLToldDividends();
};

/// A dividend: attributes "code", "day", as d/m/yyyy, "rate" and "state", "waiting" or "settled".
class XMLToldDividend : public XMLSelfCheckedElement {
public:
  XMLToldDividend();
};

} // namespace Tallymoor
