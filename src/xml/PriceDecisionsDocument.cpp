#include "xml/PriceDecisionsDocument.h"

namespace Tallymoor {

XMLPriceDecisions::XMLPriceDecisions() : XMLElement(u"PriceDecisions") {
  registerSubElements(u"Refused", u"Refused", newElement<XMLRefusedPrice>, false);
  registerSubElements(u"Trusted", u"Trusted", newElement<XMLTrustedCode>, false);
  registerSubElements(u"Currency", u"Currency", newElement<XMLPriceCurrency>, false);
  registerSubElements(u"ToCome", u"ToCome", newElement<XMLPriceToCome>, false);
}

XMLRefusedPrice::XMLRefusedPrice() : XMLSelfCheckedElement(u"Refused") {
  registerAttribute(u"code");
  registerAttribute(u"day");
  registerAttribute(u"close");
}

XMLPriceCurrency::XMLPriceCurrency() : XMLSelfCheckedElement(u"Currency") {
  registerAttribute(u"code");
  registerAttribute(u"name");
  registerAttribute(u"decision");
}

XMLPriceToCome::XMLPriceToCome() : XMLSelfCheckedElement(u"ToCome") {
  registerAttribute(u"code");
  registerAttribute(u"day");
  registerAttribute(u"close");
}

XMLTrustedCode::XMLTrustedCode() : XMLSelfCheckedElement(u"Trusted") {
  registerAttribute(u"code");
  registerAttribute(u"reason");
}

} // namespace Tallymoor
