#include "xml/PriceDecisionsDocument.h"

namespace Tallymoor {

XMLPriceDecisions::XMLPriceDecisions() : XMLElement(u"PriceDecisions") {
  registerSubElements(u"Refused", u"Refused", newElement<XMLRefusedPrice>, false);
  registerSubElements(u"Trusted", u"Trusted", newElement<XMLTrustedCode>, false);
}

XMLRefusedPrice::XMLRefusedPrice() : XMLSelfCheckedElement(u"Refused") {
  registerAttribute(u"code");
  registerAttribute(u"day");
  registerAttribute(u"close");
}

XMLTrustedCode::XMLTrustedCode() : XMLSelfCheckedElement(u"Trusted") {
  registerAttribute(u"code");
  registerAttribute(u"reason");
}

} // namespace Tallymoor
