#pragma once
#include "xml/SelfCheckedElement.h"

namespace Tallymoor {

/// What the user has decided on doubtful prices. Root "PriceDecisions": any number of "Refused", "Trusted",
/// "Currency" and "ToCome".
class XMLPriceDecisions : public XMLElement {
public:
  XMLPriceDecisions();
};

/// A price that is not to be asked about again: attributes "code", "day", as d/m/yyyy, and "close".
class XMLRefusedPrice : public XMLSelfCheckedElement {
public:
  XMLRefusedPrice();
};

/// A currency of a code's prices: attributes "code", "name", as USD, and "decision", "accepted" or "refused".
class XMLPriceCurrency : public XMLSelfCheckedElement {
public:
  XMLPriceCurrency();
};

/// An accepted price of a day to come: attributes as of a refused one.
class XMLPriceToCome : public XMLSelfCheckedElement {
public:
  XMLPriceToCome();
};

/// A code whose prices are not doubted for a reason: attributes "code" and "reason".
class XMLTrustedCode : public XMLSelfCheckedElement {
public:
  XMLTrustedCode();
};

} // namespace Tallymoor
