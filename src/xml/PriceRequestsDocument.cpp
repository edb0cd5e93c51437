#include "xml/PriceRequestsDocument.h"

namespace Tallymoor {

XMLPriceRequests::XMLPriceRequests() : XMLElement(u"PriceRequests") {
  registerSubElements(u"Counted", u"Counted", newElement<XMLCountedRequests>, false);
}

XMLCountedRequests::XMLCountedRequests() : XMLSelfCheckedElement(u"Counted") {
  registerAttribute(u"source");
  registerAttribute(u"day");
  registerAttribute(u"requests");
}

} // namespace Tallymoor
